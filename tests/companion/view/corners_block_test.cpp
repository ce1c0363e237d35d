// The block of recovered stresses against the bytes of their file and the shell resultants.
#include "view/corners_block.h"

#include <gtest/gtest.h>

#include <cmath>

#include "audit/shell_resultants.h"
#include "results/stress_files.h"
#include "support/page_columns.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"
#include "support/whole_results.h"

namespace kvx::test {
namespace {

using korvex::Vector3;
using Words = std::vector<std::string>;

PageBlock MakeBlock(const korvex::Model& model) {
  CornerStresses corners;
  CollectCorners(model, corners);
  PageBlock block;
  AddCorners(corners, block);
  return block;
}

// The element's axes from its nodes (docs/model-file.md, Shells).
struct Axes {
  Vector3 first, second;
};
Axes FindAxes(const korvex::ModelTables& tables, const std::int32_t* nodes, std::size_t corners) {
  const auto place = [&](std::size_t k) {
    const korvex::Node& node = tables.Nodes[static_cast<std::size_t>(nodes[k])];
    return Vector3{node.x, node.y, node.z};
  };
  const Vector3 first = korvex::Normalise(korvex::Subtract(place(1), place(0)));
  const Vector3 normal =
      korvex::Normalise(korvex::Cross(first, korvex::Subtract(place(corners - 1), place(0))));
  return {first, korvex::Cross(normal, first)};
}

// a . S b of a stress SX, SY, SZ, TXY, TXZ, TYZ.
double Along(const Vector3& a, const std::array<double, 6>& s, const Vector3& b) {
  return a[0] * (s[0] * b[0] + s[3] * b[1] + s[4] * b[2]) +
         a[1] * (s[3] * b[0] + s[1] * b[1] + s[5] * b[2]) +
         a[2] * (s[4] * b[0] + s[5] * b[1] + s[2] * b[2]);
}

// One face of one corner: the file's six components, turned into the element's axes, are the
// block's three. Both have six digits; the sum of nine products of the file's has up to nine times
// the half of its sixth digit.
void ExpectFace(const Words& words, std::size_t at, const Axes& axes, const double* shown) {
  std::array<double, 6> stress{};
  double largest = 0.0;
  for (std::size_t i = 0; i < 6; ++i) {
    stress[i] = std::stod(words.at(at + i));
    largest = std::max(largest, std::fabs(stress[i]));
  }
  const double tolerance = 10.0 * 5e-6 * largest;
  EXPECT_NEAR(shown[0], Along(axes.first, stress, axes.first), tolerance);
  EXPECT_NEAR(shown[1], Along(axes.second, stress, axes.second), tolerance);
  EXPECT_NEAR(shown[2], Along(axes.first, stress, axes.second), tolerance);
}

// The file has "Four-nodes shell element: 7", eight titles, then two lines for each corner: node,
// six components and the von Mises stress.
TEST(CornersBlock, StressesAreThoseOfTheFileInTheElementsAxes) {
  for (const NamedModel& model : ListSolvedModels()) {
    const korvex::ModelTables& tables = model.solved.model.Tables;
    const korvex::test::TempFolder folder;
    const std::string file = (folder.Path() / "stresses.txt").string();
    ASSERT_TRUE(korvex::WriteElementNodeStresses(file, model.solved.model));
    const Words words = ReadWords(file);
    const PageBlock block = MakeBlock(model.solved.model);
    const std::vector<double> upper = ReadDecimals(block, "upper");
    const std::vector<double> lower = ReadDecimals(block, "lower");
    std::size_t corner = 0;
    for (std::size_t at = 0; at < words.size();) {
      const bool isFour = words[at] == "Four-nodes";
      const std::size_t corners = isFour ? 4 : 3;
      const auto e = static_cast<std::size_t>(std::stoi(words.at(at + 3)));
      const Axes axes = FindAxes(
          tables, isFour ? &tables.Shell4Nodes[4 * e] : &tables.Shell3Nodes[3 * e], corners);
      at += 12;
      for (std::size_t k = 0; k < corners; ++k, ++corner, at += 16) {
        ASSERT_LE(3 * corner + 3, upper.size()) << model.name;
        ExpectFace(words, at + 1, axes, &upper[3 * corner]);
        ExpectFace(words, at + 9, axes, &lower[3 * corner]);
      }
      ASSERT_FALSE(HasFailure()) << model.name << ' ' << e;
    }
    EXPECT_EQ(3 * corner, upper.size()) << model.name;
    EXPECT_EQ(3 * corner, lower.size()) << model.name;
  }
}

// All six digits: quadrilaterals have the resultants' stresses at each corner, triangles those of
// their first corner at all three. The signs of zeros do not count.
void ExpectResultants(const ShellResultants& shell, std::size_t corner, std::size_t k,
                      const std::vector<double>& upper, const std::vector<double>& lower) {
  const auto& faces = shell.corner[shell.corners == 4 ? k : 0].faces;
  const PlaneTensor& above = faces[static_cast<std::size_t>(Face::Upper)].local;
  const PlaneTensor& below = faces[static_cast<std::size_t>(Face::Lower)].local;
  const std::array<double, 3> expectedUpper{above.x, above.y, above.xy};
  const std::array<double, 3> expectedLower{below.x, below.y, below.xy};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(ShowNumber(upper.at(3 * corner + i)), ShowNumber(expectedUpper[i])) << corner;
    EXPECT_EQ(ShowNumber(lower.at(3 * corner + i)), ShowNumber(expectedLower[i])) << corner;
  }
}

TEST(CornersBlock, StressesAndShearAreThoseOfTheResultants) {
  std::size_t quads = 0, triangles = 0;
  for (const NamedModel& named : ListSolvedModels()) {
    const korvex::Model& model = named.solved.model;
    const PageBlock block = MakeBlock(model);
    const std::vector<double> upper = ReadDecimals(block, "upper");
    const std::vector<double> lower = ReadDecimals(block, "lower");
    const std::vector<double> shear = ReadDecimals(block, "shear");
    ASSERT_EQ(shear.size(), 2 * model.Shell4Elements.size()) << named.name;
    std::size_t corner = 0;
    ShellResultants shell;
    for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) {
      ComputeShell4Resultants(model, static_cast<std::int32_t>(e), {}, shell);
      for (std::size_t k = 0; k < 4; ++k) ExpectResultants(shell, corner++, k, upper, lower);
      // Turned from the element's frame into itself there, which may change the last bits.
      const double size = std::hypot(shell.centre.qx, shell.centre.qy);
      EXPECT_NEAR(shear[2 * e], shell.centre.qx, 5e-6 * size) << named.name << ' ' << e;
      EXPECT_NEAR(shear[2 * e + 1], shell.centre.qy, 5e-6 * size) << named.name << ' ' << e;
    }
    for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
      ComputeShell3Resultants(model, static_cast<std::int32_t>(e), {}, shell);
      for (std::size_t k = 0; k < 3; ++k) ExpectResultants(shell, corner++, k, upper, lower);
    }
    ASSERT_FALSE(HasFailure()) << named.name;
    quads += model.Shell4Elements.size();
    triangles += model.Shell3Elements.size();
  }
  EXPECT_GT(quads, 0U);
  EXPECT_GT(triangles, 0U);
}

