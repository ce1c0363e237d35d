// K102 .. K105: beams without axes, planted and found; and the vector that is proposed.
#include <gtest/gtest.h>

#include <cmath>

#include "beam/beam_frame.h"
#include "support/planted_mistakes.h"
#include "support/repeats.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

Point AxisOf(ModelText& model, const ModelText::Beam& beam) {
  const Point a = PointOf(model, beam.node1), b = PointOf(model, beam.node2);
  return {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
}

TEST(CheckBeams, NamesABeamWithoutLength) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.empty()) return false;
    int row = 0;
    ModelText::Beam beam = AnyRow(model.beams, dice, row);
    const auto node = static_cast<int>(model.nodes.size());
    model.nodes.push_back(PointOf(model, beam.node2));
    beam.node1 = beam.node2;
    beam.node2 = node;
    expected = {"K102", "NELEM_B", static_cast<int>(model.beams.size()), node};
    model.beams.push_back(beam);
    return true;
  });
}

TEST(CheckBeams, NamesAZeroVector) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.empty()) return false;
    int row = 0;
    AnyRow(model.beams, dice, row).orientation = {0.0, 0.0, 0.0};
    expected = {"K103", "NELEM_B", row};
    return true;
  });
}

// Along axes that are oblique to the grid, in both senses and of any length, up to what rounding
// leaves of the parallel.
TEST(CheckBeams, NamesAVectorAlongTheAxis) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.empty()) return false;
    int row = 0;
    ModelText::Beam& beam = AnyRow(model.beams, dice, row);
    const Point axis = AxisOf(model, beam);
    const double scale = Roll(dice, -2.0, 2.0);
    for (std::size_t i = 0; i < 3; ++i) beam.orientation[i] = scale * axis[i];
    expected = {"K104", "NELEM_B", row};
    return true;
  });
}

// The orientation of any beam: along the axis but for an angle of this tangent. False: no beam.
bool TurnTowardsAxis(double tangent, ModelText& model, Dice& dice, int& row) {
  if (model.beams.empty()) return false;
  ModelText::Beam& beam = AnyRow(model.beams, dice, row);
  const Point d = AxisOf(model, beam), v = beam.orientation;
  const double L = std::hypot(d[0], d[1], d[2]);
  // across: the part of v across the axis
  const double along = (v[0] * d[0] + v[1] * d[1] + v[2] * d[2]) / (L * L);
  const Point across{v[0] - along * d[0], v[1] - along * d[1], v[2] - along * d[2]};
  const double a = std::hypot(across[0], across[1], across[2]);
  for (std::size_t i = 0; i < 3; ++i) {
    beam.orientation[i] = d[i] / L + tangent * across[i] / a;
  }
  return true;
}

// 1e-3 is the bound of the sine.
TEST(CheckBeams, NamesAVectorNearlyAlongTheAxis) {
  for (const double tangent : {1e-5, 9e-4}) {
    ExpectPlanted(
        [&](ModelText& model, Dice& dice, Expected& expected) {
          int row = 0;
          if (!TurnTowardsAxis(tangent, model, dice, row)) return false;
          expected = {"K105", "NELEM_B", row};
          return true;
        },
        20);
  }
}

TEST(CheckBeams, IsSilentJustBeyondThatAngle) {
  int turned = 0;
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(60); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed);
    int row = 0;
    if (!TurnTowardsAxis(1.1e-3, model, dice, row)) continue;
    ++turned;
    ExpectNone(Check(korvex::test::WriteModel(model)));
  }
  EXPECT_GT(turned, 0);
}

ModelText BeamAlong(const Point& axis) {
  ModelText model;
  model.materials = {{206000.0, 0.3, 0.0}};
  model.tSections = {{100.0, 8.0, 60.0, 10.0}};
  model.nodes = {{1500, 600, 0}, {1500 + axis[0], 600 + axis[1], axis[2]}};
  model.beams.resize(1);
  model.beams[0].orientation = axis;
  model.restraints.resize(1);
  model.forces = {{1, korvex::test::SingleLoad(0, 1000.0)}};
  return model;
}

