// The strain of an element that moves, of each kind, and which elements are looked at.
#include "mechanism/mode_strain.h"

#include <gtest/gtest.h>

#include "model/read_input_file.h"
#include "support/model_text.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::test::ModelText;

constexpr double Limit = 1e-10;

// A quadrilateral (nodes 0 to 3), a triangle (4 to 6) and a beam (7, 8) that do not touch.
struct ModeStrain : testing::Test {
  Model model;
  std::vector<double> v;

  ModeStrain() {
    ModelText text;
    text.materials = {{2e5, 0.3, 0.0}};
    text.thicknesses = {10.0};
    text.cSections = {{50.0, 5.0}};
    text.nodes = {{0, 0, 0},    {100, 0, 0},   {100, 80, 0}, {0, 80, 0},  {300, 0, 0},
                  {400, 0, 50}, {300, 90, 10}, {600, 0, 0},  {700, 0, 20}};
    text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
    text.shells3 = {{{4, 5, 6}, 0, 0}};
    ModelText::Beam beam;
    beam.node1 = 7;
    beam.node2 = 8;
    beam.orientation = {0.0, 1.0, 0.0};
    beam.BeamSecType = korvex::BeamSecTypeC;
    text.beams = {beam};
    korvex::ReadInputText(korvex::test::WriteModel(text), model);
    v.assign(text.nodes.size() * 6, 0.0);
  }
  void Move(int first, int last, double x) {
    for (int node = first; node <= last; ++node) v[static_cast<std::size_t>(node) * 6] = x;
  }
  [[nodiscard]] bool IsStrainedHere() const { return IsStrained(model, v, Limit); }
};

TEST_F(ModeStrain, IsNoneOfRigidMotions) {
  EXPECT_FALSE(IsStrainedHere());  // nothing moves
  Move(0, 3, 1.0);
  Move(4, 6, -0.5);
  Move(7, 8, 2.0);
  EXPECT_FALSE(IsStrainedHere());
}

// One node does not go with the others.
TEST_F(ModeStrain, IsThatOfEachKindOfElement) {
  for (const int node : {1, 5, 8}) {
    SCOPED_TRACE(node);
    Move(0, 3, 1.0);
    Move(4, 6, 1.0);
    Move(7, 8, 1.0);
    Move(node, node, 0.5);
    EXPECT_TRUE(IsStrainedHere());
  }
}

// What moves a thousandth of the largest motion may be roundings.
TEST_F(ModeStrain, LooksAtWhatMovesFarAlone) {
  for (const int node : {0, 4, 7}) {
    SCOPED_TRACE(node);
    v.assign(v.size(), 0.0);
    if (node == 7) {
      Move(0, 3, 1.0);
    } else {
      Move(7, 8, 1.0);
    }
    Move(node, node, 0.9e-3);
    EXPECT_FALSE(IsStrainedHere());
    Move(node, node, 1.1e-3);
    EXPECT_TRUE(IsStrainedHere());
  }
}

// A turn of 0.01 at one end moves it by that times the length of 102.
TEST_F(ModeStrain, TurnsCountByTheSizeOfTheElement) {
  Move(0, 3, 1000.0);
  v[7 * 6 + 4] = 0.009;
  EXPECT_FALSE(IsStrainedHere());
  v[7 * 6 + 4] = 0.011;
  EXPECT_TRUE(IsStrainedHere());
}

}  // namespace
}  // namespace kvx::test
