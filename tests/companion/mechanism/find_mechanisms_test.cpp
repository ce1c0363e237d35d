// Planted mechanisms in good models at random places, all of them named; and none in sound models,
// also where stiffnesses differ by 1e8 or chains are long.
#include "mechanism/find_mechanisms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "check/motion_text.h"
#include "check/parts.h"
#include "check/read_checked.h"
#include "mechanism/check_mechanisms.h"
#include "support/expect_findings.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "support/shell_mesh.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

constexpr std::uint32_t Seeds = korvex::test::Repeats(40);

MechanismReport Find(const ModelText& text) {
  MechanismReport report;
  FindMechanisms(Check(text).model.tables, report);
  return report;
}

// The findings of the deep check alone.
CheckReport CheckDeep(const ModelText& text) {
  CheckReport report;
  ReadChecked(korvex::test::WriteModel(text), report.model);
  CheckMechanisms(false, report.model, report.findings);
  SortFindings(report.findings);
  return report;
}

std::string ListMechanisms(const MechanismReport& report) {
  std::string list = report.notExamined;
  for (const Mechanism& mechanism : report.mechanisms) {
    list += "node " + std::to_string(mechanism.node) + ": " +
            std::to_string(mechanism.nodes.size()) + " nodes " +
            MotionsText(mechanism.body, mechanism.motions) + ", error " +
            std::to_string(mechanism.error) + '\n';
  }
  return list;
}

void ExpectNoMechanism(const ModelText& text) {
  const MechanismReport report = Find(text);
  EXPECT_TRUE(report.mechanisms.empty()) << ListMechanisms(report);
  EXPECT_TRUE(report.brokenElements.empty());
  EXPECT_EQ(report.notExamined, "");
  EXPECT_FALSE(report.more);
}

int RollNode(const ModelText& model, Dice& dice) {
  return RollInteger(dice, 0, static_cast<int>(model.nodes.size()) - 1);
}

Expected AtNode(const char* code, int node) {
  Expected expected;
  expected.code = code;
  expected.node = node;
  return expected;
}

// A beam without stiffness from the node to a new one beside it. Returns the new node.
int HangNode(int node, Dice& dice, ModelText& model) {
  const auto material = static_cast<int>(model.materials.size());
  model.materials.push_back({0.0, 0.3, 0.0});
  const auto at = model.nodes[static_cast<std::size_t>(node)];
  model.nodes.push_back({at[0] + Roll(dice, 0.1, 1.0), at[1] + 0.3, at[2] + 0.7});
  ModelText::Beam beam;
  beam.node1 = node;
  beam.node2 = static_cast<int>(model.nodes.size()) - 1;
  beam.orientation = {1.0, -2.0, 0.1};
  beam.material = material;
  model.beams.push_back(beam);
  return beam.node2;
}

TEST(FindMechanisms, HasNothingAgainstGoodModels) {
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(200); ++seed) {
    SCOPED_TRACE(seed);
    ExpectNoMechanism(MakeGoodModel(seed));
  }
}

TEST(FindMechanisms, NameANodeOnABeamWithoutStiffness) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice = MakeDice(seed + 3000);
    ModelText model = MakeGoodModel(seed);
    const int node = HangNode(RollNode(model, dice), dice, model);
    const CheckReport report = CheckDeep(model);
    ExpectOnly(report, AtNode("K310", node));
    // The beam is named as the element beside it.
    EXPECT_NE(ListFindings(report).find("beam " + std::to_string(model.beams.size() - 1) + " at"),
              std::string::npos);
  }
}

// A part held nowhere: its last node is where the pivots vanish, and it moves in all six ways.
TEST(FindMechanisms, NameAPartWithoutSupports) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    Parts parts;
    FindParts(Check(model).model, parts);
    const auto partOf = [&](int node) { return parts.partOfNode[static_cast<std::size_t>(node)]; };
    Dice dice = MakeDice(seed);
    const int part = partOf(RollNode(model, dice));
    auto& rows = model.restraints;
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [&](const auto& row) { return partOf(row.node) == part; }),
               rows.end());
    const MechanismReport report = Find(model);
    ASSERT_EQ(report.mechanisms.size(), 1U) << ListMechanisms(report);
    const Mechanism& mechanism = report.mechanisms[0];
    EXPECT_EQ(partOf(mechanism.node), part);
    EXPECT_EQ(mechanism.nodes.size(),
              static_cast<std::size_t>(parts.nodeCounts[static_cast<std::size_t>(part)]));
    EXPECT_EQ(MotionsText(mechanism.body, mechanism.motions), "move and turn in all directions");
  }
}

