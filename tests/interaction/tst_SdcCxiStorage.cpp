#include "InteractionStage.h"

#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDomDocument>

#include <memory>

class tst_SdcCxiStorage : public ZelTest
{
    Q_OBJECT

    /// Two aliases, of one complex in two states when they are both "A", and a bond whose first
    /// site lies in the second.
    struct Model : InteractionStage
    {
        QString alias1;
        QString alias2;
        QString result;
        std::unique_ptr<SdcCxi> cxi;
        SdcBstBstCxi *bond = nullptr;

        explicit Model(const QString &types = QStringLiteral("AB"))
            : alias1(alias(types.left(1), {}, ComponentStateOn)),
              alias2(alias(types.mid(1), {}, ComponentStateOff)),
              result(alias(types, {{{0, 0}, {1, 1}}}, ComponentStateOn)),
              cxi(InteractionStage::cxi(alias1, alias2))
        {
            bond = cxiBond(cxi.get(), site(cxi->getChildSdcAtIndex(1), 0, 1),
                site(cxi->getChildSdcAtIndex(0), 0, 0));
            bond->setProperty(SdcProperty::ShortName, QStringLiteral("bind"));
            bond->setProperty(SdcProperty::Name, QStringLiteral("<a & b>"));
            bond->setProperty(SdcProperty::Notes, QStringLiteral("notes"));
            bond->setProperty(SdcProperty::AssociationRate, QStringLiteral("1e-3"));
            bond->setProperty(SdcProperty::BindingType, QStringLiteral("trans"));
            bond->setProperty(SdcProperty::References, QStringLiteral("doi:2"));
        }
    };

    static QString properties(Sdc *sdc)
    {
        const QHash<int, QString> hash = sdc->getProperties();
        QStringList texts;
        for (auto it = hash.cbegin(); it != hash.cend(); ++it) {
            if (!it.value().isEmpty())
                texts.append(QStringLiteral("%1=%2").arg(it.key()).arg(it.value()));
        }
        texts.sort();
        return texts.join(u',');
    }

    /// The complexes on the two sides of the bond, the bond's properties and its sites.
    static QString text(SdcBstBstCxi *bond)
    {
        QString text = properties(bond);
        for (SdcBst *bst : bond->getListSdcBst()) {
            SdcCpx *const cpx = bst->getParentSdcCpx();
            QString tree = ZelTree::text(cpx);
            text += u'\n' + tree.mid(tree.indexOf(u':')); // but for its number
            text += QStringLiteral("site %1 of molecule %2")
                        .arg(bst->getDisplayIndex())
                        .arg(bst->getParentSdcMol()->getPosIndex());
        }
        return text;
    }

private slots:
    void nothingIsLost_data()
    {
        QTest::addColumn<QString>("types");
        QTest::addColumn<QString>("geometry");
        QTest::addColumn<QString>("dissociationRate");
        QTest::newRow("one way") << "AB"
                                 << "2D"
                                 << "";
        QTest::newRow("and back") << "AB"
                                  << "3D"
                                  << "0.5";
        QTest::newRow("one complex with itself, in two states") << "AA"
                                                                << "3D"
                                                                << "0.5";
    }

    void nothingIsLost()
    {
        QFETCH(QString, types);
        QFETCH(QString, geometry);
        QFETCH(QString, dissociationRate);
        Model model(types);
        QVERIFY(!model.alias1.isEmpty() && model.alias1 != model.alias2);
        model.bond->setProperty(SdcProperty::Geometry, geometry);
        model.bond->setResultCpxAliasPsiimId(model.result);
        if (!dissociationRate.isEmpty())
            model.bond->setProperty(SdcProperty::DissociationRate, dissociationRate);
        QVERIFY(model.cxi->saveToDb());
        QCOMPARE(model.cxi->getPsiimId(), QStringLiteral("cai1"));
        QCOMPARE(model.db.cadGetListPsiimId().size(), dissociationRate.isEmpty() ? 0 : 1);

        SdcCxi loaded(&model.db);
        QVERIFY(loaded.loadFromDb(model.cxi->getPsiimId()));
        QCOMPARE(loaded.getListSdcBstBstCxi().size(), 1);
        QCOMPARE(text(loaded.getListSdcBstBstCxi().first()), text(model.bond));
        QCOMPARE(loaded.getProperty(SdcProperty::ShortName), QStringLiteral("bind"));

        // Saved again, from what was loaded, these are the same records.
        const QStringList records = model.records();
        QVERIFY(loaded.saveToDb());
        QCOMPARE(model.records(), records);
        QVERIFY(model.file.checkIntegrity().isEmpty());
    }

