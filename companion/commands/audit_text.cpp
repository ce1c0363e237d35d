// The text of audit_report.h.
#include <algorithm>
#include <cmath>
#include <map>

#include "check/describe.h"
#include "commands/audit_report.h"
#include "commands/element_words.h"
#include "commands/origin_words.h"
#include "commands/reactions_tables.h"
#include "commands/result_findings.h"
#include "commands/result_table.h"
#include "commands/rough_text.h"
#include "commands/solution_text.h"
#include "commands/tidy_number.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

// So many findings of a kind are shown, the worst ones; JSON has all.
constexpr std::size_t ShownOfAKind = 3, ShownHints = 1;

// A line of the report: what it tells about, and that; broken behind its label.
void AddLine(const std::string& label, const std::string& line, const TextStyle& style,
             std::string& text) {
  constexpr std::size_t LabelWidth = 14;
  if (line.empty()) return;
  std::string first = "  " + label;
  first.resize(2 + LabelWidth, ' ');
  text += WrapText(CleanText(line), style.width, first, std::string(2 + LabelWidth, ' '));
}

// Sums of rounding errors are shown as 0: beside the largest force, and this force at the arm of
// the origin.
void AddSumRow(const std::string& name, const ForceSum& sum, const Reactions& r,
               ResultTable& table) {
  const double arm = r.size + korvex::Length(r.centre);
  table.cells.emplace_back(name);
  for (std::size_t i = 0; i < sum.size(); ++i) {
    const double scale = r.sumScales.force * (i < 3 ? 1.0 : arm);
    // Without the sign of a NaN.
    const double value = std::isnan(sum[i]) ? std::abs(sum[i]) : sum[i];
    const bool isRounding = IsRoundingAlone(r) && std::abs(value) <= scale;
    table.cells.emplace_back(isRounding ? 0.0 : TidyNumber(value, scale));
  }
}

std::string SumsText(const Reactions& r, const TextStyle& style) {
  ResultTable table;
  table.columns = {""};
  table.columns.insert(table.columns.end(), ForceNames.begin(), ForceNames.end());
  AddSumRow("loads", r.loads, r, table);
  AddSumRow("reactions", r.reactions, r, table);
  if (WeighUnbalanced(r) > NotableCouple) AddSumRow("elements", SumOfElements(r), r, table);
  return TableText(table, style);
}

std::string BalanceText(const SolvedModel& solved, const AuditReport& report) {
  const Reactions& r = report.reactions;
  if (report.verdict.notFinite.nodes > 0) return "not known: there are numbers that are not finite";
  if (IsRoundingAlone(r)) return "there are no loads, and the reactions are rounding alone";
  std::string text = "loads and reactions differ by " + RoughText(r.imbalance) +
                     " of the loads; moments are about the origin";
  if (r.residual.node >= 0) {
    text += "; largest residual of a free node " + RoughText(r.residual.relative) +
            " of the largest force, " + ForceNames[static_cast<std::size_t>(r.residual.dof)] +
            " of " + DescribeNode(solved.model, report.deck, r.residual.node);
  }
  return text;
}

std::string SupportsText(const Reactions& r) {
  std::string text = CountText(r.supports.size(), "node", "nodes");
  if (!r.moved.empty()) {
    text += ", " + CountText(r.moved.size(), "prescribed displacement", "prescribed displacements");
  }
  return text;
}

std::string DisplacementText(const SolvedModel& solved, const AuditReport& report) {
  const Verdict& verdict = report.verdict;
  const LargestDisplacement& u = verdict.translation;
  if (u.node < 0) return verdict.notFinite.nodes > 0 ? "not known" : "none";
  return NumberText(u.value) + ", " + RoughText(verdict.share) + " of the extent " +
         NumberText(verdict.extent) + ", at " + DescribeNode(solved.model, report.deck, u.node);
}

std::string RotationText(const SolvedModel& solved, const AuditReport& report) {
  const LargestDisplacement& rotation = report.verdict.rotation;
  if (rotation.node < 0) return "";
  return NumberText(rotation.value) + " at " +
         DescribeNode(solved.model, report.deck, rotation.node);
}

// "123.4, 0.525 of yield"
std::string StressText(double stress, double yield) {
  std::string text = NumberText(stress);
  if (yield > 0.0) text += ", " + UtilisationText(std::abs(stress) / yield) + " of yield";
  return text;
}

std::string PeakText(const Peak& peak, const AuditReport& report) {
  return StressText(peak.value, report.yield) + ", " + NameOf(peak.holder) + ' ' +
         std::to_string(peak.element) + InDeck(report.deck, peak.holder, peak.element) + " at " +
         PointText(peak.place);
}

