#pragma once

#include "zelShare/ZelShareExport.h"

/// Choices of the user that outlive the program.
namespace ZelSettings {

/// The values of the tooltip style; any other value means no tooltips.
enum MoleculeTooltipsType : int {
    TooltipsNone = 0,
    TooltipsName = 1, ///< the short name only
    TooltipsPath = 2 ///< molecule, component and site, and the binding status where it is shown
};

/// The tooltip style; TooltipsPath until one is chosen.
ZELSHARE_EXPORT int getMoleculeTooltipsType();
/// Chooses the tooltip style, now and for later runs.
ZELSHARE_EXPORT void setMoleculeTooltipsType(int type);

} // namespace ZelSettings
