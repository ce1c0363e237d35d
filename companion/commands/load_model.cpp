#include "commands/load_model.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "deck/load_text.h"
#include "engine/unfinished_folder.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// A process that was killed while files changed places may have left the model among those that
// were about to be replaced. What cannot be moved back is not there.
void MoveModelBack(const fs::path& folder) {
  std::error_code error;
  if (!fs::exists(folder / UnfinishedFolderName / "old" / ModelFileName, error)) return;
  const fs::path start = fs::current_path(error);
  if (error) return;
  fs::current_path(folder, error);
  if (!error) {
    try {
      UnfinishedFolder unfinished;
      BeginUnfinished("", {}, unfinished);
    } catch (const korvex::Stop&) {  // another process is at work, or the folder is protected
    }
  }
  fs::current_path(start, error);
}

std::string Quoted(const fs::path& path) { return '"' + path.u8string() + '"'; }

// Finds the file, or says why not.
ExitStatus FindModel(const fs::path& place, fs::path& file, std::string& complaint) {
  std::error_code error;
  const fs::file_status status = fs::status(place, error);
  if (!fs::exists(status)) {
    complaint = fs::status_known(status)
                    ? "there is no folder or file " + Quoted(place) + "."
                    : Quoted(place) + " cannot be read: " + error.message() + ".";
    return ExitMissingInput;
  }
  file = place;
  if (!fs::is_directory(status)) return ExitFine;
  file = (place / ModelFileName).lexically_normal();
  if (!fs::exists(file, error)) MoveModelBack(place);
  if (fs::exists(file, error)) return ExitFine;
  complaint = std::string("there is no file ") + ModelFileName + " in the folder " + Quoted(place) +
              ". Name the folder of a model, or its file.";
  return ExitMissingInput;
}

}  // namespace

ExitStatus LoadModel(const std::string& place, LoadedModel& model, std::string& complaint) {
  fs::path file;
  const ExitStatus found = FindModel(fs::u8path(place), file, complaint);
  if (found != ExitFine) return found;
  model.file = file.u8string();

  complaint = Quoted(file) + " cannot be read.";
  // The reader takes the name in the system's own code page. On Windows not every folder has a name
  // there, but each can be the current one.
  std::error_code error;
  if (file.has_parent_path()) fs::current_path(file.parent_path(), error);
  if (error) return ExitMissingInput;
  const std::string name = file.filename().string();
  // A pipe is not tried: what a first look takes out of it would be lost.
  std::ifstream stream;
  if (!fs::is_other(name, error) && !korvex::OpenInputFile(name, stream)) return ExitMissingInput;
  stream.close();
  try {
    korvex::LoadText(name, model.text);
  } catch (const korvex::Stop& stop) {
    complaint = Quoted(file) + ": " + stop.text;
    return ExitUnusableData;
  }
  complaint.clear();
  return ExitFine;
}

// The same file may have several names: where the system does not tell capitals from small letters,
// or by a link.
bool IsModelOfFolder(const LoadedModel& model) {
  std::error_code error;
  return fs::equivalent(fs::u8path(model.file).filename(), ModelFileName, error);
}

}  // namespace kvx
