// kvx import as its user meets it: the folder that it writes, what it leaves alone, and what it
// says to each mistake. What is taken of each format is tested with its reader.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "audit/solved_model.h"
#include "commands/number_map.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ListFolder;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;
using korvex::test::WriteFile;
using nlohmann::json;

// Two squares of 1 in a row along x, with a line at x = 0, and a point at (2, 1, 0).
constexpr const char* Mesh =
    "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n"
    "$PhysicalNames\n3\n0 3 \"tip\"\n1 2 \"clamped\"\n2 1 \"deck\"\n$EndPhysicalNames\n"
    "$Nodes\n6\n"
    "11 0 0 0\n12 1 0 0\n13 2 0 0\n14 0 1 0\n15 1 1 0\n16 2 1 0\n"
    "$EndNodes\n"
    "$Elements\n4\n"
    "1 15 2 3 1 16\n2 1 2 2 1 11 14\n3 3 2 1 1 11 12 15 14\n4 3 2 1 1 12 13 16 15\n"
    "$EndElements\n";

constexpr const char* Properties =
    "[material.steel]\nE = 2.1e11\npoisson = 0.3\ndensity = 7850\n"
    "[group.deck]\nthickness = 0.02\nmaterial = \"steel\"\n"
    "[group.clamped]\nrestraint = \"fixed\"\n";

// A folder with a mesh and its map.
struct KvxImport : testing::Test {
  TempFolder base;

  KvxImport() {
    Put("plate.msh", Mesh);
    Put("plate.toml", std::string(Properties) + "[group.tip]\nforce = [0, 0, -1]\n");
  }
  void Put(const std::string& name, const std::string& text) const {
    const fs::path file = base.Path() / fs::u8path(name);
    fs::create_directories(file.parent_path());
    WriteFile(file, text);
  }
  ProgramRun Call(const std::vector<std::string>& arguments) const {
    ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
    for (std::string* text : {&run.out, &run.err}) {
      text->erase(std::remove(text->begin(), text->end(), '\r'), text->end());
    }
    return run;
  }
  ProgramRun Import(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"import", "plate.msh"});
    return Call(arguments);
  }
  ProgramRun ImportMapped(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.end(), {"--map", "plate.toml"});
    return Import(arguments);
  }
  std::string Read(const std::string& name) const { return ReadBytes(base.Path() / name); }
  bool Exists(const std::string& name) const { return fs::exists(base.Path() / name); }

  void Append(const std::string& name, const std::string& text) const {
    Put(name, Read(name) + text);
  }

  // Two load cases, one of them gravity.
  void PutCases() const {
    Put("plate.toml", std::string(Properties) +
                          "[case.weight]\nacceleration = [0, 0, -9.81]\n[case.\"crane 1\"]\n"
                          "[group.tip]\nforce = [0, 0, -1]\ncase = \"crane 1\"\n");
  }
};

using Names = std::vector<std::string>;

void ExpectHas(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << part << "\n is not in:\n" << text;
}

TEST_F(KvxImport, FolderHasTheNameOfTheDeckAndIsSolved) {
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(ListFolder(base.Path() / "plate"), (Names{"fem_solving.txt", "import.json"}));
  EXPECT_EQ(run.out.rfind("plate.msh: gmsh 2.2, ", 0), 0U) << run.out;
  ExpectHas(run.out, "\nTaken:\n");
  ExpectHas(run.out, "6 nodes, 2 four-node shells\n");
  ExpectHas(run.out, "2 restraints, 1 force\n");
  ExpectHas(run.out, "sum of loads (0, 0, -1), moments about the origin (-1, 2, 0)\n");
  ExpectHas(run.out, "No errors, no warnings.\n");
  ExpectHas(run.out, "\nNext: kvx run plate solves it");
  EXPECT_EQ(Call({"run", "plate"}).exitStatus, 0);
}

TEST_F(KvxImport, FolderIsThatOfTheOption) {
  for (const std::string folder : {"out", "new/folder/", "w\xC3\xA4nde"}) {
    const ProgramRun run = ImportMapped({"-o", folder});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_TRUE(fs::exists(base.Path() / fs::u8path(folder) / "fem_solving.txt"));
  }
  EXPECT_FALSE(Exists("plate"));
}

// A deck may lie in the folder of its model.
TEST_F(KvxImport, DeckInItsOwnFolderStays) {
  EXPECT_EQ(ImportMapped({"-o", "."}).exitStatus, 0);
  EXPECT_EQ(Read("plate.msh"), Mesh);
  EXPECT_EQ(ImportMapped({"-o", "."}).exitStatus, 0);
}

