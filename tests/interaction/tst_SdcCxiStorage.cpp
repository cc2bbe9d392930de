#include "InteractionStage.h"

#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
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

        explicit Model(const QString &types = "AB")
            : alias1(alias(types.left(1), {}, ComponentStateOn)),
              alias2(alias(types.mid(1), {}, ComponentStateOff)),
              result(alias(types, {{{0, 0}, {1, 1}}}, ComponentStateOn)),
              cxi(InteractionStage::cxi(alias1, alias2))
        {
            bond = cxiBond(cxi.get(), site(cxi->getChildSdcAtIndex(1), 0, 1),
                site(cxi->getChildSdcAtIndex(0), 0, 0));
            bond->setProperty(SdcProperty::ShortName, "bind");
            bond->setProperty(SdcProperty::Name, "<a & b>");
            bond->setProperty(SdcProperty::Notes, "notes");
            bond->setProperty(SdcProperty::AssociationRate, "1e-3");
            bond->setProperty(SdcProperty::BindingType, "trans");
            bond->setProperty(SdcProperty::References, "doi:2");
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
        rows<QString, QString, QString>({"types", "geometry", "dissociationRate"},
            {{"one way", {"AB", "2D", ""}}, {"and back", {"AB", "3D", "0.5"}},
                {"one complex with itself, in two states", {"AA", "3D", "0.5"}}});
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
        QCOMPARE(model.cxi->getPsiimId(), "cai1");
        QCOMPARE(model.db.cadGetListPsiimId().size(), dissociationRate.isEmpty() ? 0 : 1);

        SdcCxi loaded(&model.db);
        QVERIFY(loaded.loadFromDb(model.cxi->getPsiimId()));
        QCOMPARE(loaded.getListSdcBstBstCxi().size(), 1);
        QCOMPARE(text(loaded.getListSdcBstBstCxi().first()), text(model.bond));
        QCOMPARE(loaded.getProperty(SdcProperty::ShortName), "bind");

        // Saved again, from what was loaded, these are the same records.
        const QStringList records = model.records();
        QVERIFY(loaded.saveToDb());
        QCOMPARE(model.records(), records);
        QVERIFY(model.file.checkIntegrity().isEmpty());
    }

    void fillsInWhatIsNotGiven()
    {
        Model model;
        for (const int key :
            {SdcProperty::ShortName, SdcProperty::AssociationRate, SdcProperty::Geometry})
            model.bond->setProperty(key, QString());
        QVERIFY(model.db.mliInsert(
            {{ZelDbColumn::PsiimId, "mli1"}, {ZelDbColumn::AssociationRate, "42"},
                {ZelDbColumn::Bst1, model.bond->getSdcBst1()->getPsiimId()},
                {ZelDbColumn::Bst2, model.bond->getSdcBst2()->getPsiimId()}}));
        QVERIFY(model.cxi->saveToDb());
        const ZelDbRecord record = model.db.caiGetHashInfo(model.bond->getPsiimId());
        QCOMPARE(record.value(ZelDbColumn::AssociationRate), "42");
        QCOMPARE(record.value(ZelDbColumn::Geometry), "3D");
        QVERIFY(!record.value(ZelDbColumn::ShortName).isEmpty());
    }

    void overwritesNothingThatItHasNotRead_data()
    {
        rows<QString>({"complaint"},
            {{"drawn anew, the other way round", {"as cai1 'bind';"}},
                {"changed into another one", {"as cai1 'bind';"}},
                {"one association twice", {"two of its bonds"}},
                {"another dissociation rate", {"as cad1 'bind' with the rate 0.5"}}});
    }

    void overwritesNothingThatItHasNotRead()
    {
        QFETCH(QString, complaint);
        Model model;
        model.bond->setResultCpxAliasPsiimId(model.result);
        model.bond->setProperty(SdcProperty::DissociationRate, "0.5");
        QVERIFY(model.cxi->saveToDb());
        const bool twice = isRow("one association twice");
        const std::unique_ptr<SdcCxi> again(
            model.InteractionStage::cxi(model.alias1, twice ? model.alias1 : model.alias2));
        const auto bind = [&](int site1, int site2) {
            return model.cxiBond(again.get(), model.site(again->getChildSdcAtIndex(0), 0, site1),
                model.site(again->getChildSdcAtIndex(1), 0, site2));
        };
        SdcBstBstCxi *const bond = isRow("another dissociation rate") ? bind(2, 0) : bind(0, 1);
        if (twice)
            bind(1, 0);
        bond->setProperty(SdcProperty::BindingType, "trans");
        if (isRow("changed into another one")) {
            bond->setProperty(SdcProperty::Geometry, "2D");
            QVERIFY(again->saveToDb());
            bond->setProperty(SdcProperty::Geometry, "3D");
        }
        if (isRow("another dissociation rate")) {
            bond->setProperty(SdcProperty::ResultCpaPsiimId, model.result);
            bond->setProperty(SdcProperty::DissociationRate, "7");
        }
        if (twice)
            bond->setProperty(SdcProperty::BindingType, QString());
        QCOMPARE(model.faultOfRefusal(
                     {again.get(), bond}, [&] { return again->saveToDb(); }, complaint),
            QString());
    }

    void storesWhatAnAssociationYields_data()
    {
        rows<QString, int, int, int>({"types", "site1", "site2", "newComplexes"},
            {{"a stored complex in new states", {"AB", 0, 1, 0}},
                {"a complex that is not stored", {"AB", 2, 0, 1}},
                {"of one species with itself", {"AA", 2, 2, 1}}});
    }

    void storesWhatAnAssociationYields()
    {
        QFETCH(QString, types);
        QFETCH(int, site1);
        QFETCH(int, site2);
        QFETCH(int, newComplexes);
        Model model(types);
        const auto counts = [&model] {
            return std::pair(
                model.db.cpxGetListPsiimId().size(), model.db.cpaGetListPsiimId().size());
        };
        const auto before = counts();
        const auto states = [](Sdc *sdc) {
            QStringList texts;
            for (SdcMcp *mcp : sdc->getListSdcMcp())
                texts.append(mcp->getPsiimId() + mcp->getProperty(SdcProperty::StateCode));
            texts.sort();
            return texts;
        };
        const auto draw = [&](const char *geometry) {
            std::unique_ptr<SdcCxi> cxi(model.InteractionStage::cxi(model.alias1, model.alias2));
            cxi->getSdcCpxAtPosIndex(0)->setProperty(SdcProperty::CpaKey2, "cell");
            model
                .cxiBond(cxi.get(), model.site(cxi->getChildSdcAtIndex(0), 0, site1),
                    model.site(cxi->getChildSdcAtIndex(1), 0, site2))
                ->setProperty(SdcProperty::Geometry, QLatin1String(geometry));
            return cxi;
        };
        const auto cxi = draw("3D");
        SdcBstBstCxi *const bond = cxi->getListSdcBstBstCxi().first();
        // What cannot be saved leaves nothing of it.
        bond->setProperty(SdcProperty::Geometry, "Intra Complex");
        QVERIFY(!cxi->saveToDbWithResults());
        takeDebugLines();
        QCOMPARE(counts(), before);
        bond->setProperty(SdcProperty::Geometry, "3D");
        QVERIFY2(cxi->saveToDbWithResults(), qPrintable(cxi->getRefusal()));

        const QString result = bond->getProperty(SdcProperty::ResultCpaPsiimId);
        QCOMPARE(
            model.db.caiGetHashInfo(cxi->getPsiimId()).value(ZelDbColumn::CaiResultCpa), result);
        QCOMPARE(counts(), std::pair(before.first + newComplexes, before.second + 1));
        SdcCpx product(&model.db);
        QVERIFY(product.loadCpaFromDb(result));
        QCOMPARE(product.getCpxFingerPrint(), bond->getResultCpxFingerPrint());
        QCOMPARE(states(&product), states(cxi.get()));
        QStringList places = product.getProperty(SdcProperty::CpaKey2).split(u';');
        places.sort();
        QCOMPARE(places, QStringList({"", "cell"}));
        QVERIFY(!product.getListSdcMol().at(0)->getSdcSceneRectF().intersects(
            product.getListSdcMol().at(1)->getSdcSceneRectF()));
        // Another association yields the same one.
        const auto other = draw("2D");
        QVERIFY(other->saveToDbWithResults());
        QCOMPARE(other->getListSdcBstBstCxi().first()->getProperty(SdcProperty::ResultCpaPsiimId),
            result);
        QCOMPARE(counts(), std::pair(before.first + newComplexes, before.second + 1));
        // A result that was chosen stays.
        bond->setProperty(SdcProperty::ResultCpaPsiimId, model.result);
        QVERIFY(cxi->saveToDbWithResults());
        QCOMPARE(bond->getProperty(SdcProperty::ResultCpaPsiimId), model.result);
        QVERIFY(model.file.checkIntegrity().isEmpty());
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
            bond->setProperty(SdcProperty::DissociationRate, "9");
            QVERIFY(loaded.saveToDb());
            QCOMPARE(model.db.cadGetHashInfo(QLatin1String(expected))
                         .value(ZelDbColumn::DissociationRate),
                "9");
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
        const QString chain = model.alias("AB", {{{0, 0}, {1, 0}}});
        const QString ring = model.alias("AB", {{{0, 0}, {1, 0}}, {{0, 1}, {1, 1}}});
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
        bond->setProperty(SdcProperty::DissociationRate, "7");
        QVERIFY(cxi.saveToDbWithResults());
        QCOMPARE(model.db.cpaGetCpxPsiimId(bond->getProperty(SdcProperty::ResultCpaPsiimId)),
            model.db.cpaGetCpxPsiimId(ring));
        QCOMPARE(bond->getProperty(SdcProperty::Geometry), "Intra Complex");
        SdcCxi loaded(&model.db);
        QVERIFY(loaded.loadFromDb(cxi.getPsiimId()));
        QCOMPARE(loaded.getListSdcCpx().size(), 1);
        QCOMPARE(text(loaded.getListSdcBstBstCxi().first()), text(bond));
    }

    void aSiteBindsThatOfAnotherComplexWhateverTheGeometry()
    {
        Model model;
        const QString site = model.bond->getSdcBst2()->getPsiimId();
        QVERIFY(model.db.caiInsert({{ZelDbColumn::PsiimId, "cai1"},
            {ZelDbColumn::CaiCpa1, model.alias1}, {ZelDbColumn::CaiCpa2, model.alias1},
            {ZelDbColumn::Bst1, site}, {ZelDbColumn::MolPos1, "0"}, {ZelDbColumn::Bst2, site},
            {ZelDbColumn::MolPos2, "0"}}));
        SdcCxi loaded(&model.db);
        QVERIFY(loaded.loadFromDb("cai1"));
        QCOMPARE(loaded.getListSdcCpx().size(), 2);
        QVERIFY(loaded.saveToDb());
        QCOMPARE(model.db.caiGetHashInfo("cai1").value(ZelDbColumn::Geometry), "3D");
    }

    void whatIsStoredIsDrawnEvenIfNobodyMayDrawIt()
    {
        Model model;
        QVERIFY(model.cxi->saveToDb());
        const QString id = model.bond->getPsiimId();
        QVERIFY(model.db.caiInsert({{ZelDbColumn::PsiimId, id}, // its site 0 is bound already
            {ZelDbColumn::CaiCpa2, model.result},
            {ZelDbColumn::Bst2, model.bond->getSdcBst2()->getPsiimId()},
            {ZelDbColumn::MolPos2, "0"}}));
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
        rows<QString, bool, int>({"complaint", "loaded", "complexes"},
            {{"no layout", {"", true, 2}},
                {"no second complex", {"no complex in the stored states", false, 2}},
                {"unknown site", {"binds a site that its complexes", false, 2}},
                {"unknown molecule", {"binds a site that its complexes", false, 2}},
                {"bad state code", {"loadAliasMcpStateCode", true, 2}},
                {"unknown association", {"no association cai9", false, 0}},
                {"not empty", {"reset it first", false, 1}},
                {"no database", {"no database", false, 0}}});
    }

    void bearsDamage()
    {
        QFETCH(QString, complaint);
        QFETCH(bool, loaded);
        QFETCH(int, complexes);
        Model model;
        QVERIFY(model.cxi->saveToDb());
        QString id = model.bond->getPsiimId();
        ZelDbRecord record{{ZelDbColumn::PsiimId, id}};
        if (isRow("no layout"))
            record.insert(ZelDbColumn::GraphicsInfo, QString());
        if (isRow("no second complex"))
            record.insert(ZelDbColumn::CaiCpa2, QString());
        if (isRow("unknown site"))
            record.insert(ZelDbColumn::Bst1, model.bond->getSdcBst2()->getPsiimId());
        if (isRow("unknown molecule"))
            record.insert(ZelDbColumn::MolPos2, "9");
        if (isRow("bad state code"))
            QVERIFY(model.db.cpaUpdateMcpStateCode(model.alias1, "<cpx><mol"));
        QVERIFY(model.db.caiInsert(record));
        if (isRow("unknown association"))
            id = QStringLiteral("cai9");
        SdcCxi cxi(isRow("no database") ? nullptr : &model.db);
        if (isRow("not empty"))
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
        QCOMPARE(cxi.getProperty(SdcProperty::ShortName), "bind");
        SdcCxi none(nullptr);
        QVERIFY(!none.loadDom(QString(), QDomElement(), nullptr));
    }

    void refusesWhatCannotBeStored_data()
    {
        rows<QString>({"complaint"},
            {{"no database", {"no database"}}, {"no bond", {"needs a bond"}},
                {"one site", {"needs two sites"}},
                {"site of no complex", {"belongs to none of its complexes"}},
                {"no alias", {"save it first"}}, {"geometry", {"\"Intra Complex\" does not fit"}},
                {"dissociation of nothing", {"needs a result complex"}},
                {"unknown result", {"cpa99"}}, {"second bond", {"cpa99"}},
                {"closed database", {"open"}}});
    }

    void refusesWhatCannotBeStored()
    {
        QFETCH(QString, complaint);
        Model model;
        SdcBst loose(&model.db);
        SdcBstBstCxi *const bond = model.bond;
        bond->setProperty(SdcProperty::ShortName, QString());
        if (isRow("no database"))
            model.cxi->setZelDbSqliteModel(nullptr);
        if (isRow("no bond"))
            model.cxi->removeSdcBstBstCxi(bond);
        if (isRow("one site") || isRow("site of no complex"))
            bond->removeSdcBst(bond->getSdcBst2());
        if (isRow("site of no complex"))
            bond->addSdcBst(&loose);
        if (isRow("no alias"))
            bond->getSdcCpx1()->clearProperty(SdcProperty::CpaPsiimId);
        if (isRow("geometry"))
            bond->setProperty(SdcProperty::Geometry, "Intra Complex");
        if (isRow("dissociation of nothing"))
            bond->setProperty(SdcProperty::DissociationRate, "1");
        if (isRow("unknown result"))
            bond->setProperty(SdcProperty::ResultCpaPsiimId, "cpa99");
        if (isRow("second bond"))
            model
                .cxiBond(model.cxi.get(), model.site(model.cxi->getChildSdcAtIndex(0), 0, 1),
                    model.site(model.cxi->getChildSdcAtIndex(1), 0, 0))
                ->setProperty(SdcProperty::ResultCpaPsiimId, "cpa99");
        QCOMPARE(model.faultOfRefusal(
                     {model.cxi.get(), bond}, [&] { return model.cxi->saveToDb(); }, complaint,
                     isRow("closed database")),
            QString());
    }
};

ZEL_TEST(tst_SdcCxiStorage)
#include "tst_SdcCxiStorage.moc"
