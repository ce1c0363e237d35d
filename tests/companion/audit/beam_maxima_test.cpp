// The largest stresses of beams, in their detail models: against brute force that finds mid-length
// by the places of the corners, not by their numbers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "audit/maxima.h"
#include "beamshell/generate_beam_shells.h"
#include "results/corner_stress.h"
#include "support/beam_sections.h"
#include "support/detail_peaks.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/solve_model.h"

namespace kvx::test {
namespace {

using korvex::BeamShellModel, korvex::Model, korvex::StressVector, korvex::Vector3;
using korvex::test::ModelText;

// A corner of a detail model's shell: its place along the beam, 0 to 1, and across it.
struct Corner {
  double along = 0.0;
  Vector3 across{};
  StressVector top{}, bottom{};
};

std::vector<Corner> CornersOf(const BeamShellModel& detail, std::size_t shell, bool averaged) {
  const Vector3 axis = korvex::Subtract(detail.EndPoint2, detail.EndPoint1);
  const double length2 = axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2];
  std::vector<Corner> corners(4);
  for (std::size_t k = 0; k < 4; ++k) {
    Corner& corner = corners[k];
    const auto node = static_cast<std::size_t>(detail.ShellNodes[4 * shell + k]);
    const Vector3 d = korvex::Subtract(detail.NodeCoords[node], detail.EndPoint1);
    corner.along = (d[0] * axis[0] + d[1] * axis[1] + d[2] * axis[2]) / length2;
    for (std::size_t i = 0; i < 3; ++i) corner.across[i] = d[i] - corner.along * axis[i];
    const auto& s = detail.Shells[shell];
    corner.top = averaged ? s.AvgStressTop[k] : s.NodeStressTop[k];
    corner.bottom = averaged ? s.AvgStressBottom[k] : s.NodeStressBottom[k];
  }
  return corners;
}

double LargerStress(const StressVector& top, const StressVector& bottom) {
  return std::max(korvex::EquivalentStress(top), korvex::EquivalentStress(bottom));
}

StressVector Mean(const StressVector& a, const StressVector& b) {
  StressVector mean{};
  for (std::size_t i = 0; i < 6; ++i) mean[i] = 0.5 * (a[i] + b[i]);
  return mean;
}

// As a part of the beam's length: far above rounding, far below a step or a plate.
constexpr double SamePlace = 1e-6;

// The largest von Mises stress at mid-length or everywhere.
double FindLargest(const BeamShellModel& detail, bool averaged, bool everywhere) {
  const double length = korvex::Length(korvex::Subtract(detail.EndPoint2, detail.EndPoint1));
  double atStation = 0.0, between = 0.0;
  bool hasStation = false;
  for (std::size_t shell = 0; shell < detail.Shells.size(); ++shell) {
    const auto corners = CornersOf(detail, shell, averaged);
    for (const Corner& a : corners) {
      if (everywhere || std::fabs(a.along - 0.5) < SamePlace) {
        hasStation = true;
        atStation = std::max(atStation, LargerStress(a.top, a.bottom));
      }
      for (const Corner& b : corners) {
        const bool isSamePoint =
            korvex::Length(korvex::Subtract(a.across, b.across)) < SamePlace * length;
        if (!isSamePoint || a.along > 0.5 || b.along < 0.5) continue;
        between = std::max(between, LargerStress(Mean(a.top, b.top), Mean(a.bottom, b.bottom)));
      }
    }
  }
  return hasStation ? atStation : between;
}

MaximaRequest BeamRequest(bool averaged, bool everywhere) {
  MaximaRequest request;
  request.quantities = {Quantity::BeamVonMises};
  request.slots = averaged ? StressSlots::Averaged : StressSlots::Recovered;
  request.beams = everywhere ? BeamPlace::Everywhere : BeamPlace::MidLength;
  request.count = 1000000;
  return request;
}

void FindBeamMaxima(const Model& model, const MaximaRequest& request,
                    const std::vector<std::int32_t>& parts, std::vector<PeakList>& lists) {
  const DetailPeaks details = TakeDetailPeaks(model, {request.slots, request.beams});
  FindMaxima(model, request, parts, details.offers, lists);
}

// Beams of one and of two steps, of odd and even numbers of steps, of all kinds of sections.
TEST(BeamMaxima, AreThoseOfBruteForce) {
  std::map<std::pair<int, bool>, int> seen;  // type of section, whether the steps are odd
  for (std::uint32_t seed = 1; seed <= 25; ++seed) {
    Model model;
    SolveModel(MakeGoodModel(seed), model);
    GenerateBeamShells(model);
    for (const bool averaged : {false, true}) {
      for (const bool everywhere : {false, true}) {
        std::vector<PeakList> lists;
        FindBeamMaxima(model, BeamRequest(averaged, everywhere), {}, lists);
        ASSERT_EQ(lists.size(), 1U);
        const auto& peaks = lists[0].peaks;
        ASSERT_EQ(peaks.size(), model.BeamElements.size());
        std::vector<double> expected;
        for (const auto& detail : model.BeamShellModels) {
          expected.push_back(FindLargest(detail, averaged, everywhere));
        }
        for (std::size_t i = 0; i < peaks.size(); ++i) {
          const Peak& peak = peaks[i];
          EXPECT_EQ(peak.holder, Holder::Beam);
          const auto beam = static_cast<std::size_t>(peak.element);
          EXPECT_NEAR(peak.value, expected[beam], 1e-12 * expected[beam]) << seed << ' ' << beam;
          EXPECT_GE(peaks[i == 0 ? 0 : i - 1].value, peak.value);
          ++seen[{model.Tables.BeamSectionRefs[beam].BeamSecType,
                  CountDetailSteps(model.BeamShellModels[beam]) % 2 == 1}];
        }
      }
    }
  }
  EXPECT_EQ(seen.size(), 6U);
  for (const auto& [kind, count] : seen) EXPECT_GT(count, 20) << kind.first << kind.second;
}

// The place is on the beam's cross-section at mid-length, and the shell and corner are those where
// the value stands.
TEST(BeamMaxima, HaveTheirPlaces) {
  for (std::uint32_t seed = 1; seed <= 10; ++seed) {
    Model model;
    SolveModel(MakeGoodModel(seed), model);
    GenerateBeamShells(model);
    std::vector<PeakList> lists;
    FindBeamMaxima(model, BeamRequest(true, false), {}, lists);
    for (const Peak& peak : lists[0].peaks) {
      const auto& detail = model.BeamShellModels[static_cast<std::size_t>(peak.element)];
      const Vector3 axis = korvex::Subtract(detail.EndPoint2, detail.EndPoint1);
      const Vector3 d = korvex::Subtract(peak.place, detail.EndPoint1);
      const double length = korvex::Length(axis);
      const double along = (d[0] * axis[0] + d[1] * axis[1] + d[2] * axis[2]) / length;
      EXPECT_NEAR(along, length / 2, 1e-9 * length);
      EXPECT_EQ(peak.node, -1);
      const bool averaged = true;
      const auto corners = CornersOf(detail, static_cast<std::size_t>(peak.detailShell), averaged);
      const Corner& corner = corners.at(static_cast<std::size_t>(peak.corner));
      // What is told of the shell around it.
      const auto& shell = detail.Shells[static_cast<std::size_t>(peak.detailShell)];
      EXPECT_EQ(peak.detailThickness, shell.TK);
      for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(peak.detailEdge[i], shell.Coordinates[9 + i] - shell.Coordinates[i]);
      }
      if (CountDetailSteps(detail) % 2 == 1) continue;
      const auto& face = peak.face == Face::Upper ? corner.top : corner.bottom;
      EXPECT_EQ(korvex::EquivalentStress(face), peak.value);
    }
  }
}