TEST_F(KvxImport, ImportTwiceGivesTheSameBytes) {
  ImportMapped();
  const std::string model = Read("plate/fem_solving.txt"), origin = Read("plate/import.json");
  EXPECT_EQ(ImportMapped().exitStatus, 0);
  EXPECT_EQ(Read("plate/fem_solving.txt"), model);
  EXPECT_EQ(Read("plate/import.json"), origin);
}

TEST_F(KvxImport, RefusedWritesNothingAndTellsWhatToDo) {
  const ProgramRun run = Import({});
  EXPECT_EQ(run.exitStatus, 65);
  ExpectHas(run.out, "\nRefused, without it there is no model:\n");
  ExpectHas(run.out, "there is no thickness");
  ExpectHas(run.out, "\n  kvx import plate.msh --map-template map.toml\n");
  EXPECT_FALSE(Exists("plate"));
}

TEST_F(KvxImport, DeckWithoutElementsIsRefused) {
  Put("nodes.bdf", "GRID,1,,0.,0.,0.\n");
  const ProgramRun run = Call({"import", "nodes.bdf"});
  EXPECT_EQ(run.exitStatus, 65);
  ExpectHas(run.out, "there are no shells and no beams");
  EXPECT_FALSE(Exists("nodes"));
}

// The texts of included files are those of the deck's folder, and are no place for an output.
TEST_F(KvxImport, IncludedFilesAreReadBesideTheDeck) {
  Put("decks/plate.bdf",
      "INCLUDE 'parts\\mesh.inc'\nCQUAD4,1,1,1,2,3,4\nPSHELL,1,1,.1,1,,1\n"
      "MAT1,1,2.1+11,,.3\nSPC1,1,123456,1,4\nFORCE,1,3,,1.,0.,0.,-1.\n");
  Put("decks/parts/mesh.inc",
      "GRID,1,,0.,0.,0.\nGRID,2,,1.,0.,0.\nGRID,3,,1.,1.,0.\nGRID,4,,0.,1.,0.\n");
  const ProgramRun run = Call({"import", "decks/plate.bdf"});
  EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  ExpectHas(run.out, "with the included file");
  ExpectHas(run.out, "4 nodes, 1 four-node shell\n");
  fs::remove(base.Path() / "decks/parts/mesh.inc");
  const ProgramRun missing = Call({"import", "decks/plate.bdf"});
  EXPECT_EQ(missing.exitStatus, 65);
  ExpectHas(missing.err, "\"decks/plate.bdf\", line 1: ");
  ExpectHas(missing.err, "mesh.inc");
}

// Tetrahedra are no shells: lost, and an error where that is asked for.
TEST_F(KvxImport, StrictWritesNothingWhereAnythingIsLost) {
  std::string mesh = Mesh;
  mesh.replace(mesh.find("$Elements\n4"), 11, "$Elements\n5");
  mesh.insert(mesh.find("$EndElements"), "5 4 2 9 1 11 12 15 14\n");
  Put("plate.msh", mesh);
  const ProgramRun strict = ImportMapped({"--strict"});
  EXPECT_EQ(strict.exitStatus, 1);
  ExpectHas(strict.out, "Nothing was written: with --strict nothing may be lost");
  EXPECT_FALSE(Exists("plate"));
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  ExpectHas(run.out, "\nLost, the structure or its loads lack it:\n");
}

TEST_F(KvxImport, StrictPassesWhereNothingIsLost) {
  EXPECT_EQ(ImportMapped({"--strict"}).exitStatus, 0);
  EXPECT_TRUE(Exists("plate/fem_solving.txt"));
}

TEST_F(KvxImport, ErrorsOfTheModelGiveTheStatusOfTheCheck) {
  Put("plate.toml",
      "[material.steel]\nE = 2.1e11\npoisson = 0.3\n"
      "[group.deck]\nthickness = 0.02\nmaterial = \"steel\"\npressure = -1\n");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 1);
  ExpectHas(run.out, "ERROR K301");  // nothing holds it
  ExpectHas(run.out, "cannot be solved as it is");
  EXPECT_TRUE(Exists("plate/fem_solving.txt"));
}

TEST_F(KvxImport, ModelOfSomeoneElseIsNotReplaced) {
  Put("plate/fem_solving.txt", "mine");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_EQ(run.out, "");
  ExpectHas(run.err, "is there already, and no import has written it.");
  EXPECT_EQ(Read("plate/fem_solving.txt"), "mine");
  EXPECT_EQ(ListFolder(base.Path() / "plate"), (Names{"fem_solving.txt"}));
  EXPECT_EQ(ImportMapped({"--force"}).exitStatus, 0);
  EXPECT_NE(Read("plate/fem_solving.txt"), "mine");
}

