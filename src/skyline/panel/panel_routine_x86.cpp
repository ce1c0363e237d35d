#include "skyline/panel/panel_routine.h"

namespace korvex {

PanelRoutines FindPanelRoutines(int vectorBits) {
  switch (vectorBits) {
    case 128:
      return {BeginPanel128, ReducePanel128, FinishPanel128, SumValues128};
    case 256:
      return {BeginPanel256, ReducePanel256, FinishPanel256, SumValues256};
    case 512:
      return {BeginPanel512, ReducePanel512, FinishPanel512, SumValues512};
    default:
      return {nullptr, nullptr, nullptr, nullptr};
  }
}

LaneRoutines FindLaneRoutines(int vectorBits) {
  switch (vectorBits) {
    case 128:
      return {ReduceLanes128, SubstituteLanes128};
    case 256:
      return {ReduceLanes256, SubstituteLanes256};
    case 512:
      return {ReduceLanes512, SubstituteLanes512};
    default:
      return {nullptr, nullptr};
  }
}

SystemRoutines FindSystemRoutines(int vectorBits) {
  switch (vectorBits) {
    case 128:
      return {2, FactorSystems128, SubstituteSystems128};
    case 256:
      return {4, FactorSystems256, SubstituteSystems256};
    case 512:
      return {8, FactorSystems512, SubstituteSystems512};
    default:
      return {1, nullptr, nullptr};
  }
}

}  // namespace korvex
