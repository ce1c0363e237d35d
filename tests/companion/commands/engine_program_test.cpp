// kvx run and kvx cases with a choice of engines, as their user meets them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "audit/displacement_file.h"
#include "model/read_input_file.h"
#include "sparse/sparse_factor.h"
#include "support/folder_bytes.h"
#include "support/good_models.h"
#include "support/read_bytes.h"
#include "support/repeats.h"
#include "support/run_program.h"
#include "support/solved_examples.h"
#include "support/temp_folder.h"
#include "support/words.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ListFolder;
using korvex::test::ModelText;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;
using korvex::test::WriteFile;
using korvex::test::WriteModel;

using Json = nlohmann::json;
using Arguments = std::vector<std::string>;

const std::vector<std::string> NoNames;

// A folder "deck" with a model.
struct KvxEngines : testing::Test {
  TempFolder base;
  fs::path deck = base.Path() / "deck";

  void Put(const std::string& text, const std::string& name = "deck") const {
    fs::create_directories(base.Path() / name);
    WriteFile(base.Path() / name / "fem_solving.txt", text);
  }
  void PutExample(const std::string& example) const {
    Put(ReadBytes(std::string(KORVEX_EXAMPLES "/") + example + "/fem_solving.txt"));
  }
  ProgramRun Call(const Arguments& arguments) const {
    return korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
  }
  ProgramRun Run(Arguments options, const std::string& command = "run") const {
    options.insert(options.begin(), {command, command == "run" ? "deck" : "deck/cases.toml"});
    return Call(options);
  }
  Json RunJson(Arguments options, const std::string& command = "run") const {
    options.emplace_back("--json");
    const ProgramRun run = Run(options, command);
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    return Json::parse(run.out);
  }
  std::vector<double> Displacements() const {
    const std::string text = ReadBytes(deck / "fem_solving.txt");
    korvex::Model model;
    korvex::ReadInputText(text, model);
    std::vector<double> u;
    const auto reading = ReadDisplacementFile((deck / "displacements.bin").string(),
                                              IdentifyModelFile(text), model.Tables.NPOIN, u);
    EXPECT_EQ(reading.fit, DisplacementFit::Fits) << reading.reason;
    return u;
  }
};

std::string Joined(const std::string& text) { return JoinWords(SplitWords(text)); }

bool Holds(const std::string& text, const std::string& part) {
  return Joined(text).find(part) != std::string::npos;
}

struct Mistake {
  Arguments options;
  int status;
  std::string complaint;  // its beginning
};

TEST_F(KvxEngines, RefuseWhatMakesNoSense) {
  PutExample("stiffened-panel");
  WriteFile(deck / "cases.toml", "structure = \"fem_solving.txt\"\n");
  const std::string threads = "--threads: write a number from 1 to 512, not ";
  const std::string memory =
      "--memory: write a number of gigabytes from 0.001 to 1000000000, such as 16 or 2.5, not ";
  for (const Mistake& mistake : std::vector<Mistake>{
           {{"--threads", "0"}, 64, threads + "\"0\"."},
           {{"--threads", "many"}, 64, threads + "\"many\"."},
           {{"--threads", "513"}, 64, threads + "\"513\"."},
           {{"--threads", "-2"}, 64, threads + "\"-2\"."},
           {{"--threads"}, 64, "--threads needs its N behind it."},
           {{"--memory", "-3"}, 64, memory + "\"-3\"."},
           {{"--memory", "0"}, 64, memory + "\"0\"."},
           {{"--memory", "all"}, 64, memory + "\"all\"."},
           {{"--memory", "0x10"}, 64, memory + "\"0x10\"."},
           {{"--memory", "0.0009"}, 64, memory + "\"0.0009\"."},
           {{"--memory", "2", "--memory", "3"},
            64,
            "--memory is given more than once: give it one value."},
           {{"--engine", "sprase"},
            64,
            "--engine: there is no engine \"sprase\"; perhaps \"sparse\""},
           {{"--engine", "mumps"}, 64, "--engine: there is no engine \"mumps\"; write auto, sky"},
           {{"--engine", "skyline", "--out-of-core", "."}, 64, "--out-of-core is for the sparse"},
           {{"--dry-run", "--csv"}, 64, "--dry-run makes no table: leave out --csv."},
           {{"--out-of-core", ""}, 64, "--out-of-core: write the name of a folder."},
           {{"--out-of-core", "none"}, 73, "the folder \""},
           {{"--dry-run", "--out-of-core", std::string(300, 'a')}, 73, "the folder \""},
           {{"--out-of-core", "deck/fem_solving.txt"}, 73, "the folder \""}}) {
    for (const std::string command : {"run", "cases"}) {
      SCOPED_TRACE(command + ' ' + mistake.complaint);
      const ProgramRun run = Run(mistake.options, command);
      EXPECT_EQ(run.exitStatus, mistake.status);
      EXPECT_EQ(run.out, "");
      EXPECT_EQ(run.err.rfind("kvx " + command + ": " + mistake.complaint, 0), 0U) << run.err;
    }
  }
  EXPECT_TRUE(Holds(Run({"--out-of-core", "none"}).err, "none\" for the factors is not there"));
  // MUMPS has 255 bytes for the name; it is looked at before anything is done.
  EXPECT_TRUE(Holds(Run({"--out-of-core", std::string(300, 'a')}).err,
                    " bytes, of which it may have 237; name another one."));
  EXPECT_EQ(ListFolder(deck), (std::vector<std::string>{"cases.toml", "fem_solving.txt"}));
}