// A strip of a width of 100 and a thickness of 10, pulled with 3000 along its length: 3 everywhere
// along its length, on both faces. It lies in space as TurnModel turns it, and the elements' first
// axis runs along the pull.
TEST(CornersBlock, PullIsAStressAlongTheFirstAxis) {
  korvex::test::ModelText text =
      korvex::test::BuildGrid(3, 1, korvex::test::Cells::Quads, [](double s, double t) {
        return korvex::test::Point3{300.0 * s, 100.0 * t, 0.0};
      });
  text.materials = {{206000.0, 0.0, 7.85e-9}};
  text.thicknesses = {10.0};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {4, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{3, {1500.0, 0, 0, 0, 0, 0}}, {7, {1500.0, 0, 0, 0, 0, 0}}};
  const PageBlock block = MakeBlock(SolveWhole(korvex::test::TurnModel(text)).model);
  for (const char* face : {"upper", "lower"}) {
    const std::vector<double> stresses = ReadDecimals(block, face);
    ASSERT_EQ(stresses.size(), 36U);
    for (std::size_t i = 0; i < stresses.size(); ++i) {
      EXPECT_NEAR(stresses[i], i % 3 == 0 ? 3.0 : 0.0, 1e-5) << face << ' ' << i;
    }
  }
}

TEST(CornersBlock, NumbersThatAreNoneStayInTheirElement) {
  korvex::Model model = ListSolvedModels()[1].solved.model;
  ASSERT_GT(model.Shell4Elements.size(), 7U);
  model.Shell4Elements[7].NodeStressTop[2][0] = std::nan("");
  const std::vector<double> upper = ReadDecimals(MakeBlock(model), "upper");
  for (std::size_t c = 0; c < upper.size() / 3; ++c) {
    EXPECT_EQ(std::isnan(upper[3 * c]), c == 30) << c;
  }
}

TEST(CornersBlock, WithoutShellsTheColumnsAreEmpty) {
  const PageBlock block = MakeBlock(ListSolvedModels()[0].solved.model);
  for (const char* name : {"upper", "lower", "shear"}) {
    EXPECT_TRUE(HasColumn(block, name)) << name;
    EXPECT_TRUE(ReadDecimals(block, name).empty()) << name;
  }
}

}  // namespace
}  // namespace kvx::test
