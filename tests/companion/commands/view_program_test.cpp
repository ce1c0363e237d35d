// kvx view as its user meets it: what is in the page is the model and its results, and each mistake
// has its message.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "support/good_models.h"
#include "support/model_text.h"
#include "support/page_columns.h"
#include "support/page_file.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ListFolder;
using korvex::test::ModelText;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;
using korvex::test::WriteFile;
using korvex::test::WriteModel;
using nlohmann::json;

// A folder in which the program is called.
struct KvxView : testing::Test {
  TempFolder base;

  fs::path At(const std::string& name) const { return base.Path() / fs::u8path(name); }
  void Put(const std::string& name, const std::string& text) const {
    fs::create_directories(At(name).parent_path());
    WriteFile(At(name), text);
  }
  // Separators of paths are "/" in what it says, on every system.
  ProgramRun Call(const std::vector<std::string>& arguments) const {
    ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
    for (std::string* said : {&run.out, &run.err}) {
      std::replace(said->begin(), said->end(), static_cast<char>(fs::path::preferred_separator),
                   '/');
    }
    return run;
  }
  // Behind "kvx view".
  ProgramRun View(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "view");
    return Call(arguments);
  }
  PageFile Page(const std::string& name = "deck/view.html") const { return ReadPage(At(name)); }
  std::string Bytes(const std::string& name = "deck/view.html") const {
    return ReadBytes(At(name));
  }
  bool Exists(const std::string& name) const { return fs::exists(At(name)); }

  // The program refuses with this status and line, and no page is there.
  void ExpectRefusal(const std::vector<std::string>& arguments, int status,
                     const std::string& complaint) const {
    const ProgramRun run = View(arguments);
    EXPECT_EQ(run.exitStatus, status);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "kvx view: " + complaint + "\n");
    EXPECT_FALSE(Exists("deck/view.html"));
  }
};

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// A plate with a beam and a triangle, loaded in every way.
ModelText SmallModel() {
  ModelText text;
  text.materials = {{210000.0, 0.25, 7.85e-9}, {70000.0, 0.33, 2.7e-9}};
  text.thicknesses = {10.0, 12.5};
  text.lSections = {{200.0, 10.0, 100.0, 10.0}};
  text.nodes = {{0, 0, 0}, {1000, 0, 0}, {1000, 1000, 0}, {0, 1000, 0}, {2000, 500, 0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.shells3 = {{{1, 4, 2}, 1, 1}};
  text.beams.resize(1);
  text.beams[0].BeamSecType = korvex::BeamSecTypeL;
  text.beams[0].BeamSecOz = 5.0;
  text.beams[0].BeamSecMirrored = 1;
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {3, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{4, {0, 3, -100, 0, 0, 0}}};
  text.beamLoads = {{0, -1.0, -0.5}};
  return text;
}

ModelText OtherLoads() {
  ModelText text = SmallModel();
  text.forces = {{1, {10, 0, 0, 0, 500, 0}}, {2, {0, 0, 7, 0, 0, 0}}};
  text.beamLoads.clear();
  text.shell4Loads = {{0, {1e-4, 2e-4, 3e-4}}};
  text.shell3Loads = {{0, {1e-4, 1e-4, 1e-4}}};
  return text;
}

// A beam whose orientation vector lies along it: all displacements would be NaN.
ModelText BrokenModel() {
  ModelText text = SmallModel();
  text.beams[0].orientation = {1.0, 0.0, 0.0};
  return text;
}

// The 1-based line that begins with this text.
int LineOf(const std::string& text, const std::string& begin) {
  const std::size_t at = text.find('\n' + begin);
  EXPECT_NE(at, std::string::npos) << begin;
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(at);
  return static_cast<int>(std::count(text.begin(), end, '\n')) + 2;
}

std::vector<double> Exactly(const std::string& modelText) {
  SolvedModel solved;
  SolveInMemory(modelText, {}, solved);
  return solved.model.Displacements;
}

// As the page shows them: six digits each.
std::vector<std::string> Show(const std::vector<double>& numbers) {
  std::vector<std::string> shown;
  for (const double number : numbers) shown.push_back(ShowNumber(number));
  return shown;
}

std::vector<std::string> ShownDisplacements(const PageFile& page, const std::string& row = "0") {
  return Show(ReadDecimals(page.blocks.at("results-" + row), "displacements"));
}

std::vector<std::string> Codes(const PageFile& page) {
  std::vector<std::string> codes;
  for (const json& finding : page.model["findings"]) codes.push_back(finding["code"]);
  return codes;
}

TEST_F(KvxView, WritesAPageThatOpensByADoubleClick) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  const ProgramRun run = View({"deck"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  const auto size = static_cast<double>(fs::file_size(At("deck/view.html")));
  const std::string tenths = std::to_string(static_cast<int>(std::lround(size / 1e5)));
  const std::string megabytes =
      (tenths.size() > 1 ? tenths.substr(0, tenths.size() - 1) : "0") + '.' + tenths.back();
  EXPECT_EQ(run.out, "deck/view.html: " + megabytes + " MB. Open it with a double click.\n");
  EXPECT_EQ(ListFolder(At("deck")), (std::vector<std::string>{"fem_solving.txt", "view.html"}));
  EXPECT_FALSE(Holds(Bytes(), "<!--kvx:"));
}

TEST_F(KvxView, GoesWhereItIsCalled) {
  Put("fem_solving.txt", WriteModel(SmallModel()));
  EXPECT_EQ(View({}).out.substr(0, 11), "view.html: ");
  EXPECT_TRUE(Exists("view.html"));
  Put("deck/other.txt", WriteModel(SmallModel()));
  EXPECT_EQ(View({"deck/other.txt"}).out.substr(0, 16), "deck/view.html: ");
  EXPECT_EQ(Page().model["file"], "other.txt");
  const ProgramRun run = View({"deck/other.txt", "-o", "pages.html"});
  EXPECT_EQ(run.out.substr(0, 12), "pages.html: ");
  EXPECT_TRUE(Exists("pages.html"));
}

TEST_F(KvxView, HeaderIsTheModel) {
  const std::string text = WriteModel(SmallModel());
  Put("deck/fem_solving.txt", text);
  View({"deck"});
  const PageFile page = Page();
  const json& model = page.model;
  EXPECT_EQ(page.title, "deck");
  EXPECT_EQ(model["title"], "deck");
  EXPECT_EQ(model["program"], "kvx " KORVEX_VERSION);
  EXPECT_EQ(model["file"], "fem_solving.txt");
  EXPECT_EQ(model["parts"], 1);
  EXPECT_EQ(model["thicknesses"], (json{10.0, 12.5}));
  EXPECT_EQ(model["materials"][1], (json{{"E", 70000.0}, {"nu", 0.33}, {"density", 2.7e-9}}));
  EXPECT_EQ(model["nodeCount"], 5);
  EXPECT_EQ(model["counts"], (json{{"shells", 1}, {"triangles", 1}, {"beams", 1}}));
  EXPECT_EQ(model["firstLines"],
            (json{{"node", LineOf(text, "0:0,0,0")},
                  {"shell", LineOf(text, "Number of four-nodes shell elements") + 1},
                  {"triangle", LineOf(text, "Number of three-nodes shell elements") + 1},
                  {"beam", LineOf(text, "Number of beam elements") + 1}}));
  ASSERT_EQ(model["sections"].size(), 1U);
  const json& section = model["sections"][0];
  EXPECT_EQ(section["type"], "L");
  EXPECT_EQ(section["mirrored"], true);
  EXPECT_EQ(section["offset"], 5.0);
  EXPECT_EQ(section["sizes"], "Hw 200, Tw 10, Bf 100, Tf 10");
}

TEST_F(KvxView, ResultsAreThoseOfTheSolver) {
  const std::string text = WriteModel(SmallModel());
  Put("deck/fem_solving.txt", text);
  View({"deck"});
  const PageFile page = Page();
  EXPECT_EQ(page.model["cases"],
            json::parse(R"([{"name": "", "isSolved": true, "note": "", "blocks": {
              "loads": "loads-0", "results": "results-0", "corners": "corners-0",
              "details": "details-0"}}])"));
  EXPECT_EQ(ShownDisplacements(page), Show(Exactly(text)));
  EXPECT_EQ(ReadIntegers(page.blocks.at("loads-0"), "forceNodes"), std::vector<std::int32_t>{4});
  EXPECT_EQ(ReadDecimals(page.blocks.at("loads-0"), "forces"),
            (std::vector<double>{0, 3, -100, 0, 0, 0}));
  EXPECT_EQ(ReadIntegers(page.blocks.at("results-0"), "reactionNodes"),
            (std::vector<std::int32_t>{0, 3}));
  EXPECT_EQ(ReadDoubles(page.blocks.at("structure"), "coordinates").size(), 15U);
}

// Whether the displacements come from a file or are solved makes no difference, nor does the day.
TEST_F(KvxView, IsTheSameEachTime) {
  for (std::uint32_t seed = 0; seed < 3; ++seed) {
    Put("deck/fem_solving.txt", WriteModel(MakeGoodModel(seed)));
    View({"deck"});
    const std::string first = Bytes();
    fs::remove(At("deck/view.html"));
    EXPECT_EQ(Call({"run", "deck"}).exitStatus, 0);
    View({"deck"});
    EXPECT_EQ(Bytes(), first) << seed;
    fs::remove(At("deck/displacements.bin"));
  }
}

TEST_F(KvxView, SolvesAnewWhatIsStale) {
  Put("deck/fem_solving.txt", WriteModel(OtherLoads()));
  EXPECT_EQ(Call({"run", "deck"}).exitStatus, 0);
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  const ProgramRun run = View({"deck"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_TRUE(Holds(run.err, "displacements.bin")) << run.err;
  EXPECT_TRUE(Holds(run.err, " The model is solved anew.\n")) << run.err;
  EXPECT_EQ(ShownDisplacements(Page()), Show(Exactly(WriteModel(SmallModel()))));
}

TEST_F(KvxView, ShowsTheModelAloneWhereThatIsWanted) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  const ProgramRun run = View({"deck", "--model"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  const PageFile page = Page();
  EXPECT_EQ(page.model["cases"], json::parse(R"([{"name": "", "isSolved": false, "note": "",
                             "blocks": {"loads": "loads-0"}}])"));
  EXPECT_EQ(page.model["notices"], json::array());
  EXPECT_EQ(page.blocks.size(), 2U);
}

TEST_F(KvxView, ShowsAModelWithErrorsAloneAndSaysWhy) {
  const std::string text = WriteModel(BrokenModel());
  Put("deck/fem_solving.txt", text);
  const ProgramRun run = View({"deck"});
  EXPECT_EQ(run.exitStatus, 1);
  const std::string why = "The model has errors, so that it is shown without results: K104 line ";
  EXPECT_EQ(run.err.rfind("kvx view: \"deck/fem_solving.txt\": " + why, 0), 0U) << run.err;
  EXPECT_EQ(run.out.rfind("deck/view.html: ", 0), 0U);
  const PageFile page = Page();
  ASSERT_EQ(page.model["notices"].size(), 1U);
  EXPECT_EQ(page.model["notices"][0].get<std::string>().rfind(why, 0), 0U);
  EXPECT_EQ(page.model["cases"][0]["note"], page.model["notices"][0]);
  EXPECT_EQ(page.model["cases"][0]["isSolved"], false);
  const json& finding = page.model["findings"][0];
  EXPECT_EQ(finding["code"], "K104");
  EXPECT_EQ(finding["severity"], "error");
  EXPECT_EQ(finding["line"], LineOf(text, "Number of beam elements") + 1);
  EXPECT_EQ(finding["place"], (json{500.0, 0.0, 0.0}));
  EXPECT_EQ(finding["nodes"], json::parse("[[0, 1]]"));
  EXPECT_EQ(finding["elements"], json::parse(R"({"beam": [[0, 0]]})"));
}

TEST_F(KvxView, ShowsAModelThatCanMoveAlone) {
  ModelText model = SmallModel();
  model.restraints = {{0, {1, 1, 1, 0, 0, 0}}};
  Put("deck/fem_solving.txt", WriteModel(model));
  const ProgramRun run = View({"deck"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(Holds(run.err, "it is shown without results: K301: ")) << run.err;
  EXPECT_EQ(Page().model["cases"][0]["isSolved"], false);
}

// kvx run --force solves it: its numbers are NaN, and the page has them.
TEST_F(KvxView, ShowsResultsThatAreNotNumbers) {
  Put("deck/fem_solving.txt", WriteModel(BrokenModel()));
  EXPECT_EQ(Call({"run", "deck", "--force"}).exitStatus, 1);
  ASSERT_TRUE(Exists("deck/displacements.bin"));
  const ProgramRun run = View({"deck"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(Holds(run.err, "The model has errors, so that its results may mean nothing: K104 "));
  const std::string notNumbers = "are not numbers (NaN or infinite), first those of node ";
  EXPECT_TRUE(Holds(run.err, notNumbers)) << run.err;
  const PageFile page = Page();
  ASSERT_EQ(page.model["notices"].size(), 1U);
  EXPECT_TRUE(Holds(page.model["notices"][0], notNumbers));
  EXPECT_EQ(page.model["cases"][0]["isSolved"], true);
  const std::vector<std::string> codes = Codes(page);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), "K702"), 1);
  const std::vector<double> u = ReadDecimals(page.blocks.at("results-0"), "displacements");
  EXPECT_TRUE(std::any_of(u.begin(), u.end(), [](double x) { return std::isnan(x); }));
}

// Of a shell whose node does not exist nothing can be solved, but the rest is there to be seen.
TEST_F(KvxView, ShowsAModelThatTheSolverCannotRead) {
  ModelText model = SmallModel();
  model.shells3[0].nodes[1] = 99;
  Put("deck/fem_solving.txt", WriteModel(model));
  EXPECT_EQ(View({"deck"}).exitStatus, 1);
  const PageFile page = Page();
  EXPECT_EQ(page.model["counts"]["triangles"], 1);
  EXPECT_EQ(ReadIntegers(page.blocks.at("structure"), "triangles.nodes"),
            (std::vector<std::int32_t>{1, 1, 2}));
}

// Rows that are not one a line: a blank line between two nodes.
TEST_F(KvxView, KnowsTheLineOfEachRow) {
  std::string text = WriteModel(SmallModel());
  const std::size_t at = text.find("\n2:1000,1000,0");
  ASSERT_NE(at, std::string::npos);
  text.insert(at, "\n");
  Put("deck/fem_solving.txt", text);
  View({"deck", "--model"});
  const int first = LineOf(text, "0:0,0,0");
  EXPECT_EQ(ReadIntegers(Page().blocks.at("structure"), "lines.node"),
            (std::vector<std::int32_t>{first, first + 1, first + 3, first + 4, first + 5}));
}

TEST_F(KvxView, NamesStayText) {
  const std::string name = "</script><script>alert(\"1\" && '2')</script><!--";
  std::string text = WriteModel(SmallModel());
  const std::size_t hw = text.find("Hw=");
  ASSERT_NE(hw, std::string::npos);
  const std::size_t begin = text.rfind('\n', hw - 2) + 1;
  text.replace(begin, hw - 1 - begin, name);
  Put("deck & hull/fem_solving.txt", text);
  EXPECT_EQ(View({"deck & hull"}).exitStatus, 0);
  const PageFile page = Page("deck & hull/view.html");
  EXPECT_EQ(page.title, "deck & hull");
  EXPECT_EQ(page.model["title"], "deck & hull");
  EXPECT_EQ(page.model["sections"][0]["name"], name);
  EXPECT_FALSE(Holds(page.html, "alert(\\\"1\\\" && '2')</script>"));
  EXPECT_TRUE(Holds(page.html, "\\u003c/script>\\u003cscript>alert("));
}

TEST_F(KvxView, FoldersAreLoadCases) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  Put("sea/fem_solving.txt", WriteModel(OtherLoads()));
  const ProgramRun run = View({"deck", "sea"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const PageFile page = Page();
  const json& cases = page.model["cases"];
  ASSERT_EQ(cases.size(), 2U);
  EXPECT_EQ(cases[0]["name"], "deck");
  EXPECT_EQ(cases[1]["name"], "sea");
  EXPECT_EQ(ShownDisplacements(page, "0"), Show(Exactly(WriteModel(SmallModel()))));
  EXPECT_EQ(ShownDisplacements(page, "1"), Show(Exactly(WriteModel(OtherLoads()))));
  EXPECT_EQ(ReadIntegers(page.blocks.at("loads-1"), "forceNodes"),
            (std::vector<std::int32_t>{1, 2}));
}

// Folders of the same name are told apart as the user has written them.
TEST_F(KvxView, CasesHaveNamesOfTheirOwn) {
  Put("deck/a/fem_solving.txt", WriteModel(SmallModel()));
  Put("sea/a/fem_solving.txt", WriteModel(OtherLoads()));
  View({"deck/a", "sea/a/fem_solving.txt"});
  const PageFile page = Page("deck/a/view.html");
  EXPECT_EQ(page.model["cases"][0]["name"], "deck/a");
  EXPECT_EQ(page.model["cases"][1]["name"], "sea/a/fem_solving.txt");
}

// What all cases have is listed once; what one has names it.
TEST_F(KvxView, FindingsNameTheirCases) {
  ModelText one = SmallModel(), other = OtherLoads();
  one.thicknesses.push_back(-1.0);  // of no element: a hint of both
  other.thicknesses.push_back(-1.0);
  other.shell4Loads.push_back(other.shell4Loads[0]);  // doubled: a hint of one
  Put("deck/fem_solving.txt", WriteModel(one));
  Put("sea/fem_solving.txt", WriteModel(other));
  View({"deck", "sea"});
  std::size_t ofAll = 0, ofOne = 0;
  const PageFile page = Page();
  for (const json& finding : page.model["findings"]) {
    const std::string message = finding["message"];
    if (finding["code"] == "K108") {
      ++ofAll;
      EXPECT_EQ(message.rfind("thickness 2", 0), 0U) << message;
    }
    if (finding["code"] == "K403") {
      ++ofOne;
      EXPECT_EQ(message.rfind("case \"sea\": ", 0), 0U) << message;
      EXPECT_TRUE(Holds(message, " of its model file: "));
      EXPECT_EQ(finding["line"], 0);
    }
  }
  EXPECT_EQ(ofAll, 1U);
  EXPECT_EQ(ofOne, 1U);
}

TEST_F(KvxView, OtherStructuresAreNoLoadCases) {
  struct Change {
    const char* difference;
    void (*make)(ModelText& model);
  };
  const std::vector<Change> changes{
      {"has 6 nodal points, not 5",
       [](ModelText& m) {
         m.nodes.push_back({9, 9, 9});
       }},
      {"has node 2 at (1000, 1001, 0), not at (1000, 1000, 0)",
       [](ModelText& m) { m.nodes[2][1] = 1001; }},
      {"has another material 1", [](ModelText& m) { m.materials[1][0] = 71000; }},
      {"has another thickness 0", [](ModelText& m) { m.thicknesses[0] = 11; }},
      {"has another L section 0", [](ModelText& m) { m.lSections[0][3] = 11; }},
      {"has other nodes at shell 0",
       [](ModelText& m) {
         m.shells4[0].nodes = {1, 2, 3, 0};
       }},
      {"has other properties at triangle 0", [](ModelText& m) { m.shells3[0].thickness = 0; }},
      {"has other properties at beam 0", [](ModelText& m) { m.beams[0].BeamSecOz = 6; }},
      {"has other properties at beam 0", [](ModelText& m) { m.beams[0].orientation[1] = 1; }},
      {"holds node 3 otherwise", [](ModelText& m) { m.restraints[1].fixed[5] = 0; }},
  };
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  for (const Change& change : changes) {
    ModelText other = OtherLoads();
    change.make(other);
    Put("sea/fem_solving.txt", WriteModel(other));
    ExpectRefusal({"deck", "sea"}, 65,
                  std::string("\"sea/fem_solving.txt\" ") + change.difference +
                      ": load cases must have the same structure as \"deck/fem_solving.txt\".");
  }
}

TEST_F(KvxView, RefusesTheSameModelTwice) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  ExpectRefusal({"deck", "deck/fem_solving.txt"}, 64,
                "\"deck\" and \"deck/fem_solving.txt\" are the same model. Name each load case "
                "once.");
}

// Cases and combinations of a file.
struct KvxViewCases : KvxView {
  void PutAll() const {
    Put("deck/fem_solving.txt", WriteModel(SmallModel()));
    Put("deck/ballast.txt", WriteModel(OtherLoads()));
    Put("deck/cases.toml",
        "[case.ballast]\nloads = \"ballast.txt\"\n"
        "[combination.uls]\nfactors = { base = 1.35, ballast = -1.5 }\n");
  }
};

TEST_F(KvxViewCases, AreInThePage) {
  PutAll();
  EXPECT_EQ(Call({"cases", "deck/cases.toml"}).exitStatus, 0);
  const ProgramRun run = View({"deck/cases.toml"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.rfind("deck/view.html: ", 0), 0U);
  const PageFile page = Page();
  EXPECT_EQ(page.title, "deck");
  const std::vector<std::string> names{"base", "ballast", "uls"};
  ASSERT_EQ(page.model["cases"].size(), names.size());
  for (std::size_t k = 0; k < names.size(); ++k) {
    EXPECT_EQ(page.model["cases"][k]["name"], names[k]);
    const std::string text = Bytes("deck/results/" + names[k] + "/fem_solving.txt");
    EXPECT_EQ(ShownDisplacements(page, std::to_string(k)), Show(Exactly(text)));
  }
}

TEST_F(KvxViewCases, AreSolvedByAnotherCommand) {
  PutAll();
  ExpectRefusal({"deck/cases.toml"}, 66,
                "\"deck/cases.toml\": there are no results of case \"base\" in \"deck/results\". "
                "Run kvx cases first; where it had -o DIR, name that folder by --results.");
}

TEST_F(KvxViewCases, MayHaveBeenSolvedInAnotherFolder) {
  PutAll();
  EXPECT_EQ(Call({"cases", "deck/cases.toml", "-o", "solved"}).exitStatus, 0);
  const ProgramRun run = View({"deck/cases.toml", "--results", "solved"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(ShownDisplacements(Page(), "1"),
            Show(Exactly(Bytes("solved/ballast/fem_solving.txt"))));
  const ProgramRun other = View({"deck/cases.toml", "--results", "other"});
  EXPECT_EQ(other.exitStatus, 66);
  EXPECT_TRUE(Holds(other.err, "no results of case \"base\" in \"other\"")) << other.err;
}

TEST_F(KvxViewCases, AreThoseOfTheirStructure) {
  PutAll();
  EXPECT_EQ(Call({"cases", "deck/cases.toml"}).exitStatus, 0);
  ModelText model = SmallModel();
  model.thicknesses[1] = 8.0;
  Put("deck/fem_solving.txt", WriteModel(model));
  ExpectRefusal({"deck/cases.toml"}, 65,
                "\"deck/results/base/fem_solving.txt\" has another thickness 1: load cases must "
                "have the same structure as \"deck/fem_solving.txt\". Run kvx cases again.");
}

TEST_F(KvxViewCases, SayWhenTheirLoadsHaveChanged) {
  PutAll();
  EXPECT_EQ(Call({"cases", "deck/cases.toml"}).exitStatus, 0);
  Put("deck/ballast.txt", WriteModel(SmallModel()));
  const ProgramRun run = View({"deck/cases.toml"});
  const std::string changed =
      "the model was made from ../../ballast.txt, which has changed since. Run kvx cases again.";
  EXPECT_TRUE(Holds(run.err, "kvx view: " + changed)) << run.err;
  bool isNoticed = false;
  const PageFile page = Page();
  for (const json& notice : page.model["notices"]) {
    isNoticed = isNoticed || notice == "Case \"ballast\": " + changed;
  }
  EXPECT_TRUE(isNoticed);
}

TEST_F(KvxViewCases, MistakesInTheFileAreTold) {
  PutAll();
  Put("deck/cases.toml", "[case.ballast]\nload = \"ballast.txt\"\n");
  const ProgramRun run = View({"deck/cases.toml"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.err.rfind("kvx view: \"deck/cases.toml\": line 2: ", 0), 0U) << run.err;
  ExpectRefusal({"deck/cases.toml", "deck"}, 64,
                "\"deck/cases.toml\" is a file of load cases: name it alone.");
  ExpectRefusal({"deck/none.toml"}, 66, "there is no folder or file \"deck/none.toml\".");
}

TEST_F(KvxView, DetailModelsCanBeLeftOut) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  View({"deck", "--no-details"});
  const PageFile page = Page();
  EXPECT_EQ(page.blocks.count("details-0"), 0U);
  EXPECT_FALSE(HasColumn(page.blocks.at("results-0"), "detailStresses"));
  EXPECT_EQ(page.model["notices"], json::array());
}

// Nothing else is left out with them: the rest of the page is the same.
TEST_F(KvxView, StressesOfSingleElementsCanBeLeftOut) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  View({"deck"});
  const PageFile whole = Page();
  EXPECT_EQ(View({"deck", "--averaged"}).exitStatus, 0);
  const PageFile page = Page();
  EXPECT_EQ(page.blocks.count("corners-0"), 0U);
  EXPECT_EQ(page.blocks.size() + 1, whole.blocks.size());
  EXPECT_EQ(page.model["cases"][0]["blocks"],
            (json{{"loads", "loads-0"}, {"results", "results-0"}, {"details", "details-0"}}));
  EXPECT_EQ(Show(ReadDecimals(page.blocks.at("results-0"), "shells.upper")),
            Show(ReadDecimals(whole.blocks.at("results-0"), "shells.upper")));
}

// 105 m of a flat bar whose widest strip is 10: 10500 steps of 3 shells, in each of two cases.
TEST_F(KvxView, ManyDetailModelsAreThereOnRequest) {
  ModelText model = SmallModel();
  model.lSections[0] = {30.0, 10.0, 0.0, 0.0};
  model.nodes = {{0, 0, 0}, {105000, 0, 0}, {105000, 1000, 0}, {0, 1000, 0}, {106000, 500, 0}};
  Put("deck/fem_solving.txt", WriteModel(model));
  model.forces[0].components[2] = -50;
  Put("sea/fem_solving.txt", WriteModel(model));
  View({"deck", "sea"});
  const PageFile page = Page();
  EXPECT_EQ(page.blocks.count("details-0"), 0U);
  EXPECT_EQ(page.model["notices"],
            json{"The detail models of beams are left out: they have 63000 shells. Their largest "
                 "stresses at mid-length are there. kvx view --details adds them."});
  View({"deck", "sea", "--details"});
  const PageFile whole = Page();
  EXPECT_EQ(whole.blocks.count("details-0"), 1U);
  for (const char* const row : {"results-0", "results-1"}) {
    EXPECT_EQ(Show(ReadDecimals(page.blocks.at(row), "detailStresses")),
              Show(ReadDecimals(whole.blocks.at(row), "detailStresses")));
  }
}

TEST_F(KvxView, NeverReplacesAnythingButAPage) {
  const std::string text = WriteModel(SmallModel());
  Put("deck/fem_solving.txt", text);
  ExpectRefusal({"deck", "-o", "deck/fem_solving.txt"}, 73,
                "\"deck/fem_solving.txt\" is no page of kvx view and is left as it is. Name "
                "another file with -o.");
  EXPECT_EQ(Bytes("deck/fem_solving.txt"), text);
  ExpectRefusal({"deck", "-o", "deck"}, 73, "\"deck\" is a folder. Name a file with -o.");
  Put("empty.html", "");
  ExpectRefusal({"deck", "-o", "empty.html"}, 73,
                "\"empty.html\" is no page of kvx view and is left as it is. Name another file "
                "with -o.");
  const std::string report = "<!DOCTYPE html><html><body>kvx view</body></html>";
  Put("report.html", report);
  ExpectRefusal({"deck", "-o", "report.html"}, 73,
                "\"report.html\" is no page of kvx view and is left as it is. Name another file "
                "with -o.");
  EXPECT_EQ(Bytes("report.html"), report);
}

TEST_F(KvxView, ReplacesItsOwnPage) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  View({"deck"});
  const std::string first = Bytes();
  Put("deck/fem_solving.txt", WriteModel(OtherLoads()));
  EXPECT_EQ(View({"deck"}).exitStatus, 0);
  EXPECT_NE(Bytes(), first);
}

TEST_F(KvxView, SaysWhereAPageCannotBeWritten) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  const ProgramRun run = View({"deck", "-o", "none/page.html"});
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_EQ(run.err.rfind("kvx view: none/page.html cannot be written: ", 0), 0U) << run.err;
}

TEST_F(KvxView, RefusesWhatMakesNoSense) {
  Put("deck/fem_solving.txt", WriteModel(SmallModel()));
  ExpectRefusal({"deck", "--details", "--no-details"}, 64, "--details or --no-details, not both.");
  ExpectRefusal({"deck", "--details", "--model"}, 64,
                "--details shows results, which --model leaves out. Name one of the two.");
  ExpectRefusal({"deck", "--averaged", "--model"}, 64,
                "--averaged shows results, which --model leaves out. Name one of the two.");
  ExpectRefusal({"deck", "--results", "results"}, 64,
                "--results is for a file of load cases: name it, too.");
  ExpectRefusal({"deck", "-o", ""}, 64,
                "--output: write a name, not \"\". \"kvx view --help\" shows the options.");
  ExpectRefusal({"sea"}, 66, "there is no folder or file \"sea\".");
  ExpectRefusal({""}, 66, "there is no folder or file \"\".");
}

TEST_F(KvxView, RefusesAModelWithoutNodes) {
  Put("deck/fem_solving.txt", WriteModel({}));
  const ProgramRun run = View({"deck"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.err.rfind("kvx view: \"deck/fem_solving.txt\": the model has no nodes, so that "
                          "there is nothing to see.",
                          0),
            0U)
      << run.err;
}

TEST_F(KvxView, ShowsAModelWithoutElements) {
  ModelText model;
  model.nodes = {{1, 2, 3}};
  Put("deck/fem_solving.txt", WriteModel(model));
  const ProgramRun run = View({"deck"});
  EXPECT_EQ(Page().model["cases"][0]["isSolved"], false);
  EXPECT_EQ(Page().model["notices"].size(), 1U);
  EXPECT_TRUE(Holds(run.err, "without results") || Holds(run.err, "no results")) << run.err;
}

// 501,264 shells.
TEST_F(KvxView, RefusesWhatNoBrowserOpens) {
  constexpr int Side = 708;
  ModelText model;
  model.materials = {{210000.0, 0.3, 0.0}};
  model.thicknesses = {10.0};
  for (int j = 0; j <= Side; ++j) {
    for (int i = 0; i <= Side; ++i) model.nodes.push_back({100.0 * i, 100.0 * j, 0.0});
  }
  for (int j = 0; j < Side; ++j) {
    for (int i = 0; i < Side; ++i) {
      const int node = j * (Side + 1) + i;
      model.shells4.push_back({{node, node + 1, node + Side + 2, node + Side + 1}, 0, 0});
    }
  }
  Put("deck/fem_solving.txt", WriteModel(model));
  const ProgramRun run = View({"deck", "--model"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_TRUE(Holds(run.err, "501264 elements would make a page of about ")) << run.err;
  EXPECT_TRUE(Holds(run.err, "Use kvx export --vtu, which writes files for ParaView.")) << run.err;
  EXPECT_FALSE(Exists("deck/view.html"));
}

}  // namespace
}  // namespace kvx::test
