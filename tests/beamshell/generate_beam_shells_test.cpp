// The detail models of all beams: each bit for bit against a detail model made separately, what
// stops the run, and the stresses of whole structures against statics.
#include "beamshell/generate_beam_shells.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <thread>

#include "beamshell/average_corners.h"
#include "beamshell/solve_beam_shell.h"
#include "support/detail_beams.h"
#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/run_stages.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"

namespace korvex::test {
namespace {

// A clamped frame of five beams with a different section each and two materials. Node numbers and
// directions of the beams are in no order.
constexpr std::array<std::array<int, 2>, 5> FrameNodes{{{3, 0}, {5, 3}, {5, 1}, {4, 1}, {4, 2}}};

std::array<TestSection, 5> FrameSections() {
  return {{
      {"T", BeamSecTypeT, {0.3, 0.02, 0.16, 0.025}, 0.0, false},
      {"L", BeamSecTypeL, {0.25, 0.02, 0.12, 0.02}, -0.1, false},
      {"Tube", BeamSecTypeC, {0.15, 0.02, 0.0, 0.0}, 0.05, false},
      {"MirroredL", BeamSecTypeL, {0.3, 0.015, 0.16, 0.02}, 0.0, true},
      {"FlatBar", BeamSecTypeT, {0.2, 0.03, 0.0, 0.0}, 0.0, false},
  }};
}

ModelText MakeFrame() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}, {7e10, 0.25, 2700.0}};
  text.tSections = {{0.2, 0.03, 0.0, 0.0}, {0.3, 0.02, 0.16, 0.025}};
  text.lSections = {{0.25, 0.02, 0.12, 0.02}, {0.3, 0.015, 0.16, 0.02}};
  text.cSections = {{0.15, 0.02}};
  text.nodes = {{0.1, 0.2, 0.3}, {2.5, 1.7, 1.1}, {4.1, 1.9, 0.2},
                {0.3, 0.5, 1.4}, {3.7, 2.1, 1.2}, {1.3, 0.9, 1.6}};
  const std::array<int, 5> rows{1, 0, 0, 1, 0};
  for (std::size_t b = 0; b < 5; ++b) {
    const TestSection section = FrameSections()[b];
    ModelText::Beam beam;
    beam.node1 = FrameNodes[b][0];
    beam.node2 = FrameNodes[b][1];
    beam.orientation = {0.3, -0.4 + 0.1 * static_cast<double>(b), 0.8};
    beam.material = b % 2 == 0 ? 0 : 1;
    beam.BeamSecType = section.BeamSecType;
    beam.BeamSecIndex = rows[b];
    beam.BeamSecOz = section.BeamSecOz;
    beam.BeamSecMirrored = section.mirrored ? 1 : 0;
    text.beams.push_back(beam);
  }
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {2, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{5, {1e3, -2e3, 3e3, 1e2, 2e2, -3e2}}, {1, {-2e3, 1e3, -1e3, 5e2, 0, 1e2}}};
  return text;
}

Model SolveFrame() {
  Model model;
  SolveModel(MakeFrame(), model);
  return model;
}

// The expected detail model of beam b of the frame, made from the text of the model.
BeamShellModel MakeDetail(const Model& model, std::size_t b, std::int32_t meshLevel) {
  const ModelText text = MakeFrame();
  const auto [node1, node2] = FrameNodes[b];
  const Vector3& end1 = text.nodes[static_cast<std::size_t>(node1)];
  Vector3 orientation{};
  // A beam stores the point end1 + vector, not the vector: the same rounding is needed here.
  for (std::size_t i = 0; i < 3; ++i) {
    const double point = end1[i] + text.beams[b].orientation[i];
    orientation[i] = point - end1[i];
  }
  const auto& material = text.materials[static_cast<std::size_t>(text.beams[b].material)];
  BeamShellModel detail =
      ExtrudeBeam({FrameSections()[b], end1, text.nodes[static_cast<std::size_t>(node2)],
                   orientation, material[0], material[1], meshLevel});
  SolveBeamShell(NodeDisplacements(model, node1).data(), NodeDisplacements(model, node2).data(),
                 detail);
  return detail;
}

