// K711 .. K717: result files in the folder, and the files that the model was made from.
#include <algorithm>

#include "commands/case_record.h"
#include "commands/result_findings.h"

namespace kvx {

namespace {

// "Node_Dis.txt (from line 2 on), structure.dxf"; empty where no file is in this state.
std::string ListFiles(const std::vector<ResultState>& files, ResultFit fit, const char* where) {
  std::string list;
  for (const ResultState& file : files) {
    if (file.fit != fit) continue;
    list += (list.empty() ? "" : ", ") + std::string(file.name);
    if (file.line > 0) list += std::string(" (") + where + std::to_string(file.line) + ')';
  }
  return list;
}

void AddListed(const char* code, const std::string& list, const std::string& before,
               const std::string& behind, const std::string& remedy, FindingList& findings) {
  if (list.empty()) return;
  Finding finding = MakeFinding(code);
  finding.message = before + list + behind;
  finding.remedy = remedy;
  AddFinding(finding, findings);
}

// One finding for all files with the same reason.
void AddNotCompared(const std::vector<ResultState>& files, FindingList& findings) {
  std::vector<std::string> reasons;
  for (const ResultState& file : files) {
    const bool isNew = std::find(reasons.begin(), reasons.end(), file.reason) == reasons.end();
    if (file.fit == ResultFit::Unknown && isNew) reasons.push_back(file.reason);
  }
  for (const std::string& reason : reasons) {
    std::string names;
    for (const ResultState& file : files) {
      if (file.fit != ResultFit::Unknown || file.reason != reason) continue;
      names += (names.empty() ? "" : ", ") + std::string(file.name);
    }
    const bool isSparse = reason == SparseFilesReason;
    AddListed("K714", names, "", " could not be compared: " + reason,
              isSparse ? "Call kvx run again: it leaves displacements.bin." : "", findings);
  }
}

}  // namespace

void AddFileFindings(const AuditOptions& options, AuditReport& report) {
  const std::vector<ResultState>& files = report.files;
  FindingList& findings = report.findings;
  const std::string again = "Solve the model anew: kvx run.";
  const std::string stale = ListFiles(files, ResultFit::Differs, "from line ");
  AddListed("K711", stale, "result files that are not those of this model: ", ".", again, findings);
  AddListed("K712", ListFiles(files, ResultFit::Truncated, "ends in line "),
            "result files that are not whole: ", ".", again, findings);
  const bool isAnyThere = std::any_of(files.begin(), files.end(), [](const ResultState& file) {
    return file.fit != ResultFit::Missing;
  });
  if (isAnyThere) {
    AddListed("K713", ListFiles(files, ResultFit::Missing, ""),
              "result files that are missing: ", "; others are there.", again, findings);
  }
  AddNotCompared(files, findings);
  AddListed("K716", options.changedSources, "", "", ChangedSourcesRemedy, findings);
  AddListed("K717", options.solutionProblem, "",
            " How the results were found, and how exact they are, is not known.",
            "Solve the model anew with kvx run, or remove the file.", findings);
  const DisplacementFit fit = options.reading.fit;
  const bool isUsable = fit == DisplacementFit::Fits || fit == DisplacementFit::Missing;
  // With stale files it is stale like these.
  const bool isExplained = fit == DisplacementFit::OtherModel && !stale.empty();
  if (isUsable || isExplained) return;
  AddListed("K715", options.reading.reason, "", " The model was solved in memory instead.",
            "Solve the model anew with kvx run, or remove the file.", findings);
}

}  // namespace kvx
