// Detail models in blocks where the memory does not hold all of them. POSIX only: a child process
// gets a limit of its addresses.
#include <gtest/gtest.h>

#include <cstdint>

#include "audit/detail_file.h"
#include "audit/solved_model.h"
#include "beamshell/average_stress_file.h"
#include "beamshell/generate_beam_shells.h"
#include "support/limited_child.h"
#include "support/model_text.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

constexpr int Beams = 16;

// Parallel beams, 1 apart, of 475 steps: T sections whose longest segment is 0.105, 50 long.
void SolveLongBeams(SolvedModel& solved) {
  korvex::test::ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.tSections = {{0.3, 0.01, 0.1, 0.01}};
  for (int b = 0; b < Beams; ++b) {
    text.nodes.push_back({0.0, 1.0 * b, 0.0});
    text.nodes.push_back({50.0, 1.0 * b, 0.0});
    text.beams.emplace_back();
    text.beams.back().node1 = 2 * b;
    text.beams.back().node2 = 2 * b + 1;
    text.restraints.push_back({2 * b, {1, 1, 1, 1, 1, 1}});
    text.forces.push_back({2 * b + 1, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}});
  }
  SolveInMemory(WriteModel(text), {}, solved);
}

// A beam has 2858 nodes and 2375 shells: 1.2 kB a shell, 2.9 MB, and its system takes 9 MB, counted
// as 14. All together take 47 MB beside the system; seven fit into a block.
TEST(DetailBlocks, AreOfAsManyBeamsAsTheMemoryHolds) {
  if (korvex::test::IsMemoryUnlimited)
    GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  constexpr std::uint64_t Limit = std::uint64_t{42} << 20U;
  SolvedModel solved;
  SolveLongBeams(solved);
  const auto together = [&] { korvex::GenerateBeamShells(solved.model); };
  EXPECT_FALSE(korvex::test::SucceedsWithin(Limit, together));

  const korvex::test::WorkingFolder folder;
  const auto inBlocks = [&] {
    if (!WriteDetailFile("blocks.txt", solved.model, {1, 0, {}}, {}, solved.details)) throw 0;
  };
  EXPECT_TRUE(korvex::test::SucceedsWithin(Limit, inBlocks));
  together();
  ASSERT_TRUE(korvex::WriteAverageStressFile("together.txt", solved.model));
  EXPECT_TRUE(korvex::test::ReadFile("blocks.txt") == korvex::test::ReadFile("together.txt"));
}

}  // namespace
}  // namespace kvx::test
