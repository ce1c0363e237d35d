// kvx reactions: the support forces and the balance.
#include <nlohmann/json.hpp>

#include "commands/commands.h"
#include "commands/open_results.h"
#include "commands/reactions_tables.h"
#include "commands/refuse_results.h"
#include "report/stop.h"

namespace kvx {

namespace {

constexpr const char* Name = "kvx reactions";

std::string ReactionsText(const korvex::Model& model, const Reactions& reactions) {
  const TextStyle style = ChooseStyle(ColorChoice::Never);
  ResultTable sums = MakeSumTable(reactions);
  sums.notes = ListBalanceNotes(model, reactions);
  sums.notes.emplace_back(ReactionSigns);
  std::string text = TableText(MakeSupportTable(reactions), style) + '\n';
  if (!reactions.moved.empty()) text += TableText(MakeMovedTable(model, reactions), style) + '\n';
  return text + TableText(sums, style);
}

std::string OutputText(const ReactionsCommand& command, const korvex::Model& model,
                       const Reactions& reactions) {
  if (command.form == OutputForm::Csv) return TableCsv(MakeReactionsCsv(model, reactions));
  if (command.form == OutputForm::Json) return JsonLine(ReactionsJson(model, reactions));
  return ReactionsText(model, reactions);
}

}  // namespace

ExitStatus RunReactions(const ReactionsCommand& command) {
  OpenedResults results;
  const ExitStatus opened = OpenResults(Name, command.place, results);
  if (opened != ExitFine) return opened;
  const ExitStatus refused = RefuseResults(Name, results.reading, results.solved);
  if (refused != ExitFine) return refused;
  Reactions reactions;
  try {
    ComputeReactions(results.solved, reactions);
  } catch (const korvex::Stop& stop) {
    Complain(Name, '"' + results.file.file + "\": " + stop.text);
    return ExitUnusableData;
  }
  const ExitStatus written = WriteOutput(OutputText(command, results.solved.model, reactions));
  if (written != ExitFine) return written;
  return results.errors > 0 || !IsBalanced(reactions) ? ExitFindings : ExitFine;
}

}  // namespace kvx
