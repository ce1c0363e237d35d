// kvx reactions: the support forces and the balance.
#include <nlohmann/json.hpp>

#include "commands/commands.h"
#include "commands/core_count.h"
#include "commands/open_results.h"
#include "commands/origin_columns.h"
#include "commands/reactions_tables.h"
#include "commands/refuse_results.h"
#include "report/stop.h"

namespace kvx {

namespace {

constexpr const char* Name = "kvx reactions";

// The table with the deck's numbers, where the model has such.
std::string TextOf(const OpenedResults& results, ResultTable table, const TextStyle& style) {
  AddOriginColumns(results.origin, ColumnReader::Person, table);
  return TableText(table, style);
}

std::string ReactionsText(const OpenedResults& results, const Reactions& reactions) {
  const korvex::Model& model = results.solved.model;
  const TextStyle style = ChooseStyle(ColorChoice::Never);
  ResultTable sums = MakeSumTable(reactions);
  sums.notes = ListBalanceNotes(model, results.origin, reactions);
  sums.notes.emplace_back(ReactionSigns);
  std::string text = TextOf(results, MakeSupportTable(reactions), style) + '\n';
  if (!reactions.moved.empty()) {
    text += TextOf(results, MakeMovedTable(model, reactions), style) + '\n';
  }
  return text + TableText(sums, style);
}

std::string OutputText(const ReactionsCommand& command, const OpenedResults& results,
                       const Reactions& reactions) {
  const korvex::Model& model = results.solved.model;
  if (command.form == OutputForm::Csv) {
    return TableCsv(MakeReactionsCsv(model, results.origin, reactions));
  }
  if (command.form == OutputForm::Json) {
    return JsonLine(ReactionsJson(model, results.origin, reactions));
  }
  return ReactionsText(results, reactions);
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
    ComputeReactions(results.solved, reactions, CountCores());
  } catch (const korvex::Stop& stop) {
    Complain(Name, '"' + results.file.file + "\": " + stop.text);
    return ExitUnusableData;
  }
  const ExitStatus written = WriteOutput(OutputText(command, results, reactions));
  if (written != ExitFine) return written;
  return results.errors > 0 || !IsBalanced(reactions) ? ExitFindings : ExitFine;
}

}  // namespace kvx
