// kvx renumber as its user meets it: the same structure under other numbers, in all files that have
// numbers of nodes, and everything back again.
//
// Models are compared by the places of their nodes, which tell them apart whatever their numbers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <sstream>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "commands/hash_text.h"
#include "commands/origin_file.h"
#include "deck/read_tables.h"
#include "deck/write_tables.h"
#include "renumber/permute_nodes.h"
#include "support/folder_bytes.h"
#include "support/good_models.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/shell_mesh.h"
#include "support/solved_examples.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::ModelTables;
using korvex::test::ModelText;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;
using korvex::test::WriteFile;

ModelTables TablesOf(const std::string& text) {
  ModelTables tables;
  korvex::ReadTables(text, {}, tables);
  return tables;
}

// Its nodes in random order, as the writer of model files writes it. No node moves further than
// `reach` rows.
std::string Shuffled(const std::string& text, std::uint32_t seed, int reach = 1000000) {
  ModelTables tables = TablesOf(text);
  std::vector<std::int32_t> order(tables.Nodes.size());
  std::iota(order.begin(), order.end(), 0);
  Dice dice = MakeDice(seed);
  for (int k = static_cast<int>(order.size()); k-- > 1;) {
    const int other = RollInteger(dice, k / reach * reach, k);
    std::swap(order[static_cast<std::size_t>(k)], order[static_cast<std::size_t>(other)]);
  }
  PermuteNodes(order, tables);
  return korvex::WriteTables(tables);
}

// A vaulted plate, held along two edges, under pressure and a force at a node.
ModelText Plate(int n1, int n2) {
  ModelText model =
      korvex::test::BuildGrid(n1, n2, korvex::test::Cells::Quads, [&](double s, double t) {
        return korvex::test::Point3{100.0 * n1 * s, 100.0 * n2 * t, 400.0 * s * (1.0 - s)};
      });
  model.materials = {{206000.0, 0.3, 7.85e-9}};
  model.thicknesses = {10.0};
  for (int j = 0; j <= n2; ++j) {
    for (const int i : {0, n1}) {
      model.restraints.push_back({korvex::test::GridNode(n1, i, j), {1, 1, 1, 0, 0, 0}});
    }
  }
  model.forces = {{korvex::test::GridNode(n1, n1 / 2, n2 / 2), {10.0, 20.0, -3000.0, 0, 0, 0}}};
  model.shell4Loads = {{0, {-0.01, -0.02, -0.03}}};
  return model;
}

std::string ShuffledPlate() { return Shuffled(korvex::test::WriteModel(Plate(4, 12)), 3); }

using Place = std::array<double, 3>;

// Rows that name a node have its place instead.
struct Structure {
  std::vector<Place> elements;  // the nodes of all elements, in the order of the file
  std::vector<std::pair<Place, std::array<std::int32_t, 6>>> restraints;
  std::vector<std::pair<Place, std::array<double, 6>>> forces;
};
bool operator==(const Structure& a, const Structure& b) {
  return a.elements == b.elements && a.restraints == b.restraints && a.forces == b.forces;
}

Place PlaceOf(const ModelTables& tables, std::int32_t node) {
  const korvex::Node& at = tables.Nodes.at(static_cast<std::size_t>(node));
  return {at.x, at.y, at.z};
}

Structure StructureOf(const ModelTables& tables) {
  Structure structure;
  for (const auto* table : {&tables.Shell4Nodes, &tables.Shell3Nodes, &tables.BeamNodes}) {
    for (const std::int32_t node : *table) structure.elements.push_back(PlaceOf(tables, node));
  }
  for (const korvex::NodalRestraint& row : tables.NodalRestraints) {
    structure.restraints.emplace_back(PlaceOf(tables, row.node), row.fixed);
  }
  for (const korvex::NodalForce& row : tables.NodalForces) {
    structure.forces.emplace_back(PlaceOf(tables, row.node), row.components);
  }
  return structure;
}

