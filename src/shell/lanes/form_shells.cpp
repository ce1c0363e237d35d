#include "shell/lanes/form_shells.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "shell/lanes/load_shell.h"
#include "shell/lanes/shell_lanes.h"
#include "shell/shell_stiffness.h"

namespace korvex {

namespace {

constexpr auto MaxLanes = static_cast<std::size_t>(MaxShellLanes);

// Forms the matrices of at most as many shells as there are lanes. The other lanes repeat the last
// one. A shell whose sum is not finite is formed alone, because a NaN may have another sign.
void FormTogether(const ShellRoutines& routines, const Shell4Element* shells, std::size_t count,
                  double* const* matrices) {
  const auto lanes = static_cast<std::size_t>(routines.lanes);
  std::array<double, static_cast<std::size_t>(ShellNumbers) * MaxLanes> numbers;
  std::array<double*, MaxLanes> places{};
  std::array<double, MaxLanes> sums;
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    const std::size_t e = std::min(lane, count - 1);
    LoadShell(shells[e], lanes, &numbers[lane]);
    places[lane] = matrices[e];
  }
  routines.form(numbers.data(), places.data(), sums.data());
  for (std::size_t e = 0; e < count; ++e) {
    if (!std::isfinite(sums[e])) Shell4Stiffness(shells[e], matrices[e]);
  }
}

}  // namespace

void FormShell4Stiffnesses(int vectorBits, const Shell4Element* shells, std::size_t count,
                           double* const* matrices) {
  const ShellRoutines routines = FindShellRoutines(vectorBits);
  const auto lanes = static_cast<std::size_t>(routines.lanes);
  std::size_t done = 0;
  while (lanes > 1 && done < count) {
    const std::size_t together = std::min(lanes, count - done);
    FormTogether(routines, shells + done, together, matrices + done);
    done += together;
  }
  for (; done < count; ++done) Shell4Stiffness(shells[done], matrices[done]);
}

}  // namespace korvex
