#pragma once

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/contact/ZelContactNames.h"
#include "zelModelSupport/graphics/contact/ZelSceneContactMap.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QHash>
#include <QLineF>
#include <QRectF>

#include <algorithm>
#include <vector>

/// Where everything of the molecules is, before names and lines are laid around it.
struct ZelSceneContactMap::Drawn
{
    struct Mcp
    {
        SdcMcp *mcp;
        int circle; // index of its own; those of its sites follow
        QRectF rect;
        QRectF stickies;
    };
    struct Mol
    {
        std::vector<Mcp> mcps;
        QRectF rect;
        zel::contacts::Surroundings surroundings; // all of its circles, and the lines that leave it
    };

    explicit Drawn(const ZelSceneContactMap &map)
    {
        for (const QPointer<SdcMol> &mol : map.m_mols) {
            mols.emplace_back();
            if (mol)
                add(mol, &mols.back());
        }
        for (const Contact &contact : map.m_contacts) {
            const auto first = ends.constFind(contact.first);
            const auto second = ends.constFind(contact.second);
            if (first == ends.cend() || second == ends.cend())
                continue;
            const QLineF line(circles[static_cast<std::size_t>(first->site)].centre,
                circles[static_cast<std::size_t>(second->site)].centre);
            for (const int mol : {first->mol, second->mol})
                mols[static_cast<std::size_t>(mol)].surroundings.lines.push_back(line);
        }
    }

    void add(SdcMol *sdcMol, Mol *mol)
    {
        for (SdcMcp *mcp : sdcMol->getListSdcMcp()) {
            const ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
            if (!item)
                continue;
            Mcp entry{mcp, static_cast<int>(circles.size()), sceneRectOf(item), {}};
            for (const ZelRectItemMcpSticky *sticky : item->stickies())
                entry.stickies |= sticky->mapRectToScene(sticky->rect());
            addCircle(entry.rect, mol);
            for (SdcBst *bst : mcp->getListSdcBst()) {
                if (const ZelEllipseItemBst *site = bst->getZelEllipseItemBst()) {
                    ends.insert(bst,
                        {static_cast<int>(circles.size()), entry.circle,
                            static_cast<int>(mols.size()) - 1});
                    addCircle(sceneRectOf(site), mol);
                }
            }
            mol->mcps.push_back(entry);
        }
    }

    void addCircle(const QRectF &rect, Mol *mol)
    {
        circles.push_back({rect.center(), std::max(rect.width(), rect.height()) / 2.0});
        mol->surroundings.circles.push_back(circles.back());
        mol->rect |= rect;
    }

    struct SiteEnd
    {
        int site;
        int component;
        int mol;
    };

    static QRectF sceneRectOf(const ZelEllipseItem *item)
    {
        return item->mapRectToScene(item->rect());
    }

    std::vector<Mol> mols;
    std::vector<zel::contacts::Circle> circles; // of components and sites
    QHash<SdcBst *, SiteEnd> ends;
};
