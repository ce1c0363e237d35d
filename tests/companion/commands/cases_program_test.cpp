// kvx cases as its user meets it: the folders of cases are those of the solver, combinations those
// of their loads, and each mistake has its message.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>

#include "audit/displacement_file.h"
#include "model/model.h"
#include "support/folder_bytes.h"
#include "support/good_models.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/solve_model.h"
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

constexpr const char* LoadsTail =
    "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0\n"
    "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0\n"
    "Number of distributed loads on beam elements:NDL_B=0\n";

// A folder with a case file and what belongs to it.
struct KvxCases : testing::Test {
  TempFolder base;

  void Put(const std::string& name, const std::string& text) const {
    const fs::path file = base.Path() / fs::u8path(name);
    fs::create_directories(file.parent_path());
    WriteFile(file, text);
  }
  ProgramRun Run(std::vector<std::string> arguments = {}, const std::string& in = ".") const {
    arguments.insert(arguments.begin(), "cases");
    return korvex::test::RunProgram(KVX_PROGRAM, base.Path() / fs::u8path(in), "", arguments);
  }
  std::string Read(const std::string& name) const { return ReadBytes(base.Path() / name); }
  bool Exists(const std::string& name) const { return fs::exists(base.Path() / name); }

  std::vector<double> Displacements(const std::string& name, std::size_t nodes) const {
    const fs::path folder = base.Path() / "results" / name;
    std::vector<double> u;
    const DisplacementReading reading =
        ReadDisplacementFile((folder / "displacements.bin").string(),
                             IdentifyModelFile(ReadBytes(folder / "fem_solving.txt")),
                             static_cast<std::int32_t>(nodes), u);
    EXPECT_EQ(reading.fit, DisplacementFit::Fits) << reading.reason;
    return u;
  }
};

// A plate with a beam and a triangle, loaded in every way.
ModelText SmallModel() {
  ModelText text;
  text.materials = {{210000.0, 0.25, 7.85e-9}};
  text.thicknesses = {10.0};
  text.lSections = {{200.0, 10.0, 100.0, 10.0}};
  text.nodes = {{0, 0, 0}, {1000, 0, 0}, {1000, 1000, 0}, {0, 1000, 0}, {2000, 500, 0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.shells3 = {{{1, 4, 2}, 0, 0}};
  text.beams.resize(1);
  text.beams[0].BeamSecType = korvex::BeamSecTypeL;
  text.beams[0].BeamSecOz = 5.0;
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

const std::string Cases =
    "structure = \"fem_solving.txt\"\n"
    "[case.ballast]\n"
    "loads = \"ballast.txt\"\n"
    "[case.weight]\n"
    "acceleration = [100, 0, -9810]\n"
    "[combination.uls]\n"
    "factors = { base = 1.35, ballast = -1.5 }\n"
    "[combination.\"uls and G\"]\n"
    "factors = { uls = 0.5, weight = 1.35 }\n";

void PutAll(const KvxCases& test) {
  test.Put("fem_solving.txt", WriteModel(SmallModel()));
  test.Put("ballast.txt", WriteModel(OtherLoads()));
  test.Put("cases.toml", Cases);
}

TEST_F(KvxCases, FoldersAreThoseOfTheSolver) {
  PutAll(*this);
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  EXPECT_EQ(run.err, "");
  for (const std::string name : {"base", "ballast", "weight", "uls", "uls and G"}) {
    SCOPED_TRACE(name);
    const fs::path folder = base.Path() / "results" / name;
    const std::string text = ReadBytes(folder / "fem_solving.txt");
    EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(text)),
              std::vector<std::string>{"case.json"});
  }
  EXPECT_EQ(Read("results/base/fem_solving.txt"), Read("fem_solving.txt"));
  EXPECT_EQ(
      ListFolder(base.Path() / "results"),
      (std::vector<std::string>{"ballast", "base", "envelope-all", "uls", "uls and G", "weight"}));
  EXPECT_EQ(ListFolder(base.Path() / "results/envelope-all").size(), 6U);
}

// Of any structure: several parts, all kinds of elements, in random order.
TEST_F(KvxCases, FoldersOfRandomModelsAreThoseOfTheSolver) {
  for (std::uint32_t seed = 0; seed < 6; ++seed) {
    SCOPED_TRACE(seed);
    Put("fem_solving.txt", WriteModel(MakeGoodModel(seed)));
    Put("cases.toml",
        "[case.g]\nacceleration=[1,2,-9.81]\n[combination.c]\nfactors={base=1.5, g=-0.7}\n");
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
    for (const std::string name : {"base", "g", "c"}) {
      const fs::path folder = base.Path() / "results" / name;
      EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(ReadBytes(folder / "fem_solving.txt"))),
                std::vector<std::string>{"case.json"})
          << name;
    }
  }
}

