// The text of import_outcome.h, but for the lists of cards.
#include <algorithm>
#include <cmath>
#include <filesystem>

#include "base/gigabyte.h"
#include "check/describe.h"
#include "commands/check_report.h"
#include "commands/import_outcome.h"
#include "commands/load_model.h"
#include "commands/result_table.h"
#include "commands/terminal.h"
#include "commands/tidy_number.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

std::string ListText(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

std::string Quoted(const std::string& name) { return '"' + name + '"'; }

// "bridge.bdf: Nastran bulk data, 1200 cards of 14 kinds."
std::string ReadingText(const ImportOutcome& outcome) {
  std::size_t cards = 0;
  for (const auto& [name, card] : outcome.report.cards) cards += card.count;
  std::string text = outcome.deck + ": " + outcome.format + ", " +
                     CountText(cards, "card", "cards") + " of " +
                     CountText(outcome.report.cards.size(), "kind", "kinds");
  const std::vector<std::string>& files = outcome.report.files;
  if (files.size() > 1) {
    text += ", with the included " + std::string(files.size() == 2 ? "file " : "files ") +
            ListText({files.begin() + 1, files.end()});
  }
  return text + '.';
}

std::string MergeText(const ImportOutcome& outcome) {
  const MergedNodes& merged = outcome.merged;
  std::string text = "Merged within " + NumberText(outcome.mergeLength) + ": " +
                     CountText(merged.merged, "node is", "nodes are") + " gone";
  if (merged.triangles > 0) {
    text +=
        "; " +
        CountText(merged.triangles, "quadrilateral is a triangle", "quadrilaterals are triangles") +
        " now";
  }
  if (merged.collapsed > 0) {
    text += "; " + CountText(merged.collapsed, "element has", "elements have") +
            " no extent any more and " + (merged.collapsed == 1 ? "is" : "are") + " left out";
  }
  return text + '.';
}

// How the matrix has changed by the order of the nodes; small ones are not worth a number. The time
// of the other order follows from its work.
std::string OrderText(const ImportOutcome& outcome) {
  constexpr double EntryBytes = 8.0;  // a double
  constexpr double NoticeableGigabytes = 0.001;
  const SolutionSize& size = outcome.check.size;
  const double given = outcome.givenCost.entries * EntryBytes / korvex::BytesPerGigabyte;
  const bool isSmall = given < NoticeableGigabytes;
  const std::string now = DescribeSize(size.gigabytes, size.seconds);
  if (outcome.orderName == "given") {
    return "The nodes stand in the order of the deck, the best one found" +
           (isSmall ? "." : "; the matrix takes " + now + '.');
  }
  const std::string text = "The nodes are in another order (" + outcome.orderName + ")";
  if (isSmall) return text + '.';
  const double share = outcome.givenCost.work / outcome.orderCost.work;
  return text + "; the matrix takes " + now + ", and would take " +
         DescribeSize(given, share * size.seconds) + " in that of the deck.";
}

std::string CaseTableText(const ImportOutcome& outcome, const TextStyle& style) {
  ResultTable table;
  table.title = "Load cases:";
  table.columns = {"case", "in the deck", "Fx", "Fy", "Fz", "acceleration"};
  for (const ImportedCase& each : outcome.cases) {
    double largest = 0.0;
    for (const double F : each.force) largest = std::max(largest, std::abs(F));
    table.cells.emplace_back(each.name);
    table.cells.emplace_back(each.deckName);
    for (const double F : each.force) table.cells.emplace_back(TidyNumber(F, largest));
    table.cells.emplace_back(each.hasAcceleration ? PointText(each.acceleration) : "");
  }
  table.notes = {"Sums of the loads along the global axes, those of gravity included."};
  return TableText(table, style);
}

// "import.json, fem_solving.txt, cases.toml, 6 files of loads"
std::string FilesText(const ImportOutcome& outcome) {
  std::vector<std::string> shown;
  std::size_t loads = 0;
  for (const std::string& file : outcome.files) {
    const bool isLoads = std::any_of(outcome.cases.begin(), outcome.cases.end(),
                                     [&](const ImportedCase& each) { return each.file == file; });
    loads += isLoads ? 1 : 0;
    if (!isLoads) shown.push_back(file);
  }
  if (loads > 0) shown.push_back(CountText(loads, "file of loads", "files of loads"));
  return ListText(shown);
}

std::string WrittenText(const ImportOutcome& outcome, const TextStyle& style) {
  std::string text;
  const auto addLine = [&](const std::string& line) {
    text += WrapText(CleanText(line), style.width, "", "  ");
  };
  text += '\n';
  addLine("Written to " + outcome.folder + ": " + FilesText(outcome) + '.');
  if (!outcome.writing.removed.empty()) {
    addLine("Removed, as of an earlier import or model: " + ListText(outcome.writing.removed) +
            '.');
  }
  if (!outcome.writing.left.empty()) {
    addLine("Of an earlier model and still there: " + ListText(outcome.writing.left) +
            ". Remove them if nobody needs them.");
  }
  if (outcome.hasMerged) addLine(MergeText(outcome));
  if (!outcome.onlyCase.empty() && !outcome.otherCases.empty()) {
    addLine("Only the load case " + Quoted(outcome.onlyCase) +
            ", as asked for. Left out: " + ListText(outcome.otherCases) + '.');
  }
  addLine(OrderText(outcome));
  return text;
}

std::string CheckedText(const ImportOutcome& outcome, const TextStyle& style) {
  const std::string file = (std::filesystem::u8path(outcome.folder) / ModelFileName).u8string();
  std::string text = '\n' + ReportText(file, outcome.check, style);
  for (const LoadsFindings& loads : outcome.loadsFiles) {
    std::string findings;
    for (const Finding& finding : loads.findings.findings) {
      if (finding.severity != Severity::Hint) findings += FindingText(finding, style);
    }
    if (!findings.empty()) text += CleanText(loads.file) + ":\n" + findings;
  }
  return text;
}

// Whether all that keeps the model from being solved is the memory of this machine (K502).
bool IsTooBig(const ImportOutcome& outcome) {
  const auto isOther = [](const Finding& finding) {
    return finding.severity == Severity::Error && finding.code != "K502";
  };
  const auto& findings = outcome.check.findings.findings;
  return CountFindings(outcome.check.findings, Severity::Error) ==
             CountFindings(outcome, Severity::Error) &&
         std::none_of(findings.begin(), findings.end(), isOther);
}

std::string NextText(const ImportOutcome& outcome) {
  // A name that no terminal shows as it is cannot be typed from there.
  const bool isShown = CleanText(outcome.folder) == outcome.folder;
  const std::string place = isShown ? outcome.folder : "DIR";
  const std::string where = isShown ? "" : " DIR stands for the folder of the model.";
  const std::string folder = QuoteArgument(place);
  if (CountFindings(outcome, Severity::Error) > 0) {
    const std::string what =
        IsTooBig(outcome)
            ? "The model is whole, but too big for the memory of this machine. Solve it on one "
              "with more, or mesh it coarser."
            : "The model has errors, and cannot be solved as it is. Mend the deck, or give what is "
              "missing in a map file (--map), and import it again.";
    return what + " kvx view " + folder + " --model shows the model and its errors." + where;
  }
  const std::string file =
      QuoteArgument((std::filesystem::u8path(place) / ImportCasesFileName).u8string());
  const std::string solve = HasCaseFile(outcome) ? "kvx cases " + file : "kvx run " + folder;
  const std::string shown = HasCaseFile(outcome) ? file + " then shows" : folder + " --model shows";
  return "Next: " + solve + " solves it, kvx view " + shown + " the model." + where;
}

// What a map file can give is said where that is missing. Lines to be typed are not broken.
std::string RefusedText(const ImportOutcome& outcome, const TextStyle& style) {
  const std::string call = "  kvx import " + CleanText(QuoteArgument(outcome.deck)) + " --map";
  std::string text =
      "Nothing was written, because of what is refused: the reasons tell what to change in the "
      "deck.";
  if (!outcome.canMapHelp) return WrapText(text, style.width, "", "");
  text += " Thicknesses, materials, sections and orientations can come from ";
  if (outcome.hasMap) {
    return WrapText(text + "your map file, too: it has to name the groups above.", style.width, "",
                    "");
  }
  text += "a map file, too";
  return WrapText(text + ". These write one to fill in, and take it:", style.width, "", "") + call +
         "-template map.toml\n" + call + " map.toml\n";
}

std::string EndText(const ImportOutcome& outcome, const TextStyle& style) {
  const auto wrap = [&](const std::string& line) {
    return '\n' + WrapText(CleanText(line), style.width, "", "");
  };
  if (outcome.end == ImportEnd::Refused) return '\n' + RefusedText(outcome, style);
  if (outcome.end == ImportEnd::Strict) {
    return wrap("Nothing was written: with --strict nothing may be lost or taken with a limit.");
  }
  const std::string losses = LossText(outcome.report, style);
  return WrittenText(outcome, style) + CheckedText(outcome, style) +
         (HasCaseFile(outcome) ? '\n' + CaseTableText(outcome, style) : "") +
         (losses.empty() ? "" : '\n' + losses) + wrap(NextText(outcome));
}

}  // namespace

bool HasCaseFile(const ImportOutcome& outcome) {
  const std::vector<std::string>& files = outcome.files;
  return std::find(files.begin(), files.end(), ImportCasesFileName) != files.end();
}

std::size_t CountFindings(const ImportOutcome& outcome, Severity severity) {
  std::size_t count = CountFindings(outcome.check.findings, severity);
  for (const LoadsFindings& loads : outcome.loadsFiles) {
    count += CountFindings(loads.findings, severity);
  }
  return count;
}

std::string ImportText(const ImportOutcome& outcome, const TextStyle& style) {
  return WrapText(CleanText(ReadingText(outcome)), style.width, "", "  ") +
         ImportReportText(outcome.report, style) + EndText(outcome, style);
}

}  // namespace kvx