// An import.json of another model does not make it one that an import has written.
TEST_F(KvxImport, ModelChangedByHandIsNotReplaced) {
  ImportMapped();
  Append("plate/fem_solving.txt", "\n");
  const std::string changed = Read("plate/fem_solving.txt");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 73);
  ExpectHas(run.err, "has been changed since it was imported.");
  EXPECT_EQ(Read("plate/fem_solving.txt"), changed);
  EXPECT_EQ(ImportMapped({"--force"}).exitStatus, 0);
}

TEST_F(KvxImport, CombinationsOfTheUserAreNotReplaced) {
  PutCases();
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  Append("plate/cases.toml", "[combination.uls]\nfactors = { weight = 1.35 }\n");
  const std::string cases = Read("plate/cases.toml"), model = Read("plate/fem_solving.txt");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 73);
  ExpectHas(run.err, "cases.toml");
  ExpectHas(run.err, "combinations, is then lost");
  EXPECT_EQ(Read("plate/cases.toml"), cases);
  EXPECT_EQ(Read("plate/fem_solving.txt"), model);
  EXPECT_FALSE(Exists("plate/kvx-unfinished"));
}

// The map is read, so it is no place for an output, even with --force.
TEST_F(KvxImport, FileThatIsReadIsNotReplaced) {
  PutCases();
  const std::string map = Read("plate.toml");
  Put("out/cases.toml", map);
  const ProgramRun run =
      Call({"import", "plate.msh", "--map", "out/cases.toml", "-o", "out", "--force"});
  EXPECT_EQ(run.exitStatus, 73);
  ExpectHas(run.err, "is read by this import");
  EXPECT_EQ(ListFolder(base.Path() / "out"), (Names{"cases.toml"}));
  EXPECT_EQ(Read("out/cases.toml"), map);
}

TEST_F(KvxImport, FilesOfAnEarlierImportAndItsResultsGo) {
  PutCases();
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  EXPECT_EQ(ListFolder(base.Path() / "plate"),
            (Names{"cases.toml", "fem_solving.txt", "import.json", "loads-crane-1.txt"}));
  Put("plate/notes.txt", "mine");
  Put("plate.toml", std::string(Properties) + "[group.tip]\nforce = [0, 0, -1]\n");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(ListFolder(base.Path() / "plate"),
            (Names{"fem_solving.txt", "import.json", "notes.txt"}));
  ExpectHas(run.out, "Removed, as of an earlier import or model: cases.toml, loads-crane-1.txt.");

  ASSERT_EQ(Call({"run", "plate"}).exitStatus, 0);
  ASSERT_TRUE(Exists("plate/Node_Dis.txt"));
  EXPECT_EQ(ImportMapped().exitStatus, 0);  // the same model: its results stay
  EXPECT_TRUE(Exists("plate/Node_Dis.txt"));
  Put("plate.toml", std::string(Properties) + "[group.tip]\nforce = [0, 0, -2]\n");
  const ProgramRun other = ImportMapped();
  EXPECT_EQ(other.exitStatus, 0);
  ExpectHas(other.out, "Node_Dis.txt");
  EXPECT_EQ(ListFolder(base.Path() / "plate"),
            (Names{"fem_solving.txt", "import.json", "notes.txt"}));
}

// A file of loads that somebody has changed is left there.
TEST_F(KvxImport, ChangedFileOfAnEarlierImportStays) {
  PutCases();
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  Append("plate/loads-crane-1.txt", "\n");
  Put("plate.toml", std::string(Properties) + "[group.tip]\nforce = [0, 0, -1]\n");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  ExpectHas(run.out, "still there: loads-crane-1.txt.");
  EXPECT_TRUE(Exists("plate/loads-crane-1.txt"));
}

// renumber.json leads back to the numbers of one model alone: that of its "after".
TEST_F(KvxImport, MapOfNumbersOfAnotherModelGoes) {
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  NumberMap map;
  map.order = "Sloan";
  map.old = {1, 0, 2, 3, 4, 5};
  map.after.id = IdentifyModelFile(Read("plate/fem_solving.txt"));
  Put("plate/renumber.json", WriteNumberMap(map));
  EXPECT_EQ(ImportMapped().exitStatus, 0);
  EXPECT_TRUE(Exists("plate/renumber.json"));
  Put("plate.toml", std::string(Properties) + "[group.tip]\nforce = [0, 0, -2]\n");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  ExpectHas(run.out, "Removed, as of an earlier import or model: renumber.json.");
  EXPECT_FALSE(Exists("plate/renumber.json"));
  Put("plate/renumber.json", "{\"mine\": 1}");
  EXPECT_EQ(ImportMapped().exitStatus, 0);
  EXPECT_TRUE(Exists("plate/renumber.json"));
}

