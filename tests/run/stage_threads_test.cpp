// Stages on several threads: the same files as on one, and the same failures. The program of
// same_bytes/compare_threads.cpp compares the files of the examples and of other models.
#include <gtest/gtest.h>

#include <filesystem>

#include "run/file_names.h"
#include "run/stages.h"
#include "skyline/panel_pipeline.h"
#include "support/expect_stop.h"
#include "support/run_stages.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

TEST(StageThreads, FilesDoNotDependOnThem) {
  const std::string text = WriteModel(MakeStiffenedGrid());
  const FileTexts expected = RunStages(text, 1);
  EXPECT_EQ(expected.size(), 6U);
  for (const int threads : ThreadCounts) {
    for (const auto& [name, bytes] : RunStages(text, threads)) {
      EXPECT_FALSE(bytes.empty()) << name;
      EXPECT_TRUE(bytes == expected.at(name)) << name << ", threads: " << threads;
    }
  }
}

// Plates large enough for threads that share a factorisation. The flat one is solved as two
// systems.
TEST(StageThreads, FilesOfPlatesDoNotDependOnThem) {
  for (const double slope : {0.0, 0.3}) {
    const ModelText plate = MakePlate(slope);
    Model model;
    AssembleModel(plate, model);
    EXPECT_GT(CountUsefulThreads(model.Stiffness, 8), 2) << slope;
    const std::string text = WriteModel(plate);
    const FileTexts expected = RunStages(text, 1);
    for (const auto& [name, bytes] : RunStages(text, 8)) {
      EXPECT_TRUE(bytes == expected.at(name)) << name << ", slope: " << slope;
    }
  }
}

// Goes through all stages; `spoil` is called before each one that writes a file, with its name in
// the folder.
template <typename Spoil>
void RunSpoiled(int threads, const Spoil& spoil, Job& job) {
  const TempFolder folder;
  WriteFile(folder.Path() / ModelFileName, WriteModel(MakeStiffenedGrid()));
  job.folder = folder.Path().string() + '/';
  job.threads = threads;
  ForAllStages([&](const Stage& stage) {
    if (stage.file != nullptr) spoil(job.folder + stage.file);
    stage.work(job);
  });
}

TEST(StageThreads, AFileThatCannotBeOpenedStopsTheRun) {
  for (const int threads : ThreadCounts) {
    for (const char* name : {DisplacementFileName, StressFileName, AverageStressFileName}) {
      Job job;
      const auto block = [&](const std::string& file) {
        if (fs::path(file).filename() == name) fs::create_directory(file);
      };
      try {
        RunSpoiled(threads, block, job);
        FAIL() << name;
      } catch (const Stop& stop) {
        EXPECT_EQ(stop.kind, StopKind::ResultFile) << name;
      }
    }
  }
}

}  // namespace
}  // namespace korvex::test
