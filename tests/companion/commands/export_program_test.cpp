// kvx export as its user meets it: which files there are, tables with the numbers of the model, and
// each mistake with its message. What the VTU files hold is compared by vtu/read_vtu.py.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <sstream>

#include "support/csv.h"
#include "support/model_text.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ListFolder;
using korvex::test::ModelText;
using korvex::test::ProgramRun;
using korvex::test::WriteFile;

// A clamped plate of one shell and one triangle with a beam beside it, which stands apart.
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

const std::vector<std::string> TableNames{"beam_forces.csv",
                                          "beams.csv",
                                          "displacements.csv",
                                          "loads.csv",
                                          "nodes.csv",
                                          "reactions.csv",
                                          "shell_forces.csv",
                                          "shells.csv",
                                          "stresses_averaged.csv",
                                          "stresses_unaveraged.csv",
                                          "triangles.csv"};

struct KvxExport : testing::Test {
  korvex::test::TempFolder base;
  fs::path deck = base.Path() / "deck";

  void SetUp() override {
    fs::create_directory(deck);
    WriteFile(deck / "fem_solving.txt", korvex::test::WriteModel(MakeModel()));
  }
  ProgramRun Run(std::vector<std::string> arguments, const std::string& in = ".") const {
    arguments.insert(arguments.begin(), "export");
    return korvex::test::RunProgram(KVX_PROGRAM, base.Path() / in, "", arguments);
  }
  CsvTable Table(const std::string& name) const { return ReadCsv(ReadBytes(deck / "csv" / name)); }
  void ExpectRefusal(const std::vector<std::string>& arguments, int status,
                     const std::string& message) const {
    const ProgramRun run = Run(arguments);
    EXPECT_EQ(run.exitStatus, status);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
  }
};

