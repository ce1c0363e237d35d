// The committed examples, solved by the program as a user does, against their hand checks.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <vector>

#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

// The displacements of all nodes, as the file shows them.
std::vector<std::array<double, 6>> ReadDisplacements(const std::filesystem::path& file) {
  std::istringstream lines(ReadFile(file));
  std::string line;
  std::getline(lines, line);  // the header
  std::vector<std::array<double, 6>> displacements;
  while (std::getline(lines, line)) {
    std::istringstream values(line.substr(line.find(':') + 1));
    displacements.emplace_back();
    for (double& value : displacements.back()) values >> value;
  }
  return displacements;
}

using Displacements = std::vector<std::array<double, 6>>;

// Solves the example and returns its displacements.
Displacements SolveExample(const std::string& name) {
  const TempFolder folder;
  std::filesystem::copy(std::filesystem::path(KORVEX_EXAMPLES) / name / "fem_solving.txt",
                        folder.Path());
  EXPECT_EQ(RunProgram(KORVEX_PROGRAM, folder.Path()).exitStatus, 0);
  return ReadDisplacements(folder.Path() / "Node_Dis.txt");
}

// The sum of the support forces of held nodes in direction d, read off their displacements.
double SumSupports(const Displacements& u, std::size_t d, const std::vector<std::size_t>& nodes) {
  double sum = 0.0;
  for (const std::size_t node : nodes) sum -= 1e20 * u[node][d];
  return sum;
}

// Hand values of examples/lattice-tower/README.md: 204.8 kN down, 58 kN along x, the mean of the
// leg tops 21.88 mm downwind and 2.909 mm down.
TEST(Examples, LatticeTowerAgreesWithItsHandCheck) {
  const Displacements u = SolveExample("lattice-tower");
  ASSERT_EQ(u.size(), 137U);
  // Six digits of four numbers of up to 2e5 N.
  EXPECT_NEAR(SumSupports(u, 0, {0, 1, 2, 3}), -58000.0, 2.0);
  EXPECT_NEAR(SumSupports(u, 1, {0, 1, 2, 3}), 0.0, 2.0);
  EXPECT_NEAR(SumSupports(u, 2, {0, 1, 2, 3}), 204800.0, 2.0);

  double ux = 0.0, uz = 0.0;
  for (const std::size_t top : {103U, 105U, 123U, 125U}) {
    ux += u[top][0] / 4.0;
    uz += u[top][2] / 4.0;
  }
  // A truss by hand against a frame with rigid joints: within one percent.
  EXPECT_NEAR(ux, 21.88, 0.01 * 21.88);
  EXPECT_NEAR(uz, -2.909, 0.01 * 2.909);
}

// Hand values of examples/stiffened-panel/README.md: 816 kN down, carried by all four edges; the
// middle of a frame 2.992 mm down. Rows of 25 nodes along x, 43 rows.
TEST(Examples, StiffenedPanelAgreesWithItsHandCheck) {
  const Displacements u = SolveExample("stiffened-panel");
  ASSERT_EQ(u.size(), 1075U);
  std::vector<std::size_t> edges;
  for (std::size_t node = 0; node < 1075; ++node) {
    const std::size_t column = node % 25, row = node / 25;
    if (column == 0 || column == 24 || row == 0 || row == 42) edges.push_back(node);
  }
  EXPECT_NEAR(SumSupports(u, 2, edges), 816000.0, 8.0);  // six digits of 134 numbers up to 2e4 N
  // Single beams by hand against plate and grillage on this mesh, which is known to be 6 % stiffer.
  EXPECT_NEAR(u[533][2], -2.992, 0.06 * 2.992);
}

// Hand values of examples/water-trough/README.md: 410.1485 kN on the four bottom corners; finite
// strips give 1.421 mm at mid-span.
TEST(Examples, WaterTroughAgreesWithItsHandCheck) {
  const Displacements u = SolveExample("water-trough");
  ASSERT_EQ(u.size(), 911U);
  std::vector<std::size_t> bearings;
  for (std::size_t node = 0; node < u.size(); ++node) {
    if (u[node][2] != 0.0 && std::fabs(u[node][2]) < 1e-12) bearings.push_back(node);
  }
  EXPECT_EQ(bearings.size(), 4U);
  EXPECT_NEAR(SumSupports(u, 2, bearings), 410148.5, 4.0);  // six digits of four numbers of 1e5 N
  // The mesh is 1.6 % stiffer than the strips.
  EXPECT_NEAR(u[452][2], -1.421e-3, 0.02 * 1.421e-3);
}

// The model of docs/model-file.md. A force F and the fixed-end values of a uniform load q at the
// tip of a cantilever of L = 2: w = (F + q L / 2) (L^3 / 3 E I + L / G A) - (q L^2 / 12) L^2 / 2 E
// I with F = -1000, q = -500, E I = 2.06e11 x 4.33738286e-5, G A = 2.06e11 / 2.6 x 0.003.
TEST(Examples, ModelOfTheFileDescription) {
  const std::string page = ReadFile(std::filesystem::path(KORVEX_DOCS) / "model-file.md");
  const std::string fence = "```\n";
  const std::size_t begin = page.find(fence) + fence.size();
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", page.substr(begin, page.find(fence, begin) - begin));
  ASSERT_EQ(RunProgram(KORVEX_PROGRAM, folder.Path()).exitStatus, 0);
  const auto u = ReadDisplacements(folder.Path() / "Node_Dis.txt");
  ASSERT_EQ(u.size(), 2U);
  const double EI = 2.06e11 * 4.33738286e-5, GA = 2.06e11 / 2.6 * 0.003, L = 2.0;
  const double w =
      -1500.0 * (L * L * L / (3.0 * EI) + L / GA) + 500.0 * L * L * L * L / (24.0 * EI);
  EXPECT_NEAR(u[1][2], w, 1e-5 * -w);  // the file has six digits
}

}  // namespace
}  // namespace korvex::test
