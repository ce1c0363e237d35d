#include "check/check_restraints.h"

#include <algorithm>
#include <array>

#include "check/describe.h"
#include "check/unknown_rows.h"

namespace kvx {

using korvex::NodalRestraint;
using korvex::Section;

namespace {

bool IsOdd(std::int32_t flag) { return flag != 0 && flag != 1; }

Finding MakeRestraintFinding(const char* code, const CheckedModel& model, std::int32_t row) {
  const NodalRestraint& restraint = model.tables.NodalRestraints[static_cast<std::size_t>(row)];
  Finding finding = MakeRowFinding(code, model, Section::Restraints, row);
  if (!IsNode(model, restraint.node)) return finding;
  finding.nodes = {restraint.node};
  finding.hasPosition = !IsLost(model, Section::Nodes, restraint.node);
  if (finding.hasPosition) finding.position = PlaceOf(model.tables, restraint.node);
  return finding;
}

std::string DescribeRestraint(const CheckedModel& model, std::int32_t node) {
  return "restraint of " + DescribeNode(model, node);
}

void CheckReference(const CheckedModel& model, std::int32_t row, FindingList& findings) {
  const NodalRestraint& restraint = model.tables.NodalRestraints[static_cast<std::size_t>(row)];
  Finding finding = MakeRestraintFinding("K305", model, row);
  const bool stops =
      std::find(restraint.fixed.begin(), restraint.fixed.end(), 1) != restraint.fixed.end();
  const std::size_t count = model.tables.Nodes.size();
  finding.message = "restraint row " + std::to_string(row) + ": node " +
                    std::to_string(restraint.node) + " does not exist; there are " +
                    std::to_string(count) + " nodes";
  if (count > 0) finding.message += ", 0 .. " + std::to_string(count - 1);
  finding.message += stops ? "; the run stops." : "; the row has no effect, as no flag is 1.";
  if (!stops) finding.severity = Severity::Warning;
  finding.remedy = "Correct the node number (nodes are counted from 0), or remove the row.";
  AddFinding(std::move(finding), findings);
}

void CheckFlags(const CheckedModel& model, std::int32_t row, bool decides, FindingList& findings) {
  const NodalRestraint& restraint = model.tables.NodalRestraints[static_cast<std::size_t>(row)];
  if (std::none_of(restraint.fixed.begin(), restraint.fixed.end(), IsOdd)) return;
  Finding finding = MakeRestraintFinding("K302", model, row);
  finding.message = DescribeRestraint(model, restraint.node) + ": ";
  std::string names, mended;
  for (std::size_t d = 0; d < restraint.fixed.size(); ++d) {
    mended += restraint.fixed[d] != 0 ? " 1" : " 0";
    if (!IsOdd(restraint.fixed[d])) continue;
    if (!names.empty()) names += ", ";
    names += std::string(DofNames[d]) + " = " + std::to_string(restraint.fixed[d]);
  }
  finding.message += "the flags " + names + " fix nothing; only 1 does.";
  if (decides) {
    finding.severity = Severity::Error;
    finding.message += " Its part can move as a rigid body; the displacements are meaningless.";
  }
  finding.remedy = "Write 1 to fix or 0 to leave free: \"" + std::to_string(restraint.node) + ":" +
                   mended + "\" if it was meant to be fixed.";
  AddFinding(std::move(finding), findings);
}

// K303. Rows of the same node, by a stable sort of the rows.
void CheckDoubledRows(const CheckedModel& model, const std::vector<std::int32_t>& rows,
                      FindingList& findings) {
  const auto& restraints = model.tables.NodalRestraints;
  const auto at = [&](std::int32_t row) -> const NodalRestraint& {
    return restraints[static_cast<std::size_t>(row)];
  };
  std::vector<std::int32_t> sorted = rows;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](std::int32_t a, std::int32_t b) { return at(a).node < at(b).node; });
  std::vector<std::array<std::int32_t, 2>> pairs;  // the later row, and the first of its node
  for (std::size_t first = 0, k = 1; k < sorted.size(); ++k) {
    if (at(sorted[k]).node != at(sorted[first]).node) {
      first = k;
    } else {
      pairs.push_back({sorted[k], sorted[first]});
    }
  }
  std::sort(pairs.begin(), pairs.end());
  for (const auto& [row, earlier] : pairs) {
    Finding finding = MakeRestraintFinding("K303", model, row);
    finding.rows = {earlier, row};
    const bool same = at(row).fixed == at(earlier).fixed;
    finding.message = DescribeRestraint(model, at(row).node) + ": it has an earlier row, at line " +
                      std::to_string(LineOf(model, Section::Restraints, earlier)) +
                      (same ? ", with the same flags" : ", with other flags") +
                      "; a degree of freedom is fixed if it is fixed in any row.";
    finding.remedy = "Keep one row with all flags that are meant.";
    AddFinding(std::move(finding), findings);
  }
}

// K304. Nodes of no element that are fixed in part have NaNs and are K203 or K402.
void CheckLooseSupports(const CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                        const std::vector<std::int32_t>& rows, FindingList& findings) {
  std::vector<bool> isNamed(parts.partOfNode.size(), false);
  for (const std::int32_t row : rows) {
    const std::int32_t node = model.tables.NodalRestraints[static_cast<std::size_t>(row)].node;
    const auto at = static_cast<std::size_t>(node);
    if (parts.partOfNode[at] >= 0 || dofs.fixed[at] != AllDofs || isNamed[at]) continue;
    isNamed[at] = true;
    Finding finding = MakeRestraintFinding("K304", model, row);
    finding.message =
        DescribeRestraint(model, node) + ": no element has this node; the support holds nothing.";
    finding.remedy =
        "Support the node that was meant, or connect this node; a node that only marks a place can "
        "be removed.";
    AddFinding(std::move(finding), findings);
  }
}

}  // namespace

void CheckRestraints(const CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                     const std::vector<char>& partsOnOddFlags, FindingList& findings) {
  std::vector<std::int32_t> rows;  // whose values are known and whose nodes exist
  const std::int32_t count = CountRows(model.tables, Section::Restraints);
  for (std::int32_t row = 0; row < count; ++row) {
    if (IsDoubtful(model, Section::Restraints, row) || IsLost(model, Section::Restraints, row)) {
      continue;
    }
    const std::int32_t node = model.tables.NodalRestraints[static_cast<std::size_t>(row)].node;
    if (!IsNode(model, node)) {
      if (!HasLostRows(model, Section::Nodes)) CheckReference(model, row, findings);
      continue;
    }
    const std::int32_t part = parts.partOfNode[static_cast<std::size_t>(node)];
    CheckFlags(model, row, part >= 0 && partsOnOddFlags[static_cast<std::size_t>(part)] != 0,
               findings);
    rows.push_back(row);
  }
  CheckDoubledRows(model, rows, findings);
  if (!HasUnknownElements(model)) CheckLooseSupports(model, parts, dofs, rows, findings);
}

}  // namespace kvx
