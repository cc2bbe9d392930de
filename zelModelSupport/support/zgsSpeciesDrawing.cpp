#include "zelModelSupport/support/zgsSpeciesDrawing.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/graphics/paint/ZelItemPainting.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCode.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXml.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXmlScanner.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcMolType.h"

#include <QGraphicsLineItem>
#include <QPainter>

#include <algorithm>
#include <memory>
#include <utility>

namespace zgs {

using namespace zel::drawing;

namespace {

QRectF centred(const QSizeF &size)
{
    return {QPointF(-size.width() / 2.0, -size.height() / 2.0), size};
}

/// Whether the layout names exactly these components, in this order, and gives each a place.
bool matches(const QList<SdcLayout> &layouts, int sdcType, const QStringList &psiimIds)
{
    if (layouts.size() != psiimIds.size())
        return false;
    for (qsizetype i = 0; i < layouts.size(); ++i) {
        const SdcLayout &layout = layouts.at(i);
        if (layout.sdcType != sdcType || layout.posIndex != i || layout.psiimId != psiimIds.at(i)
            || !layout.rect)
            return false;
    }
    return true;
}

} // namespace

/// One drawing while it is put together: what a scene does with items on loading an alias.
class SpeciesDrawing::Builder
{
public:
    explicit Builder(ZelDbSqliteModel *db) : m_db(db), m_types(db) { }

    bool build(const QString &cpaPsiimId)
    {
        const ZelDbRecord alias = m_db->cpaGetHashInfo(cpaPsiimId);
        const QString cpx = alias.value(ZelDbColumn::CpaCpx);
        const QString xml = ZelDbSqlite::getGraphicsInfo(QStringLiteral("cpx"), cpx, m_db);
        QString error;
        const SdcLayout layout = SdcLayout::fromXml(xml, SdcType::Cpx, &error);
        const QStringList molIds = m_db->cpxGetListMolPsiimId(cpx);
        if (layout.isNull() || !layout.rect || layout.psiimId != cpx
            || !matches(layout.children, SdcType::Mol, molIds))
            return false;
        for (const QString &id : molIds) {
            m_mols.push_back({m_types.read(id), {}, {}});
            if (!m_mols.back().type || m_mols.back().type->isDamaged)
                return false;
            m_mols.back().states.resize(static_cast<std::size_t>(m_mols.back().type->mcps.size()));
        }
        const QString stateCode = alias.value(ZelDbColumn::CpaStateCode); // parts of it are kept
        if (!stateCode.isEmpty() && !readStates(stateCode))
            return false;
        const QPointF origin = layout.topLeft - layout.rect->center();
        for (std::size_t i = 0; i < m_mols.size(); ++i) {
            if (!addMol(&m_mols[i], layout.children.at(static_cast<qsizetype>(i)), origin))
                return false;
        }
        return addBonds(cpx);
    }

    SpeciesDrawing take() { return std::move(m_drawing); }

private:
    /// What a state code says of a component.
    struct McpStates
    {
        QStringView states;
        bool isNegated = false;
    };

    struct Site
    {
        QString psiimId;
        QRectF sceneRect;
    };

    struct Mol
    {
        std::shared_ptr<const SdcMolType> type;
        std::vector<McpStates> states; // of each component
        std::vector<Site> sites;
    };

    bool readStates(const QString &code)
    {
        if (!SdcXml::refusal(code).isEmpty())
            return false;
        SdcXmlScanner scanner(code);
        if (!scanner.readRoot())
            return false;
        while (scanner.readChild()) {
            if (scanner.qualifiedName() != u"mol") {
                scanner.skipElement();
                continue;
            }
            const int pos = scanner.attributes().value(QLatin1String("pos")).toInt();
            if (pos < 1 || pos > static_cast<int>(m_mols.size())
                || !readMolStates(&scanner, &m_mols[static_cast<std::size_t>(pos) - 1]))
                return false;
        }
        scanner.readToEnd();
        return scanner.isPlain();
    }

    static bool readMolStates(SdcXmlScanner *scanner, Mol *mol)
    {
        while (scanner->readChild()) {
            if (scanner->qualifiedName() != u"mcp") {
                scanner->skipElement();
                continue;
            }
            const SdcXmlScanner::Attributes &attributes = scanner->attributes();
            const int pos = attributes.value(QLatin1String("pos")).toInt();
            if (pos < 1 || pos > static_cast<int>(mol->states.size()))
                return false;
            McpStates &states = mol->states[static_cast<std::size_t>(pos) - 1];
            const QStringView text = attributes.value(QLatin1String("states"));
            if (!text.isEmpty())
                states.states = text;
            states.isNegated = attributes.value(QLatin1String("not")) == u"1";
            while (scanner->readChild()) {
                if (scanner->qualifiedName() == u"bst"
                    && !hasSite(*mol, scanner->attributes().value(QLatin1String("id"))))
                    return false;
                scanner->skipElement();
            }
        }
        return true;
    }

