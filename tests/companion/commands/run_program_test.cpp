// kvx run as its user meets it: the files of korvex byte for byte, in good folders and beside bad
// ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "commands/terminal.h"
#include "support/folder_bytes.h"
#include "support/good_models.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/solved_examples.h"
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

// Folders with models, side by side.
struct KvxRun : testing::Test {
  TempFolder base;

  fs::path Put(const std::string& name, const std::string& text) const {
    fs::path folder = base.Path() / fs::u8path(name);
    fs::create_directories(folder);
    WriteFile(folder / "fem_solving.txt", text);
    return folder;
  }
  ProgramRun Run(std::vector<std::string> arguments, const std::string& in = ".") const {
    arguments.insert(arguments.begin(), "run");
    return korvex::test::RunProgram(KVX_PROGRAM, base.Path() / fs::u8path(in), "", arguments);
  }
};

// Loaded at a node and held, so that it has results of every kind.
ModelText SmallModel() {
  ModelText text;
  text.materials = {{210000.0, 0.25, 7.85e-9}};
  text.thicknesses = {10.0};
  text.tSections = {{200.0, 10.0, 100.0, 10.0}};
  text.nodes = {{0, 0, 0}, {1000, 0, 0}, {1000, 1000, 0}, {0, 1000, 0}, {2000, 500, 0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.shells3 = {{{1, 4, 2}, 0, 0}};
  text.beams.resize(1);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {3, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{4, korvex::test::SingleLoad(2, -100.0)}};
  return text;
}

// The same structure with another load.
std::string SmallText(double force) {
  ModelText text = SmallModel();
  text.forces[0].components[2] = force;
  return WriteModel(text);
}

// A beam whose orientation vector lies along it: an error.
std::string BadText() {
  ModelText text = SmallModel();
  text.beams[0].orientation = {1.0, 0.0, 0.0};
  return WriteModel(text);
}

// The first line that begins with `begin`; empty where there is none.
std::string FindLine(const std::string& text, const std::string& begin) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(begin, 0) == 0) return line;
  }
  return "";
}

// The words of a text, whatever its lines are.
std::string Joined(const std::string& text) {
  std::istringstream words(text);
  std::string joined;
  for (std::string word; words >> word;) joined += (joined.empty() ? "" : " ") + word;
  return joined;
}

// The model file in the folder, as messages name it.
std::string FileIn(const std::string& folder) {
  return (fs::u8path(folder) / "fem_solving.txt").u8string();
}

const std::vector<std::string> NoNames;
const std::vector<std::string> OnlyModel{"fem_solving.txt"};

TEST_F(KvxRun, LeavesTheFilesOfTheSolver) {
  for (const std::string& name : ListSolvedExamples()) {
    const std::string text = ReadBytes(KORVEX_EXAMPLES "/" + name + "/fem_solving.txt");
    const fs::path folder = Put(name, text);
    const ProgramRun run = Run({name});
    EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out.rfind(FileIn(name) + ": no errors, no warnings", 0), 0U) << run.out;
    EXPECT_NE(run.out.find("; solved in "), std::string::npos) << run.out;
    EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(text)), NoNames) << name;
    EXPECT_TRUE(fs::exists(folder / "displacements.bin"));
    EXPECT_TRUE(fs::exists(folder / "solution.json"));
    EXPECT_EQ(ReadBytes(folder / "fem_solving.txt"), text);
  }
}

// Ten tubes in a line, 3 m long, R = 30 mm: each is rebuilt as 130 rows of 10 shells, 1.9 MB.
std::string LineOfTubes() {
  ModelText text;
  text.materials = {{206000.0, 0.3, 7.85e-9}};
  text.cSections = {{30.0, 3.0}};
  text.nodes = {{0.0, 0.0, 0.0}};
  for (int b = 0; b < 10; ++b) {
    text.nodes.push_back({3000.0 * (b + 1), 0.0, 0.0});
    text.beams.emplace_back();
    text.beams.back().node1 = b;
    text.beams.back().node2 = b + 1;
    text.beams.back().BeamSecType = korvex::BeamSecTypeC;
  }
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{10, korvex::test::SingleLoad(2, -100.0)}};
  return WriteModel(text);
}

