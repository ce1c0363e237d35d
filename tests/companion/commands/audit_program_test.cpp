// kvx audit as its user meets it: examples, results that are missing, foreign or damaged, models
// that are no good; what it says and its exit status.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "audit/displacement_file.h"
#include "run/stages.h"
#include "support/dof_names.h"
#include "support/model_text.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"
#include "support/words.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using namespace korvex::test;  // NOLINT(google-build-using-namespace): Fx, Uy and their like

std::string ExampleText(const std::string& name) {
  return ReadFile(fs::path(KORVEX_EXAMPLES) / name / "fem_solving.txt");
}

ProgramRun AuditFolder(const fs::path& folder, std::vector<std::string> arguments = {}) {
  arguments.insert(arguments.begin(), "audit");
  ProgramRun run = RunProgram(KVX_PROGRAM, folder, "", arguments);
  for (std::string* text : {&run.out, &run.err}) {
    text->erase(std::remove(text->begin(), text->end(), '\r'), text->end());
  }
  return run;
}

ProgramRun AuditText(const std::string& text, const std::vector<std::string>& arguments = {}) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", text);
  return AuditFolder(folder.Path(), arguments);
}

// Lines are broken within findings: the breaks count as blanks there.
bool Holds(const std::string& text, const std::string& part) {
  if (part.find('\n') != std::string::npos) return text.find(part) != std::string::npos;
  return JoinWords(SplitWords(text)).find(part) != std::string::npos;
}

// The files of a run, and displacements.bin.
void RunIn(const fs::path& folder, const std::string& text) {
  WriteFile(folder / "fem_solving.txt", text);
  korvex::Job job;
  job.folder = folder.string() + '/';
  korvex::ForAllStages([&](const korvex::Stage& stage) { stage.work(job); });
  SolvedModel solved;
  SolveInMemory(text, {}, solved);
  WriteDisplacementFile(job.folder + ExactDisplacementFileName, IdentifyModelFile(text),
                        solved.model.Displacements);
}

ModelText Portal() {
  ModelText model;
  model.materials = {{206000.0, 0.3, 7.85e-9}};
  model.tSections = {{200.0, 20.0, 0.0, 0.0}};
  model.nodes = {{0, 0, 0}, {0, 0, 3000}, {4000, 0, 3000}, {4000, 0, 0}};
  for (int k = 0; k < 3; ++k) {
    ModelText::Beam beam;
    beam.node1 = k;
    beam.node2 = k + 1;
    beam.orientation = {0, 1, 0};
    model.beams.push_back(beam);
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {3, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{1, SingleLoad(Fx, 10.0)}};
  return model;
}

TEST(KvxAuditProgram, TrustsTheExamples) {
  int count = 0;
  for (const auto& entry : fs::directory_iterator(KORVEX_EXAMPLES)) {
    if (!fs::exists(entry.path() / "fem_solving.txt")) continue;
    SCOPED_TRACE(entry.path().string());
    const ProgramRun run = AuditText(ExampleText(entry.path().filename().string()), {"--strict"});
    EXPECT_EQ(run.exitStatus, 0) << run.out;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out.rfind("fem_solving.txt: solved in memory\n", 0), 0U) << run.out;
    EXPECT_TRUE(Holds(run.out, "\n  result files  none in the folder\n")) << run.out;
    EXPECT_TRUE(Holds(run.out, "\nVerdict: balanced (")) << run.out;
    // About a screenful.
    EXPECT_LE(std::count(run.out.begin(), run.out.end(), '\n'), 30) << run.out;
    ++count;
  }
  EXPECT_GE(count, 3);
}

TEST(KvxAuditProgram, ReadsTheResultsOfARun) {
  const TempFolder folder;
  RunIn(folder.Path(), ExampleText("water-trough"));
  const ProgramRun run = AuditFolder(folder.Path(), {"--strict"});
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.rfind("fem_solving.txt: displacements of displacements.bin\n", 0), 0U)
      << run.out;
  EXPECT_TRUE(Holds(run.out, "6 of 6 are those of this model, byte for byte")) << run.out;
}

