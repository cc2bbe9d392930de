#include "InteractionStage.h"

#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDomDocument>

#include <memory>

class tst_SdcMliStorage : public ZelTest
{
    Q_OBJECT

    struct Model : InteractionStage
    {
        std::unique_ptr<SdcMli> mli;
        SdcBstBstMli *bond = nullptr;

        /// Ready to be saved. The bond's first site lies in the second molecule.
        explicit Model(const QString &types = "AB", int site0 = 2)
            : mli(InteractionStage::mli(types))
        {
            bond = mliBond(mli.get(), site(mli.get(), 1, 1), site(mli.get(), 0, site0));
            mli->addSdcBstBstMli(bond);
            mli->setProperty(SdcProperty::AssociationRate, "1e5");
            mli->setProperty(SdcProperty::DissociationRate, "0.1");
            mli->setProperty(SdcProperty::Name, "<A & \"B\">");
            mli->setProperty(SdcProperty::Notes, "two\nlines \u03b2");
            mli->setProperty(SdcProperty::References, "doi:1");
        }
    };

    /// The tree with the bond by the places of its sites.
    static QString text(SdcMli *mli)
    {
        QString text = ZelTree::text(mli);
        for (SdcBstBstMli *bond : mli->getListSdcBstBstMli()) {
            for (SdcBst *site : bond->getListSdcBst())
                text += QStringLiteral("%1.%2 ")
                            .arg(site->getParentSdcMol()->getPosIndex())
                            .arg(site->getDisplayIndex());
        }
        return text;
    }

private slots:
    void nothingIsLost_data()
    {
        rows<QString, int>({"types", "site0"},
            {{"two molecules", {"AB", 2}}, {"one molecule type with itself", {"BB", 0}},
                {"a site type with itself", {"BB", 1}}});
    }

    void nothingIsLost()
    {
        QFETCH(QString, types);
        QFETCH(int, site0);
        Model model(types, site0);
        QVERIFY(model.mli->saveToDb());
        const QString expectedName = types.at(1) + QStringLiteral(".") + types.at(0);
        QCOMPARE(model.mli->getProperty(SdcProperty::ShortName), expectedName);
        SdcMli loaded(&model.db);
        QVERIFY(loaded.loadFromDb(model.mli->getPsiimId()));
        QCOMPARE(text(&loaded), text(model.mli.get()));

        // Saved again, from what was loaded, it is the same one record.
        const QStringList records = model.records();
        QVERIFY(loaded.saveToDb());
        QCOMPARE(model.records(), records);
        QVERIFY(model.file.checkIntegrity().isEmpty());
    }

    void aDamagedLayoutLosesNoMolecule_data()
    {
        rows<QString, QString>({"layout", "complaint"},
            {{"none", {"", ""}},
                {"cut off", {"<schema><mli><mol", "the layout of mli1 is not readable"}},
                {"nested deep", {QStringLiteral("<m>").repeated(100000), "nested too deep"}},
                {"entities",
                    {"<!DOCTYPE a [<!ENTITY b \"c\">]><schema><mli/></schema>",
                        "declares entities"}},
                {"of something else", {"<schema><cpx/></schema>", ""}},
                {"without molecules",
                    {"<schema><mli><boundingRect x='nan' y='1e300'/></mli></schema>", ""}},
                {"with molecules that are not its own",
                    {"<schema><mli><mol psiimId='mol7'/><mol/><mol/></mli></schema>", "mol7"}}});
    }

    void aDamagedLayoutLosesNoMolecule()
    {
        QFETCH(QString, layout);
        QFETCH(QString, complaint);
        Model model;
        QVERIFY(model.mli->saveToDb());
        const QString id = model.mli->getPsiimId();
        QVERIFY(
            model.db.mliInsert({{ZelDbColumn::PsiimId, id}, {ZelDbColumn::GraphicsInfo, layout}}));
        SdcMli loaded(&model.db);
        QVERIFY(loaded.loadFromDb(id));
        const QString lines = model.debugText();
        QVERIFY2(
            complaint.isEmpty() ? lines.isEmpty() : lines.contains(complaint), qPrintable(lines));
        QCOMPARE(loaded.getListSdcMol().size(), 2);
        QCOMPARE(loaded.getListSdcBst().size(), 5);
        QCOMPARE(loaded.getListSdcBstBstMli().size(), 1);
        // Side by side, not on top of each other, where each has a layout of its own.
        if (complaint.isEmpty() || !complaint.startsWith(QLatin1String("mol")))
            QVERIFY(!loaded.getChildSdcAtIndex(0)->getSdcSceneRectF().intersects(
                loaded.getChildSdcAtIndex(1)->getSdcSceneRectF()));
    }

