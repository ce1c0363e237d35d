#include "commands/import_job.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "audit/solved_model.h"
#include "cases/load_tables.h"
#include "commands/load_model.h"
#include "commands/origin_file.h"
#include "commands/progress.h"
#include "commands/regular_file.h"
#include "commands/terminal.h"
#include "deck/write_tables.h"
#include "mesh/abaqus/import_abaqus.h"
#include "mesh/drop_edges.h"
#include "mesh/element_names.h"
#include "mesh/gmsh/import_gmsh.h"
#include "mesh/import_map.h"
#include "mesh/map_template.h"
#include "mesh/merge_nodes.h"
#include "mesh/nastran/import_nastran.h"
#include "renumber/node_graph.h"
#include "renumber/orders.h"
#include "renumber/permute_nodes.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

std::string Quoted(const std::string& name) { return '"' + name + '"'; }

// Reads a file that the command line names.
void ReadNamed(const std::string& name, DeckFiles& files, std::string& text) {
  std::string complaint;
  const ExitStatus status = ReadDeckFile(name, files, text, complaint);
  if (status != ExitFine) throw ImportRefusal{status, complaint};
}

void ChooseFolder(ImportJob& job) {
  job.outcome.folder =
      job.command.output.empty() ? NameImportFolder(job.command.deck) : job.command.output;
  if (job.outcome.folder.empty()) {
    throw ImportRefusal{ExitUsage, "name the folder of the model with -o."};
  }
  std::error_code error;
  const fs::file_status status = fs::status(fs::u8path(job.outcome.folder), error);
  if (fs::exists(status) && !fs::is_directory(status)) {
    throw ImportRefusal{ExitOutputFailed, Quoted(job.outcome.folder) +
                                              " is a file, and cannot be the folder of the model. "
                                              "Name another one with -o."};
  }
}

void CheckFolder(const ImportJob& job) {
  const fs::path folder = fs::u8path(job.outcome.folder);
  CheckReplaceable(folder, ModelFileName, ListImportedFiles(folder), {{}, job.command.force});
}

void ReadFormat(const SourceFile& deck, ImportJob& job) {
  std::string reason;
  job.format = ChooseFormat(FormatOfWord(job.command.format), deck.name, deck.text, reason);
  const IncludeReader include = MakeIncludeReader(job.files);
  switch (job.format) {
    case DeckFormat::Gmsh:
      return ImportGmsh(deck, job.model, job.outcome.report);
    case DeckFormat::Nastran:
      return ImportNastran(deck, include, job.model, job.outcome.report);
    case DeckFormat::Abaqus:
      return ImportAbaqus(deck, include, job.model, job.outcome.report);
    default:
      throw ImportRefusal{ExitUnusableData, Quoted(deck.name) + ": " + reason};
  }
}

// Without a density gravity makes no load, and kvx cases would stop at it.
void DropWeightlessAcceleration(ImportJob& job) {
  const auto& materials = job.built.tables.Materials;
  const bool hasMass = std::any_of(materials.begin(), materials.end(),
                                   [](const auto& material) { return material.Density != 0.0; });
  if (hasMass) return;
  for (BuiltCase& each : job.built.cases) {
    if (!each.hasAcceleration) continue;
    each.hasAcceleration = false;
    ReportCard("acceleration", Fate::Lost, "no material has a density, so gravity makes no load",
               {}, each.name.empty() ? "" : "case " + each.name, job.outcome.report);
  }
  std::vector<BuiltCase>& cases = job.built.cases;
  const auto isEmpty = [](const BuiltCase& each) {
    return !each.hasAcceleration && !HasLoads(each.loads);
  };
  cases.erase(std::remove_if(cases.begin(), cases.end(), isEmpty), cases.end());
}

// The text of import.json, which names the other files.
std::string OriginText(const std::vector<FileToWrite>& files, ImportJob& job) {
  std::vector<std::string> names, hashes;
  for (const FileToWrite& file : files) {
    names.push_back(file.name);
    hashes.push_back(HashText(HashBytes(file.text)));
  }
  job.built.origin.source = fs::u8path(job.command.deck).filename().u8string();
  job.built.origin.format = job.outcome.format;
  job.built.origin.hash = HashStructure(job.built.tables);
  return WriteOrigin(job.built.origin, job.outcome.report, names, hashes);
}

// import.json first: so there is never a model without it.
void MakeFiles(ImportJob& job, std::vector<FileToWrite>& files) {
  std::vector<BuiltCase>& cases = job.built.cases;
  NameCases(cases, job.outcome.cases);
  const bool isOneFile = FitModelFile(cases);
  if (isOneFile && !cases.empty()) SwapLoads(job.built.tables, cases.front().loads);
  files.push_back({ModelFileName, korvex::WriteTables(job.built.tables)});
  if (!isOneFile) {
    files.push_back({ImportCasesFileName, CasesFileText(job.command.deck, job.outcome.cases)});
  }
  for (std::size_t k = 0; k < cases.size(); ++k) {
    if (job.outcome.cases[k].file.empty()) continue;
    files.push_back({job.outcome.cases[k].file, LoadsFileText(cases[k].loads)});
  }
  cases = {};
  std::string origin = OriginText(files, job);
  files.insert(files.begin(), {OriginFileName, std::move(origin)});
  job.outcome.check.origin = std::move(job.built.origin);
  job.built = {};
}

