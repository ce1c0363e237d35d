// kvx forces: section forces of beams, forces and moments of shells.
#include "commands/forces.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "audit/check_solved.h"
#include "commands/number_list.h"
#include "commands/open_results.h"
#include "commands/refuse_results.h"
#include "report/stop.h"

namespace kvx {

using korvex::Model;

namespace {

constexpr const char* Name = "kvx forces";

// The lists as they were typed; not given: no ranges.
struct TypedLists {
  NumberList beams, shells, triangles;
};

bool ParseList(const char* option, const std::optional<std::string>& typed, NumberList& list) {
  std::string complaint;
  if (!typed || ParseNumberList(*typed, list, complaint)) return true;
  Complain(Name, std::string(option) + ' ' + complaint);
  return false;
}

// What can be said of the options before the model is opened.
ExitStatus CheckOptions(const ForcesCommand& command, TypedLists& lists) {
  if (!ParseList("--beam", command.beams, lists.beams) ||
      !ParseList("--shell", command.shells, lists.shells) ||
      !ParseList("--triangle", command.triangles, lists.triangles)) {
    return ExitUsage;
  }
  const bool hasShells = command.shells || command.triangles;
  if (command.beams && hasShells && command.form == OutputForm::Csv) {
    Complain(Name, "--csv holds one table: ask for beams and for shells one after the other.");
    return ExitUsage;
  }
  return ExitFine;
}

bool Resolve(const char* option, const NumberList& list, std::size_t count, const char* name,
             std::vector<std::int32_t>& numbers) {
  std::string complaint;
  if (ResolveNumberList(list, count, name, numbers, complaint)) return true;
  Complain(Name, std::string(option) + ": " + complaint);
  return false;
}

void AddShells(ElementKind kind, const std::vector<std::int32_t>& rows, ForcesChoice& choice) {
  for (const std::int32_t row : rows) choice.shells.push_back({kind, row});
}

ExitStatus ChooseNamed(const Model& model, const ForcesCommand& command, const TypedLists& lists,
                       ForcesChoice& choice) {
  std::vector<std::int32_t> rows;
  if (command.beams &&
      !Resolve("--beam", lists.beams, model.BeamElements.size(), "beam", choice.beams)) {
    return ExitUsage;
  }
  if (command.shells) {
    if (!Resolve("--shell", lists.shells, model.Shell4Elements.size(), "four-node shell", rows)) {
      return ExitUsage;
    }
    AddShells(ElementKind::Shell4, rows, choice);
  }
  if (command.triangles) {
    if (!Resolve("--triangle", lists.triangles, model.Shell3Elements.size(), "three-node shell",
                 rows)) {
      return ExitUsage;
    }
    AddShells(ElementKind::Shell3, rows, choice);
  }
  choice.hasBeamList = command.beams.has_value();
  choice.hasShellList = command.shells || command.triangles;
  return ExitFine;
}

// All beams; without beams, all shells.
ExitStatus ChooseAll(const Model& model, const ForcesCommand& command, ForcesChoice& choice) {
  const bool asksForShells = command.axis.byAxis || command.corners;
  const NumberList all{true, {}};
  std::vector<std::int32_t> rows;
  std::string ignored;
  if (!model.BeamElements.empty()) {
    if (asksForShells) {
      Complain(Name, "--axis and --corners are for shells: name them by --shell or --triangle.");
      return ExitUsage;
    }
    ResolveNumberList(all, model.BeamElements.size(), "", choice.beams, ignored);
    return ExitFine;
  }
  ResolveNumberList(all, model.Shell4Elements.size(), "", rows, ignored);
  AddShells(ElementKind::Shell4, rows, choice);
  ResolveNumberList(all, model.Shell3Elements.size(), "", rows, ignored);
  AddShells(ElementKind::Shell3, rows, choice);
  if (!choice.shells.empty()) return ExitFine;
  Complain(Name, "the model has no elements.");
  return ExitUnusableData;
}

void AddText(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
             OutputBlocks& blocks) {
  if (!choice.beams.empty()) AddBeamOutput(model, command, choice, blocks);
  if (!choice.beams.empty() && !choice.shells.empty()) AddOutput("\n", blocks);
  if (!choice.shells.empty()) AddShellText(model, command, choice, blocks);
}

std::string NotesJson(const std::vector<std::string>& notes) {
  std::string text = JsonLine(notes);
  text.pop_back();
  return text;
}

// One object, a line for each element.
void AddJson(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
             OutputBlocks& blocks) {
  AddOutput("{", blocks);
  if (!choice.beams.empty()) {
    AddOutput("\"beam_notes\":" + NotesJson(ListBeamNotes()) + ",\"beams\":", blocks);
    AddBeamOutput(model, command, choice, blocks);
  }
  if (!choice.beams.empty() && !choice.shells.empty()) AddOutput(",", blocks);
  if (!choice.shells.empty()) {
    AddOutput("\"shell_notes\":" + NotesJson(ListShellNotes(command.axis)) + ",\"shells\":",
              blocks);
    AddShellJson(model, command, choice, ElementKind::Shell4, blocks);
    AddOutput(",\"triangles\":", blocks);
    AddShellJson(model, command, choice, ElementKind::Shell3, blocks);
  }
  AddOutput("}\n", blocks);
}

void AddChosen(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
               OutputBlocks& blocks) {
  CheckSolvedModel(model);
  if (command.form == OutputForm::Json) {
    AddJson(model, command, choice, blocks);
  } else if (command.form == OutputForm::Text) {
    AddText(model, command, choice, blocks);
  } else if (!choice.beams.empty()) {
    AddBeamOutput(model, command, choice, blocks);
  } else {
    AddShellCsv(model, command, choice, blocks);
  }
}

}  // namespace

ExitStatus RunForces(const ForcesCommand& command) {
  TypedLists lists;
  const ExitStatus checked = CheckOptions(command, lists);
  if (checked != ExitFine) return checked;
  OpenedResults results;
  const ExitStatus opened = OpenResults(Name, command.place, results);
  if (opened != ExitFine) return opened;
  const Model& model = results.solved.model;
  const bool hasList = command.beams || command.shells || command.triangles;
  ForcesChoice choice;
  choice.origin = std::move(results.origin);
  const ExitStatus chosen =
      hasList ? ChooseNamed(model, command, lists, choice) : ChooseAll(model, command, choice);
  if (chosen != ExitFine) return chosen;
  const ExitStatus refused = RefuseResults(Name, results.reading, results.solved);
  if (refused != ExitFine) return refused;
  OutputBlocks blocks;
  try {
    AddChosen(model, command, choice, blocks);
  } catch (const korvex::Stop& stop) {
    Complain(Name, '"' + results.file.file + "\": " + stop.text);
    return ExitUnusableData;
  }
  const ExitStatus written = EndOutput(blocks);
  if (written != ExitFine) return written;
  return results.errors > 0 ? ExitFindings : ExitFine;
}

}  // namespace kvx
