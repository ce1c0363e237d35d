// Points, cells and arrays of a small mesh, worked out by hand. Whole models are compared with VTK
// by read_vtu.py.
#include "vtu/mesh_vtu.h"

#include <gtest/gtest.h>

#include <cmath>

#include "report/stop.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"
#include "support/model_text.h"
#include "vtu/detail_vtu.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// A quadrilateral 0 1 2 3, a triangle 1 4 2, a beam 4 5; node 6 belongs to nothing. In the plane
// z = 0, stretched along x by a hundredth.
ModelText MakeMesh() {
  ModelText text;
  text.materials = {{1000.0, 0.0, 0.0}};
  text.thicknesses = {2.0, 3.0};
  text.tSections = {{4.0, 1.0, 2.0, 1.0}};
  text.nodes = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0},
                {2.0, 0.0, 0.0}, {3.0, 0.0, 0.0}, {9.0, 9.0, 0.0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.shells3 = {{{1, 4, 2}, 0, 1}};
  text.beams = {{4, 5}};
  text.restraints = {{0}, {6}};
  text.forces = {{5, {7.0, 0.0, 0.0, 0.0, 0.0, 0.0}}};
  return text;
}

struct Mesh {
  SolvedModel solved;
  Reactions reactions;
  std::vector<BeamForces> forces;
  std::vector<std::int32_t> parts{1, 1, 1};
};

void Stretch(Mesh& mesh) {
  const ModelText text = MakeMesh();
  std::vector<double> displacements;
  for (const auto& node : text.nodes) {
    displacements.insert(displacements.end(), {0.01 * node[0], 0.0, 0.0, 0.0, 0.0, 0.0});
  }
  CompleteFromDisplacements(korvex::test::WriteModel(text), displacements, mesh.solved);
  korvex::RecoverShellStresses(mesh.solved.model);
  korvex::AverageNodeStresses(mesh.solved.model);
  ComputeReactions(mesh.solved, mesh.reactions);
  ComputeBeamForces(mesh.solved.model, mesh.forces);
}

const VtuArray& Find(const std::vector<VtuArray>& arrays, const std::string& name) {
  for (const VtuArray& array : arrays) {
    if (array.name == name) return array;
  }
  throw std::runtime_error("no array " + name);
}

template <typename Number, typename Fill>
std::vector<Number> ReadArray(const VtuArray& array) {
  std::vector<Number> numbers(array.tuples * array.width);
  for (std::size_t k = 0; k < array.tuples; ++k) {
    std::get<Fill>(array.fill)(k, &numbers[k * array.width]);
  }
  return numbers;
}

std::vector<std::int64_t> Integers(const VtuArray& array) {
  return ReadArray<std::int64_t, FillIntegers>(array);
}

std::vector<double> Doubles(const VtuArray& array) { return ReadArray<double, FillDoubles>(array); }

using Numbers = std::vector<std::int64_t>;

