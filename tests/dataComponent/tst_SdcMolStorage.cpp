#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QPointer>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace {

/// A molecule that uses everything that is stored.
SdcMol *fullMolecule(ZelDbSqliteModel *db, ZelScene *scene = nullptr)
{
    SdcMol *const mol = ZelTree::molecule(db, "EGFR \"x\" <&>",
        {{"L1", {}, 2}, {"TK", {"Y1068", "Y1173 'b'"}, 3}, {"tail", {"P"}, 0}}, scene);
    const QHash<int, QString> properties{{3, "receptor\nof two lines"}, {4, "1.5"}, {5, "1.00e-03"},
        {6, "7"}, {11, "notes \u03b2"}, {21, "doi:1"}, {25, "Membrane Associated"}};
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        mol->setProperty(it.key(), it.value());
    mol->setMolColor("#aabbcc");
    int i = 0;
    for (SdcMcp *mcp : mol->getListSdcMcp()) {
        mcp->setProperty(3, QStringLiteral("domain %1").arg(++i));
        mcp->setProperty(11, "note");
        mcp->setProperty(21, "ref");
        mcp->setProperty(25, i == 2 ? "Inside-membrane" : QString());
        mcp->setTagDirectionCode(i);
    }
    mol->getSdcMcpAtIndex(1)->setTagSize(6.0);
    mol->getSdcMcpAtIndex(1)->setTagGap(1.5);
    for (SdcMcp *mcp : mol->getListSdcMcp())
        mcp->getZelEllipseItemMcp()->updateLayoutOfListStateSticky(false);
    mol->getSdcMcpAtIndex(1)->getListSdcMcpTags().first()->setProperty(21, "state ref");
    for (SdcBst *bst : mol->getListSdcBst())
        bst->setProperty(2, QStringLiteral("s%1").arg(bst->getDisplayIndex()));
    mol->getListSdcBst().first()->setProperty(21, "site ref");
    mol->getListSdcBst().first()->setProperty(11, "site note");
    return mol;
}

void deleteItems(SdcMol *mol)
{
    for (SdcMcp *mcp : mol->getListSdcMcp())
        delete mcp->getZelEllipseItemMcp();
}

} // namespace

using Change = std::function<bool(ZelDbSqliteModel &)>;

class tst_SdcMolStorage : public ZelTest
{
    Q_OBJECT

    struct Model
    {
        ZelDbSqlite file;
        ZelDbSqliteModel db{&file};
        Model() { file.create(":memory:"); }
    };

    /// What a loaded molecule holds beyond what was drawn: the state code and the states' ids.
    static void forgetLoaderExtras(SdcMol *mol)
    {
        for (SdcMcp *mcp : mol->getListSdcMcp()) {
            mcp->clearProperty(9);
            for (SdcMcpTag *tag : mcp->getListSdcMcpTags())
                tag->clearProperty(1);
        }
    }

private slots:
    void nothingIsLost_data()
    {
        rows<bool>({"inScene"}, {{"without a scene", {false}}, {"in a scene", {true}}});
    }

    void nothingIsLost()
    {
        QFETCH(bool, inScene);
        Model model;
        ZelScene scene(nullptr);
        ZelScene other(nullptr);
        const std::unique_ptr<SdcMol> mol(fullMolecule(&model.db, inScene ? &scene : nullptr));
        QVERIFY2(mol->saveToDb(), qPrintable(model.db.errorText()));
        const QString saved = ZelTree::text(mol.get());
        for (int round = 0; round < 10; ++round) {
            SdcMol loaded(&model.db);
            QVERIFY(loaded.loadFromDb(mol->getPsiimId(), inScene ? &other : nullptr));
            QCOMPARE(loaded.getSdcMcpAtIndex(1)->getProperty(9), "Y1068;Y1173 'b'");
            QVERIFY(
                !loaded.getSdcMcpAtIndex(1)->getListSdcMcpTags().first()->getPsiimId().isEmpty());
            QCOMPARE(loaded.getMolColor(), QColor("#aabbcc"));
            QVERIFY(loaded.saveToDb());
            forgetLoaderExtras(&loaded);
            QCOMPARE(ZelTree::text(&loaded), saved);
        }
        QCOMPARE(model.db.molGetListPsiimId().size(), 1);
        if (!inScene)
            deleteItems(mol.get());
    }

