// kvx view: the model and its results as a page that a browser shows.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <new>
#include <system_error>

#include "audit/whole_file.h"
#include "check/describe.h"
#include "commands/audit_report.h"
#include "commands/case_place.h"
#include "commands/case_record.h"
#include "commands/check_report.h"
#include "commands/commands.h"
#include "commands/core_count.h"
#include "commands/load_model.h"
#include "commands/progress.h"
#include "commands/recover_stresses.h"
#include "commands/structure_difference.h"
#include "commands/view_model.h"
#include "commands/view_page.h"
#include "commands/view_places.h"
#include "finding/text_layout.h"
#include "report/stop.h"
#include "view/detail_count.h"
#include "view/page_text.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* Name = "kvx view";
constexpr const char* PageFileName = "view.html";

// Detail models of more shells are left out unless they are asked for: together with their stresses
// these make a page of 3 MB.
constexpr double MostDetailShells = 60000.0;

// With more shells they are not even made for the one stress of each beam: 189512 shells, those of
// examples/lattice-tower, take about 1 s and 0.3 GB.
constexpr double MostShellsMade = 300000.0;

enum class Details { None, Stresses, Models };  // Stresses: one of each beam

// What ends the work: its complaint is said where it is caught.
struct Refusal {
  ExitStatus status;
  std::string complaint;
};

struct ViewRun {
  const ViewCommand* command = nullptr;
  fs::path start;  // the current folder of the user
  ViewPlaces places;
  fs::path page;          // absolute
  std::string shown;      // its name as the user would write it
  std::string structure;  // the model file that gives it, as the user would write it
  PageDraft draft;
  std::size_t errors = 0;   // of models and their results
  bool hasRefused = false;  // a model that could not be solved
};

void CheckOptions(const ViewCommand& command) {
  const auto refuseWithModel = [&](bool isGiven, const std::string& option) {
    if (!command.modelAlone || !isGiven) return;
    throw Refusal{ExitUsage,
                  option + " shows results, which --model leaves out. Name one of the two."};
  };
  refuseWithModel(command.details.value_or(false), "--details");
  refuseWithModel(command.averagedAlone, "--averaged");
  if (!command.results.empty() &&
      std::none_of(command.places.begin(), command.places.end(), IsCaseFile)) {
    throw Refusal{ExitUsage, ResultsWithoutCases};
  }
}

// Whether the file begins as pages of kvx view do: by the mark of companion/view/page/index.html.
bool IsPage(const fs::path& file) {
  constexpr const char* Mark = "<meta name=\"generator\" content=\"kvx view\">";
  constexpr std::size_t Head = 512;  // the mark stands in its first lines
  std::string begin(Head, ' ');
  std::ifstream stream(file, std::ios::binary);
  stream.read(begin.data(), static_cast<std::streamsize>(begin.size()));
  return begin.find(Mark) != std::string::npos;
}

// A file that is no page stays: it may be the model, or a report.
void CheckPlace(const ViewRun& run) {
  std::error_code error;
  const fs::file_status status = fs::status(run.page, error);
  if (!fs::exists(status)) return;
  if (fs::is_directory(status)) {
    throw Refusal{ExitOutputFailed, '"' + run.shown + "\" is a folder. Name a file with -o."};
  }
  if (!fs::is_regular_file(status)) {  // to open a pipe would wait for another program
    throw Refusal{ExitOutputFailed, '"' + run.shown + "\" is no file. Name a file with -o."};
  }
  if (IsPage(run.page)) return;
  throw Refusal{ExitOutputFailed, '"' + run.shown +
                                      "\" is no page of kvx view and is left as it is. Name "
                                      "another file with -o."};
}

// It may take long until there is a page to write.
void TryToWrite(const ViewRun& run) {
  const fs::path trial = fs::u8path(NameBeside(run.page.u8string()));
  errno = 0;
  const bool canWrite = std::ofstream(trial, std::ios::app).is_open();
  const int reason = errno;
  std::error_code error;
  fs::remove(trial, error);
  if (canWrite) return;
  throw Refusal{ExitOutputFailed,
                run.shown + " cannot be written: " + std::generic_category().message(reason) + '.'};
}

void ChoosePage(ViewRun& run) {
  const std::string& output = run.command->output;
  if (output.empty()) {
    run.page = run.places.folder / PageFileName;
    run.shown = run.places.shownFolder + PageFileName;
  } else {
    run.page = (run.start / fs::u8path(output)).lexically_normal();
    run.shown = output;
  }
  CheckPlace(run);
  TryToWrite(run);
}