// Compares everything except the averages, bit for bit.
void ExpectSame(const BeamShellModel& detail, const BeamShellModel& expected) {
  EXPECT_EQ(detail.MeshLevel, expected.MeshLevel);
  EXPECT_EQ(detail.E, expected.E);
  EXPECT_EQ(detail.Mu, expected.Mu);
  EXPECT_EQ(detail.EndPoint1, expected.EndPoint1);
  EXPECT_EQ(detail.EndPoint2, expected.EndPoint2);
  EXPECT_EQ(detail.OrientVector, expected.OrientVector);
  EXPECT_EQ(detail.Tolerance, expected.Tolerance);
  EXPECT_EQ(detail.ProfileNodeCount, expected.ProfileNodeCount);
  EXPECT_EQ(detail.NodeCount, expected.NodeCount);
  EXPECT_EQ(detail.NEQ, expected.NEQ);
  EXPECT_EQ(detail.NodeCoords, expected.NodeCoords);
  EXPECT_EQ(detail.ShellCount, expected.ShellCount);
  EXPECT_EQ(detail.ShellNodes, expected.ShellNodes);
  EXPECT_EQ(detail.LinkCount, expected.LinkCount);
  EXPECT_EQ(detail.Displacements, expected.Displacements);
  ASSERT_EQ(detail.Shells.size(), expected.Shells.size());
  for (std::size_t e = 0; e < expected.Shells.size(); ++e) {
    EXPECT_EQ(detail.Shells[e].E, expected.Shells[e].E) << e;
    EXPECT_EQ(detail.Shells[e].Mu, expected.Shells[e].Mu) << e;
    EXPECT_EQ(detail.Shells[e].TK, expected.Shells[e].TK) << e;
    EXPECT_EQ(detail.Shells[e].NodeStressTop, expected.Shells[e].NodeStressTop) << e;
    EXPECT_EQ(detail.Shells[e].NodeStressBottom, expected.Shells[e].NodeStressBottom) << e;
  }
}

TEST(GenerateBeamShells, EveryBeamGetsItsDetailModel) {
  Model model = SolveFrame();
  for (const std::int32_t level : {0, 1, 2}) {
    SCOPED_TRACE(level);
    model.BeamShellMeshLevel = level;
    GenerateBeamShells(model);
    ASSERT_EQ(model.BeamShellModels.size(), 5U);
    for (std::size_t b = 0; b < 5; ++b) {
      SCOPED_TRACE(FrameSections()[b].name);
      EXPECT_EQ(model.BeamShellModels[b].MeshLevel, level);
      ExpectSame(model.BeamShellModels[b], MakeDetail(model, b, level));
    }
  }
}

TEST(GenerateBeamShells, LevelsOtherThan1And2AreLevel0) {
  Model model = SolveFrame();
  for (const std::int32_t level : {-1, 3}) {
    model.BeamShellMeshLevel = level;
    GenerateBeamShells(model);
    EXPECT_EQ(model.BeamShellModels[0].MeshLevel, level);  // a copy
    EXPECT_EQ(model.BeamShellModels[0].NodeCoords, MakeDetail(model, 0, 0).NodeCoords);
  }
}

// Averages are taken over all models: corners of different beams are averaged together.
TEST(GenerateBeamShells, AveragesComeLast) {
  Model model = SolveFrame();
  GenerateBeamShells(model);
  std::vector<BeamShellModel> expected;
  for (std::size_t b = 0; b < 5; ++b) expected.push_back(MakeDetail(model, b, 0));
  AverageBeamShellStresses(expected);
  for (std::size_t b = 0; b < 5; ++b) {
    for (std::size_t e = 0; e < expected[b].Shells.size(); ++e) {
      const Shell4Element& shell = model.BeamShellModels[b].Shells[e];
      EXPECT_EQ(shell.AvgStressTop, expected[b].Shells[e].AvgStressTop) << b << ' ' << e;
      EXPECT_EQ(shell.AvgStressBottom, expected[b].Shells[e].AvgStressBottom) << b << ' ' << e;
    }
  }
}

