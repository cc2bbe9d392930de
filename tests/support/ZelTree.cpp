#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <cmath>
#include <map>
#include <numbers>

namespace {

QString number(double value)
{
    return QString::number(std::round(value * 100.0) / 100.0 + 0.0, 'f', 2);
}

QString rectText(const QRectF &r)
{
    return QStringLiteral("(%1 %2 %3 %4)")
        .arg(number(r.x()), number(r.y()), number(r.width()), number(r.height()));
}

QString propertiesText(Sdc *sdc)
{
    const QHash<int, QString> hash = sdc->getProperties();
    std::map<int, QString> sorted;
    for (auto it = hash.cbegin(); it != hash.cend(); ++it) {
        if (!it.value().isEmpty())
            sorted.emplace(it.key(), it.value());
    }
    QString text;
    for (const auto &[key, value] : sorted)
        text += QStringLiteral(" %1='%2'").arg(key).arg(value);
    return text;
}

void write(Sdc *sdc, int depth, QString *out)
{
    const QString indent(depth * 2, u' ');
    if (!sdc) {
        *out += indent + QStringLiteral("null\n");
        return;
    }
    *out += indent + sdc->text() + propertiesText(sdc) + u' ' + rectText(sdc->getSdcSceneRectF())
        + u'\n';
    if (SdcMcp *mcp = sdc->toSdcMcp()) {
        *out += indent
            + QStringLiteral("  side %1 size %2 gap %3, next to")
                  .arg(mcp->getTagDirectionCode())
                  .arg(number(mcp->getTagSize()), number(mcp->getTagGap()));
        QStringList neighbors;
        for (SdcMcp *neighbor : mcp->getListNeighborSdcMcps())
            neighbors.append(QString::number(neighbor->getPosIndex()));
        neighbors.sort();
        *out += u' ' + neighbors.join(u' ') + u'\n';
        for (SdcMcpTag *tag : mcp->getListSdcMcpTags()) {
            ZelRectItemMcpSticky *const sticky = tag->getZelRectItemMcpSticky();
            *out += indent + QStringLiteral("  tag") + propertiesText(tag);
            if (sticky)
                *out += u' ' + sticky->getName() + u' ' + sticky->getColor().name() + u' '
                    + sticky->getStateTypeName() + u' '
                    + rectText(sticky->mapRectToScene(sticky->rect()));
            *out += u'\n';
        }
    }
    if (SdcBst *bst = sdc->toSdcBst())
        *out += indent
            + QStringLiteral("  label %1 status %2\n")
                  .arg(bst->getBstLabelText(), bst->getBindingStatusName());
    for (Sdc *child : sdc->getListSdcChildren())
        write(child, depth + 1, out);
}

SdcMol *build(ZelDbSqliteModel *db, const QString &name, const QList<ZelTree::Mcp> &mcps,
    ZelScene *scene, bool drawn)
{
    auto *mol = new SdcMol(db);
    mol->setProperty(SdcProperty::ShortName, name);
    ZelEllipseItemMcp *before = nullptr;
    double x = 0.0;
    for (const ZelTree::Mcp &description : mcps) {
        auto *mcp = new SdcMcp(db);
        mcp->setProperty(SdcProperty::ShortName, description.name);
        ZelEllipseItemMcp *item = nullptr;
        const QRectF rect(x, -20.0, 60.0, 40.0);
        if (drawn) {
            item = scene ? scene->addMcp(rect) : ZelScene::createMcp(rect);
            item->setSdcMcp(mcp);
        }
        mol->addSdcMcp(mcp);
        for (const QString &feature : description.features) {
            if (drawn)
                mcp->addTag(feature, QStringLiteral("#336699"));
        }
        for (int i = 0; i < description.sites; ++i) {
            auto *bst = new SdcBst(db);
            if (drawn) {
                const double angle = 2.0 * std::numbers::pi * i / description.sites;
                const QRectF site(rect.center()
                        + QPointF(std::cos(angle) * 30.0 - 6.0, std::sin(angle) * 20.0 - 6.0),
                    QSizeF(12.0, 12.0));
                (scene ? scene->addBst(site, item) : ZelScene::createBst(site, item))
                    ->setSdcBst(bst);
            }
            mcp->addSdcBst(bst);
        }
        if (drawn && before) {
            if (scene)
                scene->drawBackBones(before, item);
            else
                ZelScene::createBackBone(before, item);
        }
        before = item;
        x += 80.0;
    }
    return mol;
}

} // namespace

QString ZelTree::text(Sdc *sdc)
{
    QString out;
    write(sdc, 0, &out);
    return out;
}

SdcMol *ZelTree::molecule(
    ZelDbSqliteModel *db, const QString &name, const QList<Mcp> &mcps, ZelScene *scene)
{
    return build(db, name, mcps, scene, true);
}

SdcMol *ZelTree::bareMolecule(ZelDbSqliteModel *db, const QString &name, const QList<Mcp> &mcps)
{
    return build(db, name, mcps, nullptr, false);
}
