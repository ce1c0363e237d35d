// What users of an imported model see: the numbers, types and names of their deck beside those of
// the model, in each command and form; and nothing of it without an import.json that fits.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

#include "commands/call_kvx.h"
#include "support/csv.h"
#include "support/imported.h"
#include "support/page_columns.h"
#include "support/page_file.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ModelText;
using korvex::test::ProgramRun;
using korvex::test::WriteFile;
using korvex::test::WriteModel;
using Json = nlohmann::json;

// A clamped plate of a four-node shell and a triangle, and a beam that stands apart. Its numbers in
// the deck are those of MakeOrigin: nodes 1001, 1003 ..., CQUAD4 5001, CTRIA3 6001, CBAR 7001.
ModelText MakeModel() {
  ModelText text;
  text.materials = {{210000.0, 0.3, 7.85e-9}};
  text.thicknesses = {10.0, 12.0};
  text.tSections = {{100.0, 10.0, 60.0, 10.0}};
  text.nodes = {{0.0, 0.0, 0.0},   {100.0, 0.0, 0.0}, {100.0, 100.0, 0.0}, {0.0, 100.0, 0.0},
                {200.0, 0.0, 0.0}, {0.0, 0.0, 50.0},  {1000.0, 0.0, 50.0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.shells3 = {{{1, 4, 2}, 0, 1}};
  text.beams = {{5, 6}};
  text.restraints = {{0}, {3}, {5}};
  text.forces = {{6, {0.0, 0.0, -100.0, 0.0, 0.0, 0.0}}, {4, {0.0, 0.0, -10.0, 0.0, 0.0, 0.0}}};
  text.shell4Loads = {{0, {-0.1, -0.1, -0.1}}};
  return text;
}

std::string ImportOf(const ModelText& model) { return OriginText(MakeOrigin(TablesOfText(model))); }

// The same with what kvx check complains about: the shell a second time, and loads on node 7, which
// stands alone.
ModelText MakeBadModel() {
  ModelText model = MakeModel();
  model.shells4.push_back({{0, 1, 2, 3}, 0, 0});
  model.nodes.push_back({500.0, 500.0, 0.0});
  model.forces.push_back({7, {1.0, 0.0, 0.0, 0.0, 0.0, 0.0}});
  return model;
}

ProgramRun Call(const ModelText& model, const std::vector<std::string>& arguments,
                const std::string& import) {
  std::map<std::string, std::string> files;
  if (!import.empty()) files["import.json"] = import;
  return CallKvx(WriteModel(model), arguments, files);
}

ProgramRun Call(const ModelText& model, const std::vector<std::string>& arguments) {
  return Call(model, arguments, ImportOf(model));
}

void ExpectIn(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << part << "\nis not in\n" << text;
}

void ExpectNotIn(const std::string& text, const std::string& part) {
  EXPECT_EQ(text.find(part), std::string::npos) << part << "\nis in\n" << text;
}

Json FindingOf(const Json& findings, const std::string& code) {
  for (const Json& finding : findings) {
    if (finding["code"] == code) return finding;
  }
  ADD_FAILURE() << "there is no " << code << " in " << findings.dump(1);
  return Json();
}

TEST(KvxOrigin, FindingsNameWhatTheyAreAboutInTheDeck) {
  const std::string text = Call(MakeBadModel(), {"check", "."}).out;
  ExpectIn(text, "      In deck.bdf: node 1015.\n");
  // Elements, their nodes and the group that holds them.
  ExpectIn(
      text,
      "      In deck.bdf: CQUAD4 5004, CQUAD4 5001, nodes 1001, 1003, 1005, 1007, group PSHELL "
      "10.\n");
  ExpectIn(text, "  Imported from deck.bdf (Nastran bulk data).\n");

  const Json json = Json::parse(Call(MakeBadModel(), {"check", ".", "--json"}).out);
  const Json doubled = FindingOf(json["findings"], "K121");
  EXPECT_EQ(doubled["rows"], Json({1, 0}));
  EXPECT_EQ(doubled["original"]["rows"], Json({"CQUAD4 5004", "CQUAD4 5001"}));
  EXPECT_EQ(doubled["original"]["nodes"], Json({1001, 1003, 1005, 1007}));
  const Json loose = FindingOf(json["findings"], "K402");
  EXPECT_EQ(loose["original"]["nodes"], Json({1015}));
  EXPECT_EQ(loose["original"]["rows"], Json({nullptr}));  // a force has no number
  EXPECT_EQ(FindingOf(json["findings"], "K603")["original"]["rows"], Json({"node 1013"}));
  EXPECT_EQ(json["origin"], Json({{"source", "deck.bdf"}, {"format", "Nastran bulk data"}}));
}

// Rows of loads are about the elements that they load: here the triangle.
TEST(KvxOrigin, FindingsAboutLoadsNameTheElements) {
  ModelText model = MakeModel();
  model.shell3Loads = {{0, {0.1, 0.1, 0.1}}, {0, {0.1, 0.1, 0.1}}};  // doubled
  const Json json = Json::parse(Call(model, {"check", ".", "--json"}).out);
  bool isFound = false;
  for (const Json& finding : json["findings"]) {
    if (finding["table"] != "NDL_S_3ND") continue;
    isFound = true;
    for (const Json& row : finding["original"]["rows"]) EXPECT_EQ(row, "CTRIA3 6001");
  }
  EXPECT_TRUE(isFound);
  ExpectIn(Call(model, {"check", "."}).out, "In deck.bdf: CTRIA3 6001");
}

// Thirty shells stand twice: twenty findings, and one that lists the rest.
TEST(KvxOrigin, LongListsAreCutShort) {
  ModelText model = MakeModel();
  model.nodes.clear();
  model.shells4.clear();
  model.shells3.clear();
  model.beams.clear();
  model.forces = {{2, {0.0, 0.0, -1.0, 0.0, 0.0, 0.0}}};
  model.shell4Loads.clear();
  for (int k = 0; k <= 30; ++k) {
    model.nodes.push_back({100.0 * k, 0.0, 0.0});
    model.nodes.push_back({100.0 * k, 100.0, 0.0});
  }
  for (int k = 0; k < 60; ++k) {
    const int n = 2 * (k % 30);
    model.shells4.push_back({{n, n + 2, n + 3, n + 1}, 0, 0});
  }
  model.restraints = {{0}, {1}};
  const std::string text = Call(model, {"check", "."}).out;
  // Of the ten findings that are left: 20 shells, the two of a finding side by side, and the 22
  // nodes of a strip of ten shells.
  ExpectIn(
      text,
      "      In deck.bdf: CQUAD4 5151, CQUAD4 5061, CQUAD4 5154, CQUAD4 5064, CQUAD4 5157, and "
      "15 more,\n      nodes 1081, 1085, 1087, 1083, 1089, and 17 more, group PSHELL 10.\n");
}

TEST(KvxOrigin, AuditAndRunNamePlacesInTheDeck) {
  for (const char* command : {"audit", "run"}) {
    const std::string text = Call(MakeModel(), {command, "."}).out;
    ExpectIn(text, "at node 4 (deck 1009) at (200, 0, 0)");
    ExpectIn(text, "four-node shell 0 (deck CQUAD4 5001) at (0, 100, 0)");
    ExpectIn(text, "in beam 0 (deck CBAR 7001) at x/L 0");
  }
  ExpectIn(Call(MakeModel(), {"run", "."}).out, "      In deck.bdf: node 1013.\n");

  const Json run = Json::parse(Call(MakeModel(), {"run", ".", "--json"}).out);
  EXPECT_EQ(FindingOf(run["check"]["findings"], "K603")["original"]["nodes"], Json({1013}));
  const Json& audit = run["audit"];
  EXPECT_EQ(audit["deck_nodes"], Json({{"0", 1001}, {"3", 1007}, {"5", 1011}}));
  EXPECT_EQ(audit["beams"][0]["deck_element"], 7001);
  EXPECT_EQ(audit["beams"][0]["deck_nodes"], Json({1011, 1013}));
  std::map<std::string, int> numbers;
  for (const Json& maximum : audit["maxima"]) {
    const char* key = maximum["table"] == "NPOIN" ? "deck_node" : "deck_element";
    numbers[maximum["quantity"]] = maximum[key];
  }
  EXPECT_EQ(numbers["displacement"], 1009);
  EXPECT_EQ(numbers["shells"], 5001);
  EXPECT_EQ(numbers["beam_tension"], 7001);
}

TEST(KvxOrigin, ReactionsHaveAColumnOfTheDeck) {
  const std::string text = Call(MakeModel(), {"reactions", "."}).out;
  ExpectIn(text, "  node  deck  x ");
  ExpectIn(text, "\n     3  1007  0  100 ");
  const CsvTable csv = ReadCsv(Call(MakeModel(), {"reactions", ".", "--csv"}).out);
  EXPECT_EQ(csv.columns[2], "deck_node");
  EXPECT_EQ(FieldOf(csv, RowWhere(csv, "node", "5"), "deck_node"), "1011");
  EXPECT_EQ(FieldOf(csv, RowWhere(csv, "kind", "sum: loads"), "deck_node"), "");
  EXPECT_EQ(csv.notes.back(), "deck_node, deck_element: their numbers in deck.bdf.");
  const Json json = Json::parse(Call(MakeModel(), {"reactions", ".", "--json"}).out);
  EXPECT_EQ(json["deck_nodes"], Json({{"0", 1001}, {"3", 1007}, {"5", 1011}}));
}

TEST(KvxOrigin, TopNamesElementsNodesAndGroups) {
  const std::string text = Call(MakeModel(), {"top", ".", "--by", "thickness"}).out;
  ExpectIn(text, "Shells of thickness 1 (12, PSHELL 20): ");
  ExpectIn(text, "element  deck         corner  node  deck node  face");
  ExpectIn(text, "0  CTRIA3 6001       2     2       1005  upper");
  // Without a column of kinds they are beams; nodes have their numbers alone.
  ExpectIn(Call(MakeModel(), {"top", ".", "--of", "section"}).out, "0  CBAR 7001");
  const std::string nodes = Call(MakeModel(), {"top", ".", "--of", "uz", "-n", "1"}).out;
  ExpectIn(nodes, "node  deck ");
  ExpectIn(nodes, "   4  1009 ");

  const CsvTable csv = ReadCsv(Call(MakeModel(), {"top", ".", "--csv"}).out);
  const std::size_t triangle = RowWhere(csv, "kind", "triangle");
  EXPECT_EQ(FieldOf(csv, triangle, "deck_element"), "6001");
  const std::size_t beam = RowWhere(csv, "kind", "beam");
  EXPECT_EQ(FieldOf(csv, beam, "deck_element"), "7001");
  EXPECT_EQ(FieldOf(csv, beam, "deck_node"), "");

  const Json json = Json::parse(Call(MakeModel(), {"top", ".", "--by", "material", "--json"}).out);
  EXPECT_EQ(json["lists"][0]["deck_group"], "MAT1 1");
  EXPECT_EQ(json["lists"][0]["peaks"][0]["deck_element"], 5001);
  EXPECT_EQ(json["lists"][0]["peaks"][0]["deck_node"], 1007);
}

TEST(KvxOrigin, ForcesNameElementsAndNodes) {
  ExpectIn(Call(MakeModel(), {"forces", "."}).out, "  beam  deck       section");
  ExpectIn(Call(MakeModel(), {"forces", ".", "--beam", "0"}).out,
           "Beam 0 (deck CBAR 7001), section T 0, length 1000, from node 5 (deck 1011) at");
  const std::string shells =
      Call(MakeModel(), {"forces", ".", "--shell", "0", "--triangle", "0"}).out;
  ExpectIn(shells, "four-node shell         0  CQUAD4 5001  centre");
  ExpectIn(shells, "three-node shell        0  CTRIA3 6001  centre");

  const CsvTable beams = ReadCsv(Call(MakeModel(), {"forces", ".", "--csv"}).out);
  EXPECT_EQ(FieldOf(beams, 4, "deck_element"), "7001");
  EXPECT_EQ(FieldOf(beams, 4, "deck_node1"), "1011");
  EXPECT_EQ(FieldOf(beams, 4, "deck_node2"), "1013");
  EXPECT_EQ(FieldOf(beams, 4, "distance"), "1000");  // what stands behind is in its place
  const CsvTable corners =
      ReadCsv(Call(MakeModel(), {"forces", ".", "--triangle", "0", "--corners", "--csv"}).out);
  EXPECT_EQ(FieldOf(corners, 0, "deck_node"), "");  // the centre
  EXPECT_EQ(FieldOf(corners, 2, "deck_node"), "1009");
  EXPECT_EQ(FieldOf(corners, 2, "deck_element"), "6001");

  const Json json = Json::parse(
      Call(MakeModel(), {"forces", ".", "--beam", "0", "--triangle", "0", "--json"}).out);
  EXPECT_EQ(json["beams"][0]["deck_element"], 7001);
  EXPECT_EQ(json["triangles"][0]["deck_element"], 6001);
  EXPECT_EQ(json["triangles"][0]["deck_nodes"], Json({1003, 1009, 1005}));
}

// A folder in which the program is called, with the model in "deck".
struct ImportedFolder : testing::Test {
  korvex::test::TempFolder base;

  void Put(const std::string& name, const std::string& text) const {
    fs::create_directories((base.Path() / name).parent_path());
    WriteFile(base.Path() / name, text);
  }
  void SetUp() override {
    Put("deck/fem_solving.txt", WriteModel(MakeModel()));
    Put("deck/import.json", ImportOf(MakeModel()));
  }
  ProgramRun Run(const std::vector<std::string>& arguments) const {
    ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    return run;
  }
  CsvTable Table(const std::string& name) const { return ReadCsv(ReadBytes(base.Path() / name)); }
};

TEST_F(ImportedFolder, ExportsTheNumbersOfTheDeck) {
  Run({"export", "deck", "--csv", "--vtu"});
  const CsvTable nodes = Table("deck/csv/nodes.csv");
  EXPECT_EQ(FieldOf(nodes, 6, "deck_node"), "1013");
  EXPECT_EQ(FieldOf(nodes, 6, "x"), "1000");
  const CsvTable triangles = Table("deck/csv/triangles.csv");
  EXPECT_EQ(FieldOf(triangles, 0, "deck_element"), "6001");
  EXPECT_EQ(FieldOf(triangles, 0, "deck_node2"), "1009");
  EXPECT_EQ(FieldOf(triangles, 0, "thickness"), "12");
  const CsvTable loads = Table("deck/csv/loads.csv");
  EXPECT_EQ(FieldOf(loads, 0, "deck_element"), "1013");  // of kind node
  EXPECT_EQ(FieldOf(loads, 2, "deck_element"), "5001");
  const CsvTable stresses = Table("deck/csv/stresses_averaged.csv");
  EXPECT_EQ(FieldOf(stresses, 5, "deck_element"), "6001");
  EXPECT_EQ(FieldOf(stresses, 5, "deck_node"), "1009");
  EXPECT_EQ(FieldOf(Table("deck/csv/reactions.csv"), 1, "deck_node"), "1007");
  EXPECT_EQ(FieldOf(Table("deck/csv/beam_forces.csv"), 0, "deck_element"), "7001");
  EXPECT_EQ(FieldOf(Table("deck/csv/shell_forces.csv"), 0, "deck_element"), "5001");
  const std::string vtu = ReadBytes(base.Path() / "deck/model.vtu");
  ExpectIn(vtu, "Name=\"deck_node\"");
  ExpectIn(vtu, "Name=\"deck_element\"");
}

TEST_F(ImportedFolder, LoadCasesHaveTheNumbersOfTheirStructure) {
  Put("deck/cases.toml",
      "structure = \"fem_solving.txt\"\n[combination.uls]\nfactors = { base = 1.5 }\n");
  const std::string text = Run({"cases", "deck/cases.toml"}).out;
  // The corner of the triangle at (200, 0, 0), GRID 1009, moves most.
  ExpectIn(text, "  displacement  node  deck  at ");
  ExpectIn(text, "     4  1009  (200, 0, 0)");
  ExpectIn(text, "  node 4 (deck 1009)");
  ExpectIn(text, "  beam 0 (deck CBAR 7001)");
  const Json json = Json::parse(Run({"cases", "deck/cases.toml", "--json"}).out);
  EXPECT_EQ(json["cases"][1]["displacement"]["deck_node"], 1009);
  for (const Json& peak : json["governing"]) {
    const bool isNode = peak["kind"] == "node";
    const std::map<std::string, int> numbers{{"beam", 7001}, {"shell", 5001}, {"triangle", 6001}};
    EXPECT_EQ(peak["deck_element"], isNode ? Json() : Json(numbers.at(peak["kind"])));
    // Nodes are 1001, 1003 ...
    EXPECT_EQ(peak["deck_node"],
              peak["node"].is_null() ? Json() : Json(1001 + 2 * peak["node"].get<int>()));
  }
  ExpectIn(Run({"reactions", "deck/results/uls"}).out, "\n     3  1007  0  100 ");
  const CsvTable envelope = Table("deck/results/envelope-all/displacements.csv");
  EXPECT_EQ(FieldOf(envelope, RowWhere(envelope, "node", "4"), "deck_node"), "1009");
  const CsvTable shells = Table("deck/results/envelope-all/shell_forces.csv");
  EXPECT_EQ(FieldOf(shells, RowWhere(shells, "kind", "triangle"), "deck_element"), "6001");
}

TEST_F(ImportedFolder, ThePageHasTheNumbersOfTheDeck) {
  Run({"view", "deck"});
  const PageFile page = ReadPage(base.Path() / "deck/view.html");
  const Json& origin = page.model["origin"];
  EXPECT_EQ(origin["source"], "deck.bdf");
  EXPECT_EQ(origin["types"], Json({"CQUAD4", "CTRIA3", "CBAR"}));
  EXPECT_EQ(origin["thicknesses"], Json({"PSHELL 10", "PSHELL 20"}));
  EXPECT_EQ(page.model["sections"][0]["origin"], "PBARL T1");
  ASSERT_EQ(origin["groups"].size(), 4U);
  EXPECT_EQ(origin["groups"][1]["name"], "PSHELL 20");
  EXPECT_EQ(origin["groups"][1]["counts"],
            Json({{"node", 0}, {"shell", 0}, {"triangle", 1}, {"beam", 0}}));
  const PageBlock& block = page.blocks.at("structure");
  EXPECT_EQ(ReadDoubles(block, "origin.node"),
            (std::vector<double>{1001, 1003, 1005, 1007, 1009, 1011, 1013}));
  EXPECT_EQ(ReadDoubles(block, "origin.triangle"), (std::vector<double>{6001}));
  EXPECT_EQ(ReadIntegers(block, "origin.beam.type"), (std::vector<std::int32_t>{2}));
  EXPECT_EQ(ReadIntegers(block, "origin.node.groups"), (std::vector<std::int32_t>{0, 1}));
  EXPECT_EQ(FindingOf(page.model["findings"], "K603")["origin"], "In deck.bdf: node 1013.");
}

const std::vector<std::vector<std::string>> AllForms{{"check", "."},
                                                     {"check", ".", "--json"},
                                                     {"audit", "."},
                                                     {"audit", ".", "--json"},
                                                     {"audit", ".", "--csv"},
                                                     {"reactions", "."},
                                                     {"reactions", ".", "--csv"},
                                                     {"reactions", ".", "--json"},
                                                     {"top", ".", "--by", "thickness"},
                                                     {"top", ".", "--csv"},
                                                     {"top", ".", "--json"},
                                                     {"forces", "."},
                                                     {"forces", ".", "--beam", "0"},
                                                     {"forces", ".", "--shell", "0"},
                                                     {"forces", ".", "--csv"},
                                                     {"forces", ".", "--shell", "0", "--json"}};

TEST(KvxOrigin, WithoutAnImportNothingIsSaidOfADeck) {
  for (const auto& arguments : AllForms) {
    const ProgramRun run = Call(MakeModel(), arguments, "");
    ExpectNotIn(run.out, "deck");
    ExpectNotIn(run.out, "origin\":");
    EXPECT_EQ(run.err, "");
  }
}

// A node has been moved since the import. Commands say what they say without it, but for one line
// of kvx check.
TEST(KvxOrigin, OfAnotherModelIsNotShown) {
  ModelText other = MakeModel();
  other.nodes[4][0] = 210.0;
  const std::string import = ImportOf(other);
  for (const auto& arguments : AllForms) {
    if (arguments[0] == "check") continue;
    EXPECT_EQ(Call(MakeModel(), arguments, import).out, Call(MakeModel(), arguments, "").out);
  }
  const std::string hint =
      "  import.json does not belong to this model: nodes or elements have changed since the "
      "import, "
      "so\n    that the deck's numbers are not shown.\n";
  std::string text = Call(MakeModel(), {"check", "."}, import).out;
  const std::size_t at = text.find(hint);
  ASSERT_NE(at, std::string::npos) << text;
  EXPECT_EQ(text.erase(at, hint.size()), Call(MakeModel(), {"check", "."}, "").out);
  const Json json = Json::parse(Call(MakeModel(), {"check", ".", "--json"}, import).out);
  EXPECT_TRUE(json.contains("origin") && json["origin"].is_null());
  EXPECT_FALSE(json["findings"][0].contains("original"));
}

// The same where it is no import.json at all.
TEST(KvxOrigin, ThatCannotBeReadIsNotShown) {
  for (const char* import : {"{", "[]", "\xFF", "{\"kvx\": 1, \"hash\": \"0\"}"}) {
    const ProgramRun run = Call(MakeModel(), {"reactions", "."}, import);
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.out, Call(MakeModel(), {"reactions", "."}, "").out);
    ExpectIn(Call(MakeModel(), {"check", "."}, import).out, "import.json does not belong to this");
  }
}

// Loads, supports, thicknesses and sections may be edited after the import.
TEST(KvxOrigin, StillFitsAModelWithOtherLoadsAndSizes) {
  ModelText edited = MakeModel();
  edited.thicknesses = {8.0, 9.0};
  edited.forces[0].components[2] = -200.0;
  edited.restraints.pop_back();
  edited.restraints.push_back({5});
  const ProgramRun run = Call(edited, {"reactions", "."}, ImportOf(MakeModel()));
  ExpectIn(run.out, "     5  1011 ");
}

// What stands in a deck does not reach the terminal as it is.
TEST(KvxOrigin, NamesAreCleaned) {
  ModelOrigin origin = MakeOrigin(TablesOfText(MakeBadModel()));
  origin.source = "a\x1B[31m.bdf";
  origin.types[0] = "C\nQ";
  const std::string text = Call(MakeBadModel(), {"check", "."}, OriginText(origin)).out;
  ExpectNotIn(text, "\x1B");
  ExpectIn(text, "In a\\x1B[31m.bdf: C\\x0AQ 5004");
}

}  // namespace
}  // namespace kvx::test
