// The text of check_report.h.
#include "commands/check_report.h"
#include "commands/model_summary.h"
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

  text += TotalText(report.findings) + '\n';
  if (!report.findings.findings.empty()) {
    text += "kvx explain " + report.findings.findings.front().code + " tells more.\n";
  }
  return text;
}

}  // namespace kvx