// A case file that somebody has changed or written stays, and with it the loads that it names.
TEST_F(KvxImport, LoadsThatAStayingCaseFileNamesDoNotGo) {
  PutCases();
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  const std::string cases = Read("plate/cases.toml"), model = Read("plate/fem_solving.txt");
  const std::string mine =
      "[case.tip]\nloads = \"./loads-crane-1.txt\"\n[combination.uls]\nfactors = { tip = 2 }\n";
  const struct {
    const char* name;
    std::string text;
  } stays[] = {{"cases.toml", cases + "[combination.uls]\nfactors = { weight = 1.35 }\n"},
               {"mine.toml", mine},
               {"mine.toml", mine + "a slip"}};  // to be mended by its author
  Put("plate.toml", std::string(Properties) + "[group.tip]\nforce = [0, 0, -1]\n");
  for (const auto& file : stays) {
    Put(std::string("plate/") + file.name, file.text);
    const ProgramRun run = ImportMapped();
    EXPECT_EQ(run.exitStatus, 73) << file.text;
    ExpectHas(run.err, std::string(file.name) + "\" names loads-crane-1.txt");
    EXPECT_TRUE(Exists("plate/loads-crane-1.txt"));
    EXPECT_EQ(Read("plate/fem_solving.txt"), model);
    Put("plate/cases.toml", cases);
  }
  EXPECT_EQ(ImportMapped({"--force"}).exitStatus, 0);
  EXPECT_FALSE(Exists("plate/loads-crane-1.txt"));
  EXPECT_EQ(Read("plate/mine.toml"), mine + "a slip");
}

// Other files of its kind hold nothing back.
TEST_F(KvxImport, FileThatOnlyMentionsLoadsHoldsNothing) {
  PutCases();
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  Put("plate/other.toml", "[case.tip]\nloads = \"mine.txt\" # not loads-crane-1.txt\n");
  Put("plate.toml", std::string(Properties) + "[group.tip]\nforce = [0, 0, -1]\n");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_FALSE(Exists("plate/loads-crane-1.txt"));
}

TEST_F(KvxImport, SeveralCasesAreThoseOfACaseFile) {
  PutCases();
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  ExpectHas(run.out, "  weight   weight        0   0  -3080.34  (0, 0, -9.81)\n");
  ExpectHas(run.out, "  crane-1  crane 1       0   0        -1\n");
  const std::string file = (fs::path("plate") / "cases.toml").string();  // as this system writes it
  ExpectHas(run.out, "\nNext: kvx cases " + file + " solves it, kvx view " + file + " then shows");
  EXPECT_EQ(run.out.find("K407"), std::string::npos);  // that the model itself has no loads
  ExpectHas(Read("plate/fem_solving.txt"), "Number of forces:NFOR=0\n");
  const ProgramRun solved = Call({"cases", "plate/cases.toml", "--json"});
  EXPECT_EQ(solved.exitStatus, 0) << solved.err;
  const json cases = json::parse(solved.out)["cases"];
  ASSERT_EQ(cases.size(), 2U);
  // 2 x 1 x 0.02 x 7850 x 9.81, rounded like a sum of a few terms
  EXPECT_NEAR(cases[0]["loads"][2].get<double>(), -3080.34, 1e-9);
  EXPECT_EQ(cases[1]["loads"][2].get<double>(), -1.0);
}

