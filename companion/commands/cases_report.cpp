#include "commands/cases_report.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "check/describe.h"
#include "commands/element_words.h"
#include "commands/findings_json.h"
#include "commands/number_json.h"
#include "commands/origin_columns.h"
#include "commands/origin_words.h"
#include "commands/quantity_names.h"
#include "commands/rough_text.h"
#include "commands/solution_file.h"
#include "commands/solution_text.h"
#include "commands/terminal.h"
#include "commands/tidy_number.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

std::string CountSets(const CaseSet& set) {
  std::size_t combinations = 0;
  for (const LoadSet& each : set.sets) combinations += each.isCombination ? 1 : 0;
  std::string text = CountText(set.sets.size() - combinations, "case", "cases");
  if (combinations > 0) text += " and " + CountText(combinations, "combination", "combinations");
  return text;
}

void AddFindings(const std::string& file, const FindingList& list, const TextStyle& style,
                 std::string& text) {
  std::string findings;
  for (const Finding& finding : list.findings) {
    // Hints are about the model; kvx check tells them.
    if (finding.severity != Severity::Hint) findings += FindingText(finding, style);
  }
  if (!findings.empty()) text += CleanText(file) + ":\n" + findings;
}

ResultTable MakeCaseTable(const CaseSet& set, const SolvedCases& solved) {
  ResultTable table;
  table.columns = {"case", "Fx", "Fy", "Fz", "displacement", "node", "at", "verdict"};
  for (std::size_t row = 0; row < solved.cases.size(); ++row) {
    const SolvedCase& result = solved.cases[row];
    double largest = 0.0;
    for (std::size_t i = 0; i < 3; ++i) largest = std::max(largest, std::abs(result.loads[i]));
    table.cells.emplace_back(set.sets[row].name);
    for (std::size_t i = 0; i < 3; ++i) {
      table.cells.emplace_back(TidyNumber(result.loads[i], largest));
    }
    table.cells.emplace_back(result.translation.value);
    const bool hasNode = result.translation.node >= 0;
    table.cells.emplace_back();
    if (hasNode) table.cells.back() = std::int64_t{result.translation.node};
    table.cells.emplace_back(hasNode ? PointText(result.place) : "");
    table.cells.emplace_back(result.verdict);
  }
  table.notes = {"Sums of the loads along the global axes; largest displacement, and its node."};
  AddOriginColumns(set.origin, ColumnReader::Person, table);
  return table;
}

const char* QuantityText(Quantity quantity) {
  switch (quantity) {
    case Quantity::DisplacementSize:
      return "displacement";
    case Quantity::VonMises:
      return "von Mises stress, shells";
    case Quantity::SectionVonMises:
      return "von Mises stress, beams, section forces";
    default:
      return "von Mises stress, beams, detail models";
  }
}

// The largest value of a quantity over all cases, and which case has it.
struct GoverningPeak {
  Quantity quantity;
  const Peak* peak;
  std::string caseName;
};

std::vector<GoverningPeak> FindGoverning(const CaseSet& set, const SolvedCases& solved) {
  std::vector<GoverningPeak> governing;
  for (const Quantity quantity : {Quantity::DisplacementSize, Quantity::VonMises,
                                  Quantity::BeamVonMises, Quantity::SectionVonMises}) {
    const Peak* largest = nullptr;
    std::size_t governs = 0;
    for (std::size_t row = 0; row < solved.cases.size(); ++row) {
      for (const PeakList& list : solved.cases[row].maxima) {
        if (list.quantity != quantity || list.peaks.empty()) continue;
        const Peak& peak = list.peaks.front();
        if (largest != nullptr && !(peak.value > largest->value)) continue;
        largest = &peak;
        governs = row;
      }
    }
    if (largest != nullptr) governing.push_back({quantity, largest, set.sets[governs].name});
  }
  return governing;
}

