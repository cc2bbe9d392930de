#pragma once

#include <QList>
#include <QString>

class SdcCpx;
class SdcMol;

/// Texts that say in which states and bindings molecules are, and how they are read back.
namespace SdcCpxStateCode {

/// How the molecule positions of a state code, which it counts from 1, are understood.
enum class MolPositions {
    AsWritten, ///< as indices from 0: the code of molecule 1 lands on the second child
    FromOne ///< as they are meant
};

/// States, negations and binding statuses of the molecules in the given order, without an
/// enclosing element. A component that has lost a sticky ends the process.
QString signature(const QList<SdcMol *> &mols, bool withMolPsiimId);
/// The molecules with their components, sites and binding statuses.
QString bindingCode(const QList<SdcMol *> &mols);
/// Resets all states and statuses, then sets those that the code names. What cannot be placed is
/// reported; a missing component ends the loading. Codes come from files: their size and nesting
/// are bounded, a text that is not well-formed changes nothing after the reset.
void apply(SdcCpx *cpx, const QString &stateCode, bool loadBindingStatus, MolPositions positions);

} // namespace SdcCpxStateCode