TEST(MeshVtu, GivesEachCornerItsPoint) {
  Mesh mesh;
  Stretch(mesh);
  MeshGrid grid;
  BuildMeshGrid({mesh.solved, mesh.reactions, mesh.forces, mesh.parts}, false, grid);
  // Four corners, three corners, two ends, and the node of no element.
  EXPECT_EQ(Integers(Find(grid.grid.pointData, "node_id")),
            (Numbers{0, 1, 2, 3, 1, 4, 2, 4, 5, 6}));
  EXPECT_EQ(Integers(grid.grid.connectivity), (Numbers{0, 1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(Integers(grid.grid.offsets), (Numbers{4, 7, 9}));
  EXPECT_EQ((ReadArray<std::uint8_t, FillBytes>(grid.grid.types)),
            (std::vector<std::uint8_t>{9, 5, 3}));
  const std::vector<VtuArray>& cells = grid.grid.cellData;
  EXPECT_EQ(Integers(Find(cells, "kind")), (Numbers{4, 3, 2}));
  EXPECT_EQ(Integers(Find(cells, "element")), (Numbers{0, 0, 0}));
  EXPECT_EQ(Integers(Find(cells, "section_type")), (Numbers{-1, -1, 0}));
  EXPECT_EQ(Integers(Find(cells, "section")), (Numbers{-1, -1, 0}));
  const std::vector<double> thickness = Doubles(Find(cells, "thickness"));
  EXPECT_EQ(thickness[0], 2.0);
  EXPECT_EQ(thickness[1], 3.0);
  EXPECT_TRUE(std::isnan(thickness[2]));
}

TEST(MeshVtu, SharesThePointsOfNodes) {
  Mesh mesh;
  Stretch(mesh);
  MeshGrid grid;
  BuildMeshGrid({mesh.solved, mesh.reactions, mesh.forces, mesh.parts}, true, grid);
  EXPECT_EQ(Integers(Find(grid.grid.pointData, "node_id")), (Numbers{0, 1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(Integers(grid.grid.connectivity), (Numbers{0, 1, 2, 3, 1, 4, 2, 4, 5}));
  const std::vector<double> mises = Doubles(Find(grid.grid.pointData, "von_mises_upper_node_mean"));
  // E times the strain everywhere: 1000 * 0.01.
  for (std::size_t node = 0; node < 5; ++node) EXPECT_NEAR(mises[node], 10.0, 1e-12);
  EXPECT_TRUE(std::isnan(mises[5]));
  EXPECT_TRUE(std::isnan(mises[6]));
}

// sigma_x = E * 0.01 = 10 in both shells, n = sigma t, and N = E A * 0.01 with A = 4 * 1 + 2 * 1.
TEST(MeshVtu, HasTheForcesOfAStretchedMesh) {
  Mesh mesh;
  Stretch(mesh);
  MeshGrid grid;
  BuildMeshGrid({mesh.solved, mesh.reactions, mesh.forces, mesh.parts}, false, grid);
  const std::vector<double> stress = Doubles(Find(grid.grid.pointData, "stress_lower"));
  ASSERT_EQ(stress.size(), 60U);
  for (std::size_t corner = 0; corner < 7; ++corner) {
    EXPECT_NEAR(stress[6 * corner], 10.0, 1e-12);
    for (std::size_t k = 1; k < 6; ++k) EXPECT_NEAR(stress[6 * corner + k], 0.0, 1e-12);
  }
  for (std::size_t k = 42; k < 60; ++k) EXPECT_TRUE(std::isnan(stress[k])) << k;
  const std::vector<double> n = Doubles(Find(grid.grid.cellData, "n"));
  EXPECT_NEAR(n[0], 20.0, 1e-12);
  EXPECT_NEAR(n[3], 30.0, 1e-12);
  EXPECT_TRUE(std::isnan(n[6]));
  const std::vector<double> q = Doubles(Find(grid.grid.cellData, "q"));
  EXPECT_TRUE(std::isnan(q[2]));  // triangles have none
  for (const char* name : SectionForceArrays) {
    const std::vector<double> forces = Doubles(Find(grid.grid.cellData, name));
    EXPECT_TRUE(std::isnan(forces[0]));
    EXPECT_NEAR(forces[12], 60.0, 1e-12);
  }
}

// The force of 7 stands at the point of node 5 alone. Nodes 0 and 6 are held; nothing pulls at 6.
TEST(MeshVtu, DrawsNoForceWhereThereIsNone) {
  Mesh mesh;
  Stretch(mesh);
  MeshGrid grid;
  BuildMeshGrid({mesh.solved, mesh.reactions, mesh.forces, mesh.parts}, true, grid);
  const std::vector<double> load = Doubles(Find(grid.grid.pointData, "load_force"));
  const std::vector<double> reaction = Doubles(Find(grid.grid.pointData, "reaction_force"));
  for (std::size_t k = 0; k < load.size(); ++k) {
    EXPECT_EQ(load[k], k == 15 ? 7.0 : 0.0) << k;
    if (k > 2) {
      EXPECT_EQ(reaction[k], 0.0) << k;
    }
  }
  // The edge x = 0 of height 1 and thickness 2 carries 10 * 2, half of it at node 0.
  EXPECT_NEAR(reaction[0], -10.0, 1e-12);
}

// The solver has SX SY SZ TXY TXZ TYZ, VTK XX YY ZZ XY YZ XZ.
TEST(PointStress, HasTheOrderOfVtk) {
  const auto find = [](std::size_t) {
    return MakePointStress({1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, {-1.0, -2.0, -3.0, -4.0, -5.0, -6.0});
  };
  std::vector<VtuArray> arrays;
  AddStressArrays(find, "_x", 1, arrays);
  EXPECT_EQ(Doubles(Find(arrays, "stress_upper_x")),
            (std::vector<double>{1.0, 2.0, 3.0, 4.0, 6.0, 5.0}));
  EXPECT_EQ(Doubles(Find(arrays, "stress_lower_x")),
            (std::vector<double>{-1.0, -2.0, -3.0, -4.0, -6.0, -5.0}));
  // sqrt(((1-2)^2 + (2-3)^2 + (3-1)^2) / 2 + 3 (16 + 25 + 36)) = sqrt(234)
  EXPECT_DOUBLE_EQ(Doubles(Find(arrays, "von_mises_lower_x"))[0], std::sqrt(234.0));
}

// Node 0 has corners with 1 and 4, node 1 one with 2, node 2 none.
TEST(PointStress, IsTheMeanOfTheCornersAtANode) {
  const auto corner = [](std::size_t k) {
    PointStress stress;
    const double values[] = {1.0, 2.0, 4.0};
    stress.upper.fill(values[k]);
    stress.lower.fill(-values[k]);
    stress.upperMises = stress.lowerMises = values[k];
    return stress;
  };
  std::vector<PointStress> means;
  AverageAtNodes(corner, {0, 1, 0}, 3, means);
  ASSERT_EQ(means.size(), 3U);
  EXPECT_EQ(means[0].upper[5], 2.5);
  EXPECT_EQ(means[0].lower[0], -2.5);
  EXPECT_EQ(means[0].lowerMises, 2.5);
  EXPECT_EQ(means[1].upperMises, 2.0);
  EXPECT_TRUE(std::isnan(means[2].upperMises));
  EXPECT_TRUE(std::isnan(means[2].lower[3]));
}

TEST(MeshVtu, RefusesResultsOfAnotherModel) {
  Mesh mesh;
  Stretch(mesh);
  mesh.parts.pop_back();
  MeshGrid grid;
  const MeshResults results{mesh.solved, mesh.reactions, mesh.forces, mesh.parts};
  EXPECT_THROW(BuildMeshGrid(results, false, grid), korvex::Stop);
}

TEST(DetailVtu, OfAModelWithoutBeamsIsEmpty) {
  DetailGrid details;
  BuildDetailGrid({}, {}, false, details);
  EXPECT_EQ(details.grid.points.tuples, 0U);
  EXPECT_EQ(details.grid.types.tuples, 0U);
  BuildDetailGrid({}, {}, true, details);
  EXPECT_EQ(details.grid.points.tuples, 0U);
}

}  // namespace
}  // namespace kvx::test
