// K206: reversed shells, planted into random good models and into plates.
#include "check/normals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "check/read_checked.h"
#include "support/expect_findings.h"
#include "support/mesh_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using Numbers = std::vector<std::int32_t>;

std::vector<Finding> NormalsOf(const CheckReport& report) {
  std::vector<Finding> found;
  for (const Finding& finding : report.findings.findings) {
    if (finding.code == "K206") found.push_back(finding);
  }
  return found;
}

// Every smooth face of a good model has three shells or more, so one reversed shell is always the
// smaller side.
TEST(OppositeNormals, OfOneShellAreNamed) {
  int count = 0;
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed + 1000);
    const std::vector<ShellOfText> shells = ListShells(model);
    if (shells.empty()) continue;
    const ShellOfText& shell =
        shells[static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(shells.size()) - 1))];
    ReverseShell(shell, model);
    const CheckReport report = Check(model);
    ExpectOnly(report, {"K206", shell.isQuad ? "NELEM_S_4ND" : "NELEM_S_3ND", shell.row, -1, 0});
    ASSERT_EQ(NormalsOf(report).size(), 1U);
    EXPECT_EQ(NormalsOf(report)[0].rows.size(), 1U);
    ++count;
  }
  EXPECT_GE(count, 100);
}

// A plate of n x n squares; shells in `triangles` are divided.
ModelText MakePlate(int n) {
  ModelText model;
  model.materials = {{206000.0, 0.3, 7.85e-9}};
  model.thicknesses = {10.0};
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i <= n; ++i) model.nodes.push_back({100.0 * i, 100.0 * j, 0.0});
  }
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      const int a = j * (n + 1) + i;
      model.shells4.push_back({{a, a + 1, a + n + 2, a + n + 1}, 0, 0});
    }
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{n, {0.0, 0.0, 1.0, 0.0, 0.0, 0.0}}};
  return model;
}

TEST(OppositeNormals, NameTheSmallerSideOfAPatch) {
  constexpr int N = 12;
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    Dice dice = MakeDice(seed);
    ModelText model = MakePlate(N);
    const double share = Roll(dice, 0.02, 0.98);
    Numbers reversed, others;
    for (const ShellOfText& shell : ListShells(model)) {
      const bool isReversed = RollYes(dice, share);
      (isReversed ? reversed : others).push_back(shell.row);
      if (isReversed) ReverseShell(shell, model);
    }
    if (reversed.empty() || others.empty() || reversed.size() == others.size()) continue;
    const std::vector<Finding> found = NormalsOf(Check(model));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].rows, reversed.size() < others.size() ? reversed : others);
    EXPECT_EQ(found[0].severity, Severity::Warning);
  }
}

TEST(OppositeNormals, SayThatPressureActsTheOtherWay) {
  ModelText model = MakePlate(6);
  for (const ShellOfText& shell : ListShells(model)) {
    if (shell.row % 3 == 0) ReverseShell(shell, model);
    if (shell.row < 18) model.shell4Loads.push_back({shell.row, {0.0, 0.0, 0.1}});
    if (shell.row >= 18) model.shell4Loads.push_back({shell.row, {0.0, 0.0, 0.0}});
  }
  const std::vector<Finding> found = NormalsOf(Check(model));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].message,
            "12 of 36 shells of the patch at (50, 50, 0) have their normals reversed: four-node "
            "shells 0, 3, 6, 9, 12, 15, 18, 21, 24, 27, ...; pressure acts on 6 of them, in the "
            "opposite direction.");
}

// Of two equal sides the one is named that does not hold the lowest shell.
TEST(OppositeNormals, NameOneOfTwoEqualSides) {
  ModelText model = MakePlate(2);
  for (const ShellOfText& shell : ListShells(model)) {
    if (shell.row < 2) ReverseShell(shell, model);
  }
  const std::vector<Finding> found = NormalsOf(Check(model));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].rows, (Numbers{2, 3}));
}

// A deck of 4 x 4 and frames below both of its ends, both with their normals along +x: at one end
// they cannot agree with the deck's. That is a hint.
TEST(OppositeNormals, AreOnlyAHintAtASharpFold) {
  ModelText model = MakePlate(4);
  for (const int i : {0, 4}) {
    const int first = static_cast<int>(model.nodes.size());
    for (int j = 0; j <= 4; ++j) model.nodes.push_back({100.0 * i, 100.0 * j, -100.0});
    for (int j = 0; j < 4; ++j) {
      model.shells4.push_back({{5 * j + i, first + j, first + j + 1, 5 * (j + 1) + i}, 0, 0});
    }
  }
  CheckReport report = Check(model);
  ExpectNone(report);
  std::vector<Finding> found = NormalsOf(report);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].rows.size(), 4U);
  EXPECT_NE(found[0].message.find("4 of 24 shells"), std::string::npos) << found[0].message;
  // A reversed shell in a frame is named by itself as well.
  ReverseShell({true, 17, {model.shells4[17].nodes.begin(), model.shells4[17].nodes.end()}}, model);
  report = Check(model);
  ExpectOnly(report, {"K206", "NELEM_S_4ND", -1, -1, 0});
  found = NormalsOf(report);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].rows, Numbers{17});
}