    static bool hasSite(const Mol &mol, QStringView psiimId)
    {
        return std::any_of(mol.type->mcps.cbegin(), mol.type->mcps.cend(),
            [psiimId](const SdcMolType::Mcp &mcp) { return mcp.bstPsiimIds.contains(psiimId); });
    }

    bool addMol(Mol *mol, const SdcLayout &layout, const QPointF &complexOrigin)
    {
        const SdcMolType &type = *mol->type;
        if (layout.children.size() != type.mcps.size())
            return false;
        const QPointF origin = complexOrigin + layout.topLeft;
        QList<QRectF> rects;
        for (qsizetype i = 0; i < type.mcps.size(); ++i) {
            const SdcLayout &place = layout.children.at(i);
            if (place.sdcType != SdcType::Mcp || place.posIndex != i || !place.rect
                || place.psiimId != type.mcps.at(i).psiimId
                || !matches(place.children, SdcType::Bst, type.mcps.at(i).bstPsiimIds))
                return false;
            rects.append(place.rect->translated(origin));
        }
        const QBrush brush(type.color);
        for (int i = 0; i < rects.size(); ++i) {
            addBackbones(type, i, rects);
            const QRectF &rect = rects.at(i);
            const QRectF own = centred(rect.size());
            m_drawing.add({Shape::Component, rect.center(), own, {}, m_rimPen, brush, {}}, own);
            const SdcLayout &place = layout.children.at(i);
            addSites(mol, i, place, rect, brush);
            if (!addStickies(
                    type.mcps.at(i), mol->states[static_cast<std::size_t>(i)], place, rect))
                return false;
        }
        return true;
    }

    // As the items do it, from the rectangles about their origins: on the last digit may depend
    // whether a line touches a rim, or has room for one more dot.
    static QRectF sceneRect(const QRectF &rect)
    {
        return centred(rect.size()).translated(rect.center());
    }

    // A line belongs to the first of its components and lies below that.
    void addBackbones(const SdcMolType &type, int mcp, const QList<QRectF> &rects)
    {
        for (const auto &[first, second] : type.backbones) {
            if (first != mcp)
                continue;
            const QPointF pos = rects.at(first).center();
            const QLineF line = zel::geometry::rimToRimLine(
                sceneRect(rects.at(first)), sceneRect(rects.at(second)));
            addLine(pos, {line.p1() - pos, line.p2() - pos}, m_backbonePen);
        }
    }

    void addSites(
        Mol *mol, int mcp, const SdcLayout &layout, const QRectF &mcpRect, const QBrush &brush)
    {
        const QStringList &ids = mol->type->mcps.at(mcp).bstPsiimIds;
        for (qsizetype i = 0; i < ids.size(); ++i) {
            const QRectF rect = layout.children.at(i).rect->translated(mcpRect.topLeft());
            const QPointF pos = mcpRect.center() + (rect.center() - mcpRect.center());
            const QRectF own = centred(rect.size());
            mol->sites.push_back({ids.at(i), own.translated(pos)});
            m_drawing.add(
                {Shape::Site, pos, own, {}, m_rimPen, brush, QString::number(mol->sites.size())},
                own);
        }
    }

    bool addStickies(const SdcMolType::Mcp &mcp, const McpStates &states, const SdcLayout &layout,
        const QRectF &mcpRect)
    {
        if (mcp.states.isEmpty() && !states.isNegated)
            return true;
        if (!layout.tagSizeAndGap)
            return false;
        const auto [side, gap] = *layout.tagSizeAndGap;
        if (side == 0.0)
            return false; // a row that has no measure yet
        const QPointF pos = mcpRect.center();
        const QRectF square(0.0, 0.0, side, side);
        const QList<QRectF> places =
            zel::geometry::rowRects(centred(mcpRect.size()), static_cast<int>(mcp.states.size()),
                {side, zel::geometry::rowGap(side, gap)}, layout.tagDirectionCode);
        const QList<QStringView> parts = states.states.split(u';', Qt::SkipEmptyParts);
        QRectF covered = sceneRect(mcpRect);
        for (qsizetype i = 0; i < mcp.states.size(); ++i) {
            const int state =
                i < parts.size() ? SdcCpxStateCode::stateOf(parts.at(i)) : ComponentStateDontCare;
            Shape shape{Shape::Sticky, pos + places.at(i).topLeft(), square, {}, m_stickyPen,
                QColor(StickyColor), {}, zel::painting::stickyOpacity(state)};
            if (const QColor &color = mcp.states.at(i).color; color.isValid())
                shape.pen.setColor(color);
            zel::painting::setStickyState(state, &shape.pen, &shape.brush);
            const double reach = shape.pen.widthF() / 2.0;
            const QRectF own = square.adjusted(-reach, -reach, reach, reach);
            covered |= own.translated(shape.pos);
            m_drawing.add(std::move(shape), own);
        }
        if (states.isNegated)
            addNegation(pos, covered);
        return true;
    }

