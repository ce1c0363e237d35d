#include "commands/import_output.h"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <utility>

#include "audit/solved_model.h"
#include "commands/folder_cases.h"
#include "commands/load_model.h"
#include "commands/number_map.h"
#include "commands/origin_file.h"
#include "commands/progress.h"
#include "commands/regular_file.h"
#include "engine/result_folder.h"
#include "engine/unfinished_folder.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void StopOutput(const std::string& text) {
  throw korvex::Stop{korvex::StopKind::ResultFile, text};
}

std::string Quoted(const fs::path& path) { return '"' + path.u8string() + '"'; }

const ImportedFile* FindFile(const std::vector<ImportedFile>& files, const std::string& name) {
  const auto isNamed = [&](const ImportedFile& file) { return file.name == name; };
  const auto found = std::find_if(files.begin(), files.end(), isNamed);
  return found == files.end() ? nullptr : &*found;
}

bool IsUnchanged(const fs::path& place, const ImportedFile& file) {
  std::string bytes;
  return ReadRegularFile(place, bytes) && HashText(HashBytes(bytes)) == file.hash;
}

// Makes the folder and goes into it: files get names without their folder, as not every folder has
// a name in the system's code page. Returns whether it is new.
bool GoTo(const fs::path& folder) {
  std::error_code error;
  const bool isNew = !fs::exists(folder, error);
  fs::create_directories(folder, error);
  if (error) StopOutput("the folder cannot be made: " + error.message() + '.');
  fs::current_path(folder, error);
  if (error) StopOutput("the folder cannot be entered: " + error.message() + '.');
  return isNew;
}

void WriteFile(const std::string& prefix, const FileToWrite& file) {
  StopIfInterrupted();
  std::ofstream stream(fs::u8path(prefix + file.name), std::ios::binary);
  stream.write(file.text.data(), static_cast<std::streamsize>(file.text.size()));
  stream.close();
  if (!stream) StopOutput(file.name + " cannot be written. Is the disk full?");
}

void WriteTogether(const std::vector<FileToWrite>& files) {
  std::vector<FileToMake> names;
  names.reserve(files.size());
  for (const FileToWrite& file : files) names.push_back({fs::u8path(file.name), file.name});
  UnfinishedFolder unfinished;
  BeginUnfinished("", names, unfinished);
  for (const FileToWrite& file : files) WriteFile(unfinished.prefix, file);
  MoveFiles(unfinished);
}

bool IsWritten(const std::vector<FileToWrite>& files, const std::string& name) {
  return std::any_of(files.begin(), files.end(),
                     [&](const FileToWrite& file) { return file.name == name; });
}

// Files of the earlier import that the new one does not have.
struct Leftovers {
  std::vector<std::string> going, staying;
};

void FindLeftovers(const fs::path& folder, const std::vector<ImportedFile>& earlier,
                   const std::vector<FileToWrite>& files, const ProtectedFiles& protects,
                   Leftovers& leftovers) {
  for (const ImportedFile& file : earlier) {
    const fs::path place = folder / fs::u8path(file.name);
    std::error_code error;
    if (IsWritten(files, file.name) || !fs::exists(place, error)) continue;
    const bool isSource =
        std::any_of(protects.sources.begin(), protects.sources.end(),
                    [&](const fs::path& source) { return fs::equivalent(source, place, error); });
    const bool isGoing = !isSource && IsUnchanged(place, file);
    (isGoing ? leftovers.going : leftovers.staying).push_back(file.name);
  }
}

// Throws a Stop where a case file stays, as somebody has written or changed it, and names a file
// that goes: it could no longer be solved.
void CheckNamed(const fs::path& folder, const std::vector<FileToWrite>& files,
                const Leftovers& leftovers) {
  for (const fs::path& toml : ListTomlFiles(folder)) {
    const std::string name = toml.u8string();
    const std::vector<std::string>& going = leftovers.going;
    if (IsWritten(files, name) || std::count(going.begin(), going.end(), name) > 0) continue;
    for (const std::string& loads : going) {
      if (!NamesLoads(folder / toml, loads)) continue;
      StopOutput(Quoted(folder / toml) + " names " + loads +
                 ", which this import would remove: it is of the earlier one. Choose another "
                 "folder with -o. With --force the file goes, and these cases can no longer be "
                 "solved.");
    }
  }
}

