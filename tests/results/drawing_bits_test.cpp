// The last bits of the drawing's scale: largest extent / largest translation, and that x 0.05.
#include <gtest/gtest.h>

#include "results/line_drawing.h"
#include "support/dof_names.h"

namespace korvex {
namespace {

TEST(DrawingBits, ScaleIsTheQuotientTimesTheShare) {
  const double extent = 14.8, translation = 0.0179;
  Model model;
  model.Tables.NPOIN = 2;
  model.Tables.Nodes = {{0, 0, 0}, {extent, 2.5, -1.25}};
  model.Displacements.assign(12, 0.0);
  model.Displacements[test::Equation(1, test::Uz)] = -translation;
  const double expected = extent / translation * 0.05;
  EXPECT_EQ(ComputeDrawingScale(model), expected);
  EXPECT_NE(extent * 0.05 / translation, expected);
  EXPECT_NE(extent * (0.05 / translation), expected);
  EXPECT_NE(extent / (translation * 20.0), expected);
}

}  // namespace
}  // namespace korvex
