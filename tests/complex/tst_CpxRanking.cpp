#include "support/ZelTest.h"

#include "complex/CpxOracle.h"
#include "complex/CpxRandom.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>
#include <numeric>

namespace {

using Mols = QList<SdcMol *>;
using Bonds = QList<SdcBstBst *>;

#if defined(__SANITIZE_ADDRESS__)
constexpr int GraphsPerSeed = 600;
#else
constexpr int GraphsPerSeed = 5600;
#endif

const QString TwoBonds =
    QStringLiteral("zelModelSupport/zelModelSupportDataComponent/SdcCpx 2042 Error found");
const QString Tie = QStringLiteral(
    "Possible error at SdcMol * SdcCpx::getFrontMol(SdcMol * sdcMol1, SdcMol * sdcMol2, "
    "QList<SdcMol *> & molSet, const QList<SdcBstBst *> & listSbb, SdcMol * firstMol)");

/// Calls both ways of doing the same, and remembers where they first differ in what they answer or
/// in the lines they write.
class Comparison
{
public:
    explicit Comparison(const Mols &mols) : m_mols(mols) { }

    template <typename Expected, typename Actual>
    void add(const char *what, Expected expected, Actual actual)
    {
        const QString expectedText = text(expected());
        const QStringList expectedLines = ZelTest::takeDebugLines();
        const QString actualText = text(actual());
        const QStringList actualLines = ZelTest::takeDebugLines();
        m_lines += expectedLines;
        if (!m_difference.isEmpty() || (expectedText == actualText && expectedLines == actualLines))
            return;
        m_difference = QStringLiteral("%1\nexpected %2\nactual   %3\nexpected lines:\n%4\n"
                                      "actual lines:\n%5\n")
                           .arg(QLatin1String(what), expectedText, actualText,
                               expectedLines.join(u'\n'), actualLines.join(u'\n'));
    }

    const QString &difference() const { return m_difference; }
    /// All lines that were expected so far.
    const QStringList &lines() const { return m_lines; }

private:
    QString text(const QString &value) const { return value; }
    QString text(int value) const { return QString::number(value); }
    QString text(SdcMol *mol) const
    {
        return mol ? QString::number(m_mols.indexOf(mol)) : QStringLiteral("null");
    }
    QString text(const Mols &mols) const
    {
        QStringList list;
        for (SdcMol *mol : mols)
            list.append(text(mol));
        return list.join(u' ');
    }
    QString text(const QList<int> &numbers) const
    {
        QStringList list;
        for (int value : numbers)
            list.append(QString::number(value));
        return list.join(u' ');
    }

