#include "InteractionStage.h"

#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCad.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcTrn.h"

#include <QSignalSpy>

#include <memory>

class tst_SdcTrnCad : public ZelTest
{
    Q_OBJECT

    static std::unique_ptr<SdcCpx> loaded(InteractionStage &stage, const QString &alias)
    {
        auto cpx = std::make_unique<SdcCpx>(&stage.db);
        cpx->loadCpaFromDb(alias);
        return cpx;
    }

    /// A(P)-B-A dissociates into A and A(P)-B, or into A(P) and B-A.
    struct CadModel : InteractionStage
    {
        const QString A = QStringLiteral("A");
        const QString AB = QStringLiteral("AB");
        QString source = alias("ABA", {{{0, 0}, {1, 0}}, {{2, 0}, {1, 0 + 1}}}, ComponentStateOn);
        QString aOn = alias(A, {}, ComponentStateOn);
        QString aOff = alias(A);

        /// B's site 0 or 1 is the bound one.
        QString ab(int siteOfB, int state) { return alias(AB, {{{0, 0}, {1, siteOfB}}}, state); }
    };

private slots:
    void aTransformationKeepsItsSlots()
    {
        SdcTrn trn(nullptr);
        QVERIFY(trn.isEmpty());
        QCOMPARE(trn.getListSdcChildren().size(), 2);
        SdcCpx a(nullptr);
        SdcCpx b(nullptr);
        trn.setSdcCpxTo(&a);
        QCOMPARE(trn.getSdcCpxFrom(), nullptr);
        QCOMPARE(trn.getSdcCpxTo(), &a);
        trn.setSdcCpxFrom(nullptr);
        QCOMPARE(trn.getListSdcChildren(), QList<Sdc *>({nullptr, &a}));
        trn.setSdcCpxFrom(&b);
        trn.setSdcCpxTo(nullptr);
        QCOMPARE(trn.getListSdcChildren(), QList<Sdc *>({&b, &a}));
        QCOMPARE(trn.rowCount(), 0);

        // One that was replaced has nothing to tell any more.
        QSignalSpy changed(&trn, &Sdc::signal_changed);
        trn.setSdcCpxFrom(&a);
        changed.clear();
        b.setChanged();
        QCOMPARE(changed.size(), 0);
        a.setChanged();
        QCOMPARE(changed.size(), 1);
        QCOMPARE(trn.getListSdcChildren(), QList<Sdc *>({&a, &a}));

        a.removeSelfFromParent();
        QCOMPARE(trn.getListSdcChildren(), QList<Sdc *>({nullptr, nullptr}));
        trn.setSdcCpxTo(&b);
        trn.reset();
        trn.setSdcCpxTo(&a);
        QCOMPARE(trn.getListSdcChildren(), QList<Sdc *>({nullptr, &a}));
    }

    void complexesDieWhileTransformationsHoldThem_data() { orderRows(4); }

    void complexesDieWhileTransformationsHoldThem()
    {
        QFETCH(QList<int>, order);
        auto cxi = std::make_unique<SdcCxi>(nullptr);
        auto trn1 = std::make_unique<SdcTrn>(nullptr);
        auto trn2 = std::make_unique<SdcTrn>(nullptr);
        QPointer<SdcCpx> shared = new SdcCpx(nullptr);
        SdcCpx other(nullptr);
        cxi->addSdcChild(shared, true);
        trn1->setSdcCpxFrom(shared);
        trn1->setSdcCpxTo(&other);
        trn2->setSdcCpxFrom(&other);
        trn2->setSdcCpxTo(shared);
        for (const int victim : order) {
            switch (victim) {
            case 0:
                cxi.reset(); // owns the complex
                QVERIFY(!shared);
                break;
            case 1:
                trn1.reset();
                break;
            case 2:
                trn2.reset();
                break;
            default:
                delete shared;
            }
            if (cxi)
                QCOMPARE(cxi->getListSdcCpx().size(), shared ? 1 : 0);
            if (trn1)
                QCOMPARE(trn1->getListSdcChildren(), QList<Sdc *>({shared, &other}));
            if (trn2)
                QCOMPARE(trn2->getListSdcChildren(), QList<Sdc *>({&other, shared}));
            // Its parent is one that still holds it.
            if (shared)
                QVERIFY(!shared->getParentSdc() == !(cxi || trn1 || trn2)
                    && (!shared->getParentSdc() || shared->getPosIndex() >= 0));
        }
    }

