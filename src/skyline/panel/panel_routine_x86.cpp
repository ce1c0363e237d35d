#include "skyline/panel/panel_routine.h"

namespace korvex {

PanelRoutine FindPanelRoutine(int vectorBits) {
  switch (vectorBits) {
    case 128:
      return FactorPanel128;
    case 256:
      return FactorPanel256;
    case 512:
      return FactorPanel512;
    default:
      return nullptr;
  }
}

}  // namespace korvex