// Shells of zero thickness: the nodes that no other element holds.
TEST(FindMechanisms, NameAPlateWithoutThickness) {
  int count = 0;
  for (std::uint32_t seed = 0; seed < 3 * Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    if (model.shells4.empty()) continue;
    Dice dice = MakeDice(seed + 4000);
    // A plate of 3 x 2 cells hangs on the first edge of a random shell.
    const auto& shell = model.shells4[static_cast<std::size_t>(
        RollInteger(dice, 0, static_cast<int>(model.shells4.size()) - 1))];
    const auto thickness = static_cast<int>(model.thicknesses.size());
    model.thicknesses.push_back(0.0);
    int left = shell.nodes[0], right = shell.nodes[1];
    const int first = static_cast<int>(model.nodes.size());
    for (int k = 0; k < 3; ++k) {
      const auto add = [&](int node) {
        auto at = model.nodes[static_cast<std::size_t>(node)];
        for (double& value : at) value += Roll(dice, 0.2, 0.4);
        model.nodes.push_back(at);
        return static_cast<int>(model.nodes.size()) - 1;
      };
      const int nextLeft = add(left), nextRight = add(right);
      model.shells4.push_back({{left, right, nextRight, nextLeft}, 0, thickness});
      left = nextLeft, right = nextRight;
    }
    const MechanismReport report = Find(model);
    ASSERT_EQ(report.mechanisms.size(), 1U);
    const Mechanism& mechanism = report.mechanisms[0];
    EXPECT_EQ(mechanism.kind, MechanismKind::NoStiffness);
    EXPECT_EQ(mechanism.nodes, (std::vector<std::int32_t>{first, first + 1, first + 2, first + 3,
                                                          first + 4, first + 5}));
    EXPECT_EQ(mechanism.dofs, 0x3F);
    ++count;
  }
  EXPECT_GT(count, static_cast<int>(korvex::test::Repeats(30)));
}

// A plate that hangs in two pins on the ground and is tied to a good model only by a beam without
// stiffness: as a part it is held, but it turns about the line of the pins, which is oblique.
TEST(FindMechanisms, NameAHingeLine) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice = MakeDice(seed + 5000);
    ModelText model = MakeGoodModel(seed);
    const int hung = HangNode(RollNode(model, dice), dice, model);
    const auto at = model.nodes[static_cast<std::size_t>(hung)];
    std::array<std::array<int, 4>, 3> grid{};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 4; ++j) {
        grid[i][j] = i + j == 0 ? hung : static_cast<int>(model.nodes.size());
        const double x = static_cast<double>(i), y = static_cast<double>(j);
        // Along <0.6, 0.8, 0> and z.
        if (i + j > 0) model.nodes.push_back({at[0] + 0.6 * y, at[1] + 0.8 * y, at[2] + x});
      }
    }
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        model.shells4.push_back(
            {{grid[i][j], grid[i + 1][j], grid[i + 1][j + 1], grid[i][j + 1]},
             0,
             RollInteger(dice, 0, static_cast<int>(model.thicknesses.size()) - 1)});
      }
    }
    model.restraints.push_back({grid[1][0], {1, 1, 1, 0, 0, 0}});
    model.restraints.push_back({grid[1][3], {1, 1, 1, 0, 0, 0}});
    const MechanismReport report = Find(model);
    ASSERT_EQ(report.mechanisms.size(), 1U) << ListMechanisms(report);
    const Mechanism& mechanism = report.mechanisms[0];
    EXPECT_GE(mechanism.node, hung);
    // All nodes of the plate but those on the line turn with it, and these rotate.
    EXPECT_EQ(mechanism.nodes.size(), 12U);
    EXPECT_NE(MotionsText(mechanism.body, mechanism.motions).find("along <0.6, 0.8, 0>"),
              std::string::npos)
        << ListMechanisms(report);
  }
}

