// What a map file gives to a mesh, and what it refuses.
#include "mesh/import_map.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "mesh/equivalent_loads.h"
#include "mesh/import_models.h"
#include "support/expect_stop.h"

namespace kvx::test {
namespace {

using korvex::Vector3;
using Fixed = std::array<std::int32_t, 6>;
using Force = std::array<double, 6>;

ImportModel Mapped(ImportModel model, const std::string& map, ImportReport& report) {
  ApplyImportMap(map, "map.toml", model, report);
  return model;
}

// The plate with a map, which has nothing to report.
ImportModel Mapped(const std::string& map) {
  ImportReport report;
  ImportModel model = Mapped(StiffenedPlate(), map, report);
  EXPECT_EQ(ListEntries(report), "");
  return model;
}

void ExpectRefusal(const ImportModel& model, const std::string& map, const std::string& text) {
  korvex::test::ExpectStop(
      [&] {
        ImportReport report;
        Mapped(model, map, report);
      },
      "\"map.toml\", " + text);
}

void ExpectRefusal(const std::string& map, const std::string& text) {
  ExpectRefusal(StiffenedPlate(), map, text);
}

constexpr const char* Steel = "[material.steel]\nE = 206000\npoisson = 0.3\ndensity = 7.85e-9\n";

TEST(ImportMap, GivesPropertiesToGroups) {
  const ImportModel model = Mapped(std::string(Steel) + R"(
[group.deck]
thickness = 12
material = "steel"
[group.stiffeners]
section = { type = "T", Hw = 200, Tw = 8, Bf = 90, Tf = 11 }
orientation = [0, 0.5, -1]
offset = 6
material = "steel"
)");
  ASSERT_EQ(model.materials.size(), 1U);
  EXPECT_EQ(model.materials[0].name, "steel");
  EXPECT_EQ(model.materials[0].values.E, 206000);
  EXPECT_EQ(model.materials[0].values.Mu, 0.3);
  EXPECT_EQ(model.materials[0].values.Density, 7.85e-9);
  ASSERT_EQ(model.thicknesses.size(), 1U);
  EXPECT_EQ(model.thicknesses[0].name, "deck");
  EXPECT_EQ(model.thicknesses[0].TK, 12);
  ASSERT_EQ(model.sections.size(), 1U);
  const ImportSection& section = model.sections[0];
  EXPECT_EQ(section.name, "stiffeners");
  EXPECT_EQ(section.type, korvex::BeamSecTypeT);
  EXPECT_EQ(section.plates.Hw, 200);
  EXPECT_EQ(section.plates.Tw, 8);
  EXPECT_EQ(section.plates.Bf, 90);
  EXPECT_EQ(section.plates.Tf, 11);
  for (const ImportShell& shell : model.shells) {
    EXPECT_EQ(shell.thickness, 0);
    EXPECT_EQ(shell.material, 0);
  }
  for (const ImportBeam& beam : model.beams) {
    EXPECT_EQ(beam.section, 0);
    EXPECT_EQ(beam.material, 0);
    EXPECT_EQ(beam.orientation, (Vector3{0, 0.5, -1}));
    EXPECT_EQ(beam.BeamSecOz, 6);
    EXPECT_FALSE(beam.BeamSecMirrored);
  }
  EXPECT_TRUE(model.cases.empty());
  EXPECT_TRUE(model.supports.empty());
}

TEST(ImportMap, KnowsFourKindsOfSections) {
  const auto sectionOf = [](const std::string& section) {
    return Mapped("[group.stiffeners]\nsection = " + section + "\n").sections.at(0);
  };
  const ImportSection l = sectionOf(R"({ type = "L", Hw = 1, Tw = 2, Bf = 3, Tf = 4 })");
  EXPECT_EQ(l.type, korvex::BeamSecTypeL);
  EXPECT_EQ(l.plates.Hw, 1);
  EXPECT_EQ(l.plates.Tw, 2);
  EXPECT_EQ(l.plates.Bf, 3);
  EXPECT_EQ(l.plates.Tf, 4);
  const ImportSection bar = sectionOf(R"({ type = "bar", Hw = 1, Tw = 2 })");
  EXPECT_EQ(bar.type, korvex::BeamSecTypeT);  // without a flange a flat bar: docs/model-file.md
  EXPECT_EQ(bar.plates.Hw, 1);
  EXPECT_EQ(bar.plates.Tw, 2);
  EXPECT_EQ(bar.plates.Bf, 0);
  EXPECT_EQ(bar.plates.Tf, 0);
  const ImportSection tube = sectionOf(R"({ type = "tube", R = 150, T = 10 })");
  EXPECT_EQ(tube.type, korvex::BeamSecTypeC);
  EXPECT_EQ(tube.tube.R, 150);
  EXPECT_EQ(tube.tube.T, 10);
  EXPECT_TRUE(Mapped("[group.stiffeners]\nmirrored = true\n"
                     "section = { type = \"L\", Hw = 1, Tw = 2, Bf = 3, Tf = 4 }\n")
                  .beams[1]
                  .BeamSecMirrored);
  ExpectRefusal("[group.stiffeners]\nmirrored = true\nsection = { type = \"bar\", Hw = 1, Tw = 2 }",
                "line 2: group \"stiffeners\": only an L section can be mirrored.");
}

TEST(ImportMap, RestraintsHoldInAllCases) {
  const std::string map =
      "[group.corner]\nrestraint = \"pinned\"\n[group.left]\nrestraint = [0, 1, 0, 1, 0, 1]\n";
  ImportModel model = Mapped(map);
  ASSERT_EQ(model.supports.size(), 1U);
  ASSERT_EQ(model.supports[0].restraints.size(), 5U);
  EXPECT_EQ(model.supports[0].restraints[0].node, 5);
  EXPECT_EQ(model.supports[0].restraints[0].fixed, (Fixed{1, 1, 1, 0, 0, 0}));
  EXPECT_EQ(model.supports[0].restraints[1].node, 0);
  EXPECT_EQ(model.supports[0].restraints[1].fixed, (Fixed{0, 1, 0, 1, 0, 1}));
  EXPECT_EQ(Mapped("[group.corner]\nrestraint = \"fixed\"\n").supports[0].restraints[0].fixed,
            (Fixed{1, 1, 1, 1, 1, 1}));

  // A deck with two sets, one of three cases without any.
  model = CompletePlate();
  model.supports = {{"SPC 1", {{{1, 0, 0, 0, 0, 0}, 0}}}, {"SPC 2", {}}};
  model.cases.resize(3);
  model.cases[0].supports = 0;
  model.cases[1].supports = -1;
  model.cases[2].supports = 1;
  ImportReport report;
  model = Mapped(model, "[group.corner]\nrestraint = \"fixed\"\n", report);
  ASSERT_EQ(model.supports.size(), 3U);
  EXPECT_EQ(model.supports[0].restraints.size(), 2U);
  EXPECT_EQ(model.supports[1].restraints.size(), 1U);
  EXPECT_EQ(model.supports[2].name, "map");
  EXPECT_EQ(model.supports[2].restraints.size(), 1U);
  EXPECT_EQ(model.cases[0].supports, 0);
  EXPECT_EQ(model.cases[1].supports, 2);
  EXPECT_EQ(model.cases[2].supports, 1);
}

TEST(ImportMap, LoadsGoToTheOnlyCase) {
  const ImportModel model = Mapped(R"(
acceleration = [0, 0, -9810]
[group.deck]
pressure = -0.25
[group.corner]
force = [1, 2, 3]
restraint = "fixed"
[group.left]
total_force = [0, 0, -8, 4, 0, 0]
)");
  ASSERT_EQ(model.cases.size(), 1U);
  const ImportCase& loads = model.cases[0];
  EXPECT_EQ(loads.name, "");
  EXPECT_EQ(loads.supports, 0);
  EXPECT_TRUE(loads.hasAcceleration);
  EXPECT_EQ(loads.acceleration, (Vector3{0, 0, -9810}));
  ASSERT_EQ(loads.pressures.size(), 2U);
  EXPECT_EQ(loads.pressures[1].shell, 1);
  EXPECT_EQ(loads.pressures[1].q, (std::array<double, 3>{-0.25, -0.25, -0.25}));
  ASSERT_EQ(loads.forces.size(), 5U);
  EXPECT_EQ(loads.forces[0].node, 5);
  EXPECT_EQ(loads.forces[0].components, (Force{1, 2, 3, 0, 0, 0}));
  for (std::size_t k = 1; k < 5; ++k) {
    EXPECT_EQ(loads.forces[k].components, (Force{0, 0, -2, 1, 0, 0}));  // a quarter for each
  }
  EXPECT_EQ(loads.forces[4].node, 4);
}

TEST(ImportMap, CasesOfAMeshAreThoseThatTheMapNames) {
  const ImportModel model = Mapped(R"(
[case.gravity]
acceleration = [0, 0, -9810]
[case.idle]
[group.deck]
pressure = 1
case = "wind"
[group.corner]
force = [1, 0, 0]
case = "gravity"
restraint = "fixed"
[group.left]
pressure = 2
case = "wind"
)");
  ASSERT_EQ(model.cases.size(), 3U);
  EXPECT_EQ(model.cases[0].name, "gravity");
  EXPECT_TRUE(model.cases[0].hasAcceleration);
  EXPECT_EQ(model.cases[0].forces.size(), 1U);
  EXPECT_EQ(model.cases[1].name, "idle");
  EXPECT_EQ(model.cases[2].name, "wind");
  EXPECT_EQ(model.cases[2].pressures.size(), 3U);
  for (const ImportCase& each : model.cases) EXPECT_EQ(each.supports, 0);
}

TEST(ImportMap, LoadsBesideThoseOfADeck) {
  ImportModel deck = CompletePlate();
  deck.cases.resize(1);
  deck.cases[0].forces.push_back({4, {1, 0, 0, 0, 0, 0}});
  ImportReport report;
  ImportModel model = Mapped(deck, "[group.deck]\npressure = 1\n", report);
  ASSERT_EQ(model.cases.size(), 1U);
  EXPECT_EQ(model.cases[0].name, "");
  EXPECT_EQ(model.cases[0].pressures.size(), 2U);
  // With a second case the deck's own needs a name.
  model = Mapped(deck, "[case.wind]\n[group.deck]\npressure = 1\ncase = \"wind\"\n", report);
  ASSERT_EQ(model.cases.size(), 2U);
  EXPECT_EQ(model.cases[0].name, "deck");
  EXPECT_TRUE(model.cases[0].pressures.empty());
  EXPECT_EQ(model.cases[1].name, "wind");
  EXPECT_EQ(model.cases[1].pressures.size(), 2U);
  // A slip in a name makes no new case.
  deck.cases[0].name = "subcase 1";
  ExpectRefusal(deck, "[group.deck]\npressure = 1\ncase = \"subcase1\"\n",
                "line 3: group \"deck\": there is no case \"subcase1\". A new one is declared by "
                "[case.subcase1]. Did you mean \"subcase 1\"?");
}

TEST(ImportMap, LoadsNameTheirCaseWhereThereAreSeveral) {
  ExpectRefusal(
      "[group.deck]\npressure = 1\ncase = \"wind\"\n[group.left]\npressure = 2\n"
      "[case.snow]\n",
      "line 5: group \"left\" has loads, and there are several cases: say whose they "
      "are. There are: \"snow\", \"wind\". Write it as in: case = \"snow\"");
  ExpectRefusal("acceleration = [0, 0, 1]\n[case.a]\n[case.b]\n",
                "line 1: the map has loads, and there are several cases: say whose they are. There "
                "are: \"a\", \"b\". Write it as in: case = \"a\"");
}

TEST(ImportMap, LineLoadsActAlongTheWebAndEdgeLoadsInGlobalAxes) {
  const std::string beams =
      "section = { type = \"bar\", Hw = 1, Tw = 1 }\norientation = [0, 0, -1]\n";
  const ImportModel web = Mapped("[group.stiffeners]\nline_load = -2.5\n" + beams);
  ASSERT_EQ(web.cases[0].lineLoads.size(), 2U);
  EXPECT_EQ(web.cases[0].lineLoads[1].element, 1);
  EXPECT_EQ(web.cases[0].lineLoads[1].q, (std::array<double, 2>{-2.5, -2.5}));
  EXPECT_TRUE(web.cases[0].forces.empty());

  // Lines without a section: half of 2 q at each end, so that the middle node gets it twice.
  const ImportModel edge = Mapped("[group.stiffeners]\nedge_load = [3, 0, -4]\n");
  EXPECT_TRUE(edge.cases[0].lineLoads.empty());
  ASSERT_EQ(edge.cases[0].forces.size(), 4U);
  constexpr std::array<std::int32_t, 4> Nodes{0, 1, 1, 2};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(edge.cases[0].forces[k].node, Nodes[k]);
    EXPECT_EQ(edge.cases[0].forces[k].components, (Force{3, 0, -4, 0, 0, 0}));
  }