// The components 3, 4 and 12 make the length 13.
TEST(GenerateBeamShells, ToleranceIsATenThousandthOfTheLength) {
  Model model = SolveFrame();
  model.BeamElements[0].NodeI = {1.0, 2.0, 3.0};
  model.BeamElements[0].NodeJ = {4.0, 6.0, 15.0};
  GenerateBeamShells(model);
  EXPECT_EQ(model.BeamShellModels[0].Tolerance, 13.0 / 10000.0);
}

// There may be hundreds of beams: their matrices are not kept.
TEST(GenerateBeamShells, KeepsResultsOnly) {
  Model model = SolveFrame();
  GenerateBeamShells(model);
  for (const BeamShellModel& detail : model.BeamShellModels) {
    EXPECT_EQ(detail.Links.capacity(), 0U);
    EXPECT_EQ(detail.LinkNodes.capacity(), 0U);
    EXPECT_EQ(detail.LoadVector.capacity(), 0U);
    EXPECT_EQ(detail.Stiffness.Values.capacity(), 0U);
  }
}

TEST(GenerateBeamShells, CountsOfARecord) {
  Model model = SolveFrame();
  GenerateBeamShells(model);
  for (const BeamShellModel& detail : model.BeamShellModels) {
    EXPECT_EQ(detail.NodesPerShell, 4);
    EXPECT_EQ(detail.NodesPerLink, 2);
    EXPECT_EQ(detail.DofsPerNode, 6);
    EXPECT_EQ(detail.ShellDofs, 24);
    EXPECT_EQ(detail.LinkDofs, 12);
  }
}

// The mirror flag comes from the section reference, not from the beam element; a T has no use for
// it. The material comes from the beam element, not from the table.
TEST(GenerateBeamShells, MirrorFlagOfTheReferenceAndMaterialOfTheElement) {
  Model model = SolveFrame();
  model.Tables.BeamSectionRefs[0].BeamSecMirrored = true;
  model.BeamElements[3].BeamSecMirrored = false;
  model.Tables.Materials[0].E = model.Tables.Materials[1].E = 1.0;
  GenerateBeamShells(model);
  ExpectSame(model.BeamShellModels[0], MakeDetail(model, 0, 0));
  ExpectSame(model.BeamShellModels[3], MakeDetail(model, 3, 0));
}

TEST(GenerateBeamShells, SecondTimeReplacesTheFirst) {
  Model model = SolveFrame();
  model.BeamShellMeshLevel = 1;
  GenerateBeamShells(model);
  model.BeamShellMeshLevel = 0;
  GenerateBeamShells(model);
  ASSERT_EQ(model.BeamShellModels.size(), 5U);
  ExpectSame(model.BeamShellModels[4], MakeDetail(model, 4, 0));
}

TEST(GenerateBeamShells, WithoutBeamsNothingHappens) {
  for (const std::int32_t count : {0, -1}) {
    Model model;
    model.Tables.NELEM_B = count;
    model.BeamShellModels.resize(2);
    model.BeamShellModels[1].E = 5.0;
    GenerateBeamShells(model);
    ASSERT_EQ(model.BeamShellModels.size(), 2U);
    EXPECT_EQ(model.BeamShellModels[1].E, 5.0);
  }
}