// 20 MB do not hold all of its detail models beside the system of one, counted as 8 MB.
TEST_F(KvxRun, LeavesTheSameFilesWithLittleMemory) {
  const fs::path usual = Put("usual", LineOfTubes()), little = Put("little", LineOfTubes());
  const ProgramRun with = Run({"usual", "--engine", "skyline"});
  const ProgramRun without = Run({"little", "--engine", "skyline", "--memory", "0.02"});
  EXPECT_EQ(with.exitStatus, 0) << with.err << with.out;
  EXPECT_EQ(without.exitStatus, 0) << without.err << without.out;
  for (const char* name : {"Korvex_AverageStrs.txt", "displacements.bin"}) {
    EXPECT_TRUE(ReadBytes(little / name) == ReadBytes(usual / name)) << name;
  }
  EXPECT_EQ(FindLine(without.out, "  beam stress"), FindLine(with.out, "  beam stress"));
  EXPECT_EQ(FindLine(with.out, "The detail models"), "");
  EXPECT_EQ(FindLine(without.out, "The detail models"),
            "The detail models of beams were made in 2 blocks: the memory does not hold all of them "
            "at once.");
}

TEST_F(KvxRun, LeavesThemForRandomModels) {
  std::vector<std::string> names, texts;
  for (std::uint32_t seed = 100; seed < 112; ++seed) {
    names.push_back("m" + std::to_string(seed));
    texts.push_back(WriteModel(MakeGoodModel(seed)));
    Put(names.back(), texts.back());
  }
  const ProgramRun run = Run(names);
  EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  for (std::size_t k = 0; k < names.size(); ++k) {
    EXPECT_EQ(ListDifferent(ReadFolder(base.Path() / names[k]), RunSolver(texts[k])), NoNames)
        << names[k];
  }
  EXPECT_NE(run.out.find("12 folders: 12 solved with 12 factorisations."), std::string::npos)
      << run.out;
}

TEST_F(KvxRun, IsForTheCurrentFolder) {
  const fs::path folder = Put("deck", SmallText(-100.0));
  const ProgramRun run = Run({}, "deck");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(SmallText(-100.0))), NoNames);
  EXPECT_NE(Joined(run.out).find("kvx reactions shows the support forces"), std::string::npos)
      << run.out;
}

// Three with the same stiffness, and between them one that has its thickness changed.
TEST_F(KvxRun, SolvesModelsThatDifferInLoadsTogether) {
  ModelText thick = SmallModel();
  thick.thicknesses = {11.0};
  const std::vector<std::string> texts{SmallText(-100.0), WriteModel(thick), SmallText(35.0),
                                       SmallText(0.125)};
  const std::vector<std::string> names{"a", "b", "c", "d"};
  for (std::size_t k = 0; k < names.size(); ++k) Put(names[k], texts[k]);
  const ProgramRun run = Run(names);
  EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  for (std::size_t k = 0; k < names.size(); ++k) {
    EXPECT_EQ(ListDifferent(ReadFolder(base.Path() / names[k]), RunSolver(texts[k])), NoNames)
        << names[k];
  }
  const std::string out = Joined(run.out);
  EXPECT_NE(out.find("4 folders: 4 solved with 2 factorisations."), std::string::npos) << run.out;
  std::size_t before = 0;
  for (const std::string& name : names) {
    const std::size_t at = run.out.find(FileIn(name) + ": no errors", before);
    ASSERT_NE(at, std::string::npos) << run.out;
    const std::string said = Joined(run.out.substr(at, run.out.find("The results", at) - at));
    EXPECT_EQ(said.find("one factorisation for 3 models") != std::string::npos, name != "b")
        << said;
    before = at;
  }
}

