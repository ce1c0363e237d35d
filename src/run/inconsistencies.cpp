#include "run/inconsistencies.h"

#include <algorithm>

namespace korvex {

namespace {

constexpr int Parts = 2;  // of an element: membrane and plate

template <std::int32_t Nodes>
int CountShells(const std::vector<ShellElement<Nodes>>& elements) {
  return static_cast<int>(
      std::count_if(elements.begin(), elements.end(),
                    [](const ShellElement<Nodes>& element) { return !HasOwnNodeCount(element); }));
}

template <std::int32_t Nodes>
int CountLoads(const ZeroedTable<ShellSurfaceLoad>& loads,
               const std::vector<ShellElement<Nodes>>& elements) {
  return static_cast<int>(
      std::count_if(loads.begin(), loads.end(), [&](const ShellSurfaceLoad& load) {
        return !HasOwnNodeCount(elements[static_cast<std::size_t>(load.element)]);
      }));
}

}  // namespace

int CountOnReading(const Model& model) {
  return CountShells(model.Shell4Elements) + CountShells(model.Shell3Elements);
}

int CountOnForming(const Model& model) { return Parts * CountOnReading(model); }

int CountOnLoading(const Model& model) {
  return CountLoads(model.Tables.Shell4SurfaceLoads, model.Shell4Elements) +
         CountLoads(model.Tables.Shell3SurfaceLoads, model.Shell3Elements);
}

int CountOnRecovery(const Model& model) {
  return Parts * (NodesPerShell4 * CountShells(model.Shell4Elements) +
                  NodesPerShell3 * CountShells(model.Shell3Elements));
}

}  // namespace korvex
