// The routines of panels, lanes and systems in vectors of 128 bits, two doubles each. This file is
// compiled for processors that have these vectors and must not be called on others.
#include "skyline/panel/lane_kernel-inl.h"
#include "skyline/panel/panel_kernel-inl.h"
#include "skyline/panel/system_kernel-inl.h"

namespace korvex {

void BeginPanel128(const SkylineArrays& K, std::int64_t first, const PanelRows& memory,
                   Panel& panel) {
  BeginPanel<ShortVectors<2>>(K, first, memory, panel);
}

void ReducePanel128(const SkylineArrays& K, std::int64_t end, Panel& panel) {
  ReducePanel<ShortVectors<2>>(K, end, panel);
}

void FinishPanel128(const SkylineArrays& K, Panel& panel) {
  FinishPanel<ShortVectors<2>>(K, panel);
}

double SumValues128(const double* values, std::int64_t count) {
  return SumValues<ShortVectors<2>>(values, count);
}

void ReduceLanes128(const LaneArrays& arrays, std::int64_t first, std::int64_t end) {
  ReduceLanes<ShortVectors<2>>(arrays, first, end);
}

void SubstituteLanes128(const LaneArrays& arrays, const BlockColumns& block) {
  SubstituteLanes<ShortVectors<2>>(arrays, block);
}

void FactorSystems128(const SystemLanes& systems, std::int64_t first, std::int64_t end) {
  FactorSystems<ShortVectors<2>>(systems, first, end);
}

void SubstituteSystems128(const SystemLanes& systems, const std::int64_t* reach) {
  SubstituteSystems<ShortVectors<2>>(systems, reach);
}

}  // namespace korvex
