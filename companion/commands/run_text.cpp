// The text of run_report.h.
#include <algorithm>
#include <cctype>
#include <filesystem>

#include "check/describe.h"
#include "commands/run_report.h"
#include "commands/solution_text.h"
#include "commands/terminal.h"
#include "finding/amount_text.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

// So many findings are shown in brief; kvx check shows all.
constexpr std::size_t BriefFindings = 5;

// " deck"; "" for the current folder.
std::string Argument(const std::string& place) {
  return place == "." ? "" : ' ' + QuoteArgument(place);
}

std::string ListText(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

// A hint that saves more than half of the time is worth a word each time; the others are not.
bool IsSaving(const Finding& finding) { return finding.code == "K501" && !finding.remedy.empty(); }

// What saves time, whole; "" where nothing does. The order of the nodes is the skyline's concern.
std::string SavingText(const FolderRun& run, const TextStyle& style) {
  if (run.plan && run.plan->engine == EngineChoice::Sparse) return "";
  const std::vector<Finding>& findings = run.findings.findings;
  const auto found = std::find_if(findings.begin(), findings.end(), IsSaving);
  if (found == findings.end()) return "";
  Finding finding = *found;
  finding.remedy = "kvx renumber" + Argument(run.place) +
                   " writes the model in that order, and gives the old numbers back with --undo.";
  return FindingText(finding, style);
}

// Errors and warnings without their remedies; or, where the model is not solved, the errors whole.
// Where there are hints alone, which command shows them. isHintShown: the only one stands below.
std::string FindingsText(const FolderRun& run, bool isHintShown, const TextStyle& style) {
  std::string text;
  std::size_t shown = 0, left = 0, hints = 0;
  for (Finding finding : run.findings.findings) {
    const bool isWhole = !run.isSolved && finding.severity == Severity::Error;
    if (finding.severity == Severity::Hint) {
      hints += finding.count;
      continue;
    }
    if (!isWhole && shown >= BriefFindings) {
      left += finding.count;
      continue;
    }
    if (!isWhole) finding.remedy.clear();
    text += FindingText(finding, style);
    ++shown;
  }
  if (left > 0) text += "      and " + std::to_string(left) + " more.";
  if (shown == 0) {
    if (hints == 0 || isHintShown) return "";
    return "      kvx check" + Argument(run.place) + " shows the " +
           (hints == 1 ? "hint.\n" : "hints.\n");
  }
  return text + (left > 0 ? " " : "      ") + "kvx check" + Argument(run.place) +
         " tells all of them, and what to do.\n";
}

// "deck"
std::string FolderText(const FolderRun& run) {
  const std::string folder = std::filesystem::u8path(run.file).parent_path().u8string();
  return folder.empty() ? "this folder" : folder;
}

// "no errors, 1 warning"
std::string CheckText(const FolderRun& run) {
  std::string text = TotalText(run.findings);
  text.pop_back();
  text.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(text.front())));
  return text;
}

// "solved in 0.4 s, 6450 equations. The results are in deck."
std::string SolutionText(const FolderRun& run) {
  std::string text = "solved in " + DurationText(run.seconds) + ", " +
                     CountText(run.equations, "equation", "equations");
  if (run.together.size() > 1) {
    text += ", one factorisation for " + std::to_string(run.together.size()) + " models";
  }
  return text + ". The results are in " + FolderText(run) + '.';
}

// "Engine: sparse, 2 threads. It takes less time: ..."
std::string EngineLine(const FolderRun& run, const TextStyle& style) {
  if (!run.isSolved || !run.plan) return "";
  const SolutionRecord& solution = run.solution;
  const std::string line = "Engine: " + EngineText(solution) + ". " + run.plan->reason;
  std::string text = WrapText(CleanText(line), style.width, "", "  ");
  if (!solution.ranks.empty()) text += TableText(MakeRankTable(solution.ranks), style);
  return text;
}

// Blocks are a reason why it took longer.
std::string BlocksLine(const FolderRun& run, const TextStyle& style) {
  if (!run.isSolved || run.detailBlocks < 2) return "";
  return WrapText(DetailBlocksText(run.detailBlocks), style.width, "", "  ");
}

// What a dry run foretells.
std::string ForecastText(const FolderRun& run, const TextStyle& style) {
  if (run.isSolved || !run.plan) return "";
  const SolutionPlan& plan = *run.plan;
  std::string text = WrapText(PlanText(plan, run.loads), style.width, "", "  ") +
                     TableText(MakePlanTable(plan, run.fits), style);
  if (!plan.ranks.empty()) text += TableText(MakeRankTable(plan.ranks), style);
  if (run.fits) text += WrapText(CleanText(plan.reason), style.width, "", "");
  return text;
}

// Why there are no results.
std::string RefusalText(const FolderRun& run) {
  if (!run.complaint.empty()) {
    return run.isDry ? "it could not be solved." : "no results were written.";
  }
  if (run.fits) return "not solved, in a dry run.";
  std::string text = "not solved; kvx run --force tries it as it is.";
  if (run.hasStale) {
    text += " The results in " + FolderText(run) + " are of an earlier state of the model.";
  }
  return text;
}

}  // namespace

std::string RunText(const FolderRun& run, const TextStyle& style) {
  if (!run.isChecked) return "";  // standard error has told all there is to tell
  std::string text = run.file + ": " + CheckText(run) + "; " +
                     (run.isSolved ? SolutionText(run) : RefusalText(run));
  if (!run.removed.empty()) {
    text += " Removed, as results of an earlier state of the model: " + ListText(run.removed) + '.';
  }
  const std::string saving = SavingText(run, style);
  const bool isHintShown =
      !saving.empty() && CountFindings(run.findings, Severity::Hint) == std::size_t{1};
  return WrapText(CleanText(text), style.width, "", "  ") + EngineLine(run, style) +
         BlocksLine(run, style) + ForecastText(run, style) + FindingsText(run, isHintShown, style) +
         saving;
}

std::string NextText(const FolderRuns& runs, std::size_t factorisations, const TextStyle& style) {
  std::string text;
  const auto isSolved = [](const FolderRun& run) { return run.isSolved; };
  const auto solved = static_cast<std::size_t>(std::count_if(runs.begin(), runs.end(), isSolved));
  if (runs.size() > 1) {
    text += CountText(runs.size(), "folder", "folders") + ": " + std::to_string(solved) +
            " solved with " + CountText(factorisations, "factorisation", "factorisations") + ". ";
  }
  if (solved == 0) return text.empty() ? "" : '\n' + text + '\n';
  const std::string place = Argument(std::find_if(runs.begin(), runs.end(), isSolved)->place);
  text += "kvx reactions" + place + " shows the support forces, kvx top" + place +
          " the highest stresses. kvx audit" + place +
          " tells, whenever needed, that the results are still those of the model.";
  return '\n' + WrapText(CleanText(text), style.width, "", "");
}

}  // namespace kvx