TEST(CheckBeams, ProposesAGlobalAxis) {
  const auto remedy = [](const Point& axis) {
    const CheckReport report = Check(BeamAlong(axis));
    for (const Finding& finding : report.findings.findings) {
      if (finding.code == "K104") return finding.remedy;
    }
    return std::string();
  };
  EXPECT_EQ(remedy({0, 600, 0}), "Use <0,0,1>.");
  EXPECT_EQ(remedy({600, 600, 0}), "Use <0,0,1>.");
  EXPECT_EQ(remedy({0, 0, 600}), "Use <1,0,0>.");
  EXPECT_EQ(remedy({100, 0, 600}), "Use <0,1,0>.");  // y is square to it, x is not
  EXPECT_EQ(remedy({500, 0, 600}), "Use <0,0,1>.");  // 40 degrees from z
}

TEST(CheckBeams, SaysWhatIsWrong) {
  const CheckReport report = Check(BeamAlong({0, 600, 0}));
  ASSERT_FALSE(report.findings.findings.empty());
  EXPECT_EQ(report.findings.findings.front().message,
            "beam 0 at (1500, 600, 0) .. (1500, 1200, 0): orientation vector <0,600,0> is parallel "
            "to its axis; all displacements would be NaN.");
}

// The web's direction as the solver takes it.
Point WebOf(const ModelText& model) {
  korvex::BeamElement beam;
  beam.NodeI = model.nodes[0];
  beam.NodeJ = model.nodes[1];
  for (std::size_t i = 0; i < 3; ++i) {
    beam.RefPoint[i] = beam.NodeI[i] + model.beams[0].orientation[i];
  }
  korvex::BeamFrame frame;
  korvex::ComputeBeamFrame(beam, frame);
  return {frame[6], frame[7], frame[8]};
}

// A short vector along the axis is no longer exactly along it beside the coordinates.
TEST(CheckBeams, NamesAShortVectorAlongTheAxis) {
  for (const double scale : {1e-6, 1e-8, -1e-9}) {
    ModelText model = BeamAlong({301, 607, 10});
    for (double& component : model.beams[0].orientation) component *= scale;
    ExpectOnly(Check(model), {"K104", "NELEM_B", 0});
  }
}

// The solver adds the vector to node 1 and takes node 1 off again: beside 1500 a vector of 1e-14
// has no digits left, and is named although it stands square to the axis.
TEST(CheckBeams, NamesAVectorLostBesideTheCoordinates) {
  ModelText model = BeamAlong({0, 600, 0});
  model.beams[0].orientation = {1e-14, 0, 0};
  const CheckReport report = Check(model);
  ExpectOnly(report, {"K103", "NELEM_B", 0});
  EXPECT_EQ(report.findings.findings.front().message,
            "beam 0 at (1500, 600, 0) .. (1500, 1200, 0): orientation vector <1e-14,0,0> is so "
            "short that its digits are lost beside the coordinates; all displacements would be "
            "NaN.");
  EXPECT_TRUE(std::isnan(WebOf(model)[0]));
}

// Half a unit in the last place of 1500 is 1.14e-13: x is lost, beside z = 0 nothing is.
TEST(CheckBeams, NamesAVectorLostInPart) {
  ModelText model = BeamAlong({0, 600, 0});
  model.beams[0].orientation = {1e-13, 0, 2e-13};
  const CheckReport report = Check(model);
  ExpectOnly(report, {"K103", "NELEM_B", 0});
  EXPECT_EQ(report.findings.findings.front().message,
            "beam 0 at (1500, 600, 0) .. (1500, 1200, 0): orientation vector <1e-13,0,2e-13> is "
            "so short that its digits are lost beside the coordinates; the solver would take "
            "<0,0,2e-13> instead.");
  EXPECT_EQ(WebOf(model), (Point{0, 0, 1}));
}

// Short vectors whose direction is left as it is.
TEST(CheckBeams, LeavesShortVectorsThatKeepTheirDirection) {
  for (const Point& v : {Point{0, 0, 1e-13}, Point{0, 0, 1e-14}, Point{1e-9, 0, 2e-9}}) {
    for (const double z : {0.0, 37.0}) {
      ModelText model = BeamAlong({0, 600, 0});
      model.nodes[0][2] = model.nodes[1][2] = z;
      model.beams[0].orientation = v;
      ExpectNone(Check(model));
      const double length = std::hypot(v[0], v[2]);
      EXPECT_NEAR(WebOf(model)[0], v[0] / length, 1e-3);  // the digits that 1e-9 has beside 1500
      EXPECT_NEAR(WebOf(model)[2], v[2] / length, 1e-3);
    }
  }
}

}  // namespace
}  // namespace kvx::test
