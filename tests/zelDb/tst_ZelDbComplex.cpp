#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

namespace {

QString text(const char *s)
{
    return QString::fromLatin1(s);
}

} // namespace

class tst_ZelDbComplex : public ZelTest
{
    Q_OBJECT
private slots:
    void interactionIsFoundInEitherOrder()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.model.mliInsert({{C::PsiimId, text("mli1")}, {C::AssociationRate, text("3")}}));
        for (const auto &[a, b] :
            {std::pair(text("bst1"), text("bst3")), {text("bst3"), text("bst1")}}) {
            QVERIFY(f.model.mliIsDefined(a, b));
            QCOMPARE(DbFixture::texts(f.model.mliGetHashInfo(a, b),
                         {C::PsiimId, C::ShortName, C::AssociationRate, C::Bst1, C::MolPos2}),
                (QStringList{text("mli1"), text("A-B"), text("3"), text("bst1"), text("1")}));
        }
        QVERIFY(!f.model.mliIsDefined(text("bst1"), text("bst1")));
        QVERIFY(!f.model.mliIsDefined(text("bst1"), text("bst2")));
        QVERIFY(f.model.mliGetHashInfo(text("bst2"), text("bst3")).isEmpty());
    }

    void interactionRowsHoldTheirPlaces()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const auto insert = [&](int ordinal, const char *bst) {
            return f.model.mliInsertBstBst(
                text("mli1"), ordinal, text("0"), text(bst), text("1"), text("bst3"));
        };
        QVERIFY(insert(2, "bst1"));
        QVERIFY(insert(1, "bst1"));
        QVERIFY(insert(1, "bst2"));
        QCOMPARE(f.model.mliGetArrayBstBst(text("mli1")),
            (QList<QStringList>{
                {text("mli1"), text("0"), text("0"), text("bst1"), text("1"), text("bst3")},
                {text("mli1"), text("1"), text("0"), text("bst2"), text("1"), text("bst3")},
                {text("mli1"), text("2"), text("0"), text("bst1"), text("1"), text("bst3")}}));
        QVERIFY(!insert(3, "bst9"));
        QVERIFY(!insert(-1, "bst1"));
        QVERIFY(f.model.mliRemoveAllBstBst(text("mli1")));
        QVERIFY(f.model.mliGetArrayBstBst(text("mli1")).isEmpty());
        // A refused pair takes the record's own changes back with it.
        QVERIFY(!f.model.mliInsert(
            {{C::PsiimId, text("mli1")}, {C::Name, text("half")}, {C::Bst1, text("bst9")}}));
        QCOMPARE(f.model.mliGetHashInfo(text("mli1")).value(C::Name), QString());
    }

    void writingAComplexAgainKeepsItsAliases()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        QVERIFY2(f.model.cpxInsert(text("cpx1"), text("new"), text("n"), text("t"), text("o"),
                     text("p"), text("<g/>"), text("c"), text("0")),
            qPrintable(f.model.errorText()));
        QCOMPARE(f.model.cpaGetListPsiimIdBasedOnCpx(text("cpx1")).size(), 3);
        QVERIFY(f.model.cpxGetListMolPsiimId(text("cpx1")).isEmpty());
        QVERIFY(f.model.cpxGetArrayBstBst(text("cpx1")).isEmpty());
        QCOMPARE(DbFixture::texts(f.model.cpxGetHashInfo(text("cpx1")),
                     {C::ShortName, C::Name, C::CpxText, C::Notes, C::CpxFingerPrint,
                         C::GraphicsInfo, C::CpxMolCode, C::CpxFlag}),
            (QStringList{text("new"), text("n"), text("t"), text("o"), text("p"), text("<g/>"),
                text("c"), text("0")}));
    }

    void complexesAreFoundByFingerPrintAndMolecules()
    {
        DbFixture f;
        const auto insert = [&](const char *id, const char *fingerPrint, const char *molCode) {
            return f.model.cpxInsert(
                text(id), {}, {}, {}, {}, text(fingerPrint), {}, text(molCode), text("0"));
        };
        QVERIFY(insert("b", "F1", "x;y") && insert("a", "F2", "x;y") && insert("c", "F3", "x;z"));
        QVERIFY(insert("d", "", "") && insert("e", "", ""));
        QVERIFY(f.model.cpxIsFingerPrintExisted(text("F2")));
        QCOMPARE(f.model.cpxGetPsiimIdFromFingerPrint(text("F2")), text("a"));
        QCOMPARE(f.model.cpxGetFingerPrint(text("a")), text("F2"));
        QVERIFY(!f.model.cpxIsFingerPrintExisted(text("f2")));
        QVERIFY(!f.model.cpxIsFingerPrintExisted(QString()));
        const auto alike = [&](const char *id, bool self) {
            return f.model.cpxGetCpxPsiimIdListAtMolCodeFromCpx(text(id), self);
        };
        QCOMPARE(alike("a", true), (QStringList{text("b"), text("a")}));
        QCOMPARE(alike("a", false), QStringList{text("b")});
        QCOMPARE(alike("c", false), QStringList());
        QCOMPARE(alike("d", true), QStringList{text("d")}); // no code tells nothing
        QCOMPARE(alike("none", true), QStringList());
    }

    void unusablePositionsAreRefused_data()
    {
        QTest::addColumn<QString>("position");
        for (const char *position : {"", "-1", "1.5", "one", "99999999999"})
            QTest::newRow(position) << text(position);
    }

    void unusablePositionsAreRefused()
    {
        QFETCH(QString, position);
        DbFixture f;
        QVERIFY(f.addComplex());
        const QStringList before = DbFixture::dump(f.path);
        QVERIFY(!f.model.cpxInsertMol(text("cpx1"), text("mol1"), position));
        QVERIFY(!f.model.cpxInsertBstBst(
            text("cpx1"), text("0"), text("bst2"), position, text("bst3"), {}));
        QVERIFY(!f.model.mliInsertBstBst(
            text("mli1"), 1, position, text("bst2"), text("1"), text("bst3")));
        QVERIFY(f.model.errorText().contains(text("is no position of a molecule")));
        QCOMPARE(DbFixture::dump(f.path), before);
    }

    void aliasIsOneOfItsComplexKeyAndState()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QString cpx = text("cpx1");
        QVERIFY(f.model.cpaInsert(text("a"), cpx, {}, text("s"), text("first")));
        QVERIFY(f.model.cpaInsert(text("b"), cpx, text("k"), text("s"), text("second")));
        QCOMPARE(f.model.cpaGetPsiimId(cpx, {}, text("s")), text("a"));
        QCOMPARE(f.model.cpaGetPsiimId(cpx, text("k"), text("s")), text("b"));
        QCOMPARE(f.model.cpaGetPsiimId(cpx, text("k"), text("t")), QString());
        QCOMPARE(f.model.cpaGetCpxPsiimId(text("b")), cpx);
        QVERIFY(!f.model.cpaInsert(text("c"), cpx, text("k"), text("s"), {}));
        QVERIFY2(f.model.errorText().startsWith(text("Complex alias 'second' (b)")),
            qPrintable(f.model.errorText()));
        QVERIFY(f.model.cpaInsert(text("b"), cpx, text("k"), text("u"), text("renamed")));
        QCOMPARE(f.model.cpaGetPsiimId(cpx, text("k"), text("u")), text("b"));
        QVERIFY(f.model.cpaUpdateMcpStateCode(text("b"), text("v")));
        QCOMPARE(f.model.cpaGetHashInfo(text("b")).value(C::CpaStateCode), text("v"));
        QVERIFY(f.model.cpaInsert(text("c"), cpx, text("k"), text("w"), text("third")));
        QVERIFY(!f.model.cpaUpdateMcpStateCode(text("c"), text("v")));
        QVERIFY(f.model.errorText().contains(text("'renamed' (b)")));
        QVERIFY(!f.model.cpaInsert(text("d"), text("none"), {}, {}, {}));
        QVERIFY(f.model.errorText().contains(text("complex 'none', which does not exist")));
    }

    void aliasFlagsAreKept()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        QVERIFY(f.model.cpaIsShowEnabled(text("cpa1")));
        QVERIFY(!f.model.cpaIsShowEnabled(text("none")));
        QVERIFY(f.model.cpaGetListWellDefinedPsiimIds().isEmpty());
        QVERIFY(f.model.cpaSetShowEnabled(text("cpa1"), false));
        QVERIFY(f.model.cpaSetWellDefined(text("cpa3"), true));
        QVERIFY(f.model.cpaSetWellDefined(text("cpa1"), true));
        // Saving the alias again leaves the flags.
        QVERIFY(f.model.cpaInsert(text("cpa1"), text("cpx1"), {}, text("x"), {}));
        QVERIFY(!f.model.cpaIsShowEnabled(text("cpa1")));
        QCOMPARE(
            f.model.cpaGetListWellDefinedPsiimIds(), (QStringList{text("cpa1"), text("cpa3")}));
        QVERIFY(f.model.cpaSetWellDefined(text("cpa3"), false));
        QVERIFY(!f.model.cpaIsWellDefined(text("cpa3")));
        QVERIFY(!f.model.cpaSetShowEnabled(text("none"), true));
    }

    void associationIsFoundInTheGivenOrder_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("both");
        QTest::addColumn<bool>("found");
        const auto row = [](const char *name, const char *arguments, bool both, bool found) {
            QTest::newRow(name) << text(arguments).split(u',') << both << found;
        };
        row("as stored", "cpa1,bst2,0,cpa2,bst2,1,3D,cis", false, true);
        row("as stored, both ways", "cpa1,bst2,0,cpa2,bst2,1,3D,cis", true, true);
        row("exchanged", "cpa2,bst2,1,cpa1,bst2,0,3D,cis", false, false);
        row("exchanged, both ways", "cpa2,bst2,1,cpa1,bst2,0,3D,cis", true, true);
        row("half exchanged", "cpa2,bst2,0,cpa1,bst2,1,3D,cis", true, false);
        row("other geometry", "cpa1,bst2,0,cpa2,bst2,1,2D,cis", true, false);
        row("no binding type", "cpa1,bst2,0,cpa2,bst2,1,3D,", true, false);
        row("no alias", ",bst2,0,,bst2,1,3D,cis", true, false);
    }

    void associationIsFoundInTheGivenOrder()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, both);
        QFETCH(bool, found);
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        const QStringList &a = arguments;
        QCOMPARE(f.model.caiGetPsiimId(
                     a.at(0), a.at(1), a.at(2), a.at(3), a.at(4), a.at(5), a.at(6), a.at(7), both),
            found ? text("cai1") : QString());
    }
};

ZEL_TEST(tst_ZelDbComplex)
#include "tst_ZelDbComplex.moc"
