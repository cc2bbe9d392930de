#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcMolType.h"

#include <QString>

class SdcCpx;

/// How texts that say in which states and bindings molecules are, are read back.
namespace SdcCpxStateCode {

/// How the molecule positions of a state code, which it counts from 1, are understood.
enum class MolPositions {
    AsWritten, ///< as indices from 0: the code of molecule 1 lands on the second child
    FromOne ///< as they are meant
};

/// Resets all states and statuses, then sets those that the code names. What cannot be placed is
/// reported; a missing component ends the loading. Codes come from files: their size and nesting
/// are bounded, a text that is not well-formed changes nothing after the reset. A load gives the
/// reader that it has made the complex with.
void apply(SdcCpx *cpx, const QString &stateCode, bool loadBindingStatus, MolPositions positions,
    SdcMolType::Reader *types = nullptr);

/// The state that one part of a component's states says.
ComponentStateType stateOf(QStringView part);

} // namespace SdcCpxStateCode
