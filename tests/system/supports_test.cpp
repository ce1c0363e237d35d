// Supports: the penalty on the diagonal, all other entries unchanged, and which flags fix a dof.
#include "system/supports.h"

#include <gtest/gtest.h>

#include "support/expect_stop.h"

namespace korvex {
namespace {

// One node with full columns: all stored stiffnesses are 7, all loads 9.
Model MakeModel() {
  Model model;
  model.Tables.NPOIN = 1;
  model.NEQ = 6;
  SkylineMatrix& K = model.Stiffness;
  K.ColumnHeights = {1, 2, 3, 4, 5, 6};
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  K.Values.assign(K.Values.size(), 7.0);
  model.LoadVector.assign(6, 9.0);
  return model;
}

void AddRestraint(Model& model, const NodalRestraint& restraint) {
  model.Tables.NodalRestraints.push_back(restraint);
  ++model.Tables.NRN;
}

// Returns the diagonal of the six columns and checks that nothing else has changed.
std::vector<double> Diagonal(const Model& model) {
  std::vector<double> diagonal;
  MatrixValues rest = model.Stiffness.Values;
  for (const std::int64_t address : model.Stiffness.DiagonalAddress) {
    diagonal.push_back(rest[static_cast<std::size_t>(address)]);
    rest[static_cast<std::size_t>(address)] = 7.0;
  }
  EXPECT_EQ(rest, MatrixValues(21, 7.0));
  EXPECT_EQ(model.LoadVector, std::vector<double>(6, 9.0));
  return diagonal;
}

TEST(Supports, PenaltyReplacesTheDiagonalAlone) {
  Model model = MakeModel();
  AddRestraint(model, {{1, 0, 0, 1, 0, 1}, 0});
  ImposeSupports(model);
  EXPECT_EQ(Diagonal(model), (std::vector<double>{1e20, 7, 7, 1e20, 7, 1e20}));
}

TEST(Supports, OnlyTheValueOneFixes) {
  Model model = MakeModel();
  AddRestraint(model, {{2, -1, 0, 10, 257, 1}, 0});
  ImposeSupports(model);
  EXPECT_EQ(Diagonal(model), (std::vector<double>{7, 7, 7, 7, 7, 1e20}));
}

TEST(Supports, LaterRowsDoNotRelease) {
  Model model = MakeModel();
  AddRestraint(model, {{1, 1, 0, 0, 0, 0}, 0});
  AddRestraint(model, {{1, 0, 0, 0, 0, 0}, 0});
  ImposeSupports(model);
  EXPECT_EQ(Diagonal(model), (std::vector<double>{1e20, 1e20, 7, 7, 7, 7}));
}

TEST(Supports, WithoutRestraintsNothingHappens) {
  Model model = MakeModel();
  ImposeSupports(model);
  EXPECT_EQ(Diagonal(model), std::vector<double>(6, 7.0));
}

TEST(Supports, FixingAMissingNodeStops) {
  Model model = MakeModel();
  AddRestraint(model, {{0, 0, 1, 0, 0, 0}, 5});
  test::ExpectStop([&] { ImposeSupports(model); },
                   "Restraint 0 refers to node 5; there are 1 nodal points.");
}

// The node of a row that fixes nothing is never used.
TEST(Supports, RestraintWithoutAFixedDofIsNotLookedAt) {
  Model model = MakeModel();
  AddRestraint(model, {{0, 2, 0, 0, 0, 0}, 5});
  ImposeSupports(model);
  EXPECT_EQ(Diagonal(model), std::vector<double>(6, 7.0));
}

}  // namespace
}  // namespace korvex
