// The text of check_report.h.
#include "commands/check_report.h"
#include "commands/model_summary.h"
#include "commands/origin_file.h"
#include "finding/text_layout.h"

namespace kvx {

std::string ReportText(const std::string& file, const CheckReport& report, const TextStyle& style) {
  std::string text;
  for (const Finding& finding : report.findings.findings) text += FindingText(finding, style);
  if (!text.empty()) text += '\n';

  text += CleanText(file) + '\n';
  const auto addLine = [&](const std::string& line) {
    text += WrapText(CleanText(line), style.width, "  ", "    ");
  };
  for (const std::string& line : SummarizeModel(report)) addLine(line);
  for (const std::string& line : report.model.notChecked) addLine(line);
  if (HasOrigin(report.origin)) {
    addLine("Imported from " + report.origin.source + " (" + report.origin.format + ").");
  } else if (report.hasForeignOrigin) {
    addLine(std::string(OriginFileName) +
            " does not belong to this model: nodes or elements have changed since the import, so "
            "that the deck's numbers are not shown.");
  }

  text += TotalText(report.findings) + '\n';
  if (!report.findings.findings.empty()) {
    text += "kvx explain " + report.findings.findings.front().code + " tells more.\n";
  }
  return text;
}

}  // namespace kvx
