#include "commands/top_report.h"

#include <nlohmann/json.hpp>

#include "commands/number_json.h"
#include "commands/origin_columns.h"
#include "commands/origin_words.h"
#include "commands/peak_tables.h"
#include "commands/quantity_names.h"
#include "commands/result_table.h"
#include "commands/speak.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

// What all lists are shown with.
struct Shown {
  const TopCommand& command;
  const korvex::Model& model;
  const ModelOrigin& origin;
};

ShownPeaks Show(const Shown& with, const PeakList& list) {
  const TopCommand& command = with.command;
  return {with.model, list, command.yield,
          command.everywhere ? BeamPlace::Everywhere : BeamPlace::MidLength, with.origin};
}

ResultTable WithOrigin(const ShownPeaks& shown, ResultTable table) {
  AddOriginColumns(shown.origin, ColumnReader::Program, table);
  return table;
}

std::string AnswerText(const std::string& file, const Shown& with, const TopAnswer& answer) {
  const TextStyle style = ChooseStyle(ColorChoice::Never);
  std::string text = CleanText(file) + '\n';
  const auto addLine = [&](const std::string& line) {
    if (!line.empty()) text += WrapText(CleanText(line), style.width, "", "  ");
  };
  for (const std::string& line : answer.missing) addLine(line);
  for (const PeakList& list : answer.lists) {
    const ShownPeaks shown = Show(with, list);
    if (list.peaks.empty()) {
      addLine(PeakTitle(shown));
    } else {
      text += TableText(MakeShortPeakTable(shown), style);
    }
    addLine(YieldSentence(shown));
    addLine(NotFiniteSentence(shown));
    text += '\n';
  }
  for (const std::string& note : answer.notes) addLine(note);
  return text;
}

// One table of all lists.
std::string AnswerCsv(const Shown& with, const TopAnswer& answer) {
  ResultTable all;
  all.columns = {"quantity", "group"};
  const std::vector<std::string> columns = ListPeakColumns();
  all.columns.insert(all.columns.end(), columns.begin(), columns.end());
  all.notes = answer.missing;
  for (const std::string& note : answer.notes) all.notes.push_back(note);
  all.notes.emplace_back("Units of the model; x, y, z global. Numbers count from 0, ranks from 1.");
  for (const PeakList& list : answer.lists) {
    const ShownPeaks shown = Show(with, list);
    for (const std::string& note :
         {PeakTitle(shown), YieldSentence(shown), NotFiniteSentence(shown)}) {
      if (!note.empty()) all.notes.push_back(note);
    }
    const ResultTable table = MakePeakTable(shown);
    for (std::size_t k = 0; k < table.cells.size(); ++k) {
      if (k % columns.size() == 0) {
        all.cells.emplace_back(QuantityName(list.quantity));
        all.cells.emplace_back(GroupName(list));
      }
      all.cells.push_back(table.cells[k]);
    }
  }
  AddOriginColumns(with.origin, ColumnReader::Program, all);
  return TableCsv(all);
}

Json ListJson(const ShownPeaks& shown) {
  const PeakList& list = shown.list;
  Json json;
  json["quantity"] = QuantityName(list.quantity);
  json["group"] = list.grouping == Grouping::Whole ? Json(nullptr) : Json(GroupName(list));
  const std::string name = NameOfGroup(shown.origin, list.grouping, list.sectionType, list.group);
  if (!name.empty()) json["deck_group"] = name;
  json["compared"] = list.compared;
  json["beyond_yield"] = shown.yield > 0.0 ? Json(list.beyondYield) : Json(nullptr);
  json["peaks"] = TableJson(WithOrigin(shown, MakePeakTable(shown)));
  json["not_finite"] = list.notFinite;
  json["first_not_finite"] = TableJson(WithOrigin(shown, MakeNotFiniteTable(shown)));
  return json;
}

std::string AnswerJson(const Shown& with, const TopAnswer& answer) {
  const TopCommand& command = with.command;
  Json json;
  json["averaged"] = !command.unaveraged;
  json["everywhere"] = command.everywhere;
  json["yield"] = command.yield > 0.0 ? NumberJson(command.yield) : Json(nullptr);
  json["lists"] = Json::array();
  for (const PeakList& list : answer.lists) {
    json["lists"].push_back(ListJson(Show(with, list)));
  }
  return JsonLine(json);
}

}  // namespace

std::string TopOutput(const TopCommand& command, const std::string& file,
                      const korvex::Model& model, const ModelOrigin& origin,
                      const TopAnswer& answer) {
  const Shown with{command, model, origin};
  switch (command.form) {
    case OutputForm::Csv:
      return AnswerCsv(with, answer);
    case OutputForm::Json:
      return AnswerJson(with, answer);
    default:
      return AnswerText(file, with, answer);
  }
}

}  // namespace kvx