void AddScaled(const ModelText& from, double factor, ModelText& to) {
  for (ModelText::Force force : from.forces) {
    for (double& f : force.components) f *= factor;
    to.forces.push_back(force);
  }
  for (const auto& load : from.beamLoads) {
    to.beamLoads.push_back({load.element, factor * load.q1, factor * load.q2});
  }
  for (auto load : from.shell4Loads) {
    for (double& q : load.q) q *= factor;
    to.shell4Loads.push_back(load);
  }
  for (auto load : from.shell3Loads) {
    for (double& q : load.q) q *= factor;
    to.shell3Loads.push_back(load);
  }
}

double LargestOf(const std::vector<double>& u) {
  double largest = 0.0;
  for (const double x : u) largest = std::max(largest, std::abs(x));
  return largest;
}

// 1.35 base - 1.5 ballast: a model file with these loads, written here; and the sum of the cases.
TEST_F(KvxCases, CombinationsAreThoseOfTheirLoads) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  const std::size_t nodes = SmallModel().nodes.size();
  ModelText combined = SmallModel();
  combined.forces.clear();
  combined.beamLoads.clear();
  AddScaled(SmallModel(), 1.35, combined);
  AddScaled(OtherLoads(), -1.5, combined);
  korvex::Model model;
  korvex::test::SolveModel(combined, model);

  const std::vector<double> uls = Displacements("uls", nodes);
  const std::vector<double> own = Displacements("base", nodes);
  const std::vector<double> ballast = Displacements("ballast", nodes);
  const std::vector<double> weight = Displacements("weight", nodes);
  const std::vector<double> all = Displacements("uls and G", nodes);
  const double tolerance = 1e-12 * LargestOf(uls);
  EXPECT_GT(tolerance, 0.0);
  for (std::size_t k = 0; k < uls.size(); ++k) {
    EXPECT_NEAR(uls[k], model.Displacements[k], tolerance) << k;
    // Each of the solutions has its own rounding.
    EXPECT_NEAR(uls[k], 1.35 * own[k] - 1.5 * ballast[k], 10.0 * tolerance) << k;
    EXPECT_NEAR(all[k], 0.5 * uls[k] + 1.35 * weight[k], 10.0 * tolerance) << k;
  }
}

// The envelope of two cases, against their displacements.
TEST_F(KvxCases, EnvelopesNameTheGoverningCase) {
  PutAll(*this);
  Put("cases.toml",
      Cases + "[envelope.two]\nof = ['weight', 'ballast']\n[envelope.one]\nof = ['weight']\n");
  ASSERT_EQ(Run().exitStatus, 0);
  EXPECT_FALSE(Exists("results/envelope-all"));
  const std::string csv = Read("results/envelope-two/displacements.csv");
  const std::size_t nodes = SmallModel().nodes.size();
  const std::vector<double> ballast = Displacements("ballast", nodes);
  const std::vector<double> weight = Displacements("weight", nodes);
  const std::size_t uz = 4 * 6 + 2;  // of node 4
  const std::string least = ballast[uz] <= weight[uz] ? "ballast" : "weight";
  const std::size_t row = csv.find("\n4,2000,500,0,uz,smallest,");
  ASSERT_NE(row, std::string::npos) << csv;
  const std::string line = csv.substr(row + 1, csv.find('\n', row + 1) - row - 1);
  const std::string value = line.substr(std::string("4,2000,500,0,uz,smallest,").size());
  EXPECT_EQ(std::stod(value), std::min(ballast[uz], weight[uz]));
  EXPECT_NE(line.find(',' + least + ','), std::string::npos) << line;
  const std::string one = Read("results/envelope-one/displacements.csv");
  EXPECT_NE(one.find(",weight,"), std::string::npos);
  EXPECT_EQ(one.find(",ballast,"), std::string::npos);
}

