#include "complex/CpxRandom.h"

#include <numeric>

namespace {

using End = CpxPlan::End;

const QStringList PlainMolIds{"A", "B", "C"};
// Prefixes of each other, texts of the rules themselves, none at all, characters on both sides of
// those that the rules write.
const QStringList OddMolIds{QString(), "A", "AA", "A(2): s--0", "A(1", "A!", "]", "[B",
    "rankedNeighborMol-0]", "z", "\u00e4"};
const QStringList PlainSiteIds{"s", "t", "u", "v", "w"};
const QStringList OddSiteIds{
    QString(), "s", "s1", "s--0;s", "0", ";", "]", "t(Bound)", "rankedNeighborMol-0", "\"q\""};

int randomStatus(RandomDice &dice)
{
    return dice.anyOf<int>({BindingStatusUnspecified, BindingStatusBound, BindingStatusUnbound});
}

template <typename T>
void shuffle(QList<T> &list, RandomDice &dice)
{
    for (qsizetype i = list.size() - 1; i > 0; --i)
        list.swapItemsAt(i, dice.below(static_cast<int>(i) + 1));
}

QList<End> allEnds(const CpxPlan &plan)
{
    QList<End> ends;
    for (int i = 0; i < plan.mols.size(); ++i) {
        for (int j = 0; j < plan.siteCount(i); ++j)
            ends.append({i, j});
    }
    return ends;
}

/// The sites that no bond holds yet.
class FreeEnds
{
public:
    explicit FreeEnds(const CpxPlan &plan) : m_ends(allEnds(plan)) { }

    bool takeAny(RandomDice &dice, End *end)
    {
        return takeIf(dice, end, [](const End &) { return true; });
    }
    bool takeOf(int mol, RandomDice &dice, End *end)
    {
        return takeIf(dice, end, [mol](const End &e) { return e.mol == mol; });
    }
    bool takeBefore(int mol, RandomDice &dice, End *end)
    {
        return takeIf(dice, end, [mol](const End &e) { return e.mol < mol; });
    }

private:
    template <typename Condition>
    bool takeIf(RandomDice &dice, End *end, Condition condition)
    {
        QList<qsizetype> places;
        for (qsizetype i = 0; i < m_ends.size(); ++i) {
            if (condition(m_ends.at(i)))
                places.append(i);
        }
        if (places.isEmpty())
            return false;
        *end = m_ends.takeAt(dice.anyOf(places));
        return true;
    }

    QList<End> m_ends;
};

void addTree(CpxPlan &plan, FreeEnds &free, RandomDice &dice)
{
    for (int i = 1; i < plan.mols.size(); ++i) {
        End mine;
        End other;
        if (free.takeBefore(i, dice, &other) && free.takeOf(i, dice, &mine))
            plan.bonds.append({mine, other});
    }
}

void addBonds(CpxPlan &plan, FreeEnds &free, int count, RandomDice &dice)
{
    End a;
    End b;
    for (int i = 0; i < count && free.takeAny(dice, &a) && free.takeAny(dice, &b); ++i)
        plan.bonds.append({a, b});
}

// Each molecule with the next ones, by its sites in turn.
void addRing(CpxPlan &plan, bool closed)
{
    const int count = static_cast<int>(plan.mols.size());
    for (int i = 0; i + 1 < count || (closed && i < count && count > 1); ++i) {
        const int next = (i + 1) % count;
        if (plan.siteCount(i) >= 2 && plan.siteCount(next) >= 2)
            plan.bonds.append({End{i, 1}, End{next, 0}});
    }
}

void addClique(CpxPlan &plan)
{
    for (int i = 0; i < plan.mols.size(); ++i) {
        for (int j = i + 1; j < plan.mols.size(); ++j) {
            if (plan.siteCount(i) >= j && plan.siteCount(j) > i)
                plan.bonds.append({End{i, j - 1}, End{j, i}});
        }
    }
}

void disturb(CpxPlan &plan, RandomDice &dice)
{
    const QList<End> ends = allEnds(plan);
    if (ends.isEmpty())
        return;
    // Sites with one bond too many, bonds with one site, and ends that are one site.
    for (int i = dice.below(3); i > 0; --i)
        plan.bonds.append({dice.anyOf(ends), dice.anyOf(ends)});
    if (dice.chance(30))
        plan.bonds.append({dice.anyOf(ends)});
    if (!plan.bonds.isEmpty() && dice.chance(30))
        plan.bonds.append(dice.anyOf(plan.bonds));
}

CpxPlan::Mol randomMol(
    const QString &id, const QStringList &siteIds, int siteCount, bool distinct, RandomDice &dice)
{
    QStringList ids = siteIds;
    shuffle(ids, dice);
    CpxPlan::Mol mol{id, {CpxPlan::Mcp()}};
    for (int i = 0; i < siteCount; ++i) {
        if (dice.chance(25))
            mol.mcps.append(CpxPlan::Mcp());
        mol.mcps.last().sites.append(
            {distinct ? ids.value(i) : dice.anyOf(siteIds), BindingStatusUnspecified});
    }
    return mol;
}

void randomizeStates(CpxPlan &plan, RandomDice &dice)
{
    for (CpxPlan::Mol &mol : plan.mols) {
        for (CpxPlan::Mcp &mcp : mol.mcps) {
            mcp.negated = dice.chance(30);
            for (CpxPlan::Site &site : mcp.sites)
                site.status = randomStatus(dice);
            for (int &state : mcp.states)
                state =
                    dice.anyOf<int>({ComponentStateOff, ComponentStateOn, ComponentStateDontCare});
        }
    }
}

QList<int> randomOrder(qsizetype count, RandomDice &dice)
{
    QList<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    shuffle(order, dice);
    return order;
}

} // namespace

