#include "commands/check_model.h"

#include <algorithm>
#include <utility>

#include "check/check_beams.h"
#include "check/check_counting.h"
#include "check/check_doubled_elements.h"
#include "check/check_far_nodes.h"
#include "check/check_load_sizes.h"
#include "check/check_loads.h"
#include "check/check_mesh.h"
#include "check/check_numbers.h"
#include "check/check_offsets.h"
#include "check/check_outliers.h"
#include "check/check_properties.h"
#include "check/check_references.h"
#include "check/check_restraints.h"
#include "check/check_rigid_motions.h"
#include "check/check_sections.h"
#include "check/check_shells.h"
#include "check/check_support_stiffness.h"
#include "check/check_text.h"
#include "check/check_units.h"
#include "check/element_sizes.h"
#include "check/fixed_dofs.h"
#include "check/join_parts.h"
#include "check/table_rows.h"
#include "mechanism/check_mechanisms.h"
#include "mechanism/factor_work.h"
#include "platform/free_memory.h"
#include "platform/vector_bits.h"
#include "size/check_detail_models.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

// Below so many multiplications the search for mechanisms takes no more than about a second.
constexpr double QuickWork = 1e9;

// A node far away comes before the shapes of elements: it spoils those of all its elements.
void CheckElements(const TableUse& use, CheckedModel& model, FindingList& findings) {
  CheckNumbers(use, model, findings);
  CheckReferences(model, findings);
  CheckFarNodes(model, findings);
  CheckMaterials(use, model, findings);
  CheckThicknesses(use, model, findings);
  CheckSections(use, model, findings);
  CheckBeams(model, findings);
  CheckShells(model, findings);
  CheckDoubledElements(model, findings);
}

// A part that a seam cuts off from its supports is one slip, that of the seam: K301 looks at the
// parts as they were meant, and the seam becomes an error.
void CheckMotions(const FixedDofs& dofs, const Parts& joined, const std::vector<Gap>& gaps,
                  std::vector<char>& partsOnOddFlags, CheckReport& report) {
  std::vector<char> joinedMoves;
  CheckRigidMotions(report.model, joined, dofs, joinedMoves, partsOnOddFlags, report.findings);
  if (joined.nodeCounts.size() < report.parts.nodeCounts.size()) {
    FindingList unused;
    std::vector<char> moves, onOddFlags;
    const std::vector<std::string> notChecked = report.model.notChecked;
    CheckRigidMotions(report.model, report.parts, dofs, moves, onOddFlags, unused);
    report.model.notChecked = notChecked;  // said once
    RaiseGapsOfLooseParts(report.parts, joined, gaps, moves, joinedMoves, report.findings);
  }
}

void CheckSupportsAndLoads(const TableUse& use, const std::vector<Gap>& gaps, CheckReport& report) {
  CheckedModel& model = report.model;
  FixedDofs dofs;
  CollectFixedDofs(model, dofs);
  Parts joined;
  JoinParts(report.parts, gaps, joined);
  std::vector<char> partsOnOddFlags;
  CheckMotions(dofs, joined, gaps, partsOnOddFlags, report);
  CheckRestraints(model, joined, dofs, partsOnOddFlags, report.findings);
  CheckLoads(model, joined, dofs, report.findings);
  CheckLoadSizes(model, use, report.findings);
  SumLoads(model, dofs, report.loads);
}

void CheckPlausibility(const TableUse& use, CheckedModel& model, FindingList& findings) {
  ElementSizes sizes;
  MeasureElements(model, sizes);
  CheckThicknessOutliers(use, sizes, model, findings);
  CheckSectionOutliers(use, sizes, model, findings);
  CheckOffsets(model, findings);
  CheckUnits(use, sizes, model, findings);
  CheckSupportStiffness(model, findings);
}

bool ShareNodes(const Finding& a, const Finding& b) {
  return std::any_of(a.nodes.begin(), a.nodes.end(), [&](std::int32_t node) {
    return std::count(b.nodes.begin(), b.nodes.end(), node) > 0;
  });
}

// The finding that explains a mechanism: one about the same nodes, or else the first one about an
// element or a size. Null: none.
// before: findings from this one on are no causes.
Finding* FindCause(const Finding& mechanism, std::size_t before, FindingList& list) {
  const auto begin = list.findings.begin();
  const auto end = begin + static_cast<std::ptrdiff_t>(before);
  const auto isMistake = [](const Finding& finding) { return finding.severity != Severity::Hint; };
  auto cause = std::find_if(begin, end, [&](const Finding& finding) {
    return isMistake(finding) && ShareNodes(finding, mechanism);
  });
  if (cause == end) {
    cause = std::find_if(begin, end, [&](const Finding& finding) {
      return isMistake(finding) && (finding.code[1] == '1' || finding.code[1] == '6');
    });
  }
  return cause == end ? nullptr : &*cause;
}

void Raise(Finding& cause) {
  if (cause.severity == Severity::Error) return;
  cause.severity = Severity::Error;
  cause.message += " The solver finds no resistance there: displacements are meaningless or NaN.";
}

// Looks for mechanisms without being asked. One that another finding explains makes an error of
// that finding; little resistance is told only where there is no other mistake.
void CheckQuickMechanisms(CheckedModel& model, FindingList& findings) {
  if (CountFindings(findings, Severity::Error) > 0) return;
  const bool isClean = CountFindings(findings, Severity::Warning) == 0;
  const std::size_t before = findings.findings.size();
  FindingList found = findings;
  CheckMechanisms(false, model, found);
  for (std::size_t k = before; k < found.findings.size(); ++k) {
    const Finding& finding = found.findings[k];
    Finding* const cause = FindCause(finding, before, findings);
    if (isClean || cause == nullptr) {
      if (isClean || finding.severity == Severity::Error) AddFinding(finding, findings);
    } else if (finding.severity == Severity::Error) {
      Raise(*cause);
    }
  }
}

}  // namespace

void CheckModel(std::string_view text, const CheckOptions& options, CheckReport& report) {
  CheckedModel& model = report.model;
  FindingList& findings = report.findings;
  CheckText(text, model, findings);
  if (CheckCounting(model, findings)) {
    model.notChecked.emplace_back("Nothing but the text was checked: all references are wrong.");
    return SortFindings(findings);
  }
  TableUse use;
  CountUse(model, use);
  CheckElements(use, model, findings);
  FindParts(model, report.parts);
  std::vector<Gap> gaps;
  CheckMesh(report.parts, options.tolerance, model, gaps, findings);
  CheckSupportsAndLoads(use, gaps, report);
  CheckPlausibility(use, model, findings);
  const std::uint64_t freeMemory = korvex::ReadFreeMemory();
  CheckSize(model,
            {options.asksMemory ? freeMemory : UnlimitedMemory, korvex::WidestVectorBits(),
             HasSparseEngine()},
            report.size, findings);
  CheckDetailModels(model, freeMemory, findings);
  report.weight = WeighModel(model);
  if (options.deep) {
    // The matrix of a model in a bad order may not even fit, where its solution is no trouble.
    CheckMechanisms(SavesMuch(report.size), model, findings);
  } else if (PredictFactorWork(model.tables).multiplications < QuickWork) {
    CheckQuickMechanisms(model, findings);
  }
  SortFindings(findings);
}

}  // namespace kvx