ResultTable MakeGoverningTable(const std::vector<GoverningPeak>& governing,
                               const ModelOrigin& origin) {
  ResultTable table;
  table.title = "Largest of all:";
  table.columns = {"quantity", "value", "case", "where", "at"};
  for (const GoverningPeak& of : governing) {
    table.cells.emplace_back(QuantityText(of.quantity));
    table.cells.emplace_back(of.peak->value);
    table.cells.emplace_back(of.caseName);
    table.cells.emplace_back(std::string(NameOf(of.peak->holder)) + ' ' +
                             std::to_string(of.peak->element) +
                             InDeck(origin, of.peak->holder, of.peak->element));
    table.cells.emplace_back(PointText(of.peak->place));
  }
  return table;
}

Json GoverningJson(const GoverningPeak& of, const ModelOrigin& origin) {
  Json json;
  json["quantity"] = QuantityName(of.quantity);
  json["value"] = NumberJson(of.peak->value);
  json["case"] = of.caseName;
  json["kind"] = KindWord(of.peak->holder);
  // As in kvx top.
  json["element"] = of.peak->holder == Holder::Node ? Json(nullptr) : Json(of.peak->element);
  json["node"] = of.peak->node < 0 ? Json(nullptr) : Json(of.peak->node);
  if (HasOrigin(origin)) {
    const bool isNode = of.peak->holder == Holder::Node;
    json["deck_element"] =
        isNode ? Json(nullptr) : Json(DeckNumber(origin, of.peak->holder, of.peak->element));
    json["deck_node"] = DeckNumberJson(origin, of.peak->node);
  }
  json["position"] = VectorJson(of.peak->place);
  return json;
}

Json FileJson(const std::string& file, const FindingList& findings) {
  Json json;
  json["file"] = file;
  AddFindingsJson(findings, json);
  return json;
}

void AddSolvedJson(const SolvedCase& result, const ModelOrigin& origin, const Json& audit,
                   Json& json) {
  json["folder"] = result.folder.u8string();
  json["loads"] = NumbersJson(result.loads);
  Json displacement;
  displacement["value"] = NumberJson(result.translation.value);
  const bool hasNode = result.translation.node >= 0;
  displacement["node"] = hasNode ? Json(result.translation.node) : Json(nullptr);
  if (HasOrigin(origin)) {
    displacement["deck_node"] = DeckNumberJson(origin, result.translation.node);
  }
  displacement["position"] = hasNode ? VectorJson(result.place) : Json(nullptr);
  json["displacement"] = displacement;
  json["verdict"] = result.verdict;
  json["audit"] = audit;
}

Json EnvelopeJson(const SolvedEnvelope& envelope) {
  Json json;
  json["name"] = envelope.name;
  json["of"] = envelope.of;
  json["folder"] = envelope.folder.u8string();
  return json;
}

}  // namespace

std::string CaseFindingsText(const CaseSet& set, const TextStyle& style) {
  std::string text;
  AddFindings(set.structure.file, set.findings, style, text);
  for (const LoadSet& each : set.sets) AddFindings(each.loadsFile, each.findings, style, text);
  if (!text.empty()) text += '\n';
  const std::size_t errors = CountFindings(set, Severity::Error);
  const std::size_t warnings = CountFindings(set, Severity::Warning);
  const std::string counts = errors + warnings == 0
                                 ? "no errors, no warnings"
                                 : CountText(errors, "error", "errors") + ", " +
                                       CountText(warnings, "warning", "warnings");
  const std::string sets = set.unreadable.empty() ? CountSets(set) + " of " : "";
  const std::string line = set.file + ": " + sets + set.structure.file + "; " + counts + ".";
  return text + WrapText(CleanText(line), style.width, "", "  ");
}

