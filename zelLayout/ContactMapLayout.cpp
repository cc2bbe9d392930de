#include "zelLayout/ContactMapLayout.h"

#include "zelLayout/Drawn.h"
#include "zelLayout/Measure.h"
#include "zelLayout/Separate.h"
#include "zelModelSupport/graphics/contact/ZelContactRoutes.h"
#include "zelModelSupport/graphics/contact/ZelSceneContactMap.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QHash>
#include <QPair>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

namespace {

using namespace zel::layout;
using Parts = std::vector<std::vector<std::size_t>>;

constexpr double ContactLength = 46.0; // between the centres of sites that may bind
constexpr double LineRoom = 5.0; // around an ellipse, for lines that pass
constexpr double ExtraRoom = 5.0; // the same for each line of a molecule that goes around others
constexpr double MostExtraRoom = 15.0;
constexpr double NameRoom = 2.0;
constexpr double PartGap = 36.0;
constexpr double SingleGap = 26.0;
constexpr double WantedAspect = 1.5;
constexpr double Scattered = 2.2; // times the wanted length, that lines are on average

/// The map while it is laid out.
class ContactMapLayout
{
public:
    explicit ContactMapLayout(ZelSceneContactMap *scene) : m_scene(scene)
    {
        readBodies();
        QHash<SdcBst *, QPair<int, int>> ends;
        for (std::size_t i = 0; i < m_drawn.size(); ++i) {
            const QHash<SdcBst *, int> &sites = m_drawn[i].siteIndices;
            for (auto it = sites.cbegin(); it != sites.cend(); ++it)
                ends.insert(it.key(), {static_cast<int>(i), it.value()});
        }
        m_isBound.resize(m_drawn.size(), 0);
        for (const ZelSceneContactMap::Contact &contact : scene->contacts()) {
            const auto first = ends.constFind(contact.first);
            const auto second = ends.constFind(contact.second);
            if (first == ends.cend() || second == ends.cend())
                continue;
            m_isBound[static_cast<std::size_t>(first->first)] = 1;
            m_isBound[static_cast<std::size_t>(second->first)] = 1;
            if (first.value() == second.value())
                m_loops.insert(first.value());
            else if (first->first != second->first)
                m_bonds.push_back(
                    {first->first, first->second, second->first, second->second, ContactLength});
        }
    }

    void run()
    {
        const Parts all = connectedParts(m_drawn.size(), m_bonds);
        Parts parts;
        std::vector<std::size_t> singles;
        for (const std::vector<std::size_t> &part : all) {
            if (m_isBound[part.front()])
                parts.push_back(part);
            else
                singles.push_back(part.front());
        }
        for (const std::vector<std::size_t> &part : parts) {
            if (part.size() > 1)
                arrange(part);
        }
        m_scene->updateNames();
        for (const std::vector<std::size_t> &part : parts) {
            if (part.size() > 1)
                makeRoomForNames(part);
        }
        pack(parts, singles);
        m_scene->updateMap();
    }

private:
    void readBodies()
    {
        for (qsizetype i = 0; i < m_scene->getListSdcMol().size(); ++i)
            m_drawn.push_back(drawnAt(static_cast<std::size_t>(i)));
    }

    DrawnBody drawnAt(std::size_t mol) const
    {
        SdcMol *const sdcMol = m_scene->getListSdcMol().at(static_cast<qsizetype>(mol));
        return sdcMol ? drawnBodyOf(sdcMol) : DrawnBody();
    }