// Whether an edge of the element is no longer than the length of a merge. Edges without any length
// are meant to vanish.
bool HasShortEdge(const ImportModel& model, const std::int32_t* nodes, std::size_t count,
                  double length) {
  for (std::size_t k = 0; k < count; ++k) {
    const std::int32_t a = nodes[k], b = nodes[(k + 1) % count];
    if (a < 0 || b < 0) continue;
    const double edge = korvex::Length(korvex::Subtract(PlaceOf(model, a), PlaceOf(model, b)));
    if (edge > 0.0 && edge <= length) return true;
  }
  return false;
}

void WarnOfLongMerge(ImportJob& job) {
  const ImportModel& model = job.model;
  const double length = job.command.mergeLength;
  const auto warn = [&](const auto& element) {
    ReportCard("--merge", Fate::Limited,
               "its length is not less than an edge of an element, which may vanish", {},
               NameElement(model, element.type, element.number), job.outcome.report);
  };
  for (const ImportShell& shell : model.shells) {
    if (HasShortEdge(model, shell.nodes.data(), CornersOf(shell), length)) warn(shell);
  }
  for (const ImportBeam& beam : model.beams) {
    if (HasShortEdge(model, beam.nodes.data(), beam.nodes.size(), length)) warn(beam);
  }
}

// What the template is good for, said beside it.
std::string TemplateWords(const ImportJob& job) {
  const std::string name = job.command.mapTemplate;
  return Quoted(name) + " is a map of the groups of " + Quoted(job.command.deck) +
         ". Fill in its numbers, then: kvx import " + QuoteArgument(job.command.deck) + " --map " +
         QuoteArgument(name) + '\n';
}

}  // namespace

void ReadDeck(ImportJob& job) {
  const ImportCommand& command = job.command;
  job.outcome.deck = command.deck;
  if (command.mapTemplate.empty()) {
    ChooseFolder(job);
    CheckFolder(job);
  }
  SourceFile deck;
  deck.name = command.deck;
  ReadNamed(command.deck, job.files, deck.text);
  job.files.folder = fs::u8path(command.deck).parent_path();
  if (!command.map.empty()) ReadNamed(command.map, job.files, job.map);
  ReadFormat(deck, job);
  job.outcome.format = job.model.format;
}

void ApplyMap(ImportJob& job) {
  if (!job.command.map.empty()) {
    ApplyImportMap(job.map, job.command.map, job.model, job.outcome.report);
    job.map = {};
  }
  // A mesh has lines for its boundaries; in a deck each line is a beam.
  if (job.format == DeckFormat::Gmsh) DropEdges(job.model, job.outcome.report);
}

void MergeImported(ImportJob& job) {
  const double length = job.command.mergeLength;
  if (!(length > 0.0)) return;
  job.outcome.hasMerged = true;
  job.outcome.mergeLength = length;
  WarnOfLongMerge(job);
  job.outcome.merged = MergeNodes(length, job.model, job.outcome.report);
}

void CompleteImport(ImportJob& job) {
  job.outcome.hasMap = !job.command.map.empty();
  job.outcome.canMapHelp = CheckComplete(job.model, job.outcome.report);
}

void BuildImported(ImportJob& job) {
  BuildTables(job.model, job.outcome.report, job.built);
  job.model = {};
  DropWeightlessAcceleration(job);
  job.isBuilt = true;
}

void OrderImported(ImportJob& job) {
  BestOrder best;
  {
    NodeGraph graph;
    BuildNodeGraph(job.built.tables, graph);
    StopIfInterrupted();
    FindBestOrder(job.built.tables, graph, best);
  }
  job.outcome.orderName = best.name;
  job.outcome.orderCost = best.cost;
  job.outcome.givenCost = best.givenCost;
  PermuteNodes(best.order, job.built.tables);
  PermuteOrigin(best.order, job.built.origin);
  const std::vector<std::int32_t> places = InvertOrder(best.order);
  for (BuiltCase& each : job.built.cases) MoveNodeReferences(places, each.loads);
}

void WriteImported(ImportJob& job) {
  std::vector<FileToWrite> files;
  MakeFiles(job, files);
  try {
    WriteImportFiles(fs::u8path(job.outcome.folder), files, {job.files.places, job.command.force},
                     job.outcome.writing);
  } catch (korvex::Stop& stop) {
    stop.text = Quoted(job.outcome.folder) + ": " + stop.text;
    throw;
  }
  job.outcome.end = ImportEnd::Written;
  for (FileToWrite& file : files) {
    job.outcome.files.push_back(file.name);
    if (file.name == ModelFileName) job.modelText = std::move(file.text);
    const bool isLoads = file.name.rfind("loads-", 0) == 0;
    if (isLoads) job.loadsFiles.push_back(std::move(file));
  }
}

void WriteTemplate(ImportJob& job) {
  const std::string text = WriteMapTemplate(job.model);
  const std::string& name = job.command.mapTemplate;
  if (name == "-") {
    job.said = text;
    return;
  }
  WriteNewFile(name, text, {job.files.places, job.command.force, false});
  job.said = TemplateWords(job);
}

}  // namespace kvx