    void aTransformationComesBackAsItWas()
    {
        InteractionStage stage;
        const auto from = loaded(stage, stage.alias("A", {}, ComponentStateOn));
        const auto to = loaded(stage, stage.alias("A", {}, ComponentStateOff));
        SdcTrn trn(&stage.db);
        trn.setSdcCpxFrom(from.get());
        trn.setSdcCpxTo(to.get());
        trn.setProperty(SdcProperty::Rate, "0.1");
        trn.setProperty(SdcProperty::Notes, "notes");
        trn.setProperty(SdcProperty::References, "doi:3");
        QVERIFY(trn.saveToDb());
        QVERIFY(!trn.getProperty(SdcProperty::ShortName).isEmpty());

        ZelScene scene;
        SdcTrn again(&stage.db);
        QVERIFY(again.loadFromDb(trn.getPsiimId(), &scene));
        for (const int key : {1, 2, 3, 11, 21, 29})
            QCOMPARE(again.getProperty(key), trn.getProperty(key));
        QCOMPARE(again.getSdcCpxFrom()->getAliasMcpStateCode(), from->getAliasMcpStateCode());
        QCOMPARE(again.getSdcCpxTo()->getAliasMcpStateCode(), to->getAliasMcpStateCode());
        QVERIFY(!again.getSdcCpxFrom()->getSdcSceneRectF().intersects(
            again.getSdcCpxTo()->getSdcSceneRectF()));
        QCOMPARE(again.getScene(), &scene);
        const QStringList records = stage.records();
        QVERIFY(again.saveToDb());
        QCOMPARE(stage.records(), records);

        // A side that the record does not name, and a record that is not there.
        QVERIFY(stage.db.trnInsert(
            {{ZelDbColumn::PsiimId, trn.getPsiimId()}, {ZelDbColumn::TrnFromCpa, QString()}}));
        QVERIFY(!again.loadFromDb(trn.getPsiimId()));
        QVERIFY(!again.getSdcCpxFrom() && again.getSdcCpxTo());
        QVERIFY(!again.loadFromDb("trn9"));
        QVERIFY(again.getSdcCpxTo()); // nothing changed
        const QString lines = stage.debugText();
        QVERIFY2(lines.contains(QLatin1String("no complex in the stored states"))
                && lines.contains(QLatin1String("no transformation trn9")),
            qPrintable(lines));
    }

    void aTransformationRefusesWhatCannotBeStored_data()
    {
        rows<QString>({"complaint"},
            {{"no database", {"no database"}}, {"one side", {"needs two complexes"}},
                {"no alias", {"needs two complexes"}}, {"no rate", {"give a rate"}},
                {"unknown alias", {"cpa99"}}});
    }

    void aTransformationRefusesWhatCannotBeStored()
    {
        QFETCH(QString, complaint);
        InteractionStage stage;
        const auto cpx = loaded(stage, stage.alias("A"));
        SdcCpx to(&stage.db);
        SdcTrn trn(isRow("no database") ? nullptr : &stage.db);
        trn.setSdcCpxFrom(cpx.get());
        if (!isRow("one side"))
            trn.setSdcCpxTo(&to);
        if (!isRow("no alias"))
            to.setProperty(SdcProperty::CpaPsiimId,
                isRow("unknown alias") ? "cpa99" : cpx->getProperty(SdcProperty::CpaPsiimId));
        if (!isRow("no rate"))
            trn.setProperty(SdcProperty::Rate, "1");
        QCOMPARE(stage.faultOfRefusal(
                     {&trn}, [&] { return trn.saveToDb(); }, complaint),
            QString());
    }

    void aDissociationFindsTheBondItBreaks_data()
    {
        // losesTheOtherA: else the one with the feature
        rows<bool, bool>({"losesTheOtherA", "reverse"},
            {{"the bond to the plain end", {true, false}},
                {"the bond to the end with the feature", {false, false}},
                {"products the other way round", {true, true}}});
    }

    void aDissociationFindsTheBondItBreaks()
    {
        QFETCH(bool, losesTheOtherA);
        QFETCH(bool, reverse);
        CadModel model;
        const auto source = loaded(model, model.source);
        const auto r1 = loaded(model, losesTheOtherA ? model.aOff : model.aOn);
        // The bond that stays holds B by its site 0 when the A that goes is the plain one.
        const auto r2 = loaded(model,
            losesTheOtherA ? model.ab(0, ComponentStateOn) : model.ab(1, ComponentStateDontCare));
        SdcCad cad(&model.db);
        cad.setCpxSrc(source.get());
        cad.setCpxR1(r1.get());
        cad.setCpxR2(r2.get());
        cad.setReverse12(reverse);
        cad.setSbbc(source->getListSdcBstBstCpx().first());
        cad.setProperty(SdcProperty::DissociationRate, "0.1");
        cad.setProperty(SdcProperty::BindingType, "cis");
        cad.setProperty(SdcProperty::Notes, "notes");
        QVERIFY(cad.isConsistentToDb()); // never stored
        QVERIFY(cad.saveToDb());
        QVERIFY(cad.isConsistentToDb());

        SdcCad again(&model.db);
        QVERIFY(again.loadFromDb(cad.getPsiimId()));
        QVERIFY(again.isConsistentToDb());
        for (const int key : {1, 2, 3, 11, 16, 23, 27})
            QCOMPARE(again.getProperty(key), cad.getProperty(key));
        QCOMPARE(
            (reverse ? again.getCpxR2() : again.getCpxR1())->getProperty(18), r1->getProperty(18));
        // The molecule that the bond lets go has the feature, or not.
        SdcBstBstCpx *const bond = again.getSbbc();
        QVERIFY(bond);
        QStringList states;
        for (SdcBst *bst : bond->getListSdcBst()) {
            if (bst->getParentSdcMol()->getPsiimId() == model.molA)
                states.append(bst->getParentSdcMol()->getListSdcMcp().first()->getProperty(9));
        }
        QCOMPARE(states.size(), 1);
        QCOMPARE(states.first().startsWith(QLatin1String("P(0)")), losesTheOtherA);
        const QStringList records = model.records();
        QVERIFY(again.saveToDb());
        QCOMPARE(model.records(), records);
    }

