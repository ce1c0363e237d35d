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

void Reverse(int row, ModelText& model) {
  const auto& nodes = model.shells4[static_cast<std::size_t>(row)].nodes;
  ReverseShell({true, row, {nodes.begin(), nodes.end()}}, model);
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
            "direction opposite to that on the shells around them.");
  EXPECT_EQ(found[0].remedy, "Write the nodes of these shells in the opposite order.");
}

// A plate of 6 x 6 with one reversed shell, 20; shells 0 to 19 have the pressure q, shell 20 has
// q20.
Finding NormalsOfPressedPlate(double q, double q20) {
  ModelText model = MakePlate(6);
  for (int row = 0; row < 20; ++row) model.shell4Loads.push_back({row, {q, q, q}});
  model.shell4Loads.push_back({20, {0.0, q20, 0.0}});
  Reverse(20, model);
  const std::vector<Finding> found = NormalsOf(Check(model));
  EXPECT_EQ(found.size(), 1U);
  return found.empty() ? Finding{} : found[0];
}

TEST(OppositeNormals, SayWhatThePressureOnOneShellDoes) {
  const std::string at = "1 of 36 shells of the patch at (250, 350, 0) has its normal ";
  const std::string reverse = "Write the nodes of this shell in the opposite order.";
  Finding found = NormalsOfPressedPlate(-0.1, 0.0);
  EXPECT_EQ(found.message,
            at + "reversed: four-node shell 20; its upper and lower faces are swapped.");
  EXPECT_EQ(found.remedy, reverse);
  found = NormalsOfPressedPlate(-0.1, -0.1);
  EXPECT_EQ(found.message, at + "reversed: four-node shell 20; pressure acts on it, in the "
                                "direction opposite to that on the shells around it.");
  EXPECT_EQ(found.remedy, reverse);
  // Whoever has turned the sign round already would lose the load by turning the nodes alone.
  found = NormalsOfPressedPlate(-0.1, 0.1);
  EXPECT_EQ(found.message, at + "reversed: four-node shell 20; pressure acts on it with the "
                                "opposite sign, so in the same direction as on the shells around "
                                "it.");
  EXPECT_EQ(found.remedy,
            "Write the nodes of this shell in the opposite order, and change the sign of its "
            "pressure.");
  // Only the reversed shell is loaded: it may be the one that is right.
  found = NormalsOfPressedPlate(0.0, 0.1);
  EXPECT_EQ(found.message, at + "opposite to the others: four-node shell 20; pressure acts on it "
                                "and on none of the others.");
  EXPECT_EQ(found.remedy,
            "Make the normals agree. The side with the pressure decides which is right: if the "
            "pressure acts as meant, write the nodes of the other 35 shells in the opposite order; "
            "if not, those of this shell.");
  EXPECT_EQ(found.rows, Numbers{20});
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

// A deck of 4 x 4 and frames below both of its ends, both with their normals along +x: at
// x = 400 they point outwards as the deck's do, at x = 0 inwards.
ModelText MakeDeckWithFrames() {
  ModelText model = MakePlate(4);
  for (const int i : {0, 4}) {
    const int first = static_cast<int>(model.nodes.size());
    for (int j = 0; j <= 4; ++j) model.nodes.push_back({100.0 * i, 100.0 * j, -100.0});
    for (int j = 0; j < 4; ++j) {
      model.shells4.push_back({{5 * j + i, first + j, first + j + 1, 5 * (j + 1) + i}, 0, 0});
    }
  }
  return model;
}

void Press(int first, int end, double q, ModelText& model) {
  for (int row = first; row < end; ++row) model.shell4Loads.push_back({row, {q, q, q}});
}

// One hint, and only if pressure of one sign acts on both plates.
TEST(OppositeNormals, AcrossASharpFoldAreAHintUnderPressureOnly) {
  ModelText model = MakeDeckWithFrames();
  EXPECT_TRUE(NormalsOf(Check(model)).empty());
  Press(0, 16, 0.1, model);
  EXPECT_TRUE(NormalsOf(Check(model)).empty());
  ModelText frames = MakeDeckWithFrames();
  Press(16, 24, 0.1, frames);
  EXPECT_TRUE(NormalsOf(Check(frames)).empty());
  ModelText meant = model;  // all pressures from inside
  Press(16, 20, -0.1, meant);
  Press(20, 24, 0.1, meant);
  EXPECT_TRUE(NormalsOf(Check(meant)).empty());
  Press(16, 24, 0.1, model);
  CheckReport report = Check(model);
  ExpectNone(report);
  std::vector<Finding> found = NormalsOf(report);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].severity, Severity::Hint);
  EXPECT_EQ(found[0].rows, (Numbers{0, 16}));
  EXPECT_EQ(found[0].message,
            "four-node shell 0 at (50, 50, 0) and four-node shell 16 at (0, 50, -50) meet at a "
            "sharp fold, and their normals are on opposite sides of it: pressure acts on one of "
            "them from inside the corner, on the other one from outside; so it is at 4 edges "
            "altogether.");
  EXPECT_EQ(found[0].remedy, "That may be meant: look whether the pressures act as meant.");
}