TEST(GenerateBeamShells, PrintsNothing) {
  Model model = SolveFrame();
  testing::internal::CaptureStdout();
  GenerateBeamShells(model);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// Before beam b of five, b / 5 of them are solved.
TEST(GenerateBeamShells, ReportsItsProgressAndCanBeInterrupted) {
  Model model = SolveFrame(), other = SolveFrame();
  std::vector<double> shares;
  GenerateBeamShells(model, [&](double share) { shares.push_back(share); });
  EXPECT_EQ(shares, (std::vector<double>{0.0, 1.0 / 5.0, 2.0 / 5.0, 3.0 / 5.0, 4.0 / 5.0}));
  GenerateBeamShells(other);
  for (std::size_t b = 0; b < 5; ++b) {
    ExpectSame(model.BeamShellModels[b], other.BeamShellModels[b]);
  }
  const auto interrupt = [](double share) {
    if (share > 0.3) throw share;
  };
  EXPECT_THROW(GenerateBeamShells(other, interrupt), double);
}

// The beams before it have got their detail models.
TEST(GenerateBeamShells, SectionWithoutATableStopsTheRun) {
  for (const std::int32_t type : {3, -1}) {
    Model model = SolveFrame();
    model.Tables.BeamSectionRefs[2].BeamSecType = type;
    ExpectStop([&model] { GenerateBeamShells(model); }, "梁截面类型数字错误!");
    for (const std::size_t b : {0U, 1U}) {
      ExpectSame(model.BeamShellModels[b], MakeDetail(model, b, 0));
    }
    EXPECT_TRUE(model.BeamShellModels[2].Shells.empty());
    EXPECT_TRUE(model.BeamShellModels[3].Shells.empty());
  }
}

void ExpectSameAverages(const BeamShellModel& detail, const BeamShellModel& expected) {
  for (std::size_t e = 0; e < expected.Shells.size(); ++e) {
    EXPECT_EQ(detail.Shells[e].AvgStressTop, expected.Shells[e].AvgStressTop) << e;
    EXPECT_EQ(detail.Shells[e].AvgStressBottom, expected.Shells[e].AvgStressBottom) << e;
  }
}

// The frame, and 48 beams of all kinds in two lines.
TEST(GenerateBeamShells, ThreadsChangeNoBit) {
  Model frame = SolveFrame(), grid;
  SolveModel(MakeStiffenedGrid(), grid);
  for (Model* model : {&frame, &grid}) {
    Model expected = *model;
    GenerateBeamShells(expected);
    for (const int threads : ThreadCounts) {
      GenerateBeamShells(*model, {}, threads);
      for (std::size_t b = 0; b < expected.BeamShellModels.size(); ++b) {
        SCOPED_TRACE(testing::Message() << "beam " << b << ", threads: " << threads);
        const BeamShellModel& detail = model->BeamShellModels[b];
        ExpectSame(detail, expected.BeamShellModels[b]);
        ExpectSameAverages(detail, expected.BeamShellModels[b]);
        EXPECT_EQ(detail.Stiffness.Values.capacity(), 0U);
      }
    }
  }
}

// Five equal T beams in a line, bent out of it.
Model SolveLine() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}};
  text.tSections = {{0.3, 0.02, 0.16, 0.025}};
  text.nodes = {{0.0, 0.0, 0.0}};
  for (int b = 0; b < 5; ++b) {
    text.nodes.push_back({b + 1.0, 0.0, 0.0});
    text.beams.emplace_back();
    text.beams.back().node1 = b;
    text.beams.back().node2 = b + 1;
  }
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{5, {1e3, -2e3, 3e3, 1e2, 2e2, -3e2}}};
  Model model;
  SolveModel(text, model);
  return model;
}

// Beams 1 and 3 share the ends of beam 2: its averages are those of a run. Beam 1 also shares one
// with beam 0, which is not there.
TEST(GenerateBeamShells, OfSomeBeamsHaveTheBitsOfARun) {
  Model model = SolveLine();
  GenerateBeamShells(model);
  const std::vector<BeamShellModel> all = std::move(model.BeamShellModels);
  model.BeamShellModels.clear();
  std::vector<BeamShellModel> some(7);  // what is there is replaced
  for (const int threads : {1, 3}) {
    GenerateBeamShells(model, {1, 2, 3}, some, {}, threads);
    ASSERT_EQ(some.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) ExpectSame(some[i], all[i + 1]);
    ExpectSameAverages(some[1], all[2]);
  }
  EXPECT_NE(some[0].Shells[0].AvgStressTop, all[1].Shells[0].AvgStressTop);
  GenerateBeamShells(model, {}, some);
  EXPECT_TRUE(some.empty());
  // Rows of the table, not places in the list, stand in notices. The longest segment is the web's
  // upper one, 0.3 / 3 + 0.025 / 2 = 0.1125.
  model.BeamElements[4].NodeJ[0] = 1e13;
  ExpectStop(
      [&] {
        GenerateBeamShells(model, {2, 4}, some);
      },
      "Beam element 4: its detail model would have 8.88889e+13 steps along the beam, too "
      "many to number its equations.");
}