    void aDissociationThatDoesNotAddUpIsReported()
    {
        CadModel model;
        QVERIFY(model.db.cadInsert({{ZelDbColumn::PsiimId, "cad1"},
            {ZelDbColumn::CadSourceCpa, model.source}, {ZelDbColumn::CadResultCpa1, model.aOn},
            {ZelDbColumn::CadResultCpa2, model.aOff}}));
        QVERIFY(model.db.cadInsert(
            {{ZelDbColumn::PsiimId, "cad2"}, {ZelDbColumn::CadResultCpa1, model.aOn}}));
        SdcCad cad(&model.db);
        QVERIFY(!cad.loadFromDb("cad1"));
        QVERIFY(cad.getCpxSrc() && cad.getCpxR1() && cad.getCpxR2() && !cad.getSbbc());
        QVERIFY(!cad.isConsistentToDb());
        QVERIFY(!cad.loadFromDb("cad2"));
        QVERIFY(!cad.getCpxSrc() && cad.getCpxR1() && !cad.getCpxR2());
        QVERIFY(!cad.saveToDb());
        QVERIFY(!cad.loadFromDb("cad3"));
        SdcCad none(nullptr);
        QVERIFY(!none.loadFromDb("cad1") && !none.saveToDb());
        const QString lines = model.debugText();
        for (const char *complaint :
            {"no bond divides the source of cad1", "no complex in the stored states",
                "needs a source and products", "no dissociation cad3",
                "ZelScene * scene): no database", "saveToDb(): no database"})
            QVERIFY2(lines.contains(QLatin1String(complaint)), qPrintable(lines));
    }

    void consistencyIsThatOfTextsAndSource_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("expected");
        QTest::newRow("as stored") << "" << true;
        for (const char *key : {"2", "3", "16", "27", "11"})
            QTest::addRow("property %s", key) << QString::fromLatin1(key) << false;
        QTest::newRow("another source") << "source" << false;
        QTest::newRow("other products") << "products" << true;
        QTest::newRow("an empty product") << "empty" << false;
        QTest::newRow("no bond") << "no bond" << false;
        QTest::newRow("a dead source") << "dead" << false;
        QTest::newRow("no database") << "no database" << false;
        QTest::newRow("never stored") << "1" << true;
    }

    void consistencyIsThatOfTextsAndSource()
    {
        QFETCH(QString, change);
        QFETCH(bool, expected);
        InteractionStage stage;
        const QString source = stage.alias("AB", {{{0, 0}, {1, 0}}});
        QVERIFY(stage.db.cadInsert({{ZelDbColumn::PsiimId, "cad1"}, {ZelDbColumn::ShortName, "s"},
            {ZelDbColumn::Name, "n"}, {ZelDbColumn::Notes, "o"},
            {ZelDbColumn::DissociationRate, "1"}, {ZelDbColumn::GeometryText, "g"},
            {ZelDbColumn::CadSourceCpa, source}}));
        auto src = loaded(stage, source);
        SdcCpx r1(&stage.db);
        SdcCpx r2(&stage.db);
        r1.addSdcChild(new SdcMol(&stage.db), true);
        if (change != QLatin1String("empty"))
            r2.addSdcChild(new SdcMol(&stage.db), true);
        SdcCad cad(&stage.db);
        cad.setCpxSrc(src.get());
        cad.setCpxR1(&r1);
        cad.setCpxR2(&r2);
        cad.setSbbc(
            change == QLatin1String("no bond") ? nullptr : src->getListSdcBstBstCpx().first());
        const QList<std::pair<int, const char *>> texts{
            {1, "cad1"}, {2, "s"}, {3, "n"}, {11, "o"}, {16, "1"}, {27, "g"}};
        for (const auto &[key, text] : texts)
            cad.setProperty(key, QLatin1String(text));
        if (const int key = change.toInt())
            cad.setProperty(key, key == 1 ? QString() : QStringLiteral("x"));
        if (change == QLatin1String("source"))
            src->setProperty(18, "cpa99");
        if (change == QLatin1String("products"))
            cad.setReverse12(true);
        if (change == QLatin1String("dead"))
            src.reset();
        if (change == QLatin1String("no database"))
            cad.setZelDbSqliteModel(nullptr);
        QCOMPARE(cad.isConsistentToDb(), expected);
    }
};

ZEL_TEST(tst_SdcTrnCad)
#include "tst_SdcTrnCad.moc"
