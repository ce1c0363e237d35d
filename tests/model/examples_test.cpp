// The committed examples, solved by the program as a user does, against their hand checks.
#include <gtest/gtest.h>

#include <array>
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

// Hand values of examples/lattice-tower/README.md: 204.8 kN down, 58 kN along x, the mean of the
// leg tops 21.88 mm downwind and 2.909 mm down.
TEST(Examples, LatticeTowerAgreesWithItsHandCheck) {
  const TempFolder folder;
  const std::filesystem::path model =
      std::filesystem::path(KORVEX_EXAMPLES) / "lattice-tower" / "fem_solving.txt";
  std::filesystem::copy(model, folder.Path());
  const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
  ASSERT_EQ(run.exitStatus, 0);
  const auto u = ReadDisplacements(folder.Path() / "Node_Dis.txt");
  ASSERT_EQ(u.size(), 137U);

  double Rx = 0.0, Ry = 0.0, Rz = 0.0;
  for (std::size_t foot = 0; foot < 4; ++foot) {
    Rx -= 1e20 * u[foot][0];
    Ry -= 1e20 * u[foot][1];
    Rz -= 1e20 * u[foot][2];
  }
  // Six digits of four numbers of up to 2e5 N.
  EXPECT_NEAR(Rx, -58000.0, 2.0);
  EXPECT_NEAR(Ry, 0.0, 2.0);
  EXPECT_NEAR(Rz, 204800.0, 2.0);

  double ux = 0.0, uz = 0.0;
  for (const std::size_t top : {103U, 105U, 123U, 125U}) {
    ux += u[top][0] / 4.0;
    uz += u[top][2] / 4.0;
  }
  // A truss by hand against a frame with rigid joints: within one percent.
  EXPECT_NEAR(ux, 21.88, 0.01 * 21.88);
  EXPECT_NEAR(uz, -2.909, 0.01 * 2.909);
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