    Mols m_mols;
    QString m_difference;
    QStringList m_lines;
};

Mols anySubset(const Mols &mols, int percent, RandomDice &dice)
{
    Mols subset;
    for (SdcMol *mol : mols) {
        if (dice.chance(percent))
            subset.append(mol);
    }
    return subset;
}

// Mostly the list itself, else some of it in another order or with entries that come twice.
Mols anyList(const Mols &mols, RandomDice &dice)
{
    if (dice.chance(60))
        return mols;
    Mols list = dice.chance(50) ? mols : anySubset(mols, 70, dice);
    for (int i = dice.below(3); i > 0; --i)
        list.insert(dice.below(static_cast<int>(list.size()) + 1), dice.anyOf(mols));
    return list;
}

SdcMol *anyOrNull(const Mols &mols, RandomDice &dice)
{
    return dice.chance(15) ? nullptr : dice.anyOf(mols);
}

void compareSignatures(Comparison &cmp, const Mols &mols, const Bonds &bonds, RandomDice &dice)
{
    for (int i = 0; i < 2; ++i) {
        SdcMol *const mol = anyOrNull(mols, dice);
        const Mols molSet = anyList(mols, dice);
        const Mols ranked = anySubset(mols, 20, dice);
        const bool withStatus = dice.chance(50);
        SdcMol *const first = dice.chance(40) ? nullptr : dice.anyOf(mols);
        cmp.add(
            "getMolSignature",
            [&] { return CpxOracle::molSignature(mol, molSet, ranked, bonds, withStatus, first); },
            [&] { return SdcCpx::getMolSignature(mol, molSet, ranked, bonds, withStatus, first); });
    }
}

void compareFronts(Comparison &cmp, const Mols &mols, const Bonds &bonds, RandomDice &dice)
{
    SdcMol *const a = anyOrNull(mols, dice);
    SdcMol *const b = anyOrNull(mols, dice);
    SdcMol *const first = anyOrNull(mols, dice);
    Mols molSet = dice.chance(5) ? Mols() : anyList(mols, dice);
    const Mols ranked = dice.chance(60) ? Mols() : anySubset(mols, 20, dice);
    const Mols candidates = dice.chance(5) ? Mols() : anyList(mols, dice);
    const bool flag = dice.chance(50);
    cmp.add(
        "getFrontMol", [&] { return CpxOracle::frontMol(a, b, molSet, ranked, bonds, flag); },
        [&] { return SdcCpx::getFrontMol(a, b, molSet, ranked, bonds, flag); });
    cmp.add(
        "getFrontMolWithFirstMol",
        [&] { return CpxOracle::frontMolWithFirstMol(a, b, molSet, ranked, bonds, first); },
        [&] { return SdcCpx::getFrontMolWithFirstMol(a, b, molSet, ranked, bonds, first); });
    cmp.add(
        "getConstFrontMol of two",
        [&] { return CpxOracle::constFrontMol(a, b, molSet, ranked, bonds, flag); },
        [&] { return SdcCpx::getConstFrontMol(a, b, molSet, ranked, bonds, flag); });
    cmp.add(
        "getConstFrontMol of two, first",
        [&] { return CpxOracle::constFrontMol(a, b, molSet, ranked, bonds, first); },
        [&] { return SdcCpx::getConstFrontMol(a, b, molSet, ranked, bonds, first); });
    cmp.add(
        "getConstFrontMol",
        [&] { return CpxOracle::constFrontMol(candidates, molSet, ranked, bonds, flag); },
        [&] { return SdcCpx::getConstFrontMol(candidates, molSet, ranked, bonds, flag); });
    cmp.add(
        "getConstFrontMol, first",
        [&] { return CpxOracle::constFrontMol(candidates, molSet, ranked, bonds, first); },
        [&] { return SdcCpx::getConstFrontMol(candidates, molSet, ranked, bonds, first); });
}

void compareRankedLists(Comparison &cmp, const Mols &mols, const QList<SdcBstBstCpx *> &cpxBonds,
    const Bonds &bonds, RandomDice &dice)
{
    const Mols some = anyList(mols, dice);
    const Mols molSet = anyList(mols, dice);
    const bool flag = dice.chance(50);
    SdcMol *const first = anyOrNull(mols, dice);
    cmp.add(
        "getConstRankedMolList",
        [&] { return CpxOracle::constRankedMolList(some, molSet, bonds, flag); },
        [&] { return SdcCpx::getConstRankedMolList(some, molSet, bonds, flag); });
    cmp.add(
        "getConstRankedMolList, first",
        [&] { return CpxOracle::constRankedMolList(some, molSet, bonds, first); },
        [&] { return SdcCpx::getConstRankedMolList(some, molSet, bonds, first); });
    if (dice.chance(25))
        cmp.add(
            "getConstRankedMolList, bonds of the complex",
            [&] { return CpxOracle::constRankedMolList(some, molSet, bonds, false); },
            [&] { return SdcCpx::getConstRankedMolList(some, molSet, cpxBonds); });
    cmp.add(
        "getFrontMolSet", [&] { return CpxOracle::frontMolSet(some, bonds, flag); },
        [&] { return SdcCpx::getFrontMolSet(some, bonds, flag); });
    cmp.add(
        "getCpxFingerPrint of a list", [&] { return CpxOracle::fingerPrint(some, bonds); },
        [&] { return SdcCpx::getCpxFingerPrint(some, bonds); });
    Mols group = anySubset(mols, 60, dice);
    cmp.add(
        "sortListMol", [&] { return CpxOracle::sortListMol(group, cpxBonds); },
        [&] { return SdcCpx::sortListMol(group, cpxBonds); });
}

void compareComplex(Comparison &cmp, SdcCpx *cpx, RandomDice &dice)
{
    cmp.add(
        "isSymmetricSpecies", [&] { return int(CpxOracle::isSymmetricSpecies(cpx)); },
        [&] { return int(cpx->isSymmetricSpecies()); });
    cmp.add(
        "getNumWayToRank", [&] { return CpxOracle::numWayToRank(cpx); },
        [&] { return cpx->getNumWayToRank(); });
    cmp.add(
        "getSortedListMol", [&] { return CpxOracle::sortedListMol(cpx); },
        [&] { return cpx->getSortedListMol(); });
    cmp.add(
        "getMolCode", [&] { return CpxOracle::molCode(cpx); }, [&] { return cpx->getMolCode(); });
    // Once with nothing known of the symmetry, once with what is found out.
    for (int round = 0; round < 2; ++round) {
        cmp.add(
            "getCpxFingerPrint", [&] { return CpxOracle::fingerPrint(cpx); },
            [&] { return cpx->getCpxFingerPrint(); });
        for (int flags = 0; flags < 4; ++flags) {
            if (round == 1 && dice.chance(70))
                continue;
            cmp.add(
                "getRankedListMol",
                [&] { return CpxOracle::rankedListMol(cpx, flags & 1, flags & 2); },
                [&] { return cpx->getRankedListMol(flags & 1, flags & 2); });
        }
        if (round == 0)
            cmp.add(
                "updateStaticSpeciesSymmetryStatus", [&] { return CpxOracle::symmetryState(cpx); },
                [&] {
                    cpx->updateStaticSpeciesSymmetryStatus();
                    return cpx->getSpecisStaticSymmetryState();
                });
        if (dice.chance(20))
            cpx->setSpecisStaticSymmetryState(dice.below(3)); // whatever a caller says
    }
    if (dice.chance(50))
        cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
    const int flags = dice.below(4);
    CpxOracle::ReRanking expected;
    cmp.add(
        "reRankMols",
        [&] {
            expected = CpxOracle::reRankMols(cpx, flags & 1, flags & 2);
            return expected.mols;
        },
        [&] {
            cpx->reRankMols(flags & 1, flags & 2);
            return cpx->getChildMolList();
        });
    cmp.add(
        "getListMolPrevIndices", [&] { return expected.prevIndices; },
        [&] { return cpx->getListMolPrevIndices(); });
    cmp.add(
        "getListMolPosMap", [&] { return expected.posMap; },
        [&] { return cpx->getListMolPosMap(); });
    cmp.add(
        "the symmetry state", [&] { return expected.symmetryState; },
        [&] { return cpx->getSpecisStaticSymmetryState(); });
}

CpxPlan::Mol mol(const QString &id, const QStringList &siteIds)
{
    CpxPlan::Mcp mcp;
    for (const QString &siteId : siteIds)
        mcp.sites.append({siteId});
    return {id, {mcp}};
}

// Molecules of one kind with the sites s and t, each one's t bound to the next one's s.
CpxPlan chain(int count)
{
    CpxPlan plan;
    plan.mols.fill(mol("A", {"s", "t"}), count);
    for (int i = 0; i + 1 < count; ++i)
        plan.bonds.append({{i, 1}, {i + 1, 0}});
    return plan;
}

QList<int> places(const Mols &all, const Mols &list)
{
    QList<int> result;
    for (SdcMol *entry : list)
        result.append(static_cast<int>(all.indexOf(entry)));
    return result;
}

} // namespace

