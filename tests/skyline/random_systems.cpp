#include "skyline/random_systems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "skyline/solve_skyline_plain.h"
#include "skyline/substitute_back.h"

namespace korvex::test {

std::int32_t Pick(std::mt19937& random, std::int32_t count) {
  return static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(count));
}

namespace {

// Sets the columns' heights, at most about `reach` each.
void MakeHeights(Profile profile, std::int32_t reach, std::mt19937& random, SkylineMatrix& K) {
  std::int32_t nodeTop = 0;
  const auto n = static_cast<std::int32_t>(K.ColumnHeights.size());
  for (std::int32_t j = 0; j < n; ++j) {
    if (j % 6 == 0) {
      nodeTop = std::max(0, j / 6 - Pick(random, reach / 6 + 1)) * 6;
      if (profile == Profile::NodesHigh) nodeTop = Pick(random, 3) * 6;
      if (profile == Profile::Isolated && Pick(random, 4) == 0) nodeTop = j;
    }
    std::int32_t height = j - nodeTop + 1;
    if (profile == Profile::Isolated && nodeTop == j / 6 * 6) height = 1;
    if (profile == Profile::Ragged) height = 1 + Pick(random, reach);
    if (profile == Profile::Single && Pick(random, 15) == 0) height = 1;
    if (profile == Profile::Uneven && Pick(random, 15) == 0) height = 1 + Pick(random, j + 1);
    K.ColumnHeights[static_cast<std::size_t>(j)] = std::clamp(height, 1, j + 1);
  }
}

}  // namespace

double MakeValue(Values values, std::mt19937& random) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
  constexpr double Specials[] = {0.0,  -0.0,   -NotANumber, Infinity,
                                 1e20, 1e-310, -Infinity,   NotANumber};
  if (values == Values::Zeros && Pick(random, 3) == 0) return Specials[Pick(random, 2)];
  if (values == Values::Special && Pick(random, 400) == 0) return Specials[Pick(random, 8)];
  return std::uniform_real_distribution<double>(-1.0, 1.0)(random);
}

System MakeSystem(std::int32_t n, std::int32_t reach, Profile profile, Values values,
                  std::mt19937& random) {
  System system;
  InitColumnHeights(system.K, n);
  MakeHeights(profile, reach, random, system.K);
  ComputeDiagonalAddresses(system.K);
  AllocateValues(system.K);
  for (double& value : system.K.Values) value = MakeValue(values, random);
  for (const std::int64_t diagonal : system.K.DiagonalAddress) {
    if (values == Values::Special && Pick(random, 50) == 0) continue;
    system.K.Values[static_cast<std::size_t>(diagonal)] += 20.0;
  }
  for (std::int32_t i = 0; i < n; ++i) system.F.push_back(MakeValue(values, random));
  system.u.assign(static_cast<std::size_t>(n), -7.0);  // every entry must be written
  return system;
}

void SolveByPlainFactors(System& system) {
  ColumnCounter columns;
  FactorSkylinePlain(system.K, system.F, columns);
  SubstituteBack(system.K, system.F, system.u);
}

void ForRandomSystems(int count, std::int32_t maxN, unsigned seed,
                      const std::function<void(const System&)>& check) {
  std::mt19937 random(seed);
  for (int run = 0; run < count; ++run) {
    for (const Profile profile : AllProfiles) {
      for (const Values values : AllValues) {
        const std::int32_t n = Pick(random, maxN + 1);
        const std::int32_t reach = 1 + Pick(random, n + 1);
        SCOPED_TRACE(testing::Message()
                     << "run " << run << ", profile " << static_cast<int>(profile) << ", values "
                     << static_cast<int>(values) << ", n " << n);
        check(MakeSystem(n, reach, profile, values, random));
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

}  // namespace korvex::test