TEST_F(KvxCases, SaysWhatItHasSolved) {
  PutAll(*this);
  const ProgramRun run = Run();
  EXPECT_EQ(
      run.out.rfind("cases.toml: 3 cases and 2 combinations of fem_solving.txt; no errors, no "
                    "warnings.\nSolved: 30 equations in ",
                    0),
      0U)
      << run.out;
  for (const char* part :
       {"\n  base ", "\n  uls and G ", "Largest of all:\n", "von Mises stress, shells",
        "von Mises stress, beams, detail models", "von Mises stress, beams, section forces",
        "results, a folder for each case.", "Envelope of uls, uls and G: envelope-all."}) {
    EXPECT_NE(run.out.find(part), std::string::npos) << part << run.out;
  }
}

// The sum of a case's loads, and the largest displacement, against the model.
TEST_F(KvxCases, JsonHasTheSame) {
  PutAll(*this);
  const ProgramRun run = Run({"--json"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  const auto json = nlohmann::json::parse(run.out);
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1);
  ASSERT_EQ(json["cases"].size(), 5U);
  EXPECT_EQ(json["cases"][0]["name"], "base");
  EXPECT_EQ(json["cases"][0]["kind"], "case");
  EXPECT_EQ(json["cases"][1]["loads_file"]["file"], "ballast.txt");
  EXPECT_EQ(json["cases"][3]["kind"], "combination");
  // -100 and the line load 1000 (1 + 0.5) / 2 downwards.
  EXPECT_NEAR(json["cases"][0]["loads"][2].get<double>(), -850.0, 1e-9);
  const std::vector<double> u = Displacements("base", SmallModel().nodes.size());
  const std::size_t node = json["cases"][0]["displacement"]["node"];
  EXPECT_DOUBLE_EQ(json["cases"][0]["displacement"]["value"].get<double>(),
                   std::sqrt(u[6 * node] * u[6 * node] + u[6 * node + 1] * u[6 * node + 1] +
                             u[6 * node + 2] * u[6 * node + 2]));
  EXPECT_EQ(json["cases"][0]["verdict"].get<std::string>().rfind("balanced", 0), 0U);
  EXPECT_TRUE(json["cases"][0]["audit"].contains("verdict"));
  EXPECT_EQ(json["solved"], true);
  EXPECT_EQ(json["envelopes"][0]["of"], (std::vector<std::string>{"uls", "uls and G"}));
  ASSERT_EQ(json["governing"].size(), 4U);
  const std::vector<std::string> quantities{"displacement", "shells", "beams", "section"};
  const std::vector<std::string> audited{"displacement", "shells", "beams", "beam_von_mises"};
  const std::map<std::string, std::string> kinds{{"NPOIN", "node"},
                                                 {"NELEM_S_4ND", "shell"},
                                                 {"NELEM_S_3ND", "triangle"},
                                                 {"NELEM_B", "beam"}};
  std::size_t compared = 0;
  for (std::size_t i = 0; i < quantities.size(); ++i) {
    const auto& governing = json["governing"][i];
    EXPECT_EQ(governing["quantity"], quantities[i]);
    // That of the audit of the case that governs.
    for (const auto& each : json["cases"]) {
      if (each["name"] != governing["case"]) continue;
      for (const auto& maximum : each["audit"]["maxima"]) {
        if (maximum["quantity"] != audited[i]) continue;
        EXPECT_EQ(governing["kind"], kinds.at(maximum["table"]));
        EXPECT_EQ(governing["value"], maximum["value"]);
        EXPECT_EQ(governing[i == 0 ? "node" : "element"], maximum["row"]);
        EXPECT_EQ(governing["position"], maximum["position"]);
        ++compared;
      }
    }
  }
  EXPECT_EQ(compared, quantities.size());
  EXPECT_TRUE(json["other_folders"].empty());
}

// Files are found from the case file, wherever the user stands; a folder stands for its file.
TEST_F(KvxCases, FindsItsFilesFromEverywhere) {
  Put("bridge/model/fem_solving.txt", WriteModel(SmallModel()));
  Put("bridge/loads/fem_solving.txt", WriteModel(OtherLoads()));
  Put("bridge/cases.toml", "structure = 'model'\n[case.a]\nloads = 'loads'\n");
  for (const std::string place : {"bridge/cases.toml", "bridge"}) {
    const ProgramRun run = Run({place, "--output", "out/here"});
    EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
    EXPECT_EQ(ListFolder(base.Path() / "out/here"),
              (std::vector<std::string>{"a", "base", "envelope-all"}));
    std::string out = run.out;
    std::replace(out.begin(), out.end(), '\\', '/');  // on Windows
    EXPECT_EQ(out.rfind("bridge/cases.toml: 2 cases of ", 0), 0U) << out;
    fs::remove_all(base.Path() / "out");
  }
  EXPECT_EQ(Run({"../cases.toml"}, "bridge/model").exitStatus, 0);
  EXPECT_TRUE(Exists("bridge/results/a/Node_Dis.txt"));
}

TEST_F(KvxCases, NamesFoldersOfEarlierRuns) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  Put("results/notes/readme.txt", "mine");
  Put("cases.toml", "[case.weight]\nacceleration=[0,0,-1]\n[envelope.new]\nof=['base']\n");
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 0);
  for (const std::string name : {"ballast", "uls", "uls and G", "envelope-all"}) {
    EXPECT_NE(run.out.find("Folder \"" + name + "\" there is of an earlier run"), std::string::npos)
        << name << run.out;
    EXPECT_TRUE(Exists("results/" + name));
  }
  EXPECT_EQ(run.out.find("notes"), std::string::npos);
  EXPECT_EQ(run.out.find("\"weight\""), std::string::npos);
}

