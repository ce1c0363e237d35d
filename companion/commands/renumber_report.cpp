#include "commands/renumber_report.h"

#include <nlohmann/json.hpp>

#include "commands/number_json.h"
#include "commands/result_table.h"
#include "commands/terminal.h"
#include "finding/text_layout.h"

namespace kvx {

using Json = nlohmann::ordered_json;

namespace {

std::string ListText(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

std::string BeforeText(const RenumberReport& report) {
  return DescribeSize(report.size.gigabytes, report.size.seconds);
}

std::string AfterText(const RenumberReport& report) {
  return DescribeSize(report.size.bestGigabytes, report.size.bestSeconds);
}

// "1681 nodes have new numbers (Sloan)"
std::string DoneText(const RenumberReport& report) {
  const std::string nodes = CountText(report.nodes, "node", "nodes");
  if (report.isUndo) {
    return nodes + (report.isDryRun ? " would get their first numbers back"
                                    : (report.nodes == 1 ? " has its first number back"
                                                         : " have their first numbers back"));
  }
  return nodes + (report.isDryRun ? " would get new numbers" : " have new numbers") + " (" +
         report.size.bestOrder + ')';
}

// " deck"; "" for the current folder.
std::string Argument(const RenumberReport& report) {
  return report.place == "." ? "" : ' ' + QuoteArgument(report.place);
}

// The sentences behind the first one.
std::vector<std::string> ListSentences(const RenumberReport& report) {
  const bool isDry = report.isDryRun;
  std::vector<std::string> sentences;
  const auto add = [&](const std::vector<std::string>& names, const std::string& before) {
    if (!names.empty()) sentences.push_back(before + ListText(names) + '.');
  };
  add(report.moved, isDry ? "Would get them, too: " : "They are also in: ");
  add(report.written, isDry ? "Would be written anew, from the displacements that are known: "
                            : "Written anew, from the displacements that are known: ");
  add(report.removed, isDry ? "Would be removed, as results in the numbers of now: "
                            : "Removed, as results in the numbers before: ");
  add(report.stale, "Not known to be results of this model, and left as they are: ");
  for (const std::string& note : report.notes) sentences.push_back(note);
  if (!isDry && !report.isUndo) {
    sentences.push_back("renumber.json keeps the numbers before: kvx renumber" + Argument(report) +
                        " --undo gives them back, also to results.");
  }
  return sentences;
}

Json SizeJson(double gigabytes, double seconds) {
  return {{"gigabytes", NumberJson(gigabytes)}, {"seconds", NumberJson(seconds)}};
}

}  // namespace

std::string RenumberText(const RenumberReport& report, const TextStyle& style) {
  if (!report.isWorth) {
    return WrapText(CleanText(report.file + ": no better order was found, nothing is changed. "
                                            "Matrix " +
                              BeforeText(report) + '.'),
                    style.width, "", "  ");
  }
  std::string text =
      WrapText(CleanText(report.file + ": " + DoneText(report) + ". Matrix " + AfterText(report) +
                         (report.isDryRun ? "; now " : "; before ") + BeforeText(report) + '.'),
               style.width, "", "  ");
  for (const std::string& sentence : ListSentences(report)) {
    text += WrapText(CleanText(sentence), style.width, "  ", "  ");
  }
  return text;
}

std::string RenumberJson(const RenumberReport& report) {
  Json json;
  json["file"] = report.file;
  json["order"] = report.isUndo ? "first" : report.isWorth ? report.size.bestOrder : "given";
  json["changed"] = report.isWorth && !report.isDryRun;
  json["nodes"] = report.nodes;
  json["before"] = SizeJson(report.size.gigabytes, report.size.seconds);
  json["after"] = SizeJson(report.size.bestGigabytes, report.size.bestSeconds);
  json["moved"] = report.moved;
  json["written"] = report.written;
  json["removed"] = report.removed;
  json["stale"] = report.stale;
  json["notes"] = report.notes;
  return JsonLine(json);
}

}  // namespace kvx
