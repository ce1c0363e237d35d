// The in-process runs of solve_model.h.
#include "support/solve_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "support/temp_folder.h"
#include "system/assemble_system.h"
#include "system/solve_skyline.h"

namespace korvex::test {

namespace {

// Adds the model file to the folder that the environment names, if it names one.
void KeepModel(const std::string& text) {
  const char* folder = std::getenv("KORVEX_KEEP_MODELS");
  if (folder == nullptr) return;
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(test.test_suite_name()) + '.' + test.name();
  std::replace(name.begin(), name.end(), '/', '-');
  int number = 1;
  const auto file = [&] {
    return std::filesystem::path(folder) / (name + '-' + std::to_string(number) + ".txt");
  };
  while (std::filesystem::exists(file())) ++number;
  WriteFile(file(), text);
}

}  // namespace

void AssembleModel(const ModelText& text, Model& model) {
  const WorkingFolder folder;
  WriteFile("fem_solving.txt", WriteModel(text));
  KeepModel(WriteModel(text));
  std::ostringstream log;
  AssembleSystem(model, log);
}

void SolveModel(const ModelText& text, Model& model) {
  AssembleModel(text, model);
  SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, SolverProgress::Silent);
}

}  // namespace korvex::test
