#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/support/zgs.h"

#include <QApplication>
#include <QDomDocument>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>

#include <cmath>

namespace {

bool near(const QPointF &a, const QPointF &b)
{
    return QLineF(a, b).length() < 1e-6;
}

} // namespace

// Turning and mirroring sets of components, and the readers of the layout XML.
class tst_ZgsGeometry : public ZelTest
{
    Q_OBJECT
private slots:
    void rotateTurnsClockwise_data()
    {
        const double half = 50.0 / std::sqrt(2.0);
        rows<double, QPointF>({"angle", "expected"},
            {{"quarter", {90.0, QPointF(0.0, 50.0)}},
                {"quarter back", {-90.0, QPointF(0.0, -50.0)}},
                {"half", {180.0, QPointF(-50.0, 0.0)}},
                {"three quarters", {270.0, QPointF(0.0, -50.0)}},
                {"eighth", {45.0, QPointF(half, half)}},
                {"many turns back", {-360.0 * 7 - 90.0, QPointF(0.0, -50.0)}}});
    }

    void rotateTurnsClockwise()
    {
        QFETCH(double, angle);
        QFETCH(QPointF, expected);
        SceneStage<OpenScene> stage;
        SdcMcp *const left = stage.addComponent({-50.0, 0.0});
        SdcMcp *const right = stage.addComponent({50.0, 0.0});
        SdcBst *const bst = stage.addSite(right, 90.0);
        // The site sticks out at the top: the joint rectangle's centre lies 3 higher.
        const QPointF pivot(0.0, -3.0);
        QVERIFY(zgs::rotate({left, right}, angle, false));
        QCOMPARE(stage.log(), "begin, end");
        const QPointF turned = QTransform().rotate(angle).map(QPointF(50.0, 3.0));
        QVERIFY(near(centreOf(right->getZelEllipseItemMcp()), pivot + turned));
        QVERIFY(QLineF(pivot + turned, expected).length() < 6.1);
        const QPointF site = QTransform().rotate(angle).map(QPointF(50.0, -27.0));
        QVERIFY(near(centreOf(bst->getZelEllipseItemBst()), pivot + site));
        QCOMPARE(bst->getZelEllipseItemBst()->rotation(), 0.0);
        if (std::fmod(angle, 90.0) != 0.0)
            return;
        QVERIFY(zgs::rotate({left, right}, -angle, false)); // and back
        QVERIFY(near(centreOf(right->getZelEllipseItemMcp()), {50.0, 0.0}));
        QVERIFY(near(centreOf(bst->getZelEllipseItemBst()), {50.0, -30.0}));
    }