// What a hostile or careless file gets: a status and a message on standard error, no output, no
// folder.
TEST_F(KvxCases, RefusesWhatItCannotUse) {
  PutAll(*this);
  struct Wrong {
    std::string text;
    int status;
    std::string message;
  };
  const std::vector<Wrong> wrongs{
      {"[case.a]\nloads = 1,5", 65,
       "kvx cases: \"cases.toml\": line 2: \"loads = 1,5\": write the number with a decimal "
       "point.\n"},
      {"[combination.a]\nfactors = { bas = 1 }", 65,
       "kvx cases: \"cases.toml\": line 2: combination \"a\": there is no case or combination "
       "\"bas\". Did you mean \"base\"?\n"},
      {"[combination.a]\nfactors = { b = 1 }\n[combination.b]\nfactors = { a = 1 }", 65,
       "kvx cases: \"cases.toml\": line 4: combinations lead in a circle: a -> b -> a. A "
       "combination can only be made of others that do not contain it.\n"},
      {"[case.'..']\nloads = 'ballast.txt'", 65,
       "kvx cases: \"cases.toml\": line 1: \"..\" begins or ends with a point or a blank, which a "
       "folder must not. Results are written to a folder of this name; choose another.\n"},
      {"# deck\nstructure = 'nowhere.txt'", 66,
       "kvx cases: \"cases.toml\": line 2: structure: there is no folder or file "
       "\"nowhere.txt\".\n"},
      {"[case.a]\n\nloads = 'snow.txt'", 66,
       "kvx cases: \"cases.toml\": line 3: case \"a\": there is no folder or file "
       "\"snow.txt\".\n"},
      {"[case.a]\nloads = 'cases.toml'", 65,
       "kvx cases: \"cases.toml\": line 1: a file of loads begins with \"Number of "
       "forces:NFOR=...\", or is a whole model file.\n"},
  };
  for (const Wrong& wrong : wrongs) {
    Put("cases.toml", wrong.text);
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitStatus, wrong.status) << wrong.text;
    EXPECT_EQ(run.err, wrong.message);
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(Exists("results"));
  }
  fs::remove(base.Path() / "fem_solving.txt");
  Put("cases.toml", "[case.a]\nacceleration = [0, 0, -1]\n");
  EXPECT_EQ(Run().err,
            "kvx cases: \"cases.toml\": structure: there is no folder or file "
            "\"fem_solving.txt\".\n");
  fs::remove(base.Path() / "cases.toml");
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 66);
  EXPECT_EQ(run.err, "kvx cases: there is no folder or file \"cases.toml\".\n");
}

