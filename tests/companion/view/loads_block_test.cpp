// The block of loads: sums of the rows of each node and element, prescribed displacements apart.
#include "view/loads_block.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "support/good_models.h"
#include "support/page_columns.h"
#include "support/whole_results.h"

namespace kvx::test {
namespace {

using korvex::ModelTables;
using Integers = std::vector<std::int32_t>;
using Doubles = std::vector<double>;

PageBlock MakeBlock(const ModelTables& tables) {
  CaseLoads loads;
  CollectLoads(tables, loads);
  PageBlock block;
  AddLoads(loads, block);
  return block;
}

// Four nodes of a square of 1000, with a diagonal of 1414; node 2 is held but for rz.
ModelTables MakeSquare() {
  ModelTables tables;
  tables.Nodes = {{0, 0, 0}, {1000, 0, 0}, {1000, 1000, 0}, {0, 1000, 0}};
  tables.NodalRestraints = {{{1, 1, 1, 1, 1, 0}, 2}};
  return tables;
}

TEST(LoadsBlock, ForcesOnANodeAreOneLoad) {
  ModelTables tables = MakeSquare();
  tables.NodalForces = {
      {3, {1, 2, 3, 4, 5, 6}}, {0, {0, 0, -7.5, 0, 0, 0}}, {3, {10, 0, 0, 0, 0, 0.25}}};
  const PageBlock block = MakeBlock(tables);
  EXPECT_EQ(ReadIntegers(block, "forceNodes"), (Integers{0, 3}));
  EXPECT_EQ(ReadDecimals(block, "forces"), (Doubles{0, 0, -7.5, 0, 0, 0, 11, 2, 3, 4, 5, 6.25}));
  EXPECT_TRUE(ReadIntegers(block, "prescribedNodes").empty());
}

// 1e20 u on a held dof prescribes u: 2.5 along y in two rows, 0.01 about x. The force of 4e20 along
// the free rz, and 100 along the held x, are loads.
TEST(LoadsBlock, PrescribedDisplacementsAreNoForces) {
  ModelTables tables = MakeSquare();
  tables.NodalForces = {{2, {100, 2e20, 0, 1e18, 0, 4e20}}, {2, {0, 0.5e20, 0, 0, 0, 0}}};
  const PageBlock block = MakeBlock(tables);
  EXPECT_EQ(ReadIntegers(block, "forceNodes"), (Integers{2}));
  const Doubles forces = ReadDecimals(block, "forces");
  ASSERT_EQ(forces.size(), 6U);
  EXPECT_EQ(Doubles(forces.begin(), forces.begin() + 5), (Doubles{100, 0, 0, 0, 0}));
  EXPECT_EQ(ShowNumber(forces[5]), "4e+20");
  EXPECT_EQ(ReadIntegers(block, "prescribedNodes"), (Integers{2, 2}));
  EXPECT_EQ(ReadIntegers(block, "prescribedDofs"), (Integers{1, 3}));
  const Doubles values = ReadDecimals(block, "prescribedValues");
  ASSERT_EQ(values.size(), 2U);
  EXPECT_EQ(ShowNumber(values[0]), "2.5");
  EXPECT_EQ(ShowNumber(values[1]), "0.01");
}

// The same force on a dof that is not held is a load, and a flag of 2 does not hold.
TEST(LoadsBlock, LargeForcesOnFreeNodesAreLoads) {
  ModelTables tables = MakeSquare();
  tables.NodalRestraints[0].fixed[1] = 2;
  tables.NodalForces = {{1, {2e20, 0, 0, 0, 0, 0}}, {2, {0, 2e20, 0, 0, 0, 0}}};
  const PageBlock block = MakeBlock(tables);
  EXPECT_EQ(ReadIntegers(block, "forceNodes"), (Integers{1, 2}));
  EXPECT_TRUE(ReadIntegers(block, "prescribedNodes").empty());
}

// The smallest displacement that counts is 1e-9 of the diagonal, 1.41e-6, and the smallest rotation
// 1e-6: 1.2e14 prescribes a rotation, and no displacement.
TEST(LoadsBlock, RotationsHaveALimitOfTheirOwn) {
  ModelTables tables = MakeSquare();
  tables.NodalForces = {{2, {0, 1.2e14, 0, 0, 1.2e14, 0}}};
  const PageBlock block = MakeBlock(tables);
  EXPECT_EQ(ReadIntegers(block, "prescribedDofs"), (Integers{4}));
  const Doubles forces = ReadDecimals(block, "forces");
  ASSERT_EQ(forces.size(), 6U);
  EXPECT_EQ(ShowNumber(forces[1]), "1.2e+14");
  EXPECT_EQ(forces[4], 0.0);
}

TEST(LoadsBlock, PressuresAndLineLoadsOfAnElementAreOneLoad) {
  ModelTables tables = MakeSquare();
  tables.Shell4Properties.resize(3);
  tables.Shell3Properties.resize(6);
  tables.BeamProperties.resize(4);
  tables.Shell4SurfaceLoads = {{2, {1, 2, 3}}, {0, {0.5, 0.5, 0.5}}, {2, {1, 1, 1}}};
  tables.Shell3SurfaceLoads = {{5, {-4, -5, -6}}};
  tables.BeamLineLoads = {{3, {-10, -20}}, {3, {1, 2}}, {1, {0, 7}}};
  const PageBlock block = MakeBlock(tables);
  EXPECT_EQ(ReadIntegers(block, "shellLoads"), (Integers{0, 2}));
  EXPECT_EQ(ReadDecimals(block, "shellPressures"), (Doubles{0.5, 0.5, 0.5, 2, 3, 4}));
  EXPECT_EQ(ReadIntegers(block, "triangleLoads"), (Integers{5}));
  EXPECT_EQ(ReadDecimals(block, "trianglePressures"), (Doubles{-4, -5, -6}));
  EXPECT_EQ(ReadIntegers(block, "beamLoads"), (Integers{1, 3}));
  EXPECT_EQ(ReadDecimals(block, "lineLoads"), (Doubles{0, 7, -9, -18}));
}

// Nothing is drawn of zeros; rows that lead nowhere are no reason not to show the rest.
TEST(LoadsBlock, ZerosAndWrongReferencesAreLeftOut) {
  ModelTables tables = MakeSquare();
  tables.Shell4Properties.resize(1);
  tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, 4});
  tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, -1});
  tables.NodalForces = {{0, {}},
                        {1, {5, 0, 0, 0, 0, 0}},
                        {1, {-5, 0, 0, 0, 0, 0}},
                        {4, {1, 0, 0, 0, 0, 0}},
                        {-1, {1, 0, 0, 0, 0, 0}}};
  tables.Shell4SurfaceLoads = {{0, {}}, {1, {1, 1, 1}}, {-1, {1, 1, 1}}};
  tables.BeamLineLoads = {{0, {1, 1}}};
  const PageBlock block = MakeBlock(tables);
  for (const char* name : {"forceNodes", "prescribedNodes", "shellLoads", "beamLoads"}) {
    EXPECT_TRUE(HasColumn(block, name)) << name;
    EXPECT_TRUE(ReadIntegers(block, name).empty()) << name;
  }
}