class tst_CpxRanking : public ZelTest
{
    Q_OBJECT
private slots:
    void answersAsThePlainRules_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 9; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void answersAsThePlainRules()
    {
        QFETCH(quint32, seed);
        RandomDice dice(seed);
        int doublyBound = 0;
        int ties = 0;
        int symmetric = 0;
        for (int i = 0; i < GraphsPerSeed; ++i) {
            const CpxPlan plan = CpxRandom::anything(dice);
            const CpxModel model(plan);
            const Bonds bonds = Sdc::toListSdcBstBst(model.bonds());
            Comparison cmp(model.mols());
            compareSignatures(cmp, model.mols(), bonds, dice);
            compareFronts(cmp, model.mols(), bonds, dice);
            compareRankedLists(cmp, model.mols(), model.bonds(), bonds, dice);
            symmetric += model.cpx()->isSymmetricSpecies();
            takeDebugLines();
            compareComplex(cmp, model.cpx(), dice);
            if (!cmp.difference().isEmpty())
                QFAIL(qPrintable(
                    QStringLiteral("graph %1\n").arg(i) + plan.text() + cmp.difference()));
            doublyBound += cmp.lines().contains(TwoBonds);
            ties += std::any_of(cmp.lines().cbegin(), cmp.lines().cend(),
                [](const QString &line) { return line.startsWith(Tie); });
        }
        // Chance made what is hard, too.
        QVERIFY2(doublyBound > GraphsPerSeed / 50, qPrintable(QString::number(doublyBound)));
        QVERIFY2(ties > GraphsPerSeed / 20, qPrintable(QString::number(ties)));
        QVERIFY2(symmetric > GraphsPerSeed / 20, qPrintable(QString::number(symmetric)));
    }