    /// Bodies of a part with room for lines, and the bonds between them.
    void take(const std::vector<std::size_t> &part, std::vector<Body> *bodies,
        std::vector<BodyBond> *bonds) const
    {
        QHash<int, int> indices;
        for (const std::size_t i : part)
            indices.insert(static_cast<int>(i), static_cast<int>(indices.size()));
        for (BodyBond bond : m_bonds) {
            if (!indices.contains(bond.bodyA))
                continue;
            bond.bodyA = indices.value(bond.bodyA);
            bond.bodyB = indices.value(bond.bodyB);
            bonds->push_back(bond);
        }
        // Lines that no tree needs have to go around something.
        const double extra =
            static_cast<double>(bonds->size() + 1) / static_cast<double>(part.size()) - 1.0;
        for (const std::size_t i : part) {
            Body body = m_drawn[i].body;
            for (Disc &disc : body.components)
                disc.radius += LineRoom + std::min(MostExtraRoom, ExtraRoom * extra);
            for (std::size_t site = 0; site < body.sites.size(); ++site) {
                if (!m_loops.count({static_cast<int>(i), static_cast<int>(site)}))
                    continue;
                const SitePlace &place = body.sites[site];
                const double radius = zel::contacts::LoopReach / 2.0;
                body.components.push_back(
                    {place.disc.centre + place.outward * (place.disc.radius + radius), radius});
            }
            bodies->push_back(std::move(body));
        }
    }

    void arrange(const std::vector<std::size_t> &part)
    {
        std::vector<Body> bodies;
        std::vector<BodyBond> bonds;
        take(part, &bodies, &bonds);
        std::vector<Placement> placements = arrangeBodies(bodies, bonds);
        if (meanLength(bodies, bonds, placements) > Scattered * ContactLength)
            gather(bodies, &placements);
        separate(bodies, &placements);
        for (std::size_t k = 0; k < part.size(); ++k)
            moveDrawn(m_drawn[part[k]], placements[k]);
    }

    static double meanLength(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds,
        const std::vector<Placement> &placements)
    {
        const Drawing drawing(bodies, bonds, placements);
        double sum = 0.0;
        for (const Drawing::Line &line : drawing.lines)
            sum += line.line.length();
        return sum / static_cast<double>(std::max<std::size_t>(1, drawing.lines.size()));
    }

    /// Moves the molecules apart, without turning them, until their names are clear of the others.
    void makeRoomForNames(const std::vector<std::size_t> &part)
    {
        for (const std::size_t i : part)
            m_drawn[i] = drawnAt(i);
        std::vector<Body> bodies;
        std::vector<BodyBond> bonds;
        take(part, &bodies, &bonds);
        std::vector<Placement> placements;
        for (std::size_t k = 0; k < part.size(); ++k) {
            const QPointF origin = m_drawn[part[k]].origin;
            for (const QRectF &name : m_scene->getNameRects(static_cast<int>(part[k]))) {
                for (const zel::contacts::Circle &circle : zel::contacts::circlesOver(name))
                    bodies[k].components.push_back(
                        {circle.centre - origin, circle.radius + NameRoom});
            }
            placements.push_back({origin, 0.0, false});
        }
        separate(bodies, &placements);
        for (std::size_t k = 0; k < part.size(); ++k)
            m_scene->moveMol(
                static_cast<int>(part[k]), placements[k].centre - m_drawn[part[k]].origin);
    }

    QRectF rectOf(std::size_t mol) const
    {
        QRectF rect;
        const DrawnBody drawn = drawnAt(mol);
        const auto add = [&](const Disc &disc) {
            const QPointF reach(disc.radius, disc.radius);
            rect |= QRectF(disc.centre - reach, disc.centre + reach).translated(drawn.origin);
        };
        for (const Disc &disc : drawn.body.components)
            add(disc);
        for (const SitePlace &site : drawn.body.sites) {
            add(site.disc);
            if (m_loops.count(
                    {static_cast<int>(mol), static_cast<int>(&site - drawn.body.sites.data())})) {
                const double radius = zel::contacts::LoopReach / 2.0;
                add({site.disc.centre + site.outward * (site.disc.radius + radius), radius});
            }
        }
        for (const QRectF &name : m_scene->getNameRects(static_cast<int>(mol)))
            rect |= name;
        return rect;
    }