// Where three shells meet, any normals are right.
TEST(OppositeNormals, AreNotComparedWhereThreeShellsMeet) {
  for (const bool isReversed : {false, true}) {
    ModelText model = MakePlate(2);
    const int first = static_cast<int>(model.nodes.size());
    for (int j = 0; j <= 2; ++j) model.nodes.push_back({100.0, 100.0 * j, -100.0});
    for (int j = 0; j < 2; ++j) {
      model.shells4.push_back({{3 * j + 1, first + j, first + j + 1, 3 * j + 4}, 0, 0});
      if (!isReversed) continue;
      const auto& nodes = model.shells4.back().nodes;
      ReverseShell({true, 4 + j, {nodes.begin(), nodes.end()}}, model);
    }
    const std::vector<Finding> found = NormalsOf(Check(model));
    EXPECT_TRUE(found.empty());
  }
}

// A strip of 24 squares that is turned by half a turn before its ends are joined.
TEST(OppositeNormals, CannotAgreeOnASurfaceWithOneSide) {
  constexpr int N = 24;
  ModelText model = MakePlate(1);
  model.nodes.clear();
  model.shells4.clear();
  for (int k = 0; k < N; ++k) {
    const double round = 2.0 * std::acos(-1.0) * k / N;
    for (const double side : {-50.0, 50.0}) {
      const double radius = 1000.0 + side * std::cos(0.5 * round);
      model.nodes.push_back(
          {radius * std::cos(round), radius * std::sin(round), side * std::sin(0.5 * round)});
    }
    const int a = 2 * k, b = 2 * k + 1;
    const bool isLast = k + 1 == N;
    model.shells4.push_back({{a, isLast ? 1 : a + 2, isLast ? 0 : b + 2, b}, 0, 0});
  }
  const CheckReport report = Check(model);
  EXPECT_TRUE(NormalsOf(report).empty());
  ASSERT_EQ(report.model.notChecked.size(), 1U);
  EXPECT_NE(report.model.notChecked[0].find("1 surface with one side only"), std::string::npos);
}

FindingList NameNormals(CheckedModel& model) {
  EdgeTable edges;
  BuildEdgeTable(model, edges);
  FindingList findings;
  NameOppositeNormals(edges, model, findings);
  return findings;
}

// A square ring of plates of three shells, closed by a shell that is twisted by half a turn: the
// plates cannot agree, each for itself can. One shell in the middle of a plate is reversed.
TEST(OppositeNormals, AreNamedOnceWhereFoldsCannotAgree) {
  ModelText text = MakePlate(1);
  text.nodes.clear();
  text.shells4.clear();
  constexpr std::array<std::array<double, 2>, 4> Corners{{{0, 0}, {3, 0}, {3, 3}, {0, 3}}};
  for (std::size_t side = 0; side < 4; ++side) {
    const auto &a = Corners[side], &b = Corners[(side + 1) % 4];
    for (int k = 0; k < 3; ++k) {
      const double x = a[0] + k * (b[0] - a[0]) / 3, y = a[1] + k * (b[1] - a[1]) / 3;
      text.nodes.push_back({x, y, 0.0});
      text.nodes.push_back({x, y, 1.0});
    }
  }
  for (int k = 0; k < 12; ++k) {
    const int a = 2 * k, next = (2 * k + 2) % 24;
    text.shells4.push_back({{a, next + (k == 11 ? 1 : 0), next + (k == 11 ? 0 : 1), a + 1}, 0, 0});
  }
  const auto& nodes = text.shells4[4].nodes;
  ReverseShell({true, 4, {nodes.begin(), nodes.end()}}, text);
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  const FindingList findings = NameNormals(model);
  ASSERT_EQ(findings.findings.size(), 1U);
  EXPECT_EQ(findings.findings[0].rows, Numbers{4});
}

// The shape of a shell that a finding names says nothing.
TEST(OppositeNormals, AreNotLookedForWhereAFindingNamesTheShell) {
  ModelText text = MakePlate(3);
  const auto& nodes = text.shells4[4].nodes;
  ReverseShell({true, 4, {nodes.begin(), nodes.end()}}, text);
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  EXPECT_EQ(NameNormals(model).findings.size(), 1U);
  StateOf(model, korvex::Section::Shells4, 4) = ElementState::Broken;
  EXPECT_TRUE(NameNormals(model).findings.empty());
}

// Triangles among quadrilaterals: the message has the rows of both.
TEST(OppositeNormals, NameBothKindsOfShells) {
  ModelText model = MakePlate(4);
  const auto nodes = model.shells4.back().nodes;
  model.shells4.pop_back();
  model.shells3.push_back({{nodes[0], nodes[2], nodes[1]}, 0, 0});  // reversed
  model.shells3.push_back({{nodes[0], nodes[2], nodes[3]}, 0, 0});
  const auto& quad = model.shells4[7].nodes;
  ReverseShell({true, 7, {quad.begin(), quad.end()}}, model);
  const std::vector<Finding> found = NormalsOf(Check(model));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_NE(found[0].message.find("four-node shells 7; three-node shells 0;"), std::string::npos)
      << found[0].message;
  EXPECT_STREQ(found[0].table, "NELEM_S_4ND");
}

}  // namespace
}  // namespace kvx::test
