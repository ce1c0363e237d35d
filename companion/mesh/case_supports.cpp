#include "mesh/case_supports.h"

#include <algorithm>
#include <cstddef>

namespace kvx {

HeldNodes JoinRestraints(const ImportModel& model, std::int32_t supports) {
  HeldNodes held;
  if (supports < 0) return held;
  for (const korvex::NodalRestraint& each :
       model.supports[static_cast<std::size_t>(supports)].restraints) {
    unsigned bits = 0;
    for (std::size_t d = 0; d < 6; ++d) bits |= each.fixed[d] == 1 ? 1U << d : 0U;
    if (bits != 0) held.emplace_back(each.node, static_cast<std::uint8_t>(bits));
  }
  std::sort(held.begin(), held.end());
  std::size_t kept = 0;
  for (std::size_t k = 0; k < held.size(); ++k) {
    if (kept > 0 && held[kept - 1].first == held[k].first) {
      held[kept - 1].second = static_cast<std::uint8_t>(held[kept - 1].second | held[k].second);
    } else {
      held[kept++] = held[k];
    }
  }
  held.resize(kept);
  return held;
}

std::uint8_t FindHeld(const HeldNodes& held, std::int32_t node) {
  const auto at = std::lower_bound(held.begin(), held.end(), HeldNodes::value_type(node, 0));
  return at != held.end() && at->first == node ? at->second : std::uint8_t{0};
}

bool HasLoads(const ImportCase& loads) {
  return loads.hasAcceleration || !loads.forces.empty() || !loads.pressures.empty() ||
         !loads.lineLoads.empty() || !loads.prescribed.empty();
}

std::int32_t FindSupports(const ImportModel& model) {
  if (model.cases.empty()) return model.supports.empty() ? -1 : 0;
  const auto loaded = std::find_if(model.cases.begin(), model.cases.end(), HasLoads);
  return loaded == model.cases.end() ? model.cases.front().supports : loaded->supports;
}

}  // namespace kvx
