// Where the checks have no error, the solver has numbers: on good models with random values spoilt,
// every element matrix, load, stress and detail model is finite, and no reference stops the run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "beamshell/generate_beam_shells.h"
#include "model/read_input_file.h"
#include "report/stop.h"
#include "results/shell_stresses.h"
#include "support/expect_findings.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "system/assemble_stiffness.h"
#include "system/load_vector.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

std::size_t RollIndex(std::size_t count, Dice& dice) {
  return static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(count) - 1));
}

double Spoil(double value, Dice& dice) {
  const double sign = RollYes(dice) ? 1.0 : -1.0;
  switch (RollInteger(dice, 0, 11)) {
    case 0:
    case 1:
      return 0.0;
    case 2:
      return -value;
    case 3:
      return sign * 1e30;
    case 4:
      return sign * 1e-30;
    case 5:
      return std::numeric_limits<double>::quiet_NaN();
    case 6:
      return sign * std::numeric_limits<double>::infinity();
    case 7:
      return sign * 1.0;
    case 8:
      return value * 1e-9;
    case 9:
      return value * 1e9;
    case 10:
      return value * std::pow(10.0, RollInteger(dice, -18, 18));
    default:
      return sign * std::pow(10.0, RollInteger(dice, -320, 308));
  }
}

template <std::size_t Count>
void SpoilOne(std::array<double, Count>& values, Dice& dice) {
  double& value = values[RollIndex(Count, dice)];
  value = RollYes(dice, 0.2) ? values[RollIndex(Count, dice)] : Spoil(value, dice);
}

void SpoilReference(int& reference, Dice& dice) {
  constexpr std::array<int, 6> Values{-1, 0, 1, 2, 3, 1000000};
  reference =
      RollYes(dice) ? Values[RollIndex(Values.size(), dice)] : reference + RollInteger(dice, -2, 2);
}

template <typename Shells>
void SpoilShell(Shells& shells, Dice& dice) {
  if (shells.empty()) return;
  auto& shell = shells[RollIndex(shells.size(), dice)];
  auto& nodes = shell.nodes;
  switch (RollInteger(dice, 0, 4)) {
    case 0:
    case 1:
      std::swap(nodes[RollIndex(nodes.size(), dice)], nodes[RollIndex(nodes.size(), dice)]);
      break;
    case 2:
      nodes[RollIndex(nodes.size(), dice)] = nodes[RollIndex(nodes.size(), dice)];
      break;
    case 3:
      SpoilReference(nodes[RollIndex(nodes.size(), dice)], dice);
      break;
    default:
      SpoilReference(RollYes(dice) ? shell.material : shell.thickness, dice);
  }
}

void SpoilBeam(ModelText& model, Dice& dice) {
  if (model.beams.empty()) return;
  ModelText::Beam& beam = model.beams[RollIndex(model.beams.size(), dice)];
  const auto nodeOf = [&](int node) { return model.nodes.at(static_cast<std::size_t>(node)); };
  const int last = static_cast<int>(model.nodes.size()) - 1;
  switch (RollInteger(dice, 0, 7)) {
    case 0:
      beam.node2 = beam.node1;
      break;
    case 1:
      SpoilReference(RollYes(dice) ? beam.node1 : beam.node2, dice);
      break;
    case 2:
      SpoilReference(RollYes(dice) ? beam.BeamSecType : beam.BeamSecIndex, dice);
      break;
    case 3:
      SpoilReference(beam.material, dice);
      break;
    case 4:
      beam.BeamSecOz = Spoil(beam.BeamSecOz == 0.0 ? 1.0 : beam.BeamSecOz, dice);
      break;
    case 5:
      if (beam.node1 < 0 || beam.node2 < 0 || beam.node1 > last || beam.node2 > last) break;
      for (std::size_t i = 0; i < 3; ++i) {  // along the axis, or nearly
        beam.orientation[i] = 0.37 * (nodeOf(beam.node2)[i] - nodeOf(beam.node1)[i]);
      }
      if (RollYes(dice)) beam.orientation[0] *= 1.0 + std::pow(10.0, RollInteger(dice, -16, -1));
      break;
    default:
      SpoilOne(beam.orientation, dice);
  }
}

// Changes the places of nodes: one of them onto another, onto the line of two, or one coordinate.
void SpoilNode(ModelText& model, Dice& dice) {
  std::array<double, 3>& node = model.nodes[RollIndex(model.nodes.size(), dice)];
  const std::array<double, 3>& a = model.nodes[RollIndex(model.nodes.size(), dice)];
  const std::array<double, 3>& b = model.nodes[RollIndex(model.nodes.size(), dice)];
  const double s = Roll(dice, -0.5, 1.5);
  switch (RollInteger(dice, 0, 4)) {
    case 0:
      node = a;
      break;
    case 1:
      for (std::size_t i = 0; i < 3; ++i) node[i] = a[i] + s * (b[i] - a[i]);
      break;
    case 2:  // nearly onto another
      for (std::size_t i = 0; i < 3; ++i) {
        node[i] = a[i] + std::pow(10.0, RollInteger(dice, -16, 0)) * (b[i] - a[i]);
      }
      break;
    default:
      SpoilOne(node, dice);
  }
}