TEST_F(KvxEngines, SkylineHasTheBytesOfTheSolverWithAnyThreads) {
  for (const std::string& example : ListSolvedExamples()) {
    PutExample(example);
    const FolderBytes solver = RunSolver(ReadBytes(deck / "fem_solving.txt"));
    std::vector<std::string> numbers{"3", "1", "2", "8"};
    numbers.resize(korvex::test::Repeats(4));
    for (const std::string& threads : numbers) {
      SCOPED_TRACE(example + ' ' + threads);
      const ProgramRun run = Run({"--engine", "skyline", "--threads", threads});
      EXPECT_EQ(run.exitStatus, 0) << run.err;
      EXPECT_EQ(ListDifferent(ReadFolder(deck), solver), NoNames);
      EXPECT_TRUE(Holds(run.out, "Engine: skyline, ")) << run.out;
    }
    fs::remove_all(deck);
  }
  for (std::uint32_t seed = 200; seed < 206; ++seed) {
    Put(WriteModel(MakeGoodModel(seed)));
    EXPECT_EQ(Run({"--engine=skyline", "--threads=3"}).exitStatus, 0);
    EXPECT_EQ(ListDifferent(ReadFolder(deck), RunSolver(ReadBytes(deck / "fem_solving.txt"))),
              NoNames)
        << seed;
    fs::remove_all(deck);
  }
}

// Small models are solved by the skyline: their files stay those of the solver without a word.
TEST_F(KvxEngines, AutoTakesTheSkylineForSmallModels) {
  PutExample("stiffened-panel");
  const Json json = RunJson({});
  EXPECT_EQ(json["engine"]["name"], "skyline");
  EXPECT_FALSE(json["engine"]["reason"].get<std::string>().empty());
  EXPECT_EQ(json["engine"]["solution"]["engine"], "skyline");
  EXPECT_EQ(json["engine"]["equations"], 6450);
}

TEST_F(KvxEngines, DryRunTellsAllAndWritesNothing) {
  PutExample("stiffened-panel");
  WriteFile(deck / "Node_Dis.txt", "old");
  WriteFile(deck / "cases.toml", "structure = \"fem_solving.txt\"\n");
  const auto before = ListFolder(base.Path()), inside = ListFolder(deck);
  const ProgramRun text = Run({"--dry-run"});
  EXPECT_EQ(text.exitStatus, 0) << text.err;
  EXPECT_EQ(text.err, "");
  EXPECT_TRUE(Holds(text.out, "no errors, no warnings; not solved, in a dry run.")) << text.out;
  EXPECT_TRUE(Holds(text.out, "6450 equations, ")) << text.out;
  EXPECT_TRUE(Holds(text.out, "is taken")) << text.out;
  for (const std::string engine : {"\n  skyline ", "\n  sparse ", "\n  sparse, out of core"}) {
    EXPECT_NE(text.out.find(engine), std::string::npos) << text.out;
  }
  for (const std::string command : {"run", "cases"}) {
    const Json json = RunJson({"-n"}, command);
    EXPECT_EQ(json["solved"], false);
    EXPECT_EQ(json["engine"]["name"], "skyline");
    EXPECT_EQ(json["engine"]["equations"], 6450);
    EXPECT_TRUE(json["engine"]["solution"].is_null());
    EXPECT_EQ(json["engine"]["prediction"]["skyline"]["possible"], true);
    EXPECT_GT(json["engine"]["prediction"]["skyline"]["bytes"].get<double>(), 0.0);
  }
  EXPECT_TRUE(Holds(Run({"--dry-run"}, "cases").out, "Not solved, in a dry run. 6450 equations, "));
  EXPECT_EQ(ListFolder(base.Path()), before);
  EXPECT_EQ(ListFolder(deck), inside);
  EXPECT_EQ(ReadBytes(deck / "Node_Dis.txt"), "old");
}