    void itemsInNoSceneDieWithTheMoleculeUnlessTakenOver()
    {
        Model model;
        const std::unique_ptr<SdcMol> mol(fullMolecule(&model.db));
        QVERIFY(mol->saveToDb());
        deleteItems(mol.get());
        ZelScene scene(nullptr);
        auto loaded = std::make_unique<SdcMol>(&model.db);
        QVERIFY(loaded->loadFromDb(mol->getPsiimId()));
        QPointer<ZelEllipseItemMcp> kept = loaded->getSdcMcpAtIndex(0)->getZelEllipseItemMcp();
        QPointer<ZelEllipseItemMcp> left = loaded->getSdcMcpAtIndex(2)->getZelEllipseItemMcp();
        // One component moves, drawing and all, to another molecule.
        SdcMol heir(&model.db);
        SdcMcp *const mover = loaded->getSdcMcpAtIndex(1);
        QPointer<ZelEllipseItemMcp> moved = mover->getZelEllipseItemMcp();
        loaded->removeSdcMcp(mover);
        heir.addSdcMcp(mover);
        scene.addItem(kept);
        loaded.reset();
        QVERIFY(kept && moved && !left);
        heir.reset();
        QVERIFY(!moved);
    }

    void defaultsOfEmptyFields()
    {
        Model model;
        SdcMol mol(&model.db);
        auto *mcp = new SdcMcp(&model.db);
        mol.addSdcMcp(mcp);
        mcp->addSdcBst(new SdcBst(&model.db));
        mcp->setProperty(25, "Inside-membrane");
        QVERIFY(mol.saveToDb());
        const ZelDbRecord record = model.db.molGetHashInfo(mol.getPsiimId());
        QCOMPARE(record.value(15) + record.value(16) + record.value(18), "0.10.10.1");
        QCOMPARE(record.value(46), "Freely Diffusing");
        // Only a molecule at the membrane has a component inside it.
        QCOMPARE(model.db.mcpGetHashInfo(mcp->getPsiimId()).value(46), "Freely Diffusing");
        QCOMPARE(
            model.db.bstGetHashInfo(mol.getListSdcBst().first()->getPsiimId()).value(4), "_site_1");
        SdcMol loaded(&model.db);
        QVERIFY(loaded.loadFromDb(mol.getPsiimId()));
        QCOMPARE(loaded.getProperty(20), "#ffffff");
        QCOMPARE(loaded.getProperty(5), "1.00e-01");
        takeDebugLines(); // there was no drawing: parts are reported and get default places
    }

    void savingRemovesWhatIsGone()
    {
        Model model;
        const std::unique_ptr<SdcMol> mol(fullMolecule(&model.db));
        QVERIFY(mol->saveToDb());
        SdcMcp *const tk = mol->getSdcMcpAtIndex(1);
        const QString goneSite = tk->getListSdcBst().at(1)->getPsiimId();
        delete tk->getListSdcBst().at(1)->getZelEllipseItemBst();
        delete tk->getListSdcBst().at(1);
        tk->getZelEllipseItemMcp()->removeStateSticky(tk->getZelEllipseItemMcp()->getSticky(0));
        SdcMcp *const tail = mol->getSdcMcpAtIndex(2);
        const QString goneMcp = tail->getPsiimId();
        mol->removeSdcMcp(tail);
        delete tail->getZelEllipseItemMcp();
        delete tail;
        QVERIFY2(mol->saveToDb(), qPrintable(model.db.errorText()));
        QVERIFY(model.db.bstGetHashInfo(goneSite).isEmpty());
        QVERIFY(model.db.mcpGetHashInfo(goneMcp).isEmpty());
        QCOMPARE(model.db.mcpGetOrderedStateNames(tk->getPsiimId()), QStringList({"Y1173 'b'"}));
        QCOMPARE(model.db.molGetMultiHashMcpMcp(mol->getPsiimId()).size(), 1);
        deleteItems(mol.get());
    }

    void aPartInUseIsNotRemoved()
    {
        Model model;
        const std::unique_ptr<SdcMol> mol(fullMolecule(&model.db));
        QVERIFY(mol->saveToDb());
        const QList<SdcBst *> sites = mol->getListSdcBst();
        const QString used = sites.at(1)->getPsiimId();
        QVERIFY(model.db.mliInsert(
            {{ZelDbColumn::PsiimId, "mli1"}, {ZelDbColumn::ShortName, "dimerisation"},
                {ZelDbColumn::Bst1, sites.at(0)->getPsiimId()}, {ZelDbColumn::MolPos1, "0"},
                {ZelDbColumn::Bst2, used}, {ZelDbColumn::MolPos2, "1"}}));
        mol->setProperty(2, "renamed");
        delete sites.at(1)->getZelEllipseItemBst();
        delete sites.at(1);
        QVERIFY(!mol->saveToDb());
        QVERIFY2(model.db.errorText().contains("dimerisation"), qPrintable(model.db.errorText()));
        // All of the save is taken back, not only what was refused.
        QVERIFY(!model.db.bstGetHashInfo(used).isEmpty());
        QCOMPARE(model.db.molGetHashInfo(mol->getPsiimId()).value(4), "EGFR \"x\" <&>");
        deleteItems(mol.get());
    }

