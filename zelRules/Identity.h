#pragma once

#include "zelRules/ZelRulesExport.h"

#include <QByteArray>

namespace zel::species {
struct Species;
}

namespace zel::rules {

/// What an identity is about.
enum class Sameness {
    Structure, ///< molecules and bonds
    States ///< these, and states, negations, binding statuses and compartments
};

/// A code of fixed length that two species or patterns share exactly when they are the same, in
/// whatever models: names count and ids do not, nor which of several copies of a component is used,
/// nor the order of molecules. It is the SHA-256 of the graph of molecules and bonds in canonical
/// order (B. D. McKay, A. Piperno: Practical graph isomorphism II, 2014). An empty species has one,
/// too.
ZELRULES_EXPORT QByteArray identity(const zel::species::Species &species, Sameness sameness);

} // namespace zel::rules