TEST(LoadsBlock, NumbersThatAreNoneStayLoads) {
  ModelTables tables = MakeSquare();
  tables.NodalForces = {{0, {std::nan(""), 0, 0, 0, 0, 0}}, {1, {0, INFINITY, 0, 0, 0, 0}}};
  const PageBlock block = MakeBlock(tables);
  EXPECT_EQ(ReadIntegers(block, "forceNodes"), (Integers{0, 1}));
  EXPECT_TRUE(std::isnan(ReadDecimals(block, "forces")[0]));
  EXPECT_EQ(ReadDecimals(block, "forces")[7], INFINITY);
}

// Forces and prescribed displacements are those that the solution was made with.
TEST(LoadsBlock, AgreesWithTheSolvedModels) {
  for (const NamedModel& model : ListSolvedModels()) {
    const PageBlock block = MakeBlock(model.solved.model.Tables);
    std::map<std::pair<std::int32_t, std::int32_t>, double> prescribed;
    for (const PrescribedMotion& dof : model.solved.prescribed) {
      prescribed[{dof.node, dof.dof}] += dof.value;
    }
    const Integers nodes = ReadIntegers(block, "prescribedNodes");
    EXPECT_EQ(nodes.size(), prescribed.size()) << model.name;
    // The sum of all forces: of each component, whatever the node.
    std::array<double, 6> expected{}, found{};
    for (const korvex::NodalForce& force : model.solved.model.Tables.NodalForces) {
      for (std::size_t d = 0; d < 6; ++d) expected[d] += force.components[d];
    }
    for (const PrescribedMotion& dof : model.solved.prescribed) {
      expected[static_cast<std::size_t>(dof.dof)] -= dof.value * 1e20;
    }
    const Doubles forces = ReadDecimals(block, "forces");
    double largest = 0.0;
    for (std::size_t i = 0; i < forces.size(); ++i) {
      found[i % 6] += forces[i];
      largest = std::max(largest, std::fabs(forces[i]));
    }
    // Each has six digits.
    const double tolerance = 5e-6 * largest * static_cast<double>(forces.size() + 1);
    for (std::size_t d = 0; d < 6; ++d) EXPECT_NEAR(found[d], expected[d], tolerance) << model.name;
  }
}

}  // namespace
}  // namespace kvx::test