    void fillsInWhatIsNotGiven()
    {
        Model model;
        for (const int key : {SdcProperty::ShortName, SdcProperty::AssociationRate})
            model.bond->setProperty(key, QString());
        QVERIFY(model.db.mliInsert({{ZelDbColumn::PsiimId, QStringLiteral("mli1")},
            {ZelDbColumn::AssociationRate, QStringLiteral("42")},
            {ZelDbColumn::Bst1, model.bond->getSdcBst1()->getPsiimId()},
            {ZelDbColumn::Bst2, model.bond->getSdcBst2()->getPsiimId()}}));
        QVERIFY(model.cxi->saveToDb());
        const ZelDbRecord record = model.db.caiGetHashInfo(model.bond->getPsiimId());
        QCOMPARE(record.value(ZelDbColumn::AssociationRate), QStringLiteral("42"));
        QCOMPARE(record.value(ZelDbColumn::Geometry), QStringLiteral("3D"));
        QVERIFY(!record.value(ZelDbColumn::ShortName).isEmpty());
    }

    void theSameAssociationIsStoredOnce()
    {
        Model model;
        QVERIFY(model.cxi->saveToDb());
        // Drawn anew, with the sites the other way round.
        const std::unique_ptr<SdcCxi> again(
            model.InteractionStage::cxi(model.alias1, model.alias2));
        SdcBstBstCxi *const bond =
            model.cxiBond(again.get(), model.site(again->getChildSdcAtIndex(0), 0, 0),
                model.site(again->getChildSdcAtIndex(1), 0, 1));
        bond->setProperty(SdcProperty::BindingType, QStringLiteral("trans"));
        QVERIFY(again->saveToDb());
        QCOMPARE(model.db.caiGetListPsiimId(), QStringList({model.bond->getPsiimId()}));
        QCOMPARE(
            model.db.caiGetHashInfo(bond->getPsiimId()).value(ZelDbColumn::CaiCpa1), model.alias1);
    }

    void findsTheDissociationThatUndoesIt()
    {
        Model model;
        model.bond->setResultCpxAliasPsiimId(model.result);
        QVERIFY(model.cxi->saveToDb());
        const auto insert = [&model](const char *id, const QString &product, const char *type) {
            return model.db.cadInsert({{ZelDbColumn::PsiimId, QLatin1String(id)},
                {ZelDbColumn::DissociationRate, QLatin1String(id)},
                {ZelDbColumn::CadSourceCpa, model.result}, {ZelDbColumn::CadResultCpa1, product},
                {ZelDbColumn::CadResultCpa2, model.alias2},
                {ZelDbColumn::BindingType, QLatin1String(type)}});
        };
        QVERIFY(insert("other", model.alias2, "trans"));
        QVERIFY(insert("cis", model.alias1, "cis"));
        QVERIFY(insert("trans", model.alias1, "trans"));
        for (const char *expected : {"trans", "cis"}) {
            SdcCxi loaded(&model.db);
            QVERIFY(loaded.loadFromDb(model.bond->getPsiimId()));
            SdcBstBstCxi *const bond = loaded.getListSdcBstBstCxi().first();
            QCOMPARE(bond->getProperty(SdcProperty::DissociationRate), QLatin1String(expected));
            // A changed rate is that dissociation's, whose order of products is the other one.
            bond->setProperty(SdcProperty::DissociationRate, QStringLiteral("9"));
            QVERIFY(loaded.saveToDb());
            QCOMPARE(model.db.cadGetHashInfo(QLatin1String(expected))
                         .value(ZelDbColumn::DissociationRate),
                QStringLiteral("9"));
            QCOMPARE(model.db.cadGetListPsiimId().size(), expected == QLatin1String("cis") ? 2 : 3);
            QVERIFY(model.db.cadRemove(QLatin1String(expected)));
        }
    }

