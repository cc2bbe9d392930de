#pragma once

#include "zelShare/ZelShareExport.h"

#include <QString>

/// Numbers, units and signs as texts.
namespace ZelShare {

/// The number in a text in scientific form ("1.00e-03"), with at least minDecimals and at most
/// maxDecimals decimals of the mantissa: as many as it needs to read back as the same number.
///
/// The result formats to itself again. Texts that are no finite number come back unchanged.
ZELSHARE_EXPORT QString getScientificFormat(
    const QString &value, int minDecimals, int maxDecimals, bool upperCaseExponent);

/// The kinds of getUnit().
enum RateUnit : int {
    UnitRate2D = 0, ///< association in the membrane
    UnitRate3D = 1, ///< association in solution
    UnitRateFirstOrder = 2
};

/// The unit of a rate; empty, with a debug line, for a number that is no RateUnit.
ZELSHARE_EXPORT QString getUnit(int kind);

/// The signs of getUnicodeString().
enum UnicodeSign : int {
    SignPlus = 5, ///< between reactants
    SignArrow = 7 ///< between reactants and products
};

/// A sign of the reaction pictures; empty, with a debug line, for a number that is no UnicodeSign.
ZELSHARE_EXPORT QString getUnicodeString(int type);

} // namespace ZelShare