// Old results stay where the solution is refused, and nothing is left beside them.
TEST_F(KvxEngines, SayWhereNothingFits) {
  PutExample("stiffened-panel");
  ASSERT_EQ(Run({}).exitStatus, 0);
  const std::string text = ReadBytes(deck / "fem_solving.txt") + "\n";  // another state
  WriteFile(deck / "fem_solving.txt", text);
  WriteFile(deck / "cases.toml", "structure = \"fem_solving.txt\"\n");
  const FolderBytes before = ReadFolder(deck);
  for (const std::string engine : {"skyline", "sparse", "auto"}) {
    for (const std::string option : {"--strict", "--dry-run"}) {  // --strict changes nothing here
      SCOPED_TRACE(engine + ' ' + option);
      ProgramRun run = Run({"--engine", engine, "--memory", "0.001", option});
      std::replace(run.err.begin(), run.err.end(), '\\', '/');  // of folders, on Windows
      EXPECT_EQ(run.exitStatus, 65);
      EXPECT_EQ(run.err.rfind("kvx run: \"deck/fem_solving.txt\": ", 0), 0U) << run.err;
      const bool isThere = engine != "sparse" || HasSparseEngine();
      const std::string reason = isThere ? " and it may take 0.001 GB." : NoSparseEngine;
      EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
      EXPECT_TRUE(Holds(run.out, option == "--dry-run" ? "; it could not be solved."
                                                       : "; no results were written."))
          << run.out;
      const Json json =
          Json::parse(Run({"--engine", engine, "--memory", "0.001", option, "--json"}).out);
      EXPECT_EQ(json["status"], 65);
      ASSERT_TRUE(json["engine"].is_object());
      EXPECT_TRUE(json["engine"]["name"].is_null());
    }
  }
  EXPECT_EQ(Run({"--memory", "0.001"}, "cases").exitStatus, 65);
  EXPECT_FALSE(fs::exists(deck / "results"));
  EXPECT_EQ(Run({"--memory", "0.001", "-o", "deck/a/b"}, "cases").exitStatus, 65);
  EXPECT_FALSE(fs::exists(deck / "a"));
  fs::create_directory(deck / "mine");
  EXPECT_EQ(Run({"--memory", "0.001", "-o", "deck/mine"}, "cases").exitStatus, 65);
  EXPECT_TRUE(fs::remove(deck / "mine"));  // it was there, and is empty
  EXPECT_EQ(ListDifferent(ReadFolder(deck), before), NoNames);
  EXPECT_TRUE(fs::exists(deck / "solution.json"));
}

// What a later audit says is what the run said.
TEST_F(KvxEngines, AuditKeepsWhatTheRunHasFound) {
  PutExample("stiffened-panel");
  const Json run = RunJson({"--engine", "skyline", "--threads", "2"});
  const Json file = Json::parse(ReadBytes(deck / "solution.json"));
  EXPECT_EQ(run["audit"]["solution"], run["engine"]["solution"]);
  EXPECT_NEAR(file["digits_lost"].get<double>(), 4.4, 0.1);  // docs/large-models.md
  for (const auto& [key, value] : run["audit"]["solution"].items()) {
    EXPECT_EQ(file.at(key), value) << key;
  }
  const ProgramRun audit = Call({"audit", "deck"});
  EXPECT_EQ(audit.exitStatus, 0);
  EXPECT_TRUE(Holds(audit.out, " solution skyline, ")) << audit.out;
  EXPECT_EQ(Json::parse(Call({"audit", "deck", "--json"}).out)["solution"],
            run["audit"]["solution"]);

  // Of a solution in memory, or of korvex, nothing is said.
  const std::string displacements = ReadBytes(deck / "displacements.bin");
  fs::remove(deck / "displacements.bin");
  const ProgramRun none = Call({"audit", "deck"});
  EXPECT_FALSE(Holds(none.out, " solution ")) << none.out;
  EXPECT_TRUE(Json::parse(Call({"audit", "deck", "--json"}).out)["solution"].is_null());

  // Nor of another state of the model.
  WriteFile(deck / "displacements.bin", displacements);
  WriteFile(deck / "fem_solving.txt", ReadBytes(deck / "fem_solving.txt") + "\n");
  EXPECT_TRUE(Json::parse(Call({"audit", "deck", "--json"}).out)["solution"].is_null());
}

