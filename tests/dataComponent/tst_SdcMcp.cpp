#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QSignalSpy>

#include <memory>
#include <numbers>

namespace {

/// A component with an ellipse item of its own.
struct Drawn
{
    std::unique_ptr<ZelEllipseItemMcp> item{ZelScene::createMcp(QRectF(0, 0, 60, 40))};
    SdcMcp mcp;

    explicit Drawn(const QStringList &features, ZelDbSqliteModel *db = nullptr) : mcp(db)
    {
        item->setSdcMcp(&mcp);
        for (const QString &feature : features)
            mcp.addTag(feature, "#336699");
    }
    QStringList names() const
    {
        QStringList list;
        for (ZelRectItemMcpSticky *sticky : mcp.getListSticky())
            list.append(sticky->getName() + u'/' + QString::number(sticky->getStateType()));
        return list;
    }
};

} // namespace

class tst_SdcMcp : public ZelTest
{
    Q_OBJECT
private slots:
    void directionCodes_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        const int expected[3][5] = {{2, 2, 3, 4, 1}, {4, 4, 1, 2, 3}, {3, 3, 2, 1, 4}};
        for (int type = 0; type < 3; ++type) {
            for (int from = 0; from < 5; ++from)
                QTest::addRow("type %d from %d", type, from)
                    << type << from << expected[type][from];
        }
        QTest::newRow("unknown type") << 3 << 1 << 1;
        QTest::newRow("negative type") << -1 << 2 << 2;
        QTest::newRow("unknown side") << 0 << 5 << 5;
        QTest::newRow("negative side") << 2 << -1 << -1;
        QTest::newRow("both unknown: the type is told") << 7 << 9 << 9;
    }

    void directionCodes()
    {
        QFETCH(int, type);
        QFETCH(int, from);
        QFETCH(int, to);
        SdcMcp mcp(nullptr);
        mcp.setTagDirectionCode(from);
        mcp.changeTagDirectionCode(type);
        QCOMPARE(mcp.getTagDirectionCode(), to);
        QStringList lines;
        if (type < 0 || type > 2)
            lines.append("Error found at void SdcMcp::changeTagDirectionCode(int "
                         "directionChageType)");
        else if (from < 0 || from > 4)
            lines.append("Error plug90 at void SdcMcp::changeTagDirectionCode(int "
                         "directionChageType)");
        QCOMPARE(takeDebugLines(), lines);
    }

    void stateCodeFollowsTheStickies()
    {
        Drawn d({"P", "Q", "R"});
        d.item->getSticky("Q")->setStateType(1, false);
        d.item->getSticky("R")->setStateType(4, false);
        QCOMPARE(d.mcp.getMcpStateCode(), "P;Q(-);R(0)");
        QVERIFY(d.mcp.hasMultipleTagsNotDontCare());
        d.item->getSticky(0)->setStateType(4, false);
        QVERIFY(!d.mcp.hasMultipleTagsNotDontCare());
        d.mcp.updateStatePropertyFromSticky();
        QCOMPARE(d.mcp.getProperty(9), "P(0);Q(-);R(0)");
        d.mcp.setAllMcpFeatureValue(ComponentStateOn);
        QCOMPARE(d.mcp.getProperty(9), "P;Q;R");
        SdcMcp bare(nullptr);
        bare.updateStatePropertyFromSticky();
        QCOMPARE(bare.getMcpStateCode(), QString());
        QVERIFY(!bare.hasProperty(9));
    }

    void aFeatureIsNamedListedAndRemovable()
    {
        SdcMcpTagSet set(nullptr);
        Drawn d({});
        d.mcp.setSdcMcpTagSet(&set);
        d.mcp.addTag("P", "#ff0000");
        d.mcp.addTag("Q", "no colour");
        SdcMcpTag *const tag = d.mcp.getListSdcMcpTags().first();
        QCOMPARE(tag->getProperty(2), "P");
        QCOMPARE(tag->getZelRectItemMcpSticky()->getColor(), QColor(255, 0, 0));
        QCOMPARE(d.item->getSticky(1)->getColor(), QColor(Qt::lightGray));
        QCOMPARE(set.getListSdcMcpTags(), d.mcp.getListSdcMcpTags());
        QVERIFY(!d.mcp.isUniqueTag(" P ", nullptr));
        QVERIFY(d.mcp.isUniqueTag("P", tag));
        QVERIFY(d.mcp.isUniqueTag("p", nullptr));
        QVERIFY(!d.mcp.isUniqueTag("  ", nullptr));

        QSignalSpy changed(&d.mcp, &Sdc::signal_changed);
        tag->setProperty(2, "pY");
        QCOMPARE(d.item->getSticky(0)->getName(), "pY");
        QCOMPARE(changed.size(), 1);
        tag->setProperty(3, "other");
        QCOMPARE(d.item->getSticky(0)->getName(), "pY");

        d.item->removeStateSticky(d.item->getSticky(0));
        QCOMPARE(d.names(), QStringList({"Q/2"}));
        QCOMPARE(d.mcp.getListSdcMcpTags().size(), 1);
        QCOMPARE(set.getListSdcMcpTags().size(), 1);
    }

    void aFeatureNeedsAnItem()
    {
        SdcMcp mcp(nullptr);
        mcp.addTag("P", "red");
        QCOMPARE(takeDebugLines().size(), 1);
        QVERIFY(mcp.getListSdcMcpTags().isEmpty());
    }

    void stickiesBecomeThoseOfTheStoredType()
    {
        ZelDbSqlite database;
        QVERIFY(database.create(":memory:"));
        ZelDbSqliteModel db(&database);
        QVERIFY(db.molInsert({{ZelDbColumn::PsiimId, "mol1"}}));
        QVERIFY(
            db.mcpInsert({{ZelDbColumn::PsiimId, "mcp1"}, {ZelDbColumn::OwnerPsiimId, "mol1"}}));
        int index = 0;
        for (const char *name : {"A", "B", "C"})
            QVERIFY(db.mcpInsertState("mcp1", QString::fromLatin1(name), "#010203", index++));
        Drawn d({"X", "C", "A"}, &db);
        d.mcp.setProperty(1, "mcp1");
        d.mcp.setAllStickyState(4);
        d.mcp.updateStatePropertyFromSticky();
        QCOMPARE(takeDebugText(),
            "name =  \"X\" , and dbName =  \"A\"\n"
            "name =  \"C\" , and dbName =  \"B\"\n"
            "name =  \"A\" , and dbName =  \"C\"");
        d.mcp.updateStickyFromDbAsActivated();
        QCOMPARE(d.names(), QStringList({"A/2", "B/2", "C/2"}));
        QCOMPARE(d.item->getSticky(1)->getColor(), QColor(1, 2, 3));
        QStringList tags;
        for (SdcMcpTag *tag : d.mcp.getListSdcMcpTags())
            tags.append(tag->getProperty(2));
        QCOMPARE(tags, QStringList({"A", "B", "C"}));
        d.mcp.updateStatePropertyFromSticky(); // names agree now: no line
    }

    void stickiesWithoutDatabase()
    {
        Drawn d({"P"});
        d.mcp.updateStickyFromDbAsActivated();
        QCOMPARE(takeDebugText(), "Error found at void SdcMcp::updateStickyFromDbAsActivated()");
        QCOMPARE(d.names(), QStringList({"P/2"}));
    }

    void anglesPointAtNeighboursAndSites()
    {
        ZelScene scene(nullptr);
        const std::unique_ptr<SdcMol> mol(
            ZelTree::molecule(nullptr, "M", {{"a", {}, 0}, {"b", {}, 4}}, &scene));
        SdcMcp *const b = mol->getSdcMcpAtIndex(1);
        const QHash<Sdc *, double> angles = b->getHashSdc2AngleAroundThis();
        QCOMPARE(angles.size(), 5);
        QCOMPARE(std::abs(angles.value(mol->getSdcMcpAtIndex(0))), std::numbers::pi);
        QCOMPARE(angles.value(b->getChildSdcAtIndex(0)), 0.0);
        // The second site is drawn below: on screen the angle runs counter-clockwise.
        QCOMPARE(angles.value(b->getChildSdcAtIndex(1)), -std::numbers::pi / 2.0);
        QCOMPARE(b->getNumOfNeigbhors(), 1);
    }

    void removedSitesAreAnnounced()
    {
        const std::unique_ptr<SdcMol> mol(ZelTree::bareMolecule(nullptr, "M", {{"a", {}, 2}}));
        SdcMcp *const mcp = mol->getSdcMcpAtIndex(0);
        QSignalSpy removed(mcp, &Sdc::sdcBstRemoved);
        const std::unique_ptr<SdcBst> site(mcp->getListSdcBst().first());
        mcp->removeSdcBst(site.get());
        mcp->removeSdcBst(site.get());
        mcp->removeSdcBst(nullptr);
        QCOMPARE(removed.size(), 1);
        QCOMPARE(mcp->getListSdcChildren().size(), 1);
    }
};

ZEL_TEST(tst_SdcMcp)
#include "tst_SdcMcp.moc"