TEST_F(KvxCases, NeedsDensitiesForAWeight) {
  ModelText text = SmallModel();
  text.materials[0][2] = 0.0;
  Put("fem_solving.txt", WriteModel(text));
  Put("cases.toml", "[case.weight]\nacceleration = [0, 0, -9810]\n");
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.err,
            "kvx cases: \"cases.toml\": line 1: case \"weight\": the acceleration makes no loads, "
            "because all densities in \"fem_solving.txt\" are 0.\n");
}

// Steel in N and mm has 7.85e-9. Without a self-weight nobody needs it.
TEST_F(KvxCases, NeedsTheRightDensitiesForAWeight) {
  PutAll(*this);
  for (const double density : {7850.0, 7.85e-6, 7.85e-3}) {  // the last is of no system of units
    SCOPED_TRACE(density);
    ModelText text = SmallModel();
    text.materials[0][2] = density;
    Put("fem_solving.txt", WriteModel(text));
    Put("cases.toml", Cases);
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitStatus, 1) << run.err;
    EXPECT_EQ(run.out.rfind("fem_solving.txt:\nERROR K606 line ", 0), 0U) << run.out;
    EXPECT_NE(run.out.find("case \"weight\""), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("would be wrong"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("1 error, 0 warnings"), std::string::npos) << run.out;
    EXPECT_FALSE(Exists("results"));
    Put("cases.toml", "[case.ballast]\nloads = \"ballast.txt\"\n");
    const ProgramRun unweighed = Run();
    EXPECT_EQ(unweighed.exitStatus, 0) << unweighed.out;
    EXPECT_EQ(unweighed.out.find("would be wrong"), std::string::npos) << unweighed.out;
    fs::remove_all(base.Path() / "results");
  }
}

// A structure without loads of its own has no case "base", and nothing is wrong with that.
TEST_F(KvxCases, TakesAStructureWithoutLoads) {
  ModelText text = SmallModel();
  text.forces.clear();
  text.beamLoads.clear();
  Put("fem_solving.txt", WriteModel(text));
  Put("cases.toml", "[case.weight]\nacceleration = [0, 0, -9810]\n");
  const ProgramRun run = Run({"--strict"});
  EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  EXPECT_FALSE(Exists("results/base"));
  Put("cases.toml", "");
  EXPECT_EQ(Run().exitStatus, 65);
}

TEST_F(KvxCases, StopsAtErrorsOfTheStructure) {
  PutAll(*this);
  ModelText text = SmallModel();
  text.beams[0].orientation = {1, 0, 0};
  Put("fem_solving.txt", WriteModel(text));
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out.rfind("fem_solving.txt:\nERROR K104 line ", 0), 0U) << run.out;
  EXPECT_NE(run.out.find("1 error, 0 warnings.\nNot solved."), std::string::npos) << run.out;
  EXPECT_FALSE(Exists("results"));

  const auto json = nlohmann::json::parse(Run({"--json"}).out);
  EXPECT_EQ(json["solved"], false);
  EXPECT_EQ(json["structure"]["findings"][0]["code"], "K104");
  EXPECT_EQ(json["errors"], 1);

  const ProgramRun forced = Run({"--force"});
  EXPECT_EQ(forced.exitStatus, 1);
  EXPECT_TRUE(Exists("results/base/Node_Dis.txt")) << forced.out << forced.err;
}

// The solver stops at such a file; its findings are told all the same.
TEST_F(KvxCases, TellsTheFindingsOfAStructureThatCannotBeRead) {
  PutAll(*this);
  ModelText text = SmallModel();
  text.beams[0].node2 = 99;
  Put("fem_solving.txt", WriteModel(text));
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 1) << run.err;
  EXPECT_EQ(run.out.rfind("fem_solving.txt:\nERROR K101 line ", 0), 0U) << run.out;
  EXPECT_NE(run.out.find("\ncases.toml: fem_solving.txt; 1 error, 0 warnings.\nNot solved."),
            std::string::npos)
      << run.out;
  const ProgramRun forced = Run({"--force"});
  EXPECT_EQ(forced.exitStatus, 65);
  EXPECT_EQ(
      forced.err.rfind("kvx cases: \"fem_solving.txt\": Beam element 0 refers to node 99;", 0), 0U)
      << forced.err;
}

