#include "support/folder_bytes.h"

#include <gtest/gtest.h>

#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {

FolderBytes ReadFolder(const std::filesystem::path& folder) {
  FolderBytes bytes;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().filename().u8string();
    if (name == "fem_solving.txt" || name == "displacements.bin") continue;
    if (name == "solution.json") continue;
    const bool isLog = entry.path().filename() == korvex::test::LogPath() || entry.is_symlink();
    const std::string content = entry.is_directory() ? "folder" : ReadBytes(entry.path());
    bytes[name] = isLog ? korvex::test::MaskTime(content, "+-.0123456789e") : content;
  }
  return bytes;
}

std::vector<std::string> ListDifferent(const FolderBytes& a, const FolderBytes& b) {
  std::vector<std::string> names;
  for (const auto& [name, bytes] : a) {
    if (b.count(name) == 0 || b.at(name) != bytes) names.push_back(name);
  }
  for (const auto& file : b) {
    if (a.count(file.first) == 0) names.push_back(file.first);
  }
  return names;
}

FolderBytes RunSolver(const std::string& modelText) {
  const korvex::test::TempFolder folder;
  korvex::test::WriteFile(folder.Path() / "fem_solving.txt", modelText);
  const korvex::test::ProgramRun run = korvex::test::RunProgram(KORVEX_PROGRAM, folder.Path());
  EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  return ReadFolder(folder.Path());
}

}  // namespace kvx::test