// A reversed shell at a fold that agrees otherwise is told once.
TEST(OppositeNormals, AreNotAlsoAHintWhereTheShellIsNamed) {
  ModelText model = MakeDeckWithFrames();
  for (int row = 16; row < 20; ++row) Reverse(row, model);
  Press(0, 24, 0.1, model);
  EXPECT_TRUE(NormalsOf(Check(model)).empty());
  Reverse(17, model);
  const std::vector<Finding> found = NormalsOf(Check(model));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].rows, Numbers{17});
  EXPECT_EQ(found[0].severity, Severity::Warning);
}

// A frame below a plate, where pressure acts on all: any normals of the frame are right.
TEST(OppositeNormals, OfAFrameBelowAPlateAreNotCompared) {
  for (const bool isReversed : {false, true}) {
    ModelText model = MakePlate(2);
    const int first = static_cast<int>(model.nodes.size());
    for (int j = 0; j <= 2; ++j) model.nodes.push_back({100.0, 100.0 * j, -100.0});
    for (int j = 0; j < 2; ++j) {
      model.shells4.push_back({{3 * j + 1, first + j, first + j + 1, 3 * j + 4}, 0, 0});
      if (isReversed) Reverse(4 + j, model);
    }
    Press(0, 6, 0.1, model);
    EXPECT_TRUE(NormalsOf(Check(model)).empty());
  }
}

// A strip of one shell and, from its right edge on, one shell at each of these slopes (degrees).
ModelText MakeFan(const std::vector<double>& slopes) {
  ModelText model = MakePlate(1);
  for (const double slope : slopes) {
    const double angle = slope * std::acos(-1.0) / 180.0;
    const int first = static_cast<int>(model.nodes.size());
    for (const double y : {0.0, 100.0}) {
      model.nodes.push_back({100.0 + 100.0 * std::cos(angle), y, 100.0 * std::sin(angle)});
    }
    model.shells4.push_back({{1, first, first + 1, 3}, 0, 0});
  }
  return model;
}

// At an edge of three and more shells the one that runs on within 20 degrees counts, if it is
// alone.
TEST(OppositeNormals, AreComparedWithTheShellThatRunsOn) {
  const auto find = [](const std::vector<double>& slopes) {
    ModelText model = MakeFan(slopes);
    Reverse(1, model);
    return NormalsOf(Check(model));
  };
  ASSERT_EQ(find({0.0, 90.0}).size(), 1U);
  EXPECT_EQ(find({0.0, 90.0})[0].rows, Numbers{1});
  EXPECT_EQ(find({15.0, -90.0}).size(), 1U);
  // The webs above and below run on in each other, too, and go the same way from the edge.
  EXPECT_EQ(find({0.0, 90.0, -90.0}).size(), 2U);
  EXPECT_EQ(find({0.0, 25.0}).size(), 1U);
  EXPECT_TRUE(find({25.0, 90.0}).empty());
}