TEST(GenerateBeamShells, ThreadsStopAtTheFirstBeamThatStopsARun) {
  Model frame = SolveFrame();
  for (const int threads : ThreadCounts) {
    for (int run = 0; run < 5; ++run) {
      Model model = frame;
      model.Tables.BeamSectionRefs[2].BeamSecType = 3;
      model.BeamElements[4].NodeJ[0] = 0.2 / 3 * 1e13;  // too many steps, but behind beam 2
      ExpectStop([&] { GenerateBeamShells(model, {}, threads); }, "梁截面类型数字错误!");
      for (const std::size_t b : {0U, 1U}) {
        ExpectSame(model.BeamShellModels[b], MakeDetail(model, b, 0));
      }
      EXPECT_TRUE(model.BeamShellModels[2].Shells.empty());
    }
  }
}

TEST(GenerateBeamShells, ThreadsReportOnTheCallersThreadAndCanBeInterrupted) {
  Model model;
  SolveModel(MakeStiffenedGrid(), model);
  for (const int threads : ThreadCounts) {
    const std::thread::id caller = std::this_thread::get_id();
    std::vector<double> shares;
    const auto report = [&](double share) {
      EXPECT_EQ(std::this_thread::get_id(), caller);
      EXPECT_GE(share, 0.0);
      EXPECT_LT(share, 1.0);
      shares.push_back(share);
    };
    GenerateBeamShells(model, report, threads);
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_FALSE(shares.empty());
    const auto interrupt = [](double share) { throw share; };
    EXPECT_THROW(GenerateBeamShells(model, interrupt, threads), double);
  }
}

// Segments of 0.1 give 1e13 steps. Beams in notices are numbered from zero, as in the model file.
TEST(GenerateBeamShells, TooManyStepsStopTheRun) {
  Model model = SolveFrame();
  model.BeamElements[4].NodeJ[0] = 0.2 / 3 * 1e13;
  ExpectStop([&model] { GenerateBeamShells(model); },
             "Beam element 4: its detail model would have 1e+13 steps along the beam, too many to "
             "number its equations.");
}