// Findings about a file of loads have its name and its lines.
TEST_F(KvxCases, StopsAtErrorsOfTheLoads) {
  PutAll(*this);
  Put("ballast.txt", std::string("Number of forces:NFOR=1\n7<0,0,-1,0,0,0>\n") + LoadsTail);
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out.rfind("ballast.txt:\nERROR K401 line 2: force row 0: node 7 does not exist", 0),
            0U)
      << run.out;
  EXPECT_FALSE(Exists("results"));
  const ProgramRun forced = Run({"--force"});
  EXPECT_EQ(forced.exitStatus, 65);
  EXPECT_EQ(
      forced.err.rfind("kvx cases: \"cases.toml\": case \"ballast\": Force 0 refers to node 7", 0),
      0U)
      << forced.err;
}

TEST_F(KvxCases, TellsWarningsAndGoesOn) {
  PutAll(*this);
  Put("ballast.txt", std::string("Number of forces:NFOR=0\n") + LoadsTail);
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.out.rfind("ballast.txt:\nWARN  K407 line 1: ", 0), 0U) << run.out;
  EXPECT_TRUE(Exists("results/ballast/Node_Dis.txt"));
  EXPECT_EQ(Run({"--strict"}).exitStatus, 1);
}

// Nothing of an earlier run is lost where a new one fails.
TEST_F(KvxCases, LeavesWhatIsThereWhereItFails) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  const auto before = ReadFolder(base.Path() / "results/weight");
  fs::remove_all(base.Path() / "results/weight/Node_Dis.txt");
  fs::create_directory(base.Path() / "results/weight/Node_Dis.txt");
  const std::string model = Read("results/weight/fem_solving.txt");
  Put("cases.toml", "[case.weight]\nacceleration = [0, 0, -1]\n");
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 73) << run.out;
  EXPECT_NE(run.err.find("case \"weight\": "), std::string::npos) << run.err;
  EXPECT_EQ(run.out, "");
  auto after = ReadFolder(base.Path() / "results/weight");
  EXPECT_EQ(ListDifferent(before, after), std::vector<std::string>{"Node_Dis.txt"});
  EXPECT_EQ(Read("results/weight/fem_solving.txt"), model);
}

TEST_F(KvxCases, NeedsAFolderForResults) {
  PutAll(*this);
  Put("results", "a file");
  const ProgramRun run = Run();
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_EQ(run.err.rfind("kvx cases: \"cases.toml\": the folder \"", 0), 0U) << run.err;
  EXPECT_EQ(Read("results"), "a file");
}

// The name of a case may be that of a folder with a model of the user's own.
TEST_F(KvxCases, RefusesToReplaceModelsOfPeople) {
  PutAll(*this);
  Put("uls/fem_solving.txt", "mine");
  const ProgramRun run = Run({"-o", "."});
  EXPECT_EQ(run.exitStatus, 73) << run.out;
  EXPECT_NE(run.err.find("uls\" holds a model that kvx cases has not written. Rename the case, or "
                         "choose another folder with -o.\n"),
            std::string::npos)
      << run.err;
  EXPECT_EQ(Read("uls/fem_solving.txt"), "mine");
  EXPECT_EQ(ListFolder(base.Path()),
            (std::vector<std::string>{"ballast.txt", "cases.toml", "fem_solving.txt", "uls"}));
  // The record of another program makes it no folder of ours.
  Put("uls/case.json", R"({"case": "uls", "program": "other", "sources": []})");
  EXPECT_EQ(Run({"-o", "."}).exitStatus, 73);
  EXPECT_EQ(Run().exitStatus, 0);
  EXPECT_EQ(Run().exitStatus, 0);  // its own folders it replaces
}