// A node that nothing holds: JSON has no infinite number, and the audit knows it all the same.
TEST_F(KvxEngines, AuditKeepsThatAllDigitsAreLost) {
  ModelText model = MakeGoodModel(4);
  model.nodes.push_back({1e3, 2e3, 3e3});
  Put(WriteModel(model));
  const ProgramRun run = Run({"--engine", "skyline", "--force"});
  EXPECT_TRUE(Holds(run.out, "; all digits lost")) << run.out;
  const Json file = Json::parse(ReadBytes(deck / "solution.json"));
  EXPECT_EQ(file["condition"], "infinite");
  EXPECT_EQ(file["digits_lost"], "infinite");
  const ProgramRun audit = Call({"audit", "deck"});
  EXPECT_TRUE(Holds(audit.out, "; all digits lost")) << audit.out;
  EXPECT_EQ(Json::parse(Call({"audit", "deck", "--json"}).out)["solution"]["digits_lost"],
            "infinite");
}

TEST_F(KvxEngines, AuditSaysThatItsFileIsDamaged) {
  PutExample("stiffened-panel");
  ASSERT_EQ(Run({}).exitStatus, 0);
  const std::string text = ReadBytes(deck / "solution.json");
  for (const std::string& damaged : {text.substr(0, text.size() / 2), std::string("{}")}) {
    WriteFile(deck / "solution.json", damaged);
    const ProgramRun audit = Call({"audit", "deck"});
    EXPECT_EQ(audit.exitStatus, 0);
    EXPECT_TRUE(Holds(audit.out,
                      "WARN K717 solution.json is not as kvx run has written it. How the results "
                      "were found, and how exact they are, is not known."))
        << audit.out;
  }
  WriteFile(deck / "solution.json", text);
  EXPECT_FALSE(Holds(Call({"audit", "deck"}).out, "K717"));
  fs::remove(deck / "solution.json");  // as of an earlier release
  EXPECT_FALSE(Holds(Call({"audit", "deck"}).out, "K717"));
}

// Four hints and nothing else: counted, and where to find them.
TEST_F(KvxEngines, SayWhereTheHintsAre) {
  PutExample("water-trough");
  const ProgramRun run = Run({});
  EXPECT_TRUE(Holds(run.out, "no errors, no warnings, 4 hints; solved in ")) << run.out;
  EXPECT_NE(run.out.find("      kvx check deck shows the hints.\n"), std::string::npos) << run.out;
  PutExample("stiffened-panel");
  EXPECT_EQ(Run({}).out.find("kvx check"), std::string::npos);
}

// What the skyline has found it finds again.
TEST_F(KvxEngines, SolveAgainInSilenceWhatTheSkylineHasSolved) {
  PutExample("stiffened-panel");
  ASSERT_EQ(Run({"--engine", "skyline"}).exitStatus, 0);
  fs::remove(deck / "displacements.bin");
  EXPECT_EQ(Call({"reactions", "deck"}).err, "");
  EXPECT_TRUE(Holds(Call({"audit", "deck"}).out, "6 of 6 are those of this model"));
}

// Renumbering removes it with the results, and its way back brings it along.
TEST_F(KvxEngines, RenumberingKeepsItWithTheResults) {
  PutExample("water-trough");
  ASSERT_EQ(Run({}).exitStatus, 0);
  const ProgramRun there = Call({"renumber", "deck"});
  ASSERT_EQ(there.exitStatus, 0) << there.err;
  ASSERT_TRUE(fs::exists(deck / "renumber.json")) << "the order was the best";
  EXPECT_FALSE(fs::exists(deck / "solution.json"));
  ASSERT_EQ(Run({}).exitStatus, 0);
  const Json before = Json::parse(Call({"audit", "deck", "--json"}).out)["solution"];
  EXPECT_TRUE(before.is_object());
  ASSERT_EQ(Call({"renumber", "deck", "--undo"}).exitStatus, 0);
  EXPECT_EQ(Json::parse(Call({"audit", "deck", "--json"}).out)["solution"], before);
  // Results of which nothing is known stay so.
  ASSERT_EQ(Call({"renumber", "deck"}).exitStatus, 0);
  ASSERT_EQ(Run({}).exitStatus, 0);
  fs::remove(deck / "solution.json");
  ASSERT_EQ(Call({"renumber", "deck", "--undo"}).exitStatus, 0);
  EXPECT_FALSE(fs::exists(deck / "solution.json"));
  EXPECT_TRUE(fs::exists(deck / "displacements.bin"));
}