void Open(const std::string& place, bool isChecked, const ViewRun& run, ViewedModel& viewed) {
  std::error_code error;
  fs::current_path(run.start, error);
  std::string complaint;
  const ExitStatus opened = OpenViewed(place, isChecked, viewed, complaint);
  if (opened != ExitFine) throw Refusal{opened, complaint};
}

// The model must be the structure with other loads.
void CheckStructure(const ViewRun& run, const ViewedModel& viewed) {
  const std::string difference = DescribeDifference(run.draft.tables, TablesOf(viewed));
  if (difference.empty()) return;
  throw Refusal{ExitUnusableData, '"' + viewed.file.file + "\" " + difference +
                                      ": load cases must have the same structure as \"" +
                                      run.structure +
                                      (run.places.isCaseFile ? "\". Run kvx cases again." : "\".")};
}

// What the page gets of detail models; says in a notice how to get all where that is less.
Details ChooseDetails(const korvex::ModelTables& tables, ViewRun& run) {
  const std::optional<bool>& choice = run.command->details;
  if (tables.BeamProperties.empty()) return Details::None;
  if (choice.has_value()) return *choice ? Details::Models : Details::None;
  const double shells = CountDetailShells(tables) * static_cast<double>(run.places.cases.size());
  if (shells <= MostDetailShells) return Details::Models;
  const bool hasStresses = shells <= MostShellsMade;
  AddNotice("The detail models of beams are left out: they have " + NumberText(shells) +
                " shells. " +
                (hasStresses ? "Their largest stresses at mid-length are there. " : "") +
                "kvx view --details adds them.",
            run.draft);
  return hasStresses ? Details::Stresses : Details::None;
}

DetailWish WishFor(Details details) {
  if (details == Details::None) return DetailWish::None;
  return details == Details::Models ? DetailWish::Models : DetailWish::Peaks;
}

// Returns whether detail models were made.
bool MakeStresses(Details details, ViewedModel& viewed) {
  try {
    RecoverStresses(WishFor(details), {}, viewed.solved);
    return details != Details::None;
  } catch (const korvex::Stop& stop) {
    if (details == Details::None) throw;
    viewed.note +=
        (viewed.note.empty() ? "" : " ") + ("There are no detail models of beams: " + stop.text);
    Complain(Name, '"' + viewed.file.file + "\": " + viewed.note);
    viewed.solved.model.BeamShellModels.clear();
    return false;
  }
}

void NoteNotFinite(const NotFinite& bad, ViewedModel& viewed) {
  if (bad.nodes == 0) return;
  const std::string text = "The displacements of " +
                           CountText(static_cast<std::size_t>(bad.nodes), "node", "nodes") +
                           " are not numbers (NaN or infinite), first those of node " +
                           std::to_string(bad.node) + ". The page shows where.";
  Complain(Name, '"' + viewed.file.file + "\": " + text);
  viewed.note += (viewed.note.empty() ? "" : " ") + text;
}

void Audit(bool hasDetails, ViewedModel& viewed, AuditReport& report, ViewRun& run) {
  AuditOptions options;
  options.threads = CountCores();
  options.comparesFiles = false;
  options.hasStresses = true;
  if (!hasDetails) options.noDetails = "they are left out.";
  options.modelText = viewed.file.text;
  options.deck = run.draft.header.origin;
  options.reading = viewed.reading;
  options.changedSources = viewed.changedSources;
  options.modelErrors = viewed.errors;
  options.firstError = viewed.firstError;
  AuditModel(options, viewed.solved, report);
  run.errors += CountFindings(report.findings, Severity::Error);
  AddPageFindings(false, viewed, report.findings, run.draft);
  NoteNotFinite(report.verdict.notFinite, viewed);
}

void AddCase(const std::string& name, ViewedModel& viewed, ViewRun& run) {
  if (!run.command->modelAlone) SolveViewed(Name, viewed);
  run.hasRefused = run.hasRefused || viewed.isRefused;
  AuditReport audit;
  if (viewed.isSolved) {
    const Details details = ChooseDetails(TablesOf(viewed), run);
    const bool hasDetails = MakeStresses(details, viewed);
    run.draft.hasDetailModels = details == Details::Models;
    Audit(hasDetails, viewed, audit, run);
  }
  const std::string before = name.empty() ? "" : "Case \"" + name + "\": ";
  if (!viewed.note.empty()) AddNotice(before + viewed.note, run.draft);
  if (!viewed.changedSources.empty()) {
    AddNotice(before + viewed.changedSources + ' ' + ChangedSourcesRemedy, run.draft);
  }
  AddPageCase(name, viewed, audit, run.draft);
}

