// The tables made of an imported model, row by row and against models of random shape.
#include "mesh/build_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>

#include "mesh/import_models.h"

namespace kvx::test {
namespace {

using korvex::Vector3;

struct Built {
  BuiltModel model;
  ImportReport report;
};

Built Build(const ImportModel& model) {
  Built built;
  CheckComplete(model, built.report);
  EXPECT_EQ(ListEntries(built.report), "");
  BuildTables(model, built.report, built.model);
  return built;
}

ImportCase CaseOf(const std::string& name) {
  ImportCase loads;
  loads.name = name;
  return loads;
}

TEST(BuildTables, HaveTheRowsOfTheModel) {
  ImportModel model = CompletePlate();
  AddShell({1, 2, 4}, model);
  model.shells[2].material = model.shells[2].thickness = 0;
  std::swap(model.shells[1], model.shells[2]);  // quad, triangle, quad
  model.groups.clear();
  AddGroup("mixed", {2, 0, 1}, {1}, model);
  model.beams[1].BeamSecOz = 6;
  model.beams[1].BeamSecMirrored = true;
  const Built built = Build(model);
  const korvex::ModelTables& tables = built.model.tables;
  EXPECT_EQ(tables.NPOIN, 6);
  EXPECT_EQ(tables.Nodes[5].x, 4);
  EXPECT_EQ(tables.Nodes[5].y, 2);
  EXPECT_EQ(tables.NELEM_S_4ND, 2);
  EXPECT_EQ(tables.Shell4Nodes, (std::vector<std::int32_t>{0, 1, 4, 3, 1, 2, 5, 4}));
  EXPECT_EQ(tables.NELEM_S_3ND, 1);
  EXPECT_EQ(tables.Shell3Nodes, (std::vector<std::int32_t>{1, 2, 4}));
  EXPECT_EQ(tables.NELEM_B, 2);
  EXPECT_EQ(tables.BeamNodes, (std::vector<std::int32_t>{0, 1, 1, 2}));
  EXPECT_EQ(tables.BeamSectionRefs[0].BeamSecOz, 0);
  EXPECT_EQ(tables.BeamSectionRefs[1].BeamSecOz, 6);
  EXPECT_TRUE(tables.BeamSectionRefs[1].BeamSecMirrored);
  EXPECT_EQ(tables.BeamProperties[1].orientation, (Vector3{0, 0, 1}));
  EXPECT_EQ(tables.NMT, 1);
  EXPECT_EQ(tables.Materials[0].E, 206000);
  EXPECT_EQ(tables.Materials[0].Mu, 0.3);
  EXPECT_EQ(tables.Materials[0].Density, 7.85e-9);
  EXPECT_EQ(tables.NTK, 1);
  EXPECT_EQ(tables.ShellThicknesses[0].TK, 12);
  EXPECT_EQ(tables.NTBS, 1);
  EXPECT_EQ(tables.TBeamSections[0].Bf, 90);
  const ModelOrigin& origin = built.model.origin;
  EXPECT_EQ(origin.format, "Nastran bulk data");
  EXPECT_EQ(origin.nodes, (std::vector<std::int64_t>{1001, 1002, 1003, 1004, 1005, 1006}));
  EXPECT_EQ(origin.types, model.typeNames);
  EXPECT_EQ(origin.shells4.numbers, (std::vector<std::int64_t>{4001, 4002}));
  EXPECT_EQ(origin.shells3.numbers, (std::vector<std::int64_t>{4003}));
  EXPECT_EQ(OriginOfElement(origin, origin.shells3, 0), "CTRIA3 4003");
  EXPECT_EQ(OriginOfElement(origin, origin.beams, 1), "CBAR 7002");
  EXPECT_EQ(origin.materials, std::vector<std::string>{"MAT1 1"});
  EXPECT_EQ(origin.thicknesses, std::vector<std::string>{"PSHELL 1"});
  EXPECT_EQ(origin.sectionsT, std::vector<std::string>{"PBARL 2"});
  ASSERT_EQ(origin.groups.size(), 1U);
  EXPECT_EQ(origin.groups[0].name, "mixed");
  EXPECT_EQ(origin.groups[0].shells4, (std::vector<std::int32_t>{0, 1}));
  EXPECT_EQ(origin.groups[0].shells3, (std::vector<std::int32_t>{0}));
  EXPECT_EQ(origin.groups[0].beams, (std::vector<std::int32_t>{1}));
  EXPECT_EQ(origin.groups[0].nodes.size(), 6U);
  EXPECT_TRUE(built.model.cases.empty());
  EXPECT_EQ(ListEntries(built.report), "");
}

TEST(BuildTables, EqualPropertiesAreOneRowWithTheNameOfTheFirst) {
  ImportModel model = CompletePlate();
  model.thicknesses = {{"unused", 9}, {"PSHELL 1", 12}, {"PSHELL 2", 12}, {"PSHELL 3", 10}};
  model.shells[0].thickness = 2;
  model.shells[1].thickness = 1;
  AddShell({1, 2, 4}, model);
  model.shells[2].thickness = 3;
  model.materials.push_back({"MAT1 2", {206000, 0.3, 0.0}});  // another density
  model.materials.push_back({"MAT1 3", {206000, 0.3, 7.85e-9}});
  model.shells[0].material = 2;
  model.shells[1].material = 1;
  model.shells[2].material = 0;
  const Built built = Build(model);
  const korvex::ModelTables& tables = built.model.tables;
  ASSERT_EQ(tables.NTK, 2);
  EXPECT_EQ(tables.ShellThicknesses[0].TK, 12);
  EXPECT_EQ(tables.ShellThicknesses[1].TK, 10);
  EXPECT_EQ(built.model.origin.thicknesses, (std::vector<std::string>{"PSHELL 1", "PSHELL 3"}));
  EXPECT_EQ(tables.Shell4Properties[0].thickness, 0);
  EXPECT_EQ(tables.Shell4Properties[1].thickness, 0);
  EXPECT_EQ(tables.Shell3Properties[0].thickness, 1);
  ASSERT_EQ(tables.NMT, 2);
  EXPECT_EQ(built.model.origin.materials, (std::vector<std::string>{"MAT1 1", "MAT1 2"}));
  EXPECT_EQ(tables.Shell4Properties[0].material, 0);
  EXPECT_EQ(tables.Shell4Properties[1].material, 1);
  EXPECT_EQ(tables.Shell3Properties[0].material, 0);
  EXPECT_EQ(ListEntries(built.report),
            "unused | no effect | no element has this property: none asks for it, or a map gives "
            "another | 1 | \n");
}

TEST(BuildTables, PropertiesDifferByEachOfTheirValues) {
  ImportModel model = CompletePlate();
  model.materials = {{"a", {1, 0, 0}}, {"b", {2, 0, 0}}, {"c", {1, 0.1, 0}}, {"d", {1, 0, 3}}};
  model.sections.clear();
  model.beams.clear();
  const auto add = [&](std::int32_t type, const korvex::BeamSection& plates,
                       const korvex::CBeamSection& tube) {
    ImportSection section;
    section.type = type;
    section.plates = plates;
    section.tube = tube;
    model.sections.push_back(section);
    const auto row = static_cast<std::size_t>(AddBeam(0, 1, model));
    model.beams[row].section = static_cast<std::int32_t>(row);
    // Materials that beams alone have.
    model.beams[row].material = static_cast<std::int32_t>(row % 4);
    model.beams[row].orientation = {0, 0, 1};
  };
  for (const auto& plates : {korvex::BeamSection{1, 1, 1, 1}, korvex::BeamSection{2, 1, 1, 1},
                             korvex::BeamSection{1, 2, 1, 1}, korvex::BeamSection{1, 1, 2, 1},
                             korvex::BeamSection{1, 1, 1, 2}}) {
    add(korvex::BeamSecTypeT, plates, {});
    add(korvex::BeamSecTypeL, plates, {});
  }
  for (const auto& tube :
       {korvex::CBeamSection{1, 1}, korvex::CBeamSection{2, 1}, korvex::CBeamSection{1, 2}}) {
    add(korvex::BeamSecTypeC, {}, tube);
  }
  const Built built = Build(model);
  EXPECT_EQ(built.model.tables.NTBS, 5);
  EXPECT_EQ(built.model.tables.NLBS, 5);
  EXPECT_EQ(built.model.tables.NCBS, 3);
  EXPECT_EQ(built.model.tables.NMT, 4);
}

TEST(BuildTables, SectionsAreNumberedWithinTheirKind) {
  ImportModel model = CompletePlate();
  const auto addSection = [&](std::int32_t type, double size) {
    ImportSection section;
    section.name = "PBARL " + std::to_string(model.sections.size());
    section.type = type;
    // What belongs to another kind does not count.
    section.plates = {size, 8, 90, 12};
    section.tube = {size, 3};
    model.sections.push_back(section);
    AddBeam(0, 1, model);
    ImportBeam& beam = model.beams.back();
    beam.material = 0;
    beam.section = static_cast<std::int32_t>(model.sections.size()) - 1;
    beam.orientation = {0, 0, 1};
  };
  model.sections.clear();
  model.beams.clear();
  for (const double size : {100.0, 200.0, 100.0}) {
    addSection(korvex::BeamSecTypeL, size);
    addSection(korvex::BeamSecTypeC, size);
    addSection(korvex::BeamSecTypeT, size);
  }
  const Built built = Build(model);
  const korvex::ModelTables& tables = built.model.tables;
  EXPECT_EQ(tables.NTBS, 2);
  EXPECT_EQ(tables.NLBS, 2);
  EXPECT_EQ(tables.NCBS, 2);
  EXPECT_EQ(tables.LBeamSections[1].Hw, 200);
  EXPECT_EQ(tables.CBeamSections[1].R, 200);
  EXPECT_EQ(tables.CBeamSections[1].T, 3);
  EXPECT_EQ(tables.TBeamSections[1].Hw, 200);
  constexpr std::array<std::int32_t, 9> Types{1, 2, 0, 1, 2, 0, 1, 2, 0};
  constexpr std::array<std::int32_t, 9> Rows{0, 0, 0, 1, 1, 1, 0, 0, 0};
  for (std::size_t k = 0; k < 9; ++k) {
    EXPECT_EQ(tables.BeamSectionRefs[k].BeamSecType, Types[k]) << k;
    EXPECT_EQ(tables.BeamSectionRefs[k].BeamSecIndex, Rows[k]) << k;
  }
  EXPECT_EQ(built.model.origin.sectionsL, (std::vector<std::string>{"PBARL 0", "PBARL 3"}));
  EXPECT_EQ(built.model.origin.sectionsC, (std::vector<std::string>{"PBARL 1", "PBARL 4"}));
  EXPECT_EQ(built.model.origin.sectionsT, (std::vector<std::string>{"PBARL 2", "PBARL 5"}));
}

TEST(BuildTables, NodesOfNoElementAreLeftOutAndTheirLoadsAndSupportsAreLost) {
  ImportModel model = CompletePlate();
  // Unused nodes at the rows 0 and 4: all others move.
  ImportModel moved = model;
  constexpr std::array<std::int32_t, 6> Places{1, 2, 3, 5, 6, 7};
  moved.nodes.clear();
  moved.nodeNumbers.clear();
  for (int k = 0; k < 9; ++k) AddNode(-1, -1, -1, moved);
  for (std::size_t k = 0; k < 6; ++k)
    moved.nodes[static_cast<std::size_t>(Places[k])] = model.nodes[k];
  const auto move = [&](std::int32_t& node) {
    if (node >= 0) node = Places[static_cast<std::size_t>(node)];
  };
  for (ImportShell& shell : moved.shells)
    std::for_each(shell.nodes.begin(), shell.nodes.end(), move);
  for (ImportBeam& beam : moved.beams) std::for_each(beam.nodes.begin(), beam.nodes.end(), move);
  moved.groups.clear();
  AddGroup("deck", {0, 1}, {}, moved);
  moved.groups[0].nodes.insert(moved.groups[0].nodes.begin(), 0);
  AddGroup("loose", {}, {}, moved);
  moved.groups[1].nodes = {0, 4};
  moved.supports.push_back({"SPC 1", {{{1, 1, 1, 1, 1, 1}, 1}, {{0, 0, 0, 0, 0, 1}, 4}}});
  moved.cases.push_back(CaseOf("a"));
  moved.cases[0].supports = 0;
  moved.cases[0].forces = {{0, {1, 0, 0, 0, 0, 0}},
                           {8, {}},  // says nothing
                           {7, {0, 0, 5, 0, 0, 0}},
                           {4, {0, 2, 0, 0, 0, 0}}};
  moved.supports[0].restraints.push_back({{0, 0, 1, 0, 0, 0}, 4});
  moved.cases[0].prescribed = {{4, 5, 0.25}, {4, 2, 0.0}};
  const Built built = Build(moved);
  const korvex::ModelTables& tables = built.model.tables;
  EXPECT_EQ(tables.NPOIN, 6);
  EXPECT_EQ(tables.Shell4Nodes, (std::vector<std::int32_t>{0, 1, 4, 3, 1, 2, 5, 4}));
  EXPECT_EQ(tables.BeamNodes, (std::vector<std::int32_t>{0, 1, 1, 2}));
  EXPECT_EQ(built.model.origin.nodes,
            (std::vector<std::int64_t>{1002, 1003, 1004, 1006, 1007, 1008}));
  ASSERT_EQ(tables.NRN, 1);
  EXPECT_EQ(tables.NodalRestraints[0].node, 0);
  ASSERT_EQ(built.model.cases.size(), 1U);
  const korvex::ModelTables& loads = built.model.cases[0].loads;
  ASSERT_EQ(loads.NFOR, 1);
  EXPECT_EQ(loads.NodalForces[0].node, 5);
  ASSERT_EQ(built.model.origin.groups.size(), 1U) << "the other has no row";
  EXPECT_EQ(built.model.origin.groups[0].nodes, (std::vector<std::int32_t>{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(ListEntries(built.report),
            "nodes | no effect | nodes of no element | 3 | node 1001\n"
            "SPC 1 | lost | a support on a node of no element | 1 | node 1005\n"
            "a | lost | a load on a node of no element | 3 | node 1001\n");
}

TEST(BuildTables, SupportsOfANodeAreOneRowInTheOrderOfTheNodes) {
  ImportModel model = CompletePlate();
  model.supports.push_back({"SPC 1",
                            {{{0, 0, 1, 0, 0, 0}, 3},
                             {{1, 0, 0, 0, 0, 1}, 0},
                             {{0, 2, 0, 0, 0, 0}, 2},     // no flag: free
                             {{0, 1, 0, 0, 0, 1}, 3}}});  // rz twice
  model.supports[0].restraints.push_back({{0, 0, 1, 0, 0, 0}, 3});
  // Without a case the only set holds.
  const Built built = Build(model);
  const korvex::ModelTables& tables = built.model.tables;
  ASSERT_EQ(tables.NRN, 2);
  EXPECT_EQ(tables.NodalRestraints[0].node, 0);
  EXPECT_EQ(tables.NodalRestraints[0].fixed, (std::array<std::int32_t, 6>{1, 0, 0, 0, 0, 1}));
  EXPECT_EQ(tables.NodalRestraints[1].node, 3);
  EXPECT_EQ(tables.NodalRestraints[1].fixed, (std::array<std::int32_t, 6>{0, 1, 1, 0, 0, 1}));
  // A case with loads and no supports has none, whatever sets there are.
  model.cases.push_back(CaseOf("a"));
  model.cases[0].forces.push_back({0, {1, 0, 0, 0, 0, 0}});
  EXPECT_EQ(Build(model).model.tables.NRN, 0);
}

TEST(BuildTables, SupportsAreThoseOfTheCasesWithLoads) {
  ImportModel model = CompletePlate();
  model.supports.push_back({"SPC 1", {{{1, 1, 1, 1, 1, 1}, 0}}});
  model.supports.push_back({"SPC 2", {{{1, 1, 1, 1, 1, 1}, 2}}});
  model.cases = {CaseOf("empty"), CaseOf("full")};
  model.cases[0].supports = 0;
  model.cases[1].supports = 1;
  model.cases[1].forces.push_back({4, {1, 0, 0, 0, 0, 0}});
  const Built built = Build(model);
  ASSERT_EQ(built.model.tables.NRN, 1);
  EXPECT_EQ(built.model.tables.NodalRestraints[0].node, 2);
  EXPECT_EQ(ListEntries(built.report), "empty | no effect | a case without loads | 1 | \n");
}

TEST(BuildTables, LoadsOfACaseAreSumsInTheOrderOfTheTables) {
  ImportModel model = CompletePlate();
  model.cases = {CaseOf("a"), CaseOf("b")};
  ImportCase& loads = model.cases[0];
  // In this order the sum of the first components is 1; the other way round 0: 1e17 swallows 1.
  loads.forces = {{4, {1e17, 0, 0, 0, 0, 1}}, {1, {0, 2, 0, 0, 0, 0}}, {4, {-1e17, 0, 0, 0, 0, 1}},
                  {3, {7, 0, 0, 0, 0, 0}},    {4, {1, 0, 0, 0, 0, 1}}, {3, {-7, 0, 0, 0, 0, 0}}};
  // The same on another node, among so many rows that a sort may mix equal ones.
  for (int k = 0; k < 50; ++k) {
    loads.forces.push_back({5, {0, k == 0 ? 1e17 : (k == 25 ? -1e17 : 1.0), 0, 0, 0, 0}});
    loads.forces.push_back({2, {0, 0, 1, 0, 0, 0}});
  }
  loads.pressures = {{1, {1, 2, 3}}, {0, {5, 5, 5}}, {1, {1, 1, 1}}};
  loads.lineLoads = {{1, {1, 2}}, {0, {3, 3}}, {0, {-3, -3}}, {1, {10, 20}}};
  model.cases[1].hasAcceleration = true;
  model.cases[1].acceleration = {0, 0, -9810};
  const Built built = Build(model);
  ASSERT_EQ(built.model.cases.size(), 2U);
  EXPECT_EQ(built.model.cases[0].name, "a");
  EXPECT_FALSE(built.model.cases[0].hasAcceleration);
  const korvex::ModelTables& a = built.model.cases[0].loads;
  ASSERT_EQ(a.NFOR, 4);
  EXPECT_EQ(a.NodalForces[0].node, 1);
  EXPECT_EQ(a.NodalForces[0].components, (std::array<double, 6>{0, 2, 0, 0, 0, 0}));
  EXPECT_EQ(a.NodalForces[1].node, 2);
  EXPECT_EQ(a.NodalForces[1].components[2], 50);
  EXPECT_EQ(a.NodalForces[2].node, 4);
  EXPECT_EQ(a.NodalForces[2].components, (std::array<double, 6>{1, 0, 0, 0, 0, 3}));
  EXPECT_EQ(a.NodalForces[3].node, 5);
  EXPECT_EQ(a.NodalForces[3].components[1], 24) << "what comes behind -1e17";
  ASSERT_EQ(a.NDL_S_4ND, 2);
  EXPECT_EQ(a.Shell4SurfaceLoads[0].element, 0);
  EXPECT_EQ(a.Shell4SurfaceLoads[1].element, 1);
  EXPECT_EQ(a.Shell4SurfaceLoads[1].q, (std::array<double, 3>{2, 3, 4}));
  EXPECT_EQ(a.NDL_S_3ND, 0);
  ASSERT_EQ(a.NDL_B, 1);
  EXPECT_EQ(a.BeamLineLoads[0].element, 1);
  EXPECT_EQ(a.BeamLineLoads[0].q, (std::array<double, 2>{11, 22}));
  EXPECT_EQ(a.NPOIN, 0) << "loads alone";
  EXPECT_EQ(built.model.tables.NFOR, 0) << "no loads in the structure";
  EXPECT_TRUE(built.model.cases[1].hasAcceleration);
  EXPECT_EQ(built.model.cases[1].acceleration, (Vector3{0, 0, -9810}));
}

TEST(BuildTables, CasesWithoutLoadsAreReported) {
  ImportModel model = CompletePlate();
  model.cases = {CaseOf("cancels"), CaseOf("still"), CaseOf("")};
  model.cases[0].forces = {{4, {5, 0, 0, 0, 0, 0}}, {4, {-5, 0, 0, 0, 0, 0}}};
  model.cases[0].pressures = {{0, {5, 5, 5}}, {0, {-5, -5, -5}}};
  model.cases[1].hasAcceleration = true;  // of zero
  const Built built = Build(model);
  EXPECT_TRUE(built.model.cases.empty());
  EXPECT_EQ(ListEntries(built.report),
            "cancels | no effect | a case without loads | 1 | \n"
            "still | no effect | a case without loads | 1 | \n"
            "loads | no effect | a case without loads | 1 | \n");
}

TEST(BuildTables, ACaseThatHasLostItsLoadsIsLost) {
  ImportModel model = CompletePlate();
  model.cases = {CaseOf("heat"), CaseOf("loose")};
  model.cases[0].asksForLoads = true;
  model.nodes.push_back({9, 9, 9});  // of no element
  model.nodeNumbers.push_back(99);
  model.cases[1].forces = {{static_cast<std::int32_t>(model.nodes.size()) - 1, {5, 0, 0, 0, 0, 0}}};
  std::string lost;
  for (const ReportEntry& entry : Build(model).report.entries) {
    if (entry.fate == Fate::Lost) lost += entry.card + ": " + entry.reason + '\n';
  }
  EXPECT_EQ(lost,
            "heat: a case without loads: those of the deck are lost or 0\n"
            "loose: a load on a node of no element\n"
            "loose: a case without loads: those of the deck are lost or 0\n");
}

TEST(BuildTables, ZerosOfOrientationsHaveNoSign) {
  ImportModel model = CompletePlate();
  model.beams.at(0).orientation = {-0.0, -0.0, -1.0};
  const Built built = Build(model);
  EXPECT_FALSE(std::signbit(built.model.tables.BeamProperties.at(0).orientation[0]));
  EXPECT_FALSE(std::signbit(built.model.tables.BeamProperties[0].orientation[1]));
  EXPECT_EQ(built.model.tables.BeamProperties[0].orientation[2], -1.0);
}

TEST(BuildTables, PrescribedDisplacementsAreForcesInPlaceOfOthers) {
  ImportModel model = CompletePlate();
  model.supports.push_back({"SPC 1", {{{1, 1, 1, 0, 0, 1}, 4}, {{1, 1, 1, 1, 1, 1}, 0}}});
  model.cases.push_back(CaseOf("a"));
  ImportCase& loads = model.cases[0];
  loads.supports = 0;
  loads.forces = {{4, {1, 2, 3, 4, 5, 6}}};
  loads.prescribed = {{4, 2, -2.5}, {0, 3, 0.001}, {4, 5, 0.0}, {4, 2, -2.5}};
  const Built built = Build(model);
  const korvex::ModelTables& a = built.model.cases[0].loads;
  ASSERT_EQ(a.NFOR, 2);
  EXPECT_EQ(a.NodalForces[0].node, 0);
  EXPECT_EQ(a.NodalForces[0].components, (std::array<double, 6>{0, 0, 0, 1e17, 0, 0}));
  // docs/model-file.md: the force is 1e20 times the displacement. One of 0 is the support itself.
  EXPECT_EQ(a.NodalForces[1].components, (std::array<double, 6>{1, 2, -2.5e20, 4, 5, 6}));
}

TEST(BuildTables, TubesGetAnOrientationAcrossTheirAxis) {
  ImportModel model = CompletePlate();
  model.sections[0].type = korvex::BeamSecTypeC;
  model.nodes[2] = {2, 0, 5};  // beam 1 stands upright
  model.beams[0].orientation = {};
  model.beams[1].orientation = {0, 0, 1};
  AddBeam(0, 4, model);
  model.beams[2] = model.beams[0];
  model.beams[2].orientation = {0, 3, 4};
  const Built built = Build(model);
  const auto& beams = built.model.tables.BeamProperties;
  EXPECT_EQ(beams[0].orientation, (Vector3{0, 0, 1}));
  EXPECT_EQ(beams[1].orientation, (Vector3{1, 0, 0}));
  EXPECT_EQ(beams[2].orientation, (Vector3{0, 3, 4})) << "its own is kept";
}

// ---- Models of random shape
// ----------------------------------------------------------------------

ImportModel RandomModel(std::mt19937& random) {
  const auto upTo = [&](int most) {
    return static_cast<std::int32_t>(std::uniform_int_distribution<int>(0, most)(random));
  };
  const auto real = [&] { return std::uniform_real_distribution<double>(-5.0, 5.0)(random); };
  ImportModel model;
  for (int k = 0; k < 60; ++k) AddNode(real(), real(), real(), model);
  const auto anyNode = [&] { return upTo(49); };  // some stay without elements
  for (int k = 0; k < 5; ++k) {
    const auto name = std::to_string(k);
    model.materials.push_back({"m" + name, {1.0 + upTo(1), 0.1 * upTo(1), 1.0 * upTo(1)}});
    model.thicknesses.push_back({"t" + name, 1.0 + upTo(2)});
    ImportSection section;
    section.name = "s" + name;
    section.type = upTo(2);
    section.plates = {1.0 + upTo(1), 1, 1, 1};
    section.tube = {1.0 + upTo(1), 1};
    model.sections.push_back(section);
  }
  for (int k = 0; k < 40; ++k) {
    std::vector<std::int32_t> nodes{anyNode(), anyNode(), anyNode()};
    if (upTo(1) == 0) nodes.push_back(anyNode());
    const auto row = static_cast<std::size_t>(AddShell(nodes, model));
    model.shells[row].material = upTo(4);
    model.shells[row].thickness = upTo(4);
    const auto beam = static_cast<std::size_t>(AddBeam(anyNode(), anyNode(), model));
    model.beams[beam].material = upTo(4);
    model.beams[beam].section = upTo(4);
    model.beams[beam].orientation = {real(), real(), real()};
    model.beams[beam].BeamSecOz = real();
    model.beams[beam].BeamSecMirrored = upTo(1) == 1;
  }
  model.supports.push_back({"s", {}});
  ImportCase loads;
  loads.supports = 0;
  for (int k = 0; k < 60; ++k) {
    korvex::NodalRestraint restraint;
    restraint.node = upTo(59);
    for (auto& flag : restraint.fixed) flag = upTo(2);
    model.supports[0].restraints.push_back(restraint);
    // Whole numbers: their sums do not depend on the order.
    korvex::NodalForce force;
    force.node = upTo(59);
    for (double& each : force.components) each = upTo(4) - 2;
    loads.forces.push_back(force);
    loads.pressures.push_back({upTo(39), {1.0 * upTo(9), 1.0 * upTo(9), 1.0 * upTo(9)}});
    loads.lineLoads.push_back({upTo(39), {1.0 * upTo(9), 1.0 * upTo(9)}});
  }
  model.cases.push_back(loads);
  return model;
}

const korvex::Node& NodeAt(const korvex::ModelTables& tables, std::int32_t row) {
  return tables.Nodes[static_cast<std::size_t>(row)];
}

void ExpectSameNode(const korvex::Node& a, const korvex::Node& b) {
  EXPECT_EQ(a.x, b.x);
  EXPECT_EQ(a.y, b.y);
  EXPECT_EQ(a.z, b.z);
}

void ExpectSameMaterial(const korvex::Material& a, const korvex::Material& b) {
  EXPECT_EQ(a.E, b.E);
  EXPECT_EQ(a.Mu, b.Mu);
  EXPECT_EQ(a.Density, b.Density);
}

template <typename Table>
const auto& At(const Table& table, std::int32_t row) {
  return table.at(static_cast<std::size_t>(row));
}

void CompareShells(const ImportModel& model, const Built& built) {
  const korvex::ModelTables& tables = built.model.tables;
  std::array<std::size_t, 2> rows{};
  for (const ImportShell& shell : model.shells) {
    const std::size_t corners = CornersOf(shell);
    const bool isQuad = corners == 4;
    const std::size_t row = rows[isQuad ? 0 : 1]++;
    const auto& nodes = isQuad ? tables.Shell4Nodes : tables.Shell3Nodes;
    for (std::size_t k = 0; k < corners; ++k) {
      ExpectSameNode(NodeAt(tables, nodes.at(corners * row + k)), At(model.nodes, shell.nodes[k]));
    }
    const auto& properties = (isQuad ? tables.Shell4Properties : tables.Shell3Properties).at(row);
    EXPECT_EQ(At(tables.ShellThicknesses, properties.thickness).TK,
              At(model.thicknesses, shell.thickness).TK);
    ExpectSameMaterial(At(tables.Materials, properties.material),
                       At(model.materials, shell.material).values);
    const ElementOrigin& origin = isQuad ? built.model.origin.shells4 : built.model.origin.shells3;
    EXPECT_EQ(origin.numbers.at(row), shell.number);
    EXPECT_EQ(origin.types.at(row), shell.type);
  }
  EXPECT_EQ(tables.NELEM_S_4ND, static_cast<std::int32_t>(rows[0]));
  EXPECT_EQ(tables.NELEM_S_3ND, static_cast<std::int32_t>(rows[1]));
}

void CompareBeams(const ImportModel& model, const Built& built) {
  const korvex::ModelTables& tables = built.model.tables;
  for (std::size_t k = 0; k < model.beams.size(); ++k) {
    const ImportBeam& beam = model.beams[k];
    for (std::size_t end = 0; end < 2; ++end) {
      ExpectSameNode(NodeAt(tables, tables.BeamNodes[2 * k + end]),
                     At(model.nodes, beam.nodes[end]));
    }
    const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[k];
    const ImportSection& section = At(model.sections, beam.section);
    EXPECT_EQ(ref.BeamSecType, section.type);
    if (section.type == korvex::BeamSecTypeC) {
      EXPECT_EQ(At(tables.CBeamSections, ref.BeamSecIndex).R, section.tube.R);
    } else {
      const auto& table =
          section.type == korvex::BeamSecTypeL ? tables.LBeamSections : tables.TBeamSections;
      EXPECT_EQ(At(table, ref.BeamSecIndex).Hw, section.plates.Hw);
    }
    EXPECT_EQ(ref.BeamSecOz, beam.BeamSecOz);
    EXPECT_EQ(ref.BeamSecMirrored, beam.BeamSecMirrored);
    EXPECT_EQ(tables.BeamProperties[k].orientation, beam.orientation);
    ExpectSameMaterial(At(tables.Materials, tables.BeamProperties[k].material),
                       At(model.materials, beam.material).values);
  }
}

// Which nodes elements have.
std::vector<char> FindUsed(const ImportModel& model) {
  std::vector<char> isUsed(model.nodes.size(), 0);
  for (const ImportShell& shell : model.shells) {
    for (const std::int32_t node : shell.nodes) {
      if (node >= 0) isUsed[static_cast<std::size_t>(node)] = 1;
    }
  }
  for (const ImportBeam& beam : model.beams) {
    for (const std::int32_t node : beam.nodes) isUsed[static_cast<std::size_t>(node)] = 1;
  }
  return isUsed;
}

// Sums of zero are no rows.
template <typename Sums>
void DropZeros(Sums& sums) {
  const typename Sums::mapped_type zero{};
  for (auto at = sums.begin(); at != sums.end();) {
    at = at->second == zero ? sums.erase(at) : std::next(at);
  }
}

// Supports and forces by the numbers of the deck's nodes, from the model and from the tables.
void CompareNodeRows(const ImportModel& model, const Built& built) {
  const std::vector<char> isUsed = FindUsed(model);
  std::map<std::int64_t, std::array<double, 6>> forces, builtForces;
  std::map<std::int64_t, std::array<std::int32_t, 6>> held, builtHeld;
  for (const korvex::NodalForce& each : model.cases[0].forces) {
    if (At(isUsed, each.node) == 0) continue;
    auto& sum = forces[At(model.nodeNumbers, each.node)];
    for (std::size_t d = 0; d < 6; ++d) sum[d] += each.components[d];
  }
  for (const korvex::NodalRestraint& each : model.supports[0].restraints) {
    if (At(isUsed, each.node) == 0) continue;
    for (std::size_t d = 0; d < 6; ++d) {
      if (each.fixed[d] == 1) held[At(model.nodeNumbers, each.node)][d] = 1;
    }
  }
  for (const auto& each : built.model.cases.at(0).loads.NodalForces) {
    builtForces[At(built.model.origin.nodes, each.node)] = each.components;
  }
  for (const auto& each : built.model.tables.NodalRestraints) {
    builtHeld[At(built.model.origin.nodes, each.node)] = each.fixed;
  }
  DropZeros(forces);
  EXPECT_EQ(forces, builtForces);
  EXPECT_EQ(held, builtHeld);
}

void CompareElementLoads(const ImportModel& model, const Built& built) {
  std::map<std::int64_t, std::array<double, 3>> pressures, builtPressures;
  std::map<std::int64_t, std::array<double, 2>> lines, builtLines;
  for (const ImportPressure& each : model.cases[0].pressures) {
    auto& sum = pressures[At(model.shells, each.shell).number];
    for (std::size_t k = 0; k < 3; ++k) sum[k] += each.q[k];
  }
  for (const korvex::BeamLineLoad& each : model.cases[0].lineLoads) {
    auto& sum = lines[At(model.beams, each.element).number];
    for (std::size_t k = 0; k < 2; ++k) sum[k] += each.q[k];
  }
  const korvex::ModelTables& loads = built.model.cases.at(0).loads;
  const ModelOrigin& origin = built.model.origin;
  for (const auto& each : loads.Shell4SurfaceLoads) {
    builtPressures[At(origin.shells4.numbers, each.element)] = each.q;
  }
  for (const auto& each : loads.Shell3SurfaceLoads) {
    builtPressures[At(origin.shells3.numbers, each.element)] = each.q;
  }
  for (const auto& each : loads.BeamLineLoads)
    builtLines[At(origin.beams.numbers, each.element)] = each.q;
  DropZeros(pressures);
  DropZeros(lines);
  EXPECT_EQ(pressures, builtPressures);
  EXPECT_EQ(lines, builtLines);
  EXPECT_EQ(loads.NDL_S_4ND + loads.NDL_S_3ND, static_cast<std::int32_t>(builtPressures.size()));
  EXPECT_EQ(loads.NDL_B, static_cast<std::int32_t>(builtLines.size()));
}

TEST(BuildTables, HoldModelsOfRandomShape) {
  std::mt19937 random(18);
  for (int trial = 0; trial < 100; ++trial) {
    const ImportModel model = RandomModel(random);
    Built built;
    BuildTables(model, built.report, built.model);
    CompareShells(model, built);
    CompareBeams(model, built);
    CompareNodeRows(model, built);
    CompareElementLoads(model, built);
    if (HasFailure()) FAIL() << "trial " << trial;
  }
}

}  // namespace
}  // namespace kvx::test
