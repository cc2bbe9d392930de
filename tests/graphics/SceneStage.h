#pragma once

#include "support/ZelHands.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QHash>
#include <QLineF>
#include <QTest>

#include <utility>

/// A scene whose hooks a test chooses.
class OpenScene : public ZelScene
{
public:
    bool moves = false;
    bool changesLayout = false;
    bool changesRelativePos = false;
    bool movesGroup = false;

    bool toMove() const override { return moves; }
    bool toChangeLayout() const override { return changesLayout; }
    bool allowToChangeRelativePos() const override { return changesRelativePos; }
    bool toMoveGroup() const override { return movesGroup; }
};

/// A scene on a shown view with one molecule.
template <typename Scene>
class SceneStage : public ZelHands
{
public:
    SceneStage()
    {
        view().setScene(&m_scene);
        m_scene.setSdc(&m_mol);
        logSignals();
    }

    /// What the scene has said since the last call, in its order: "pressed s, clicked s". The
    /// stage's components are a, b, c..., its sites s, t, u..., features go by their names.
    QString log() { return std::exchange(m_log, {}).join(QLatin1String(", ")); }

    Scene &scene() { return m_scene; }
    SdcMol &mol() { return m_mol; }

    SdcMcp *addComponent(
        const QPointF &centre, const QSizeF &size = {60.0, 60.0}, SdcMol *mol = nullptr)
    {
        QRectF rect(QPointF(), size);
        rect.moveCenter(centre);
        auto *mcp = new SdcMcp(nullptr);
        m_scene.addMcp(rect)->setSdcMcp(mcp);
        (mol ? mol : &m_mol)->addSdcMcp(mcp);
        m_names.insert(mcp, QChar(m_nextComponent++));
        return mcp;
    }

    /// A site on the rim, at an angle counter-clockwise from the right.
    SdcBst *addSite(SdcMcp *mcp, double angle, double size = 12.0)
    {
        ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
        const QPointF way = QLineF::fromPolar(item->rect().width() / 2.0, angle).p2();
        QRectF rect(0.0, 0.0, size, size);
        rect.moveCenter(item->scenePos() + way);
        auto *bst = new SdcBst(nullptr);
        m_scene.addBst(rect, item)->setSdcBst(bst);
        mcp->addSdcBst(bst);
        m_names.insert(bst, QChar(m_nextSite++));
        return bst;
    }

    void join(SdcMcp *a, SdcMcp *b)
    {
        m_scene.drawBackBones(a->getZelEllipseItemMcp(), b->getZelEllipseItemMcp());
    }

private:
    QString nameOf(ZelGItem *item) const
    {
        if (item && item->asRectItemMcpSticky())
            return item->asRectItemMcpSticky()->getName();
        return item ? m_names.value(item->getSdc(), QStringLiteral("?")) : QStringLiteral("null");
    }

    template <typename... Arguments, typename Text>
    void logSignal(void (ZelScene::*signal)(Arguments...), Text text)
    {
        QObject::connect(&m_scene, signal, &m_scene,
            [this, text](Arguments... arguments) { m_log.append(text(arguments...)); });
    }

    void logSignals()
    {
        const auto plain = [](const char *word) { return [word] { return QString(word); }; };
        const auto ofItem = [this](const char *word) {
            return [this, word](ZelGItem *item) { return word + nameOf(item); };
        };
        logSignal(&ZelScene::zelGItemPressed, ofItem("pressed "));
        logSignal(&ZelScene::zelGItemClicked, ofItem("clicked "));
        logSignal(&ZelScene::zelGItemDoubleClicked, ofItem("double "));
        logSignal(&ZelScene::signal_ZelGItemMoved, ofItem("moved "));
        logSignal(&ZelScene::signal_moved, plain("moved"));
        logSignal(&ZelScene::noGItemClicked, plain("nothing"));
        logSignal(&ZelScene::signal_changed, plain("changed"));
        logSignal(&ZelScene::signal_changeBegin, plain("begin"));
        logSignal(&ZelScene::signal_changeEnd, plain("end"));
        logSignal(&ZelScene::zelEllipseItemCollided,
            [this](ZelEllipseItem *first, ZelEllipseItem *second) {
                return "collided " + nameOf(first) + u' ' + nameOf(second);
            });
        logSignal(
            &ZelScene::signal_setStickyState, [this](ZelRectItemMcpSticky *sticky, int state) {
                return nameOf(sticky) + u'=' + QString::number(state);
            });
        logSignal(&ZelScene::signal_setNegation, [this](SdcMcp *mcp, bool negated) {
            return m_names.value(mcp) + (negated ? "=not" : "=plain");
        });
        logSignal(&ZelScene::signal_setBstBindingStatus, [this](SdcBst *bst, BindingStatusType s) {
            return m_names.value(bst) + u'=' + QString::number(s);
        });
        logSignal(&ZelScene::signal_showRelatedMli,
            [](const QString &molPsiimId) { return "interactions of " + molPsiimId; });
    }

    QStringList m_log;
    QHash<Sdc *, QString> m_names;
    char16_t m_nextComponent = u'a';
    char16_t m_nextSite = u's';
    Scene m_scene;
    SdcMol m_mol{nullptr};
};

inline QPointF centreOf(ZelEllipseItem *item)
{
    return item->sceneBoundingRect().center();
}

inline double distance(ZelEllipseItem *a, ZelEllipseItem *b)
{
    return QLineF(centreOf(a), centreOf(b)).length();
}

/// A round component at the origin with one site on its right: a and s.
struct RimStage : SceneStage<OpenScene>
{
    SdcMcp *const mcp = addComponent({0.0, 0.0});
    SdcBst *const bst = addSite(mcp, 0.0);
    ZelEllipseItemMcp *const centre = mcp->getZelEllipseItemMcp();
    ZelEllipseItemBst *const site = bst->getZelEllipseItemBst();
};