TEST_F(KvxEngines, CasesTellTheirs) {
  PutExample("stiffened-panel");
  WriteFile(deck / "cases.toml",
            "structure = \"fem_solving.txt\"\n[case.g]\nacceleration=[0,0,-9810]\n");
  const Json json = RunJson({"--engine", "skyline"}, "cases");
  EXPECT_EQ(json["engine"]["name"], "skyline");
  EXPECT_EQ(json["engine"]["solution"]["engine"], "skyline");
  for (const Json& each : json["cases"]) {
    const std::string folder = each["folder"];
    const Json file = Json::parse(ReadBytes(fs::u8path(folder) / "solution.json"));
    EXPECT_EQ(file["residual"], each["audit"]["solution"]["residual"]);
    EXPECT_EQ(Json::parse(Call({"audit", folder, "--json"}).out)["solution"],
              each["audit"]["solution"]);
  }
  EXPECT_TRUE(Holds(Run({}, "cases").out, "one factorisation for all. Engine: skyline, "));
}

// The sparse engine, where the program has one. ---------------------------------------------------

struct KvxSparse : KvxEngines {
  void SetUp() override {
    if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  }
};

double Largest(const std::vector<double>& numbers) {
  double largest = 0.0;
  for (const double number : numbers) largest = std::max(largest, std::fabs(number));
  return largest;
}

// Both solutions are within the bound of the error of the exact one, in the norm that the bound is
// of: condition x backward error. The estimate of the condition is rarely three times too small
// (Higham 2002, sec. 15.3): the factor 10 is for that, and for both solutions.
TEST_F(KvxSparse, AgreesWithTheSkylineWithinTheBound) {
  for (const std::string& example : ListSolvedExamples()) {
    SCOPED_TRACE(example);
    PutExample(example);
    const Json skyline = RunJson({"--engine", "skyline"})["engine"]["solution"];
    const std::vector<double> exact = Displacements();
    const Json sparse = RunJson({"--engine", "sparse"})["engine"]["solution"];
    EXPECT_EQ(sparse["engine"], "sparse");
    std::vector<double> difference = Displacements();
    ASSERT_EQ(difference.size(), exact.size());
    for (std::size_t i = 0; i < exact.size(); ++i) difference[i] -= exact[i];
    const double error = std::max(
        {sparse["backward_error"].get<double>(), skyline["backward_error"].get<double>(), 1.1e-16});
    const double bound = 10.0 * sparse["condition"].get<double>() * error;
    EXPECT_LE(Largest(difference), bound * Largest(exact));
    EXPECT_LT(sparse["digits_lost"].get<double>(), 10.0);
    EXPECT_LT(sparse["residual"].get<double>(), 1e-12);
    fs::remove_all(deck);
  }
}