  // Beams: -4 along global z is 4 along the web, and 3 along the axis goes to the ends.
  const ImportModel beam = Mapped("[group.stiffeners]\nedge_load = [3, 0, -4]\n" + beams);
  ASSERT_EQ(beam.cases[0].lineLoads.size(), 2U);
  EXPECT_NEAR(beam.cases[0].lineLoads[0].q[0], 4, 1e-14);
  ASSERT_EQ(beam.cases[0].forces.size(), 4U);
  EXPECT_NEAR(beam.cases[0].forces[0].components[0], 3, 1e-14);
  EXPECT_NEAR(beam.cases[0].forces[0].components[2], 0, 1e-14);

  ExpectRefusal("[group.stiffeners]\nline_load = 1\n",
                "line 2: group \"stiffeners\": a line_load acts along the web, and CBAR 7001 has "
                "no orientation.");
  // Along the stiffeners themselves.
  ExpectRefusal("[group.stiffeners]\norientation = [1, 0, 0]\nline_load = 1\n",
                "line 3: group \"stiffeners\": a line_load acts along the web, and CBAR 7001 has "
                "an orientation parallel to its axis.");
}

// The sum of all loads of the only case about z and along it: the pressure's part by area.
double TotalZ(const ImportModel& model) {
  double sum = 0.0;
  for (const korvex::NodalForce& each : model.cases[0].forces) sum += each.components[2];
  for (const ImportPressure& each : model.cases[0].pressures) {
    const ImportShell& shell = model.shells[static_cast<std::size_t>(each.shell)];
    const Vector3 a =
        korvex::Subtract(PlaceOf(model, shell.nodes[1]), PlaceOf(model, shell.nodes[0]));
    const Vector3 b = korvex::Subtract(PlaceOf(model, shell.nodes[CornersOf(shell) - 1]),
                                       PlaceOf(model, shell.nodes[0]));
    const double area = korvex::Cross(a, b)[2] / (CornersOf(shell) == 3 ? 2.0 : 1.0);
    // On a rectangle or triangle the mean of a plane is that of these corners.
    const double mean = CornersOf(shell) == 3 ? (each.q[0] + each.q[1] + each.q[2]) / 3.0
                                              : (each.q[0] + each.q[2]) / 2.0;
    sum += area * mean;
  }
  return sum;
}

TEST(ImportMap, FlipTurnsNormalsButNotTheLoadsOfTheDeck) {
  ImportModel deck = CompletePlate();
  AddShell({1, 2, 4}, deck);
  deck.groups[0].shells.push_back(2);
  deck.cases.resize(1);
  // On the first square 1 + x + 3 y, on the second 2, on the triangle 5 + x - y.
  deck.cases[0].pressures = {{0, {1, 3, 9}}, {1, {2, 2, 2}}, {2, {7, 9, 5}}};
  const double before = TotalZ(deck);
  EXPECT_NEAR(before, 4 * 5 + 4 * 2 + 2 * 7, 1e-12);
  ImportReport report;
  const ImportModel model = Mapped(deck, "[group.deck]\nflip = true\n", report);
  EXPECT_EQ(model.shells[0].nodes, (std::array<std::int32_t, 4>{0, 3, 4, 1}));
  EXPECT_EQ(model.shells[2].nodes, (std::array<std::int32_t, 4>{1, 4, 2, -1}));
  ASSERT_EQ(model.cases[0].pressures.size(), 3U);
  // The values at the corners 0, 3, 4 of the square.
  const auto& q = model.cases[0].pressures[0].q;
  EXPECT_NEAR(q[0], -1, 1e-12);
  EXPECT_NEAR(q[1], -7, 1e-12);
  EXPECT_NEAR(q[2], -9, 1e-12);
  EXPECT_EQ(model.cases[0].pressures[2].q, (std::array<double, 3>{-7, -5, -9}));
  EXPECT_TRUE(model.cases[0].forces.empty());
  EXPECT_NEAR(TotalZ(model), before, 1e-12);
  // The map's own pressure acts along the normals as they are then: down. A group that does not
  // flip, or two that do, turn nothing and once.
  const ImportModel both = Mapped(CompletePlate(),
                                  "[group.deck]\nflip = true\npressure = 1\n[group.left]\nflip = "
                                  "true\n[group.corner]\n",
                                  report);
  EXPECT_NEAR(TotalZ(both), -8, 1e-12);
  EXPECT_EQ(Mapped(CompletePlate(), "[group.left]\nflip = false\n", report).shells[0].nodes,
            CompletePlate().shells[0].nodes);
  ExpectRefusal("[group.deck]\nflip = true\n[group.left]\nflip = false\n",
                "line 4: group \"left\" gives CQUAD4 4001 another \"flip\" than group \"deck\" in "
                "line 2.");
}

TEST(ImportMap, TurnedWebsKeepTheLoadsOfTheDeck) {
  // A load along the deck's web, +z: 1 to 3 over a length of 2.
  ImportModel deck = CompletePlate();
  deck.cases.resize(1);
  deck.cases[0].lineLoads = {{0, {1, 3}}, {1, {5, 5}}};
  ImportReport report;
  ImportModel model = Mapped(deck, "[group.stiffeners]\norientation = [0, 0, -1]\n", report);
  ASSERT_EQ(model.cases[0].lineLoads.size(), 2U);
  EXPECT_EQ(model.cases[0].lineLoads[0].q, (std::array<double, 2>{-1, -3}));
  EXPECT_TRUE(model.cases[0].forces.empty());
  // Across the new web it is nodal: the total is 4 + 10, along z.
  model = Mapped(deck, "[group.stiffeners]\norientation = [0, 1, 0]\n", report);
  EXPECT_TRUE(model.cases[0].lineLoads.empty());
  EXPECT_NEAR(TotalZ(model), 14, 1e-12);
  // The same web, given otherwise, changes no number.
  model = Mapped(deck, "[group.stiffeners]\norientation = [7, 0, 2]\n", report);
  EXPECT_EQ(model.cases[0].lineLoads[0].q, (std::array<double, 2>{1, 3}));
  // A load of a beam without a web, which no reader makes, is taken to follow the map's.
  ImportModel webless = deck;
  webless.beams[0].orientation = {};
  model = Mapped(webless, "[group.stiffeners]\norientation = [0, 1, 0]\n", report);
  ASSERT_EQ(model.cases[0].lineLoads.size(), 1U);
  EXPECT_EQ(model.cases[0].lineLoads[0].q, (std::array<double, 2>{1, 3}));
  // Beams that the map does not turn keep their numbers to the last digit.
  ImportModel many = deck;
  many.cases[0].lineLoads.clear();
  for (std::int32_t k = 2; k < 30; ++k) {
    AddBeam(0, 4, many);
    many.beams.back().orientation = {0.1 * k, 0.7, 1.0 / k};
    many.cases[0].lineLoads.push_back({k, {0.1, 0.3}});
  }
  model = Mapped(many, "[group.stiffeners]\norientation = [0, 1, 0]\n", report);
  ASSERT_EQ(model.cases[0].lineLoads.size(), 28U);
  for (const korvex::BeamLineLoad& each : model.cases[0].lineLoads) {
    EXPECT_EQ(each.q, (std::array<double, 2>{0.1, 0.3}));
  }
  // The map's own line load follows the map's web.
  model = Mapped(deck, "[group.stiffeners]\norientation = [0, 0, -1]\nline_load = 7\n", report);
  ASSERT_EQ(model.cases[0].lineLoads.size(), 4U);
  EXPECT_EQ(model.cases[0].lineLoads[2].q, (std::array<double, 2>{7, 7}));
}

// Ten flat strips round a quarter of a cylinder of radius 5 along x, normals inwards, a ring of ten
// beams along its edge x = 0, and nine beams along x where two strips meet.
ImportModel QuarterRing() {
  ImportModel model;
  constexpr int Strips = 10;
  const double step = std::acos(0.0) / Strips;
  for (int k = 0; k <= Strips; ++k) {
    for (const double x : {0.0, 2.0}) {
      AddNode(x, 5 * std::cos(k * step), 5 * std::sin(k * step), model);
    }
  }
  std::vector<std::int32_t> shells, beams;
  for (int k = 0; k < Strips; ++k) {
    const std::int32_t i = 2 * k;
    shells.push_back(AddShell({i, i + 1, i + 3, i + 2}, model));
    beams.push_back(AddBeam(i, i + 2, model));
  }
  for (int k = 1; k < Strips; ++k) beams.push_back(AddBeam(2 * k, 2 * k + 1, model));
  AddGroup("shell", shells, {}, model);
  AddGroup("frames", {}, beams, model);
  return model;
}

TEST(ImportMap, WebsFollowTheNormalsOfCurvedPlating) {
  const double step = std::acos(0.0) / 10;
  for (const double sign : {1.0, -1.0}) {
    ImportReport report;
    const ImportModel model =
        Mapped(QuarterRing(),
               "[group.frames]\norientation = \"" + std::string(sign > 0 ? "" : "-") + "normal\"\n",
               report);
    // x times the tangent (0, -sin, cos) is (0, -cos, -sin). Of a flat strip the angle is that of
    // its middle, where two meet the mean of both.
    for (std::size_t k = 0; k < 19; ++k) {
      const double angle =
          k < 10 ? (static_cast<double>(k) + 0.5) * step : static_cast<double>(k - 9) * step;
      const Vector3& v = model.beams[k].orientation;
      EXPECT_NEAR(v[0], 0, 1e-14) << k;
      EXPECT_NEAR(v[1], -sign * std::cos(angle), 1e-14) << k;
      EXPECT_NEAR(v[2], -sign * std::sin(angle), 1e-14) << k;
    }
  }
}

TEST(ImportMap, NormalsAreThoseOfTheSolver) {
  // A warped square: its normal is that of the corners 1, 2, 4. A shell without an area has none.
  ImportModel model = StiffenedPlate();
  model.nodes[4].z = 1;
  AddShell({0, 1, 1, 0}, model);
  AddGroup("first", {}, {0}, model);
  ImportReport report;
  model = Mapped(model, "[group.first]\norientation = \"normal\"\n", report);
  EXPECT_EQ(model.beams[0].orientation, (Vector3{0, 0, 1}));
}

TEST(ImportMap, WebsNeedNormalsThatAgree) {
  // A fold of 90 degrees along y = 0: normals +z and +y are 45 degrees off their mean.
  ImportModel model = StiffenedPlate();
  AddNode(0, 0, -2, model);
  AddNode(2, 0, -2, model);
  AddShell({0, 6, 7, 1}, model);
  ExpectRefusal(
      model, "[group.stiffeners]\norientation = \"normal\"\n",
      "line 2: group \"stiffeners\": CBAR 7001 lies between shells whose normals differ by "
      "more than 60 degrees. Flip some of them, or give its group a vector.");
  // Plates that look to opposite sides, in one plane.
  model = StiffenedPlate();
  AddBeam(4, 1, model);
  AddGroup("seam", {}, {2}, model);
  model.shells[1].nodes = {1, 4, 5, 2};
  ExpectRefusal(
      model, "[group.seam]\norientation = \"normal\"\n",
      "line 2: group \"seam\": CBAR 7003 lies between shells whose normals differ by more "
      "than 60 degrees. Flip some of them, or give its group a vector.");
  // Flipped in the same map, they agree.
  ImportReport report;
  AddGroup("right", {1}, {}, model);
  const ImportModel flipped =
      Mapped(model, "[group.seam]\norientation = \"normal\"\n[group.right]\nflip = true\n", report);
  EXPECT_EQ(flipped.beams[2].orientation, (Vector3{0, 0, 1}));
  // A diagonal is no edge.
  AddBeam(0, 4, model);
  AddGroup("diagonal", {}, {3}, model);
  ExpectRefusal(model, "[group.diagonal]\norientation = \"normal\"\n",
                "line 2: group \"diagonal\": CBAR 7004 lies on no edge of a shell, so it has no "
                "normal. Give its group a vector, as in: orientation = [0, 0, -1]");
}

TEST(ImportMap, SkipLeavesElementsOutAndReportsThem) {
  ImportModel deck = CompletePlate();
  deck.cases.resize(1);
  deck.cases[0].pressures = {{0, {1, 1, 1}}, {1, {2, 2, 2}}};
  deck.cases[0].lineLoads = {{0, {1, 1}}};
  ImportReport report;
  const ImportModel model =
      Mapped(deck, "[group.left]\nskip = true\n[group.stiffeners]\nskip = false\n", report);
  ASSERT_EQ(model.shells.size(), 1U);
  EXPECT_EQ(model.shells[0].number, 4002);
  EXPECT_EQ(model.beams.size(), 2U);
  EXPECT_EQ(model.groups[0].shells, (std::vector<std::int32_t>{0}));
  EXPECT_TRUE(model.groups[1].shells.empty());
  ASSERT_EQ(model.cases[0].pressures.size(), 1U);
  EXPECT_EQ(model.cases[0].pressures[0].q[0], 2);
  EXPECT_EQ(ListEntries(report),
            "left | no effect | its elements are left out, as the map says | 1 | \n"
            "loads | lost | loads on elements that the map leaves out | 1 | \n");
  // Beams; and what is left out gets nothing, so that nothing contradicts.
  ImportReport beams;
  const ImportModel plate = Mapped(deck, "[group.stiffeners]\nskip = true\n", beams);
  EXPECT_TRUE(plate.beams.empty());
  EXPECT_EQ(ListEntries(beams),
            "stiffeners | no effect | its elements are left out, as the map says | 2 | \n"
            "loads | lost | loads on elements that the map leaves out | 1 | \n");
  const ImportModel one = Mapped(
      deck, "[group.deck]\nthickness = 12\n[group.left]\nthickness = 10\nskip = true\n", report);
  EXPECT_EQ(one.shells.size(), 1U);
}

TEST(ImportMap, HoldsAgainstTheDeck) {
  ImportModel deck = CompletePlate();
  deck.groups[0].lacks = "PCOMP: composite shells";
  deck.groups[2].lacks = "PBARL I: there is no I section";
  ImportReport report;
  const ImportModel model = Mapped(deck, R"(
[material."MAT1 1"]
E = 70000
poisson = 0.33
[group.left]
thickness = 9
[group.stiffeners]
section = { type = "tube", R = 5, T = 1 }
)",
                                   report);
  // The deck's name takes the map's values: for all that have it.
  ASSERT_EQ(model.materials.size(), 1U);
  EXPECT_EQ(model.materials[0].values.E, 70000);
  EXPECT_EQ(model.materials[0].values.Mu, 0.33);
  EXPECT_EQ(model.materials[0].values.Density, 0);
  EXPECT_EQ(model.thicknesses[static_cast<std::size_t>(model.shells[0].thickness)].TK, 9);
  EXPECT_EQ(model.thicknesses[static_cast<std::size_t>(model.shells[1].thickness)].TK, 12);
  EXPECT_EQ(model.sections[static_cast<std::size_t>(model.beams[1].section)].tube.R, 5);
  EXPECT_NE(model.groups[0].lacks, "") << "the map does not name it";
  EXPECT_EQ(model.groups[2].lacks, "");
}

