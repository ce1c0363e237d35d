// Detail models made in blocks: whatever the memory is, each beam once, with the bits of a run.
#include "audit/detail_blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "audit/detail_file.h"
#include "audit/solved_model.h"
#include "beamshell/average_stress_file.h"
#include "beamshell/extrude_outline.h"
#include "beamshell/generate_beam_shells.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"
#include "support/detail_peaks.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "support/same_bits.h"
#include "support/solved_examples.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::BeamShellModel, korvex::Model;
using korvex::test::ModelText, korvex::test::ReadFile, korvex::test::SameBits;

void Solve(const std::string& text, Model& model) {
  SolvedModel solved;
  SolveInMemory(text, {}, solved);
  model = std::move(solved.model);
  korvex::RecoverShellStresses(model);
  korvex::AverageNodeStresses(model);
}

// The memory that holds the detail models of all beams in one block: three quarters of what is left
// beside the largest system.
std::uint64_t CountAllBytes(const Model& model) {
  std::uint64_t bytes = 0, largestSystem = 0;
  korvex::SectionOutline outline;
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    BeamShellModel detail;
    const auto row = static_cast<std::int32_t>(b);
    korvex::DescribeBeam(model, row, detail, outline);
    bytes += korvex::CountDetailBytes(outline, row, detail);
    largestSystem = std::max(largestSystem, korvex::CountSystemBytes(outline, row, detail));
  }
  return (bytes + 2) / 3 * 4 + largestSystem;
}

std::vector<double> AllStresses(const BeamShellModel& detail) {
  std::vector<double> values;
  for (const korvex::Shell4Element& shell : detail.Shells) {
    for (const auto* slots : {&shell.NodeStressTop, &shell.NodeStressBottom, &shell.AvgStressTop,
                              &shell.AvgStressBottom}) {
      for (const korvex::StressVector& stress : *slots) {
        values.insert(values.end(), stress.begin(), stress.end());
      }
    }
  }
  return values;
}

// Makes the detail models in blocks and compares them with those made together. Returns the number
// of blocks.
std::size_t ExpectBitsOfARun(const Model& model, const std::vector<BeamShellModel>& together,
                             const DetailWork& work) {
  std::size_t blocks = 0, beams = 0;
  bool hasLast = false;
  MakeDetailModels(model, work, [&](const DetailBlock& block) {
    EXPECT_FALSE(hasLast);
    EXPECT_EQ(block.firstBeam, beams);
    EXPECT_GT(block.count, 0U);
    for (std::size_t i = 0; i < block.count; ++i) {
      const BeamShellModel& expected = together[block.firstBeam + i];
      EXPECT_TRUE(SameBits(block.details[i].Displacements, expected.Displacements));
      EXPECT_TRUE(SameBits(AllStresses(block.details[i]), AllStresses(expected)))
          << "beam " << block.firstBeam + i;
    }
    beams += block.count;
    hasLast = block.isLast;
    ++blocks;
    return true;
  });
  EXPECT_EQ(beams, together.size());
  EXPECT_TRUE(hasLast || together.empty());
  return blocks;
}

// In one block, in a few and in one for each beam, on one thread and on three.
void ExpectBitsInAllBlocks(const std::string& text) {
  Model model;
  Solve(text, model);
  korvex::GenerateBeamShells(model);
  const std::vector<BeamShellModel> together = std::move(model.BeamShellModels);
  model.BeamShellModels.clear();
  if (together.empty()) return;
  const std::uint64_t all = CountAllBytes(model);
  EXPECT_EQ(ExpectBitsOfARun(model, together, {1, 0, {}}), 1U);
  EXPECT_EQ(ExpectBitsOfARun(model, together, {1, all, {}}), 1U);
  constexpr std::size_t Few = 60;  // a block for each beam makes each several times
  if (together.size() < Few) {
    EXPECT_EQ(ExpectBitsOfARun(model, together, {3, 1, {}}), together.size());
  }
  ExpectBitsOfARun(model, together, {2, all / 3, {}});
  if (together.size() > 1) {
    EXPECT_GT(ExpectBitsOfARun(model, together, {1, all - 8, {}}), 1U);
  }
}

TEST(DetailBlocks, HaveTheBitsOfARun) {
  for (const std::string& name : ListSolvedExamples()) {
    if (name == "lattice-tower") continue;  // takes long
    SCOPED_TRACE(name);
    ExpectBitsInAllBlocks(ReadFile(KORVEX_EXAMPLES "/" + name + "/fem_solving.txt"));
  }
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(12); ++seed) {
    SCOPED_TRACE(seed);
    ExpectBitsInAllBlocks(WriteModel(MakeGoodModel(seed)));
  }
}