// Folders: the first gives the structure.
void AddFolders(ViewRun& run) {
  for (const ViewPlace& each : run.places.cases) {
    ViewedModel viewed;
    Open(each.place, true, run, viewed);
    run.errors += viewed.errors;
    if (run.draft.scripts.empty()) {
      run.structure = viewed.file.file;
      BeginPage(viewed, run.draft);
    } else {
      CheckStructure(run, viewed);
    }
    AddPageFindings(false, viewed, viewed.check.findings, run.draft);
    AddCase(each.name, viewed, run);
  }
}

// A case file: its cases are the structure with other loads, checked when they were made.
void AddCases(ViewRun& run) {
  ViewedModel structure;
  Open(run.places.structure, true, run, structure);
  run.errors += structure.errors;
  run.structure = structure.file.file;
  DropNoLoads(structure.check.findings);
  BeginPage(structure, run.draft);
  AddPageFindings(true, structure, structure.check.findings, run.draft);
  for (const ViewPlace& each : run.places.cases) {
    ViewedModel viewed;
    Open(each.place, false, run, viewed);
    CheckStructure(run, viewed);
    viewed.errors = structure.errors;
    viewed.firstError = structure.firstError;
    AddCase(each.name, viewed, run);
  }
}

// Two digits are enough to know whether it goes into a mail.
std::string SizeText(std::uintmax_t bytes) {
  constexpr double Megabyte = 1e6, Ten = 10.0;
  std::array<char, 32> text{};
  const double size = static_cast<double>(bytes) / Megabyte;
  std::snprintf(text.data(), text.size(), size < Ten ? "%.1f MB" : "%.0f MB", size);
  return text.data();
}

// The name of the page in its folder, as files are opened by it: not every system can say each.
std::string NameHere(const ViewRun& run) {
  try {
    return run.page.filename().string();
  } catch (const std::system_error&) {
    throw Refusal{ExitOutputFailed, run.shown +
                                        " cannot be written here under this name. Name "
                                        "another file with -o."};
  }
}

void Write(const ViewRun& run) {
  std::error_code error;
  fs::current_path(run.page.parent_path(), error);
  if (error) {
    throw Refusal{ExitOutputFailed, run.shown + " cannot be written: " + error.message() + '.'};
  }
  const PageHeader& header = run.draft.header;
  const std::string json = PageHeaderJson(header, run.draft.tables), name = NameHere(run);
  try {
    WriteWholeFile(name, [&](std::ostream& stream) {
      WritePage(header.title, json, run.draft.scripts, stream);
    });
  } catch (const korvex::Stop& stop) {  // it begins with the name
    throw Refusal{ExitOutputFailed, run.shown + stop.text.substr(name.size())};
  }
}

ExitStatus View(ViewRun& run) {
  CheckOptions(*run.command);
  std::error_code error;
  run.start = fs::current_path(error);
  std::string complaint;
  const ExitStatus listed =
      ListViewPlaces(run.command->places, run.command->results, run.places, complaint);
  if (listed != ExitFine) throw Refusal{listed, complaint};
  ChoosePage(run);
  if (run.places.isCaseFile) {
    AddCases(run);
  } else {
    AddFolders(run);
  }
  EndPage(run.draft);
  Write(run);
  const ExitStatus written =
      WriteOutput(run.shown + ": " + SizeText(fs::file_size(run.page, error)) +
                  ". Open it with a double click.\n");
  if (written != ExitFine) return written;
  if (run.hasRefused) return ExitUnusableData;
  return run.errors > 0 ? ExitFindings : ExitFine;
}

}  // namespace

ExitStatus RunView(const ViewCommand& command) {
  CatchInterrupts();
  ViewRun run;
  run.command = &command;
  run.draft.hasCorners = !command.averagedAlone;
  try {
    return View(run);
  } catch (const Refusal& refusal) {
    Complain(Name, refusal.complaint);
    return refusal.status;
  } catch (const korvex::Stop& stop) {
    Complain(Name, stop.text);
    return stop.kind == korvex::StopKind::ResultFile ? ExitOutputFailed : ExitUnusableData;
  } catch (const std::bad_alloc&) {
    Complain(Name, "there is not enough memory for it.");
    return ExitUnusableData;
  }
}

}  // namespace kvx