TEST_F(KvxRun, SolvesTheGoodOnesBesideBadOnes) {
  Put("good", SmallText(1.0));
  Put("bad", BadText());
  Put("empty", "");
  fs::create_directory(base.Path() / "none");
  Put("last", SmallText(2.0));
  const ProgramRun run = Run({"good", "bad", "none", "missing", "empty", "last"});
  EXPECT_EQ(run.exitStatus, 66) << run.out << run.err;
  EXPECT_EQ(ListDifferent(ReadFolder(base.Path() / "good"), RunSolver(SmallText(1.0))), NoNames);
  EXPECT_EQ(ListDifferent(ReadFolder(base.Path() / "last"), RunSolver(SmallText(2.0))), NoNames);
  EXPECT_EQ(ListFolder(base.Path() / "bad"), OnlyModel);
  EXPECT_EQ(ListFolder(base.Path() / "empty"), OnlyModel);
  EXPECT_EQ(run.err,
            "kvx run: there is no file fem_solving.txt in the folder \"none\". Name the folder of "
            "a model, or its file.\n"
            "kvx run: there is no folder or file \"missing\".\n");
  EXPECT_NE(Joined(run.out).find("6 folders: 2 solved with 1 factorisation."), std::string::npos)
      << run.out;
}

TEST_F(KvxRun, SolvesAFolderOnce) {
  const fs::path folder = Put("deck", SmallText(1.0));
  const ProgramRun run = Run({"deck", "./deck/../deck", "deck/fem_solving.txt"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.err,
            "kvx run: \"./deck/../deck\" and \"deck\" are the same folder: it is solved once.\n"
            "kvx run: \"deck/fem_solving.txt\" and \"deck\" are the same folder: it is solved "
            "once.\n");
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(SmallText(1.0))), NoNames);
}

TEST_F(KvxRun, SolvesNothingThatHasErrors) {
  const fs::path folder = Put("deck", BadText());
  const ProgramRun run = Run({"deck"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(ListFolder(folder), OnlyModel);
  EXPECT_NE(FindLine(run.out, "ERROR K104 line "), "") << run.out;
  EXPECT_NE(Joined(run.out).find("1 error; not solved; kvx run --force tries it as it is."),
            std::string::npos)
      << run.out;
  // The remedy stands there: <0,0,1> is square to the beam.
  EXPECT_NE(run.out.find("<0,0,1>"), std::string::npos) << run.out;
}

TEST_F(KvxRun, SolvesThemAllTheSameByForce) {
  const fs::path folder = Put("deck", BadText());
  const ProgramRun run = Run({"--force", "deck"});
  EXPECT_EQ(run.exitStatus, 1) << run.err;
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(BadText())), NoNames);
  EXPECT_NE(FindLine(run.out, "ERROR K104 line "), "") << run.out;
  EXPECT_NE(Joined(run.out).find("kvx check deck tells all of them"), std::string::npos) << run.out;
}

// Without supports the solver finds no resistance; its numbers are what they are.
TEST_F(KvxRun, WritesTheNumbersOfAModelWithoutSupports) {
  ModelText free = SmallModel();
  free.restraints.clear();
  const std::string text = WriteModel(free);
  const fs::path folder = Put("deck", text);
  EXPECT_EQ(Run({"deck"}).exitStatus, 1);
  EXPECT_EQ(ListFolder(folder), OnlyModel);
  EXPECT_EQ(Run({"--force", "deck"}).exitStatus, 1);
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(text)), NoNames);
}