// A cantilever of beams in an oblique line, clamped at its first or its last node.
ModelText Cantilever(int beams, double radius, bool firstClamped) {
  ModelText model;
  model.materials = {{2.06e11, 0.3, 7850.0}};
  model.cSections = {{radius, 0.1 * radius}};
  model.tSections = {{0.3, 0.01, 0.1, 0.01}};
  for (int k = 0; k <= beams; ++k) {
    const double s = 10.0 * k / beams;
    model.nodes.push_back({0.6 * s, 0.8 * s, 0.0});
  }
  for (int k = 0; k < beams; ++k) {
    ModelText::Beam beam;
    beam.node1 = k;
    beam.node2 = k + 1;
    beam.BeamSecType = korvex::BeamSecTypeC;
    model.beams.push_back(beam);
  }
  model.restraints = {{firstClamped ? 0 : beams, {1, 1, 1, 1, 1, 1}}};
  return model;
}

TEST(FindMechanisms, HasNothingAgainstLongCantilevers) {
  for (const int beams : {100, 500, 1500}) {
    for (const double radius : {0.5, 0.01}) {
      for (const bool firstClamped : {false, true}) {
        SCOPED_TRACE(std::to_string(beams) + " beams of the radius " + std::to_string(radius));
        ExpectNoMechanism(Cantilever(beams, radius, firstClamped));
      }
    }
  }
}

// The same chains without their supports are named, however long they are.
TEST(FindMechanisms, NameALongChainWithoutSupports) {
  for (const int beams : {100, 500, 1500}) {
    for (const double radius : {0.5, 0.01}) {
      ModelText model = Cantilever(beams, radius, true);
      model.restraints.clear();
      const MechanismReport report = Find(model);
      ASSERT_EQ(report.mechanisms.size(), 1U) << ListMechanisms(report);
      EXPECT_EQ(report.mechanisms[0].motions.size(), 6U);
    }
  }
}

// An oblique strip of 2 x 1, the half at the support with E, the other with `ratio` E.
ModelText Strip(double thickness, double ratio, bool triangles, bool softHeld) {
  ModelText model;
  model.materials = {{2e11, 0.3, 0.0}, {2e11 * ratio, 0.3, 0.0}};
  model.thicknesses = {thickness};
  constexpr int N = 8, M = 4;
  for (int i = 0; i <= N; ++i) {
    for (int j = 0; j <= M; ++j) {
      const double x = 2.0 * i / N;
      model.nodes.push_back({0.8 * x, 1.0 * j / M, 0.6 * x});
    }
  }
  for (int i = 0; i < N; ++i) {
    for (int j = 0; j < M; ++j) {
      const int a = i * (M + 1) + j, b = a + M + 1, material = i < N / 2 ? 0 : 1;
      if (triangles) {
        model.shells3.push_back({{a, b, b + 1}, material, 0});
        model.shells3.push_back({{a, b + 1, a + 1}, material, 0});
      } else {
        model.shells4.push_back({{a, b, b + 1, a + 1}, material, 0});
      }
    }
  }
  for (int j = 0; j <= M; ++j) {
    model.restraints.push_back({(softHeld ? 0 : N) * (M + 1) + j, {1, 1, 1, 1, 1, 1}});
  }
  return model;
}

// Soft plates that carry stiff ones, and stiff ones that carry soft ones, thin and thick: never a
// mechanism. Thick ones have no finding at all.
TEST(FindMechanisms, HasNothingAgainstStiffnessRatios) {
  for (const double ratio : {1.0, 1e4, 1e6, 1e8}) {
    for (const double thickness : {0.1, 0.02, 0.005, 0.0005}) {
      for (const bool triangles : {false, true}) {
        for (const bool softHeld : {false, true}) {
          SCOPED_TRACE("ratio " + std::to_string(ratio) + ", t = " + std::to_string(thickness));
          const MechanismReport report = Find(Strip(thickness, ratio, triangles, softHeld));
          for (const Mechanism& mechanism : report.mechanisms) {
            EXPECT_EQ(mechanism.kind, MechanismKind::Soft) << ListMechanisms(report);
          }
          if (!softHeld || thickness > 0.01 || ratio < 1e6) {
            EXPECT_TRUE(report.mechanisms.empty()) << ListMechanisms(report);
          }
        }
      }
    }
  }
}

