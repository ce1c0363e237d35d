// kvx renumber: gives the nodes of a model the numbers with which its matrix is smallest, and their
// old ones back.
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "commands/commands.h"
#include "commands/number_map.h"
#include "commands/numbered_model.h"
#include "commands/progress.h"
#include "commands/regular_file.h"
#include "commands/renumber_folder.h"
#include "commands/renumber_report.h"
#include "platform/vector_bits.h"
#include "renumber/orders.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* Name = "kvx renumber";

// New numbers that save less than this of the work are not worth it.
constexpr double LeastSaving = 0.01;

[[noreturn]] void Refuse(const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::Notice, reason};
}

// Whether the folder has a map of this model: read into `map`. What lies there and is none, or
// cannot be read, would be lost under the new one.
bool FindMap(const NumberedModel& model, NumberMap& map, std::vector<std::string>& notes) {
  std::string text, reason;
  std::error_code error;
  if (!fs::exists(NumberMapFileName, error)) return false;
  if (!ReadRegularFile(NumberMapFileName, text)) reason = "cannot be read";
  if (reason.empty() && ReadNumberMap(text, map, reason)) {
    if (map.old.size() == model.tables.Nodes.size() && map.nodes == HashNodes(model.tables)) {
      return true;
    }
    notes.push_back(std::string("The ") + NumberMapFileName +
                    " that was there belongs to other nodes, and is replaced.");
    map = {};
    return false;
  }
  Refuse(std::string(NumberMapFileName) + ' ' + reason +
         ". Remove it, if the numbers before need not come back.");
}

// The best order; the map leads on to the first numbers.
void FindOrder(const NumberedModel& model, Renumbering& renumbering, RenumberReport& report) {
  Progress progress;
  BeginProgress("Looking for a better order", progress);
  BestOrder best;
  FindBestOrder(model.tables, model.graph, best);
  report.size = PredictSize(best, korvex::WidestVectorBits());
  report.isWorth = best.cost.work < (1.0 - LeastSaving) * best.givenCost.work;
  if (!report.isWorth) return;
  NumberMap& map = renumbering.map;
  if (!FindMap(model, map, report.notes)) {
    map.old = GivenOrder(model.graph);
    map.before = {IdentifyModelFile(model.file.text), best.givenCost};
  }
  std::vector<std::int32_t> old(best.order.size());
  for (std::size_t row = 0; row < old.size(); ++row) {
    old[row] = map.old[static_cast<std::size_t>(best.order[row])];
  }
  map.old = std::move(old);
  map.order = best.name;
  map.after.cost = best.cost;
  renumbering.order = std::move(best.order);
}

// The order of the first numbers.
void FindFirstOrder(const NumberedModel& model, Renumbering& renumbering, RenumberReport& report) {
  std::string text, reason;
  if (!ReadRegularFile(NumberMapFileName, text)) {
    Refuse(std::string("there is no ") + NumberMapFileName +
           " beside it: kvx renumber has not changed its numbers.");
  }
  NumberMap map;
  if (!ReadNumberMap(text, map, reason)) Refuse(std::string(NumberMapFileName) + ' ' + reason + '.');
  if (map.old.size() != model.tables.Nodes.size()) {
    Refuse("it has " + std::to_string(model.tables.Nodes.size()) + " nodes, " + NumberMapFileName +
           " has " + std::to_string(map.old.size()) +
           ". Nodes were added or removed since it was renumbered: their first numbers are gone.");
  }
  if (map.nodes != HashNodes(model.tables)) {
    Refuse(std::string("its nodes are not those that were renumbered: coordinates differ from ") +
           NumberMapFileName +
           ". Nodes were moved since, or the file was replaced: which is which cannot be told.");
  }
  BestOrder first;
  first.givenCost = MeasureOrder(model.graph, GivenOrder(model.graph));
  renumbering.order = InvertOrder(map.old);
  first.cost = MeasureOrder(model.graph, renumbering.order);
  report.size = PredictSize(first, korvex::WidestVectorBits());
  renumbering.isUndo = true;
}

void Renumber(const RenumberCommand& command, NumberedModel& model, RenumberReport& report) {
  ReadNumbered(model);
  report.nodes = model.tables.Nodes.size();
  Renumbering renumbering;
  if (command.undo) {
    FindFirstOrder(model, renumbering, report);
  } else {
    FindOrder(model, renumbering, report);
  }
  StopIfInterrupted();
  if (!report.isWorth) return;
  std::vector<MovedFile> files;
  PlanFiles(renumbering, model, files, report);
  if (!command.dryRun) WriteFiles(renumbering, model, files, report);
}

// Does the work, or says why that is not possible.
ExitStatus TryRenumber(const RenumberCommand& command, NumberedModel& model,
                       RenumberReport& report) {
  const auto giveUp = [&](ExitStatus status, const std::string& reason) {
    Complain(Name, '"' + model.file.file + "\": " + reason);
    return status;
  };
  try {
    Renumber(command, model, report);
  } catch (const korvex::Stop& stop) {
    const bool isOutput = stop.kind == korvex::StopKind::ResultFile;
    return giveUp(isOutput ? ExitOutputFailed : ExitUnusableData, stop.text);
  } catch (const std::bad_alloc&) {
    return giveUp(ExitUnusableData, "there is not enough memory for it.");
  } catch (const fs::filesystem_error& error) {
    return giveUp(ExitOutputFailed, error.code().message() + '.');
  }
  return ExitFine;
}

}  // namespace

ExitStatus RunRenumber(const RenumberCommand& command) {
  CatchInterrupts();
  NumberedModel model;
  std::string complaint;
  ExitStatus status = LoadModel(command.place, model.file, complaint);
  if (status == ExitFine && !IsModelOfFolder(model.file)) {
    complaint = '"' + model.file.file + "\" cannot be renumbered where it is: " +
                NumberMapFileName + " belongs to the file " + ModelFileName +
                " of its folder. Give it this name in a folder of its own.";
    status = ExitUsage;
  }
  if (status != ExitFine) {
    Complain(Name, complaint);
    return status;
  }
  RenumberReport report;
  report.place = command.place;
  report.file = model.file.file;
  report.isUndo = command.undo;
  report.isDryRun = command.dryRun;
  status = TryRenumber(command, model, report);
  if (status != ExitFine) return status;
  return WriteOutput(command.json ? RenumberJson(report)
                                  : RenumberText(report, ChooseStyle(command.color)));
}

}  // namespace kvx
