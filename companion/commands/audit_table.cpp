#include "commands/audit_table.h"

namespace kvx {

namespace {

Cell CountCell(const FindingList& findings, Severity severity) {
  return static_cast<std::int64_t>(CountFindings(findings, severity));
}

// Empty where there is no node.
Cell NodeCell(std::int32_t node) {
  if (node < 0) return {};
  return static_cast<std::int64_t>(node);
}

}  // namespace

ResultTable MakeAuditTable(const std::string& item) {
  ResultTable table;
  table.notes = {
      "Sums along the global axes, moments about the global origin: of the loads, and of the "
      "support "
      "forces on the structure. imbalance: what is left over, as a part of the loads. residual: "
      "the "
      "largest of a free dof, as a part of the largest force. displacement and rotation: the "
      "length "
      "of the largest vector, and its node; rotations in radians. Units of the model."};
  table.columns = {item,
                   "Fx",
                   "Fy",
                   "Fz",
                   "Mx",
                   "My",
                   "Mz",
                   "reaction_Fx",
                   "reaction_Fy",
                   "reaction_Fz",
                   "reaction_Mx",
                   "reaction_My",
                   "reaction_Mz",
                   "imbalance",
                   "residual",
                   "displacement",
                   "displacement_node",
                   "rotation",
                   "rotation_node",
                   "errors",
                   "warnings",
                   "hints",
                   "verdict"};
  return table;
}

void AddAuditRow(const std::string& name, const AuditReport* report, const std::string& verdict,
                 ResultTable& table) {
  table.cells.emplace_back(name);
  if (report == nullptr) {
    table.cells.resize(table.cells.size() + table.columns.size() - 2);
  } else {
    const Reactions& reactions = report->reactions;
    for (const double sum : reactions.loads) table.cells.emplace_back(sum);
    for (const double sum : reactions.reactions) table.cells.emplace_back(sum);
    table.cells.emplace_back(reactions.imbalance);
    table.cells.emplace_back(reactions.residual.relative);
    for (const LargestDisplacement& largest :
         {report->verdict.translation, report->verdict.rotation}) {
      table.cells.emplace_back(largest.value);
      table.cells.push_back(NodeCell(largest.node));
    }
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Hint}) {
      table.cells.push_back(CountCell(report->findings, severity));
    }
  }
  table.cells.emplace_back(verdict);
}

}  // namespace kvx
