#include "commands/export_model.h"

#include <cerrno>
#include <fstream>
#include <new>
#include <system_error>

#include "audit/whole_file.h"
#include "commands/export_csv.h"
#include "commands/number_parts.h"
#include "commands/open_results.h"
#include "commands/progress.h"
#include "commands/recover_stresses.h"
#include "commands/refuse_results.h"
#include "commands/speak.h"
#include "finding/text_layout.h"
#include "report/stop.h"
#include "vtu/detail_vtu.h"

namespace kvx {

namespace fs = std::filesystem;
using korvex::Model;

namespace {

constexpr const char* CsvFolder = "csv";

[[noreturn]] void StopOutput(const std::string& text) {
  throw korvex::Stop{korvex::StopKind::ResultFile, text};
}

// The current folder is that of before when the object goes.
struct FolderGuard {
  std::error_code error;
  fs::path before = fs::current_path(error);  // empty where it cannot be found

  FolderGuard() = default;
  ~FolderGuard() {
    std::error_code ignored;
    if (!before.empty()) fs::current_path(before, ignored);
  }
  FolderGuard(const FolderGuard&) = delete;
  FolderGuard& operator=(const FolderGuard&) = delete;
};

// Where the files of a model go.
struct Outputs {
  fs::path folder;    // absolute
  std::string shown;  // "deck/"; "" of the current folder
  std::string vtu;    // names of the files
  std::string details;
  std::string csv;           // of the folder of tables
  UnfinishedFolder csvWork;  // begun where CSV is wanted
};

std::string Stem(const fs::path& modelFile) {
  return modelFile.filename() == ModelFileName ? "model" : modelFile.stem().u8string();
}

// A file that is written beside this one first (whole_file.h).
void CheckWritable(const std::string& name) {
  const fs::path beside = fs::u8path(NameBeside(name));
  errno = 0;
  std::ofstream stream(beside);
  if (!stream.is_open()) {
    const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
    StopOutput(name + " cannot be written" + reason + ".");
  }
  stream.close();
  std::error_code ignored;
  fs::remove(beside, ignored);
}

// Nobody should take the detail models of another state of the model for those of this one.
void NameOldDetails(const ExportCommand& command, const Outputs& outputs) {
  std::error_code error;
  if (!command.vtu || command.details || !fs::exists(fs::u8path(outputs.details), error)) return;
  Complain(ExportName, outputs.shown + outputs.details +
                           " is of an earlier export: remove it, or write it anew by --details.");
}

// Finds out before a long solution whether the files can be written.
void BeginOutputs(const ExportCommand& command, const ModelExport& job, const fs::path& modelFile,
                  MadeFolders& made, Outputs& outputs) {
  const bool isBeside = job.folder.empty();
  std::error_code error;
  outputs.folder = isBeside ? fs::absolute(modelFile, error).parent_path() : job.folder;
  outputs.shown = job.shown;
  if (isBeside && modelFile.has_parent_path()) {
    outputs.shown = modelFile.parent_path().u8string() + '/';
  }
  const std::string stem = Stem(modelFile);
  outputs.vtu = stem + ".vtu";
  outputs.details = stem + "-details.vtu";
  outputs.csv = modelFile.filename() == ModelFileName ? CsvFolder : stem + '-' + CsvFolder;
  EnterOutput(outputs.folder, made);
  if (command.vtu) CheckWritable(outputs.vtu);
  if (!command.csv) return;
  EnterOutput(outputs.folder / fs::u8path(outputs.csv), made);
  BeginUnfinished("", NameCsvFiles(), outputs.csvWork);
}

std::string CountElements(const Model& model) {
  std::string text;
  const auto add = [&](std::size_t count, const char* one, const char* many) {
    if (count > 0) text += (text.empty() ? "" : ", ") + CountText(count, one, many);
  };
  add(model.Shell4Elements.size(), "shell", "shells");
  add(model.Shell3Elements.size(), "triangle", "triangles");
  add(model.BeamElements.size(), "beam", "beams");
  return text.empty() ? "no elements" : text;
}

void WriteVtuFiles(const ExportCommand& command, const MeshResults& results, const Outputs& outputs,
                   MadeFolders& made) {
  const Model& model = results.solved.model;
  EnterOutput(outputs.folder, made);
  {
    MeshGrid mesh;
    BuildMeshGrid(results, command.shared, mesh);
    WriteGrid(outputs.vtu, outputs.shown, mesh.grid);
    SayExported(outputs.shown + outputs.vtu + ": " + CountElements(model) + "; " +
                CountText(mesh.grid.points.tuples, "point", "points") + ".\n");
  }
  if (!results.hasDetails) return;
  DetailGrid details;
  BuildDetailGrid(model, results.parts, command.shared, details);
  WriteGrid(outputs.details, outputs.shown, details.grid);
  SayExported(outputs.shown + outputs.details + ": " +
              CountText(model.BeamShellModels.size(), "detail model", "detail models") + ", " +
              CountText(details.shells.size(), "shell", "shells") + "; " +
              CountText(details.grid.points.tuples, "point", "points") + ".\n");
}

void WriteTables(const MeshResults& results, Outputs& outputs, MadeFolders& made) {
  EnterOutput(outputs.folder / fs::u8path(outputs.csv), made);
  Progress progress;
  const auto begin = std::chrono::steady_clock::now();
  const auto before = [&](const char* name) {
    BeginProgress(std::string("Writing ") + name, progress);
    ShowBegin(begin, progress);
  };
  WriteCsvFiles(results, before, outputs.csvWork);
  EndProgress(progress);
  std::string names;
  for (const FileToMake& file : outputs.csvWork.files) {
    names += (names.empty() ? "" : ", ") + file.shown;
  }
  SayExported(WrapText(outputs.shown + outputs.csv + ": " + names + '.',
                       ChooseStyle(ColorChoice::Never).width, "", "  "));
}

void WriteFiles(const ExportCommand& command, OpenedResults& opened, Outputs& outputs,
                MadeFolders& made, const TakeResults& take) {
  SolvedModel& solved = opened.solved;
  const bool withDetails = command.details && !solved.model.BeamElements.empty();
  RecoverStresses(withDetails ? DetailWish::Models : DetailWish::None, {}, solved);
  Reactions reactions;
  ComputeReactions(solved, reactions);
  std::vector<BeamForces> beamForces;
  ComputeBeamForces(solved.model, beamForces);
  std::vector<std::int32_t> parts;
  NumberParts(solved.model.Tables, parts);
  const MeshResults results{solved, reactions, beamForces, parts, withDetails, &opened.origin};
  if (command.vtu) WriteVtuFiles(command, results, outputs, made);
  if (command.details && !withDetails)
    SayExported("The model has no beams: there are no detail models.\n");
  if (command.csv) WriteTables(results, outputs, made);
  EnterOutput(outputs.folder, made);
  NameOldDetails(command, outputs);
  if (take) take(results);
}

}  // namespace

void SayExported(const std::string& text) {
  if (WriteOutput(text) != ExitFine) StopOutput("the list of files cannot be written.");
}

ExitStatus TryExport(const std::string& file, const std::function<void()>& work) {
  try {
    work();
  } catch (const korvex::Stop& stop) {
    Complain(ExportName, '"' + file + "\": " + stop.text);
    return stop.kind == korvex::StopKind::ResultFile ? ExitOutputFailed : ExitUnusableData;
  } catch (const std::bad_alloc&) {
    Complain(ExportName, '"' + file + "\": there is not enough memory for it.");
    return ExitUnusableData;
  }
  return ExitFine;
}

void EnterOutput(const fs::path& folder, MadeFolders& made) {
  std::error_code error;
  MakeFolder(folder, made, error);
  if (!error) fs::current_path(folder, error);
  if (error) {
    StopOutput("the folder \"" + folder.u8string() + "\" cannot be used: " + error.message() + ".");
  }
}

void WriteGrid(const std::string& name, const std::string& shown, const VtuGrid& grid) {
  Progress progress;
  BeginProgress("Writing " + shown + name, progress);
  WriteWholeFile(fs::u8path(name).string(), [&](std::ostream& stream) {
    WriteVtu(
        grid, [&](double share) { ShowShare(share, progress); }, stream);
  });
}

ExitStatus ExportModel(const ExportCommand& command, const ModelExport& job,
                       const TakeResults& take) {
  MadeFolders made;  // goes last: when nobody is in them, and nothing unfinished is
  const FolderGuard guard;
  LoadedModel file;
  std::string complaint;
  const ExitStatus loaded = LoadModel(job.place, file, complaint);
  if (loaded != ExitFine) {
    Complain(ExportName, complaint);
    return loaded;
  }
  std::error_code error;
  fs::current_path(guard.before, error);
  Outputs outputs;
  const ExitStatus begun = TryExport(
      file.file, [&] { BeginOutputs(command, job, fs::u8path(file.file), made, outputs); });
  if (begun != ExitFine) return begun;
  fs::current_path(guard.before, error);
  OpenedResults opened;
  ExitStatus status = OpenResults(ExportName, job.place, opened);
  if (status != ExitFine) return status;
  status = RefuseResults(ExportName, opened.reading, opened.solved);
  if (status != ExitFine) return status;
  status = TryExport(file.file, [&] { WriteFiles(command, opened, outputs, made, take); });
  if (status != ExitFine) return status;
  return opened.errors > 0 ? ExitFindings : ExitFine;
}

}  // namespace kvx
