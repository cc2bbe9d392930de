#include "support/ZelTest.h"

#include "complex/CpxIsomorphism.h"
#include "complex/CpxRandom.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

namespace {

using Colours = CpxIsomorphism::Colours;

/// The texts that tell one species from another.
struct Identity
{
    QString fingerPrint;
    QString aliasCode;
    bool isConnected = false;
};

Identity identityOf(const CpxPlan &plan)
{
    const CpxModel model(plan);
    SdcCpx *const cpx = model.cpx();
    Identity identity;
    identity.isConnected = cpx->areAllConnected();
    if (!identity.isConnected)
        return identity;
    identity.fingerPrint = cpx->getCpxFingerPrint();
    cpx->reRankMols(true, true);
    identity.aliasCode = cpx->getAliasMcpStateCode();
    // Neither the order that this left nor what is known of the symmetry by now matters.
    if (cpx->getCpxFingerPrint() != identity.fingerPrint)
        identity.fingerPrint += QStringLiteral(" or ") + cpx->getCpxFingerPrint();
    return identity;
}

// Another partner for one bond, or the ends of two bonds exchanged.
void moveBond(CpxPlan &plan, RandomDice &dice)
{
    if (plan.bonds.isEmpty())
        return;
    const int index = dice.below(static_cast<int>(plan.bonds.size()));
    CpxPlan::End &end = plan.bonds[index][dice.below(2)];
    const int mol = dice.below(static_cast<int>(plan.mols.size()));
    const CpxPlan::End other{mol, dice.below(plan.siteCount(mol))};
    for (CpxPlan::Bond &bond : plan.bonds) {
        for (CpxPlan::End &taken : bond) {
            if (taken.mol == other.mol && taken.site == other.site) {
                std::swap(taken, end);
                return;
            }
        }
    }
    end = other;
}

// What a molecule looks like goes to another of its type, in part.
void moveState(CpxPlan &plan, RandomDice &dice)
{
    CpxPlan::Mol &a = plan.mols[dice.below(static_cast<int>(plan.mols.size()))];
    CpxPlan::Mol &b = plan.mols[dice.below(static_cast<int>(plan.mols.size()))];
    if (a.id != b.id)
        return;
    const int index = dice.below(static_cast<int>(a.mcps.size()));
    CpxPlan::Mcp &mcpA = a.mcps[index];
    CpxPlan::Mcp &mcpB = b.mcps[index];
    switch (dice.below(3)) {
    case 0:
        std::swap(mcpA.states, mcpB.states);
        break;
    case 1:
        std::swap(mcpA.negated, mcpB.negated);
        break;
    default:
        for (qsizetype i = 0; i < mcpA.sites.size(); ++i)
            std::swap(mcpA.sites[i].status, mcpB.sites[i].status);
    }
}

QString textOf(const CpxPlan &a, const CpxPlan &b)
{
    const Identity identityA = identityOf(a);
    const Identity identityB = identityOf(b);
    return a.text() + identityA.fingerPrint + u'\n' + identityA.aliasCode + u'\n' + b.text()
        + identityB.fingerPrint + u'\n' + identityB.aliasCode + u'\n';
}

} // namespace

class tst_CpxIdentity : public ZelTest
{
    Q_OBJECT
private slots:
    void doesNotDependOnTheDrawing_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 4; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void doesNotDependOnTheDrawing()
    {
        QFETCH(quint32, seed);
        RandomDice dice(seed);
        int otherCodes = 0;
        for (int i = 0; i < 300; ++i) {
            const CpxPlan plan = CpxRandom::species(dice, 12);
            const Identity identity = identityOf(plan);
            QVERIFY(identity.isConnected);
            for (int j = 0; j < 3; ++j) {
                const CpxPlan other = CpxRandom::shuffled(plan, dice);
                const Identity otherIdentity = identityOf(other);
                if (otherIdentity.fingerPrint != identity.fingerPrint
                    || otherIdentity.aliasCode != identity.aliasCode)
                    QFAIL(qPrintable(textOf(plan, other)));
            }
            // A state code tells the components of a molecule by their places, a fingerprint does
            // not. Molecules of one stored type have their components in one order.
            const CpxPlan inside = CpxRandom::shuffledInside(plan, dice);
            const Identity insideIdentity = identityOf(inside);
            if (insideIdentity.fingerPrint != identity.fingerPrint)
                QFAIL(qPrintable(textOf(plan, inside)));
            otherCodes += insideIdentity.aliasCode != identity.aliasCode;
        }
        QVERIFY(otherCodes > 0);
    }

    void tellsSpeciesApart_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 11; seed <= 14; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void tellsSpeciesApart()
    {
        QFETCH(quint32, seed);
        RandomDice dice(seed);
        int same = 0;
        int sameButForStates = 0;
        int different = 0;
        for (int i = 0; i < 100; ++i) {
            QList<CpxPlan> plans{CpxRandom::species(dice, 9)};
            QList<Identity> identities{identityOf(plans.first())};
            for (int j = 0; j < 9; ++j) {
                CpxPlan plan = dice.anyOf(plans);
                for (int k = dice.below(3); k > 0; --k)
                    moveBond(plan, dice);
                for (int k = dice.below(4); k > 0; --k)
                    moveState(plan, dice);
                plan = CpxRandom::shuffled(plan, dice);
                const Identity identity = identityOf(plan);
                if (!identity.isConnected)
                    continue;
                plans.append(plan);
                identities.append(identity);
            }
            for (qsizetype a = 0; a < plans.size(); ++a) {
                for (qsizetype b = a + 1; b < plans.size(); ++b) {
                    const bool sameTypes =
                        CpxIsomorphism::areSame(plans.at(a), plans.at(b), Colours::Types);
                    const bool sameStates =
                        CpxIsomorphism::areSame(plans.at(a), plans.at(b), Colours::States);
                    const bool samePrint =
                        identities.at(a).fingerPrint == identities.at(b).fingerPrint;
                    const bool sameCode =
                        samePrint && identities.at(a).aliasCode == identities.at(b).aliasCode;
                    if (sameTypes != samePrint || sameStates != sameCode)
                        QFAIL(qPrintable(textOf(plans.at(a), plans.at(b))));
                    same += sameStates;
                    sameButForStates += sameTypes && !sameStates;
                    different += !sameTypes;
                }
            }
        }
        QVERIFY2(same > 100 && sameButForStates > 100 && different > 100,
            qPrintable(QStringLiteral("%1 %2 %3").arg(same).arg(sameButForStates).arg(different)));
    }
};

ZEL_TEST(tst_CpxIdentity)
#include "tst_CpxIdentity.moc"