TEST_F(KvxCases, RefusesToReplaceItsInputs) {
  const std::string model = WriteModel(SmallModel());
  const std::string loads = WriteModel(OtherLoads());
  const std::string ofLoads = "[case.inputs]\nloads = 'inputs/ballast.txt'\n";
  for (const auto& [structure, text] : {std::pair("inputs/fem_solving.txt",
                                                  "structure = 'inputs'\n[combination.inputs]\n"
                                                  "factors = { base = 2 }\n"),
                                        std::pair("fem_solving.txt", ofLoads.c_str())}) {
    fs::remove_all(base.Path() / "inputs");
    Put("inputs/ballast.txt", loads);
    Put(structure, model);
    // Even a record of ours does not help.
    Put("inputs/case.json", R"({"case": "inputs", "program": "kvx cases", "sources": []})");
    Put("cases.toml", text);
    const FolderBytes before = ReadFolder(base.Path() / "inputs");
    const ProgramRun run = Run({"-o", "."});
    EXPECT_EQ(run.exitStatus, 73) << run.out << run.err;
    EXPECT_NE(run.err.find("inputs\" holds \""), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("Rename the case, or choose another folder with -o."), std::string::npos)
        << run.err;
    EXPECT_EQ(ReadFolder(base.Path() / "inputs"), before);
    EXPECT_FALSE(Exists("base"));
  }
}

// A run that was killed while the files of a folder changed places: the record of the earlier run
// is among those that it was about to replace.
TEST_F(KvxCases, KnowsItsFolderBehindAKilledRun) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  fs::create_directories(base.Path() / "results/uls/kvx-unfinished/old");
  fs::rename(base.Path() / "results/uls/case.json",
             base.Path() / "results/uls/kvx-unfinished/old/case.json");
  EXPECT_EQ(Run().exitStatus, 0);
  EXPECT_TRUE(Exists("results/uls/case.json"));
  fs::remove(base.Path() / "results/uls/case.json");
  EXPECT_EQ(Run().exitStatus, 73);
}

// All folders are tried before the first one is written.
TEST_F(KvxCases, FindsAFolderThatCannotBeWrittenBeforeItSolves) {
  PutAll(*this);
  for (const std::string name : {"uls", "envelope-all"}) {
    Put("results/" + name, "a file");
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitStatus, 73) << run.out;
    EXPECT_NE(run.err.find(name + "\" cannot be made: "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find(" Choose another folder with -o.\n"), std::string::npos) << run.err;
    EXPECT_EQ(ListFolder(base.Path() / "results"), std::vector<std::string>{name});
    fs::remove_all(base.Path() / "results");
  }
}

// The hash of FNV-1a, 64 bits, of its definition: computed here for the bytes of each file.
TEST_F(KvxCases, RecordsWhatACaseIsMadeFrom) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  const auto json = nlohmann::json::parse(Read("results/uls/case.json"));
  EXPECT_EQ(json["case"], "uls");
  EXPECT_EQ(json["program"], "kvx cases");
  std::vector<std::string> files;
  for (const auto& source : json["sources"]) {
    files.push_back(source["file"]);
    const std::string bytes = Read("results/uls/" + files.back());
    EXPECT_EQ(source["size"], bytes.size()) << files.back();
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    EXPECT_EQ(std::stoull(source["hash"].get<std::string>(), nullptr, 16), hash) << files.back();
    EXPECT_EQ(source["hash"].get<std::string>().size(), 16U);
  }
  EXPECT_EQ(files, (std::vector<std::string>{"../../cases.toml", "../../fem_solving.txt",
                                             "../../ballast.txt"}));
  // No loads of a file take part in these.
  for (const std::string name : {"base", "weight"}) {
    EXPECT_EQ(nlohmann::json::parse(Read("results/" + name + "/case.json"))["sources"].size(), 2U);
  }
}

ProgramRun AuditCase(const KvxCases& test, const std::string& name,
                     const std::string& command = "audit") {
  return korvex::test::RunProgram(KVX_PROGRAM, test.base.Path(), "", {command, "results/" + name});
}

