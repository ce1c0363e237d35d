#include "check/loose_nodes.h"

#include <algorithm>

#include "check/describe.h"
#include "check/usable_elements.h"

namespace kvx {

using korvex::Section;

namespace {

bool AllElementsAreKnown(const CheckedModel& model) {
  for (const Section section : ElementSections) {
    if (!model.lostRows[IndexOf(section)].empty()) return false;
    const std::int32_t rows = CountRows(model.tables, section);
    for (std::int32_t row = 0; row < rows; ++row) {
      if (!IsUsable(model, section, row)) return false;
    }
  }
  return true;
}

// The nodes that other checks name: forces act on them, or restraints fix all their dofs.
std::vector<bool> FindNodesOfOthers(const CheckedModel& model) {
  const korvex::ModelTables& tables = model.tables;
  const auto nodeCount = static_cast<std::int32_t>(tables.Nodes.size());
  std::vector<std::uint8_t> fixed(tables.Nodes.size(), 0);  // a bit for each dof
  for (const korvex::NodalRestraint& row : tables.NodalRestraints) {
    if (row.node < 0 || row.node >= nodeCount) continue;
    for (std::size_t d = 0; d < row.fixed.size(); ++d) {
      if (row.fixed[d] == 1) fixed[static_cast<std::size_t>(row.node)] |= std::uint8_t(1U << d);
    }
  }
  constexpr std::uint8_t AllSix = 0x3F;
  std::vector<bool> isOther(tables.Nodes.size(), false);
  for (std::size_t node = 0; node < fixed.size(); ++node) isOther[node] = fixed[node] == AllSix;
  for (const korvex::NodalForce& row : tables.NodalForces) {
    if (row.node >= 0 && row.node < nodeCount) isOther[static_cast<std::size_t>(row.node)] = true;
  }
  return isOther;
}

// first .. end - 1 are the loose nodes.
Finding MakeLooseNodes(const CheckedModel& model, std::int32_t first, std::int32_t end) {
  Finding finding = MakeNodeFinding("K203", model, first);
  finding.rows.clear();
  for (std::int32_t node = first; node < end; ++node) finding.rows.push_back(node);
  finding.nodes = finding.rows;
  const bool isOne = end - first == 1;
  finding.message = DescribeNode(model, first);
  if (!isOne) {
    finding.message += ", and the nodes up to " + std::to_string(end - 1) + " (" +
                       std::to_string(end - first) + " nodes)";
  }
  finding.message += isOne ? ": it belongs to no element" : ": they belong to no element";
  finding.message += "; NaN for displacements, mostly of all other nodes as well.";
  finding.remedy = isOne
                       ? "Remove the node and renumber, or fix all its six degrees of freedom."
                       : "Remove the nodes and renumber, or fix all their six degrees of freedom.";
  return finding;
}

}  // namespace

void NameLooseNodes(const Parts& parts, CheckedModel& model, FindingList& findings) {
  // A model without elements has another fault.
  if (parts.nodeCounts.empty()) return;
  const auto nodeCount = static_cast<std::int32_t>(parts.partOfNode.size());
  const std::vector<bool> isOther = FindNodesOfOthers(model);
  const auto isLoose = [&](std::int32_t node) {
    const auto at = static_cast<std::size_t>(node);
    return parts.partOfNode[at] < 0 && !isOther[at] && !IsDoubtful(model, Section::Nodes, node) &&
           !IsLost(model, Section::Nodes, node);
  };
  bool isFirst = true;
  for (std::int32_t node = 0; node < nodeCount; ++node) {
    if (!isLoose(node)) continue;
    if (isFirst && !AllElementsAreKnown(model)) {
      model.notChecked.emplace_back(
          "Whether nodes belong to no element: the nodes of some elements are not known.");
      return;
    }
    isFirst = false;
    const std::int32_t first = node;
    while (node + 1 < nodeCount && isLoose(node + 1)) ++node;
    AddFinding(MakeLooseNodes(model, first, node + 1), findings);
  }
}

}  // namespace kvx