// What no mesh should have: beams drawn twice and the other way round, ends that miss each other by
// a little less than what is shared, by that, and by a little more, a star, a beam without length,
// one whose orientation lies along it, one of NaN.
TEST(DetailBlocks, HaveTheBitsOfARunWhereBeamsAreOdd) {
  ModelText text;
  text.materials = {{2.06e5, 0.3, 0.0}};
  text.tSections = {{100, 6, 80, 6}};
  text.cSections = {{40, 4}};
  text.nodes = {{0, 0, 0}, {1000, 0, 0}, {2000, 0, 0}, {3000, 0, 0}};
  const auto addBeam = [&](int node1, int node2) {
    text.beams.emplace_back();
    text.beams.back().node1 = node1;
    text.beams.back().node2 = node2;
    if (text.beams.size() % 3 == 0) text.beams.back().BeamSecType = korvex::BeamSecTypeC;
  };
  const auto addNode = [&](double x, double y, double z) {
    text.nodes.push_back({x, y, z});
    return static_cast<int>(text.nodes.size()) - 1;
  };
  for (int b = 0; b < 3; ++b) addBeam(b, b + 1);
  for (int b = 0; b < 3; ++b) addBeam(b + 1, b);
  addBeam(0, 2);
  for (const double gap : {0.0009, 0.001, 0.0011}) {
    addBeam(addNode(1000.0, gap, 0.0), addNode(1000.0 + gap, 900.0, 0.0));
  }
  for (int b = 0; b < 8; ++b) addBeam(2, addNode(2000.0, 500.0 + 40.0 * b, 300.0 * b - 900.0));
  addBeam(1, addNode(1000.0, 0.0, 0.0));
  addBeam(3, addNode(3000.0, 0.0, 800.0));
  text.beams.back().orientation = {0.0, 0.0, 1.0};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  for (int n = 4; n < static_cast<int>(text.nodes.size()); ++n) {
    text.restraints.push_back({n, {1, 1, 1, 1, 1, 1}});
  }
  text.forces = {{3, {10, 20, 500, 0, 0, 0}}, {1, {0, 50, -100, 0, 0, 0}}};
  Model model;
  Solve(WriteModel(text), model);
  // One of NaN: its displacements would make those of all others NaN, too.
  model.BeamElements[4].NodeI[1] = std::numeric_limits<double>::quiet_NaN();
  for (double& u : model.Displacements) {
    if (!std::isfinite(u)) u = 0.25;
  }
  korvex::GenerateBeamShells(model);
  const std::vector<BeamShellModel> together = std::move(model.BeamShellModels);
  model.BeamShellModels.clear();
  const std::uint64_t all = CountAllBytes(model);
  EXPECT_EQ(ExpectBitsOfARun(model, together, {1, 0, {}}), 1U);
  EXPECT_EQ(ExpectBitsOfARun(model, together, {1, 1, {}}), together.size());
  for (const std::uint64_t part : {2, 3, 5, 8}) {
    ExpectBitsOfARun(model, together, {2, all / part, {}});
  }
}