// Each file that a case is made from, changed and removed: the case is named, others are not.
TEST_F(KvxCases, AuditNamesCasesOfAnEarlierState) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  for (const std::string name : {"base", "ballast", "weight", "uls", "uls and G"}) {
    const ProgramRun run = AuditCase(*this, name);
    EXPECT_EQ(run.out.find("K716"), std::string::npos) << run.out;
    EXPECT_EQ(run.err, "");
  }
  for (const std::string file : {"fem_solving.txt", "cases.toml", "ballast.txt"}) {
    SCOPED_TRACE(file);
    const std::string bytes = Read(file);
    const auto expect = [&](const std::string& state) {
      const std::string message =
          "the model was made from ../../" + file + ", which " + state + ". Run kvx cases again.\n";
      const ProgramRun run = AuditCase(*this, "uls");
      EXPECT_EQ(run.exitStatus, 0);
      EXPECT_EQ(run.err, "kvx audit: " + message);
      EXPECT_NE(run.out.find("WARN  K716 "), std::string::npos) << run.out;
      EXPECT_NE(run.out.find("but the model was made from files that have changed;"),
                std::string::npos)
          << run.out;
      for (const std::string command : {"reactions", "forces", "top"}) {
        EXPECT_EQ(AuditCase(*this, "uls", command).err, "kvx " + command + ": " + message);
      }
      EXPECT_EQ(AuditCase(*this, "weight").err.empty(), file == "ballast.txt");
    };
    std::string other = bytes;  // of the same size
    other.back() = other.back() == 'x' ? 'y' : 'x';
    Put(file, other);
    expect("has changed since");
    Put(file, bytes + '\n');
    expect("has changed since");
    fs::remove(base.Path() / file);
    expect("is no longer there");
    Put(file, bytes);
    EXPECT_EQ(AuditCase(*this, "uls").err, "");
  }
}

// A variant beside the model is not what kvx cases has made.
TEST_F(KvxCases, AuditAsksNothingOfAVariant) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  Put("cases.toml", Cases + "# later\n");
  Put("results/uls/variant.txt", Read("fem_solving.txt"));
  const ProgramRun variant = AuditCase(*this, "uls/variant.txt");
  EXPECT_EQ(variant.err.find("made from"), std::string::npos) << variant.err;
  const ProgramRun model = AuditCase(*this, "uls");
  EXPECT_NE(model.err.find("made from"), std::string::npos) << model.err;
}

// case.json may be anything: of another program, cut off, or made to do harm.
TEST_F(KvxCases, AuditTakesAnyRecord) {
  PutAll(*this);
  ASSERT_EQ(Run().exitStatus, 0);
  const std::string record = Read("results/uls/case.json");
  Put("cases.toml", Cases + "# later\n");
  ASSERT_NE(AuditCase(*this, "uls").err, "");
  const std::string head = R"({"case": "uls", "program": "kvx cases", "sources": )";
  std::vector<std::string> others{"",
                                  "null",
                                  "[]",
                                  std::string(4, '\0'),
                                  "\xff\xfe",
                                  std::string(100000, '['),
                                  R"({"case": "uls", "program": "other", "sources": []})",
                                  R"({"case": 1, "program": "kvx cases", "sources": []})",
                                  head + "{}}",
                                  head + "[1]}",
                                  head + "[{}]}",
                                  head + R"([{"file": "x", "size": -1, "hash": "0"}]})",
                                  head + R"([{"file": "x", "size": 1e999, "hash": "0"}]})",
                                  head + R"([{"file": [], "size": 1, "hash": "0"}]})"};
  for (std::size_t size = 0; size < record.size() - 2; size += 37) {
    others.push_back(record.substr(0, size));
  }
  for (const std::string& other : others) {
    SCOPED_TRACE(other.substr(0, 80));
    Put("results/uls/case.json", other);
    const ProgramRun run = AuditCase(*this, "uls");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out.find("K716"), std::string::npos);
  }
  // Whole, but of no good: names that lead nowhere, to a folder, or into a terminal.
  Put("results/uls/case.json",
      head + R"([{"file": "", "size": 1, "hash": ""}, {"file": ".", "size": 1, "hash": "0"},
                 {"file": "a\u0000b\u001b[31m", "size": 18446744073709551615, "hash": "0"}]})");
  const ProgramRun run = AuditCase(*this, "uls");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("K716"), std::string::npos) << run.out;
  EXPECT_EQ((run.out + run.err).find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace kvx::test