std::string SolvedCasesText(const CaseSet& set, const SolvedCases& solved,
                            const std::vector<std::string>& others, const TextStyle& style) {
  const auto wrap = [&](const std::string& line) {
    return WrapText(CleanText(line), style.width, "", "  ");
  };
  const double seconds = std::max(0.01, solved.seconds);  // less is not measured
  std::string text = wrap("Solved: " + std::to_string(set.model.NEQ) + " equations in " +
                          RoughText(seconds) + " s, one factorisation for all.");
  const SolutionRecord& solution = solved.solution;
  text += wrap("Engine: " + EngineText(solution) + ". " + solved.plan.reason);
  if (!solution.ranks.empty()) text += TableText(MakeRankTable(solution.ranks), style);
  if (solved.detailBlocks > 1) text += wrap(DetailBlocksText(solved.detailBlocks));
  text += '\n' + TableText(MakeCaseTable(set, solved), style);
  const ResultTable governing = MakeGoverningTable(FindGoverning(set, solved), set.origin);
  if (!governing.cells.empty()) text += '\n' + TableText(governing, style);

  const std::filesystem::path results = solved.cases.front().folder.parent_path();
  text += '\n' + wrap("Results: " + results.u8string() + ", a folder for each case.");
  const auto isSuspicious = [](const SolvedCase& each) {
    return CountFindings(each.findings, Severity::Error) > 0 ||
           CountFindings(each.findings, Severity::Warning) > 0;
  };
  const auto first = std::find_if(solved.cases.begin(), solved.cases.end(), isSuspicious);
  if (first != solved.cases.end()) {
    text += wrap("kvx audit " + QuoteArgument(first->folder.u8string()) +
                 " tells more of its verdict.");
  }
  for (const SolvedEnvelope& envelope : solved.envelopes) {
    std::string names;
    for (const std::string& name : envelope.of) names += (names.empty() ? "" : ", ") + name;
    text += wrap("Envelope of " + names + ": " + envelope.folder.filename().u8string() + ".");
  }
  for (const std::string& other : others) {
    text += wrap("Folder \"" + other + "\" there is of an earlier run: " + set.file +
                 " has no such case. Remove it if nobody needs it.");
  }
  return text;
}

std::string ForecastText(const CaseSet& set, const SolvedCases& solved, const TextStyle& style) {
  if (solved.plan.equations == 0) return "";
  std::string text = WrapText("Not solved, in a dry run. " + PlanText(solved.plan, set.sets.size()),
                              style.width, "", "  ") +
                     TableText(MakePlanTable(solved.plan, solved.fits), style);
  if (!solved.plan.ranks.empty()) text += TableText(MakeRankTable(solved.plan.ranks), style);
  if (solved.fits) text += WrapText(CleanText(solved.plan.reason), style.width, "", "");
  return text;
}

std::string CasesJson(const CaseSet& set, const SolvedCases& solved,
                      const std::vector<Json>& audits, const std::vector<std::string>& others) {
  const bool isSolved = !solved.cases.empty();
  Json json;
  json["file"] = set.file;
  json["structure"] = FileJson(set.structure.file, set.findings);
  json["cases"] = Json::array();
  for (std::size_t row = 0; row < set.sets.size(); ++row) {
    const LoadSet& each = set.sets[row];
    Json one;
    one["name"] = each.name;
    one["kind"] = each.isCombination ? "combination" : "case";
    one["loads_file"] =
        each.loadsFile.empty() ? Json(nullptr) : FileJson(each.loadsFile, each.findings);
    if (isSolved) AddSolvedJson(solved.cases[row], set.origin, audits[row], one);
    json["cases"].push_back(std::move(one));
  }
  json["errors"] = CountFindings(set, Severity::Error);
  json["warnings"] = CountFindings(set, Severity::Warning);
  json["solved"] = isSolved;
  json["engine"] = nullptr;
  if (solved.plan.equations > 0) {
    json["engine"] = EngineJson(solved.plan, solved.fits, isSolved ? &solved.solution : nullptr);
  }
  if (!isSolved) return JsonLine(json);
  json["detail_blocks"] = solved.detailBlocks;
  json["governing"] = Json::array();
  for (const GoverningPeak& of : FindGoverning(set, solved)) {
    json["governing"].push_back(GoverningJson(of, set.origin));
  }
  json["envelopes"] = Json::array();
  for (const SolvedEnvelope& envelope : solved.envelopes) {
    json["envelopes"].push_back(EnvelopeJson(envelope));
  }
  json["other_folders"] = others;
  return JsonLine(json);
}

}  // namespace kvx