std::string NominalText(const AuditReport& report) {
  const NominalPeaks& peaks = report.nominal;
  if (peaks.vonMises.beam < 0) return "";
  const auto place = [&](const NominalPeak& peak) {
    return " in beam " + std::to_string(peak.beam) + InDeck(report.deck, Holder::Beam, peak.beam) +
           " at x/L " + NumberText(peak.stress.s);
  };
  return "from section forces: von Mises " +
         StressText(peaks.vonMises.stress.fibre.vonMises, report.yield) + place(peaks.vonMises) +
         "; tension " + NumberText(peaks.tension.stress.fibre.sigma) + place(peaks.tension) +
         "; compression " + NumberText(peaks.compression.stress.fibre.sigma) +
         place(peaks.compression);
}

void AddStresses(const AuditReport& report, const TextStyle& style, std::string& text) {
  for (const PeakList& list : report.maxima) {
    if (list.peaks.empty() || list.quantity == Quantity::DisplacementSize) continue;
    const Peak& peak = list.peaks.front();
    if (list.quantity == Quantity::VonMises) {
      AddLine("shell stress",
              "von Mises " + PeakText(peak, report) +
                  (peak.face == Face::Upper ? ", upper face" : ", lower face") + ", averaged",
              style, text);
    } else {
      AddLine("beam stress", "by detail model at mid-length: von Mises " + PeakText(peak, report),
              style, text);
    }
  }
  if (!report.noDetails.empty()) {
    AddLine("beam stress", "no detail models: " + report.noDetails, style, text);
  }
  AddLine("beam stress", NominalText(report), style, text);
}

std::string FilesText(const std::vector<ResultState>& files) {
  if (files.empty()) return "";
  const auto count = [&](ResultFit fit) {
    return static_cast<std::size_t>(std::count_if(
        files.begin(), files.end(), [&](const ResultState& file) { return file.fit == fit; }));
  };
  const std::size_t same = count(ResultFit::Same);
  if (count(ResultFit::Missing) == files.size()) return "none in the folder";
  return std::to_string(same) + " of " + std::to_string(files.size()) +
         " are those of this model, byte for byte";
}

// "sparse, 2 threads; scaled residual 1.2e-16, ..."
std::string SolutionText(const AuditReport& report) {
  if (!report.solution) return "";
  const SolutionRecord& solution = *report.solution;
  return EngineText(solution) + "; " + AccuracyText(solution.loads.front());
}

// The first findings of each kind, and how many more there are.
std::string FindingsText(const FindingList& list, const TextStyle& style) {
  std::map<std::string, std::size_t> totals, shown;
  const auto keyOf = [](const Finding& finding) {
    return finding.code + SeverityName(finding.severity) + finding.table;
  };
  for (const Finding& finding : list.findings) totals[keyOf(finding)] += finding.count;
  std::string text;
  for (const Finding& finding : list.findings) {
    const std::string key = keyOf(finding);
    const std::size_t most = finding.severity == Severity::Hint ? ShownHints : ShownOfAKind;
    if (++shown[key] <= most) text += FindingText(finding, style);
    if (shown[key] != most || totals[key] <= most) continue;
    Finding rest = MakeFinding(finding.code.c_str());
    rest.severity = finding.severity;
    rest.message = "and " + std::to_string(totals[key] - most) +
                   " more of this kind: kvx audit --json lists them.";
    text += FindingText(rest, style);
  }
  return text;
}

std::string VerdictLine(const AuditReport& report) {
  std::string verdict = VerdictText(report);
  if (CountFindings(report.findings, Severity::Error) > 0 || !report.isLoaded) {
    return "Verdict: " + verdict + ".";
  }
  const std::string balanced = "balanced";
  verdict.insert(balanced.size(),
                 IsRoundingAlone(report.reactions)
                     ? " (no loads)"
                     : " (" + RoughText(report.reactions.imbalance) + " of the loads)");
  return "Verdict: " + verdict + "; largest displacement " + RoughText(report.verdict.share) +
         " of the extent.";
}

}  // namespace

std::string AuditText(const std::string& file, const SolvedModel& solved, const AuditReport& report,
                      const TextStyle& style) {
  std::string text =
      CleanText(file) + (report.origin.empty() ? "" : ": " + CleanText(report.origin)) + '\n';
  text += SumsText(report.reactions, style);
  AddLine("balance", BalanceText(solved, report), style, text);
  AddLine("solution", SolutionText(report), style, text);
  AddLine("supports", SupportsText(report.reactions), style, text);
  AddLine("displacement", DisplacementText(solved, report), style, text);
  AddLine("rotation", RotationText(solved, report), style, text);
  AddStresses(report, style, text);
  AddLine("result files", FilesText(report.files), style, text);
  if (!report.findings.findings.empty()) text += '\n' + FindingsText(report.findings, style);
  text += TotalText(report.findings) + '\n';
  if (!report.findings.findings.empty()) {
    text += "kvx explain " + report.findings.findings.front().code + " tells more.\n";
  }
  return text + WrapText(VerdictLine(report), style.width, "", "  ");
}

}  // namespace kvx