    void featuresOfOneNameAreRefused_data()
    {
        rows<bool>({"isRenamed"}, {{"renamed to another one's", {true}}, {"added", {false}}});
    }

    void featuresOfOneNameAreRefused()
    {
        QFETCH(bool, isRenamed);
        Model model;
        const std::unique_ptr<SdcMol> mol(fullMolecule(&model.db));
        if (isRenamed)
            QVERIFY(mol->saveToDb());
        const QString id = mol->getPsiimId();
        SdcMcp *const mcp = mol->getSdcMcpAtIndex(1);
        if (isRenamed)
            mcp->getListSdcMcpTags().at(1)->setProperty(2, "Y1068");
        else
            mcp->addTag("Y1068", "red");
        mol->setProperty(2, "other");
        QVERIFY(!mol->saveToDb());
        QCOMPARE(takeDebugText(),
            "Error found at bool SdcMol::saveToDb(): component 'TK' has two features named "
            "'Y1068', rename one of them");
        QCOMPARE(mol->getRefusal(),
            "Component 'TK' has two features named 'Y1068', rename one of them.");
        // Nothing is written and nothing is given.
        QCOMPARE(mol->getPsiimId(), id);
        QCOMPARE(model.db.molGetHashInfo(id).value(4), isRenamed ? "EGFR \"x\" <&>" : QString());
        mcp->getListSdcMcpTags().constLast()->setProperty(2, "third");
        QVERIFY(mol->saveToDb());
        QCOMPARE(model.db.mcpGetOrderedStateNames(mcp->getPsiimId()).constLast(), "third");
        deleteItems(mol.get());
    }

    void damagedLayouts_data()
    {
        const QString begin = QStringLiteral("<schema><mol psiimId='mol1'>");
        const QString end = QStringLiteral("</mol></schema>");
        const auto many = [](const char *text) { return QString(text).repeated(300000); };
        rows<QString, int>({"layout", "lines"},
            {{"none", {"", 2}}, {"no markup", {"<<<", 3}},
                {"other ids",
                    {"<schema><mol psiimId='x'><mcp posIndex='0' psiimId='y'><boundingRect x='1' "
                     "y='2' w='3' h='4'/><bst posIndex='0' psiimId='z'><boundingRect x='1' y='1' "
                     "w='1' h='1'/></bst></mcp></mol></schema>",
                        3}},
                {"numbers that are none",
                    {begin
                            + "<boundingRect x='nan' y='inf'/><mcp posIndex='0' psiimId='mcp1' "
                              "tagSize='-1' tagGap='nan' tagDirectCode='77'><boundingRect "
                              "x='1e300' y='x' w='nan' h='-4'/><bst posIndex='0' psiimId='bst1'>"
                              "<boundingRect x='0' y='0' w='0' h='9e99'/></bst></mcp>"
                            + end,
                        2}},
                {"an entity that grows",
                    {"<!DOCTYPE d [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;'>]>"
                     "<schema>&b;&b;</schema>",
                        3}},
                {"many elements of one place", {begin + many("<mcp posIndex='0'/>") + end, 3}},
                {"deep nesting", {begin + many("<a>") + many("</a>") + end, 3}}});
    }

    void damagedLayouts()
    {
        QFETCH(QString, layout);
        QFETCH(int, lines);
        Model model;
        QVERIFY(model.db.molInsert(
            {{ZelDbColumn::PsiimId, "mol1"}, {ZelDbColumn::GraphicsInfo, layout}}));
        QVERIFY(model.db.mcpInsert({{ZelDbColumn::PsiimId, "mcp1"},
            {ZelDbColumn::OwnerPsiimId, "mol1"}, {ZelDbColumn::PosIndex, "0"}}));
        QVERIFY(model.db.bstInsert({{ZelDbColumn::PsiimId, "bst1"},
            {ZelDbColumn::OwnerPsiimId, "mcp1"}, {ZelDbColumn::PosIndex, "0"}}));
        ZelScene scene(nullptr);
        SdcMol mol(&model.db);
        QVERIFY(mol.loadFromDb("mol1", &scene));
        const QStringList reports = takeDebugLines();
        QCOMPARE(reports.size(), lines);
        for (const QString &report : reports)
            QVERIFY(report.startsWith("Error found at "));
        // Everything that the records hold is there, at a place that can be shown.
        QCOMPARE(mol.getListSdcBst().size(), 1);
        QVERIFY(scene.itemsBoundingRect().width() < 200.0);
        QVERIFY(mol.getSdcMcpAtIndex(0)->getTagDirectionCode() <= 4);
        QVERIFY(mol.getSdcMcpAtIndex(0)->getTagSize() >= 0.0);
    }