// The entries of a complete plate, whose beams have this section and offset, with a map for them.
std::string EntriesOfStiffeners(const ImportSection& section, double offset,
                                const std::string& keys) {
  ImportModel deck = CompletePlate();
  deck.sections.push_back(section);
  for (ImportBeam& beam : deck.beams) {
    beam.section = static_cast<std::int32_t>(deck.sections.size()) - 1;
    beam.BeamSecOz = offset;
  }
  ImportReport report;
  Mapped(deck, "[group.stiffeners]\n" + keys + "\n", report);
  return ListEntries(report);
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// A T 100 x 200 x 12 x 8 of the deck with its centroid on the nodes: Hw = 188.
TEST(ImportMap, TellsSectionsThatStandWhereTheDecksStood) {
  ImportSection tee, tube;
  tee.plates = {188, 8, 100, 12};
  tube.type = korvex::BeamSecTypeC;
  tube.tube = {50, 5};
  const std::string bar = "section = { type = \"bar\", Hw = 50, Tw = 5 }";
  const std::string reason = "the map gives another section without an offset";
  const std::string entries = EntriesOfStiffeners(tee, -138.38, bar);
  EXPECT_TRUE(Holds(entries, reason)) << entries;
  EXPECT_TRUE(Holds(entries, "| limited |")) << entries;
  EXPECT_TRUE(Holds(entries, "| 2 | CBAR 7001")) << entries;
  EXPECT_EQ(EntriesOfStiffeners(tee, -138.38, bar + "\noffset = -25"), "");
  const std::string same = "section = { type = \"T\", Hw = 188, Tw = 8, Bf = 100, Tf = 12 }";
  EXPECT_EQ(EntriesOfStiffeners(tee, -138.38, same), "");
  const std::string otherTube = "section = { type = \"tube\", R = 40, T = 5 }";
  EXPECT_EQ(EntriesOfStiffeners(tube, 60, otherTube), "") << "both have their centre there";
  EXPECT_TRUE(Holds(EntriesOfStiffeners(tee, -138.38, otherTube), reason));
  EXPECT_TRUE(Holds(EntriesOfStiffeners(tube, 0, bar), reason));
}

TEST(ImportMap, TellsSectionsThatStandOnTheNodesForWantOfTheDecksOwn) {
  ImportModel deck = CompletePlate();
  for (ImportBeam& beam : deck.beams) beam.section = -1;
  const auto entriesOf = [&](const std::string& keys) {
    ImportReport report;
    Mapped(deck, "[group.stiffeners]\n" + keys + "\n", report);
    return ListEntries(report);
  };
  const std::string bar = "section = { type = \"bar\", Hw = 50, Tw = 5 }";
  EXPECT_EQ(entriesOf(bar), "") << "a mesh that has no sections";
  deck.groups[2].lacks = "PBAR: areas and moments of inertia do not tell the plates of a section";
  EXPECT_TRUE(Holds(entriesOf(bar), "the edge of its web stands on the nodes"));
  EXPECT_EQ(entriesOf(bar + "\noffset = 0"), "");
  EXPECT_EQ(entriesOf("section = { type = \"tube\", R = 40, T = 5 }"), "");
}

// The deck's web runs along +z.
TEST(ImportMap, TellsOffsetsThatTurnWithTheWeb) {
  ImportSection tee;
  tee.plates = {188, 8, 100, 12};
  const std::string reason = "the map turns its web without an offset";
  const std::string turned = EntriesOfStiffeners(tee, 61.62, "orientation = [0, 1, 0]");
  EXPECT_TRUE(Holds(turned, reason)) << turned;
  EXPECT_TRUE(Holds(turned, "| 2 | CBAR 7001")) << turned;
  EXPECT_TRUE(Holds(EntriesOfStiffeners(tee, 61.62, "orientation = [0, 0, -1]"), reason));
  EXPECT_EQ(EntriesOfStiffeners(tee, 61.62, "orientation = [0, 1, 0]\noffset = 61.62"), "");
  EXPECT_EQ(EntriesOfStiffeners(tee, 61.62, "orientation = [7, 0, 2]"), "") << "the same web";
  EXPECT_EQ(EntriesOfStiffeners(tee, 0, "orientation = [0, 1, 0]"), "");
}

// The flange's side is the deck's where the map does not say it; only an L has one.
TEST(ImportMap, KeepsTheSideOfTheFlangeForAnLAlone) {
  ImportModel deck = CompletePlate();
  deck.beams[0].BeamSecMirrored = true;
  const auto isMirrored = [&](const std::string& keys) {
    ImportReport report;
    return Mapped(deck, "[group.stiffeners]\n" + keys + "\n", report).beams[0].BeamSecMirrored;
  };
  const std::string sizes = "Hw = 50, Tw = 5, Bf = 20, Tf = 6 }";
  EXPECT_FALSE(isMirrored("section = { type = \"T\", " + sizes));
  EXPECT_TRUE(isMirrored("section = { type = \"L\", " + sizes));
  EXPECT_FALSE(isMirrored("mirrored = false\nsection = { type = \"L\", " + sizes));
}

TEST(ImportMap, MakesGoodWhatTheDeckLacksOnlyWhereNothingIsMissing) {
  ImportModel deck = CompletePlate();
  deck.groups[0].lacks = "PCOMP: composite shells";
  deck.groups[2].lacks = "PBARL I: there is no I section";
  for (ImportShell& shell : deck.shells) shell.thickness = shell.material = -1;
  for (ImportBeam& beam : deck.beams) beam.section = beam.material = -1;
  ImportReport report;
  const std::string map =
      "[group.deck]\nthickness = 9\n[group.stiffeners]\nsection = { type = \"bar\", Hw = 1, Tw = "
      "1 }\n";
  ImportModel model = Mapped(deck, map, report);
  EXPECT_NE(model.groups[0].lacks, "");
  EXPECT_NE(model.groups[2].lacks, "");
  model = Mapped(model,
                 "[group.deck]\nmaterial = \"MAT1 1\"\n[group.stiffeners]\nmaterial = "
                 "\"MAT1 1\"\n",
                 report);
  EXPECT_EQ(model.groups[0].lacks, "");
  EXPECT_EQ(model.groups[2].lacks, "");
}

TEST(ImportMap, TwoGroupsMayNotGiveAnElementDifferentThings) {
  ExpectRefusal("[group.deck]\nthickness = 12\n[group.left]\nthickness = 10\n",
                "line 4: group \"left\" gives CQUAD4 4001 another \"thickness\" than group "
                "\"deck\" in line 2.");
  const std::string both = std::string(Steel) + "[material.alu]\nE = 70000\npoisson = 0.3\n";
  ExpectRefusal(both + "[group.deck]\nmaterial = \"steel\"\n[group.left]\nmaterial = \"alu\"\n",
                "line 11: group \"left\" gives CQUAD4 4001 another \"material\" than group "
                "\"deck\" in line 9.");
  ImportModel model = StiffenedPlate();
  AddGroup("second", {}, {1}, model);
  const auto refuse = [&](const std::string& key, const std::string& one, const std::string& two) {
    ExpectRefusal(model,
                  "[group.stiffeners]\n" + key + " = " + one + "\n[group.second]\n" + key + " = " +
                      two + "\n",
                  "line 4: group \"second\" gives CBAR 7002 another \"" + key +
                      "\" than group \"stiffeners\" in line 2.");
  };
  refuse("offset", "1", "2");
  refuse("mirrored", "false", "true");
  refuse("orientation", "[0, 0, 1]", "[0, 1, 0]");
  refuse("orientation", "\"-normal\"", "\"normal\"");
  refuse("section", "{ type = \"bar\", Hw = 1, Tw = 2 }", "{ type = \"bar\", Hw = 1, Tw = 3 }");
  refuse("section", "{ type = \"bar\", Hw = 1, Tw = 2 }", "{ type = \"tube\", R = 1, T = 2 }");
  // The same thing twice is no contradiction; loads add up.
  ImportReport report;
  const ImportModel same = Mapped(
      model,
      "[group.deck]\nthickness = 12\npressure = 1\n[group.left]\nthickness = 12\npressure = 2\n",
      report);
  EXPECT_NEAR(TotalZ(same), 4 * 1 + 4 * 1 + 4 * 2, 1e-12);
}

TEST(ImportMap, RefusesGroupsAndKeysThatItDoesNotKnow) {
  ExpectRefusal("[group.dekc]\nthickness = 12\n",
                "line 1: the mesh has no group \"dekc\". Did you mean \"deck\"?");
  ExpectRefusal("[group.Deck]\nthickness = 12\n",  // names match exactly
                "line 1: the mesh has no group \"Deck\". Did you mean \"deck\"?");
  ExpectRefusal("\n[group.xyzxyz]\n",
                "line 2: the mesh has no group \"xyzxyz\". There are: \"deck\", \"left\", "
                "\"stiffeners\", \"corner\".");
  ExpectRefusal({}, "[group.deck]\n",
                "line 1: the mesh has no group \"deck\". There is none at all.");
  ExpectRefusal("[group.deck]\nthicknes = 12\n",
                "line 2: group \"deck\" has no \"thicknes\". Did you mean \"thickness\"?");
  ExpectRefusal("[material.steel]\nE = 1\npoisson = 0.3\nrho = 1\n",
                "line 4: material \"steel\" has no \"rho\". It may have: E, poisson, density.");
  ExpectRefusal("[case.a]\nloads = \"x\"\n",
                "line 2: case \"a\" has no \"loads\". It may have: acceleration.");
  ExpectRefusal("groups = 1\n", "line 1: a map has no \"groups\". Did you mean \"group\"?");
  ExpectRefusal("group = 1\n",
                "line 1: each group is a table with a name. Write it as in: [group.deck]");
  ExpectRefusal("[group]\nthickness = 12\n",
                "line 2: each group is a table with a name. Write it as in: [group.deck]");
  ExpectRefusal("[group.deck]\nmaterial = \"steel\"\n",
                "line 2: group \"deck\": there is no material \"steel\". There is none at all.");
  ExpectRefusal(std::string(Steel) + "[group.deck]\nmaterial = \"stele\"\n",
                "line 6: group \"deck\": there is no material \"stele\". Did you mean \"steel\"?");
}

TEST(ImportMap, RefusesKeysThatDoNotFitTheGroup) {
  const auto refuse = [](const std::string& group, const std::string& key, const std::string& value,
                         const std::string& rows) {
    ExpectRefusal(
        "[group." + group + "]\n" + key + " = " + value + "\n",
        "line 2: group \"" + group + "\" has no " + rows + ", so \"" + key + "\" does not fit.");
  };
  refuse("stiffeners", "thickness", "1", "shells");
  refuse("stiffeners", "pressure", "1", "shells");
  refuse("stiffeners", "flip", "true", "shells");
  refuse("deck", "section", "{ type = \"bar\", Hw = 1, Tw = 2 }", "lines");
  refuse("deck", "orientation", "[0, 0, 1]", "lines");
  refuse("deck", "offset", "1", "lines");
  refuse("deck", "mirrored", "true", "lines");
  refuse("deck", "line_load", "1", "lines");
  refuse("deck", "edge_load", "[1, 0, 0]", "lines");
  refuse("corner", "material", "\"steel\"", "elements");
  refuse("corner", "skip", "true", "elements");
  ImportModel model = StiffenedPlate();
  model.groups[3].nodes.clear();
  for (const std::string key : {"force", "total_force"}) {
    ExpectRefusal(model, "[group.corner]\n" + key + " = [1, 2, 3]\n",
                  "line 2: group \"corner\" has no nodes, so \"" + key + "\" does not fit.");
  }
  ExpectRefusal(model, "[group.corner]\nrestraint = \"fixed\"\n",
                "line 2: group \"corner\" has no nodes, so \"restraint\" does not fit.");
}

TEST(ImportMap, RefusesValuesThatAreNone) {
  const auto refuse = [](const std::string& lines, const std::string& text) {
    ExpectRefusal("[group.deck]\n" + lines + "\n", text);
  };
  refuse("thickness = 0", "line 2: group \"deck\": \"thickness\" must be above 0.");
  refuse("thickness = -1", "line 2: group \"deck\": \"thickness\" must be above 0.");
  refuse("thickness = \"12\"",
         "line 2: group \"deck\": \"thickness\" is a text. Write it as in: thickness = 12");
  refuse("thickness = nan", "line 2: group \"deck\": the number must be finite.");
  refuse("thickness = 1,2", "line 2: \"thickness = 1,2\": write the number with a decimal point.");
  refuse("pressure = inf", "line 2: group \"deck\": the number must be finite.");
  refuse("flip = 1", "line 2: group \"deck\": \"flip\" is a number. Write it as in: flip = true");
  refuse("material = 1",
         "line 2: group \"deck\": \"material\" is a number. Write it as in: material = \"steel\"");
  refuse(
      "force = [1, 2]",
      "line 2: group \"deck\": \"force\" has 2 numbers instead of 3 or 6. Write it as in: [0, 0, "
      "-1000], or with moments [0, 0, -1000, 0, 0, 0]");
  refuse("force = [1, 2, \"3\"]",
         "line 2: group \"deck\": a text where it must not be. Write it as in: [0, 0, -1000], or "
         "with moments [0, 0, -1000, 0, 0, 0]");
  refuse("case = \"\"\npressure = 1", "line 2: group \"deck\": \"case\" is empty.");
  const std::string form =
      " Write it as in: restraint = \"fixed\", \"pinned\" or [1, 1, 1, 0, 0, 0] for ux uy uz rx ry "
      "rz";
  refuse("restraint = \"xyz\"", "line 2: group \"deck\": there is no restraint \"xyz\"." + form);
  for (const std::string list : {"[1, 1, 1]", "[1, 1, 1, 0, 0, 2]", "[1, 1, 1, 0, 0, 0, 0]"}) {
    refuse("restraint = " + list,
           "line 2: group \"deck\": \"restraint\" needs six numbers, each 0 (free) or 1 (held)." +
               form);
  }
}

TEST(ImportMap, RefusesSectionsMaterialsAndCasesThatAreNone) {
  const auto section = [](const std::string& value, const std::string& text) {
    ExpectRefusal("[group.stiffeners]\nsection = " + value + "\n", "line 2: " + text);
  };
  const std::string owner = "the section of group \"stiffeners\"";
  section("1",
          "group \"stiffeners\": \"section\" is a table. Write it as in: section = { type = "
          "\"T\", Hw = 200, Tw = 8, Bf = 90, Tf = 12 }");
  section("{ Hw = 1 }", owner + " has no \"type\".");
  section("{ type = \"I\", Hw = 1 }",
          owner + ": there is no type \"I\". There are: \"T\", \"L\", \"bar\", \"tube\".");
  section("{ type = \"T\", Hw = 1, Tw = 1, Tf = 1 }", owner + " has no \"Bf\".");
  section("{ type = \"T\", Tw = 1, Bf = 1, Tf = 1 }", owner + " has no \"Hw\".");
  section("{ type = \"T\", Hw = 0, Tw = 1, Bf = 1, Tf = 1 }", owner + ": \"Hw\" must be above 0.");
  section("{ type = \"L\", Hw = 1, Tw = 1, Bf = -1, Tf = 1 }", owner + ": \"Bf\" is below 0.");
  section("{ type = \"bar\", Hw = 1, Tw = 1, Bf = 1 }",
          owner + " has no \"Bf\". It may have: type, Hw, Tw.");
  section("{ type = \"tube\", R = 1 }", owner + " has no \"T\".");
  section("{ type = \"tube\", R = 1, T = 0 }", owner + ": \"T\" must be above 0.");
  section("{ type = \"tube\", R = 1, T = 1, D = 1 }",
          owner + " has no \"D\". It may have: type, R, T.");
  ExpectRefusal(
      "[group.stiffeners]\norientation = [0, 0]\n",
      "line 2: group \"stiffeners\": \"orientation\" has 2 numbers instead of 3. Write it "
      "as in: orientation = [0, 0, -1] or orientation = \"normal\"");
  ExpectRefusal("[group.stiffeners]\norientation = [0, 0, 0]\n",
                "line 2: group \"stiffeners\": the orientation is zero, so it has no direction.");
  ExpectRefusal("[group.stiffeners]\norientation = \"up\"\n",
                "line 2: group \"stiffeners\": there is no orientation \"up\". Write it as in: "
                "orientation = [0, 0, -1] or orientation = \"normal\"");
  ExpectRefusal("[material.a]\nE = 1\n", "line 1: material \"a\" has no \"poisson\".");
  ExpectRefusal("[material.a]\npoisson = 0.3\n", "line 1: material \"a\" has no \"E\".");
  ExpectRefusal("[material.a]\nE = 0\npoisson = 0.3\n",
                "line 2: material \"a\": \"E\" must be above 0.");
  for (const std::string poisson : {"0.51", "-1.0"}) {
    ExpectRefusal("[material.a]\nE = 1\npoisson = " + poisson + "\n",
                  "line 3: material \"a\": \"poisson\" must lie between -1 and 0.5.");
  }
  ExpectRefusal("[material.a]\nE = 1\npoisson = 0.3\ndensity = -1\n",
                "line 4: material \"a\": \"density\" is below 0.");
  ExpectRefusal("acceleration = [0, 0, 0]\n",
                "line 1: the map: the acceleration is zero, so it makes no loads.");
  ExpectRefusal("[case.a]\nacceleration = 1\n",
                "line 2: case \"a\": \"acceleration\" is a number. Write it as in: acceleration = "
                "[0, 0, -9810]");
  ExpectRefusal("[case.\"\"]\n", "line 1: a case needs a name.");
}

TEST(ImportMap, TakesValuesAtTheirLimits) {
  EXPECT_EQ(Mapped("[material.a]\nE = 1\npoisson = 0.5\ndensity = 0\n").materials[0].values.Mu,
            0.5);
  const ImportModel model = Mapped(
      "[group.stiffeners]\nsection = { type = \"T\", Hw = 1, Tw = 1, Bf = 0, Tf = 0 }\noffset = "
      "0\n");
  EXPECT_EQ(model.sections[0].plates.Bf, 0);
  const ImportModel still = Mapped(
      "[group.stiffeners]\nsection = { type = \"bar\", Hw = 1, Tw = 1 }\nmirrored = false\n"
      "orientation = [0, 0, 1]\nedge_load = [0, 0, 0]\n");
  EXPECT_TRUE(still.cases[0].lineLoads.empty());
  EXPECT_TRUE(still.cases[0].forces.empty());
  EXPECT_TRUE(
      Mapped("[group.corner]\nforce = [0, 0, 0]\n[group.stiffeners]\nedge_load = [0, 0, 0]\n")
          .cases[0]
          .lineLoads.empty());
}

TEST(ImportMap, AnEmptyMapSaysNothing) {
  const ImportModel model = Mapped("");
  EXPECT_TRUE(model.cases.empty());
  EXPECT_TRUE(model.supports.empty());
  EXPECT_EQ(model.shells[0].thickness, -1);
}

TEST(DropEdges, TakesLinesWithoutASectionOutAndKeepsTheirNodes) {
  ImportModel model = StiffenedPlate();
  AddBeam(3, 4, model);  // of no group
  AddBeam(4, 5, model);
  AddBeam(3, 5, model);
  model.beams[3].orientation = {0, 0, 1};  // meant as a beam: a gap
  model.beams[4].material = 0;
  AddGroup("clamped", {}, {0}, model);  // its line is one of "stiffeners", too
  model.groups[2].isEdge = true;        // "stiffeners"
  ImportReport report;
  DropEdges(model, report);
  ASSERT_EQ(model.beams.size(), 2U);
  EXPECT_EQ(model.beams[0].number, 7004);
  EXPECT_EQ(model.beams[1].number, 7005);
  EXPECT_TRUE(model.groups[2].beams.empty());
  EXPECT_EQ(model.groups[2].nodes.size(), 3U);
  EXPECT_EQ(ListEntries(report),
            "stiffeners | no effect | lines without a section are edges, not beams | 2 | CBAR "
            "7001\n"
            "lines of no group | no effect | lines without a section are edges, not beams | 1 | "
            "CBAR 7003\n");
  ImportReport none;
  DropEdges(model, none);
  EXPECT_EQ(ListEntries(none), "");

  // What the map forgets is lost; a line that another group uses is not.
  model = StiffenedPlate();
  AddGroup("clamped", {}, {0}, model);
  model.groups.back().isEdge = true;
  ImportReport lost;
  DropEdges(model, lost);
  EXPECT_EQ(ListEntries(lost),
            "clamped | no effect | lines without a section are edges, not beams | 1 | CBAR 7001\n"
            "stiffeners | lost | the map gives these lines no section, support or load | 1 | "
            "CBAR 7002\n");

  model = CompletePlate();
  DropEdges(model, none);
  EXPECT_EQ(model.beams.size(), 2U);
}

}  // namespace
}  // namespace kvx::test
