#include "skyline/panel/panel_routine.h"

namespace korvex {

PanelRoutines FindPanelRoutines(int vectorBits) {
  switch (vectorBits) {
    case 128:
      return {FactorPanel128, SumValues128};
    case 256:
      return {FactorPanel256, SumValues256};
    case 512:
      return {FactorPanel512, SumValues512};
    default:
      return {nullptr, nullptr};
  }
}

}  // namespace korvex