// A thin soft strip under a stiff one at a ratio of 1e8: rounding errors of the displacements are
// 14 % with t = 0.005 and triangles, by a solution in long double.
TEST(FindMechanisms, WarnWhereRoundingSpoilsTheDisplacements) {
  const CheckReport report = CheckDeep(Strip(0.005, 1e8, true, true));
  ASSERT_FALSE(report.findings.findings.empty());
  for (const Finding& finding : report.findings.findings) EXPECT_EQ(finding.code, "K311");
}

// The same with the support gone is a mechanism again, at every ratio.
TEST(FindMechanisms, NameTheStripsWithoutSupports) {
  for (const double ratio : {1e-8, 1e-4, 1.0, 1e4, 1e8}) {
    for (const double thickness : {0.1, 0.005, 0.0005}) {
      for (const bool triangles : {false, true}) {
        SCOPED_TRACE("ratio " + std::to_string(ratio) + ", t = " + std::to_string(thickness));
        ModelText model = Strip(thickness, ratio, triangles, true);
        model.restraints.clear();
        const MechanismReport report = Find(model);
        ASSERT_EQ(report.mechanisms.size(), 1U) << ListMechanisms(report);
        // Where very thin plates hang on others 1e8 times as stiff, rounding hides that it is none
        // but a mechanism; the warning then says that nothing is right. And some of the six motions
        // are hidden where the ratio is less.
        if (ratio > 1e-5 || thickness > 0.001) {
          EXPECT_EQ(report.mechanisms[0].kind, MechanismKind::Motion);
        } else {
          EXPECT_GT(report.mechanisms[0].error, 0.1);
        }
        if (ratio >= 1.0 || thickness > 0.01) {
          EXPECT_EQ(report.mechanisms[0].motions.size(), 6U);
        }
      }
    }
  }
}

// A plate in a bad order that may turn about its side as about a hinge: whichever order is taken,
// the same nodes move in the same way, and the supports do not.
TEST(FindMechanismsReordered, GivesTheNumbersOfTheModel) {
  constexpr int N = 6, Step = 5, Count = (N + 1) * (N + 1);  // Step and Count have no divisor
  ModelText model =
      korvex::test::BuildGrid(N, N, korvex::test::Cells::Quads, [](double s, double t) {
        return korvex::test::Point3{800.0 * s, 600.0 * t, 0.0};
      });
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.thicknesses = {10.0};
  for (int i = 0; i <= N; ++i) model.restraints.push_back({i, {1, 1, 1, 0, 0, 0}});
  for (int i = 0; i < Count; ++i) model.restraints.push_back({i, {0, 0, 0, 0, 0, 1}});
  const auto place = [&](int node) { return node * Step % Count; };
  const auto nodes = model.nodes;
  for (int i = 0; i < Count; ++i) {
    model.nodes[static_cast<std::size_t>(place(i))] = nodes[static_cast<std::size_t>(i)];
  }
  for (auto& shell : model.shells4) {
    for (int& node : shell.nodes) node = place(node);
  }
  for (auto& restraint : model.restraints) restraint.node = place(restraint.node);

  const korvex::ModelTables tables = Check(model).model.tables;
  MechanismReport given, reordered;
  FindMechanisms(tables, given);
  FindMechanismsReordered(tables, reordered);
  ASSERT_EQ(given.mechanisms.size(), 1U) << ListMechanisms(given);
  ASSERT_EQ(reordered.mechanisms.size(), 1U) << ListMechanisms(reordered);
  const Mechanism &a = given.mechanisms[0], &b = reordered.mechanisms[0];
  EXPECT_EQ(a.nodes, b.nodes);
  EXPECT_EQ(std::count(b.nodes.begin(), b.nodes.end(), b.node), 1);
  for (std::size_t k = 0; k < b.nodes.size(); ++k) {
    const auto node = static_cast<std::size_t>(b.nodes[k]);
    // It turns about x by 1 where it moves along z by y: the roundings of the solution.
    EXPECT_NEAR(b.displacements[k][2], b.displacements[k][3] * model.nodes[node][1], 1e-6) << k;
  }
}

