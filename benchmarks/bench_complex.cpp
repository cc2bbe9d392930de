// The canonical order of complexes: against a plain, slow version, and against
// the canonical labelling of bare coloured graphs by a library made for nothing else.

#include "support/ZelBenchmark.h"

#include "complex/CpxOracle.h"
#include "complex/CpxRandom.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <QHash>

#include <nauty/nauty.h>

#include <memory>
#include <numeric>
#include <vector>

namespace {

CpxPlan chain(int count, bool identical, bool closed)
{
    CpxPlan plan;
    for (int i = 0; i < count; ++i) {
        CpxPlan::Mol mol{
            identical ? QStringLiteral("mol") : QStringLiteral("mol%1").arg(i), {CpxPlan::Mcp()}};
        mol.mcps[0].sites = {{QStringLiteral("s")}, {QStringLiteral("t")}};
        plan.mols.append(mol);
    }
    for (int i = 0; i + (closed ? 0 : 1) < count; ++i)
        plan.bonds.append({{i, 1}, {(i + 1) % count, 0}});
    return plan;
}

// Each molecule bound to each other one, and every one in the place of every other.
CpxPlan clique(int count)
{
    CpxPlan plan;
    CpxPlan::Mol mol{QStringLiteral("mol"), {CpxPlan::Mcp()}};
    for (int i = 1; i < count; ++i)
        mol.mcps[0].sites.append({QStringLiteral("s%1").arg(i, 2)});
    plan.mols.fill(mol, count);
    for (int i = 0; i < count; ++i) {
        for (int j = i + 1; j < count; ++j)
            plan.bonds.append({{i, j - i - 1}, {j, count - (j - i) - 1}});
    }
    return plan;
}

/// Species of 1 to 10 molecules: trees and rings of random types, some of them symmetric.
const std::vector<CpxPlan> &species()
{
    static const std::vector<CpxPlan> plans = [] {
        RandomDice dice(1);
        std::vector<CpxPlan> list;
        while (list.size() < 1200)
            list.push_back(CpxRandom::species(dice, 10));
        return list;
    }();
    return plans;
}

const std::vector<std::unique_ptr<CpxModel>> &speciesModels()
{
    static const std::vector<std::unique_ptr<CpxModel>> models = [] {
        std::vector<std::unique_ptr<CpxModel>> list;
        for (const CpxPlan &plan : species())
            list.push_back(std::make_unique<CpxModel>(plan));
        return list;
    }();
    return models;
}

/// A complex as nothing but numbers: a vertex for each molecule and for each bound site, an edge
/// between a molecule and its sites and between the two sites of a bond. The colour of a molecule
/// stands for its type and, withStates, for all its states and statuses, that of a site for its id.
struct ColouredGraph
{
    ColouredGraph(const CpxPlan &plan, bool withStates)
    {
        QHash<QString, int> numbers;
        const auto number = [&numbers](const QString &text) {
            const auto at = numbers.constFind(text);
            return at != numbers.cend()
                ? at.value()
                : numbers.insert(text, static_cast<int>(numbers.size())).value();
        };
        for (const CpxPlan::Mol &mol : plan.mols) {
            QString text = u'm' + mol.id;
            for (const CpxPlan::Mcp &mcp : mol.mcps) {
                if (!withStates)
                    continue;
                text += mcp.negated ? u'!' : u' ';
                for (int state : mcp.states)
                    text += QString::number(state);
                for (const CpxPlan::Site &site : mcp.sites)
                    text += QString::number(site.status);
            }
            colours.push_back(number(text));
        }
        for (const CpxPlan::Bond &bond : plan.bonds) {
            const int first = static_cast<int>(colours.size());
            for (int i = 0; i < 2; ++i) {
                colours.push_back(number(u's' + plan.site(bond.at(i)).id));
                edges.push_back({bond.at(i).mol, first + i});
            }
            edges.push_back({first, first + 1});
        }
        colourCount = static_cast<int>(numbers.size());
    }

    std::vector<int> colours; // of each vertex, from 0
    std::vector<std::pair<int, int>> edges;
    int colourCount = 0;
};

std::vector<ColouredGraph> speciesGraphs(bool withStates)
{
    std::vector<ColouredGraph> graphs;
    for (const CpxPlan &plan : species())
        graphs.emplace_back(plan, withStates);
    return graphs;
}

/// Builds graphs and labels them canonically; the memory is kept from one to the next.
class Labelling
{
public:
    Labelling()
    {
        m_options.getcanon = TRUE;
        m_options.defaultptn = FALSE;
    }