// By section: the beams of each type and row; by material and part likewise. Together they are all
// beams, each in the list of its group.
TEST(BeamMaxima, StandInTheListOfTheirGroup) {
  std::size_t sections = 0;
  for (std::uint32_t seed = 1; seed <= 10; ++seed) {
    Model model;
    SolveModel(MakeGoodModel(seed), model);
    GenerateBeamShells(model);
    const std::size_t shells = model.Shell4Elements.size() + model.Shell3Elements.size();
    std::vector<std::int32_t> parts(shells + model.BeamElements.size(), 99);
    for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
      parts[shells + b] = static_cast<std::int32_t>(b % 3) - 1;
    }
    MaximaRequest request = BeamRequest(true, false);
    request.groupings = {Grouping::Section, Grouping::Material, Grouping::Part,
                         Grouping::Thickness};
    std::vector<PeakList> lists;
    FindBeamMaxima(model, request, parts, lists);
    std::map<Grouping, std::size_t> beams;
    for (const PeakList& list : lists) {
      EXPECT_FALSE(list.peaks.empty());
      beams[list.grouping] += list.peaks.size();
      sections += list.grouping == Grouping::Section ? 1 : 0;
      for (const Peak& peak : list.peaks) {
        const auto b = static_cast<std::size_t>(peak.element);
        const auto& section = model.Tables.BeamSectionRefs[b];
        if (list.grouping == Grouping::Section) {
          EXPECT_EQ(list.sectionType, section.BeamSecType);
          EXPECT_EQ(list.group, section.BeamSecIndex);
        } else if (list.grouping == Grouping::Material) {
          EXPECT_EQ(list.group, model.Tables.BeamProperties[b].material);
        } else {
          EXPECT_EQ(list.group, parts[shells + b]);
        }
      }
    }
    EXPECT_EQ(beams.count(Grouping::Thickness), 0U);
    for (const auto& [grouping, count] : beams) EXPECT_EQ(count, model.BeamElements.size());
  }
  EXPECT_GT(sections, 10U);
}

