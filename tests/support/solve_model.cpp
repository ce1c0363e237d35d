// The in-process runs of solve_model.h.
#include "support/solve_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "support/keep_model.h"
#include "support/temp_folder.h"
#include "system/assemble_system.h"
#include "system/solve_skyline.h"

namespace korvex::test {

namespace {

// Named after the test that runs; the verification book, which is no test, keeps its models itself.
void KeepModelOfTest(const std::string& text) {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  if (test == nullptr) return;
  std::string name = std::string(test->test_suite_name()) + '.' + test->name();
  std::replace(name.begin(), name.end(), '/', '-');
  KeepModel(name, text);
}

}  // namespace

void AssembleModel(const ModelText& text, Model& model) {
  const WorkingFolder folder;
  WriteFile("fem_solving.txt", WriteModel(text));
  KeepModelOfTest(WriteModel(text));
  std::ostringstream log;
  AssembleSystem(model, log);
}

void SolveModel(const ModelText& text, Model& model) {
  AssembleModel(text, model);
  SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, SolverProgress::Silent);
}

}  // namespace korvex::test