    const std::vector<graph> &run(const ColouredGraph &coloured)
    {
        const int n = static_cast<int>(coloured.colours.size());
        const int m = SETWORDSNEEDED(n);
        m_graph.assign(static_cast<std::size_t>(n) * m, 0);
        m_canon.resize(m_graph.size());
        m_lab.resize(n);
        m_ptn.resize(n);
        m_orbits.resize(n);
        for (const auto &[v, w] : coloured.edges)
            ADDONEEDGE(m_graph.data(), v, w, m);
        m_begin.assign(coloured.colourCount + 1, 0);
        for (int colour : coloured.colours)
            ++m_begin[colour + 1];
        std::partial_sum(m_begin.begin(), m_begin.end(), m_begin.begin());
        m_place.assign(m_begin.begin(), m_begin.end());
        for (int v = 0; v < n; ++v)
            m_lab[m_place[coloured.colours[v]]++] = v;
        std::fill(m_ptn.begin(), m_ptn.end(), 1);
        for (int colour = 1; colour <= coloured.colourCount; ++colour)
            m_ptn[m_begin[colour] - 1] = 0;
        densenauty(m_graph.data(), m_lab.data(), m_ptn.data(), m_orbits.data(), &m_options,
            &m_stats, m, n, m_canon.data());
        return m_canon;
    }

private:
    static optionblk defaults()
    {
        static DEFAULTOPTIONS_GRAPH(options);
        return options;
    }

    optionblk m_options = defaults();
    statsblk m_stats{};
    std::vector<graph> m_graph;
    std::vector<graph> m_canon;
    std::vector<int> m_lab;
    std::vector<int> m_ptn;
    std::vector<int> m_orbits;
    std::vector<int> m_begin;
    std::vector<int> m_place;
};

// Nothing is remembered from the call before.
QString freshFingerPrint(SdcCpx *cpx)
{
    cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
    return cpx->getCpxFingerPrint();
}

void printOf(benchmark::State &state, const CpxPlan &plan, bool plainly)
{
    const CpxModel model(plan);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            plainly ? CpxOracle::fingerPrint(model.cpx()) : freshFingerPrint(model.cpx()));
}

void frontSetOf(benchmark::State &state, const CpxPlan &plan, bool plainly)
{
    const CpxModel model(plan);
    const QList<SdcBstBst *> bonds = Sdc::toListSdcBstBst(model.bonds());
    for (auto _ : state)
        benchmark::DoNotOptimize(plainly ? CpxOracle::frontMolSet(model.mols(), bonds, false)
                                         : SdcCpx::getFrontMolSet(model.mols(), bonds, false));
}

void chainPrint(benchmark::State &state)
{
    printOf(state, chain(static_cast<int>(state.range(0)), false, false), false);
}
void plainChainPrint(benchmark::State &state)
{
    printOf(state, chain(static_cast<int>(state.range(0)), false, false), true);
}
void identicalChainPrint(benchmark::State &state)
{
    printOf(state, chain(static_cast<int>(state.range(0)), true, false), false);
}
void ringPrint(benchmark::State &state)
{
    printOf(state, chain(static_cast<int>(state.range(0)), true, true), false);
}
void plainRingPrint(benchmark::State &state)
{
    printOf(state, chain(static_cast<int>(state.range(0)), true, true), true);
}
void cliqueFrontSet(benchmark::State &state)
{
    frontSetOf(state, clique(static_cast<int>(state.range(0))), false);
}
void plainCliqueFrontSet(benchmark::State &state)
{
    frontSetOf(state, clique(static_cast<int>(state.range(0))), true);
}

void speciesPrint(benchmark::State &state)
{
    for (auto _ : state) {
        for (const auto &model : speciesModels())
            benchmark::DoNotOptimize(freshFingerPrint(model->cpx()));
    }
}

void speciesPrintAndCode(benchmark::State &state)
{
    for (auto _ : state) {
        for (const auto &model : speciesModels()) {
            SdcCpx *const cpx = model->cpx();
            // Not the order that the round before left.
            const int count = static_cast<int>(model->mols().size());
            cpx->switchChildrenBetween2Indices(0, count - 1);
            cpx->switchChildrenBetween2Indices(count / 3, count / 2);
            cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
            cpx->reRankMols(true, true);
            benchmark::DoNotOptimize(cpx->getCpxFingerPrint());
            benchmark::DoNotOptimize(cpx->getAliasMcpStateCode());
        }
    }
}

void labelAll(benchmark::State &state, const std::vector<ColouredGraph> &graphs)
{
    Labelling labelling;
    for (auto _ : state) {
        for (const ColouredGraph &coloured : graphs)
            benchmark::DoNotOptimize(labelling.run(coloured).data());
    }
}

