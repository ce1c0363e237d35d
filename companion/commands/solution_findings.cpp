// K701 .. K709: balance, displacements, elements and supports of a solution.
#include <algorithm>
#include <cmath>

#include "check/describe.h"
#include "commands/result_findings.h"
#include "commands/rough_text.h"
#include "commands/solution_text.h"
#include "deck/row_formats.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Section;

namespace {

Section SectionOf(ElementKind kind) {
  if (kind == ElementKind::Shell4) return Section::Shells4;
  return kind == ElementKind::Shell3 ? Section::Shells3 : Section::Beams;
}

bool HasSupports(const SolvedModel& solved) {
  return std::find(solved.isHeld.begin(), solved.isHeld.end(), 1) != solved.isHeld.end();
}

constexpr const char* NoSupports = "Nothing holds the structure: it has no supports.";
constexpr const char* FindMechanisms = "Look for what can move: kvx check --deep names it.";

template <typename Numbers>
bool HasNonFinite(const Numbers& numbers) {
  return std::any_of(numbers.begin(), numbers.end(), [](double x) { return !std::isfinite(x); });
}

// The first row of a table of loads with a number that is none; -1: there is no such row.
template <typename Table, typename NumbersOf>
std::int32_t FindBadRow(const Table& table, const NumbersOf& numbersOf) {
  const auto found = std::find_if(table.begin(), table.end(),
                                  [&](const auto& row) { return HasNonFinite(numbersOf(row)); });
  return found == table.end() ? -1 : static_cast<std::int32_t>(found - table.begin());
}

struct LoadRow {
  Section section = Section::Forces;
  std::int32_t row = -1;  // -1: none
};

// The first row of a load that is not a number: none where only the sum of several rows is none.
LoadRow FindBadLoad(const korvex::ModelTables& tables) {
  const auto intensities = [](const auto& row) { return row.q; };
  LoadRow bad{Section::Forces,
              FindBadRow(tables.NodalForces, [](const auto& row) { return row.components; })};
  if (bad.row < 0) {
    bad = {Section::Shell4Loads, FindBadRow(tables.Shell4SurfaceLoads, intensities)};
  }
  if (bad.row < 0) {
    bad = {Section::Shell3Loads, FindBadRow(tables.Shell3SurfaceLoads, intensities)};
  }
  if (bad.row < 0) bad = {Section::BeamLoads, FindBadRow(tables.BeamLineLoads, intensities)};
  return bad;
}

Finding MakeLoadFinding(const CheckedModel& places, const NotFinite& bad) {
  const LoadRow load = FindBadLoad(places.tables);
  Finding finding = load.row >= 0 ? MakeRowFinding("K702", places, load.section, load.row)
                                  : MakeNodeFinding("K702", places, bad.loadNode);
  finding.nodes = {bad.loadNode};
  finding.hasPosition = true;
  finding.position = PlaceOf(places.tables, bad.loadNode);
  finding.message = DescribeNode(places, bad.loadNode) + ": its load along " +
                    DofNames[static_cast<std::size_t>(bad.loadDof)] + " is not a number";
  if (load.row >= 0) {
    finding.message += std::string(", from row ") + std::to_string(load.row) + " of " +
                       korvex::FormatOf(load.section).key;
  }
  finding.remedy = "Mend the loads there.";
  return finding;
}

// Names what has spoiled the displacements.
Finding MakeCauseFinding(const AuditOptions& options, const CheckedModel& places,
                         const SolvedModel& solved, const NotFinite& bad) {
  if (bad.hasElement) {
    const Section section = SectionOf(bad.element.kind);
    Finding finding = MakeRowFinding("K702", places, section, bad.element.row);
    finding.message =
        DescribeElement(places, section, bad.element.row) + ": its stiffness is not a number";
    finding.remedy = "Mend its shape, its material, or its thickness or section.";
    return finding;
  }
  if (bad.loadNode >= 0) return MakeLoadFinding(places, bad);
  if (bad.lonelyNode >= 0) {
    Finding finding = MakeNodeFinding("K702", places, bad.lonelyNode);
    finding.message = DescribeNode(places, bad.lonelyNode) + ": no element holds it";
    finding.remedy = "Connect the node with an element, or remove it.";
    return finding;
  }
  Finding finding = MakeNodeFinding("K702", places, bad.node);
  finding.message = DescribeNode(places, bad.node) + ": its displacement " +
                    DofNames[static_cast<std::size_t>(bad.dof)] + " is not a number";
  finding.remedy = AdviseOnNoSolution(options.reading, solved);
  return finding;
}

void AddNotFinite(const AuditOptions& options, const CheckedModel& places,
                  const SolvedModel& solved, AuditReport& report) {
  const NotFinite& bad = report.verdict.notFinite;
  Finding finding = MakeCauseFinding(options, places, solved, bad);
  finding.message += "; the displacements of " +
                     CountText(static_cast<std::size_t>(bad.nodes), "node", "nodes") +
                     " are NaN or infinite";
  if (finding.nodes != std::vector<std::int32_t>{bad.node}) {
    finding.message += ", first those of " + DescribeNode(places, bad.node);
  }
  finding.message += '.';
  AddFinding(finding, report.findings);
}

// "350 of Fz is left over at node 5 at (0, 0, 0)"
std::string ResidualText(const CheckedModel& places, const DofValue& residual) {
  return NumberText(residual.value) + " of " + ForceNames[static_cast<std::size_t>(residual.dof)] +
         " is left over at " + DescribeNode(places, residual.node);
}

void AddImbalance(const AuditOptions& options, const CheckedModel& places,
                  const SolvedModel& solved, AuditReport& report) {
  const Reactions& r = report.reactions;
  const DofValue& worst = r.residual;
  Finding finding =
      worst.node >= 0 ? MakeNodeFinding("K703", places, worst.node) : MakeFinding("K703");
  const ForceSum& left = r.imbalanceSum;
  finding.message = "loads and reactions: they differ by " + RoughText(r.imbalance) +
                    " of the loads, force " + PointText({left[0], left[1], left[2]}) + ", moment " +
                    PointText({left[3], left[4], left[5]}) + " about " + PointText(r.centre) + '.';
  if (worst.node >= 0) finding.message += ' ' + ResidualText(places, worst) + ", a free node.";
  if (report.verdict.share > 1.0) {
    finding.message += " Displacements reach " + RoughText(report.verdict.share) +
                       " times the extent of the model: the structure can move.";
  }
  finding.remedy = AdviseOnNoSolution(options.reading, solved);
  AddFinding(finding, report.findings);
}

void AddResidual(const AuditOptions& options, const CheckedModel& places, const SolvedModel& solved,
                 AuditReport& report) {
  const DofValue& worst = report.reactions.residual;
  if (!HasResidual(report.reactions)) return;
  Finding finding = MakeNodeFinding("K704", places, worst.node);
  finding.message = ResidualText(places, worst) + ": " + RoughText(worst.relative) +
                    " of the largest force of an element; the displacements there have few "
                    "correct digits.";
  finding.remedy = AdviseOnNoSolution(options.reading, solved);
  AddFinding(finding, report.findings);
}

void AddLargeDisplacement(const CheckedModel& places, AuditReport& report) {
  const Verdict& verdict = report.verdict;
  const double rotation = verdict.rotation.value;
  const bool isFar = verdict.share > LargeShare, isTurned = rotation > LargeRotation;
  const char* const Remedy = "Look at the units of loads, materials, thicknesses and sections.";
  if (verdict.share > NotableShare && (isFar || !isTurned)) {
    Finding finding = MakeNodeFinding("K705", places, verdict.translation.node);
    if (!isFar) finding.severity = Severity::Hint;
    finding.message = DescribeNode(places, verdict.translation.node) + ": it moves by " +
                      NumberText(verdict.translation.value) + ", " + RoughText(verdict.share) +
                      " of the extent of the model; linear statics holds for small displacements.";
    finding.remedy = Remedy;
    AddFinding(finding, report.findings);
  } else if (rotation > NotableRotation) {
    Finding finding = MakeNodeFinding("K706", places, verdict.rotation.node);
    if (!isTurned) finding.severity = Severity::Hint;
    finding.message = DescribeNode(places, verdict.rotation.node) + ": it turns by " +
                      NumberText(rotation) + "; linear statics holds for small rotations.";
    finding.remedy = Remedy;
    AddFinding(finding, report.findings);
  }
}

double WeighSum(const ForceSum& sum, const ForceScales& scales) {
  double largest = 0.0;
  for (std::size_t i = 0; i < sum.size(); ++i) {
    largest = LargerMagnitude(largest, RatioOf(sum[i], i < 3 ? scales.force : scales.moment));
  }
  return largest;
}

// A finding for each kind of elements, with the rows of all of them: the worst row first.
void AddUnbalanced(const CheckedModel& places, AuditReport& report) {
  const Reactions& r = report.reactions;
  const double weight = WeighUnbalanced(r);
  if (!(weight > NotableCouple)) return;
  for (const ElementKind kind : {ElementKind::Shell4, ElementKind::Shell3, ElementKind::Beam}) {
    std::vector<std::pair<double, std::int32_t>> rows;
    for (const UnbalancedElement& element : r.unbalanced) {
      if (element.element.kind != kind) continue;
      rows.emplace_back(-WeighSum(element.sum, r.sumScales), element.element.row);
    }
    if (rows.empty()) continue;
    std::sort(rows.begin(), rows.end());
    const Section section = SectionOf(kind);
    Finding finding = MakeRowFinding("K707", places, section, rows[0].second);
    if (weight <= LargeCouple) finding.severity = Severity::Hint;
    finding.rows.clear();
    for (const auto& row : rows) finding.rows.push_back(row.second);
    finding.message =
        DescribeElement(places, section, rows[0].second) +
        (rows.size() == 1 ? std::string(" is")
                          : " and " + CountText(rows.size() - 1, "other is", "others are")) +
        (kind == ElementKind::Shell4 ? " warped" : " not in equilibrium") +
        "; unbalanced elements keep " + RoughText(weight) +
        " of the moments of the loads from the supports.";
    finding.remedy = "Refine the mesh, or divide the quadrilaterals into triangles.";
    if (kind != ElementKind::Shell4) finding.remedy = "Mend nodes that stand twice.";
    AddFinding(finding, report.findings);
  }
}

void AddMissedDisplacements(const CheckedModel& places, const SolvedModel& solved,
                            AuditReport& report) {
  for (const MovedSupport& moved : report.reactions.moved) {
    const double missing = RatioOf(moved.displacement - moved.prescribed, moved.prescribed);
    if (missing <= MissingDisplacement) continue;
    const auto row = std::find_if(solved.prescribed.begin(), solved.prescribed.end(),
                                  [&](const PrescribedMotion& dof) {
                                    return dof.node == moved.node && dof.dof == moved.dof;
                                  });
    Finding finding = MakeRowFinding("K708", places, Section::Forces, row->row);
    finding.nodes = {moved.node};
    finding.hasPosition = true;
    finding.position = PlaceOf(places.tables, moved.node);
    finding.message =
        DescribeNode(places, moved.node) + ": " + DofNames[static_cast<std::size_t>(moved.dof)] +
        " is " + NumberText(moved.displacement) + " instead of the prescribed " +
        NumberText(moved.prescribed) + "; the structure is nearly as stiff as the supports.";
    finding.remedy = "Look at the units of Young's modulus and of lengths.";
    AddFinding(finding, report.findings);
  }
}

// Without a node: the bound is that of all displacements together.
void AddLostDigits(AuditReport& report) {
  if (!report.solution) return;
  const LoadQuality& load = report.solution->loads.front();
  const double digits = CountCorrectDigits(load);
  if (std::isnan(digits) || digits >= NotableDigits) return;
  Finding finding = MakeFinding("K709");
  if (digits < LeastDigits) finding.severity = Severity::Error;
  const double shown = std::floor(10.0 * digits) / 10.0;
  finding.message = "of the about 16 digits of the displacements " +
                    (shown > 0.0 ? "as few as " + NumberText(shown) + " may be right"
                                 : std::string("maybe none is right")) +
                    " (condition " +
                    (std::isinf(load.condition) ? "infinite" : RoughText(load.condition)) +
                    ", backward error " + RoughText(load.backwardError) + ").";
  finding.remedy =
      "Look for neighbours of very different stiffness and for parts that are hardly held (kvx "
      "check "
      "--deep). Very many elements along a span cost digits, too.";
  AddFinding(finding, report.findings);
}

// Errors of the model explain what is wrong with the solution; else they are a finding themselves.
void AddModelErrors(const AuditOptions& options, AuditReport& report) {
  if (options.modelErrors == 0) return;
  const std::string text = "kvx check finds " + CountText(options.modelErrors, "error", "errors") +
                           " in the model, first " + options.firstError;
  std::vector<Finding>& findings = report.findings.findings;
  const auto explained = std::find_if(findings.begin(), findings.end(), [](const Finding& finding) {
    return finding.severity == Severity::Error;
  });
  if (explained != findings.end()) {
    explained->remedy = "First mend the model: " + text;
    return;
  }
  Finding finding = MakeFinding("K701");
  finding.message = text;
  finding.remedy = "Mend the model, and solve it anew.";
  AddFinding(finding, report.findings);
}

}  // namespace

