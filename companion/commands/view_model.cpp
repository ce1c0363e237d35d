#include "commands/view_model.h"

#include <new>

#include "commands/case_record.h"
#include "commands/check_report.h"
#include "commands/open_results.h"
#include "commands/progress.h"
#include "commands/solution_file.h"
#include "commands/speak.h"
#include "deck/read_tables.h"
#include "finding/findings_text.h"
#include "finding/text_layout.h"
#include "report/stop.h"

namespace kvx {

using korvex::ModelTables;

namespace {

// Pages with more elements do not open well in browsers.
constexpr std::size_t MostElements = 500000;

void Check(ViewedModel& viewed) {
  Progress progress;
  BeginChecking(viewed.file.file, viewed.file.text.size(), progress);
  CheckOptions options;
  options.asksMemory = false;
  CheckModel(viewed.file.text, options, viewed.check);
  AddOrigin(viewed.check);
  PointToCases(viewed.file, viewed.check.findings);
  const FindingList& findings = viewed.check.findings;
  viewed.errors = CountFindings(findings, Severity::Error);
  if (viewed.errors > 0) viewed.firstError = NameFinding(findings.findings.front());
}

std::size_t CountElements(const ModelTables& tables) {
  return tables.Shell4Properties.size() + tables.Shell3Properties.size() +
         tables.BeamProperties.size();
}

// Why the model is no page; empty: it may be one.
std::string RefuseSize(const ModelTables& tables) {
  const std::size_t elements = CountElements(tables);
  if (elements <= MostElements) return "";
  constexpr std::size_t BytesEach = 150;  // of a shell and its results
  constexpr std::size_t Megabyte = 1000000;
  return CountText(elements, "element", "elements") + " would make a page of about " +
         std::to_string(elements * BytesEach / Megabyte) +
         " MB a load case, more than browsers open well; the most are " +
         std::to_string(MostElements) + ". Use kvx export --vtu, which writes files for ParaView.";
}

std::string FindObstacle(const ViewedModel& viewed) {
  const ModelTables& tables = viewed.check.model.tables;
  if (!tables.Nodes.empty()) return RefuseSize(tables);
  return "the model has no nodes, so that there is nothing to see." +
         (viewed.errors > 0 ? " " + viewed.firstError : "");
}

// The same before the checks, which take their time with a large model. What the solver cannot read
// is left to them.
std::string RefuseSizeEarly(const std::string& text) {
  constexpr std::size_t SmallestRow = 12;  // of an element: "9:1,2,3[0,0]"
  if (text.size() < MostElements * SmallestRow) return "";
  try {
    ModelTables tables;
    korvex::ReadTables(text, {}, tables);
    return RefuseSize(tables);
  } catch (const korvex::Stop&) {
    return "";
  } catch (const std::bad_alloc&) {  // by a slip in a count
    return "";
  }
}

bool HaveSameRows(const ModelTables& a, const ModelTables& b) {
  return a.Nodes.size() == b.Nodes.size() && a.Shell4Nodes == b.Shell4Nodes &&
         a.Shell3Nodes == b.Shell3Nodes && a.BeamNodes == b.BeamNodes;
}

// Takes the displacements of displacements.bin. Returns whether they fit.
bool ReadSolution(ViewedModel& viewed) {
  std::vector<double> displacements;
  viewed.reading =
      ReadDisplacementFile(ExactDisplacementFileName, IdentifyModelFile(viewed.file.text),
                           viewed.check.model.tables.NPOIN, displacements);
  if (viewed.reading.fit != DisplacementFit::Fits) return false;
  CompleteFromDisplacements(viewed.file.text, std::move(displacements), viewed.solved);
  // Behind a slip of the text the solver may have read other rows than the checks.
  return HaveSameRows(viewed.check.model.tables, viewed.solved.model.Tables);
}

// Of a model that is not solved again.
void ComplainOfFile(const std::string& who, const DisplacementReading& reading) {
  if (reading.fit == DisplacementFit::Fits || reading.fit == DisplacementFit::Missing) return;
  Complain(who, reading.reason);
}

void FindSolution(const std::string& who, ViewedModel& viewed) {
  const std::string errorText = viewed.firstError + " See kvx check.";
  if (ReadSolution(viewed)) {
    viewed.isSolved = true;
    if (viewed.errors > 0) {
      viewed.note = "The model has errors, so that its results may mean nothing: " + errorText;
    }
    return;
  }
  viewed.solved = {};
  if (viewed.errors > 0) {
    ComplainOfFile(who, viewed.reading);
    viewed.note = "The model has errors, so that it is shown without results: " + errorText;
    return;
  }
  if (CountElements(viewed.check.model.tables) == 0) {
    viewed.note = "The model has no elements, so that there are no results.";
    return;
  }
  CheckSkylineFits(viewed.check.model.tables, viewed.reading);
  ExplainSolving(who, viewed.reading,
                 IsModelOfFolder(viewed.file)
                     ? ReadSolutionFile(IdentifyModelFile(viewed.file.text))
                     : std::nullopt);
  SolveShown(viewed.file.text, viewed.solved);
  viewed.isSolved = true;
}

}  // namespace

const ModelTables& TablesOf(const ViewedModel& viewed) {
  return viewed.isSolved ? viewed.solved.model.Tables : viewed.check.model.tables;
}

ExitStatus OpenViewed(const std::string& place, bool isChecked, ViewedModel& viewed,
                      std::string& complaint) {
  const ExitStatus loaded = LoadModel(place, viewed.file, complaint);
  if (loaded != ExitFine) return loaded;
  try {
    if (isChecked) {
      complaint = RefuseSizeEarly(viewed.file.text);
      if (complaint.empty()) Check(viewed);
    } else {
      korvex::ReadTables(viewed.file.text, {}, viewed.check.model.tables);
    }
    if (complaint.empty()) complaint = FindObstacle(viewed);
  } catch (const korvex::Stop& stop) {
    complaint = stop.text;
  } catch (const std::bad_alloc&) {
    complaint = "there is not enough memory for it.";
  }
  if (complaint.empty()) return ExitFine;
  complaint = '"' + viewed.file.file + "\": " + complaint;
  return ExitUnusableData;
}

void SolveViewed(const std::string& who, ViewedModel& viewed) {
  if (IsModelOfFolder(viewed.file)) viewed.changedSources = DescribeChangedSources(".");
  std::string reason;
  try {
    FindSolution(who, viewed);
  } catch (const korvex::Stop& stop) {
    reason = stop.text;
  } catch (const std::bad_alloc&) {
    reason = "There is not enough memory for it.";
  }
  if (!reason.empty()) {
    viewed.isSolved = false;
    viewed.isRefused = true;
    viewed.solved = {};
    viewed.note = "The model cannot be solved, so that it is shown without results: " + reason;
  }
  if (!viewed.changedSources.empty()) {
    Complain(who, viewed.changedSources + ' ' + ChangedSourcesRemedy);
  }
  if (!viewed.note.empty()) Complain(who, '"' + viewed.file.file + "\": " + viewed.note);
}

}  // namespace kvx
