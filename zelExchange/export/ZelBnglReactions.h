#pragma once

#include "zelExchange/export/ZelBnglRuleGraph.h"

/// Tells from the patterns that a reaction refers to which rule it is.
namespace ZelBnglReactions {

struct End
{
    int mol = 0;
    int site = 0;
};

/// Two patterns join through two free sites. What leaves a site open asks for a free one.
ZelBnglRuleGraph association(
    const ZelBnglGraph &pattern1, End end1, const ZelBnglGraph &pattern2, End end2);
/// Two free sites of one pattern join.
ZelBnglRuleGraph closure(const ZelBnglGraph &pattern, End end1, End end2);
/// One bond breaks, so that these products remain: two of them, or one of a ring. The rules that
/// do so and are not the same; none when there are too many to try.
std::vector<ZelBnglRuleGraph> dissociations(const ZelBnglGraphTypes &types,
    const ZelBnglGraph &source, const std::vector<ZelBnglGraph> &products);
/// As few states and compartments as possible change, so that one pattern becomes the other. The
/// rules that do so and are not the same; none when there are too many to try.
std::vector<ZelBnglRuleGraph> transformations(
    const ZelBnglGraphTypes &types, const ZelBnglGraph &from, const ZelBnglGraph &to);
/// How many states and compartments a transformation changes.
int countChanges(const ZelBnglRuleGraph &rule);
/// A new complex appears, in the presence of the source unless that is empty.
ZelBnglRuleGraph production(const ZelBnglGraph &source, const ZelBnglGraph &product);
/// One pattern gives way to another one.
ZelBnglRuleGraph replacement(const ZelBnglGraph &from, const ZelBnglGraph &to);

} // namespace ZelBnglReactions