CpxPlan CpxRandom::anything(RandomDice &dice)
{
    CpxPlan plan;
    const bool nearTree = dice.chance(2);
    const bool clique = !nearTree && dice.chance(3);
    const int molCount = nearTree ? 6 + dice.below(6)
        : clique                  ? 2 + dice.below(dice.chance(10) ? 4 : 3)
                                  : 1 + dice.below(dice.chance(80) ? 4 : 6);
    const QStringList &molIds = dice.chance(25) ? OddMolIds : PlainMolIds;
    const QStringList &siteIds = dice.chance(25) ? OddSiteIds : PlainSiteIds;
    const bool distinctSites = dice.chance(75);
    const int maxSites = clique ? 4 : 1 + dice.below(4);
    QList<CpxPlan::Mol> types;
    for (int i = dice.chance(35) ? 1 : 1 + dice.below(3); i > 0; --i)
        types.append(randomMol(dice.anyOf(molIds), siteIds,
            dice.chance(70) ? maxSites : dice.below(maxSites + 1), distinctSites, dice));
    for (int i = 0; i < molCount; ++i)
        plan.mols.append(dice.anyOf(types));
    if (dice.chance(40))
        randomizeStates(plan, dice);
    if (clique) {
        addClique(plan);
    } else if (dice.chance(25)) {
        addRing(plan, dice.chance(60));
    } else {
        FreeEnds free(plan);
        if (nearTree || dice.chance(70))
            addTree(plan, free, dice);
        addBonds(plan, free, dice.below(nearTree ? 3 : 4), dice);
    }
    if (!nearTree && dice.chance(20))
        disturb(plan, dice);
    if (dice.chance(30))
        shuffle(plan.bonds, dice);
    return plan;
}

CpxPlan CpxRandom::species(RandomDice &dice, int maxMols)
{
    CpxPlan plan;
    const int molCount = 1 + dice.below(maxMols);
    QList<CpxPlan::Mol> types;
    for (int i = 0, count = 1 + dice.below(3); i < count; ++i) {
        CpxPlan::Mol type =
            randomMol(PlainMolIds.at(i), PlainSiteIds, 2 + dice.below(3), true, dice);
        for (CpxPlan::Mcp &mcp : type.mcps)
            mcp.states.fill(ComponentStateOn, dice.below(3));
        types.append(type);
    }
    for (int i = 0; i < molCount; ++i)
        plan.mols.append(dice.anyOf(types));
    if (dice.chance(60))
        randomizeStates(plan, dice);
    if (dice.chance(30)) {
        addRing(plan, dice.chance(60));
    } else {
        FreeEnds free(plan);
        addTree(plan, free, dice);
        addBonds(plan, free, molCount <= 6 ? dice.below(5) : dice.below(3), dice);
    }
    return plan;
}

CpxPlan CpxRandom::shuffled(const CpxPlan &plan, RandomDice &dice)
{
    CpxPlan result;
    const QList<int> order = randomOrder(plan.mols.size(), dice);
    for (int from : order)
        result.mols.append(plan.mols.at(from));
    for (CpxPlan::Bond bond : plan.bonds) {
        for (End &end : bond)
            end.mol = static_cast<int>(order.indexOf(end.mol));
        shuffle(bond, dice);
        result.bonds.append(bond);
    }
    shuffle(result.bonds, dice);
    return result;
}

CpxPlan CpxRandom::shuffledInside(const CpxPlan &plan, RandomDice &dice)
{
    CpxPlan result = shuffled(plan, dice);
    for (int i = 0; i < result.mols.size(); ++i) {
        const CpxPlan::Mol before = result.mols.at(i);
        QList<int> sitesAfter; // which site of before each site is
        CpxPlan::Mol after{before.id, {}};
        for (int j : randomOrder(before.mcps.size(), dice)) {
            int firstSite = 0;
            for (int k = 0; k < j; ++k)
                firstSite += static_cast<int>(before.mcps.at(k).sites.size());
            CpxPlan::Mcp mcp = before.mcps.at(j);
            mcp.sites.clear();
            for (int k : randomOrder(before.mcps.at(j).sites.size(), dice)) {
                mcp.sites.append(before.mcps.at(j).sites.at(k));
                sitesAfter.append(firstSite + k);
            }
            after.mcps.append(mcp);
        }
        result.mols[i] = after;
        for (CpxPlan::Bond &bond : result.bonds) {
            for (End &end : bond) {
                if (end.mol == i)
                    end.site = static_cast<int>(sitesAfter.indexOf(end.site));
            }
        }
    }
    return result;
}
