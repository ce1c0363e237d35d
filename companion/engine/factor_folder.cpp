#include "engine/factor_folder.h"

#include <limits>
#include <system_error>
#include <utility>
#include <vector>

#include "engine/locked_folder.h"
#include "report/stop.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// Runs at work in one place, each with all its ranks: more are not expected.
constexpr int MostNames = 1024;

constexpr const char* NamePrefix = "kvx-factors-";

std::string NameOf(int number) { return NamePrefix + std::to_string(number); }

bool IsNameOfRun(const std::string& name) {
  const std::size_t size = std::char_traits<char>::length(NamePrefix);
  return name.size() > size && name.compare(0, size, NamePrefix) == 0 &&
         name.find_first_not_of("0123456789", size) == std::string::npos;
}

[[noreturn]] void StopFolder(const std::string& parent, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::ResultFile, "The folder for the factors, \"" + parent +
                                                       "\", cannot be written to: " + reason + "."};
}

// What MUMPS names its files by, as it is told to (sparse/sparse_factor.h), and the lock.
bool IsOfRun(const fs::directory_entry& entry) {
  std::error_code error;
  const std::string name = entry.path().filename().u8string();
  return fs::is_regular_file(entry.symlink_status(error)) &&
         (name.rfind(FactorFilePrefix, 0) == 0 || name == LockName);
}

// Whether it is a folder with nothing but such files: no link to one, and not one of somebody who
// likes the name.
bool IsOfRuns(const fs::path& path) {
  std::error_code error;
  if (!fs::is_directory(fs::symlink_status(path, error))) return false;
  for (fs::directory_iterator it(path, error), end; !error && it != end; it.increment(error)) {
    if (!IsOfRun(*it)) return false;
  }
  return !error;
}

void RemoveFactors(const fs::path& path) {
  std::error_code error;
  std::vector<fs::path> files;
  for (fs::directory_iterator it(path, error), end; !error && it != end; it.increment(error)) {
    if (IsOfRun(*it) && it->path().filename() != LockName) files.push_back(it->path());
  }
  for (const fs::path& file : files) fs::remove(file, error);
}

// Takes one that is there, to remove it. Without locks nothing tells what a killed run has left
// from the files of one that is at work: then it stays.
void TakeOld(const fs::path& path, FactorFolder& folder) {
  bool isNew = false;
  std::string reason;
  if (!IsOfRuns(path)) return;
  const LockResult result = TakeFolder(path, folder.lock, isNew, reason);
  if (result == LockResult::Taken) folder.path = path;
  if (result == LockResult::Unlocked) ReturnFolder(folder.lock);
}

// Makes it, unless something has the name: another run, another user's folder, a link. reason: set
// where that fails.
void MakeNew(const fs::path& path, FactorFolder& folder, std::string& reason) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(path, error))) return;
  bool isNew = false;
  const LockResult result = TakeFolder(path, folder.lock, isNew, reason);
  if (result != LockResult::Taken && result != LockResult::Unlocked) return;
  // A run that has just ended may have left it between the look and the lock.
  if (isNew || (result == LockResult::Taken && IsOfRuns(path))) {
    folder.path = path;
  } else {
    ReturnFolder(folder.lock);
  }
}

// The folder that is given, which has to be there.
fs::path FindPlace(const std::string& parent) {
  fs::path place = fs::absolute(fs::u8path(parent));
  std::error_code error;
  if (!fs::is_directory(place, error)) {
    StopFolder(parent, error ? error.message() : "it is no folder");
  }
  return place;
}

}  // namespace

FactorFolder::~FactorFolder() { RemoveFactorFolder(*this); }

void RemoveFactorFolder(FactorFolder& folder) {
  // A factorisation that is at work may make a file at this moment.
  constexpr int Attempts = 8;
  for (int k = 0; k < Attempts && !folder.path.empty(); ++k) {
    const fs::path path = std::move(folder.path);
    folder.path.clear();
    RemoveFactors(path);
    LeaveFolder(path, folder.lock);
    TakeOld(path, folder);
  }
}

void RemoveLeftFactors(const std::string& parent) {
  std::vector<fs::path> paths;
  std::error_code error;
  for (fs::directory_iterator it(FindPlace(parent), error), end; !error && it != end;
       it.increment(error)) {
    if (IsNameOfRun(it->path().filename().u8string())) paths.push_back(it->path());
  }
  for (const fs::path& path : paths) {
    FactorFolder left;  // goes with its files
    TakeOld(path, left);
  }
}

void TakeFactorFolder(const std::string& parent, int first, FactorFolder& folder) {
  const fs::path place = FindPlace(parent);
  const int last = first + MostNames - 1;
  std::string reason = "the names " + NameOf(first) + " to " + NameOf(last) +
                       " are taken, by runs that are at work there or by other folders. Remove "
                       "those that nobody needs, or give another folder (--out-of-core DIR)";
  for (int number = first; number <= last; ++number) {
    MakeNew(place / NameOf(number), folder, reason);
    if (!folder.path.empty()) return;
  }
  StopFolder(parent, reason);
}

void MakeFactorFolder(const std::string& parent, FactorFolder& folder) {
  RemoveLeftFactors(parent);
  TakeFactorFolder(parent, 1, folder);
}

std::uint64_t ReadFreeDisk(const std::string& parent) {
  std::error_code error;
  const fs::space_info space = fs::space(fs::u8path(parent), error);
  return error ? std::numeric_limits<std::uint64_t>::max() : space.available;
}

}  // namespace kvx
