// Folders that are made on the way to a result: where it does not come, none stays behind empty.
#pragma once

#include <filesystem>
#include <system_error>
#include <vector>

namespace kvx {

// Those that are empty are removed when the object goes.
struct MadeFolders {
  std::vector<std::filesystem::path> folders;  // absolute, a folder before those in it

  MadeFolders() = default;
  ~MadeFolders();
  MadeFolders(const MadeFolders&) = delete;
  MadeFolders& operator=(const MadeFolders&) = delete;
};

// Makes the folder and those that it is in, as far as they are missing, and notes them.
// folder: absolute. error: why it cannot be made.
void MakeFolder(const std::filesystem::path& folder, MadeFolders& made, std::error_code& error);

// Removes those that are empty. Where the current folder is one of them, it becomes the one that
// this is in.
void RemoveEmptyFolders(MadeFolders& made);

}  // namespace kvx