    void eachBondIsAnAssociation()
    {
        Model model;
        SdcBstBstCxi *const second =
            model.cxiBond(model.cxi.get(), model.site(model.cxi->getChildSdcAtIndex(0), 0, 2),
                model.site(model.cxi->getChildSdcAtIndex(1), 0, 0));
        model.cxi->addSdcBstBstCxi(second);
        model.cxi->addSdcBstBstCxi(nullptr);
        QVERIFY(model.cxi->saveToDb());
        QCOMPARE(model.db.caiGetListPsiimId().size(), 2);
        SdcCxi loaded(&model.db);
        QVERIFY(loaded.loadFromDb(second->getPsiimId()));
        QCOMPARE(text(loaded.getListSdcBstBstCxi().first()), text(second));
    }

    void aRingClosesWithinOneComplex()
    {
        Model model;
        const QString chain = model.alias(QStringLiteral("AB"), {{{0, 0}, {1, 0}}});
        const QString ring =
            model.alias(QStringLiteral("AB"), {{{0, 0}, {1, 0}}, {{0, 1}, {1, 1}}});
        SdcCxi cxi(&model.db);
        auto *const cpx = new SdcCpx(&model.db);
        QVERIFY(cpx->loadCpaFromDb(chain));
        cxi.addSdcChild(cpx, true);
        QList<SdcBst *> free;
        for (SdcBst *bst : cpx->getListSdcBst()) {
            if (!bst->isBound())
                free.append(bst);
        }
        SdcBstBstCxi *const bond = model.cxiBond(&cxi, free.first(), free.last());
        bond->setProperty(SdcProperty::ResultCpaPsiimId, ring);
        bond->setProperty(SdcProperty::DissociationRate, QStringLiteral("7"));
        QVERIFY(cxi.saveToDb());
        QCOMPARE(bond->getProperty(SdcProperty::Geometry), QStringLiteral("Intra Complex"));
        SdcCxi loaded(&model.db);
        QVERIFY(loaded.loadFromDb(cxi.getPsiimId()));
        QCOMPARE(loaded.getListSdcCpx().size(), 1);
        QCOMPARE(text(loaded.getListSdcBstBstCxi().first()), text(bond));
    }

    void whatIsStoredIsDrawnEvenIfNobodyMayDrawIt()
    {
        Model model;
        QVERIFY(model.cxi->saveToDb());
        const QString id = model.bond->getPsiimId();
        QVERIFY(model.db.caiInsert({{ZelDbColumn::PsiimId, id}, // its site 0 is bound already
            {ZelDbColumn::CaiCpa2, model.result},
            {ZelDbColumn::Bst2, model.bond->getSdcBst2()->getPsiimId()},
            {ZelDbColumn::MolPos2, QStringLiteral("0")}}));
        ZelSceneCxi scene;
        scene.setZelDbSqliteModel(&model.db);
        SdcCxi loaded(&model.db);
        scene.setSdc(&loaded);
        QVERIFY(loaded.loadFromDb(id, &scene));
        takeDebugLines(); // the layout is that of another complex
        SdcBstBstCxi *const bond = loaded.getListSdcBstBstCxi().value(0);
        QVERIFY(bond && bond->getSdcBst2()->isBound());
        QVERIFY(
            bond->getZelLineItemBstBstCxi() && bond->getZelLineItemBstBstCxi()->scene() == &scene);
    }