// In the current folder. What cannot be removed stays, and is told.
void RemoveLeftovers(Leftovers&& leftovers, ImportWriting& writing) {
  writing.left = std::move(leftovers.staying);
  for (std::string& name : leftovers.going) {
    std::error_code error;
    const bool isRemoved = fs::remove(fs::u8path(name), error) && !error;
    (isRemoved ? writing.removed : writing.left).push_back(std::move(name));
  }
}

// In the current folder: the map of kvx renumber leads back to the numbers of a model that is no
// longer there, unless the import has made it again. A file that is no such map stays.
void RemoveNumberMap(const std::string& model, ImportWriting& writing) {
  std::string text, ignored;
  NumberMap map;
  if (!ReadRegularFile(NumberMapFileName, text) || !ReadNumberMap(text, map, ignored)) return;
  if (map.after.id == IdentifyModelFile(model)) return;
  std::error_code error;
  const bool isRemoved = fs::remove(NumberMapFileName, error) && !error;
  (isRemoved ? writing.removed : writing.left).emplace_back(NumberMapFileName);
}

const std::string& TextOf(const std::vector<FileToWrite>& files, const std::string& name) {
  return std::find_if(files.begin(), files.end(),
                      [&](const FileToWrite& file) { return file.name == name; })
      ->text;
}

}  // namespace

std::string NameImportFolder(const std::string& deck) {
  const std::string stem = fs::u8path(deck).filename().stem().u8string();
  return stem == "." || stem == ".." ? "" : stem;
}

std::vector<ImportedFile> ListImportedFiles(const fs::path& folder) {
  std::string text, ignored;
  std::vector<ImportedFile> files;
  const bool isRead = ReadRegularFile(folder / OriginFileName, text);
  if (!isRead || !ReadImportedFiles(text, files, ignored)) return {};
  return files;
}

void CheckReplaceable(const fs::path& folder, const std::string& name,
                      const std::vector<ImportedFile>& earlier, const ProtectedFiles& protects) {
  const fs::path place = folder / fs::u8path(name);
  std::error_code error;
  if (!fs::exists(fs::symlink_status(place, error))) return;
  for (const fs::path& source : protects.sources) {
    if (!fs::equivalent(source, place, error)) continue;
    StopOutput(Quoted(place) + " is read by this import, and would be overwritten. " +
               (protects.isFolder ? "Choose another folder with -o." : "Name another file."));
  }
  if (protects.force) return;
  if (!protects.isFolder) {
    StopOutput(Quoted(place) + " is there already. Name another file, or replace it with --force.");
  }
  const ImportedFile* const file = FindFile(earlier, name);
  const char* const remedy = " Choose another folder with -o, or replace it with --force.";
  if (file == nullptr) {
    StopOutput(Quoted(place) + " is there already, and no import has written it." + remedy);
  }
  if (IsUnchanged(place, *file)) return;
  StopOutput(Quoted(place) + " has been changed since it was imported." + remedy +
             (name == CaseFileName ? " What was added to it, such as combinations, is then lost: "
                                     "keep a copy."
                                   : ""));
}

void WriteImportFiles(const fs::path& folder, const std::vector<FileToWrite>& files,
                      const ProtectedFiles& protects, ImportWriting& writing) {
  const std::vector<ImportedFile> earlier = ListImportedFiles(folder);
  for (const FileToWrite& file : files) {
    if (file.name != OriginFileName) CheckReplaceable(folder, file.name, earlier, protects);
  }
  Leftovers leftovers;
  FindLeftovers(folder, earlier, files, protects, leftovers);
  if (!protects.force) CheckNamed(folder, files, leftovers);
  std::error_code error;
  fs::path whole = fs::absolute(folder, error);
  if (!whole.has_filename()) whole = whole.parent_path();  // "deck/"
  const bool isNew = GoTo(folder);
  try {
    WriteTogether(files);
  } catch (...) {
    if (isNew) {
      fs::current_path(whole.parent_path(), error);
      fs::remove(whole, error);  // empty by now, or it stays
    }
    throw;
  }
  RemoveLeftovers(std::move(leftovers), writing);
  const std::string& model = TextOf(files, ModelFileName);
  RemoveNumberMap(model, writing);
  for (std::string& name : RemoveStaleResults("", model))
    writing.removed.push_back(std::move(name));
}

void WriteNewFile(const std::string& place, const std::string& text,
                  const ProtectedFiles& protects) {
  std::error_code error;
  const fs::path path = fs::absolute(fs::u8path(place), error).lexically_normal();
  CheckReplaceable(path.parent_path(), path.filename().u8string(), {}, protects);
  GoTo(path.parent_path());
  WriteTogether({{path.filename().u8string(), text}});
}

}  // namespace kvx