TEST_F(KvxExport, LeavesItsFilesBesideTheModel) {
  const ProgramRun run = Run({"deck", "--vtu", "--details"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  // 4 + 3 + 2 points.
  EXPECT_EQ(run.out.rfind("deck/model.vtu: 1 shell, 1 triangle, 1 beam; 9 points.\n"
                          "deck/model-details.vtu: 1 detail model, ",
                          0),
            0U)
      << run.out;
  EXPECT_EQ(ListFolder(deck),
            (std::vector<std::string>{"fem_solving.txt", "model-details.vtu", "model.vtu"}));
  // From the current folder, and with a point for each node.
  const ProgramRun shared = Run({"--vtu", "--shared"}, "deck");
  EXPECT_EQ(shared.out, "model.vtu: 1 shell, 1 triangle, 1 beam; 7 points.\n");
  EXPECT_EQ(shared.err,
            "kvx export: model-details.vtu is of an earlier export: remove it, or write it anew by "
            "--details.\n");
  EXPECT_EQ(ReadBytes(deck / "model.vtu").rfind("<?xml version=\"1.0\"?>\n<VTKFile ", 0), 0U);
}

TEST_F(KvxExport, NamesFilesAfterOtherModels) {
  fs::rename(deck / "fem_solving.txt", deck / "variant.txt");
  EXPECT_EQ(Run({"deck/variant.txt", "--vtu", "--csv"}).exitStatus, 0);
  EXPECT_EQ(ListFolder(deck),
            (std::vector<std::string>{"variant-csv", "variant.txt", "variant.vtu"}));
}

TEST_F(KvxExport, TakesSeveralPlacesAndGoesOnPastABadOne) {
  fs::copy(deck, base.Path() / "other");
  const ProgramRun run = Run({"deck", "nothing", "other", "--vtu"});
  EXPECT_EQ(run.exitStatus, 66);
  EXPECT_EQ(run.err, "kvx export: there is no folder or file \"nothing\".\n");
  EXPECT_TRUE(fs::exists(deck / "model.vtu"));
  EXPECT_EQ(ReadBytes(deck / "model.vtu"), ReadBytes(base.Path() / "other" / "model.vtu"));
}

TEST_F(KvxExport, WritesIntoAnotherFolder) {
  const ProgramRun run = Run({"deck", "--vtu", "--csv", "-o", "for/others"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.out.rfind("for/others/model.vtu: ", 0), 0U) << run.out;
  EXPECT_EQ(ListFolder(base.Path() / "for" / "others"),
            (std::vector<std::string>{"csv", "model.vtu"}));
  EXPECT_EQ(ListFolder(deck), std::vector<std::string>{"fem_solving.txt"});
}

TEST_F(KvxExport, HasATableForEachKindOfNumbers) {
  ASSERT_EQ(Run({"deck", "--csv"}).exitStatus, 0);
  EXPECT_EQ(ListFolder(deck / "csv"), TableNames);
  const CsvTable nodes = Table("nodes.csv");
  ASSERT_EQ(nodes.rows.size(), 7U);
  EXPECT_EQ(FieldOf(nodes, 5, "fixed"), "ux uy uz rx ry rz");
  EXPECT_EQ(FieldOf(nodes, 6, "fixed"), "");
  EXPECT_EQ(NumberAt(nodes, 6, "x"), 1000.0);

  const CsvTable shells = Table("shells.csv"), triangles = Table("triangles.csv");
  ASSERT_EQ(shells.rows.size(), 1U);
  EXPECT_EQ(FieldOf(shells, 0, "node3"), "2");
  EXPECT_EQ(NumberAt(shells, 0, "x"), 50.0);
  EXPECT_EQ(NumberAt(triangles, 0, "thickness"), 12.0);
  EXPECT_EQ(FieldOf(triangles, 0, "thickness_row"), "1");
  EXPECT_EQ(NumberAt(triangles, 0, "x"), 400.0 / 3.0);
  EXPECT_EQ(FieldOf(triangles, 0, "part"), "1");

  const CsvTable beams = Table("beams.csv");
  EXPECT_EQ(NumberAt(beams, 0, "length"), 1000.0);
  EXPECT_EQ(FieldOf(beams, 0, "section"), "T 0");
  EXPECT_EQ(FieldOf(beams, 0, "part"), "2");
  EXPECT_EQ(NumberAt(beams, 0, "density"), 7.85e-9);
}

// Statics: the beam is a cantilever of 1000 with 100 at its tip; the plate carries 10 and its
// pressure of 0.1 on 100 x 100.
TEST_F(KvxExport, HasTablesOfResults) {
  ASSERT_EQ(Run({"deck", "--csv"}).exitStatus, 0);
  const CsvTable reactions = Table("reactions.csv");
  EXPECT_NEAR(NumberAt(reactions, RowWhere(reactions, "node", "5"), "Fz"), 100.0, 1e-9);
  EXPECT_NEAR(NumberAt(reactions, RowWhere(reactions, "kind", "sum: loads"), "Fz"), -1110.0, 1e-9);
  const CsvTable forces = Table("beam_forces.csv");
  ASSERT_EQ(forces.rows.size(), 5U);  // the ends and three stations between them
  EXPECT_NEAR(NumberAt(forces, 0, "My"), 100.0 * 1000.0, 1e-6);
  EXPECT_NEAR(NumberAt(forces, 0, "Vz"), -100.0, 1e-9);
  EXPECT_EQ(Table("shell_forces.csv").rows.size(), 2U);
  EXPECT_EQ(Table("displacements.csv").rows.size(), 7U);
  EXPECT_LT(NumberAt(Table("displacements.csv"), 6, "uz"), 0.0);

  const CsvTable loads = Table("loads.csv");
  ASSERT_EQ(loads.rows.size(), 3U);
  EXPECT_EQ(FieldOf(loads, 0, "table"), "NFOR");
  EXPECT_EQ(NumberAt(loads, 0, "Fz"), -100.0);
  EXPECT_EQ(NumberAt(loads, 0, "x"), 1000.0);
  EXPECT_EQ(FieldOf(loads, 0, "q1"), "");
  EXPECT_EQ(FieldOf(loads, 2, "table"), "NDL_S_4ND");
  EXPECT_EQ(FieldOf(loads, 2, "kind"), "shell");
  EXPECT_EQ(NumberAt(loads, 2, "q3"), -0.1);
  EXPECT_EQ(FieldOf(loads, 2, "Fz"), "");
}

// With the solver's own files, which have six digits: half of the last one is 5e-6 at most.
TEST_F(KvxExport, HasTheStressesOfTheSolver) {
  ASSERT_EQ(Run({"deck", "--csv"}).exitStatus, 0);
  ASSERT_EQ(korvex::test::RunProgram(KVX_PROGRAM, deck, "", {"run"}).exitStatus, 0);
  for (const auto& [table, file] :
       {std::pair{"stresses_averaged.csv", "Shell element average node stress.txt"},
        {"stresses_unaveraged.csv", "Shell element node stress.txt"}}) {
    SCOPED_TRACE(table);
    const CsvTable stresses = Table(table);
    ASSERT_EQ(stresses.rows.size(), 7U);
    std::istringstream text(ReadBytes(deck / file));
    std::size_t corner = 0;
    bool isUpper = true;
    for (std::string line; std::getline(text, line);) {
      const bool isRow = line.find("element") == std::string::npos &&
                         line.find_first_of("0123456789") != std::string::npos;
      if (!isRow) continue;
      std::istringstream numbers(line.substr(line.find(':') + 1));
      for (const char* component : {"SX", "SY", "SZ", "TXY", "TXZ", "TYZ", "von_mises"}) {
        double expected = 0.0;
        numbers >> expected;
        const double found =
            NumberAt(stresses, corner, std::string(isUpper ? "upper_" : "lower_") + component);
        EXPECT_NEAR(found, expected, 1e-5 * std::fabs(expected)) << corner << component;
      }
      if (!isUpper) ++corner;
      isUpper = !isUpper;
    }
    EXPECT_EQ(corner, 7U);
  }
}

TEST_F(KvxExport, RefusesOptionsThatMakeNoSense) {
  ExpectRefusal({"deck"}, 64, "kvx export: which files? --vtu for ParaView, --csv");
  ExpectRefusal({"deck", "--csv", "--shared"}, 64, "--shared is for --vtu.");
  ExpectRefusal({"deck", "--csv", "--details"}, 64, "--details is for --vtu.");
  ExpectRefusal({"deck", "deck", "--vtu", "-o", "out"}, 64, "-o is for one place");
  ExpectRefusal({"deck", "--vtu", "--results", "results"}, 64,
                "--results is for a file of load cases: name it, too.");
  ExpectRefusal({"deck", "--vtu", "-o", ""}, 64, "--output: write a name, not \"\".");
  ExpectRefusal({"deck", "--vtu", "--results", ""}, 64, "--results: write a name, not \"\".");
  ExpectRefusal({"deck", "--vut"}, 64, "Did you mean \"--vtu\"?");
}

TEST_F(KvxExport, NamesWhatIsMissing) {
  ExpectRefusal({"none", "--vtu"}, 66, "there is no folder or file \"none\".");
  ExpectRefusal({"cases.toml", "--vtu"}, 66, "there is no folder or file \"cases.toml\".");
  EXPECT_EQ(ListFolder(base.Path()), std::vector<std::string>{"deck"});
}

// A file where a folder should be, a folder where a file should be.
TEST_F(KvxExport, SaysBeforeTheSolutionThatItCannotWrite) {
  WriteFile(base.Path() / "file", "mine");
  ExpectRefusal({"deck", "--vtu", "-o", "file"}, 73, "cannot be used: ");
  ExpectRefusal({"deck", "--vtu", "-o", "file/below"}, 73, "cannot be used: ");
  fs::create_directories(deck / "model.vtu.part");
  ExpectRefusal({"deck", "--vtu"}, 73, "model.vtu cannot be written");
  fs::create_directories(deck / "csv" / "nodes.csv");
  ExpectRefusal({"deck", "--csv"}, 73, "nodes.csv cannot be written: a folder has this name.");
  EXPECT_EQ(ReadBytes(base.Path() / "file"), "mine");
}

TEST_F(KvxExport, RefusesModelsWithoutASolution) {
  ModelText text = MakeModel();
  text.restraints.clear();
  WriteFile(deck / "fem_solving.txt", korvex::test::WriteModel(text));
  ExpectRefusal({"deck", "--vtu"}, 65, "the model has no supports");
  EXPECT_EQ(ListFolder(deck), std::vector<std::string>{"fem_solving.txt"});
}

// Folders that were there before stay, also empty ones.
TEST_F(KvxExport, LeavesNoEmptyFoldersBehind) {
  ModelText text = MakeModel();
  text.restraints.clear();
  WriteFile(deck / "fem_solving.txt", korvex::test::WriteModel(text));
  fs::create_directory(base.Path() / "mine");
  ExpectRefusal({"deck", "--vtu", "--csv", "-o", "mine/new/below"}, 65, "no supports");
  EXPECT_TRUE(ListFolder(base.Path() / "mine").empty());
  ExpectRefusal({"deck", "--csv"}, 65, "no supports");
  EXPECT_EQ(ListFolder(deck), std::vector<std::string>{"fem_solving.txt"});
  EXPECT_TRUE(fs::exists(base.Path() / "mine"));
}

// A case whose name needs care in XML, a combination, an envelope.
constexpr const char* CaseText =
    "structure = \"deck\"\n"
    "[case.\"push & pull\"]\nacceleration = [0, 1000, 0]\n"
    "[combination.both]\nfactors = { base = 1.5, \"push & pull\" = 1 }\n"
    "[envelope.all]\nof = [\"base\", \"both\"]\n";

TEST_F(KvxExport, WantsTheResultsOfCases) {
  WriteFile(base.Path() / "cases.toml", CaseText);
  ExpectRefusal({"cases.toml", "--vtu"}, 66,
                "\"cases.toml\": there are no results of case \"base\" in \"results/\". Run kvx "
                "cases first");
  WriteFile(base.Path() / "bad.toml", "[case.a\n");
  ExpectRefusal({"bad.toml", "--vtu"}, 65, "\"bad.toml\": line 1: ");
  WriteFile(base.Path() / "lost.toml", "structure = \"nowhere\"\n");
  ExpectRefusal({"lost.toml", "--vtu"}, 66, "nowhere");
}

TEST_F(KvxExport, WritesCasesEnvelopesAndTheirCollection) {
  WriteFile(base.Path() / "cases.toml", CaseText);
  ASSERT_EQ(korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", {"cases"}).exitStatus, 0);
  const ProgramRun run = Run({"cases.toml", "--vtu", "--details", "--csv"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_NE(run.out.find("results/envelope-all/envelope.vtu: envelope of base, both.\n"
                         "results/cases.pvd: time steps 0 base, 1 push & pull, 2 both.\n"),
            std::string::npos)
      << run.out;
  for (const char* name : {"base", "push & pull", "both"}) {
    EXPECT_TRUE(fs::exists(base.Path() / "results" / name / "model.vtu"));
    EXPECT_TRUE(fs::exists(base.Path() / "results" / name / "model-details.vtu"));
    EXPECT_EQ(ListFolder(base.Path() / "results" / name / "csv"), TableNames);
  }
  const std::string collection = ReadBytes(base.Path() / "results" / "cases.pvd");
  EXPECT_NE(collection.find("timestep=\"1\" part=\"0\" name=\"push &amp; pull\" "
                            "file=\"push &amp; pull/model.vtu\""),
            std::string::npos);
  EXPECT_TRUE(fs::exists(base.Path() / "results" / "cases-details.pvd"));
}

TEST_F(KvxExport, FindsResultsOfCasesInAnotherFolder) {
  WriteFile(base.Path() / "cases.toml", CaseText);
  ASSERT_EQ(
      korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", {"cases", "-o", "solved"}).exitStatus,
      0);
  const ProgramRun run = Run({"cases.toml", "--vtu", "--results", "solved", "-o", "vtu"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(ListFolder(base.Path() / "vtu"),
            (std::vector<std::string>{"base", "both", "cases.pvd", "envelope-all", "push & pull"}));
  EXPECT_EQ(ListFolder(base.Path() / "vtu" / "base"), std::vector<std::string>{"model.vtu"});
}

TEST_F(KvxExport, SaysThatCasesAreOfAnEarlierState) {
  WriteFile(base.Path() / "cases.toml", CaseText);
  ASSERT_EQ(korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", {"cases"}).exitStatus, 0);
  ModelText text = MakeModel();
  text.thicknesses[0] = 11.0;
  WriteFile(deck / "fem_solving.txt", korvex::test::WriteModel(text));
  const ProgramRun run = Run({"cases.toml", "--vtu"});
  EXPECT_NE(run.err.find("which has changed since. Run kvx cases again."), std::string::npos)
      << run.err;
}

}  // namespace
}  // namespace kvx::test
