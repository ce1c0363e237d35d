// The routines of panels, lanes and systems in vectors of 256 bits, four doubles each. This file is
// compiled for processors that have these vectors and must not be called on others.
#include "skyline/panel/lane_kernel-inl.h"
#include "skyline/panel/panel_kernel-inl.h"
#include "skyline/panel/system_kernel-inl.h"

namespace korvex {

void BeginPanel256(const SkylineArrays& K, std::int64_t first, const PanelRows& memory,
                   Panel& panel) {
  BeginPanel<ShortVectors<4>>(K, first, memory, panel);
}

void ReducePanel256(const SkylineArrays& K, std::int64_t end, Panel& panel) {
  ReducePanel<ShortVectors<4>>(K, end, panel);
}

void FinishPanel256(const SkylineArrays& K, Panel& panel) {
  FinishPanel<ShortVectors<4>>(K, panel);
}

double SumValues256(const double* values, std::int64_t count) {
  return SumValues<ShortVectors<4>>(values, count);
}

void ReduceLanes256(const LaneArrays& arrays, std::int64_t first, std::int64_t end) {
  ReduceLanes<ShortVectors<4>>(arrays, first, end);
}

void SubstituteLanes256(const LaneArrays& arrays, const BlockColumns& block) {
  SubstituteLanes<ShortVectors<4>>(arrays, block);
}

void FactorSystems256(const SystemLanes& systems, std::int64_t first, std::int64_t end) {
  FactorSystems<ShortVectors<4>>(systems, first, end);
}

void SubstituteSystems256(const SystemLanes& systems, const std::int64_t* reach) {
  SubstituteSystems<ShortVectors<4>>(systems, reach);
}

}  // namespace korvex
