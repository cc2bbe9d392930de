#pragma once

#include "zelLayout/ZelLayoutExport.h"

class ZelSceneContactMap;

namespace zel::layout {

/// Places the molecules of a contact map so that it is fit to print: molecules that may bind near
/// each other and facing, the others in rows beneath, nothing over anything else, wider than high.
/// The same model gives the same map, and the work is bounded.
ZELLAYOUT_EXPORT void arrangeContactMap(ZelSceneContactMap *scene);

} // namespace zel::layout
