#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "complex/CpxPlan.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QCoreApplication>
#include <QProcess>

#include <memory>

namespace {

const QString Unreadable = QStringLiteral(
    "Error found at void SdcCpx::loadAliasMcpStateCode(const QString & stateCode) the state code "
    "cannot be read: ");

/// A complex of mol1 (mcp1 with features P, Q, R and sites bst1, bst2; mcp2 with site bst3) and
/// mol2 (mcp3 with feature X and site bst4).
struct Stage
{
    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};
    SdcCpx cpx{&db};

    Stage()
    {
        file.create(":memory:");
        store("A", {{"a", {"P", "Q", "R"}, 2}, {"b", {}, 1}});
        store("B", {{"c", {"X"}, 1}});
        add("mol1");
        add("mol2");
    }

    void store(const QString &name, const QList<ZelTree::Mcp> &mcps)
    {
        const std::unique_ptr<SdcMol> mol(ZelTree::molecule(&db, name, mcps));
        mol->saveToDb();
        for (SdcMcp *mcp : mol->getListSdcMcp())
            delete mcp->getZelEllipseItemMcp();
    }

    void add(const QString &molId)
    {
        auto *const mol = new SdcMol(&db);
        mol->loadFromDb(molId);
        cpx.addSdcChild(mol, true);
    }

    SdcMcp *mcp(int index) { return cpx.getListSdcMcp().at(index); }
    SdcBst *bst(int index) { return cpx.getListSdcBst().at(index); }

    /// One word for each component: the state types of its features.
    void setStates(const QString &words)
    {
        const QStringList list = words.split(u' ');
        for (int i = 0; i < list.size(); ++i) {
            const auto stickies = mcp(i)->getListSticky();
            for (int k = 0; k < stickies.size(); ++k)
                stickies.at(k)->setStateType(list.at(i).at(k).digitValue(), false);
        }
    }

    /// One digit for each site.
    void setStatuses(const QString &digits)
    {
        for (int i = 0; i < digits.size(); ++i)
            bst(i)->setBindingStatus(BindingStatusType(digits.at(i).digitValue()));
    }

    /// Everything set, so that a load shows what it resets.
    void setAll()
    {
        setStates("222  2");
        setStatuses("2222");
        for (SdcMcp *each : cpx.getListSdcMcp())
            each->setProperty(SdcProperty::Negation, "1");
    }

    /// For each component: states, state code, "!" when negated, statuses of its sites.
    QString text()
    {
        QStringList list;
        for (SdcMcp *each : cpx.getListSdcMcp()) {
            QString entry;
            for (ZelRectItemMcpSticky *sticky : each->getListSticky())
                entry += QString::number(sticky->getStateType());
            entry += u':' + each->getProperty(SdcProperty::StateCode);
            if (each->getZelEllipseItemMcp()->isNotIndicatorVisible())
                entry += u'!';
            entry += u'[';
            for (SdcBst *site : each->getListSdcBst())
                entry += QString::number(site->getStoredBindingStatus());
            list.append(entry + u']');
        }
        return list.join(u' ');
    }

    QString signature(bool withMolPsiimId = false)
    {
        return SdcCpx::getMcpStateCodeSignature(cpx.getChildMolList(), withMolPsiimId);
    }
};

const QString ResetText = QStringLiteral("444:P(0);Q(0);R(0)[11] :[1] 4:X(0)[1]");

/// A component whose list of stickies has come to hold null.
int writeWithNullSticky(const QStringList &)
{
    Stage stage;
    const QList<ZelRectItemMcpSticky *> list = stage.mcp(0)->getListSticky(); // shares the item's
    const_cast<ZelRectItemMcpSticky *&>(list.constFirst()) = nullptr;
    stage.signature();
    return 0;
}

ZEL_TEST_CHILD("null-sticky", writeWithNullSticky)

QString repeated(const char *text, int count)
{
    return QString::fromLatin1(text).repeated(count);
}

} // namespace

