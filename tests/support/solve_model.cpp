#include "support/solve_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "run/file_names.h"
#include "run/stages.h"
#include "skyline/solve_skyline.h"
#include "support/keep_model.h"
#include "support/temp_folder.h"

namespace korvex::test {

namespace {

// Named after the running test. The verification book is no test and keeps its models itself.
void KeepModelOfTest(const std::string& text) {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  if (test == nullptr) return;
  std::string name = std::string(test->test_suite_name()) + '.' + test->name();
  std::replace(name.begin(), name.end(), '/', '-');
  KeepModel(name, text);
}

}  // namespace

void AssembleModel(const ModelText& text, Model& model) {
  const TempFolder folder;
  const std::string file = WriteModel(text);
  WriteFile(folder.Path() / ModelFileName, file);
  KeepModelOfTest(file);
  Job job;
  job.folder = folder.Path().string() + '/';
  for (const Stage& stage : AssemblyStages) stage.work(job);
  model = std::move(job.model);
}

void SolveModel(const ModelText& text, Model& model) {
  AssembleModel(text, model);
  SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, {});
}

}  // namespace korvex::test