    void addNegation(const QPointF &pos, const QRectF &covered)
    {
        const QRectF own = covered.translated(-pos);
        const QPolygonF corners(
            {own.topLeft(), own.topRight(), own.bottomRight(), own.bottomLeft()});
        for (const QLineF &line : zel::geometry::negationStrokes(corners, NotIndicatorOverhang)) {
            QGraphicsLineItem item(line);
            item.setPen(notIndicatorPen());
            m_drawing.add({Shape::Line, pos, {}, line, item.pen(), {}, {}, NotIndicatorOpacity},
                item.boundingRect());
        }
    }

    bool addBonds(const QString &cpx)
    {
        const QList<QStringList> bonds = m_db->cpxGetArrayBstBst(cpx);
        for (const QStringList &bond : bonds) {
            const Site *const first = site(bond.at(0), bond.at(1));
            const Site *const second = site(bond.at(2), bond.at(3));
            if (!first || !second)
                return false;
            addLine({}, zel::geometry::bondLine(first->sceneRect, second->sceneRect), m_bondPen);
        }
        return true;
    }

    const Site *site(const QString &molPos, const QString &psiimId) const
    {
        bool isNumber = false;
        const int pos = molPos.toInt(&isNumber);
        if (!isNumber || pos < 0 || pos >= static_cast<int>(m_mols.size()))
            return nullptr;
        const std::vector<Site> &sites = m_mols[static_cast<std::size_t>(pos)].sites;
        const auto found = std::find_if(sites.cbegin(), sites.cend(),
            [&psiimId](const Site &entry) { return entry.psiimId == psiimId; });
        return found == sites.cend() ? nullptr : &*found;
    }

    void addLine(const QPointF &pos, const QLineF &line, const QPen &pen)
    {
        m_drawing.add(
            {Shape::Line, pos, {}, line, pen, {}, {}}, zel::painting::lineBounds(line, pen));
    }

    ZelDbSqliteModel *m_db;
    SdcMolType::Reader m_types;
    std::vector<Mol> m_mols;
    const QPen m_rimPen;
    const QPen m_backbonePen = backbonePen();
    const QPen m_bondPen = bondCpxPen();
    const QPen m_stickyPen = stickyPen();
    SpeciesDrawing m_drawing;
};

std::optional<SpeciesDrawing> SpeciesDrawing::ofAlias(
    const QString &cpaPsiimId, ZelDbSqliteModel *db)
{
    Builder builder(db);
    if (!builder.build(cpaPsiimId))
        return std::nullopt;
    return builder.take();
}

void SpeciesDrawing::paint(QPainter *painter) const
{
    const QTransform base = painter->worldTransform();
    for (const Shape &shape : m_shapes) {
        painter->setWorldTransform(QTransform::fromTranslate(shape.pos.x(), shape.pos.y()) * base);
        painter->setOpacity(shape.opacity);
        switch (shape.kind) {
        case Shape::Component:
            zel::painting::paintEllipse(painter, shape.rect, shape.pen, shape.brush);
            break;
        case Shape::Site:
            zel::painting::paintEllipse(painter, shape.rect, shape.pen, shape.brush);
            zel::painting::paintSiteLabel(
                painter, shape.label, shape.rect, textColorOn(shape.brush));
            break;
        case Shape::Sticky:
            zel::painting::paintSticky(painter, shape.rect, shape.pen, shape.brush);
            break;
        case Shape::Line:
            painter->setPen(shape.pen);
            painter->drawLine(shape.line);
            break;
        }
    }
    painter->setOpacity(1.0);
    painter->setWorldTransform(base);
}

void SpeciesDrawing::add(Shape &&shape, const QRectF &ownBounds)
{
    m_bounds |= ownBounds.translated(shape.pos);
    m_shapes.push_back(std::move(shape));
}

} // namespace zgs