class tst_CpxStateCode : public ZelTest
{
    Q_OBJECT
private slots:
    void signatures_data()
    {
        QTest::addColumn<QString>("states");
        QTest::addColumn<QString>("statuses");
        QTest::addColumn<int>("negated");
        QTest::addColumn<bool>("withId");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *states, const char *statuses, int negated,
                             bool withId, const char *expected) {
            QTest::newRow(name) << states << statuses << negated << withId << expected;
        };
        row("nothing set", "444  4", "1111", -1, false,
            R"x(<mol pos="1"><mcp pos="1" states=""><bst id="bst1" pos="1" /><bst id="bst2" pos="2" />)x"
            R"x(</mcp><mcp pos="2" states=""><bst id="bst3" pos="1" /></mcp></mol>)x"
            R"x(<mol pos="2"><mcp pos="1" states=""><bst id="bst4" pos="1" /></mcp></mol>)x");
        row("unset and unknown states are written before set ones only", "132  3", "1111", -1,
            false,
            R"x(<mol pos="1"><mcp pos="1" states="0(-);1(0);2"><bst id="bst1" pos="1" />)x"
            R"x(<bst id="bst2" pos="2" /></mcp>)x"
            R"x(<mcp pos="2" states=""><bst id="bst3" pos="1" /></mcp></mol>)x"
            R"x(<mol pos="2"><mcp pos="1" states=""><bst id="bst4" pos="1" /></mcp></mol>)x");
        row("negation and statuses", "244  2", "2414", 1, true,
            R"x(<mol id="mol1" pos="1"><mcp pos="1" states="0">)x"
            R"x(<bst id="bst1" pos="1" bindingStatus="Bound" />)x"
            R"x(<bst id="bst2" pos="2" bindingStatus="Unbound" /></mcp>)x"
            R"x(<mcp pos="2" not="1" states=""><bst id="bst3" pos="1" /></mcp></mol>)x"
            R"x(<mol id="mol2" pos="2"><mcp pos="1" states="0">)x"
            R"x(<bst id="bst4" pos="1" bindingStatus="Unbound" /></mcp></mol>)x");
    }

    void signatures()
    {
        QFETCH(QString, states);
        QFETCH(QString, statuses);
        QFETCH(int, negated);
        QFETCH(bool, withId);
        Stage stage;
        stage.setStates(states);
        stage.setStatuses(statuses);
        if (negated >= 0)
            stage.mcp(negated)->setProperty(SdcProperty::Negation, "1");
        QTEST(stage.signature(withId), "expected");
    }

    void aBondShowsAsBoundWhileItLasts()
    {
        Stage stage;
        stage.setStatuses("4111");
        const QString before = stage.cpx.getBstBindingCode();
        QCOMPARE(before,
            QStringLiteral(
                R"x(<cpx><mol id="mol1" pos="1"><mcp pos="1"><bst id="bst1" pos="1" )x"
                R"x(bindingStatus="Unbound" /><bst id="bst2" pos="2" /></mcp><mcp pos="2">)x"
                R"x(<bst id="bst3" pos="1" /></mcp></mol><mol id="mol2" pos="2"><mcp pos="1">)x"
                R"x(<bst id="bst4" pos="1" /></mcp></mol></cpx>)x"));
        auto bond = std::make_unique<SdcBstBstCpx>(&stage.db);
        bond->addSdcBst(stage.bst(0));
        bond->addSdcBst(stage.bst(3));
        stage.cpx.addSdcBstBstCpx(bond.get());
        QString bound = before;
        bound.replace(QLatin1String("Unbound"), QLatin1String("Bound"));
        bound.replace(QLatin1String(R"x("bst4" pos="1" />)x"),
            QLatin1String(R"x("bst4" pos="1" bindingStatus="Bound" />)x"));
        QCOMPARE(stage.cpx.getBstBindingCode(), bound);
        QVERIFY(stage.signature().contains(
            QLatin1String(R"x(<bst id="bst4" pos="1" bindingStatus="Bound" />)x")));
        bond.reset();
        QCOMPARE(stage.cpx.getBstBindingCode(), before);
    }

    void eachMoleculeIsBoundInItsOwnComplex()
    {
        CpxPlan plan;
        plan.mols.fill({"A", {CpxPlan::Mcp()}}, 2);
        for (CpxPlan::Mol &mol : plan.mols)
            mol.mcps[0].sites = {{"s"}};
        const CpxModel pair(plan);
        plan.bonds = {{{0, 0}, {1, 0}}};
        const CpxModel dimer(plan);
        const std::unique_ptr<SdcMol> single(ZelTree::bareMolecule(nullptr, "A", {{"a", {}, 1}}));
        const QString code = SdcCpx::getBstBindingCodeFromListMol(
            {dimer.mols().at(0), pair.mols().at(0), single.get(), dimer.mols().at(1)});
        QString bound;
        for (const QString &mol : code.split("<mol ").sliced(1))
            bound += mol.contains(u"Bound") ? u'+' : u'-';
        QCOMPARE(bound, "+--+");
    }

    void aLostStickyEndsTheProcess()
    {
        QProcess child;
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(QCoreApplication::applicationFilePath(), {"--child", "null-sticky"});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 1);
        const QString output = QString::fromUtf8(child.readAll());
        QVERIFY2(output.contains(QLatin1String(
                     "Error found at QString SdcCpx::getMcpStateCodeSignature(const QList<SdcMol "
                     "*> & listSdcMol, bool withMolPsiimId)\n")),
            qPrintable(output));
    }

    void loading_data()
    {
        QTest::addColumn<QString>("code"); // positions of molecules as indices
        QTest::addColumn<bool>("statuses");
        QTest::addColumn<QString>("expected");
        const auto row =
            [](const char *name, const char *content, const char *expected, bool statuses = true) {
                QTest::newRow(name)
                    << QLatin1String("<cpx>") + QLatin1String(content) + QLatin1String("</cpx>")
                    << statuses << expected;
            };
        // What no element names keeps its negation.
        const char *const rest = " :![1] 4:X(0)![1]";
        const auto first = [&](const char *name, const char *attributes, const char *expected) {
            row(name,
                qPrintable(QStringLiteral(R"x(<mol pos="0"><mcp pos="1" %1/></mol>)x")
                               .arg(QLatin1String(attributes))),
                qPrintable(QLatin1String(expected) + QLatin1String(rest)));
        };
        first("all three states", "states='0(-);1(0);2'", "142:P(-);Q(0);R[11]");
        first("fewer parts than names", "states='0(-)'", "144:P(-)[11]");
        first("parts belong by their place", "states='7;99(-);x(0)'", "214:P;Q(-);R(0)[11]");
        first("empty parts are passed over", "states=';;0(-);;1;'", "124:P(-);Q[11]");
        first("negation", "not='1' states=''", "444:P(0);Q(0);R(0)![11]");
        first("escaped characters", "not='&#49;' states='&lt;(&#45;)'", "144:P(-)![11]");
        first(
            "blanks around a position", "states='0'/><mcp pos=' 1 ' states='0(-)'", "144:P(-)[11]");
        row("statuses, by site and wherever in the molecule",
            R"x(<mol pos="0"><mcp pos="1"><bst id="bst2" bindingStatus="Unbound"/>)x"
            R"x(<bst id="bst3" bindingStatus="Bound" pos="9"/></mcp></mol>)x"
            R"x(<mol pos="1"><mcp pos="1"><bst id="bst4" bindingStatus="bound"/></mcp></mol>)x",
            "444:P(0);Q(0);R(0)[14] :![2] 4:X(0)[1]");
        row("statuses left out are reset all the same",
            R"x(<mol pos="0"><mcp pos="1"><bst id="bst2" bindingStatus="Unbound"/></mcp></mol>)x",
            "444:P(0);Q(0);R(0)[11] :![1] 4:X(0)![1]", false);
        row("the last word on a part counts",
            R"x(<mol pos="0"><mcp pos="1" not="1" states="0"><bst id="bst1" bindingStatus="Bound"/>)x"
            R"x(</mcp><mcp pos="1" states="0(-);1"><bst id="bst1" bindingStatus="Unbound"/></mcp>)x"
            R"x(<mcp pos="1" states=""><bst id="bst1"/></mcp></mol>)x",
            "124:P(-);Q[11] :![1] 4:X(0)![1]");
        row("elements out of their place",
            R"x(<x><mol pos="0"/></x><mcp pos="1" states="0"/><mol pos="1"><mol pos="0"><mcp pos="1")x"
            R"x( states="0"/></mol><bst id="bst4" bindingStatus="Bound"/><mcp pos="1" states="0">)x"
            R"x(<mcp pos="1" states="0(-)"><bst id="bst4" bindingStatus="Bound"/></mcp></mcp></mol>)x",
            "444:P(0);Q(0);R(0)![11] :![1] 2:X[1]");
        QTest::newRow("any root, declarations around it")
            << R"x(<?xml version="1.0" encoding="UTF-16"?><!DOCTYPE doc><r><mol pos="1"><mcp pos="1")x"
               R"x( states="0(-)"/></mol></r><!-- end -->)x"
            << true << "444:P(0);Q(0);R(0)![11] :![1] 1:X(-)[1]";
        QTest::newRow("nothing") << "" << true << "444:P(0);Q(0);R(0)![11] :![1] 4:X(0)![1]";
    }

    void loading()
    {
        QFETCH(QString, code);
        QFETCH(bool, statuses);
        Stage stage;
        stage.setAll();
        for (SdcMcp *mcp : stage.cpx.getListSdcMcp())
            mcp->updateMcpNot();
        stage.cpx.loadAliasMcpStateCode(code, statuses);
        QTEST(stage.text(), "expected");
    }

    void thePublicLoaderTakesMoleculePositionsAsIndices()
    {
        Stage stage;
        stage.cpx.setProperty(SdcProperty::PsiimId, "cpx7");
        stage.cpx.setProperty(SdcProperty::CpaPsiimId, "cpa8");
        stage.add("mol1");
        stage.setStates("122  4 222 ");
        stage.setStatuses("2111111");
        // The code of molecule 1 lands on the second child, which has no second component.
        stage.cpx.loadAliasMcpStateCode(
            QLatin1String("<cpx>") + stage.signature() + QLatin1String("</cpx>"), true);
        QCOMPARE(stage.text(), "444:P(0);Q(0);R(0)[11] :[1] 1:X(-)[1] 444:P(0);Q(0);R(0)[11] :[1]");
        QCOMPARE(takeDebugText(),
            "Error found at void SdcCpx::loadAliasMcpStateCode(const QString & stateCode, bool "
            "loadBindingStatus): unknown binding sites 2 the first is \"bst1\"\n"
            "Error found at void SdcCpx::loadAliasMcpStateCode(const QString & stateCode) \"cpx7\" "
            "\"cpa8\" \"mol2\" 1 2");
    }

    void aMissingComponentEndsTheLoading_data()
    {
        rows<QString, QString, QString>({"mol", "mcp", "reported"},
            {{"component behind the last", {"1", "2", "\"mol2\" 1 2"}},
                {"component 0", {"1", "0", "\"mol2\" 1 0"}},
                {"number out of range", {"0", "99999999999999999999", "\"mol1\" 0 0"}},
                {"molecule behind the last", {"2", "1", "\"\" 2 1"}},
                {"least molecule", {"-2147483648", "1", "\"\" -2147483648 1"}}});
    }

    void aMissingComponentEndsTheLoading()
    {
        QFETCH(QString, mol);
        QFETCH(QString, mcp);
        QFETCH(QString, reported);
        Stage stage;
        stage.cpx.loadAliasMcpStateCode(
            QStringLiteral(R"x(<cpx><mol pos="0"><mcp pos="1" states="0"/></mol><mol pos="%1">)x"
                           R"x(<mcp pos="%2" states="0"/><mcp pos="1" states="0(-);1"/></mol>)x"
                           R"x(<mol pos="1"><mcp pos="1" states="0"/></mol></cpx>)x")
                .arg(mol, mcp),
            true);
        QCOMPARE(stage.text(), "244:P[11] :[1] 4:X(0)[1]");
        QCOMPARE(takeDebugLines(),
            QStringList(
                QStringLiteral("Error found at void SdcCpx::loadAliasMcpStateCode(const QString & "
                               "stateCode) \"\" \"\" ")
                + reported));
    }

    void aMissingStickyIsReportedWithTheCode()
    {
        Stage stage;
        delete stage.mcp(0)->getListSticky().last();
        const QString code = QStringLiteral(
            "<cpx\t>\n<mol pos='0'><mcp pos=\"1\" states=\"0;1(-);2\"/></mol></cpx>");
        stage.cpx.loadAliasMcpStateCode(code, false);
        QCOMPARE(takeDebugLines(),
            QStringList({"Error found in void SdcCpx::loadAliasMcpStateCode(const "
                         "QString & stateCode, bool loadBindingStatus): ",
                QStringLiteral("\tstatdeCode: \"%1\"").arg(code), "\tloadBindingStatus:  false"}));
        QCOMPARE(stage.text(), "21:P;Q(-);R[11] :[1] 4:X(0)[1]");
    }

    void whatIsNotWellFormedChangesNothingAfterTheReset_data()
    {
        const QString good = QStringLiteral(R"x(<mol pos="0"><mcp pos="1" states="0"/></mol>)x");
        const QString begin = QStringLiteral("<cpx>") + good;
        const QString end = QStringLiteral("</cpx>");
        rows<QString>({"code"},
            {{"no element", {"  0(-);1 "}}, {"cut off in an element", {begin + "<mol pos=\""}},
                {"crossed elements", {begin + "<a><b></a></b>" + end}},
                {"two roots", {begin + end + "<cpx/>"}},
                {"attribute twice", {begin + "<mol pos='1' pos='0'/>" + end}},
                {"null character", {begin + QChar(0) + end}},
                {"entities that multiply",
                    {"<!DOCTYPE cpx [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;'>"
                     "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;'>]><cpx a='"
                        + repeated("&c;", 100000) + "'>" + good + end}},
                {"attributes by default",
                    {"<!DOCTYPE cpx [<!ATTLIST mol pos CDATA '0'>]>" + begin
                        + repeated("<mol/>", 100000) + end}},
                {"deep nesting",
                    {begin + repeated("<a>", 300000) + repeated("</a>", 300000) + end}},
                {"too long", {begin + QString(33 * 1024 * 1024, u' ') + end}}});
    }

    void whatIsNotWellFormedChangesNothingAfterTheReset()
    {
        QFETCH(QString, code);
        Stage stage;
        stage.setStates("222  2");
        stage.setStatuses("2222");
        stage.cpx.loadAliasMcpStateCode(code, true);
        QCOMPARE(stage.text(), ResetText);
        const QStringList lines = takeDebugLines();
        QCOMPARE(lines.size(), 1);
        QVERIFY2(
            lines.first().startsWith(Unreadable) && lines.first().size() > Unreadable.size() + 9,
            qPrintable(lines.first()));
    }

    void whatIsOnlyMuchIsRead_data()
    {
        rows<QString>({"content"},
            {{"a component named very often",
                 {repeated(
                     R"x(<mcp pos="1" not="1" states="0"/><mcp pos="1" states="1"/>)x", 250000)}},
                {"a site named very often",
                    {R"x(<mcp pos="1">)x"
                        + repeated(
                            R"x(<bst id="bst4" bindingStatus="Unbound"/><bst id="bst4"/>)x", 250000)
                        + "</mcp>"}},
                {"many parts", {"<mcp pos='1' states='" + repeated("0;", 1000000) + "'/>"}}});
    }

    void whatIsOnlyMuchIsRead()
    {
        QFETCH(QString, content);
        Stage stage;
        int writes = 0;
        connect(stage.mcp(2), &Sdc::signal_changed, this, [&writes] { ++writes; });
        stage.cpx.loadAliasMcpStateCode(QStringLiteral("<cpx><mol pos='1'>") + content
                + QStringLiteral("<mcp pos='1' states='0(-)'/></mol></cpx>"),
            true);
        QCOMPARE(stage.text(), "444:P(0);Q(0);R(0)[11] :[1] 1:X(-)[1]");
        QVERIFY(writes < 4); // each part is set once
    }

    void nothingIsNeededBesideTheComplex()
    {
        SdcCpx cpx(nullptr);
        cpx.addSdcChild(nullptr, false);
        SdcMol *const mol = ZelTree::bareMolecule(nullptr, "M", {{"a", {"P"}, 1}});
        mol->getListSdcBst().first()->setProperty(SdcProperty::PsiimId, "s");
        cpx.addSdcChild(mol, true);
        mol->getSdcMcpAtIndex(0)->addSdcChild(nullptr, false);
        mol->addSdcChild(nullptr, false);
        cpx.loadAliasMcpStateCode(
            QStringLiteral(R"x(<cpx><mol pos="1"><mcp pos="1" not="1" states="0"><bst id="s" )x"
                           R"x(bindingStatus="Unbound"/></mcp></mol></cpx>)x"),
            true);
        QCOMPARE(SdcCpx::getMcpStateCodeSignature(cpx.getListSdcMol(), true),
            QStringLiteral(
                R"x(<mol id="" pos="1"><mcp pos="1" not="1" states=""><bst id="s" pos="1")x"
                R"x( bindingStatus="Unbound" /></mcp></mol>)x"));
        cpx.loadAliasMcpStateCode(
            QStringLiteral(R"x(<cpx><mol pos="0"><mcp pos="1"/></mol></cpx>)x"), true);
        QCOMPARE(takeDebugLines().size(), 1);
    }
};

ZEL_TEST(tst_CpxStateCode)
#include "tst_CpxStateCode.moc"