    /// Parts in rows, singles in rows beneath, of the width that makes the whole's shape the best.
    void pack(const Parts &parts, const std::vector<std::size_t> &singles)
    {
        std::vector<QRectF> partRects;
        double area = 0.0;
        double widest = 0.0;
        const auto count = [&](const QRectF &rect, double gap) {
            area += (rect.width() + gap) * (rect.height() + gap);
            widest = std::max(widest, rect.width());
        };
        for (const std::vector<std::size_t> &part : parts) {
            QRectF rect;
            for (const std::size_t i : part)
                rect |= rectOf(i);
            partRects.push_back(rect);
            count(rect, PartGap);
        }
        std::vector<QRectF> cells;
        QSizeF cell;
        for (const std::size_t i : singles) {
            cells.push_back(rectOf(i));
            cell = cell.expandedTo(cells.back().size());
            count(cells.back(), SingleGap);
        }
        // Names and molecules of one kind stand in columns, unless one of them is far larger.
        if (cell.width() * static_cast<double>(cells.size()) < 2.0 * totalWidth(cells)) {
            for (QRectF &rect : cells)
                rect = QRectF(rect.center().x() - cell.width() / 2.0, rect.top(), cell.width(),
                    rect.height());
        }
        Rows bestTop;
        Rows bestBelow;
        double leastCost = 0.0;
        for (double share = 0.5; share < 2.0; share += 0.05) {
            const double width = std::max(widest, share * std::sqrt(area * WantedAspect));
            Rows top = rowsOf(partRects, PartGap, width);
            Rows below = rowsOf(cells, SingleGap, width);
            const double high = top.size.height() + PartGap + below.size.height();
            const double wide = std::max(top.size.width(), below.size.width());
            const double cost = std::max(wide, high * WantedAspect);
            if (leastCost == 0.0 || cost < leastCost - 1.0e-6) {
                leastCost = cost;
                bestTop = std::move(top);
                bestBelow = std::move(below);
            }
        }
        for (std::size_t k = 0; k < parts.size(); ++k) {
            for (const std::size_t i : parts[k])
                m_scene->moveMol(static_cast<int>(i), bestTop.places[k] - partRects[k].topLeft());
        }
        const QPointF down(0.0, bestTop.size.height() + PartGap);
        for (std::size_t k = 0; k < singles.size(); ++k)
            m_scene->moveMol(
                static_cast<int>(singles[k]), bestBelow.places[k] + down - cells[k].topLeft());
    }

    struct Rows
    {
        std::vector<QPointF> places; ///< top left corners
        QSizeF size;
    };

    static double totalWidth(const std::vector<QRectF> &rects)
    {
        return std::accumulate(rects.cbegin(), rects.cend(), 0.0,
            [](double sum, const QRectF &rect) { return sum + rect.width(); });
    }

    /// Side by side, each in the middle of its row's height.
    static Rows rowsOf(const std::vector<QRectF> &rects, double gap, double width)
    {
        Rows rows;
        QPointF at;
        std::size_t first = 0;
        const auto endRow = [&] {
            double height = 0.0;
            for (std::size_t k = first; k < rows.places.size(); ++k)
                height = std::max(height, rects[k].height());
            for (std::size_t k = first; k < rows.places.size(); ++k)
                rows.places[k].ry() += (height - rects[k].height()) / 2.0;
            rows.size = {std::max(rows.size.width(), at.x() - gap), at.y() + height};
            at = QPointF(0.0, at.y() + height + gap);
            first = rows.places.size();
        };
        for (const QRectF &rect : rects) {
            if (at.x() > 0.0 && at.x() + rect.width() > width)
                endRow();
            rows.places.push_back(at);
            at.rx() += rect.width() + gap;
        }
        endRow();
        return rows;
    }

    ZelSceneContactMap *m_scene;
    std::vector<DrawnBody> m_drawn;
    std::vector<BodyBond> m_bonds;
    std::set<QPair<int, int>> m_loops; // molecule and site
    std::vector<char> m_isBound;
};

} // namespace

void zel::layout::arrangeContactMap(ZelSceneContactMap *scene)
{
    if (scene && !scene->getListSdcMol().isEmpty())
        ContactMapLayout(scene).run();
}