bool AllFinite(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

// Beam 2 has been given bad geometry: its results are not finite, those of the others unchanged.
void ExpectNonFinite(Model& model) {
  GenerateBeamShells(model);
  const BeamShellModel& detail = model.BeamShellModels[2];
  EXPECT_EQ(detail.NodeCoords.front(), detail.EndPoint1);
  EXPECT_EQ(detail.NodeCoords.back(), detail.EndPoint2);
  for (std::size_t node = 1; node + 1 < detail.NodeCoords.size(); ++node) {
    EXPECT_FALSE(std::isfinite(detail.NodeCoords[node][0])) << node;
    EXPECT_FALSE(std::isfinite(detail.Displacements[Equation(node, Ux)])) << node;
  }
  for (const Shell4Element& shell : detail.Shells) {
    for (std::size_t k = 0; k < 4; ++k) {
      EXPECT_FALSE(std::isfinite(shell.NodeStressTop[k][SX]));
      EXPECT_FALSE(std::isfinite(shell.AvgStressBottom[k][TYZ]));
    }
  }
  for (const std::size_t b : {0U, 1U, 3U, 4U}) {
    EXPECT_TRUE(AllFinite(model.BeamShellModels[b].Displacements));
    ExpectSame(model.BeamShellModels[b], MakeDetail(model, b, 0));
  }
}

TEST(GenerateBeamShells, BeamWithoutLengthGivesNonFiniteResults) {
  Model model = SolveFrame();
  model.BeamElements[2].NodeJ = model.BeamElements[2].NodeI;
  ExpectNonFinite(model);
  EXPECT_EQ(model.BeamShellModels[2].Tolerance, 0.0);
  EXPECT_EQ(model.BeamShellModels[2].ShellCount, 8);  // one step
}

TEST(GenerateBeamShells, OrientationAlongTheAxisGivesNonFiniteResults) {
  Model model = SolveFrame();
  BeamElement& beam = model.BeamElements[2];
  beam.NodeI = {1.0, 2.0, 3.0};
  beam.NodeJ = {2.0, 2.5, 3.0};
  beam.RefPoint = {3.0, 3.0, 3.0};
  ExpectNonFinite(model);
}

// Whole structures of three beams of one section in a line. The stresses at mid-length of the
// middle beam's detail model are compared with statics,
//   N / A + My (z - ez) / Iy - Mz (y - ey) / Iz
// with the properties of the section, not of the outline's plates: the beam's displacements drive
// the detail model, so that its curvature is M / (E I) of the beam. Two errors are inherent:
//   - Mu^2 / (1 - Mu^2) = 0.099 of the change of bending stress from the middle of a segment to its
//     edge, because the contraction across does not vary over an element;
//   - rigid end stations, which increase curvature and strain in the middle a little. They prevent
//     the contraction across, which stiffens at most half a height at each end by Mu^2 (by minimum
//     energy, see beam_shell_mechanics_test.cpp): Mu^2 divided by the length in heights.
class DetailStresses : public testing::TestWithParam<TestSection> {};

INSTANTIATE_TEST_SUITE_P(AllSections, DetailStresses, testing::ValuesIn(AllSections()),
                         [](const testing::TestParamInfo<TestSection>& section) {
                           return section.param.name;
                         });

constexpr double E = 2e11, Mu = 0.3;
constexpr double Slenderness =
    12.1;  // no multiple of a segment, so that rounding does not decide the number of steps
constexpr double BeamSpan = Slenderness * 0.3;  // each beam's length; all sections are 0.3 high
constexpr double EndStations = Mu * Mu / Slenderness;

// Three beams along `direction` (a unit vector).
ModelText MakeLine(const TestSection& section, const Vector3& direction,
                   const Vector3& orientation) {
  ModelText text;
  text.materials = {{E, Mu, 7850.0}};
  for (int i = 0; i < 4; ++i) {
    const double x = i * BeamSpan;
    text.nodes.push_back({x * direction[0], x * direction[1], x * direction[2]});
  }
  for (int b = 0; b < 3; ++b) {
    ModelText::Beam beam;
    beam.node1 = b;
    beam.node2 = b + 1;
    beam.orientation = orientation;
    UseSection(section, text, beam);
    text.beams.push_back(beam);
  }
  return text;
}

// The mean of the readings at the same point and face of different steps. In a beam under shear the
// detail stresses are symmetric about the middle, except for a part that changes its sign there.
std::vector<Reading> AverageReadings(const std::vector<Reading>& readings, std::size_t segments) {
  std::vector<Reading> means(segments * 4);
  const double share = 4.0 * static_cast<double>(segments) / static_cast<double>(readings.size());
  for (std::size_t i = 0; i < readings.size(); ++i) {
    const std::size_t segment = i / 8 % segments, side = i / 4 % 2, face = i % 2;
    Reading& mean = means[4 * segment + 2 * side + face];
    const double sum = mean.stress + share * readings[i].stress;
    mean = readings[i];
    mean.stress = sum;
  }
  return means;
}

// N, My, Mz at the middle of the middle beam, about the centroid.
struct SectionForces {
  double N = 0.0, My = 0.0, Mz = 0.0;
};

void ExpectMiddleStresses(const ModelText& text, const TestSection& section,
                          const SectionForces& forces) {
  Model model;
  SolveModel(text, model);
  const SectionNumbers numbers = ComputeNumbers(section);
  const auto A = static_cast<double>(numbers.A);
  const double ky = forces.My / static_cast<double>(numbers.Iy);
  const double kz = -forces.Mz / static_cast<double>(numbers.Iz);
  for (const std::int32_t level : {0, 1}) {
    SCOPED_TRACE(level);
    model.BeamShellMeshLevel = level;
    GenerateBeamShells(model);
    const SectionOutline outline = BuildOutline(section, level);
    const std::vector<Reading> readings =
        AverageReadings(ReadMiddle(model.BeamShellModels[1],
                                   LocalAxes({section, text.nodes[1], text.nodes[2],
                                              text.beams[1].orientation, E, Mu, level}),
                                   outline),
                        outline.segments.size());
    double largest = 0.0;
    std::vector<double> expected;
    for (const Reading& r : readings) {
      const double y = r.y - static_cast<double>(numbers.ey);
      const double z = r.z - static_cast<double>(numbers.ez);
      expected.push_back(forces.N / A + ky * z + kz * y);
      largest = std::max(largest, std::fabs(expected.back()));
    }
    for (std::size_t i = 0; i < readings.size(); ++i) {
      const Reading& r = readings[i];
      const double contraction = Mu * Mu / (1 - Mu * Mu) * (ky * r.sz + kz * r.sy);
      EXPECT_NEAR(r.stress, expected[i] + contraction, EndStations * largest) << i;
    }
  }
}

// A beam oblique in space, clamped at one end, with all six load components at the other.
TEST_P(DetailStresses, Cantilever) {
  const Vector3 direction{2.0 / 3, -1.0 / 3, 2.0 / 3}, orientation{0.3, 0.2, 1.0};
  ModelText text = MakeLine(GetParam(), direction, orientation);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  const std::array<Vector3, 3> axes =
      LocalAxes({GetParam(), text.nodes[0], text.nodes[3], orientation, E, Mu, 0});
  const Vector3 F{2e4, 1e3, -3e3}, M{5e2, -2e3, 1e3};  // local
  const Vector3 force = Combine(axes, F), moment = Combine(axes, M);
  text.forces = {{3, {force[0], force[1], force[2], moment[0], moment[1], moment[2]}}};

  // Moments about the centroid at the middle, half the line's length away from the load.
  const SectionNumbers s = ComputeNumbers(GetParam());
  const Vector3 arm{1.5 * BeamSpan, -static_cast<double>(s.ey), -static_cast<double>(s.ez)};
  const Vector3 lever = Cross(arm, F);
  ExpectMiddleStresses(text, GetParam(), {F[0], M[1] + lever[1], M[2] + lever[2]});
}

// A simply supported beam along X, free to slide at one end. Its section is rotated about X.
ModelText MakeSimplySupported(const TestSection& section) {
  ModelText text = MakeLine(section, {1.0, 0.0, 0.0}, {0.5, 0.6, 0.8});
  text.restraints = {{0, {1, 1, 1, 1, 0, 0}}, {3, {0, 1, 1, 1, 0, 0}}};
  return text;
}

// Loads P at the third points: M = P x span / 3 between them, and no shear. Local z = (0, 0.6, 0.8)
// and y = z x X = (0, 0.8, -0.6).
TEST_P(DetailStresses, SimplySupportedWithLoadsAtTheThirdPoints) {
  ModelText text = MakeSimplySupported(GetParam());
  const double Py = 4e3, Pz = -6e3;  // local
  std::array<double, 6> load{};
  load[Fy] = 0.8 * Py + 0.6 * Pz;
  load[Fz] = -0.6 * Py + 0.8 * Pz;
  text.forces = {{1, load}, {2, load}};
  ExpectMiddleStresses(text, GetParam(), {0.0, Pz * BeamSpan, -Py * BeamSpan});
}

// A line load q along local z. The detail model gets the displacements of the beam's ends only:
// instead of q L^2 / 8 at mid-span its middle has the mean moment over the beam. That is less by
// q l^2 / 24, with the beam's length l = L / 3: less by 1/27.
TEST_P(DetailStresses, SimplySupportedWithAUniformLoad) {
  ModelText text = MakeSimplySupported(GetParam());
  const double q = 3e3, span = 3 * BeamSpan;
  for (int b = 0; b < 3; ++b) text.beamLoads.push_back({b, q, q});
  const double M = q * span * span / 8 * (1 - 1.0 / 27);
  ExpectMiddleStresses(text, GetParam(), {0.0, M, 0.0});
}

}  // namespace
}  // namespace korvex::test