// Who solves or shows the structure alone sees no loads, and is told where they are.
TEST_F(KvxImport, StructureOfCasesTellsWhereItsLoadsAre) {
  PutCases();
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  const std::string remedy =
      "Loads of this model are in cases.toml: solve it with kvx cases plate/cases.toml.";
  const auto remedyOf = [&](const std::vector<std::string>& arguments) {
    const json report = json::parse(Call(arguments).out);
    const json& findings = arguments[0] == "run" ? report["check"]["findings"] : report["findings"];
    for (const json& finding : findings) {
      if (finding["code"] == "K407") return finding["remedy"].get<std::string>();
    }
    return std::string();
  };
  EXPECT_EQ(remedyOf({"check", "plate", "--json"}), remedy);
  EXPECT_EQ(remedyOf({"check", "plate/fem_solving.txt", "--json"}), remedy);
  EXPECT_EQ(remedyOf({"run", "plate", "--json"}), remedy);
  EXPECT_EQ(Call({"view", "plate"}).exitStatus, 0);
  ExpectHas(Read("plate/view.html"), remedy);

  EXPECT_EQ(Call({"cases", "plate/cases.toml"}).exitStatus, 0);
  EXPECT_EQ(Call({"view", "plate/cases.toml"}).exitStatus, 0);
  EXPECT_EQ(Read("plate/view.html").find("K407"), std::string::npos);

  const std::string cases = Read("plate/cases.toml");
  // A copy beside it is not the structure; neither is any where there are no cases.
  fs::copy_file(base.Path() / "plate/fem_solving.txt", base.Path() / "plate/copy.txt");
  const std::string general = "Enter forces, pressures or line loads.";
  EXPECT_EQ(remedyOf({"check", "plate/copy.txt", "--json"}), general);
  Put("plate/cases.toml", "structure = \"copy.txt\"\n" + cases.substr(cases.find("[case.")));
  EXPECT_EQ(remedyOf({"check", "plate", "--json"}), general);
  EXPECT_EQ(remedyOf({"check", "plate/copy.txt", "--json"}), remedy);
  Put("plate/cases.toml", "a slip");
  EXPECT_EQ(remedyOf({"check", "plate", "--json"}), general);
}

// The nodes of loads move with the order of the nodes: the force stays at (2, 1, 0).
TEST_F(KvxImport, LoadsFollowTheOrderOfTheNodes) {
  PutCases();
  ASSERT_EQ(ImportMapped().exitStatus, 0);
  const ProgramRun run = Call({"import", "plate.msh", "--map", "plate.toml", "--json"});
  const json report = json::parse(run.out);
  EXPECT_NE(report["order"]["name"], "given");
  const std::string loads = Read("plate/loads-crane-1.txt");
  const std::string node = loads.substr(loads.find('\n') + 1, 1);
  ExpectHas(Read("plate/fem_solving.txt"), '\n' + node + ":2,1,0\n");
}

