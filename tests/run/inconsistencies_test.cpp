// Shells whose node count is not that of their kind: how often each stage counts them, that the
// results do not change, and what the run prints.
#include "run/inconsistencies.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <sstream>
#include <string>

#include "run/run_driver.h"
#include "run/stages.h"
#include "support/model_text.h"
#include "support/run_program.h"
#include "support/same_bits.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

// Two quadrilaterals side by side and a triangle on the second, clamped along x = 0. Two pressures
// act on the second quadrilateral, one on the first and three on the triangle.
//
//   1---3---5
//   | 0 | 1 | 0 > 6
//   0---2---4
ModelText MakePlate() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}};
  text.thicknesses = {0.02};
  for (const double x : {0.0, 1.0, 2.0}) {
    for (const double y : {0.0, 1.0}) text.nodes.push_back({x, y, 0.0});
  }
  text.nodes.push_back({3.0, 0.5, 0.0});
  text.shells4 = {{{0, 2, 3, 1}}, {{2, 4, 5, 3}}};
  text.shells3 = {{{4, 6, 5}}};
  text.restraints = {{0}, {1}};
  text.shell4Loads = {{1, {-10, -20, -30}}, {0, {5, 5, 5}}, {1, {7, 8, 9}}};
  text.shell3Loads = {{0, {1, 2, 3}}, {0, {4, 5, 6}}, {0, {7, 8, 9}}};
  return text;
}

// Writes the plate into `folder` and runs the stage that reads it.
void ReadPlate(const TempFolder& folder, Job& job) {
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakePlate()));
  job.folder = folder.Path().string() + '/';
  ASSERT_STREQ(AssemblyStages[0].name, "read");
  AssemblyStages[0].work(job);
}

struct Counts {
  int reading, forming, loading, recovery;
};

void ExpectCounts(const Model& model, const Counts& expected) {
  EXPECT_EQ(CountOnReading(model), expected.reading);
  EXPECT_EQ(CountOnForming(model), expected.forming);
  EXPECT_EQ(CountOnLoading(model), expected.loading);
  EXPECT_EQ(CountOnRecovery(model), expected.recovery);
}

TEST(Inconsistencies, AModelAsReadHasNone) {
  const TempFolder folder;
  Job job;
  ReadPlate(folder, job);
  ExpectCounts(job.model, {0, 0, 0, 0});
  ExpectCounts(Model(), {0, 0, 0, 0});
}

// A shell is counted once in reading, twice in forming, once for each of its loads, and twice for
// each of its corners in stress recovery.
TEST(Inconsistencies, AreCountedForEachShell) {
  const TempFolder folder;
  Job job;
  ReadPlate(folder, job);
  Model& model = job.model;
  model.Shell4Elements[0].NodeCount = 3;
  ExpectCounts(model, {1, 2, 1, 8});
  model.Shell4Elements[0].NodeCount = 4;
  model.Shell4Elements[1].NodeCount = 5;
  ExpectCounts(model, {1, 2, 2, 8});
  model.Shell4Elements[1].NodeCount = 4;
  model.Shell3Elements[0].NodeCount = 4;
  ExpectCounts(model, {1, 2, 3, 6});
}

TEST(Inconsistencies, AreCountedForAllShellsTogether) {
  const TempFolder folder;
  Job job;
  ReadPlate(folder, job);
  for (Shell4Element& element : job.model.Shell4Elements) element.NodeCount = 5;
  for (Shell3Element& element : job.model.Shell3Elements) element.NodeCount = 5;
  ExpectCounts(job.model, {3, 6, 6, 22});
}

// A run through all stages. If `isChanged`, all shells get another node count after the reading.
struct CountedRun {
  explicit CountedRun(bool isChanged) {
    const TempFolder folder;
    ReadPlate(folder, job);
    if (isChanged) {
      for (Shell4Element& element : job.model.Shell4Elements) element.NodeCount = 5;
      for (Shell3Element& element : job.model.Shell3Elements) element.NodeCount = 5;
    }
    bool isRead = false;
    ForAllStages([&](const Stage& stage) {
      if (!isRead) {
        isRead = true;
        return;
      }
      const int before = job.inconsistencies;
      stage.work(job);
      counted[stage.name] = job.inconsistencies - before;
      if (std::strcmp(stage.name, "solve") == 0) displacements = job.model.Displacements;
    });
    for (const std::string& name : ListFolder(folder.Path()))
      files[name] = ReadFile(folder.Path() / name);
  }

  Job job;
  std::map<std::string, int> counted;        // by the stage's name
  std::map<std::string, std::string> files;  // by name
  std::vector<double> displacements;
};

TEST(Inconsistencies, StagesCountThemAndDoTheSameWork) {
  const CountedRun unchanged(false), changed(true);
  EXPECT_EQ(unchanged.job.inconsistencies, 0);
  EXPECT_EQ(changed.job.inconsistencies, 6 + 6 + 22);
  const std::map<std::string, int> expected{{"assemble", 6}, {"load", 6}, {"stresses", 22}};
  for (const auto& [stage, count] : changed.counted) {
    const auto found = expected.find(stage);
    EXPECT_EQ(count, found == expected.end() ? 0 : found->second) << stage;
  }
  // All but the first, which reads.
  EXPECT_EQ(changed.counted.size(),
            AssemblyStages.size() + ResultStages.size() + DetailStages.size() + 1);

  EXPECT_FALSE(unchanged.displacements.empty());
  EXPECT_TRUE(SameBits(changed.displacements, unchanged.displacements));
  EXPECT_EQ(unchanged.files.size(), 7U);  // the model and six results; the log is the run's
  EXPECT_EQ(changed.files, unchanged.files);
  EXPECT_TRUE(unchanged.job.incompleteFiles.empty());
  EXPECT_TRUE(changed.job.incompleteFiles.empty());
}

// The console of the first half of a run whose job starts with so many inconsistencies.
std::string PrintFrontHalf(int inconsistencies) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakePlate()));
  Job job;
  job.folder = folder.Path().string() + '/';
  job.inconsistencies = inconsistencies;
  std::ostringstream log;
  testing::internal::CaptureStdout();
  AssembleSystem(job, log);
  std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(job.inconsistencies, 0);
  return printed;
}

// One line "错误!" in GBK for each, after the stage that counted them. The run goes on.
TEST(Inconsistencies, TheRunSaysEachOnce) {
  const std::string line = "\xB4\xED\xCE\xF3!\n";
  const std::string others = PrintFrontHalf(0);
  EXPECT_EQ(others.find(line), std::string::npos);
  EXPECT_NE(others.find("Assembling the global stiffness matrix..."), std::string::npos);
  EXPECT_EQ(PrintFrontHalf(2), line + line + others);
}

}  // namespace
}  // namespace korvex::test