    void quarterTurnsSwapExtents()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const mcp = stage.addComponent({0.0, 0.0}, {80.0, 40.0});
        QVERIFY(zgs::rotate({mcp}, -90.0, false));
        QCOMPARE(mcp->getSdcSceneRectF(), QRectF(-20.0, -40.0, 40.0, 80.0));
        QVERIFY(zgs::rotate({mcp}, 30.0, false));
        QCOMPARE(mcp->getSdcSceneRectF(), QRectF(-20.0, -40.0, 40.0, 80.0));
        QVERIFY(zgs::rotate({mcp}, 180.0, false));
        QCOMPARE(mcp->getSdcSceneRectF().size(), QSizeF(40.0, 80.0));
    }

    void flipTwice()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const a = stage.addComponent({0.0, 0.0}, {80.0, 40.0});
        SdcMcp *const b = stage.addComponent({90.0, 30.0});
        SdcBst *const bst = stage.addSite(b, 30.0);
        const QRectF joint =
            a->getSdcSceneRectF() | b->getSdcSceneRectF() | bst->getSdcSceneRectF();
        const QPointF siteBefore = centreOf(bst->getZelEllipseItemBst());
        QVERIFY(zgs::flipY({a, b}, true));
        QCOMPARE(stage.log(), "begin, end");
        QVERIFY(near(centreOf(bst->getZelEllipseItemBst()),
            {2.0 * joint.center().x() - siteBefore.x(), siteBefore.y()}));
        QVERIFY(near(a->getSdcSceneRectF().center(), {2.0 * joint.center().x(), 0.0}));
        QCOMPARE(a->getSdcSceneRectF().size(), QSizeF(80.0, 40.0));
        QVERIFY(zgs::flipY({a, b}, true));
        QVERIFY(near(centreOf(bst->getZelEllipseItemBst()), siteBefore));
    }

    void sideCodesFollow_data()
    {
        // angle: 0: mirrored
        rows<int, double, int>({"before", "angle", "after"},
            {{"quarter", {0, 90.0, 2}}, {"quarter back", {2, -90.0, 1}},
                {"half keeps it", {2, 180.0, 2}}, {"odd angle keeps it", {3, 45.0, 3}},
                {"three quarters keep it", {1, 270.0, 1}}, {"mirrored", {1, 0.0, 3}},
                {"mirrored, upright", {2, 0.0, 2}}});
    }

    void sideCodesFollow()
    {
        QFETCH(int, before);
        QFETCH(double, angle);
        QFETCH(int, after);
        SceneStage<OpenScene> stage;
        SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
        mcp->addTag("P", QString());
        mcp->addTag("Q", QString());
        mcp->setTagDirectionCode(before);
        QVERIFY(angle == 0.0 ? zgs::flipY({mcp}, false) : zgs::rotate({mcp}, angle, false));
        QCOMPARE(mcp->getTagDirectionCode(), after);
        const QList<ZelRectItemMcpSticky *> row = mcp->getListSticky();
        const bool vertical = row.first()->pos().x() == row.last()->pos().x();
        QCOMPARE(vertical, after == 2 || after == 4);
    }

    void refusal_data()
    {
        rows<bool, double>({"flip", "angle"},
            {{"eighth of a turn", {false, 45.0}}, {"quarter turn", {false, 90.0}},
                {"mirror", {true, 0.0}}});
    }

    void refusal()
    {
        QFETCH(bool, flip);
        QFETCH(double, angle);
        SceneStage<OpenScene> stage;
        SdcMol foreign(nullptr);
        SdcMcp *const a = stage.addComponent({0.0, 0.0});
        SdcMcp *const b = stage.addComponent({100.0, 0.0}, {40.0, 40.0});
        SdcBst *const bst = stage.addSite(b, 0.0);
        b->addTag("P", QString());
        b->setTagSize(5.0);
        // Strangers where the set would come to lie.
        stage.addComponent({85.0, 60.0}, {50.0, 50.0}, &foreign);
        stage.addComponent({45.0, 70.0}, {50.0, 50.0}, &foreign);
        stage.addComponent({-15.0, 40.0}, {60.0, 15.0}, &foreign);
        stage.addComponent({-15.0, -34.0}, {60.0, 10.0}, &foreign);
        stage.addComponent({88.0, 33.0}, {60.0, 15.0}, &foreign);
        const QPointF aBefore = a->getZelEllipseItemMcp()->pos();
        const QPointF bBefore = b->getZelEllipseItemMcp()->pos();
        const QPointF siteBefore = bst->getZelEllipseItemBst()->pos();
        QString text;
        int icon = -1;
        QTimer::singleShot(0, this, [&] {
            auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            text = box->text();
            icon = box->icon();
            box->accept();
        });
        QSignalSpy refused(qobject_cast<ZelScene *>(a->getZelEllipseItemMcp()->scene()),
            &ZelScene::signal_refused);
        QVERIFY(!(flip ? zgs::flipY({a, b}, true) : zgs::rotate({a, b}, angle, true)));
        const QString verb = flip ? "flip" : "rotate";
        QCOMPARE(text,
            QStringLiteral(
                "Collision has been detected. Can't %1. Try to move the item(s) away from "
                "the other(s) and %1 again.")
                .arg(verb));
        QCOMPARE(icon, int(QMessageBox::Information));
        QCOMPARE(refused, QList<QVariantList>{{text}});
        QCOMPARE(a->getZelEllipseItemMcp()->pos(), aBefore);
        QCOMPARE(b->getZelEllipseItemMcp()->pos(), bBefore);
        QCOMPARE(bst->getZelEllipseItemBst()->pos(), siteBefore);
        QCOMPARE(b->getTagSize(), 5.0);
        QCOMPARE(stage.log(), "");
        QVERIFY(flip ? zgs::flipY({a, b}, false) : zgs::rotate({a, b}, angle, false));
    }

    void collisionWithinTheSetIsNone()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const a = stage.addComponent({0.0, 0.0});
        SdcMcp *const b = stage.addComponent({20.0, 0.0});
        QVERIFY(!zgs::collidingWithOtherEllipse({a, b}));
        QVERIFY(zgs::collidingWithOtherEllipse({a}));
        QVERIFY(!zgs::collidingWithOtherEllipse({}));
        QVERIFY(zgs::rotate({a, b}, 90.0, true));
    }

    void nothingToTurn()
    {
        QVERIFY(!zgs::rotate({}, 90.0, true));
        SdcMcp bare(nullptr);
        QVERIFY(!zgs::rotate({&bare}, 90.0, true));
        QVERIFY(!zgs::flipY({&bare}, true));
        QVERIFY(zgs::collidingWithOtherEllipse({&bare}));
        QCOMPARE(takeDebugText(),
            "Error found at bool zgs::collidingWithOtherEllipse(const QList<SdcMcp *> & "
            "listSdcMcp) ");
        SceneStage<OpenScene> stage;
        SdcMcp *const mcp = stage.addComponent({10.0, 0.0});
        QVERIFY(!zgs::rotate({mcp}, qQNaN(), false));
        QVERIFY(zgs::rotate({mcp, nullptr, &bare}, 90.0, true)); // what is not drawn is passed over
        QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(10.0, 0.0));
    }

    void boundingRect_data()
    {
        rows<QString, QRectF>({"xml", "expected"},
            {{"whole",
                 {QStringLiteral(R"(<boundingRect x="1.5" y="-2" w="30" h="4e1"/>)"),
                     QRectF(1.5, -2.0, 30.0, 40.0)}},
                {"without a width",
                    {QStringLiteral(R"(<boundingRect x="1" y="2" h="4"/>)"),
                        QRectF(1.0, 2.0, 0.0, 4.0)}},
                {"malformed",
                    {QStringLiteral(R"(<boundingRect x="1,5" y="b" w="3" h="4"/>)"),
                        QRectF(0.0, 0.0, 3.0, 4.0)}}});
    }

    void boundingRect()
    {
        QFETCH(QString, xml);
        QFETCH(QRectF, expected);
        QDomDocument doc;
        QVERIFY(doc.setContent(xml));
        QCOMPARE(zgs::getBoundingRectFromElt(doc.documentElement()), expected);
        QVERIFY(zgs::getBoundingRectFromElt(QDomElement()).isNull());
        QCOMPARE(takeDebugText(),
            "Error found at QRectF zgs::getBoundingRectFromElt(const QDomElement & "
            "domEltBoundingRect)");
    }

    void childAtPosIndex()
    {
        QDomDocument doc;
        QVERIFY(doc.setContent(QStringLiteral(
            R"(<mol><mcp posIndex="1" n="a"/><bst posIndex="0" n="b"/><mcp posIndex="0" n="c"/>)"
            R"(<mcp posIndex="2"/><mcp posIndex="2"/><x><mcp posIndex="3"/></x></mol>)")));
        const QDomElement mol = doc.documentElement();
        const auto find = [&](const char *index) {
            return zgs::getEltChildSdcAtPosIndex(mol, "mcp", QString::fromLatin1(index));
        };
        QCOMPARE(find("0").attribute("n"), "c");
        QCOMPARE(find("1").attribute("n"), "a");
        const QString signature = QStringLiteral(
            "Error found at QDomElement zgs::getEltChildSdcAtPosIndex(const QDomElement & domElt, "
            "const QString & childTag, const QString & posIndex)");
        QVERIFY(find("2").isNull());
        QCOMPARE(takeDebugLines(),
            QStringList{signature + QStringLiteral(" multiple records with same posIndex")});
        for (const char *missing : {"3", "00", ""}) {
            QVERIFY(find(missing).isNull());
            QCOMPARE(takeDebugLines(), QStringList{signature + QStringLiteral(": not found")});
        }
    }

    void operatorWidth()
    {
        QCOMPARE(zgs::getOperatorWidth(QSize(0, 5)), 10);
        QCOMPARE(zgs::getOperatorWidth(QSize(21, 5)), 10);
        QCOMPARE(zgs::getOperatorWidth(QSize(22, 5)), 11);
        QCOMPARE(zgs::getOperatorWidth(QSize(101, 5)), 50);
    }
};

ZEL_TEST(tst_ZgsGeometry)
#include "tst_ZgsGeometry.moc"