// A load is changed after the run: the results in the folder are those of before.
TEST(KvxAuditProgram, NamesResultsOfAnEarlierState) {
  const TempFolder folder;
  ModelText model = Portal();
  RunIn(folder.Path(), WriteModel(model));
  model.forces[0].components[Fx] = 11.0;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(model));
  const ProgramRun run = AuditFolder(folder.Path());
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(Holds(run.out,
                    "ERROR K711 result files that are not those of this model: "
                    "Node_Dis.txt (from line "))
      << run.out;
  EXPECT_TRUE(Holds(run.out, "\nVerdict: result files are not those of this model.\n")) << run.out;
  EXPECT_TRUE(Holds(run.err, "displacements.bin")) << run.err;
  EXPECT_FALSE(Holds(run.out, "K715")) << run.out;
}

// Beside a model that has been solved: the results in the folder are not those of the variant, and
// nobody takes them for these.
TEST(KvxAuditProgram, ComparesNoFilesWithAVariant) {
  const TempFolder folder;
  ModelText model = Portal();
  RunIn(folder.Path(), WriteModel(model));
  model.forces[0].components[Fx] = 11.0;
  WriteFile(folder.Path() / "variant.txt", WriteModel(model));
  const ProgramRun run = AuditFolder(folder.Path(), {"variant.txt", "--strict"});
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  EXPECT_EQ(run.out.rfind("variant.txt: solved in memory\n", 0), 0U) << run.out;
  EXPECT_FALSE(Holds(run.out, "result files")) << run.out;
}

TEST(KvxAuditProgram, NamesForeignFiles) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(Portal()));
  WriteFile(folder.Path() / "Node_Dis.txt", "something else\n");
  WriteFile(folder.Path() / ExactDisplacementFileName, "something else\n");
  const ProgramRun run = AuditFolder(folder.Path());
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(Holds(run.out,
                    "K711 result files that are not those of this model: Node_Dis.txt "
                    "(from line 1)"))
      << run.out;
  EXPECT_TRUE(Holds(run.out, "WARN K713 result files that are missing: structure.dxf")) << run.out;
  EXPECT_TRUE(Holds(run.out, "WARN K715 ")) << run.out;
  EXPECT_TRUE(Holds(run.out, "fem_solving.txt: solved in memory\n")) << run.out;
}

// At any length but the whole one the model is solved anew, and the file is named.
TEST(KvxAuditProgram, NamesTruncatedDisplacements) {
  const TempFolder folder;
  RunIn(folder.Path(), WriteModel(Portal()));
  const fs::path file = folder.Path() / ExactDisplacementFileName;
  const std::string bytes = ReadBytes(file.string());
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{7}, std::size_t{39}, std::size_t{40}, bytes.size() - 1}) {
    SCOPED_TRACE(size);
    WriteFile(file, bytes.substr(0, size));
    const ProgramRun run = AuditFolder(folder.Path());
    EXPECT_EQ(run.exitStatus, 0) << run.out;
    EXPECT_TRUE(Holds(run.out, "WARN K715 ")) << run.out;
    EXPECT_TRUE(Holds(run.out, "6 of 6 are those of this model")) << run.out;
    EXPECT_EQ(AuditFolder(folder.Path(), {"--strict"}).exitStatus, 1);
  }
  WriteFile(file, bytes);
  EXPECT_EQ(AuditFolder(folder.Path(), {"--strict"}).exitStatus, 0);
}

// displacements.bin fits the model, and its numbers are no solution of it.
TEST(KvxAuditProgram, NamesDisplacementsThatAreNoSolution) {
  const std::string text = WriteModel(Portal());
  SolvedModel solved;
  SolveInMemory(text, {}, solved);
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", text);
  const std::string file = (folder.Path() / ExactDisplacementFileName).string();
  const struct {
    double value;
    const char* code;
  } cases[] = {{std::nan(""), "K702"}, {HUGE_VAL, "K702"}, {100.0, "K703"}};
  for (const auto& [value, code] : cases) {
    SCOPED_TRACE(value);
    std::vector<double> u = solved.model.Displacements;
    u[6] = value;  // Ux of node 1
    WriteDisplacementFile(file, IdentifyModelFile(text), u);
    const ProgramRun run = AuditFolder(folder.Path());
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_TRUE(Holds(run.out, std::string("ERROR ") + code + " line ")) << run.out;
    EXPECT_TRUE(Holds(run.out, "node 1 at (0, 0, 3000)")) << run.out;
    EXPECT_TRUE(Holds(run.out, "emove displacements.bin, and try again")) << run.out;
    EXPECT_FALSE(Holds(run.out, "Verdict: balanced")) << run.out;
  }
}