void SpoilModel(ModelText& model, Dice& dice) {
  switch (RollInteger(dice, 0, 10)) {
    case 0:
      return SpoilOne(model.materials[RollIndex(model.materials.size(), dice)], dice);
    case 1: {
      double& thickness = model.thicknesses[RollIndex(model.thicknesses.size(), dice)];
      thickness = Spoil(thickness, dice);
      return;
    }
    case 2:
      return SpoilOne(model.tSections[RollIndex(model.tSections.size(), dice)], dice);
    case 3:
      return SpoilOne(model.lSections[RollIndex(model.lSections.size(), dice)], dice);
    case 4:
      return SpoilOne(model.cSections[RollIndex(model.cSections.size(), dice)], dice);
    case 5:
    case 6:
      return SpoilNode(model, dice);
    case 7:
      return SpoilShell(model.shells4, dice);
    case 8:
      return SpoilShell(model.shells3, dice);
    case 9:
      if (!model.forces.empty()) SpoilOne(model.forces.front().components, dice);
      if (!model.shell4Loads.empty()) SpoilOne(model.shell4Loads.front().q, dice);
      return;
    default:
      return SpoilBeam(model, dice);
  }
}

template <typename Values>
bool AreFinite(const Values& values) {
  return std::all_of(values.begin(), values.end(), [](double x) { return std::isfinite(x); });
}

template <typename Elements>
void ExpectFiniteStresses(const Elements& elements, const char* what) {
  for (std::size_t e = 0; e < elements.size(); ++e) {
    for (const auto& corner : elements[e].NodeStressTop) {
      ASSERT_TRUE(AreFinite(corner)) << what << ' ' << e;
    }
    for (const auto& corner : elements[e].NodeStressBottom) {
      ASSERT_TRUE(AreFinite(corner)) << what << ' ' << e;
    }
  }
}

// A detail model has length / longest edge of the outline steps; those of very slender beams are
// left out: they take long, and are like others.
bool HasLongDetails(const korvex::Model& model) {
  return std::any_of(model.BeamElements.begin(), model.BeamElements.end(),
                     [](const korvex::BeamElement& beam) {
                       const korvex::SectionProperties& s = beam.Section;
                       const double L = std::sqrt(std::pow(beam.NodeJ[0] - beam.NodeI[0], 2) +
                                                  std::pow(beam.NodeJ[1] - beam.NodeI[1], 2) +
                                                  std::pow(beam.NodeJ[2] - beam.NodeI[2], 2));
                       return L > 30.0 * std::max(s.CzTop + s.CzBottom, s.CyPos + s.CyNeg);
                     });
}

void ExpectFinite(const std::string& text) {
  korvex::Model model;
  korvex::ReadInputText(text, model);
  model.NEQ = model.Tables.NPOIN * korvex::DofsPerNode;
  std::size_t count = 0;
  korvex::FormElementMatrices(model, [&](const double* ke, const std::int32_t*, std::int32_t n) {
    EXPECT_TRUE(std::all_of(ke, ke + static_cast<std::ptrdiff_t>(n) * n,
                            [](double k) { return std::isfinite(k); }))
        << "element " << count;
    ++count;
  });
  korvex::AssembleLoadVector(model);
  EXPECT_TRUE(AreFinite(model.LoadVector));
  if (::testing::Test::HasFailure()) return;
  // Any displacements will do for the stresses: these are not of one sign, and of a usual size.
  for (std::size_t i = 0; i < model.Displacements.size(); ++i) {
    model.Displacements[i] = 1e-3 * std::sin(static_cast<double>(i));
  }
  korvex::RecoverShellStresses(model);
  ExpectFiniteStresses(model.Shell4Elements, "four-node shell");
  ExpectFiniteStresses(model.Shell3Elements, "three-node shell");
  if (HasLongDetails(model)) return;
  korvex::GenerateBeamShells(model);
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    EXPECT_TRUE(AreFinite(model.BeamShellModels[b].Displacements)) << "detail model " << b;
    ExpectFiniteStresses(model.BeamShellModels[b].Shells, "shell of a detail model");
  }
}

TEST(SolverAgreement, HasNumbersWhereTheChecksHaveNoError) {
  int clean = 0, spoilt = 0;
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(2000); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed % 400);
    Dice dice = MakeDice(seed + 1000000);
    for (int k = RollInteger(dice, 1, 3); k > 0; --k) SpoilModel(model, dice);
    const std::string text = korvex::test::WriteModel(model);
    const CheckReport report = Check(text);
    if (CountFindings(report.findings, Severity::Error) > 0) {
      ++spoilt;
      continue;
    }
    ++clean;
    try {
      ExpectFinite(text);
    } catch (const korvex::Stop& stop) {
      ADD_FAILURE() << stop.text;
    }
    if (HasFailure()) {
      ADD_FAILURE() << ListFindings(report);
      return;
    }
  }
  // Both kinds are many: neither are the checks blind, nor is everything called wrong.
  EXPECT_GT(clean, static_cast<int>(korvex::test::Repeats(500)));
  EXPECT_GT(spoilt, static_cast<int>(korvex::test::Repeats(500)));
}

}  // namespace
}  // namespace kvx::test