// A node of no element spoils all numbers.
TEST_F(KvxRun, WritesNaNByForceAlone) {
  ModelText lonely = SmallModel();
  lonely.nodes.insert(lonely.nodes.begin(), {500, 500, 0});
  for (int& node : lonely.shells4[0].nodes) ++node;
  for (int& node : lonely.shells3[0].nodes) ++node;
  lonely.beams[0].node1 = 1;
  lonely.beams[0].node2 = 2;
  for (auto& restraint : lonely.restraints) ++restraint.node;
  for (auto& force : lonely.forces) ++force.node;
  const std::string text = WriteModel(lonely);
  const fs::path folder = Put("deck", text);
  EXPECT_EQ(Run({"deck"}).exitStatus, 1);
  EXPECT_EQ(ListFolder(folder), OnlyModel);
  EXPECT_EQ(Run({"--force", "deck"}).exitStatus, 1);
  EXPECT_NE(ReadBytes(folder / "Node_Dis.txt").find("nan"), std::string::npos);
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(text)), NoNames);
}

// The reader stops there, as korvex does, whose notice has the same text.
TEST_F(KvxRun, SaysWhatStopsItByForce) {
  ModelText text = SmallModel();
  text.shells4[0].material = 7;
  const fs::path folder = Put("deck", WriteModel(text));
  const ProgramRun run = Run({"--force", "deck"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.err.substr(0, run.err.find_last_not_of("\r\n") + 1),
            "kvx run: \"" + FileIn("deck") +
                "\": Four-node shell element 0 refers to material 7; there are 1 materials.");
  EXPECT_EQ(ListFolder(folder), OnlyModel);
  EXPECT_EQ(korvex::test::RunProgram(KORVEX_PROGRAM, folder).exitStatus, 1);
}

TEST_F(KvxRun, RemovesResultsOfAnEarlierState) {
  const fs::path folder = Put("deck", SmallText(1.0));
  ASSERT_EQ(Run({"deck"}).exitStatus, 0);
  EXPECT_EQ(Run({"deck"}).out.find("Removed"), std::string::npos);
  WriteFile(folder / "fem_solving.txt", SmallText(2.0));
  const ProgramRun run = Run({"deck"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_NE(Joined(run.out).find("Removed, as results of an earlier state of the model: "
                                 "structure.dxf, Node_Dis.txt, "),
            std::string::npos)
      << run.out;
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(SmallText(2.0))), NoNames);
}

TEST_F(KvxRun, LeavesThemWhereItDoesNotSolve) {
  const fs::path folder = Put("deck", SmallText(1.0));
  ASSERT_EQ(Run({"deck"}).exitStatus, 0);
  const FolderBytes before = ReadFolder(folder);
  WriteFile(folder / "fem_solving.txt", BadText());
  const ProgramRun run = Run({"deck"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(ListDifferent(ReadFolder(folder), before), NoNames);
  EXPECT_NE(Joined(run.out).find("The results in deck are of an earlier state of the model."),
            std::string::npos)
      << run.out;
}

// Of another model, cut off, or no such file: it is replaced.
TEST_F(KvxRun, ReplacesAnyDisplacements) {
  const fs::path folder = Put("deck", SmallText(1.0));
  ASSERT_EQ(Run({"deck"}).exitStatus, 0);
  const std::string right = ReadBytes(folder / "displacements.bin");
  Put("other", WriteModel(MakeGoodModel(1)));
  ASSERT_EQ(Run({"other"}).exitStatus, 0);
  for (const std::string& bytes : {ReadBytes(base.Path() / "other" / "displacements.bin"),
                                   right.substr(0, right.size() - 4), std::string("no")}) {
    WriteFile(folder / "displacements.bin", bytes);
    const ProgramRun run = Run({"deck"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(ReadBytes(folder / "displacements.bin"), right);
    EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(SmallText(1.0))), NoNames);
  }
}

TEST_F(KvxRun, RefusesAFileThatIsNotTheModelOfItsFolder) {
  const fs::path folder = Put("deck", SmallText(1.0));
  WriteFile(folder / "copy.txt", SmallText(2.0));
  const ProgramRun run = Run({"deck/copy.txt", "deck"});
  EXPECT_EQ(run.exitStatus, 64);
  EXPECT_EQ(run.err.rfind("kvx run: \"deck/copy.txt\" cannot be solved where it is: ", 0), 0U)
      << run.err;
  EXPECT_EQ(ReadBytes(folder / "copy.txt"), SmallText(2.0));
  FolderBytes expected = RunSolver(SmallText(1.0));
  expected["copy.txt"] = SmallText(2.0);
  EXPECT_EQ(ListDifferent(ReadFolder(folder), expected), NoNames);
}

TEST_F(KvxRun, LeavesAFolderAloneWhereItCannotWrite) {
  const fs::path folder = Put("deck", SmallText(1.0));
  fs::create_directory(folder / "Node_Dis.txt");
  WriteFile(folder / "structure.dxf", "mine");
  const ProgramRun run = Run({"deck"});
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_EQ(run.err, "kvx run: \"" + FileIn("deck") +
                         "\": Node_Dis.txt cannot be written: a folder has this name.\n");
  EXPECT_EQ(ReadFolder(folder),
            (FolderBytes{{"Node_Dis.txt", "folder"}, {"structure.dxf", "mine"}}));
  EXPECT_NE(run.out.find("no results were written"), std::string::npos) << run.out;
}

TEST_F(KvxRun, TakesNamesWithBlanksAndUmlauts) {
  const std::string name = u8"Träger (neu) 2";
  const fs::path folder = Put(name, SmallText(1.0));
  const ProgramRun run = Run({name});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(SmallText(1.0))), NoNames);
  EXPECT_NE(Joined(run.out).find("kvx reactions " + QuoteArgument(name) + " shows"),
            std::string::npos)
      << run.out;
}

// Neighbours with opposite normals are a warning.
TEST_F(KvxRun, ShowsWarningsInBrief) {
  ModelText text = SmallModel();
  text.shells3[0].nodes = {1, 2, 4};
  const fs::path folder = Put("deck", WriteModel(text));
  const ProgramRun run = Run({"deck"});
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  EXPECT_NE(FindLine(run.out, "WARN  K"), "") << run.out;
  EXPECT_EQ(run.out.rfind(FileIn("deck") + ": no errors", 0), std::string::npos) << run.out;
  EXPECT_EQ(Run({"--strict", "deck"}).exitStatus, 1);
  EXPECT_EQ(ListDifferent(ReadFolder(folder), RunSolver(WriteModel(text))), NoNames);
}

TEST_F(KvxRun, HasALineOfJsonForEachFolder) {
  Put("a", SmallText(1.0));
  Put("b", BadText());
  Put("c", SmallText(2.0));
  const ProgramRun run = Run({"--json", "a", "b", "missing", "c"});
  EXPECT_EQ(run.exitStatus, 66);
  std::istringstream lines(run.out);
  std::vector<nlohmann::json> json;
  for (std::string line; std::getline(lines, line);) json.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(json.size(), 4U);
  const std::vector<std::string> places{"a", "b", "missing", "c"};
  const std::vector<int> statuses{0, 1, 66, 0};
  for (std::size_t k = 0; k < json.size(); ++k) {
    SCOPED_TRACE(places[k]);
    const bool isSolved = statuses[k] == 0;
    EXPECT_EQ(json[k]["folder"], places[k]);
    EXPECT_EQ(json[k]["status"], statuses[k]);
    EXPECT_EQ(json[k]["solved"], isSolved);
    EXPECT_EQ(json[k]["audit"].is_object(), isSolved);
    EXPECT_EQ(json[k]["seconds"].is_number(), isSolved);
    EXPECT_EQ(json[k]["engine"].is_object(), isSolved);
    EXPECT_EQ(json[k]["check"].is_null(), k == 2);
    EXPECT_EQ(json[k]["complaint"].is_null(), k != 2);
  }
  EXPECT_EQ(json[0]["together"], (std::vector<std::string>{"a", "c"}));
  EXPECT_EQ(json[1]["check"]["errors"], 1);
  EXPECT_EQ(json[1]["check"]["findings"][0]["code"], "K104");
}

}  // namespace
}  // namespace kvx::test