// Four beams of 1 m that meet in node 0, and one far from it. The middle of the cross is shared.
ModelText MakeCross() {
  ModelText text;
  text.materials = {{2.06e5, 0.3, 0.0}};
  text.tSections = {{100, 6, 80, 6}};
  text.nodes = {{0, 0, 0},    {1000, 0, 0}, {0, 1000, 0},   {-1000, 0, 0},
                {0, -900, 0}, {5000, 0, 0}, {5000, 1000, 0}};
  const auto add = [&](int node1, int node2) {
    text.beams.emplace_back();
    text.beams.back().node1 = node1;
    text.beams.back().node2 = node2;
  };
  add(0, 1);
  add(2, 0);
  add(5, 6);
  add(0, 3);
  add(4, 0);
  text.restraints = {{1, {1, 1, 1, 1, 1, 1}}, {5, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{3, {10, 20, 500, 0, 0, 0}}, {6, {10, 20, -300, 0, 0, 0}}};
  return text;
}

// The share never falls and begins with 0, over all blocks; it counts the beams that are made
// twice. Of each beam alone: 4 beams of the cross are made with it, and the one apart alone. So the
// third block begins after 8 of 17, the fourth after 9.
TEST(DetailBlocks, TellTheShareOfAllOfThem) {
  Model model;
  Solve(WriteModel(MakeCross()), model);
  std::vector<double> shares;
  std::vector<std::size_t> blocksAt;
  std::size_t blocks = 0;
  const auto note = [&](double share) {
    shares.push_back(share);
    blocksAt.push_back(blocks);
  };
  MakeDetailModels(model, {1, 1, note}, [&](const DetailBlock&) {
    ++blocks;
    return true;
  });
  EXPECT_EQ(blocks, 5U);
  EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
  EXPECT_LT(shares.back(), 1.0);
  constexpr std::array<double, 5> Before{0.0, 4.0, 8.0, 9.0, 13.0};
  for (std::size_t k = 0; k < Before.size(); ++k) {
    const auto first = std::find(blocksAt.begin(), blocksAt.end(), k) - blocksAt.begin();
    ASSERT_LT(first, static_cast<std::ptrdiff_t>(shares.size()));
    EXPECT_DOUBLE_EQ(shares[static_cast<std::size_t>(first)], Before[k] / 17.0) << k;
  }
}

TEST(DetailBlocks, EndWhereNoMoreIsWanted) {
  Model model;
  Solve(WriteModel(MakeCross()), model);
  int blocks = 0;
  MakeDetailModels(model, {1, 1, {}}, [&](const DetailBlock&) { return ++blocks < 2; });
  EXPECT_EQ(blocks, 2);
}

// Before the first block, so that no file is begun.
TEST(DetailBlocks, StopAtABeamWithoutASection) {
  ModelText text = MakeCross();
  Model model;
  Solve(WriteModel(text), model);
  model.Tables.BeamSectionRefs[3].BeamSecType = 7;
  int blocks = 0;
  const auto make = [&] {
    MakeDetailModels(model, {1, 1, {}}, [&](const DetailBlock&) { return ++blocks > 0; });
  };
  korvex::test::ExpectStop(make, "Beam 3 has BeamSecType=7, which is no kind of section.");
  EXPECT_EQ(blocks, 0);
  const korvex::test::WorkingFolder folder;
  DetailPeaks peaks;
  korvex::test::ExpectStop(
      [&] {
        WriteDetailFile("stresses.txt", model, {1, 1, {}}, {}, peaks);
      },
      "Beam 3 has BeamSecType=7, which is no kind of section.");
  EXPECT_FALSE(std::filesystem::exists("stresses.txt"));
}

bool AreSame(const Peak& a, const Peak& b) {
  std::vector<double> values[2];
  for (const Peak* peak : {&a, &b}) {
    std::vector<double>& of = values[peak == &a ? 0 : 1];
    of = {peak->value, peak->detailThickness};
    of.insert(of.end(), peak->detailEdge.begin(), peak->detailEdge.end());
    of.insert(of.end(), peak->place.begin(), peak->place.end());
  }
  return SameBits(values[0], values[1]) && a.element == b.element && a.corner == b.corner &&
         a.face == b.face && a.detailShell == b.detailShell;
}

void ExpectSame(const PeakOffer& offer, const PeakOffer& expected) {
  EXPECT_EQ(offer.hasBest, expected.hasBest);
  EXPECT_EQ(offer.hasNotFinite, expected.hasNotFinite);
  EXPECT_TRUE(AreSame(offer.best, expected.best));
  EXPECT_TRUE(AreSame(offer.notFinite, expected.notFinite));
}

// The file of a run, byte for byte, and the peaks of its detail models.
TEST(DetailFile, HasTheBytesOfARun) {
  const korvex::test::WorkingFolder folder;
  std::size_t beams = 0;
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(4); ++seed) {
    SCOPED_TRACE(seed);
    Model model;
    Solve(WriteModel(MakeGoodModel(seed)), model);
    korvex::GenerateBeamShells(model);
    ASSERT_TRUE(korvex::WriteAverageStressFile("together.txt", model));
    const DetailPeaks expected = TakeDetailPeaks(model);
    model.BeamShellModels.clear();
    for (const std::uint64_t memory : {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{500000}}) {
      DetailPeaks peaks;
      int announced = 0;
      const auto beforeLast = [&] { ++announced; };
      ASSERT_TRUE(WriteDetailFile("blocks.txt", model, {2, memory, {}}, beforeLast, peaks));
      EXPECT_EQ(announced, 1);
      EXPECT_TRUE(ReadFile("blocks.txt") == ReadFile("together.txt"));
      ASSERT_EQ(peaks.offers.size(), expected.offers.size());
      ASSERT_EQ(peaks.stresses.size(), expected.stresses.size());
      for (std::size_t b = 0; b < expected.offers.size(); ++b) {
        ExpectSame(peaks.offers[b], expected.offers[b]);
        EXPECT_EQ(peaks.stresses[b].vonMises, expected.stresses[b].vonMises);
        ++beams;
      }
    }
  }
  EXPECT_GT(beams, korvex::test::Repeats(60));
}

}  // namespace
}  // namespace kvx::test