TEST_F(KvxImport, OneCaseAloneCanBeTaken) {
  PutCases();
  const ProgramRun run = ImportMapped({"--case", "crane 1"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(ListFolder(base.Path() / "plate"), (Names{"fem_solving.txt", "import.json"}));
  ExpectHas(run.out, "Only the load case \"crane 1\", as asked for. Left out: weight.");
  ExpectHas(run.out, "sum of loads (0, 0, -1)");

  const ProgramRun unknown = ImportMapped({"--case", "crane 2"});
  EXPECT_EQ(unknown.exitStatus, 64);
  EXPECT_EQ(unknown.err,
            "kvx import: \"plate.msh\" has no load case \"crane 2\". Did you mean \"crane 1\"? It "
            "has \"weight\", \"crane 1\".\n");
}

// Without a density gravity makes no load, and kvx cases would stop at it.
TEST_F(KvxImport, GravityWithoutDensityIsLost) {
  PutCases();
  std::string map = Read("plate.toml");
  map.erase(map.find("density"), std::string("density = 7850\n").size());
  Put("plate.toml", map);
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  ExpectHas(run.out, "no material has a density, so gravity makes no load (case weight)");
  EXPECT_EQ(ListFolder(base.Path() / "plate"), (Names{"fem_solving.txt", "import.json"}));
  EXPECT_EQ(ImportMapped({"--strict"}).exitStatus, 1);
}

TEST_F(KvxImport, NodesAreMergedOnRequest) {
  // The second square has nodes of its own at x = 1.
  std::string mesh = Mesh;
  mesh.replace(mesh.find("$Nodes\n6\n"), 9, "$Nodes\n8\n21 1 0 0.001\n22 1 1 0\n");
  mesh.replace(mesh.find("12 13 16 15\n"), 12, "21 13 16 22\n");
  Put("plate.msh", mesh);
  EXPECT_EQ(ImportMapped().exitStatus, 1);  // the second square is held nowhere
  const ProgramRun run = ImportMapped({"--merge", "0.01"});
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  ExpectHas(run.out, "Merged within 0.01: 2 nodes are gone.");
  ExpectHas(run.out, "6 nodes, 2 four-node shells\n");
}

TEST_F(KvxImport, TemplateIsAMapToFillIn) {
  const ProgramRun shown = Import({"--map-template", "-"});
  EXPECT_EQ(shown.exitStatus, 0);
  ExpectHas(shown.out, "[group.clamped]\n");
  const ProgramRun run = Import({"--map-template", "maps/new.toml"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(Read("maps/new.toml"), shown.out);
  ExpectHas(run.out, "kvx import plate.msh --map maps/new.toml\n");
  EXPECT_FALSE(Exists("plate"));
  EXPECT_EQ(Import({"--map", "maps/new.toml"}).exitStatus, 65);  // a map, which says nothing yet

  Put("maps/new.toml", "mine");
  const ProgramRun again = Import({"--map-template", "maps/new.toml"});
  EXPECT_EQ(again.exitStatus, 73);
  ExpectHas(again.err, "is there already. Name another file, or replace it with --force.");
  EXPECT_EQ(Read("maps/new.toml"), "mine");
  EXPECT_EQ(Import({"--map-template", "maps/new.toml", "--force"}).exitStatus, 0);
  EXPECT_EQ(Import({"--map-template", "plate.msh", "--force"}).exitStatus, 73);
  EXPECT_EQ(Read("plate.msh"), Mesh);
}

TEST_F(KvxImport, MistakesOfTheCommandLineAreNamed) {
  const auto expect = [&](const Names& arguments, int status, const std::string& part) {
    const ProgramRun run = Call(arguments);
    EXPECT_EQ(run.exitStatus, status) << part;
    EXPECT_EQ(run.out, "");
    ExpectHas(run.err, part);
    EXPECT_FALSE(Exists("plate"));
  };
  expect({"import"}, 64, "kvx import: which deck?");
  expect({"import", "--strict"}, 64, "kvx import: which deck?");
  expect({"import", "plate.msh", "more.msh"}, 64, "\"more.msh\" is one word too many");
  expect({"import", "plate.msh", "--merge", "0"}, 64, "write a length greater than 0");
  expect({"import", "plate.msh", "--merge", "nan"}, 64, "write a length greater than 0");
  expect({"import", "plate.msh", "--format", "step"}, 64, "step");
  expect({"import", "plate.msh", "--map", "plate.toml", "--map-template", "x"}, 64,
         "--map-template writes a map and nothing else");
  expect({"import", "plate.msh", "--stric"}, 64, "Did you mean \"--strict\"?");
  expect({"import", "missing.bdf"}, 66, "there is no file \"missing.bdf\".");
  expect({"import", "."}, 64, "-o");
  expect({"import", "plate.msh", "-o", ""}, 64, "write the name of a folder");
  expect({"import", ".", "-o", "x"}, 66, "is a folder. Name the file in it.");
  expect({"import", "plate.msh", "--map", "no.toml"}, 66, "there is no file \"no.toml\".");
  expect({"import", "plate.msh", "-o", "plate.toml"}, 73, "\"plate.toml\" is a file");
}

TEST_F(KvxImport, TextsThatAreNoDeckAreNamed) {
  const auto expect = [&](const std::string& name, const std::string& text,
                          const std::string& part) {
    Put(name, text);
    const ProgramRun run = Call({"import", name, "-o", "out"});
    EXPECT_EQ(run.exitStatus, 65) << name;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.rfind("kvx import: \"" + name + '"', 0), 0U) << run.err;
    ExpectHas(run.err, part);
    EXPECT_FALSE(Exists("out"));
  };
  expect("empty.bdf", "", "it is empty.");
  expect("mesh.bdf", Mesh, "--format");
  expect("cut.msh", std::string(Mesh).substr(0, 200), "line ");
  expect("rubbish.dat", std::string("\0\1\2\3", 4), "binary");
}

TEST_F(KvxImport, MistakesOfTheMapAreNamedWithTheirLine) {
  Put("plate.toml", "[group.deck]\nthickness = 1\n[group.dekc]\n");
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.err.rfind("kvx import: \"plate.toml\", line 3: ", 0), 0U) << run.err;
  EXPECT_FALSE(Exists("plate"));
}

// Squares in a row along x of which the second one's edges cross, and a force. Numbers are the
// deck's: 8 nodes from 101 on, elements 71 and 72.
constexpr const char* Deck =
    "SOL 101\nCEND\nSPC = 1\nSUBCASE 10\nLABEL = WIND\nLOAD = 1\nSUBCASE 20\nLABEL = SNOW\n"
    "LOAD = 2\nBEGIN BULK\n"
    "GRID,101,,0.,0.,0.\nGRID,102,,100.,0.,0.\nGRID,103,,200.,0.,0.\n"
    "GRID,104,,0.,100.,0.\nGRID,105,,100.,100.,0.\nGRID,106,,200.,100.,0.\n"
    "CQUAD4,71,1,101,102,105,104\nCQUAD4,72,1,102,103,106,105\n"
    "PSHELL,1,1,10.,1,,1\nMAT1,1,206000.,,.3\nSPC1,1,123456,101,104\n"
    "FORCE,1,103,,1.,0.,1.,0.\nFORCE,2,103,,1.,0.,0.,-2.\nENDDATA\n";

void Replace(const std::string& from, const std::string& to, std::string& text) {
  const std::size_t at = text.find(from);
  ASSERT_NE(at, std::string::npos) << from;
  text.replace(at, from.size(), to);
}

// What is to be mended is the deck, so its numbers are named.
TEST_F(KvxImport, FindingsNameTheDeck) {
  std::string deck = Deck;
  Replace("102,103,106,105", "102,103,105,106", deck);
  Put("row.bdf", deck);
  const ProgramRun run = Call({"import", "row.bdf"});
  EXPECT_EQ(run.exitStatus, 1);
  ExpectHas(run.out, "ERROR K115 ");
  ExpectHas(run.out, "In row.bdf: CQUAD4 72, nodes 102, 103, 105, 106, group");
  ExpectHas(run.out, "Imported from row.bdf (Nastran bulk data).");
}

// A pressure of E / 50, which no metal bears, in a file of loads.
TEST_F(KvxImport, FindingsOfLoadsNameTheDeck) {
  std::string deck = Deck;
  Replace("FORCE,2,103,,1.,0.,0.,-2.", "PLOAD4,2,72,4120.", deck);
  Put("row.bdf", deck);
  const ProgramRun run = Call({"import", "row.bdf"});
  ExpectHas(run.out, "loads-subcase-20-SNOW.txt:\n");
  ExpectHas(run.out, "In row.bdf: CQUAD4 72");
}

// Mass 2 x 1 x 0.02 x 7850 = 314 times -9.81 = -3080.34, whatever system E seems to be in: K604
// marks the material as doubtful, but kvx cases takes it.
TEST_F(KvxImport, DoubtfulUnitsDoNotTakeGravityOutOfTheSum) {
  PutCases();
  std::string map = Read("plate.toml");
  Replace("E = 2.1e11", "E = 2.1e5", map);
  Put("plate.toml", map);
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  ExpectHas(run.out, "WARN  K604 ");
  ExpectHas(run.out, "  weight   weight        0   0  -3080.34  (0, 0, -9.81)\n");
}

// An element that a finding names for its shape has a weight, too: (100 + 0.1) x 100 x 10 x 1e-9 x
// 10 = 0.001001.
TEST_F(KvxImport, DoubtfulShapesDoNotTakeGravityOutOfTheSum) {
  std::string deck = Deck;
  Replace("103,,200.", "103,,100.1", deck);
  Replace("106,,200.", "106,,100.1", deck);
  Replace(",,.3\n", ",,.3,1.-9\n", deck);
  Replace("FORCE,2,103,,1.,0.,0.,-2.", "GRAV,2,,10.,0.,0.,-1.", deck);
  Put("row.bdf", deck);
  const ProgramRun run = Call({"import", "row.bdf"});
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  ExpectHas(run.out, "In row.bdf: CQUAD4 72");
  ExpectHas(run.out, "  0   0  -0.001001  (0, 0, -10)\n");
}

// kvx cases stops at a density of other units than E. 314 / 1000 x -9.81 = -3.08034.
TEST_F(KvxImport, DensityThatDoesNotFitIsAnErrorWhereThereIsGravity) {
  PutCases();
  std::string map = Read("plate.toml");
  Replace("density = 7850", "density = 7.85", map);
  Put("plate.toml", map);
  const ProgramRun run = ImportMapped();
  EXPECT_EQ(run.exitStatus, 1);
  ExpectHas(run.out, "  weight   weight        0   0  -3.08034  (0, 0, -9.81)\n");
  ExpectHas(run.out, "ERROR K606 ");
  EXPECT_EQ(run.out.find("Next: "), std::string::npos);
  EXPECT_EQ(Call({"cases", "plate/cases.toml"}).exitStatus, 1);
  const ProgramRun other = ImportMapped({"--case", "crane 1"});  // without gravity
  EXPECT_EQ(other.exitStatus, 0);
  ExpectHas(other.out, "WARN  K606 ");
}

// The end is what a reader sees.
TEST_F(KvxImport, LossesAreToldOnceMoreAtTheEnd) {
  std::string deck = Deck;
  Replace("ENDDATA",
          "CONM2,9,101,,1.\nTEMPD,5,20.\nRBE2,7,101,123,104\nRBE2,8,101,123,104\n"
          "ENDDATA",
          deck);
  Put("row.bdf", deck);
  const ProgramRun run = Call({"import", "row.bdf"});
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  ExpectHas(run.out,
            "\n\nLost: 4 cards of 3 kinds (RBE2, TEMPD, CONM2), which the model lacks. See "
            "above.\n\nNext: ");
  Put("row.bdf", Deck);
  EXPECT_EQ(Call({"import", "row.bdf"}).out.find("Lost: "), std::string::npos);
}

TEST_F(KvxImport, MapIsRecommendedOnlyWhereItHelps) {
  std::string deck = Deck;
  Replace("GRID,106,,200.,100.,0.\n", "", deck);
  Put("row.bdf", deck);
  const ProgramRun run = Call({"import", "row.bdf"});
  EXPECT_EQ(run.exitStatus, 65);
  ExpectHas(run.out, "Nothing was written");
  EXPECT_EQ(run.out.find("map"), std::string::npos) << run.out;
  // A map that leaves the thickness of the deck out.
  Put("plate.toml", "[group.clamped]\nrestraint = \"fixed\"\n");
  const ProgramRun mapped = ImportMapped();
  EXPECT_EQ(mapped.exitStatus, 65);
  ExpectHas(mapped.out, "can come from your map file, too");
  EXPECT_EQ(mapped.out.find("map.toml"), std::string::npos) << mapped.out;
}

TEST_F(KvxImport, CaseIsFoundByItsNameAndByItsNumber) {
  Put("row.bdf", Deck);
  for (const std::string name : {"subcase 20 SNOW", "subcase-20-SNOW", "20"}) {
    const ProgramRun run = Call({"import", "row.bdf", "--case", name});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    ExpectHas(run.out, "Only the load case \"subcase 20 SNOW\", as asked for.");
    ExpectHas(run.out, "sum of loads (0, 0, -2)");
  }
  for (const std::string name : {"2", "0", "subcase", "SNOW"}) {
    EXPECT_EQ(Call({"import", "row.bdf", "--case", name}).exitStatus, 64) << name;
  }
  ExpectHas(Call({"import", "row.bdf", "--case", "snow"}).err, "Did you mean \"subcase 20 SNOW\"?");
}

// The name of the deck goes before the one that another case gets from it.
TEST_F(KvxImport, CaseOfTheDecksNameGoesFirst) {
  Put("plate.toml", std::string(Properties) +
                        "[case.\"a b\"]\nacceleration = [0, 0, -1]\n[case.a-b]\n"
                        "acceleration = [0, 0, -2]\n");
  const ProgramRun run = ImportMapped({"--case", "a-b"});
  ExpectHas(run.out, "Only the load case \"a-b\", as asked for. Left out: a b.");
}

// Squares of 1: no longer than the length of the merge.
TEST_F(KvxImport, MergeLongerThanAnEdgeIsALimit) {
  const ProgramRun run = ImportMapped({"--merge", "1"});
  ExpectHas(run.out, "\n  --merge");
  ExpectHas(run.out, "its length is not less than an edge of an element, which may vanish");
  EXPECT_EQ(ImportMapped({"--merge", "0.9"}).out.find("\n  --merge"), std::string::npos);
}

TEST_F(KvxImport, JsonHoldsTheWholeReport) {
  const ProgramRun run = ImportMapped({"--json"});
  EXPECT_EQ(run.exitStatus, 0);
  const json report = json::parse(run.out);
  EXPECT_EQ(report["deck"], "plate.msh");
  EXPECT_EQ(report["format"], "gmsh 2.2");
  EXPECT_EQ(report["status"], 0);
  EXPECT_EQ(report["written"], true);
  EXPECT_EQ(report["files"], json({"import.json", "fem_solving.txt"}));
  EXPECT_EQ(report["cards"]["$Nodes"]["count"], 1);
  EXPECT_EQ(report["cards"]["$Nodes"]["line"], 10);  // of the mesh above
  EXPECT_EQ(report["check"]["model"]["NPOIN"], 6);
  EXPECT_EQ(report["check"]["errors"], 0);
  EXPECT_EQ(report["cases"].size(), 1U);

  fs::remove_all(base.Path() / "plate");
  const ProgramRun refused = Import({"--json"});
  EXPECT_EQ(refused.exitStatus, 65);
  const json why = json::parse(refused.out);
  EXPECT_EQ(why["written"], false);
  EXPECT_EQ(why["status"], 65);
  EXPECT_EQ(why["entries"].back()["fate"], "refused");
  EXPECT_EQ(why.count("files"), 0U);
}

}  // namespace
}  // namespace kvx::test