    void reportsWhatIsMissing_data()
    {
        rows<QString, int>({"complaint", "molecules"},
            {{"unknown interaction", {"no molecule interaction mli9", 0}}, {"no bond", {"", 2}},
                {"a bond at another position", {"binds a site that its molecules", 2}},
                {"not empty", {"reset it first", 1}}, {"no database", {"no database", 0}},
                {"closed database", {"no molecule interaction", 0}}});
    }

    void reportsWhatIsMissing()
    {
        QFETCH(QString, complaint);
        QFETCH(int, molecules);
        Model model;
        QVERIFY(model.mli->saveToDb());
        QString id = model.mli->getPsiimId();
        SdcMli loaded(isRow("no database") ? nullptr : &model.db);
        if (isRow("unknown interaction"))
            id = QStringLiteral("mli9");
        if (isRow("no bond"))
            QVERIFY(model.db.mliRemoveAllBstBst(id));
        if (isRow("a bond at another position")) {
            const QStringList pair = model.db.mliGetArrayBstBst(id).first();
            QVERIFY(model.db.mliInsertBstBst(id, 0, "5", pair.at(3), pair.at(4), pair.at(5)));
        }
        if (isRow("not empty"))
            loaded.addSdcChild(new SdcMol(&model.db), true);
        if (isRow("closed database"))
            model.file.close();
        QVERIFY(!loaded.loadFromDb(id));
        const QString lines = model.debugText();
        QVERIFY2(
            lines.contains(complaint) && lines.isEmpty() == complaint.isEmpty(), qPrintable(lines));
        QCOMPARE(loaded.getListSdcMol().size(), molecules);
        QVERIFY(loaded.getListSdcBstBstMli().isEmpty());
    }

    void aLayoutElementGivesTwoMolecules()
    {
        InteractionStage stage;
        QDomDocument doc;
        doc.setContent(QStringLiteral("<mli><boundingRect x='7' y='9'/><mol psiimId='%1'/>"
                                      "<mol psiimId='nix'/><mol psiimId='%1'/></mli>")
                           .arg(stage.molA));
        SdcMli mli(&stage.db);
        QVERIFY(!mli.loadDom("mli1", doc.documentElement(), nullptr));
        const QString lines = stage.debugText();
        QVERIFY2(lines.contains(QLatin1String("nix no such molecule")), qPrintable(lines));
        QCOMPARE(mli.getListSdcMol().size(), 2);
        QCOMPARE(mli.getListSdcBst().size(), 3);
        QCOMPARE(mli.rowCount(), 2);
        SdcMli none(nullptr);
        QVERIFY(!none.loadDom(QString(), QDomElement(), nullptr));
    }

    void refusesWhatCannotBeStored_data()
    {
        rows<QString>({"complaint"},
            {{"no database", {"no database"}}, {"no bond", {"needs one bond"}},
                {"null bond", {"needs one bond"}}, {"one site", {"needs one bond"}},
                {"no rate", {"give an assoc"}}, {"site without id", {"save it first"}},
                {"sites of one molecule", {"two sites of one molecule"}},
                {"foreign molecule", {"belongs to none of its molecules"}},
                {"declared before", {"of these sites already, other"}}, {"unknown site", {"bst99"}},
                {"closed database", {"open"}}});
    }

    void refusesWhatCannotBeStored()
    {
        QFETCH(QString, complaint);
        Model model;
        SdcMli *const mli = model.mli.get();
        std::unique_ptr<Sdc> taken;
        if (isRow("no database"))
            mli->setZelDbSqliteModel(nullptr);
        if (isRow("no bond") || isRow("null bond"))
            mli->removeSdcBstBstMli(model.bond);
        if (isRow("null bond"))
            mli->addSdcBstBstMli(nullptr);
        if (isRow("one site") || isRow("sites of one molecule"))
            model.bond->removeSdcBst(model.bond->getSdcBst1());
        if (isRow("sites of one molecule"))
            model.bond->addSdcBst(model.site(mli, 0, 0));
        if (isRow("no rate"))
            mli->setProperty(SdcProperty::DissociationRate, QString());
        if (isRow("site without id"))
            model.bond->getSdcBst1()->clearProperty(SdcProperty::PsiimId);
        if (isRow("unknown site"))
            model.bond->getSdcBst1()->setProperty(SdcProperty::PsiimId, "bst99");
        if (isRow("foreign molecule")) {
            taken.reset(mli->getChildSdcAtIndex(0));
            mli->removeSdcChild(taken.get());
        }
        if (isRow("declared before"))
            QVERIFY(model.db.mliInsert({{ZelDbColumn::PsiimId, "other"},
                {ZelDbColumn::Bst1, model.bond->getSdcBst2()->getPsiimId()},
                {ZelDbColumn::Bst2, model.bond->getSdcBst1()->getPsiimId()}}));
        QCOMPARE(model.faultOfRefusal(
                     {mli}, [mli] { return mli->saveToDb(); }, complaint, isRow("closed database")),
            QString());
    }
};

ZEL_TEST(tst_SdcMliStorage)
#include "tst_SdcMliStorage.moc"