    void writesTheBondTree()
    {
        // An A between a B that is ranked already and a C, whose other site is free.
        CpxPlan plan;
        plan.mols = {mol("A", {"s2", "s1"}), mol("B", {"t1"}), mol("C", {"u", "r"})};
        plan.mols[2].mcps[0].sites[1].status = BindingStatusUnbound;
        plan.bonds = {{{0, 0}, {1, 0}}, {{2, 0}, {0, 1}}};
        const CpxModel model(plan);
        const Mols mols = model.mols();
        const Bonds bonds = Sdc::toListSdcBstBst(model.bonds());
        QCOMPARE(SdcCpx::getMolSignature(mols[0], mols, {mols[1]}, {bonds[0]}, false, nullptr),
            "[A(2): s1--0;s2--t1[rankedNeighborMol-0]]");
        QCOMPARE(SdcCpx::getMolSignature(mols[0], mols, {}, bonds, false, mols[2]),
            "[A(2): s1--u[C(1): r--0;u--s1];s2--t1[B(2): t1--s2]]");
        QCOMPARE(SdcCpx::getMolSignature(mols[2], mols, {mols[2], mols[1]}, bonds, true, nullptr),
            "[C(2): r(Unbound)--0;u(Bound)--s1(Bound)[A(2): s1(Bound)--u(Bound)"
            "[rankedNeighborMol-0];s2(Bound)--t1(Bound)[rankedNeighborMol-1]]]");
        // A walk ends at molecules that are not among those to walk on.
        QCOMPARE(SdcCpx::getMolSignature(mols[0], {mols[0]}, {}, bonds, false, nullptr),
            "[A(2): s1--u;s2--t1]");
        QCOMPARE(SdcCpx::getMolSignature(mols[0], {mols[1]}, {}, bonds, false, nullptr), QString());
        // One that is there twice is entered twice.
        QCOMPARE(SdcCpx::getMolSignature(
                     mols[1], {mols[1], mols[0], mols[1]}, {}, bonds, false, nullptr),
            "[B(2): t1--s2[A(2): s1--u;s2--t1[B(2): t1--s2]]]");
    }

    void aHomodimerHasTwoFirstMolecules()
    {
        CpxPlan plan;
        plan.mols.fill(mol("A", {"s", "t"}), 2);
        plan.bonds = {{{1, 0}, {0, 0}}};
        plan.mols[0].mcps[0].sites[1].status = BindingStatusUnbound;
        const CpxModel model(plan);
        SdcCpx *const cpx = model.cpx();
        QVERIFY(cpx->isSymmetricSpecies());
        QCOMPARE(cpx->getNumWayToRank(), 2);
        QCOMPARE(cpx->getRankedListMol(false, false), model.mols());
        // By its states the second comes first: a site without status is written shorter.
        const Mols reversed{model.mols()[1], model.mols()[0]};
        QCOMPARE(cpx->getRankedListMol(false, true), reversed);
        // By its statuses the first does: its tree shows the other one's "Don't Care" first. States
        // are asked only where statuses leave a choice.
        QCOMPARE(cpx->getRankedListMol(true, false), model.mols());
        QCOMPARE(cpx->getRankedListMol(true, true), model.mols());
        QCOMPARE(cpx->getCpxFingerPrint(), "Mols[A, A]; Interactions[(mol-0)s-(mol-1)s]");
        // Both hold the same bond: by that nothing orders them.
        QCOMPARE(cpx->getSortedListMol(), Mols());
        cpx->reRankMols(false, true);
        QCOMPARE(cpx->getListMolPrevIndices(), (QList<int>{1, 0}));
        QCOMPARE(cpx->getSpecisStaticSymmetryState(), int(SdcCpx::SymmetricSpecies));
    }

    void bearsAThousandMolecules()
    {
        constexpr int Count = 1000;
        const CpxModel model(chain(Count));
        const Mols ranked = model.cpx()->getRankedListMol(false, false);
        QList<int> expected(Count); // the first one, then from the far end back to it
        std::iota(expected.rbegin(), expected.rend() - 1, 1);
        QCOMPARE(places(model.mols(), ranked), expected);
        const QString text = SdcCpx::getCpxFingerPrint(ranked, Sdc::toListSdcBstBst(model.bonds()));
        QVERIFY(text.endsWith(QLatin1String(", (mol-998)s-(mol-999)t]")));
        QCOMPARE(text.count(QLatin1String("-(mol-")), Count - 1);
    }
};

ZEL_TEST(tst_CpxRanking)
#include "tst_CpxRanking.moc"
