#include "zelRules/CanonicalOrder.h"

#include <nauty/nausparse.h>

#include <algorithm>
#include <numeric>

std::vector<int> zel::rules::canonicalOrder(
    const Edges &edges, const std::vector<Color> &colors, const std::vector<int> &first)
{
    const size_t size = edges.size();
    if (size == 0)
        return {};
    std::vector<int> number(size); // of a vertex in the order in which it comes in
    for (size_t i = 0; i < size; ++i)
        number[static_cast<size_t>(first[i])] = static_cast<int>(i);

    std::vector<size_t> starts(size);
    std::vector<int> degrees(size);
    std::vector<int> ends;
    for (size_t i = 0; i < size; ++i) {
        const std::vector<int> &neighbors = edges[static_cast<size_t>(first[i])];
        starts[i] = ends.size();
        degrees[i] = static_cast<int>(neighbors.size());
        for (const int end : neighbors)
            ends.push_back(number[static_cast<size_t>(end)]);
    }
    SG_DECL(sparse);
    sparse.nv = static_cast<int>(size);
    sparse.nde = ends.size();
    sparse.v = starts.data();
    sparse.vlen = starts.size();
    sparse.d = degrees.data();
    sparse.dlen = degrees.size();
    sparse.e = ends.data();
    sparse.elen = ends.size();

    std::vector<int> lab(size);
    std::iota(lab.begin(), lab.end(), 0);
    const auto colorOf = [&](int i) -> const Color & {
        return colors[static_cast<size_t>(first[static_cast<size_t>(i)])];
    };
    std::stable_sort(lab.begin(), lab.end(), [&](int a, int b) { return colorOf(a) < colorOf(b); });
    std::vector<int> ptn(size, 0);
    for (size_t i = 0; i + 1 < size; ++i)
        ptn[i] = colorOf(lab[i]) == colorOf(lab[i + 1]) ? 1 : 0;
    std::vector<int> orbits(size);

    static DEFAULTOPTIONS_SPARSEGRAPH(options);
    options.getcanon = TRUE;
    options.defaultptn = FALSE;
    statsblk stats;
    SG_DECL(canonical);
    sparsenauty(&sparse, lab.data(), ptn.data(), orbits.data(), &options, &stats, &canonical);
    SG_FREE(canonical);
    for (int &vertex : lab)
        vertex = first[static_cast<size_t>(vertex)];
    return lab;
}
