#pragma once

#include "complex/CpxPlan.h"

/// Whether two connected complexes are one species, found out by trying.
namespace CpxIsomorphism {

enum class Colours {
    Types, ///< molecules of one id, sites of one id
    States ///< features, negations and binding statuses as well, bonds counting as Bound
};

/// Whether the molecules of a can be laid on those of b so that bonds lie on bonds. The sites of a
/// molecule are told apart by their ids.
bool areSame(const CpxPlan &a, const CpxPlan &b, Colours colours);

} // namespace CpxIsomorphism