TEST(KvxAuditProgram, NamesAModelWithoutSupports) {
  ModelText model = Portal();
  model.restraints.clear();
  const ProgramRun run = AuditText(WriteModel(model));
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(Holds(run.out, "ERROR K70")) << run.out;
  EXPECT_TRUE(Holds(run.out, "kvx check finds 1 error in the model, first K301")) << run.out;
  EXPECT_TRUE(Holds(run.err, "the model has errors")) << run.err;
}

TEST(KvxAuditProgram, RefusesAModelWithoutElements) {
  ModelText model = Portal();
  model.beams.clear();
  const ProgramRun run = AuditText(WriteModel(model));
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(Holds(run.err,
                    "kvx audit: \"fem_solving.txt\": the model has no elements, so that "
                    "there are no results.\n"))
      << run.err;
}

TEST(KvxAuditProgram, SaysThatNothingIsLoaded) {
  ModelText model = Portal();
  model.forces.clear();
  const ProgramRun run = AuditText(WriteModel(model));
  EXPECT_EQ(run.exitStatus, 0) << run.out;
  EXPECT_TRUE(Holds(run.out, "\nVerdict: no loads.\n")) << run.out;
}

TEST(KvxAuditProgram, RefusesWhatIsNoModel) {
  for (const char* text : {"", "hello\n", "### Toln_Korvex release=2.0 ###\n"}) {
    SCOPED_TRACE(text);
    const ProgramRun run = AuditText(text);
    EXPECT_EQ(run.exitStatus, 65);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(Holds(run.err, "kvx audit: \"fem_solving.txt\": ")) << run.err;
  }
}

TEST(KvxAuditProgram, AsksForAModel) {
  const TempFolder folder;
  ProgramRun run = AuditFolder(folder.Path());
  EXPECT_EQ(run.exitStatus, 66);
  EXPECT_TRUE(Holds(run.err, "there is no file fem_solving.txt in the folder")) << run.err;
  run = AuditFolder(folder.Path(), {"nowhere"});
  EXPECT_EQ(run.exitStatus, 66);
  EXPECT_EQ(run.out, "");
}

// A bad element: the finding names it by its line, and --strict changes nothing.
TEST(KvxAuditProgram, NamesWhatMakesNaNs) {
  ModelText model = Portal();
  model.beams[1].orientation = {1, 0, 0};
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, std::vector<std::string>{"--strict"}}) {
    const ProgramRun run = AuditText(WriteModel(model), arguments);
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_TRUE(Holds(run.out,
                      "beam 1 at (0, 0, 3000) .. (4000, 0, 3000): its stiffness is not a "
                      "number"))
        << run.out;
    EXPECT_TRUE(Holds(run.out, "\nVerdict: displacements are not numbers.\n")) << run.out;
  }
}

TEST(KvxAuditProgram, CountsWarningsWhenStrict) {
  ModelText model = Portal();
  model.forces[0].components[Fx] = 1e6;
  EXPECT_EQ(AuditText(WriteModel(model)).exitStatus, 0);
  const ProgramRun run = AuditText(WriteModel(model), {"--strict"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(Holds(run.out, "WARN K705 line ")) << run.out;
  EXPECT_TRUE(Holds(run.out, "), but displacements are large beside the structure; largest "))
      << run.out;
}

TEST(KvxAuditProgram, WritesJsonAlone) {
  const ProgramRun run = AuditText(ExampleText("stiffened-panel"), {"--json", "--yield", "100"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.find('\n'), run.out.size() - 1);
  const auto json = nlohmann::json::parse(run.out);
  EXPECT_NEAR(json["reactions"][2].get<double>(), 816000.0, 1e-3);
  EXPECT_EQ(json["beams"].size(), 228U);
  EXPECT_EQ(json["supports"].size(), 132U);
  EXPECT_EQ(json["findings"][0]["code"], "K723");
  EXPECT_EQ(json["findings"][0]["table"], "NELEM_S_4ND");
  EXPECT_EQ(json["verdict"], "balanced, but stresses are above the yield stress");
}

TEST(KvxAuditProgram, RefusesAWrongYieldStress) {
  for (const char* stress : {"0", "-3", "inf", "nan", "steel"}) {
    const ProgramRun run = AuditText(WriteModel(Portal()), {"--yield", stress});
    EXPECT_TRUE(run.exitStatus == 64 || run.exitStatus == 65) << stress;
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err, "");
  }
}

}  // namespace
}  // namespace kvx::test
