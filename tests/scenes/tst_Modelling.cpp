#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"

namespace {

/// A complex drawn by hand: a ring of three A, B at the first of them, and perhaps a second B at
/// the next one around.
class Drawing
{
public:
    /// The order says in which turn each molecule is dropped, A as 0 to 2, B as 3 and 4.
    Drawing(EditingModel *model, const QList<int> &order)
    {
        m_scene.setZelDbSqliteModel(model->db());
        const QList<QPointF> places{
            {-200.0, -120.0}, {60.0, -120.0}, {60.0, 60.0}, {-200.0, 60.0}, {60.0, 150.0}};
        QHash<int, SdcMol *> mols;
        for (int turn = 0; turn < order.size(); ++turn) {
            const QString id = order.at(turn) < 3 ? model->molA() : model->molB();
            m_good = m_user.drop(QLatin1String("mol;") + id, places.at(turn)) && m_good;
            mols.insert(order.at(turn), cpx()->getChildMolList().last());
        }
        bond(mols.value(0), "a1", mols.value(1), "a2");
        bond(mols.value(1), "a1", mols.value(2), "a2");
        bond(mols.value(2), "a1", mols.value(0), "a2");
        bond(mols.value(3), "b1", mols.value(0), "a3");
        if (mols.contains(4))
            bond(mols.value(1), "a3", mols.value(4), "b1");
    }

    bool isGood() const { return m_good; }
    SdcCpx *cpx() { return m_scene.getSdcCpx(); }
    bool save()
    {
        cpx()->adoptStoredSpecies();
        return cpx()->saveToDbCpx() && cpx()->saveToDbCpa();
    }
    QString alias() { return cpx()->getProperty(SdcProperty::CpaPsiimId); }

private:
    void bond(SdcMol *a, const char *siteA, SdcMol *b, const char *siteB)
    {
        SdcBst *const first = siteOf(a, siteA);
        SdcBst *const second = siteOf(b, siteB);
        m_user.drag(Hands::centreOf(first), Hands::centreOf(second));
        m_good = m_good && cpx()->getSdcBstBstCpx(first, second);
    }

    ZelSceneCpx m_scene;
    Hands m_user{&m_scene};
    bool m_good = true;
};

} // namespace

// What a modeller does from the first complex to an association, with the mouse.
class tst_Modelling : public ZelTest
{
    Q_OBJECT
private slots:
    void ringIsFoundAgainAndAssociates()
    {
        EditingModel model;
        ZelDbSqliteModel *const db = model.db();
        Drawing four(&model, {0, 1, 2, 3});
        QVERIFY(four.isGood() && four.cpx()->hasRingStructure());
        QVERIFY(four.save());
        Drawing again(&model, {3, 2, 0, 1});
        QVERIFY(again.isGood());
        QVERIFY(again.save());
        QCOMPARE(again.cpx()->getPsiimId(), four.cpx()->getPsiimId());
        QCOMPARE(again.alias(), four.alias());
        QCOMPARE(db->cpxGetListPsiimId().size(), 1);

        Drawing five(&model, {4, 2, 1, 3, 0});
        QVERIFY(five.isGood());
        QVERIFY(five.save());
        ZelSceneCpx single;
        single.setZelDbSqliteModel(db);
        single.addMolFromDb(model.molB(), {});
        QVERIFY(single.getSdcCpx()->saveToDbCpx() && single.getSdcCpx()->saveToDbCpa());

        ZelSceneCxi scene;
        scene.setZelDbSqliteModel(db);
        Hands user(&scene);
        QVERIFY(user.drop(QLatin1String("cpa;") + four.alias(), {-100.0, 0.0}));
        QVERIFY(user.drop(
            QLatin1String("cpa;") + single.getSdcCpx()->getProperty(SdcProperty::CpaPsiimId),
            {250.0, 0.0}));
        SdcCpx *const first = scene.getSdcCxi()->getSdcCpxAtPosIndex(0);
        SdcMol *const other = scene.getSdcCxi()->getSdcCpxAtPosIndex(1)->getChildMolList().first();
        // From B to the A that holds it, and on to the next one of the ring.
        const auto across = [first](SdcMol *mol, const char *site) {
            return first->getPartnerSdcBstFromBstBstCpx(siteOf(mol, site))->getParentSdcMol();
        };
        SdcMol *held = nullptr;
        for (SdcMol *mol : first->getChildMolList()) {
            if (mol->getPsiimId() == model.molB())
                held = across(mol, "b1");
        }
        QVERIFY(held);
        SdcBst *const from = siteOf(across(held, "a1"), "a3");
        user.drag(Hands::centreOf(from), Hands::centreOf(siteOf(other, "b1")));
        SdcBstBstCxi *const bond = scene.getCurrentBond();
        QVERIFY(bond && bond->hasSdcBst(from));
        QCOMPARE(bond->getResultCpxFingerPrint(), db->cpxGetFingerPrint(five.cpx()->getPsiimId()));
        QCOMPARE(scene.getResultSdcCpx()->getCpxFingerPrint(), bond->getResultCpxFingerPrint());
        QVERIFY(scene.getSdcCxi()->saveToDbWithResults()); // which finds what was drawn by hand
        QCOMPARE(
            db->caiGetHashInfo(bond->getPsiimId()).value(ZelDbColumn::CaiResultCpa), five.alias());
    }
};

ZEL_TEST(tst_Modelling)
#include "tst_Modelling.moc"
