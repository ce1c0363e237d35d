// Compares the result files of runs on several threads with those of one thread, byte for byte:
//
//   compare_threads MODELS EXAMPLES
//
// for every file in MODELS, every fem_solving.txt in a folder of EXAMPLES, and two plates whose
// equations several threads factorise. The exit status is 1 where one differs.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "report/stop.h"
#include "run/file_names.h"
#include "support/run_stages.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using namespace korvex::test;

std::vector<fs::path> ListModels(const fs::path& models, const fs::path& examples) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(models)) {
    if (entry.path().extension() == ".txt") files.push_back(entry.path());
  }
  for (const auto& entry : fs::directory_iterator(examples)) {
    const fs::path file = entry.path() / korvex::ModelFileName;
    if (fs::exists(file)) files.push_back(file);
  }
  return files;
}

// Returns the number of files that differ.
int CompareModel(const std::string& model, const std::string& text) {
  const FileTexts expected = RunStages(text, 1);
  int differences = expected.size() == 6 ? 0 : 1;
  for (const int threads : ThreadCounts) {
    if (threads == 1) continue;
    const FileTexts files = RunStages(text, threads);
    for (const auto& [name, bytes] : expected) {
      const auto found = files.find(name);
      if (found != files.end() && found->second == bytes) continue;
      ++differences;
      std::printf("%s: %s differs with %d threads\n", model.c_str(), name.c_str(), threads);
    }
  }
  return differences;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  int models = 2;
  int differences = CompareModel("flat plate", WriteModel(MakePlate(0.0))) +
                    CompareModel("sloping plate", WriteModel(MakePlate(0.3)));
  for (const fs::path& model : ListModels(arguments[1], arguments[2])) {
    try {
      differences += CompareModel(model.string(), ReadFile(model));
    } catch (const korvex::Stop& stop) {
      std::printf("%s: %s\n", model.string().c_str(), stop.text.c_str());
      ++differences;
    }
    ++models;
  }
  std::printf("%d models, %d differences\n", models, differences);
  return models < 20 || differences > 0 ? 1 : 0;
}