TEST_F(KvxSparse, SaysSoInTextAndAudit) {
  PutExample("stiffened-panel");
  const ProgramRun run = Run({"--engine", "sparse", "--threads", "2"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_TRUE(Holds(run.out, "Engine: sparse, 2 threads. ")) << run.out;
  EXPECT_TRUE(Holds(run.out, " solution sparse, 2 threads; scaled residual ")) << run.out;
  EXPECT_TRUE(Holds(run.out, " of about 16 digits lost")) << run.out;
  const ProgramRun audit = Call({"audit", "deck"});
  EXPECT_EQ(audit.exitStatus, 0) << audit.out;
  EXPECT_TRUE(Holds(audit.out, " solution sparse, 2 threads; scaled residual ")) << audit.out;
  EXPECT_TRUE(Holds(audit.out, "6 of 6 are those of this model")) << audit.out;
}

// The skyline solves again what is missing; its last digits say nothing about files of the sparse
// engine.
TEST_F(KvxSparse, IsNotCalledStaleWithoutItsDisplacements) {
  PutExample("stiffened-panel");
  ASSERT_EQ(Run({"--engine", "sparse"}).exitStatus, 0);
  fs::remove(deck / "displacements.bin");
  const std::string why =
      "displacements.bin does not exist. The model is solved anew, by the skyline: the result "
      "files "
      "are "
      "those of the sparse engine, and last digits may differ. Call kvx run: it leaves "
      "displacements.bin.";
  for (const std::string command : {"reactions", "top", "view", "audit"}) {
    const ProgramRun run = Call({command, "deck"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.err, "kvx " + command + ": " + why + "\n");
  }
  const ProgramRun audit = Call({"audit", "deck"});
  EXPECT_FALSE(Holds(audit.out, "K711")) << audit.out;
  EXPECT_TRUE(Holds(audit.out, "WARN K714 ")) << audit.out;
  EXPECT_TRUE(Holds(audit.out, " could not be compared: The sparse engine has written them"))
      << audit.out;
  // Files of another model are stale all the same.
  WriteFile(deck / "fem_solving.txt", ReadBytes(deck / "fem_solving.txt") + "\n");
  WriteFile(deck / "Node_Dis.txt", "other");
  EXPECT_TRUE(Holds(Call({"audit", "deck"}).out, "ERROR K711 "));
}

TEST_F(KvxSparse, LeavesNothingInTheFolderForTheFactors) {
  PutExample("stiffened-panel");
  fs::create_directory(base.Path() / "factors");
  const Json json = RunJson({"--engine", "sparse", "--out-of-core", "factors"});
  EXPECT_EQ(json["engine"]["name"], "sparse");
  EXPECT_EQ(ListFolder(base.Path() / "factors"), NoNames);
  const Json dry = RunJson({"--engine", "sparse", "--out-of-core", "factors", "--dry-run"});
  EXPECT_GT(dry["engine"]["prediction"]["out_of_core"]["disk_bytes"].get<double>(), 0.0);
  EXPECT_EQ(ListFolder(base.Path() / "factors"), NoNames);
}

TEST_F(KvxSparse, SolvesModelsAndCasesTogether) {
  ModelText model = MakeGoodModel(3);
  Put(WriteModel(model), "a");
  for (auto& force : model.forces) force.components[2] += 5.0;
  Put(WriteModel(model), "b");
  const ProgramRun run = Call({"run", "a", "b", "--engine", "sparse"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_TRUE(Holds(run.out, "2 folders: 2 solved with 1 factorisation.")) << run.out;
  PutExample("stiffened-panel");
  WriteFile(deck / "cases.toml",
            "structure = \"fem_solving.txt\"\n[case.g]\nacceleration=[0,0,-9810]\n");
  const Json json = RunJson({"--engine", "sparse"}, "cases");
  EXPECT_EQ(json["engine"]["name"], "sparse");
  EXPECT_EQ(json["cases"].size(), 2U);
  EXPECT_TRUE(json["cases"][1]["audit"]["solution"]["digits_lost"].is_number());
}

// Without loads nothing moves.
TEST_F(KvxSparse, EstimatesNothingWithoutLoads) {
  ModelText model = MakeGoodModel(4);
  model.forces.clear();
  model.shell4Loads.clear();
  model.shell3Loads.clear();
  model.beamLoads.clear();
  Put(WriteModel(model));
  const ProgramRun run = Run({"--engine", "sparse", "--force"});
  EXPECT_TRUE(Holds(run.out, "digits lost: not estimated, nothing moves")) << run.out;
}

// A structure that can move: it is named, and nothing is written.
TEST_F(KvxSparse, NamesWhatCanMove) {
  ModelText model = MakeGoodModel(5);
  model.restraints.clear();
  Put(WriteModel(model));
  const ProgramRun run = Run({"--engine", "sparse", "--force"});
  EXPECT_EQ(run.exitStatus, 65) << run.out;
  EXPECT_TRUE(Holds(run.err, "node ")) << run.err;
  EXPECT_EQ(ListFolder(deck), std::vector<std::string>{"fem_solving.txt"});
}

TEST_F(KvxEngines, SayWhereThereIsNoSparseEngine) {
  if (HasSparseEngine()) GTEST_SKIP() << "there is one";
  PutExample("stiffened-panel");
  const ProgramRun run = Run({"--engine", "sparse"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_TRUE(Holds(run.err, NoSparseEngine)) << run.err;
}

}  // namespace
}  // namespace kvx::test