    void bearsDamage_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("complaint");
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<int>("complexes");
        QTest::newRow("no layout") << "no layout"
                                   << "" << true << 2;
        QTest::newRow("a layout cut off") << "cut off"
                                          << "layout of cai1 is not readable" << true << 2;
        QTest::newRow("the layout of a molecule") << "other layout"
                                                  << "" << true << 2;
        QTest::newRow("no second complex") << "no alias"
                                           << "no complex in the stored states" << false << 2;
        QTest::newRow("a site that the complex does not have")
            << "site"
            << "binds a site that its complexes" << false << 2;
        QTest::newRow("a molecule that the complex does not have")
            << "position"
            << "binds a site that its complexes" << false << 2;
        QTest::newRow("a state code that is none") << "state code"
                                                   << "loadAliasMcpStateCode" << true << 2;
        QTest::newRow("unknown association") << "unknown"
                                             << "no association cai9" << false << 0;
        QTest::newRow("not empty") << "not empty"
                                   << "reset it first" << false << 1;
        QTest::newRow("no database") << "no database"
                                     << "no database" << false << 0;
    }

    void bearsDamage()
    {
        QFETCH(QString, damage);
        QFETCH(QString, complaint);
        QFETCH(bool, loaded);
        QFETCH(int, complexes);
        Model model;
        QVERIFY(model.cxi->saveToDb());
        QString id = model.bond->getPsiimId();
        const auto is = [&damage](const char *name) { return damage == QLatin1String(name); };
        ZelDbRecord record{{ZelDbColumn::PsiimId, id}};
        if (is("no layout"))
            record.insert(ZelDbColumn::GraphicsInfo, QString());
        if (is("cut off"))
            record.insert(ZelDbColumn::GraphicsInfo, QStringLiteral("<schema><cxi><cpx>"));
        if (is("other layout"))
            record.insert(ZelDbColumn::GraphicsInfo, QStringLiteral("<schema><mol/></schema>"));
        if (is("no alias"))
            record.insert(ZelDbColumn::CaiCpa2, QString());
        if (is("site"))
            record.insert(ZelDbColumn::Bst1, model.bond->getSdcBst2()->getPsiimId());
        if (is("position"))
            record.insert(ZelDbColumn::MolPos2, QStringLiteral("9"));
        if (is("state code"))
            QVERIFY(model.db.cpaUpdateMcpStateCode(model.alias1, QStringLiteral("<cpx><mol")));
        QVERIFY(model.db.caiInsert(record));
        if (is("unknown"))
            id = QStringLiteral("cai9");
        SdcCxi cxi(is("no database") ? nullptr : &model.db);
        if (is("not empty"))
            cxi.addSdcChild(new SdcCpx(&model.db), true);
        QCOMPARE(cxi.loadFromDb(id), loaded);
        const QString lines = model.debugText();
        QVERIFY2(
            lines.contains(complaint) && lines.isEmpty() == complaint.isEmpty(), qPrintable(lines));
        QCOMPARE(cxi.getListSdcCpx().size(), complexes);
        QCOMPARE(cxi.getListSdcBstBstCxi().size(), loaded ? 1 : 0);
        if (loaded)
            QVERIFY(!cxi.getChildSdcAtIndex(0)->getSdcSceneRectF().intersects(
                cxi.getChildSdcAtIndex(1)->getSdcSceneRectF()));
    }

    void aLayoutElementGivesTwoComplexes()
    {
        Model model;
        QVERIFY(model.cxi->saveToDb());
        QDomDocument doc;
        doc.setContent(QStringLiteral("<cxi><boundingRect x='7' y='9'/><cpx psiimId='%1'/>"
                                      "<cpx psiimId='nix'/><cpx psiimId='%1'/></cxi>")
                           .arg(model.db.cpaGetCpxPsiimId(model.result)));
        SdcCxi cxi(&model.db);
        QVERIFY(!cxi.loadDom(model.bond->getPsiimId(), doc.documentElement(), nullptr));
        const QString lines = model.debugText();
        QVERIFY2(lines.contains(QLatin1String("nix no such complex")), qPrintable(lines));
        QCOMPARE(cxi.getListSdcCpx().size(), 2);
        QCOMPARE(cxi.getSdcCpxAtPosIndex(0)->getListSdcBstBstCpx().size(), 1);
        QCOMPARE(cxi.getProperty(SdcProperty::ShortName), QStringLiteral("bind"));
        SdcCxi none(nullptr);
        QVERIFY(!none.loadDom(QString(), QDomElement(), nullptr));
    }

    void refusesWhatCannotBeStored_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("no database") << "no database"
                                     << "no database";
        QTest::newRow("no bond") << "no bond"
                                 << "needs a bond";
        QTest::newRow("one site") << "one site"
                                  << "needs two sites";
        QTest::newRow("a site of no complex") << "loose"
                                              << "belongs to none of its complexes";
        QTest::newRow("a complex that is no alias") << "no alias"
                                                    << "save it first";
        QTest::newRow("a geometry that does not fit") << "geometry"
                                                      << "\"Intra Complex\" does not fit";
        QTest::newRow("a dissociation of nothing") << "no result"
                                                   << "needs a result complex";
        QTest::newRow("a result that is not stored") << "unknown result"
                                                     << "cpa99";
        QTest::newRow("a second bond that fails") << "second"
                                                  << "cpa99";
        QTest::newRow("closed database") << "closed"
                                         << "open";
    }

    void refusesWhatCannotBeStored()
    {
        QFETCH(QString, fault);
        QFETCH(QString, complaint);
        Model model;
        const auto is = [&fault](const char *name) { return fault == QLatin1String(name); };
        SdcBst loose(&model.db);
        SdcBstBstCxi *const bond = model.bond;
        bond->setProperty(SdcProperty::ShortName, QString());
        if (is("no database"))
            model.cxi->setZelDbSqliteModel(nullptr);
        if (is("no bond"))
            model.cxi->removeSdcBstBstCxi(bond);
        if (is("one site") || is("loose"))
            bond->removeSdcBst(bond->getSdcBst2());
        if (is("loose"))
            bond->addSdcBst(&loose);
        if (is("no alias"))
            bond->getSdcCpx1()->clearProperty(SdcProperty::CpaPsiimId);
        if (is("geometry"))
            bond->setProperty(SdcProperty::Geometry, QStringLiteral("Intra Complex"));
        if (is("no result"))
            bond->setProperty(SdcProperty::DissociationRate, QStringLiteral("1"));
        if (is("unknown result"))
            bond->setProperty(SdcProperty::ResultCpaPsiimId, QStringLiteral("cpa99"));
        if (is("second"))
            model
                .cxiBond(model.cxi.get(), model.site(model.cxi->getChildSdcAtIndex(0), 0, 1),
                    model.site(model.cxi->getChildSdcAtIndex(1), 0, 0))
                ->setProperty(SdcProperty::ResultCpaPsiimId, QStringLiteral("cpa99"));
        const QStringList records = model.records();
        if (is("closed"))
            model.file.close();
        const QString before = properties(model.cxi.get()) + properties(bond);
        QVERIFY(!model.cxi->saveToDb());
        const QStringList lines = takeDebugLines();
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().startsWith(QLatin1String("Error found at bool SdcCxi::saveToDb(): "))
                && lines.first().contains(complaint),
            qPrintable(lines.first()));
        QCOMPARE(properties(model.cxi.get()) + properties(bond), before);
        if (!is("closed"))
            QCOMPARE(model.records(), records);
    }
};

ZEL_TEST(tst_SdcCxiStorage)
#include "tst_SdcCxiStorage.moc"