// Two branches at 5 degrees: either may be the one that runs on. Any shell reversed, any order.
TEST(OppositeNormals, AreNotComparedWhereTwoShellsMayRunOn) {
  for (const std::vector<double>& slopes : {std::vector<double>{5.0, -5.0}, {5.0, -5.0, 90.0}}) {
    for (int row = 0; row < 3; ++row) {
      ModelText model = MakeFan(slopes);
      Reverse(row, model);
      EXPECT_TRUE(NormalsOf(Check(model)).empty());
      std::reverse(model.shells4.begin(), model.shells4.end());
      EXPECT_TRUE(NormalsOf(Check(model)).empty());
    }
  }
}

// So many shells at one edge are no joint of plates; each slope is far from the others.
TEST(OppositeNormals, AreNotComparedAmongAHeapOfShells) {
  for (const bool isHeap : {false, true}) {
    std::vector<double> slopes{0.0};
    for (int k = 0; k < (isHeap ? 15 : 14); ++k) slopes.push_back(30.0 + 8.0 * k);
    ModelText model = MakeFan(slopes);
    ModelText reversed = model;
    Reverse(1, reversed);
    EXPECT_TRUE(NormalsOf(Check(model)).empty());
    EXPECT_EQ(NormalsOf(Check(reversed)).size(), isHeap ? 0U : 1U);
  }
}

// A double bottom of 3 x 3 bays, each of 3 x 3 squares, the webs two squares high: bottom and tank
// top, floors at x = 0, 300, 600, 900, girders at the same y. Every bay ends at edges with three
// shells, or four where webs cross.
enum class Member { Bottom, Top, Floor, Girder };
struct DoubleBottom {
  ModelText model;
  struct Bay {
    Member member = Member::Bottom;
    int plate = 0;  // the number of the floor or girder
    int i = 0, j = 0;
    Numbers rows;
  };
  std::vector<Bay> bays;
};

constexpr int BaySquares = 3, Bays = 3, Squares = Bays * BaySquares, WebSquares = 2;

void AddBay(Member member, int plate, int bayI, int bayJ, DoubleBottom& grid) {
  const auto node = [](int i, int j, int k) { return (k * (Squares + 1) + j) * (Squares + 1) + i; };
  const auto corner = [&](int u, int v) {
    switch (member) {
      case Member::Bottom:
        return node(u, v, 0);
      case Member::Top:
        return node(u, v, WebSquares);
      case Member::Floor:
        return node(BaySquares * plate, u, v);
      default:
        return node(u, BaySquares * plate, v);
    }
  };
  const bool isWeb = member == Member::Floor || member == Member::Girder;
  DoubleBottom::Bay bay{member, plate, bayI, bayJ, {}};
  for (int b = 0; b < (isWeb ? WebSquares : BaySquares); ++b) {
    for (int a = 0; a < BaySquares; ++a) {
      const int u = BaySquares * bayI + a, v = isWeb ? b : BaySquares * bayJ + b;
      bay.rows.push_back(static_cast<int>(grid.model.shells4.size()));
      grid.model.shells4.push_back(
          {{corner(u, v), corner(u + 1, v), corner(u + 1, v + 1), corner(u, v + 1)}, 0, 0});
    }
  }
  grid.bays.push_back(bay);
}

DoubleBottom MakeDoubleBottom() {
  DoubleBottom grid;
  ModelText& model = grid.model;
  model = MakePlate(1);
  model.nodes.clear();
  model.shells4.clear();
  for (int k = 0; k <= WebSquares; ++k) {
    for (int j = 0; j <= Squares; ++j) {
      for (int i = 0; i <= Squares; ++i) model.nodes.push_back({100.0 * i, 100.0 * j, 100.0 * k});
    }
  }
  for (const Member member : {Member::Bottom, Member::Top}) {
    for (int j = 0; j < Bays; ++j) {
      for (int i = 0; i < Bays; ++i) AddBay(member, 0, i, j, grid);
    }
  }
  for (const Member member : {Member::Floor, Member::Girder}) {
    for (int plate = 0; plate <= Bays; ++plate) {
      for (int i = 0; i < Bays; ++i) AddBay(member, plate, i, 0, grid);
    }
  }
  for (const DoubleBottom::Bay& bay : grid.bays) {
    if (bay.member != Member::Bottom) continue;
    for (const int row : bay.rows) model.shell4Loads.push_back({row, {0.1, 0.1, 0.1}});
  }
  return grid;
}

