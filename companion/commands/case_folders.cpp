#include "commands/case_folders.h"

#include <string>
#include <system_error>

#include "commands/case_record.h"
#include "engine/unfinished_folder.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void Refuse(const fs::path& folder, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::ResultFile,
                     "the folder \"" + folder.u8string() + "\" " + reason};
}

constexpr const char* RenameCase = " Rename the case, or choose another folder with -o.";

void RefuseInputs(const fs::path& folder, const std::vector<CaseSource>& sources) {
  std::error_code error;
  if (!fs::exists(folder, error)) return;
  for (const CaseSource& source : sources) {
    const fs::path name = source.place.filename();
    // Of the files, not of their folders: on Windows folders cannot be compared so.
    if (!fs::equivalent(source.place, folder / name, error)) continue;
    Refuse(folder,
           "holds \"" + name.u8string() + "\", from which the cases are made." + RenameCase);
  }
}

// A run that was killed while files changed places may have left the record among those that it
// was about to replace.
bool IsOurs(const fs::path& folder) {
  if (HasCaseRecord(folder)) return true;
  std::error_code error;
  for (fs::directory_iterator it(folder / UnfinishedFolderName, error), end; !error && it != end;
       it.increment(error)) {
    if (HasCaseRecord(it->path())) return true;
  }
  return false;
}

void RefuseForeignModel(const fs::path& folder) {
  std::error_code error;
  const bool isThere = fs::exists(fs::symlink_status(folder / ModelFileName, error));
  if (!isThere || IsOurs(folder)) return;
  Refuse(folder, std::string("holds a model that kvx cases has not written.") + RenameCase);
}

// Makes a folder within it for a moment: permissions do not tell of disks that only allow reading.
void TryToWrite(const fs::path& folder) {
  const fs::path trial = folder / "kvx-trial";
  std::error_code error;
  fs::create_directory(trial, error);
  if (error) {
    Refuse(folder, "cannot be written to: " + error.message() + ". Choose another folder with -o.");
  }
  fs::remove(trial, error);
}

void Make(const fs::path& folder, MadeFolders& made) {
  std::error_code error;
  MakeFolder(folder, made, error);
  if (error) {
    Refuse(folder, "cannot be made: " + error.message() + ". Choose another folder with -o.");
  }
}

// Folders of cases are made when there are results for them.
void CheckWritable(const fs::path& folder) {
  MadeFolders made;
  Make(folder, made);
  TryToWrite(folder);
}

}  // namespace

void CheckCaseFolders(const fs::path& results, const CaseSet& set, MadeFolders& made) {
  for (const LoadSet& each : set.sets) {
    const fs::path folder = results / fs::u8path(each.name);
    RefuseInputs(folder, set.sources);
    RefuseForeignModel(folder);
  }
  Make(results, made);
  TryToWrite(results);
  for (const LoadSet& each : set.sets) CheckWritable(results / fs::u8path(each.name));
  for (const EnvelopeOf& each : set.envelopes) {
    CheckWritable(results / fs::u8path(EnvelopeFolderPrefix + each.name));
  }
}

}  // namespace kvx
