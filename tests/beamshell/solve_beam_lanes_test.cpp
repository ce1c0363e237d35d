// Detail models side by side against each alone, bit for bit, for every vector length that this
// processor has: all section kinds, lengths, offsets, materials and directions mixed in a group,
// and beams that have to be solved alone.
#include "beamshell/solve_beam_lanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <limits>
#include <random>

#include "base/finite.h"
#include "beamshell/average_corners.h"
#include "beamshell/extrude_outline.h"
#include "beamshell/generate_beam_shells.h"
#include "beamshell/group_beams.h"
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

// Sets the second end at so many steps along a unit vector.
void SetLength(double steps, const Vector3& along, DetailBeam& beam) {
  const double length = steps * LongestSegment(BuildOutline(beam.section, beam.meshLevel));
  for (std::size_t i = 0; i < 3; ++i) beam.end2[i] = beam.end1[i] + length * along[i];
}

// A beam of this kind of section and number of steps, oblique, everything else at random. Every
// third has the offset of its kind: without one it lies on the node line, where a web's first link
// has no length.
DrivenBeam MakeBeam(const TestSection& kind, std::int32_t meshLevel, std::int32_t steps,
                    std::mt19937& random) {
  DrivenBeam driven;
  DetailBeam& beam = driven.beam;
  beam.section = kind;
  for (double& size : beam.section.dimensions) size *= Draw(random, 0.7, 1.3);
  if (random() % 3 != 0) beam.section.BeamSecOz = Draw(random, -0.3, 0.3);
  beam.meshLevel = meshLevel;
  beam.E = Draw(random, 1e10, 3e11), beam.Mu = Draw(random, 0.0, 0.45);
  Vector3 along{};
  for (std::size_t i = 0; i < 3; ++i) {
    beam.end1[i] = Draw(random, -20.0, 20.0);
    along[i] = Draw(random, -1.0, 1.0);
    beam.orientation[i] = Draw(random, -1.0, 1.0);
  }
  SetLength(steps + Draw(random, 0.05, 0.95), Normalise(along), beam);
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

BeamShape ShapeOf(const DetailBeam& beam) {
  const SectionOutline outline = BuildOutline(beam.section, beam.meshLevel);
  return DescribeShape(outline, CountSteps(outline, 0, ExtrudeBeam(beam)));
}

// Solves the beams, which have one shape, side by side, and those that have to be alone afterwards.
// Expects the bits of each alone, and that at least the beams `spoilt` had to be. Returns how many
// had to be.
std::size_t ExpectBitsOfEachAlone(int bits, const std::vector<DrivenBeam>& beams,
                                  const std::vector<std::size_t>& spoilt, BeamLanes& lanes) {
  for (const DrivenBeam& beam : beams) {
    const bool isSameShape = ShapeOf(beam.beam) == ShapeOf(beams[0].beam);
    EXPECT_TRUE(isSameShape);
    if (!isSameShape) return 0;
  }
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

// A beam along an axis, in one of 48 positions: coordinates and frames have zeros of both signs.
DrivenBeam MakeParallelBeam(const TestSection& kind, std::int32_t steps, unsigned position,
                            std::mt19937& random) {
  DrivenBeam driven = MakeBeam(kind, 0, steps, random);
  DetailBeam& beam = driven.beam;
  const std::size_t along = position % 3, up = (along + 1 + position / 3 % 2) % 3;
  const double zero = position / 24 % 2 == 0 ? 0.0 : -0.0;
  beam.end1.fill(zero), beam.orientation.fill(zero);
  beam.orientation[up] = position / 6 % 2 == 0 ? 1.0 : -1.0;
  Vector3 direction{zero, zero, zero};
  direction[along] = position / 12 % 2 == 0 ? 1.0 : -1.0;
  SetLength(steps + 0.5, direction, beam);
  driven.u1[along] = driven.u2[up] = zero;
  return driven;
}

TEST(SolveBeamLanes, ParallelToTheAxes) {
  std::mt19937 random(7);
  ForWidths([&](int bits, std::size_t width) {
    BeamLanes lanes;
    unsigned position = 0;
    for (const TestSection& kind : AllSections()) {
      for (unsigned made = 0; made < 48; made += static_cast<unsigned>(width)) {
        SCOPED_TRACE(testing::Message() << kind.name << ", position " << made);
        std::vector<DrivenBeam> beams;
        const std::int32_t steps = 1 + static_cast<std::int32_t>(made / width % 2);
        while (beams.size() < width) {
          beams.push_back(MakeParallelBeam(kind, steps, position++, random));
        }
        EXPECT_EQ(ExpectBitsOfEachAlone(bits, beams, {}, lanes), 0U);
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

// A way to give a beam infinities or NaNs.
struct Spoiling {
  bool isForAnySteps;  // or for one step alone, because the spoilt beam has no more
  void (*spoil)(DrivenBeam&);
};

// Expects that of a group of this kind of section the spoilt beam is alone, and that the sound ones
// beside it keep their bits.
void SpoilOne(int bits, const TestSection& kind, std::int32_t steps, void (*spoil)(DrivenBeam&),
              std::mt19937& random, BeamLanes& lanes) {
  std::vector<DrivenBeam> beams;
  const auto width = static_cast<std::size_t>(CountBeamLanes(bits));
  while (beams.size() < width) beams.push_back(MakeBeam(kind, 0, steps, random));
  const std::size_t place = random() % width;
  spoil(beams[place]);
  ExpectBitsOfEachAlone(bits, beams, {place}, lanes);
}

TEST(SolveBeamLanes, SpoiltBeamsAreSolvedAlone) {
  const std::vector<Spoiling> spoilings{
      {false, [](DrivenBeam& b) { b.beam.end2 = b.beam.end1; }},
      {true, [](DrivenBeam& b) { b.beam.orientation = Subtract(b.beam.end2, b.beam.end1); }},
      {true, [](DrivenBeam& b) { b.beam.orientation[2] = NaN; }},
      {false, [](DrivenBeam& b) { b.beam.end1[1] = NaN; }},
      {false, [](DrivenBeam& b) { b.beam.end2[2] = -NaN; }},
      {false, [](DrivenBeam& b) { b.beam.end2[0] = Infinity; }},
      {true, [](DrivenBeam& b) { b.beam.E = 1e308; }},
      {true, [](DrivenBeam& b) { b.beam.E = -NaN; }},
      {true, [](DrivenBeam& b) { b.beam.Mu = 1.0; }},
      {true, [](DrivenBeam& b) { b.beam.Mu = Infinity; }},
      {true, [](DrivenBeam& b) { b.u1[3] = NaN; }},
      {true, [](DrivenBeam& b) { b.u1[0] = -NaN; }},
      {true, [](DrivenBeam& b) { b.u2[5] = 1e300; }},
      {false, [](DrivenBeam& b) { b.beam.section.BeamSecOz = NaN; }},
      {true, [](DrivenBeam& b) { b.beam.section.dimensions[1] = 0.0; }},
      {true, [](DrivenBeam& b) { b.beam.section.dimensions[1] = NaN; }},
  };
  std::mt19937 random(3);
  ForWidths([&](int bits, std::size_t) {
    BeamLanes lanes;
    for (const TestSection& kind : AllSections()) {
      for (std::size_t s = 0; s < spoilings.size(); ++s) {
        SCOPED_TRACE(testing::Message() << kind.name << ", spoiling " << s);
        const bool isLong = spoilings[s].isForAnySteps && kind.BeamSecOz != 0.0;
        SpoilOne(bits, kind, isLong ? 2 : 1, spoilings[s].spoil, random, lanes);
      }
    }
  });
}

// Only the flange is nowhere: NaNs meet finite numbers, and those of the lanes have other signs.
TEST(SolveBeamLanes, SpoiltFlanges) {
  const auto wide = [](DrivenBeam& b) {
    const Vector3 d = Subtract(b.beam.end2, b.beam.end1);
    b.beam.section.dimensions[2] = NaN;
    SetLength(3.5, Normalise(d), b.beam);  // of the web's segments
  };
  const auto thick = [](DrivenBeam& b) { b.beam.section.dimensions[3] = -Infinity; };
  std::mt19937 random(8);
  ForWidths([&](int bits, std::size_t) {
    BeamLanes lanes;
    for (const TestSection& kind : AllSections()) {
      if (kind.dimensions[2] == 0.0) continue;  // it has no flange
      SCOPED_TRACE(kind.name);
      SpoilOne(bits, kind, 3, wide, random, lanes);
      SpoilOne(bits, kind, 1, thick, random, lanes);
    }
  });
}

// Which numbers of a beam that is solved alone are all finite.
struct FiniteParts {
  bool stiffness, displacements, stresses;
};

FiniteParts FindFiniteParts(const DrivenBeam& driven) {
  const auto areFinite = [](const auto& numbers) {
    return AreFinite(numbers.data(), numbers.size());
  };
  BeamShellModel model = ExtrudeBeam(driven.beam);
  BuildBeamShellProfile(model);
  AssembleBeamShell(model);
  const bool stiffness = areFinite(model.Stiffness.Values);
  SolveBeamShell(driven.u1.data(), driven.u2.data(), model);
  return {stiffness, areFinite(model.Displacements), areFinite(StressesOf(model))};
}

// Makes E so large that the largest sum of the shells' terms is infinite, but no term. The
// stiffness of a large beam is larger than the numbers that it is formed from.
void OverflowDiagonal(DrivenBeam& driven) {
  for (double& size : driven.beam.section.dimensions) size *= 100.0;
  driven.beam.section.BeamSecOz = 25.0;       // no outline node is driven
  driven.beam.orientation = {0.0, 0.0, 1.0};  // along the axes: no term is larger in local axes
  SetLength(2.5, {1.0, 0.0, 0.0}, driven.beam);
  driven.beam.E = 1.0;
  BeamShellModel model = ExtrudeBeam(driven.beam);
  model.Links.clear();
  BuildBeamShellProfile(model);
  AssembleBeamShell(model);
  const MatrixValues& values = model.Stiffness.Values;
  const double largest = *std::max_element(values.begin(), values.end());
  driven.beam.E = std::numeric_limits<double>::max() / (0.99 * largest);
}

// Expects that the beam has these finite parts, and that it is the only one of a group of its kind
// that is solved alone.
void ExpectAloneWith(const FiniteParts& parts, int bits, const TestSection& kind,
                     void (*spoil)(DrivenBeam&), std::mt19937& random, BeamLanes& lanes) {
  std::vector<DrivenBeam> beams;
  const auto width = static_cast<std::size_t>(CountBeamLanes(bits));
  while (beams.size() < width) beams.push_back(MakeBeam(kind, 0, 2, random));
  const std::size_t place = random() % width;
  spoil(beams[place]);
  const FiniteParts found = FindFiniteParts(beams[place]);
  EXPECT_EQ(found.stiffness, parts.stiffness);
  EXPECT_EQ(found.displacements, parts.displacements);
  EXPECT_EQ(found.stresses, parts.stresses);
  EXPECT_EQ(ExpectBitsOfEachAlone(bits, beams, {place}, lanes), 1U);
}

// With an infinity on its diagonal an equation only gives the displacement zero.
TEST(SolveBeamLanes, InfiniteStiffnessAlone) {
  std::mt19937 random(5);
  ForWidths([&](int bits, std::size_t) {
    BeamLanes lanes;
    for (int repeat = 0; repeat < 5; ++repeat) {
      ExpectAloneWith({false, true, true}, bits, AllSections()[0], OverflowDiagonal, random, lanes);
    }
  });
}

// 6 / TK^2 is infinite, and all entries of the stiffness are small.
TEST(SolveBeamLanes, InfiniteStressesAlone) {
  const auto thin = [](DrivenBeam& b) { b.beam.section.dimensions[1] = 1e-170; };
  std::mt19937 random(6);
  ForWidths([&](int bits, std::size_t) {
    BeamLanes lanes;
    for (const TestSection& kind : AllSections()) {
      SCOPED_TRACE(kind.name);
      ExpectAloneWith({true, true, false}, bits, kind, thin, random, lanes);
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

std::vector<double> AveragesOf(const BeamShellModel& model) {
  std::vector<double> averages;
  for (const Shell4Element& shell : model.Shells) {
    for (std::size_t k = 0; k < 4; ++k) {
      for (const StressVector& face : {shell.AvgStressTop[k], shell.AvgStressBottom[k]}) {
        averages.insert(averages.end(), face.begin(), face.end());
      }
    }
  }
  return averages;
}

// Makes the detail model of a beam of a solved model.
void ExtrudeRow(const Model& model, std::int32_t row, BeamShellModel& detail) {
  SectionOutline outline;
  DescribeBeam(model, row, detail, outline);
  ExtrudeOutline(outline, row, detail);
}

// Expects that all detail models have the bits that each has alone, and their averages the bits
// that those have.
void ExpectBitsOfSingleBeams(Model& model) {
  std::vector<BeamShellModel> expected(static_cast<std::size_t>(model.Tables.NELEM_B));
  for (std::size_t row = 0; row < expected.size(); ++row) {
    ExtrudeRow(model, static_cast<std::int32_t>(row), expected[row]);
    const std::int32_t* ends = &model.Tables.BeamNodes[row * 2];
    SolveBeamShell(&model.Displacements[static_cast<std::size_t>(ends[0]) * 6],
                   &model.Displacements[static_cast<std::size_t>(ends[1]) * 6], expected[row]);
  }
  AverageBeamShellStresses(expected);
  for (const int threads : {1, 2}) {
    GenerateBeamShells(model, {}, threads);
    for (std::size_t row = 0; row < expected.size(); ++row) {
      const BeamShellModel& detail = model.BeamShellModels[row];
      EXPECT_TRUE(SameBits(detail.Displacements, expected[row].Displacements)) << row;
      EXPECT_TRUE(SameBits(StressesOf(detail), StressesOf(expected[row]))) << row;
      EXPECT_TRUE(SameBits(AveragesOf(detail), AveragesOf(expected[row]))) << row;
    }
  }
}

TEST(BeamGroups, GrillageHasTheBitsOfSingleBeams) {
  Model model;
  SolveModel(MakeGrillage(), model);
  ExpectBitsOfSingleBeams(model);
}

// Eight T beams become so short that they have one step. Of these one has no length, and one is
// nowhere. Of a longer one the flange is nowhere, and a tube has no orientation.
TEST(BeamGroups, BeamsWithoutLengthOrPlace) {
  Model model;
  SolveModel(MakeGrillage(), model);
  for (const std::size_t row : {0U, 8U, 16U, 20U, 24U, 32U, 40U, 48U}) {
    BeamElement& beam = model.BeamElements[row];
    const Vector3 d = Subtract(beam.NodeJ, beam.NodeI);
    for (std::size_t i = 0; i < 3; ++i) beam.NodeJ[i] = beam.NodeI[i] + 0.2 * d[i];
  }
  model.BeamElements[16].NodeJ = model.BeamElements[16].NodeI;
  model.BeamElements[20].NodeI[1] = NaN;
  model.Tables.BeamSectionRefs[4].BeamSecIndex = 2;
  model.Tables.TBeamSections.push_back({0.3, 0.012, NaN, 0.015});
  model.BeamElements[3].RefPoint[0] = NaN;
  // They are in groups with sound ones: the first eight or four of a shape always are.
  std::vector<BeamShellModel> details(49);
  for (std::size_t row = 0; row < 49; ++row) {
    ExtrudeRow(model, static_cast<std::int32_t>(row), details[row]);
  }
  const auto countAlike = [&](std::size_t row) {
    return std::count_if(details.begin(), details.end(), [&](const BeamShellModel& detail) {
      return detail.ShellNodes == details[row].ShellNodes;
    });
  };
  EXPECT_EQ(countAlike(16), 8);
  EXPECT_EQ(countAlike(20), 8);
  EXPECT_GE(countAlike(3), 4);
  EXPECT_GE(countAlike(4), 4);
  ExpectBitsOfSingleBeams(model);
}

}  // namespace
}  // namespace korvex::test
