#include "commands/export_cases.h"

#include <algorithm>
#include <system_error>

#include "audit/whole_file.h"
#include "cases/load_tables.h"
#include "commands/case_place.h"
#include "commands/export_envelopes.h"
#include "commands/export_model.h"
#include "commands/load_model.h"
#include "commands/progress.h"
#include "commands/speak.h"
#include "deck/read_tables.h"
#include "report/stop.h"
#include "vtu/pvd_file.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* EnvelopeVtu = "envelope.vtu";

// The cases of a case file, and where their results are.
struct CaseResults {
  std::string file;                   // the case file, as the user would write it
  std::vector<std::string> names;     // cases, then combinations: row by row
  std::vector<EnvelopeOf> envelopes;  // by rows of names
  std::string results;                // their folder, as the user would write it, with a slash
  fs::path output;                    // absolute
  std::string shown;                  // of the output, with a slash
};

// A complaint that ends the work.
struct Refusal {
  ExitStatus status;
  std::string complaint;
};

std::string Load(const fs::path& place) {
  std::error_code error;
  const fs::path start = fs::current_path(error);
  LoadedModel file;
  std::string complaint;
  const ExitStatus status = LoadModel(place.u8string(), file, complaint);
  if (!start.empty()) fs::current_path(start, error);
  if (status != ExitFine) throw Refusal{status, complaint};
  return std::move(file.text);
}

std::string WithSlash(const fs::path& folder) {
  const std::string text = folder.u8string();
  return text.empty() || text.back() == '/' ? text : text + '/';
}

// The case "base" is there where the structure has loads of its own.
void ReadNames(CaseResults& cases) {
  const fs::path folder = fs::u8path(cases.file).parent_path();
  CaseFile file;
  ReadCaseFile(Load(fs::u8path(cases.file)), file);
  korvex::ModelTables tables;
  korvex::ReadTables(Load((folder / fs::u8path(file.structure)).lexically_normal()), {}, tables);
  if (HasLoads(tables)) AddBaseCase(file);
  for (const LoadCase& each : file.cases) cases.names.push_back(each.name);
  for (const Combination& each : file.combinations) cases.names.push_back(each.name);
  std::vector<CaseFactors> factors;
  ResolveCombinations(file, factors);  // for what it refuses
  ResolveEnvelopes(file, cases.envelopes);
}

void ChooseFolders(const ExportCommand& command, CaseResults& cases) {
  const fs::path results = ResultsOfCases(cases.file, command.results);
  const fs::path output = command.output.empty() ? results : fs::u8path(command.output);
  std::error_code error;
  cases.results = WithSlash(results);
  cases.shown = WithSlash(output);
  cases.output = fs::absolute(output, error).lexically_normal();
}

// Nothing is written unless all cases are there.
void CheckResults(const CaseResults& cases) {
  for (const std::string& name : cases.names) {
    std::error_code error;
    if (fs::exists(fs::u8path(cases.results) / fs::u8path(name) / ModelFileName, error)) continue;
    throw Refusal{ExitMissingInput,
                  DescribeMissingCase(cases.file, name, fs::u8path(cases.results))};
  }
}

void WriteEnvelope(const CaseResults& cases, std::size_t k, const MeshResults& results,
                   const PointEnvelope& envelope, MadeFolders& made) {
  const std::string folder = EnvelopeFolderPrefix + cases.envelopes[k].name;
  EnterOutput(cases.output / fs::u8path(folder), made);
  MeshGrid mesh;
  BuildEnvelopeGrid(results, envelope, mesh);
  const std::string shown = cases.shown + folder + '/';
  WriteGrid(EnvelopeVtu, shown, mesh.grid);
  std::string names;
  for (const std::size_t row : cases.envelopes[k].of) {
    names += (names.empty() ? "" : ", ") + cases.names[row];
  }
  SayExported(shown + EnvelopeVtu + ": envelope of " + names + ".\n");
}

// What becomes of a case when its files are there. The envelopes are written with the last one,
// because they need a mesh.
void TakeCase(const ExportCommand& command, const CaseResults& cases, std::size_t row,
              const MeshResults& results, std::vector<PointEnvelope>& envelopes,
              MadeFolders& made) {
  if (!command.vtu) return;
  for (std::size_t k = 0; k < envelopes.size(); ++k) {
    const std::vector<std::size_t>& of = cases.envelopes[k].of;
    if (!std::binary_search(of.begin(), of.end(), row)) continue;
    AddToPointEnvelope(results, command.shared, row, envelopes[k]);
  }
  if (row + 1 < cases.names.size()) return;
  for (std::size_t k = 0; k < envelopes.size(); ++k) {
    WriteEnvelope(cases, k, results, envelopes[k], made);
  }
}

// name: of the file of each case, in its folder.
void WriteCollection(const CaseResults& cases, const std::string& suffix, const std::string& name,
                     MadeFolders& made) {
  std::vector<PvdEntry> entries;
  const std::string below = '/' + name;
  for (const std::string& each : cases.names) {
    entries.push_back({each, each});
    entries.back().file += below;
  }
  const std::string file = fs::u8path(cases.file).stem().u8string() + suffix + ".pvd";
  EnterOutput(cases.output, made);
  WriteWholeFile(fs::u8path(file).string(),
                 [&](std::ostream& stream) { stream << PvdText(entries); });
  std::string names;
  for (std::size_t row = 0; row < cases.names.size(); ++row) {
    names += (row == 0 ? "" : ", ") + std::to_string(row) + ' ' + cases.names[row];
  }
  SayExported(cases.shown + file + ": time steps " + names + ".\n");
}

ExitStatus ExportAll(const ExportCommand& command, const CaseResults& cases) {
  MadeFolders made;
  std::vector<PointEnvelope> envelopes(cases.envelopes.size());
  ExitStatus gravest = ExitFine;
  bool hasBeams = false;
  for (std::size_t row = 0; row < cases.names.size(); ++row) {
    StopIfInterrupted();
    ModelExport job;
    job.place = cases.results + cases.names[row];
    job.folder = cases.output / fs::u8path(cases.names[row]);
    job.shown = cases.shown + cases.names[row] + '/';
    const ExitStatus status = ExportModel(command, job, [&](const MeshResults& results) {
      hasBeams = results.hasDetails;
      TakeCase(command, cases, row, results, envelopes, made);
    });
    if (status != ExitFine && status != ExitFindings) return status;
    gravest = std::max(gravest, status);
  }
  if (!command.vtu) return gravest;
  std::error_code error;
  const fs::path start = fs::current_path(error);
  const ExitStatus written = TryExport(cases.file, [&] {
    WriteCollection(cases, "", "model.vtu", made);
    if (hasBeams) WriteCollection(cases, "-details", "model-details.vtu", made);
  });
  fs::current_path(start, error);
  return std::max(gravest, written);
}

}  // namespace

ExitStatus ExportCases(const ExportCommand& command, const std::string& file) {
  CaseResults cases;
  cases.file = file;
  try {
    const ExitStatus read = TryExport(file, [&] { ReadNames(cases); });
    if (read != ExitFine) return read;
    ChooseFolders(command, cases);
    CheckResults(cases);
  } catch (const Refusal& reason) {
    Complain(ExportName, reason.complaint);
    return reason.status;
  }
  return ExportAll(command, cases);
}

}  // namespace kvx
