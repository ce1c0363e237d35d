// Detail models on more threads than the memory has room for. POSIX only: a child process gets a
// limit of its addresses.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <numeric>
#include <vector>

#include "beamshell/average_stress_file.h"
#include "beamshell/generate_beam_shells.h"
#include "support/limited_child.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

constexpr int Beams = 8;

// Parallel beams, 1 apart, of 950 steps: T sections whose longest segment is 0.105, 100 long.
Model MakeLongBeams() {
  ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.tSections = {{0.3, 0.01, 0.1, 0.01}};
  for (int b = 0; b < Beams; ++b) {
    text.nodes.push_back({0.0, 1.0 * b, 0.0});
    text.nodes.push_back({100.0, 1.0 * b, 0.0});
    text.beams.emplace_back();
    text.beams.back().node1 = 2 * b;
    text.beams.back().node2 = 2 * b + 1;
    text.restraints.push_back({2 * b, {1, 1, 1, 1, 1, 1}});
    text.forces.push_back({2 * b + 1, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}});
  }
  Model model;
  SolveModel(text, model);
  return model;
}

// A beam has 5708 nodes and 4750 shells: 1.4 kB a shell, 7 MB. Its system has 34,248 equations of
// 72 entries at most, which are counted as 27 MB and take 17. Eight beams take 83 MB on one thread;
// a further one needs 27 MB and up to 136 MB for its stack and its heap.
TEST(DetailMemory, ThreadsAreFewerWhereItIsShort) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  constexpr std::uint64_t Megabyte = std::uint64_t{1} << 20U;
  const Model model = MakeLongBeams();
  for (const std::uint64_t megabytes : {75, 100, 150, 200, 300}) {
    const auto isSolved = [&](int threads) {
      Model limited = model;
      return SucceedsWithin(megabytes * Megabyte,
                            [&] { GenerateBeamShells(limited, {}, threads); });
    };
    const bool isExpected = isSolved(1);
    EXPECT_EQ(isSolved(8), isExpected) << megabytes;
    EXPECT_TRUE(isExpected || megabytes < 150) << megabytes;
  }
}

// A second time, in the place of the first. They are counted as 56 MB and take 38: where the memory
// of the first does not count, 80 MB are too little beside them and a system of 17. (Memory that
// other tests have left to this process makes up for it: alone, the test sees it.)
TEST(DetailMemory, OfModelsThatAreThereServesAgain) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  const Model model = MakeLongBeams();
  std::vector<std::int32_t> rows(Beams);
  std::iota(rows.begin(), rows.end(), 0);
  const auto makeTwice = [&] {
    std::vector<BeamShellModel> details;
    GenerateBeamShells(model, rows, details);
    GenerateBeamShells(model, rows, details);
  };
  EXPECT_TRUE(SucceedsWithin(std::uint64_t{80} << 20U, makeTwice));
}

// The rows of 200,000 detail models, 8 bytes each, are counted in 1.6 MB.
TEST(DetailMemory, NoFileIsBegunWithoutIt) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  Model model;
  model.BeamShellModels.resize(200000);
  const WorkingFolder folder;
  const auto write = [&] { WriteAverageStressFile("stresses.txt", model); };
  EXPECT_FALSE(SucceedsWithin(std::uint64_t{1} << 20U, write));
  EXPECT_FALSE(std::filesystem::exists("stresses.txt"));
}

}  // namespace
}  // namespace korvex::test
