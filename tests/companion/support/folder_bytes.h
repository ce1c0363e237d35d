// What stands in the folder of a run, to be compared byte by byte.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kvx::test {

// Bytes by name: bytes on POSIX, UTF-8 on Windows.
using FolderBytes = std::map<std::string, std::string>;

// All that is in the folder but the model file, displacements.bin and solution.json, which are not
// of the solver. In the log the solution time
// is "#". A folder inside has the bytes "folder".
FolderBytes ReadFolder(const std::filesystem::path& folder);

// The names of the files that only one of the two has, or that differ.
std::vector<std::string> ListDifferent(const FolderBytes& a, const FolderBytes& b);

// What is in a folder, as ReadFolder gives it, after a run of korvex with this model.
FolderBytes RunSolver(const std::string& modelText);

}  // namespace kvx::test
