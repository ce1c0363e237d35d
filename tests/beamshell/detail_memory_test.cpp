// Detail models on more threads than the memory has room for. POSIX only: a child process gets a
// limit of its addresses.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <numeric>
#include <stdexcept>
#include <vector>

#include "beamshell/average_stress_file.h"
#include "beamshell/extrude_outline.h"
#include "beamshell/generate_beam_shells.h"
#include "beamshell/solve_beam_lanes.h"
#include "platform/vector_bits.h"
#include "support/limited_child.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

constexpr std::uint64_t Megabyte = std::uint64_t{1} << 20U;

// Parallel beams, 1 apart, of these lengths: T sections whose longest segment is 0.105.
Model MakeBeams(const std::vector<double>& lengths) {
  ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.tSections = {{0.3, 0.01, 0.1, 0.01}};
  int b = 0;
  for (const double length : lengths) {
    text.nodes.push_back({0.0, 1.0 * b, 0.0});
    text.nodes.push_back({length, 1.0 * b, 0.0});
    text.beams.emplace_back();
    text.beams.back().node1 = 2 * b;
    text.beams.back().node2 = 2 * b + 1;
    text.restraints.push_back({2 * b, {1, 1, 1, 1, 1, 1}});
    text.forces.push_back({2 * b + 1, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}});
    ++b;
  }
  Model model;
  SolveModel(text, model);
  return model;
}

// Eight beams of 952 steps.
Model MakeLongBeams() { return MakeBeams(std::vector<double>(8, 100.0)); }

// Its 5720 nodes and 4760 shells are counted as 6 MB and take 5. Its system has 34,320 equations of
// 72 entries at most, which are counted as 26 MB; the matrix takes 12. A further thread needs 26 MB
// and up to 136 MB for its stack and its heap.
TEST(DetailMemory, ThreadsAreFewerWhereItIsShort) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
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

// A second time, in the place of the first. Of 80 MB they leave 41, and are counted as 47 where
// their own memory does not count. (Memory that other tests have left to this process makes up for
// it: alone, the test sees it.)
TEST(DetailMemory, OfModelsThatAreThereServesAgain) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  const Model model = MakeLongBeams();
  std::vector<std::int32_t> rows(8);
  std::iota(rows.begin(), rows.end(), 0);
  const auto makeTwice = [&] {
    std::vector<BeamShellModel> details;
    GenerateBeamShells(model, rows, details);
    GenerateBeamShells(model, rows, details);
  };
  EXPECT_TRUE(SucceedsWithin(80 * Megabyte, makeTwice));
}

// Two beams of 1428 and 1904 steps, one after the other. Their models are counted as 21 MB and take
// 17, their matrices take 18 and 24.
TEST(DetailMemory, OfASmallerSystemIsGivenBack) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  Model model = MakeBeams({150.0, 200.0});
  EXPECT_TRUE(SucceedsWithin(52 * Megabyte, [&] { GenerateBeamShells(model); }));
}

// As many beams as there are lanes, of 476 steps, then as many of 714. Each lane takes 7 MB, then
// 10.
TEST(DetailMemory, OfSmallerLanesIsGivenBack) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  const int bits = WidestVectorBits();
  const auto lanes = static_cast<std::size_t>(CountBeamLanes(bits));
  if (lanes == 1) GTEST_SKIP() << "this processor has no lanes";
  const std::vector<double> u(6, 1e-3);
  const auto extrude = [&](double length) {
    const Model model = MakeBeams({length});
    SectionOutline outline;
    std::vector<BeamShellModel> details(lanes);
    for (BeamShellModel& detail : details) {
      DescribeBeam(model, 0, detail, outline);
      ExtrudeOutline(outline, 0, detail);
    }
    return details;
  };
  std::vector<BeamShellModel> small = extrude(50.0), large = extrude(75.0);
  const auto solveBoth = [&] {
    BeamLanes memory;
    for (std::vector<BeamShellModel>* details : {&small, &large}) {
      std::vector<LaneBeam> beams;
      for (BeamShellModel& detail : *details) beams.push_back({u.data(), u.data(), &detail});
      if (!SolveBeamLanes(bits, beams, memory).empty()) throw std::runtime_error("no room");
    }
  };
  EXPECT_TRUE(SucceedsWithin((14 * lanes + 3) * Megabyte, solveBoth));
}

// As many beams as there are lanes, of 571 steps, then one of 1333 steps a lane. For each lane the
// models are counted as 12 MB and take 10; the systems side by side take 8, that of the long beam
// 17. Side by side they are counted as 16 MB for each lane and 16 more, so two lanes are solved
// alone in this memory.
TEST(DetailMemory, OfLanesIsGivenBackForABeamAlone) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  const auto lanes = static_cast<std::size_t>(CountBeamLanes(WidestVectorBits()));
  if (lanes == 1) GTEST_SKIP() << "this processor has no lanes";
  std::vector<double> lengths(lanes, 60.0);
  lengths.push_back(140.0 * static_cast<double>(lanes));
  Model model = MakeBeams(lengths);
  const std::uint64_t megabytes = 31 * lanes + 7;
  EXPECT_TRUE(SucceedsWithin(megabytes * Megabyte, [&] { GenerateBeamShells(model); }));
}

// The rows of 200,000 detail models, 8 bytes each, are counted in 1.6 MB.
TEST(DetailMemory, NoFileIsBegunWithoutIt) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  Model model;
  model.BeamShellModels.resize(200000);
  const WorkingFolder folder;
  const auto write = [&] { WriteAverageStressFile("stresses.txt", model); };
  EXPECT_FALSE(SucceedsWithin(Megabyte, write));
  EXPECT_FALSE(std::filesystem::exists("stresses.txt"));
}

}  // namespace
}  // namespace korvex::test
