// Several threads where memory is short: what one thread solves, eight solve too. POSIX only: a
// child process gets a limit of its addresses.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "platform/vector_bits.h"
#include "skyline/load_lanes.h"
#include "skyline/panel_work.h"
#include "support/limited_child.h"

namespace korvex::test {
namespace {

constexpr std::int32_t Equations = 8000;
constexpr std::int64_t Megabyte = std::int64_t{1} << 20U;

// A band that several threads are useful for, and a last column of all rows, as a closed ring has
// one: a panel of all rows takes 1.5 MB, one of a slice 0.2 MB, the lanes of 24 loads 1.5 MB.
SkylineMatrix MakeRing() {
  SkylineMatrix K;
  InitColumnHeights(K, Equations);
  for (std::int32_t j = 0; j < Equations; ++j) {
    const std::int32_t height = j == Equations - 1 ? Equations : 300;
    K.ColumnHeights[static_cast<std::size_t>(j)] = std::min(height, j + 1);
  }
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  std::fill(K.Values.begin(), K.Values.end(), -0.01);
  for (const std::int64_t diagonal : K.DiagonalAddress) {
    K.Values[static_cast<std::size_t>(diagonal)] = 1e4;
  }
  return K;
}

// Whether a process with so many bytes more solves `count` loads of K.
bool IsSolved(const SkylineMatrix& K, std::size_t count, int threads, std::int64_t bytes) {
  SkylineMatrix factors = K;
  std::vector<std::vector<double>> F(count, std::vector<double>(Equations, 1.0)), u = F;
  std::vector<LoadedSystem> loads;
  for (std::size_t k = 0; k < count; ++k) loads.push_back({&F[k], &u[k]});
  return SucceedsWithin(static_cast<std::uint64_t>(bytes), [&] {
    ColumnCounter columns;
    FactorAndSolve(WidestVectorBits(), factors, loads, columns, threads);
  });
}

TEST(ShortMemory, EightThreadsSolveWhatOneSolves) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  const SkylineMatrix K = MakeRing();
  int solved = 0, refused = 0;
  for (const std::size_t loads : {std::size_t{1}, std::size_t{49}}) {
    for (const std::int64_t megabytes : {0, 1, 2, 4, 16, 150, 300}) {
      if (!IsSolved(K, loads, 1, megabytes * Megabyte)) {
        ++refused;
        continue;
      }
      ++solved;
      EXPECT_TRUE(IsSolved(K, loads, 8, megabytes * Megabyte)) << loads << ", " << megabytes;
    }
  }
  EXPECT_GE(solved, 8);
  EXPECT_GE(refused, 2);
}

// A matrix of 8 MB in the place of one of 6.
TEST(ShortMemory, SmallerValuesAreGivenBack) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  SkylineMatrix K;
  const auto allocate = [&](std::int32_t equations) {
    InitColumnHeights(K, equations);
    ComputeDiagonalAddresses(K);
    AllocateValues(K);
  };
  InitColumnHeights(K, 1 << 20);  // its tables, 12 MB, are there before
  ComputeDiagonalAddresses(K);
  EXPECT_TRUE(SucceedsWithin(11 * Megabyte, [&] {
    allocate(3 << 18);
    allocate(1 << 20);
  }));
}

// Room for the rows of a slice is enough for one thread, and for several where it is scarce.
TEST(ShortMemory, WorkSpaceMakesDoWithWhatIsThere) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  const SkylineMatrix K = MakeRing();
  EXPECT_TRUE(SucceedsWithin(Megabyte, [&] {
    PanelWork work;
    AllocatePanelWork(K, 8, MaxPanelRows, work);
    if (work.threads != 1 || work.rows != MaxSliceRows) throw std::runtime_error("rows");
  }));
  PanelWork work;
  AllocatePanelWork(K, 8, MaxPanelRows, work);
  EXPECT_EQ(work.threads, 8);
  EXPECT_EQ(work.rows, 7992);  // 8000 without those of the last panel, 8
}

}  // namespace
}  // namespace korvex::test