// Each plate of the good grid has its normals as it likes: nothing is said, no hint either.
TEST(OppositeNormals, OfADoubleBottomMayDifferFromPlateToPlate) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    Dice dice = MakeDice(seed);
    DoubleBottom grid = MakeDoubleBottom();
    std::array<std::array<bool, 4>, 4> isReversed{};
    for (auto& member : isReversed) {
      for (bool& plate : member) plate = RollYes(dice, 0.5);
    }
    for (const DoubleBottom::Bay& bay : grid.bays) {
      const auto& member = isReversed[static_cast<std::size_t>(bay.member)];
      if (!member[static_cast<std::size_t>(bay.plate)]) continue;
      for (const int row : bay.rows) Reverse(row, grid.model);
    }
    EXPECT_TRUE(NormalsOf(Check(grid.model)).empty());
  }
}

// Any bay of the bottom, the tank top, a floor or a girder, all 9 + 9 + 12 + 12 of them.
TEST(OppositeNormals, NameEachBayOfADoubleBottom) {
  const DoubleBottom grid = MakeDoubleBottom();
  ASSERT_EQ(grid.bays.size(), 42U);
  for (const DoubleBottom::Bay& bay : grid.bays) {
    ModelText model = grid.model;
    for (const int row : bay.rows) Reverse(row, model);
    const std::vector<Finding> found = NormalsOf(Check(model));
    ASSERT_EQ(found.size(), 1U);
    const bool isBottom = bay.member == Member::Bottom;
    EXPECT_EQ(found[0].severity, isBottom ? Severity::Warning : Severity::Hint);
    EXPECT_EQ(found[0].rows, bay.rows);
    EXPECT_EQ(found[0].message.find("9 of 81 shells") == 0, isBottom || bay.member == Member::Top);
    EXPECT_EQ(found[0].message.find("pressure acts on all of them, in the direction opposite") !=
                  std::string::npos,
              isBottom);
  }
}

// A single shell is a warning, with pressure or without.
TEST(OppositeNormals, NameEachShellOfADoubleBottom) {
  const DoubleBottom grid = MakeDoubleBottom();
  for (int row = 0; row < static_cast<int>(grid.model.shells4.size()); row += 7) {
    ModelText model = grid.model;
    Reverse(row, model);
    const std::vector<Finding> found = NormalsOf(Check(model));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].severity, Severity::Warning);
    EXPECT_EQ(found[0].rows, Numbers{row});
  }
}

// The four bays with odd i + j, of nine.
TEST(OppositeNormals, NameEverySecondBayOfADoubleBottom) {
  for (const Member member : {Member::Bottom, Member::Top}) {
    DoubleBottom grid = MakeDoubleBottom();
    Numbers rows;
    for (const DoubleBottom::Bay& bay : grid.bays) {
      if (bay.member != member || (bay.i + bay.j) % 2 == 0) continue;
      for (const int row : bay.rows) Reverse(row, grid.model);
      rows.insert(rows.end(), bay.rows.begin(), bay.rows.end());
    }
    const std::vector<Finding> found = NormalsOf(Check(grid.model));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].rows, rows);
  }
}

// The load is on one bay, and this bay is the odd one: it shall not be told to turn its load round.
TEST(OppositeNormals, LetTheLoadedBayOfADoubleBottomDecide) {
  DoubleBottom grid = MakeDoubleBottom();
  const Numbers rows = grid.bays[4].rows;
  grid.model.shell4Loads.clear();
  for (const int row : rows) {
    Reverse(row, grid.model);
    grid.model.shell4Loads.push_back({row, {0.1, 0.1, 0.1}});
  }
  const std::vector<Finding> found = NormalsOf(Check(grid.model));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].rows, rows);
  EXPECT_NE(found[0].message.find("all of them and on none of the others."), std::string::npos);
  EXPECT_NE(found[0].remedy.find("nodes of the other 72 shells in the opposite order"),
            std::string::npos);
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
  EXPECT_NE(found[0].message.find("four-node shell 7; three-node shell 0;"), std::string::npos)
      << found[0].message;
  EXPECT_STREQ(found[0].table, "NELEM_S_4ND");
}

}  // namespace
}  // namespace kvx::test