// Where K301 names the part, the deep check does not name it again.
TEST(CheckMechanisms, LeaveWholePartsToTheSupports) {
  ModelText model = Cantilever(20, 0.1, true);
  model.restraints.clear();
  model.forces = {{3, {1.0, 0, 0, 0, 0, 0}}};
  CheckReport report = Check(model);
  CheckMechanisms(false, report.model, report.findings);
  SortFindings(report.findings);
  ExpectOnly(report, AtNode("K301", 0));
}

TEST(CheckMechanisms, NameAnElementWhoseStiffnessIsNotANumber) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice = MakeDice(seed + 6000);
    ModelText model = MakeGoodModel(seed);
    ModelText::Beam beam;  // its orientation vector is along its axis
    beam.node1 = RollNode(model, dice);
    beam.node2 = (beam.node1 + 1) % static_cast<int>(model.nodes.size());
    for (std::size_t i = 0; i < 3; ++i) {
      beam.orientation[i] = model.nodes[static_cast<std::size_t>(beam.node2)][i] -
                            model.nodes[static_cast<std::size_t>(beam.node1)][i];
    }
    model.beams.push_back(beam);
    CheckReport report = CheckDeep(model);
    Expected expected;
    expected.code = "K312";
    expected.table = "NELEM_B";
    expected.row = static_cast<int>(model.beams.size()) - 1;
    if (report.findings.findings.empty()) continue;  // rounding left a cross product
    ExpectOnly(report, expected);
  }
}

TEST(CheckMechanisms, CountsBeyondThirty) {
  Dice dice = MakeDice(1);
  ModelText model = Cantilever(20, 0.1, true);
  for (int k = 0; k < 40; ++k) HangNode(RollInteger(dice, 0, 20), dice, model);
  const MechanismReport report = Find(model);
  EXPECT_EQ(report.mechanisms.size(), 30U);
  EXPECT_TRUE(report.more);
}

// A star: every node is coupled with node 0, 100,000 nodes, a matrix of 1.4 TB.
TEST(CheckMechanisms, SayWhereMemoryIsTooSmall) {
  ModelText model = Cantilever(1, 0.1, true);
  constexpr int Nodes = 100000;
  for (int k = 2; k < Nodes; ++k) {
    model.nodes.push_back({1.0 * k, 1.0, 0.0});
    ModelText::Beam beam;
    beam.node1 = 0;
    beam.node2 = k;
    beam.BeamSecType = korvex::BeamSecTypeC;
    model.beams.push_back(beam);
  }
  CheckReport report = CheckDeep(model);
  EXPECT_TRUE(report.findings.findings.empty());
  ASSERT_EQ(report.model.notChecked.size(), 1U);
  EXPECT_NE(report.model.notChecked[0].find("Not enough memory"), std::string::npos);
}

// Anything may stand in the tables.
TEST(CheckMechanisms, TakeAnyTables) {
  MechanismReport report;
  FindMechanisms({}, report);
  EXPECT_TRUE(report.mechanisms.empty());
  ModelText model = Cantilever(3, 0.1, true);
  model.beams[1].node2 = 99;
  FindMechanisms(Check(model).model.tables, report);
  EXPECT_NE(report.notExamined, "");
  for (const double odd : {1e300, -1e-300, 0.0, -2e11}) {
    model = Cantilever(3, 0.1, true);
    model.materials[0][0] = odd;
    FindMechanisms(Check(model).model.tables, report);
    model = Cantilever(3, 0.1, true);
    model.nodes[2] = {odd, odd, odd};
    FindMechanisms(Check(model).model.tables, report);
  }
}

}  // namespace
}  // namespace kvx::test
