// Detail models side by side against each alone, bit for bit, for every vector length that this
// processor has: all section kinds, lengths, offsets, materials and directions mixed in a group,
// and beams that have to be solved alone.
#include "beamshell/solve_beam_lanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "beamshell/extrude_outline.h"
#include "beamshell/generate_beam_shells.h"
#include "beamshell/solve_beam_shell.h"
#include "platform/vector_bits.h"
#include "support/detail_beams.h"
#include "support/same_bits.h"
#include "support/solve_model.h"

namespace korvex::test {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

// A beam and the displacements of its nodes.
struct DrivenBeam {
  DetailBeam beam;
  Six u1{}, u2{};
};

double Draw(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

// A beam of this kind of section and number of steps, oblique, everything else at random. Every
// third lies on the node line, where a web's first link has no length.
DrivenBeam MakeBeam(const TestSection& kind, std::int32_t meshLevel, std::int32_t steps,
                    std::mt19937& random) {
  DrivenBeam driven;
  DetailBeam& beam = driven.beam;
  beam.section = kind;
  for (double& size : beam.section.dimensions) size *= Draw(random, 0.7, 1.3);
  beam.section.BeamSecOz = random() % 3 == 0 ? 0.0 : Draw(random, -0.3, 0.3);
  beam.meshLevel = meshLevel;
  beam.E = Draw(random, 1e10, 3e11), beam.Mu = Draw(random, 0.0, 0.45);
  Vector3 along{};
  for (std::size_t i = 0; i < 3; ++i) {
    beam.end1[i] = Draw(random, -20.0, 20.0);
    along[i] = Draw(random, -1.0, 1.0);
    beam.orientation[i] = Draw(random, -1.0, 1.0);
  }
  along = Normalise(along);
  const double step = LongestSegment(BuildOutline(beam.section, meshLevel));
  const double length = step * (steps + Draw(random, 0.05, 0.95));
  for (std::size_t i = 0; i < 3; ++i) beam.end2[i] = beam.end1[i] + length * along[i];
  for (double& u : driven.u1) u = Draw(random, -0.01, 0.01);
  for (double& u : driven.u2) u = Draw(random, -0.01, 0.01);
  return driven;
}

std::vector<double> StressesOf(const BeamShellModel& model) {
  std::vector<double> stresses;
  for (const Shell4Element& shell : model.Shells) {
    for (std::size_t k = 0; k < 4; ++k) {
      for (const StressVector& face : {shell.NodeStressTop[k], shell.NodeStressBottom[k]}) {
        stresses.insert(stresses.end(), face.begin(), face.end());
      }
    }
  }
  return stresses;
}

// Solves the beams side by side, and those that have to be alone afterwards. Expects the bits of
// each alone, and that at least the beams `spoilt` had to be. Returns how many had to be.
std::size_t ExpectBitsOfEachAlone(int bits, const std::vector<DrivenBeam>& beams,
                                  const std::vector<std::size_t>& spoilt, BeamLanes& lanes) {
  std::vector<BeamShellModel> models(beams.size());
  std::vector<LaneBeam> inLanes;
  for (std::size_t b = 0; b < beams.size(); ++b) {
    ExtrudeBeam(beams[b].beam, models[b]);
    inLanes.push_back({beams[b].u1.data(), beams[b].u2.data(), &models[b]});
  }
  const std::vector<LaneBeam> alone = SolveBeamLanes(bits, inLanes, lanes);
  for (const LaneBeam& beam : alone) SolveBeamShell(beam.u1, beam.u2, *beam.model);
  for (const std::size_t b : spoilt) {
    EXPECT_TRUE(std::any_of(alone.begin(), alone.end(),
                            [&](const LaneBeam& beam) { return beam.model == &models[b]; }))
        << bits << " bits, beam " << b;
  }
  for (std::size_t b = 0; b < beams.size(); ++b) {
    BeamShellModel expected = ExtrudeBeam(beams[b].beam);
    SolveBeamShell(beams[b].u1.data(), beams[b].u2.data(), expected);
    EXPECT_TRUE(SameBits(models[b].Displacements, expected.Displacements)) << bits << ' ' << b;
    EXPECT_TRUE(SameBits(StressesOf(models[b]), StressesOf(expected))) << bits << ' ' << b;
  }
  return alone.size();
}

// Calls work(bits, lanes of a vector) for each vector length.
template <typename Work>
void ForWidths(const Work& work) {
  for (const int bits : {128, 256, 512}) {
    if (bits <= WidestVectorBits()) work(bits, static_cast<std::size_t>(CountBeamLanes(bits)));
  }
}

// Groups of every size, all with the memory of those before them.
TEST(SolveBeamLanes, EverySectionKind) {
  std::mt19937 random(1);
  ForWidths([&](int bits, std::size_t width) {
    BeamLanes lanes;
    std::size_t count = 1;
    for (const TestSection& kind : AllSections()) {
      for (const std::int32_t steps : {1, 2, 5}) {
        SCOPED_TRACE(testing::Message() << kind.name << ", " << steps << " steps");
        std::vector<DrivenBeam> beams;
        while (beams.size() < count) beams.push_back(MakeBeam(kind, 0, steps, random));
        EXPECT_EQ(ExpectBitsOfEachAlone(bits, beams, {}, lanes), 0U);
        count = count % width + 1;
      }
    }
  });
}

TEST(SolveBeamLanes, FinerOutlines) {
  std::mt19937 random(2);
  ForWidths([&](int bits, std::size_t width) {
    for (const std::int32_t level : {1, 2}) {
      for (std::size_t kind = 0; kind < 5; ++kind) {
        std::vector<DrivenBeam> beams;
        while (beams.size() < width)
          beams.push_back(MakeBeam(AllSections()[kind], level, 3, random));
        BeamLanes lanes;
        EXPECT_EQ(ExpectBitsOfEachAlone(bits, beams, {}, lanes), 0U);
      }
    }
  });
}

// Beams of one step with something that gives infinities or NaNs, each with sound ones beside it:
// those keep their bits.
TEST(SolveBeamLanes, SpoiltBeamsAreSolvedAlone) {
  const std::vector<void (*)(DrivenBeam&)> spoil{
      [](DrivenBeam& b) { b.beam.end2 = b.beam.end1; },
      [](DrivenBeam& b) { b.beam.orientation = Subtract(b.beam.end2, b.beam.end1); },
      [](DrivenBeam& b) { b.beam.end1[1] = NaN; },
      [](DrivenBeam& b) { b.beam.end2[2] = -NaN; },
      [](DrivenBeam& b) { b.beam.end2[0] = Infinity; },
      [](DrivenBeam& b) { b.beam.E = 1e308; },
      [](DrivenBeam& b) { b.beam.E = -NaN; },
      [](DrivenBeam& b) { b.beam.Mu = 1.0; },
      [](DrivenBeam& b) { b.beam.Mu = Infinity; },
      [](DrivenBeam& b) { b.u1[3] = NaN; },
      [](DrivenBeam& b) { b.u1[0] = -NaN; },
      [](DrivenBeam& b) { b.u2[5] = 1e300; },
      [](DrivenBeam& b) { b.beam.section.dimensions[1] = 0.0; },
      [](DrivenBeam& b) { b.beam.section.dimensions[1] = NaN; },
  };
  std::mt19937 random(3);
  ForWidths([&](int bits, std::size_t width) {
    BeamLanes lanes;
    for (std::size_t s = 0; s < spoil.size(); ++s) {
      SCOPED_TRACE(s);
      std::vector<DrivenBeam> beams;
      while (beams.size() < width) beams.push_back(MakeBeam(AllSections()[s % 4], 0, 1, random));
      const std::size_t place = random() % width;
      spoil[s](beams[place]);
      if (ExtrudeBeam(beams[place].beam).NodeCount != ExtrudeBeam(beams[0].beam).NodeCount) {
        continue;  // another shape
      }
      ExpectBitsOfEachAlone(bits, beams, {place}, lanes);
    }
  });
}

// Numbers at the limits that stay finite, and zeros of both signs.
TEST(SolveBeamLanes, LargeSmallAndZero) {
  const std::vector<void (*)(DrivenBeam&)> change{
      [](DrivenBeam& b) { b.beam.E = 1e-30; },
      [](DrivenBeam& b) { b.beam.E = 1e200; },
      [](DrivenBeam& b) { b.beam.Mu = -0.0; },
      [](DrivenBeam& b) { b.u1 = b.u2 = {-0.0, 0.0, -0.0, 0.0, -0.0, 0.0}; },
      [](DrivenBeam& b) { b.u1[2] = 1e-310; },
      [](DrivenBeam& b) { b.u2[1] = 1e200; },
      [](DrivenBeam& b) { b.beam.section.dimensions[1] = 1e-12; },
  };
  std::mt19937 random(4);
  ForWidths([&](int bits, std::size_t width) {
    BeamLanes lanes;
    for (std::size_t c = 0; c < change.size(); ++c) {
      SCOPED_TRACE(c);
      std::vector<DrivenBeam> beams;
      while (beams.size() < width) beams.push_back(MakeBeam(AllSections()[c % 4], 0, 3, random));
      change[c](beams[random() % width]);
      ExpectBitsOfEachAlone(bits, beams, {}, lanes);
    }
  });
}

TEST(SolveBeamLanes, NoLanesWithoutVectors) { EXPECT_EQ(CountBeamLanes(0), 1); }

// A clamped grillage of 5 x 4 fields with sections, lengths and offsets in turn: 49 beams, of which
// many have the same shape. The file is kept for the programs of other vector lengths.
ModelText MakeGrillage() {
  ModelText text;
  text.materials = {{2.06e11, 0.3, 7850.0}, {7e10, 0.33, 2700.0}};
  text.tSections = {{0.3, 0.012, 0.15, 0.015}, {0.25, 0.01, 0.0, 0.0}};
  text.lSections = {{0.2, 0.01, 0.09, 0.012}};
  text.cSections = {{0.1, 0.01}};
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 6; ++x) text.nodes.push_back({0.8 * x, 0.7 * y, 0.05 * x * y});
  }
  const auto add = [&](int node1, int node2) {
    const int number = static_cast<int>(text.beams.size());
    constexpr std::array<int, 4> types{BeamSecTypeT, BeamSecTypeL, BeamSecTypeT, BeamSecTypeC};
    ModelText::Beam beam;
    beam.node1 = node1, beam.node2 = node2;
    beam.material = number % 2;
    beam.BeamSecType = types[static_cast<std::size_t>(number % 4)];
    beam.BeamSecIndex = number % 8 == 2 ? 1 : 0;
    beam.BeamSecMirrored = number % 8 == 1 ? 1 : 0;
    beam.BeamSecOz = number % 3 == 0 ? -0.05 : 0.0;
    text.beams.push_back(beam);
  };
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 6; ++x) {
      if (x < 5) add(6 * y + x, 6 * y + x + 1);
      if (y < 4) add(6 * y + x, 6 * y + x + 6);
    }
  }
  for (const int corner : {0, 5, 24, 29}) text.restraints.push_back({corner, {1, 1, 1, 1, 1, 1}});
  for (int node = 0; node < 30; ++node)
    text.forces.push_back({node, SingleLoad(2, -1000.0 - node)});
  return text;
}

TEST(BeamGroups, GrillageHasTheBitsOfSingleBeams) {
  Model model;
  SolveModel(MakeGrillage(), model);
  for (const int threads : {1, 2}) {
    GenerateBeamShells(model, {}, threads);
    for (std::int32_t row = 0; row < model.Tables.NELEM_B; ++row) {
      SectionOutline outline;
      BeamShellModel expected;
      DescribeBeam(model, row, expected, outline);
      ExtrudeOutline(outline, row, expected);
      const std::int32_t* ends = &model.Tables.BeamNodes[static_cast<std::size_t>(row) * 2];
      SolveBeamShell(&model.Displacements[static_cast<std::size_t>(ends[0]) * 6],
                     &model.Displacements[static_cast<std::size_t>(ends[1]) * 6], expected);
      const BeamShellModel& detail = model.BeamShellModels[static_cast<std::size_t>(row)];
      EXPECT_TRUE(SameBits(detail.Displacements, expected.Displacements)) << row;
      EXPECT_TRUE(SameBits(StressesOf(detail), StressesOf(expected))) << row;
    }
  }
}

}  // namespace
}  // namespace korvex::test
