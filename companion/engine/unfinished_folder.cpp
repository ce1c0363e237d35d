#include "engine/unfinished_folder.h"

#include <system_error>

#include "engine/locked_folder.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// Holds what was in the places, until all new files are there.
constexpr const char* OldName = "old";

// Has been OldName: all new files are in their places.
constexpr const char* DoneName = "done";

[[noreturn]] void StopAt(const std::string& name, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::ResultFile, name + " cannot be written: " + reason + '.'};
}

bool IsThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(path, ignored));
}

// A file that its owner has protected is not replaced, though the system would allow it.
void CheckPlace(const fs::path& place, const std::string& shown) {
  std::error_code error;
  const fs::file_status status = fs::status(place, error);
  if (fs::is_directory(status)) StopAt(shown, "a folder has this name");
  constexpr fs::perms Writable =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  if (fs::exists(status) && (status.permissions() & Writable) == fs::perms::none) {
    StopAt(shown, "it is protected against writing");
  }
}

void CheckName(const fs::path& path, const std::string& shown) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (fs::exists(status) && !fs::is_directory(status)) {
    StopAt(shown, std::string("something else has the name ") + UnfinishedFolderName);
  }
}

// All files in OldName, also those of a run that made others than this one. Names as from there.
std::vector<fs::path> ListOldFiles(const fs::path& old) {
  std::vector<fs::path> names;
  std::error_code error;
  for (fs::recursive_directory_iterator it(old, error), end; !error && it != end;
       it.increment(error)) {
    const fs::file_status status = it->symlink_status(error);
    if (!fs::is_directory(status)) names.push_back(it->path().lexically_relative(old));
  }
  return names;
}

// Takes back a move that was not completed. What cannot be moved back stays in OldName.
void TakeBack(const fs::path& path, const fs::path& place, const std::vector<FileToMake>& files) {
  const fs::path old = path / OldName;
  if (!IsThere(old)) return;
  std::error_code ignored;
  for (const FileToMake& file : files) {
    const bool isMoved = !IsThere(path / file.name);
    if (IsThere(old / file.name)) {
      fs::rename(old / file.name, place / file.name, ignored);
    } else if (isMoved) {
      fs::remove(place / file.name, ignored);
    }
  }
  for (const fs::path& name : ListOldFiles(old)) fs::rename(old / name, place / name, ignored);
}

// Whether files of before are still not in their places.
bool HoldsOldFiles(const UnfinishedFolder& unfinished) {
  return !ListOldFiles(unfinished.path / OldName).empty();
}

}  // namespace

UnfinishedFolder::~UnfinishedFolder() { EndUnfinished(*this); }

void BeginUnfinished(const std::string& folder, const std::vector<FileToMake>& files,
                     UnfinishedFolder& unfinished) {
  const std::string shown = folder.empty() ? "The folder" : folder;
  std::error_code error;
  const fs::path place = fs::absolute(folder.empty() ? "." : folder, error);
  if (error) StopAt(shown, error.message());
  const fs::path path = place / UnfinishedFolderName;
  for (const FileToMake& file : files) CheckPlace(place / file.name, folder + file.shown);
  CheckName(path, shown);
  std::string reason;
  bool isNew = false;
  const LockResult result = TakeFolder(path, unfinished.lock, isNew, reason);
  if (result == LockResult::Failed) StopAt(shown, reason);
  if (result == LockResult::Busy)
    StopAt(shown, "another run is at work there; wait for its end, or solve a copy of the folder");
  unfinished.prefix = folder + UnfinishedFolderName + '/';
  unfinished.place = place;
  unfinished.shown = shown;
  unfinished.path = path;
  unfinished.files = files;
  TakeBack(path, place, files);
  if (HoldsOldFiles(unfinished)) {
    StopAt(shown, std::string("files in ") + UnfinishedFolderName + '/' + OldName +
                      " are of an earlier run, and cannot be moved back to their places");
  }
  EmptyFolder(path);
}

void MoveFiles(UnfinishedFolder& unfinished) {
  const fs::path &path = unfinished.path, &place = unfinished.place;
  const fs::path old = path / OldName;
  std::error_code error;
  const auto failAt = [&](const std::string& shown) {
    const std::string reason = error.message();
    TakeBack(path, place, unfinished.files);
    StopAt(shown, reason);
  };
  for (const FileToMake& file : unfinished.files) {
    if (!IsThere(path / file.name)) StopAt(file.shown, "it has not been made");
  }
  fs::create_directory(old, error);
  if (error) StopAt(unfinished.shown, error.message());
  // The last file is the first to go and the last to come: where it is, all others are.
  for (auto file = unfinished.files.rbegin(); file != unfinished.files.rend(); ++file) {
    if (!IsThere(place / file->name)) continue;
    fs::create_directories((old / file->name).parent_path(), error);
    if (!error) fs::rename(place / file->name, old / file->name, error);
    if (error) failAt(file->shown);
  }
  for (const FileToMake& file : unfinished.files) {
    fs::rename(path / file.name, place / file.name, error);
    if (error) failAt(file.shown);
  }
  fs::rename(old, path / DoneName, error);
  if (error) failAt(unfinished.shown);
}

void EndUnfinished(UnfinishedFolder& unfinished) {
  if (unfinished.path.empty()) return;
  const fs::path& path = unfinished.path;
  // Files that could not be moved back wait for the next run, which tries it again.
  if (!HoldsOldFiles(unfinished)) EmptyFolder(path);
  LeaveFolder(path, unfinished.lock);
  unfinished.path.clear();
}

}  // namespace kvx