std::string AdviseOnNoSolution(const DisplacementReading& reading, const SolvedModel& solved) {
  if (reading.fit == DisplacementFit::Fits) {
    return std::string("Remove ") + ExactDisplacementFileName + ", and try again.";
  }
  return HasSupports(solved) ? FindMechanisms : NoSupports;
}

double WeighUnbalanced(const Reactions& reactions) {
  ForceSum sum{};
  double largest = 0.0;
  for (const UnbalancedElement& element : reactions.unbalanced) {
    largest = LargerMagnitude(largest, WeighSum(element.sum, reactions.sumScales));
    for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += element.sum[i];
  }
  return LargerMagnitude(largest, WeighSum(sum, reactions.sumScales));
}

bool IsRoundingAlone(const Reactions& reactions) {
  return !reactions.isLoaded && reactions.imbalance > BalanceTolerance && IsBalanced(reactions);
}

bool HasResidual(const Reactions& reactions) {
  const DofValue& worst = reactions.residual;
  if (worst.node < 0 || worst.relative <= ResidualTolerance) return false;
  const double rounding =
      RoundingAllowance * reactions.roundingSum[static_cast<std::size_t>(worst.dof)];
  return reactions.isLoaded || !(std::fabs(worst.value) <= rounding);
}

void AddSolutionFindings(const AuditOptions& options, const CheckedModel& places,
                         const SolvedModel& solved, AuditReport& report) {
  if (report.verdict.notFinite.nodes > 0) {
    AddNotFinite(options, places, solved, report);
  } else if (!IsBalanced(report.reactions)) {
    AddImbalance(options, places, solved, report);
  } else {
    AddResidual(options, places, solved, report);
    if (report.findings.findings.empty()) AddLargeDisplacement(places, report);
    AddUnbalanced(places, report);
    AddMissedDisplacements(places, solved, report);
    AddLostDigits(report);
  }
  AddModelErrors(options, report);
}

}  // namespace kvx
