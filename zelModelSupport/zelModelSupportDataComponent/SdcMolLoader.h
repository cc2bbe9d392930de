#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcMolType.h"

#include <QBrush>
#include <QPointF>

class SdcMcp;
class SdcMol;
class ZelEllipseItemMcp;
class ZelScene;

/// Builds molecules from what is stored of them and from their layouts, with their items.
class SdcMolLoader
{
public:
    /// Without a scene the items are made in none, and each molecule keeps its own.
    SdcMolLoader(SdcMolType::Reader *types, ZelScene *scene, bool limited);

    /// False, reported, when there is no such molecule; anything less is reported, too.
    bool load(SdcMol *mol, const QString &psiimId, const SdcLayout &layout, const QPointF &refPos);

    static void report(const QString &id, const QString &what);

private:
    void setMolProperties(const SdcMolType &type);
    void loadMcp(const SdcMolType::Mcp &type, const SdcLayout &layout);
    void loadTags(SdcMcp *mcp, const SdcMolType::Mcp &type);
    void loadSites(SdcMcp *mcp, const SdcMolType::Mcp &type, const SdcLayout &mcpLayout,
        const QRectF &mcpRect);
    void drawBackBones(const QString &psiimId, const SdcMolType &type);

    SdcMolType::Reader *m_types;
    ZelScene *m_scene;
    bool m_limited;

    SdcMol *m_mol = nullptr;
    QBrush m_brush;
    QPointF m_origin;
    QPointF m_nextDefaultPlace;
};
