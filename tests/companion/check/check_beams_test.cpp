// K102 .. K105: beams without axes, planted and found; and the vector that is proposed.
#include <gtest/gtest.h>

#include <cmath>

#include "beam/beam_frame.h"
#include "support/planted_mistakes.h"

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

// 1e-3 is the bound of the sine: 1.1e-3 is silent.
TEST(CheckBeams, NamesAVectorNearlyAlongTheAxis) {
  for (const double tangent : {1e-5, 9e-4, 1.1e-3}) {
    ExpectPlanted(
        [&](ModelText& model, Dice& dice, Expected& expected) {
          if (model.beams.empty()) return false;
          int row = 0;
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
          if (tangent > 1e-3) {
            ExpectNone(Check(model));
            return false;
          }
          expected = {"K105", "NELEM_B", row};
          return true;
        },
        tangent > 1e-3 ? 0 : 20);
  }
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

// The solver adds the vector to node 1 and takes node 1 off again: a vector of 1e-9 beside 1500 has
// no digits left, and is named although it stands square to the axis.
TEST(CheckBeams, NamesAVectorLostBesideTheCoordinates) {
  ModelText model = BeamAlong({0, 600, 0});
  model.beams[0].orientation = {1e-14, 0, 0};
  ExpectOnly(Check(model), {"K103", "NELEM_B", 0});
  korvex::BeamElement beam;
  beam.NodeI = {1500, 600, 0};
  beam.NodeJ = {1500, 1200, 0};
  beam.RefPoint = {1500 + 1e-14, 600, 0};
  korvex::BeamFrame frame;
  korvex::ComputeBeamFrame(beam, frame);
  EXPECT_TRUE(std::isnan(frame[3]));
}

}  // namespace
}  // namespace kvx::test