// The widest step between nodes of a four-node shell.
std::int32_t BandOf(const ModelTables& tables) {
  std::int32_t band = 0;
  for (std::size_t k = 0; k < tables.Shell4Nodes.size(); k += 4) {
    const auto [least, most] =
        std::minmax_element(&tables.Shell4Nodes[k], &tables.Shell4Nodes[k] + 4);
    band = std::max(band, *most - *least);
  }
  return band;
}

std::string Joined(const std::string& text) {
  std::istringstream words(text);
  std::string joined;
  for (std::string word; words >> word;) joined += (joined.empty() ? "" : " ") + word;
  return joined;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t found = text.find(from);
  EXPECT_NE(found, std::string::npos) << from;
  return found == std::string::npos ? text : text.replace(found, from.size(), to);
}

struct KvxRenumber : testing::Test {
  TempFolder base;
  fs::path folder = base.Path() / "deck";

  void SetUp() override { fs::create_directory(folder); }
  void Put(const std::string& text, const std::string& name = "fem_solving.txt") const {
    WriteFile(folder / name, text);
  }
  std::string Text(const std::string& name = "fem_solving.txt") const {
    return ReadBytes(folder / name);
  }
  bool Has(const std::string& name) const { return fs::exists(folder / name); }
  ProgramRun Kvx(const std::vector<std::string>& arguments) const {
    return korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
  }
  std::string Do(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments{"renumber", "deck"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProgramRun run = Kvx(arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return Joined(run.out);
  }
  // Refused with this in the complaint, and nothing is changed.
  void ExpectRefusal(const std::string& reason, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments{"renumber", "deck"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const FolderBytes before = ReadFolder(folder);
    const std::string model = Text();
    const ProgramRun run = Kvx(arguments);
    EXPECT_EQ(run.exitStatus, 65) << run.out;
    EXPECT_NE(Joined(run.err).find(reason), std::string::npos) << run.err;
    EXPECT_EQ(ReadFolder(folder), before);
    EXPECT_EQ(Text(), model);
  }
};

TEST_F(KvxRenumber, WritesTheSameStructureInABetterOrder) {
  const std::string text = ShuffledPlate();
  Put(text);
  const std::string said = Do();
  EXPECT_NE(said.find("65 nodes have new numbers ("), std::string::npos) << said;
  const ModelTables before = TablesOf(text), after = TablesOf(Text());
  EXPECT_EQ(StructureOf(after), StructureOf(before));
  EXPECT_GT(BandOf(before), 40);
  // Along the plate it is 6, 5 nodes a row and one more to the next corner. Orders that save more
  // at the ends than they lose in between stay below two rows and their corners.
  EXPECT_LE(BandOf(after), 2 * 6);
  EXPECT_EQ(after.Shell4SurfaceLoads[0].q, before.Shell4SurfaceLoads[0].q);
}

TEST_F(KvxRenumber, GivesTheFirstFileBack) {
  const std::string text = ShuffledPlate();
  Put(text);
  Do();
  EXPECT_TRUE(Has("renumber.json"));
  const std::string said = Do({"--undo"});
  EXPECT_NE(said.find("65 nodes have their first numbers back. "), std::string::npos) << said;
  EXPECT_EQ(Text(), text);
  EXPECT_FALSE(Has("renumber.json"));
  EXPECT_FALSE(Has("kvx-unfinished"));
}

TEST_F(KvxRenumber, WritesNothingWhereNothingIsBetter) {
  Put(korvex::test::WriteModel(Plate(1, 30)));  // a ladder, rung by rung
  const std::string text = Text();
  EXPECT_NE(Do().find("no better order was found, nothing is changed."), std::string::npos);
  EXPECT_EQ(Text(), text);
  EXPECT_FALSE(Has("renumber.json"));
}

TEST_F(KvxRenumber, OnlyTellsWithDryRun) {
  Put(ShuffledPlate());
  const std::string text = Text();
  EXPECT_NE(Do({"--dry-run"}).find("65 nodes would get new numbers"), std::string::npos);
  EXPECT_EQ(Text(), text);
  EXPECT_FALSE(Has("renumber.json"));
  Do();
  const std::string renumbered = Text();
  EXPECT_NE(Do({"-n", "--undo"}).find("would get their first numbers back"), std::string::npos);
  EXPECT_EQ(Text(), renumbered);
  EXPECT_TRUE(Has("renumber.json"));
}

// The names of sections, and even one that looks like the count of nodes; comments behind the end.
TEST_F(KvxRenumber, KeepsWhatStandsAroundTheRows) {
  ModelText model = Plate(4, 12);
  model.tSections = {{100.0, 10.0, 50.0, 10.0}};
  std::string text = Shuffled(korvex::test::WriteModel(model), 3);
  text = Replaced(text, "T_beam #0", "Number of nodal points:NPOIN=9 is no count");
  text = Replaced(text, "E=206000", "E=2.060e5");
  Put(text);
  Do();
  const std::size_t end = text.rfind("Number of nodal points:NPOIN=");
  EXPECT_EQ(Text().substr(0, end), text.substr(0, end));
  EXPECT_EQ(Text().rfind("Number of nodal points:NPOIN=65\n"), end);
  EXPECT_EQ(StructureOf(TablesOf(Text())), StructureOf(TablesOf(text)));
}

TEST_F(KvxRenumber, KeepsTheLineEndsOfWindows) {
  std::string text;
  for (const char c : ShuffledPlate()) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
  Put(text);
  Do();
  const std::string after = Text();
  EXPECT_EQ(std::count(after.begin(), after.end(), '\n'),
            std::count(text.begin(), text.end(), '\n'));
  for (std::size_t at = after.find('\n'); at != std::string::npos; at = after.find('\n', at + 1)) {
    ASSERT_EQ(after[at - 1], '\r');
  }
  Do({"--undo"});
  EXPECT_EQ(Text(), text);
}

TEST_F(KvxRenumber, KeepsTheBitsOfNumbers) {
  ModelText model = Plate(4, 12);
  model.nodes[7] = {0.1 + 0.2, -0.0, 1e-310};
  model.forces[0].components = {1.0 / 3.0, 1e300, -4.9e-324, 0.0, -0.0, 0.0};
  const std::string text = Shuffled(korvex::test::WriteModel(model), 3);
  Put(text);
  Do();
  EXPECT_NE(Text(), text);
  Do({"--undo"});
  EXPECT_EQ(Text(), text);  // the shortest digits that give each number back, and the sign of 0
}

// What the solver does not read as it is written would be lost.
TEST_F(KvxRenumber, LeavesAModelThatIsNotReadWhole) {
  const std::string text = ShuffledPlate();
  Put(Replaced(text, "Number of forces:NFOR=1", "Number of forces:NFOR=2"));
  ExpectRefusal("the solver does not read all of it as it is written: K0");
  ExpectRefusal("Mend it first: kvx check tells how.", {"--undo"});
}

// All references mean the node before: moved, nobody could mend them.
TEST_F(KvxRenumber, LeavesAModelThatCountsFromOne) {
  ModelText model = Plate(4, 12);
  for (auto& shell : model.shells4) {
    for (int& node : shell.nodes) ++node;
  }
  for (auto& restraint : model.restraints) ++restraint.node;
  for (auto& force : model.forces) ++force.node;
  Put(korvex::test::WriteModel(model));
  ExpectRefusal("K124");
}

// First with a few of its elements, then with all of them: the order of the second renumbering has
// nothing to do with the first one.
TEST_F(KvxRenumber, LeadsBackThroughSeveralRenumberings) {
  const ModelTables first = TablesOf(ShuffledPlate());
  ModelTables tables = first;
  tables.Shell4Nodes.resize(std::size_t{4} * 20);
  tables.Shell4Properties.resize(20);
  Put(korvex::WriteTables(tables));
  Do();
  const ModelTables between = TablesOf(Text());
  EXPECT_NE(Text(), korvex::WriteTables(tables));
  tables = between;
  std::map<Place, std::int32_t> nodes;
  for (std::int32_t node = 0; node < 65; ++node) nodes[PlaceOf(between, node)] = node;
  for (std::size_t k = std::size_t{4} * 20; k < first.Shell4Nodes.size(); ++k) {
    tables.Shell4Nodes.push_back(nodes.at(PlaceOf(first, first.Shell4Nodes[k])));
  }
  tables.Shell4Properties = first.Shell4Properties;
  Put(korvex::WriteTables(tables));
  Do();
  EXPECT_NE(Text(), korvex::WriteTables(tables));
  EXPECT_EQ(StructureOf(TablesOf(Text())), StructureOf(first));
  Do({"--undo"});
  EXPECT_EQ(Text(), ShuffledPlate());
  EXPECT_FALSE(Has("renumber.json"));
}

// Values are compared, so that a last digit may be rounded the other way.
void ExpectSameNumbers(const std::string& a, const std::string& b, const std::string& name) {
  const auto separate = [](std::string text) {
    for (char& c : text) c = c == ',' || c == '[' || c == ']' || c == ':' ? ' ' : c;
    return text;
  };
  std::istringstream wordsA(separate(a)), wordsB(separate(b));
  double largest = 0.0;
  std::vector<std::pair<double, double>> numbers;
  std::string wordA, wordB;
  while (wordsA >> wordA && wordsB >> wordB) {
    char *endA = nullptr, *endB = nullptr;
    const double x = std::strtod(wordA.c_str(), &endA), y = std::strtod(wordB.c_str(), &endB);
    if (*endA != '\0' || *endB != '\0') {
      ASSERT_EQ(wordA, wordB) << name;
      continue;
    }
    numbers.emplace_back(x, y);
    largest = std::max(largest, std::abs(x));
  }
  EXPECT_FALSE(wordsA >> wordA) << name;
  EXPECT_FALSE(wordsB >> wordB) << name;
  for (const auto& [x, y] : numbers) {
    // One step of the sixth digit, 1e-5 at most; near zero, what 1e-9 of a displacement makes.
    ASSERT_LE(std::abs(x - y), 1.01e-5 * std::abs(x) + 1e-9 * largest) << name;
  }
}

std::vector<double> DisplacementsOf(const fs::path& folder) {
  const std::string text = ReadBytes(folder / "fem_solving.txt");
  std::vector<double> displacements;
  const DisplacementReading reading =
      ReadDisplacementFile((folder / "displacements.bin").string(), IdentifyModelFile(text),
                           static_cast<std::int32_t>(TablesOf(text).Nodes.size()), displacements);
  EXPECT_EQ(reading.fit, DisplacementFit::Fits) << reading.reason;
  return displacements;
}

void ExpectSameDisplacements(const std::vector<double>& a, const std::vector<double>& b) {
  ASSERT_EQ(a.size(), b.size());
  double largest = 0.0, difference = 0.0;
  for (std::size_t k = 0; k < a.size(); ++k) {
    largest = std::max(largest, std::abs(a[k]));
    difference = std::max(difference, std::abs(a[k] - b[k]));
  }
  EXPECT_GT(largest, 0.0);
  EXPECT_LE(difference, 1e-9 * largest);  // what is promised; both solve the same equations
}

std::vector<std::string> ModelsWithResults() {
  std::vector<std::string> texts{ShuffledPlate()};
  texts.push_back(Shuffled(korvex::test::WriteModel(Plate(40, 40)), 1));
  for (const std::string& name : ListSolvedExamples()) {
    texts.push_back(Shuffled(ReadBytes(KORVEX_EXAMPLES "/" + name + "/fem_solving.txt"), 5, 100));
  }
  return texts;
}

// Solved as it was, and solved under new numbers and brought back: the same results.
TEST_F(KvxRenumber, BringsResultsBackToTheFirstNumbers) {
  for (const std::string& text : ModelsWithResults()) {
    Put(text);
    ASSERT_EQ(Kvx({"run", "deck"}).exitStatus, 0);
    const std::vector<double> expected = DisplacementsOf(folder);
    const FolderBytes files = ReadFolder(folder);
    const std::string said = Do();
    EXPECT_NE(said.find("Removed, as results in the numbers before: structure.dxf,"),
              std::string::npos)
        << said;
    EXPECT_EQ(korvex::test::ListFolder(folder),
              (std::vector<std::string>{"fem_solving.txt", "renumber.json"}));
    ASSERT_EQ(Kvx({"run", "deck"}).exitStatus, 0);
    EXPECT_NE(Do({"--undo"}).find("Written anew, from the displacements that are known: "),
              std::string::npos);
    EXPECT_EQ(Text(), text);
    ExpectSameDisplacements(DisplacementsOf(folder), expected);
    const FolderBytes undone = ReadFolder(folder);
    ASSERT_EQ(undone.size(), files.size());
    for (const auto& [name, bytes] : files) ExpectSameNumbers(undone.at(name), bytes, name);
    // Byte by byte the files are those of these displacements.
    const ProgramRun audit = Kvx({"audit", "deck"});
    EXPECT_EQ(audit.exitStatus, 0);
    EXPECT_EQ(audit.out.find("K71"), std::string::npos) << audit.out;
  }
}

TEST_F(KvxRenumber, UndoesAModelThatWasEdited) {
  Put(ShuffledPlate());
  Do();
  ASSERT_EQ(Kvx({"run", "deck"}).exitStatus, 0);
  std::string edited = Replaced(Text(), "TK=10", "TK=12");
  edited = Replaced(edited, "-3000", "-4000");
  Put(edited);
  const std::string said = Do({"--undo"});
  EXPECT_NE(said.find("Not known to be results of this model, and left as they are: structure.dxf"),
            std::string::npos)
      << said;
  EXPECT_EQ(Text(), Replaced(Replaced(ShuffledPlate(), "TK=10", "TK=12"), "-3000", "-4000"));
}

TEST_F(KvxRenumber, RefusesToUndoOtherNodes) {
  Put(ShuffledPlate());
  ExpectRefusal("there is no renumber.json beside it", {"--undo"});
  Do();
  const std::string renumbered = Text();
  ModelTables tables = TablesOf(renumbered);
  tables.Nodes[5].z += 1.0;
  Put(korvex::WriteTables(tables));
  ExpectRefusal("its nodes are not those that were renumbered", {"--undo"});
  tables.Nodes.push_back({0.0, 0.0, 1.0});
  Put(korvex::WriteTables(tables));
  ExpectRefusal("it has 66 nodes, renumber.json has 65. Nodes were added or removed", {"--undo"});
  // The mesh was exported anew: it has its first numbers already.
  Put(ShuffledPlate());
  ExpectRefusal("its nodes are not those that were renumbered", {"--undo"});
  EXPECT_NE(Do().find("The renumber.json that was there belongs to other nodes, and is replaced."),
            std::string::npos);
  Do({"--undo"});
  EXPECT_EQ(Text(), ShuffledPlate());
}

TEST_F(KvxRenumber, RefusesABrokenMap) {
  Put(ShuffledPlate());
  Do();
  const std::string map = Text("renumber.json");
  const auto expect = [&](const std::string& text, const std::string& reason) {
    Put(text, "renumber.json");
    ExpectRefusal("renumber.json " + reason, {"--undo"});
  };
  expect(map.substr(0, map.size() / 2), "is not what kvx renumber writes");
  expect("[1]", "is not what kvx renumber writes");
  expect(Replaced(map, "\"kvx\":1", "\"kvx\":2"), "is of another version of kvx");
  const std::string part = "does not hold each number of a node once, or lacks a part";
  const std::size_t list = map.find("\"old\":[") + 7;
  const std::string first = map.substr(list, map.find(',', list) - list);
  expect(Replaced(map, "\"old\":[" + first, "\"old\":[" + std::to_string(65)), part);
  expect(Replaced(map, "\"old\":[" + first, "\"old\":[-" + first), part);
  const std::size_t second = map.find(',', list) + 1;
  const std::string other = map.substr(second, map.find(',', second) - second);
  expect(Replaced(map, "\"old\":[" + first, "\"old\":[" + other), part);
  // On the way forward it would be lost, too.
  Put(ShuffledPlate());
  Put("{", "renumber.json");
  ExpectRefusal("Remove it, if the numbers before need not come back.");
}

// A force of the loads, by the place of its node.
std::vector<std::pair<Place, std::array<double, 6>>> ForcesOf(const std::string& loads,
                                                              const ModelTables& model) {
  const std::string text = korvex::WriteTables({});
  const ModelTables tables = TablesOf(text.substr(0, text.find("Number of forces")) +
                                      loads.substr(loads.find("Number of forces")));
  std::vector<std::pair<Place, std::array<double, 6>>> forces;
  for (const korvex::NodalForce& row : tables.NodalForces) {
    forces.emplace_back(PlaceOf(model, row.node), row.components);
  }
  return forces;
}

constexpr const char* Loads =
    "Number of forces:NFOR=2\n3<0,0,-1,0,0,0>\n64<1,0,0,0,0,0>\n"
    "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=1\n3:1,2,3\n"
    "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0\n"
    "Number of distributed loads on beam elements:NDL_B=0\n";

TEST_F(KvxRenumber, MovesTheLoadsOfCases) {
  Put(ShuffledPlate());
  fs::create_directory(folder / "loads");
  Put(std::string("\n \n") + Loads, "wind.txt");
  Put(Loads, "loads/snow.txt");
  Put("[case.a]\nloads = \"wind.txt\"\n[case.b]\nloads = \"loads/snow.txt\"\n"
      "[case.c]\nloads = \"./loads/../wind.txt\"\n[case.d]\nloads = \"fem_solving.txt\"\n",
      "cases.toml");
  Put("structure = \".\"\n[case.e]\nloads = \"wind.txt\"\n", "other.toml");
  Put("[material.steel]\nE = 1\n[group.deck]\nthickness = 2\n", "map.toml");
  fs::create_directory(folder / "results");
  const std::string cases = Text("cases.toml");
  const auto before = ForcesOf(Loads, TablesOf(Text()));
  const std::string said = Do();
  EXPECT_NE(said.find("They are also in: wind.txt, loads/snow.txt."), std::string::npos) << said;
  EXPECT_NE(said.find("The results of load cases have the numbers before: kvx cases makes them"),
            std::string::npos)
      << said;
  EXPECT_NE(Text("wind.txt"), std::string("\n \n") + Loads);
  EXPECT_EQ(Text("wind.txt"), "\n \n" + Text("loads/snow.txt"));
  EXPECT_EQ(ForcesOf(Text("wind.txt"), TablesOf(Text())), before);
  EXPECT_EQ(Text("cases.toml"), cases);
  EXPECT_FALSE(Has("kvx-unfinished"));
  Do({"--undo"});
  EXPECT_EQ(Text("wind.txt"), std::string("\n \n") + Loads);
  EXPECT_EQ(Text("loads/snow.txt"), Loads);
}

TEST_F(KvxRenumber, RefusesWhereLoadsWouldBeWrong) {
  Put(ShuffledPlate());
  Put(Loads, "wind.txt");
  Put(Loads, "../out.txt");
  const auto expect = [&](const std::string& cases, const std::string& reason) {
    Put(cases, "cases.toml");
    ExpectRefusal(reason);
  };
  expect("[case.a]\nloads = \"../out.txt\"\n",
         "cases.toml, line 2: \"../out.txt\" stands outside the folder of the model");
  expect("[case.a]\nloads = \"lost.txt\"\n", "cases.toml, line 2: there is no file \"lost.txt\".");
  expect("[case.a]\nlodes = \"wind.txt\"\n", "cases.toml: line 2: ");
  Put(Replaced(Loads, "NFOR=2", "NFOR=3"), "bad.txt");
  expect("[case.a]\nloads = \"bad.txt\"\n", "\"bad.txt\": not all of it is read as it is written");
  Put("hello", "bad.txt");
  expect("[case.a]\nloads = \"bad.txt\"\n", "\"bad.txt\": line 1: a file of loads begins with");
  Put(Text(), "whole.txt");
  expect("[case.a]\nloads = \"whole.txt\"\n", "\"whole.txt\" is a whole model file");
  Put("structure = \"whole.txt\"\n[case.b]\nloads = \"wind.txt\"\n", "other.toml");
  expect("[case.a]\nloads = \"wind.txt\"\n",
         "\"wind.txt\" is also loads of another model, in other.toml, line 3.");
  // Cases of another model have nothing to do with this one.
  expect("structure = \"whole.txt\"\n[case.a]\nlodes = \"wind.txt\"\n", "cases.toml: line 3: ");
  Put("structure = \"whole.txt\"\n[case.a]\nloads = \"wind.txt\"\n", "cases.toml");
  Do();
  EXPECT_EQ(Text("wind.txt"), Loads);
}

TEST_F(KvxRenumber, MovesTheNumbersOfTheDeck) {
  Put(ShuffledPlate());
  const ModelTables before = TablesOf(Text());
  ModelOrigin origin;
  origin.source = "deck.bdf";
  origin.format = "Nastran bulk data";
  origin.hash = HashStructure(before);
  for (std::int32_t node = 0; node < 65; ++node) origin.nodes.push_back(1000 + 7 * node);
  origin.types = {"CQUAD4"};
  for (std::int32_t shell = 0; shell < 48; ++shell) {
    origin.shells4.numbers.push_back(500 + shell);
    origin.shells4.types.push_back(0);
  }
  origin.groups = {{"rim", "*NSET", {0, 3, 64}, {}, {}, {}}};
  const std::string text = WriteOrigin(origin, {}, {});
  Put(text, "import.json");
  EXPECT_NE(Do().find("They are also in: import.json."), std::string::npos);
  const ModelTables after = TablesOf(Text());
  ModelOrigin moved;
  std::string reason;
  ASSERT_TRUE(ReadOrigin(Text("import.json"), moved, reason)) << reason;
  EXPECT_TRUE(FitsModel(moved, after));
  for (std::int32_t node = 0; node < 65; ++node) {
    const auto old =
        static_cast<std::int32_t>(moved.nodes[static_cast<std::size_t>(node)] - 1000) / 7;
    EXPECT_EQ(PlaceOf(after, node), PlaceOf(before, old));
  }
  Do({"--undo"});
  EXPECT_EQ(Text("import.json"), text);
  // Of another mesh: it is left alone, and that is said.
  Put(Replaced(text, "\"hash\": \"", "\"hash\": \"f"), "import.json");
  EXPECT_NE(Do().find("import.json does not belong to this state of the model"), std::string::npos);
}

// import.json knows by the hashes of the import's files what somebody has changed since: new
// numbers alone are no such change.
TEST_F(KvxRenumber, LeavesAnImportedModelReplaceable) {
  Put(ShuffledPlate());
  Put("structure = \"fem_solving.txt\"\n[case.a]\nloads = \"loads-a.txt\"\n[case.b]\n"
      "loads = \"loads-b.txt\"\n",
      "cases.toml");
  const std::string loads = Loads;
  Put(loads, "loads-a.txt");
  Put(Replaced(loads, "64<1,", "64<2,"), "loads-b.txt");  // changed by hand
  const auto hashOf = [](const std::string& text) { return HashText(HashBytes(text)); };
  ModelOrigin origin;
  origin.hash = HashStructure(TablesOf(Text()));
  origin.nodes.assign(65, 1);
  origin.shells4.numbers.assign(48, 1);
  origin.shells4.types.assign(48, -1);
  const std::vector<std::string> names{"fem_solving.txt", "cases.toml", "loads-a.txt",
                                       "loads-b.txt"};
  const std::string text =
      WriteOrigin(origin, {}, names,
                  {hashOf(Text()), hashOf(Text("cases.toml")), hashOf(loads), hashOf(loads)});
  Put(text, "import.json");
  Do();
  EXPECT_NE(Text("loads-a.txt"), loads);
  std::vector<ImportedFile> files;
  std::string reason;
  ASSERT_TRUE(ReadImportedFiles(Text("import.json"), files, reason)) << reason;
  ASSERT_EQ(files.size(), names.size());
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_EQ(files[k].name, names[k]);
    EXPECT_EQ(files[k].hash, hashOf(Text(names[k]))) << names[k];
  }
  EXPECT_EQ(files[3].hash, hashOf(loads));
  EXPECT_NE(files[3].hash, hashOf(Text("loads-b.txt")));
  Do({"--undo"});
  EXPECT_EQ(Text("import.json"), text);
}

// Only what is known to be a result of this model goes.
TEST_F(KvxRenumber, LeavesFilesThatItDoesNotKnow) {
  Put(ShuffledPlate());
  Put("mine", "Node_Dis.txt");
  Put("mine", "notes.txt");
  const std::string said = Do();
  EXPECT_NE(said.find("Not known to be results of this model, and left as they are: Node_Dis.txt."),
            std::string::npos)
      << said;
  EXPECT_EQ(Text("Node_Dis.txt"), "mine");
  EXPECT_EQ(Text("notes.txt"), "mine");
}

TEST_F(KvxRenumber, RefusesTheModelOfALoadCase) {
  Put(ShuffledPlate());
  Put("{\"case\": \"a\", \"program\": \"kvx cases\", \"sources\": []}", "case.json");
  ExpectRefusal("kvx cases has made it. Renumber the structure of the load cases");
}

TEST_F(KvxRenumber, IsForTheModelOfAFolder) {
  Put(ShuffledPlate(), "other.txt");
  EXPECT_EQ(Kvx({"renumber", "deck/other.txt"}).exitStatus, 64);
  EXPECT_EQ(Kvx({"renumber", "deck"}).exitStatus, 66);
}

// A process that is killed between the moves leaves no model in its place: the next command brings
// all files back.
TEST_F(KvxRenumber, IsTakenBackWhereItWasKilled) {
  const std::string text = ShuffledPlate();
  fs::create_directories(folder / "kvx-unfinished" / "old" / "loads");
  fs::create_directory(folder / "loads");
  Put("new", "loads/a.txt");
  Put(Loads, "kvx-unfinished/old/loads/a.txt");
  Put(text, "kvx-unfinished/old/fem_solving.txt");
  EXPECT_EQ(Kvx({"check", "deck"}).exitStatus, 0);
  EXPECT_EQ(Text(), text);
  EXPECT_EQ(Text("loads/a.txt"), Loads);
  EXPECT_FALSE(Has("kvx-unfinished"));
}

TEST_F(KvxRenumber, TellsProgramsWhatItDid) {
  Put(ShuffledPlate());
  const std::string said = Do({"--json"});
  // As this system writes it; JSON writes each backslash as two.
  const std::string slash = fs::path::preferred_separator == '/' ? "/" : "\\\\";
  EXPECT_EQ(said.find("{\"file\":\"deck" + slash + "fem_solving.txt\""), 0U) << said;
  EXPECT_NE(said.find("\"changed\":true,\"nodes\":65,\"before\":{"), std::string::npos) << said;
}

// 961 nodes at random: a full matrix of 5766 equations, a third of their third power operations.
TEST_F(KvxRenumber, IsRecommendedWhereItSavesMuch) {
  Put(Shuffled(korvex::test::WriteModel(Plate(30, 30)), 1));
  const std::string check = Joined(Kvx({"check", "deck"}).out);
  EXPECT_NE(check.find("with the nodes in another order ("), std::string::npos);
  EXPECT_NE(check.find("Call kvx renumber: "), std::string::npos) << check;
  const std::string run = Joined(Kvx({"run", "deck", "--engine", "skyline"}).out);
  EXPECT_NE(run.find("HINT K501"), std::string::npos) << run;
  EXPECT_NE(run.find("kvx renumber deck writes the model in that order"), std::string::npos) << run;
  Do();
  EXPECT_EQ(Joined(Kvx({"check", "deck"}).out).find("K501"), std::string::npos);
  EXPECT_EQ(Joined(Kvx({"run", "deck"}).out).find("kvx renumber"), std::string::npos);
}

}  // namespace
}  // namespace kvx::test