void labelSpecies(benchmark::State &state)
{
    labelAll(state, speciesGraphs(false));
}
void labelSpeciesWithStates(benchmark::State &state)
{
    labelAll(state, speciesGraphs(true));
}
void labelChain(benchmark::State &state)
{
    labelAll(state, {ColouredGraph(chain(static_cast<int>(state.range(0)), true, false), false)});
}

void apply(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Unit(benchmark::kMicrosecond)->Repetitions(5)->UseRealTime();
}
void applySlow(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(3)->UseRealTime();
}

BENCHMARK(chainPrint)->Arg(50)->Arg(100)->Arg(200)->Apply(apply);
BENCHMARK(plainChainPrint)->Arg(100)->Apply(applySlow);
BENCHMARK(identicalChainPrint)
    ->Arg(2)
    ->Arg(5)
    ->Arg(10)
    ->Arg(20)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Apply(apply);
BENCHMARK(ringPrint)->Arg(40)->Apply(apply);
BENCHMARK(plainRingPrint)->Arg(40)->Apply(applySlow);
BENCHMARK(cliqueFrontSet)->Arg(8)->Arg(12)->Apply(apply);
BENCHMARK(plainCliqueFrontSet)->Arg(8)->Apply(applySlow);
BENCHMARK(speciesPrint)->Apply(apply);
BENCHMARK(speciesPrintAndCode)->Apply(apply);
BENCHMARK(labelSpecies)->Apply(apply);
BENCHMARK(labelSpeciesWithStates)->Apply(apply);
BENCHMARK(labelChain)->Arg(2)->Arg(5)->Arg(10)->Arg(20)->Arg(50)->Arg(100)->Apply(apply);

// Times of the plain version are counted in parts of a fiftieth and so on: 1 is just fast enough.
const bool registered[] = {
    ZelBenchmark::ratio("chain of 100: fingerprint / plain version, times 50",
        "chainPrint/100/repeats:5/real_time", "plainChainPrint/100/repeats:3/real_time", 1.0, 1,
        50),
    ZelBenchmark::ratio("ring of 40 alike: fingerprint / plain version, times 20",
        "ringPrint/40/repeats:5/real_time", "plainRingPrint/40/repeats:3/real_time", 1.0, 1, 20),
    ZelBenchmark::ratio("clique of 8 alike: front set / plain version, times 1,000",
        "cliqueFrontSet/8/repeats:5/real_time", "plainCliqueFrontSet/8/repeats:3/real_time", 1.0, 1,
        1000),
    ZelBenchmark::ratio("clique of alike: front set, 12 / 8",
        "cliqueFrontSet/12/repeats:5/real_time", "cliqueFrontSet/8/repeats:5/real_time", 10.0),
    ZelBenchmark::ratio("chain: fingerprint, 200 / 50", "chainPrint/200/repeats:5/real_time",
        "chainPrint/50/repeats:5/real_time", 64.0),
    ZelBenchmark::ratio("chain of alike: fingerprint, 200 / 50",
        "identicalChainPrint/200/repeats:5/real_time", "identicalChainPrint/50/repeats:5/real_time",
        64.0),
    ZelBenchmark::ratio("1,200 species: fingerprint / labelling of bare graphs",
        "speciesPrint/repeats:5/real_time", "labelSpecies/repeats:5/real_time", 10.0),
    ZelBenchmark::ratio("1,200 species: fingerprint and state code / labelling",
        "speciesPrintAndCode/repeats:5/real_time", "labelSpeciesWithStates/repeats:5/real_time",
        20.0),
    ZelBenchmark::ratio("chain of 2 alike: fingerprint / labelling",
        "identicalChainPrint/2/repeats:5/real_time", "labelChain/2/repeats:5/real_time", 50.0),
    ZelBenchmark::ratio("chain of 5 alike: fingerprint / labelling",
        "identicalChainPrint/5/repeats:5/real_time", "labelChain/5/repeats:5/real_time", 50.0),
    ZelBenchmark::ratio("chain of 10 alike: fingerprint / labelling",
        "identicalChainPrint/10/repeats:5/real_time", "labelChain/10/repeats:5/real_time", 50.0),
    ZelBenchmark::ratio("chain of 20 alike: fingerprint / labelling",
        "identicalChainPrint/20/repeats:5/real_time", "labelChain/20/repeats:5/real_time", 50.0),
    ZelBenchmark::ratio("chain of 50 alike: fingerprint / labelling",
        "identicalChainPrint/50/repeats:5/real_time", "labelChain/50/repeats:5/real_time", 50.0),
    ZelBenchmark::ratio("chain of 100 alike: fingerprint / labelling",
        "identicalChainPrint/100/repeats:5/real_time", "labelChain/100/repeats:5/real_time", 50.0),
};

} // namespace