    /// Types are read once, but what anybody changes in the file is there in the next load.
    void loadsFollowTheFile_data()
    {
        using M = ZelDbSqliteModel;
        namespace C = ZelDbColumn;
        const auto bst = [](M &m) { return m.bstGetListPsiimId().last(); };
        rows<Change>({"change"},
            {{"a colour", {[](M &m) {
                  return m.molInsert({{C::PsiimId, "mol1"}, {C::Color, "red"}});
              }}},
                {"the drawing", {[](M &m) {
                     return m.molInsert({{C::PsiimId, "mol1"}, {C::GraphicsInfo, ""}});
                 }}},
                {"a name", {[](M &m) {
                     return m.mcpInsert({{C::PsiimId, "mcp1"}, {C::ShortName, "new"}});
                 }}},
                {"a feature more",
                    {[](M &m) { return m.mcpInsertState("mcp1", "new", "red", 9); }}},
                {"a feature less", {[](M &m) { return m.mcpStateRemove("mcpState1"); }}},
                {"a site's note", {[bst](M &m) {
                     return m.bstInsert({{C::PsiimId, bst(m)}, {C::Notes, "new"}});
                 }}},
                {"a site less", {[bst](M &m) { return m.bstRemove(bst(m)); }}},
                {"a backbone line", {[](M &m) { return m.molInsertMcpMcp("mol1", 0, 2); }}},
                {"a reference", {[](M &m) { return m.refInsert("mcp", "mcp2", "new"); }}}});
    }
    void loadsFollowTheFile()
    {
        QFETCH(Change, change);
        QTemporaryDir dir;
        ZelDbSqlite file;
        ZelDbSqlite otherFile;
        QVERIFY(file.create(dir.filePath("a.zel")) && otherFile.open(dir.filePath("a.zel")));
        ZelDbSqliteModel db(&file);
        ZelDbSqliteModel other(&otherFile);
        const std::unique_ptr<SdcMol> mol(fullMolecule(&db));
        QVERIFY(mol->saveToDb());
        deleteItems(mol.get());
        const auto load = [](ZelDbSqliteModel *model) {
            SdcMol loaded(model);
            return loaded.loadFromDb("mol1") ? ZelTree::text(&loaded) : QString();
        };
        const QString before = load(&db);
        int asked = 0;
        file.setStatementObserver([&asked](const QString &sql, const QVariantList &) {
            asked += sql.contains(QLatin1String("FROM")) ? 1 : 0;
        });
        QCOMPARE(load(&db), before);
        QCOMPARE(asked, 0);
        {
            ZelDbTransaction transaction(&file);
            QVERIFY2(change(db), qPrintable(db.errorText()));
            QVERIFY(load(&db) != before);
        }
        QCOMPARE(load(&db), before);
        QCOMPARE(load(&other), before);
        QVERIFY(change(other));
        const QString after = load(&db);
        QVERIFY(after != before);
        QCOMPARE(load(&other), after);
        takeDebugLines(); // of the missing drawing
    }

    void unknownMoleculeAndNoDatabase()
    {
        Model model;
        SdcMol mol(&model.db);
        QVERIFY(!mol.loadFromDb("mol7"));
        QCOMPARE(takeDebugText(),
            "Error found at void SdcMol::loadDom(const QDomElement & domEltMol, ZelScene * scene, "
            "const QPointF & refPos)  \"mol7\" \"no such molecule\"");
        SdcMol homeless(nullptr);
        QVERIFY(!homeless.loadFromDb("mol1"));
        QVERIFY(!homeless.saveToDb());
        QCOMPARE(takeDebugLines().size(), 2);
        model.file.close();
        QVERIFY(!mol.saveToDb());
        QCOMPARE(takeDebugLines().size(), 1);
        QVERIFY(!mol.hasSdcChild());
    }
};

ZEL_TEST(tst_SdcMolStorage)
#include "tst_SdcMolStorage.moc"
