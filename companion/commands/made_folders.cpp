#include "commands/made_folders.h"

namespace kvx {

namespace fs = std::filesystem;

MadeFolders::~MadeFolders() { RemoveEmptyFolders(*this); }

void MakeFolder(const fs::path& folder, MadeFolders& made, std::error_code& error) {
  std::vector<fs::path> missing;
  fs::path path = folder;
  while (path.has_relative_path() && !fs::exists(fs::symlink_status(path, error))) {
    missing.push_back(path);
    path = path.parent_path();
  }
  error.clear();
  for (auto next = missing.rbegin(); next != missing.rend() && !error; ++next) {
    if (fs::create_directory(*next, error)) made.folders.push_back(*next);
  }
  if (!error) fs::create_directories(folder, error);  // says why a file is none
}

void RemoveEmptyFolders(MadeFolders& made) {
  std::error_code ignored;
  for (auto path = made.folders.rbegin(); path != made.folders.rend(); ++path) {
    if (!fs::is_empty(*path, ignored)) continue;
    // Windows removes no folder that a process is in.
    if (fs::equivalent(fs::current_path(ignored), *path, ignored)) {
      fs::current_path(path->parent_path(), ignored);
    }
    fs::remove(*path, ignored);
  }
  made.folders.clear();
}

}  // namespace kvx