// A cantilever of one T beam, whose detail model is whole.
Model SolveCantilever() {
  ModelText text;
  text.materials = {{2.06e5, 0.3, 0.0}};
  text.nodes = {{0.0, 0.0, 0.0}, {3000.0, 0.0, 0.0}};
  ModelText::Beam beam;
  korvex::test::UseSection({"T", korvex::BeamSecTypeT, {300, 10, 200, 12}, 0.0, false}, text, beam);
  text.beams = {beam};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{1, {1e5, 0.0, 0.0, 0.0, 0.0, 0.0}}};
  Model model;
  SolveModel(text, model);
  GenerateBeamShells(model);
  return model;
}

TEST(BeamMaxima, NameBeamsOfNan) {
  Model model = SolveCantilever();
  for (auto& shell : model.BeamShellModels[0].Shells) {
    for (auto& stress : shell.AvgStressTop) stress[0] = std::numeric_limits<double>::quiet_NaN();
  }
  std::vector<PeakList> lists;
  FindBeamMaxima(model, BeamRequest(true, false), {}, lists);
  EXPECT_EQ(lists[0].notFinite, 1);
  EXPECT_EQ(lists[0].peaks.at(0).face, Face::Lower);  // the other face is sound
}

TEST(BeamMaxima, StopWhereADetailModelIsMissingOrNotWhole) {
  const Model whole = SolveCantilever();
  // The widest plate is the uppermost of the web, 300/3 + 12/2 = 106 high: 3000/106, cut off.
  EXPECT_EQ(CountDetailSteps(whole.BeamShellModels[0]), 28);
  std::vector<PeakList> lists;
  const auto expect = [&lists](const Model& model, const char* text) {
    korvex::test::ExpectStop([&] { FindBeamMaxima(model, BeamRequest(true, false), {}, lists); },
                             text);
  };
  Model model = whole;
  model.BeamShellModels.clear();
  expect(model, "There are 0 detail models for 1 beams.");
  const char* notWhole = "The detail model of beam element 0 is not whole.";
  const auto spoil = [&](auto change) {
    model = whole;
    change(model.BeamShellModels[0]);
    EXPECT_EQ(CountDetailSteps(model.BeamShellModels[0]), 0);
    expect(model, notWhole);
  };
  spoil([](BeamShellModel& detail) { detail.Shells.clear(); });
  spoil([](BeamShellModel& detail) { detail.Shells.pop_back(); });
  spoil([](BeamShellModel& detail) { detail.ShellNodes.pop_back(); });
  spoil([](BeamShellModel& detail) { detail.ShellNodes.push_back(0); });
  spoil([](BeamShellModel& detail) { detail.NodeCoords.pop_back(); });
  spoil([](BeamShellModel& detail) { detail.NodeCoords.resize(8); });
  spoil([](BeamShellModel& detail) { detail.ProfileNodeCount = 0; });
  spoil([](BeamShellModel& detail) { detail.ProfileNodeCount = -6; });
  spoil([](BeamShellModel& detail) { detail.ShellNodes[3] = -1; });
  spoil([](BeamShellModel& detail) { detail.ShellNodes[3] = detail.NodeCount; });
  spoil([](BeamShellModel& detail) {
    detail.Shells.pop_back();
    detail.ShellNodes.resize(4 * detail.Shells.size());
  });
  // Without the question there is no answer to stop.
  MaximaRequest request;
  request.quantities = {Quantity::Ux};
  FindMaxima(model, request, {}, {}, lists);
  EXPECT_EQ(lists[0].peaks.size(), 2U);
}

}  // namespace
}  // namespace kvx::test
