#include "check/check_counting.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "check/describe.h"

namespace kvx {

using korvex::Section;

namespace {

// The smallest and the largest reference to a node, and the first element with the largest.
struct References {
  std::int64_t least = INT32_MAX, largest = INT32_MIN;
  Section section = Section::Header;
  std::int32_t row = -1;
};

void AddReference(std::int32_t node, References& all) {
  all.least = std::min<std::int64_t>(all.least, node);
  all.largest = std::max<std::int64_t>(all.largest, node);
}

References CollectReferences(const CheckedModel& model) {
  References all;
  for (const Section section : ElementSections) {
    for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
      if (IsLost(model, section, row)) continue;
      const ElementNodes element = NodesOf(model.tables, section, row);
      for (std::size_t k = 0; k < element.count; ++k) {
        if (element.nodes[k] > all.largest) {
          all.section = section;
          all.row = row;
        }
        AddReference(element.nodes[k], all);
      }
    }
  }
  const auto addRows = [&](Section section, const auto& table) {
    for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
      if (IsLost(model, section, row)) continue;
      AddReference(table[static_cast<std::size_t>(row)].node, all);
    }
  };
  addRows(Section::Restraints, model.tables.NodalRestraints);
  addRows(Section::Forces, model.tables.NodalForces);
  return all;
}

// The sum of the distances between the first two nodes of all elements, each number less `shift`.
double SumDistances(const CheckedModel& model, std::int32_t shift) {
  const auto count = static_cast<std::int64_t>(model.tables.Nodes.size());
  double sum = 0.0;
  for (const Section section : ElementSections) {
    for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
      const std::int32_t* nodes = NodesOf(model.tables, section, row).nodes;
      const std::int64_t a = std::int64_t{nodes[0]} - shift, b = std::int64_t{nodes[1]} - shift;
      if (a < 0 || a >= count || b < 0 || b >= count) continue;
      const double distance =
          korvex::Length(korvex::Subtract(PlaceOf(model.tables, static_cast<std::int32_t>(a)),
                                          PlaceOf(model.tables, static_cast<std::int32_t>(b))));
      if (std::isfinite(distance)) sum += distance;
    }
  }
  return sum;
}

}  // namespace

bool CheckCounting(const CheckedModel& model, FindingList& findings) {
  const References all = CollectReferences(model);
  const auto count = static_cast<std::int64_t>(model.tables.Nodes.size());
  if (all.row < 0 || all.least < 1 || all.largest != count) return false;
  // One wrong number, where node 0 was meant, has the same marks. Then the elements fit as they
  // are.
  if (SumDistances(model, 1) >= SumDistances(model, 0)) return false;
  auto& list = findings.findings;
  list.erase(std::remove_if(list.begin(), list.end(),
                            [](const Finding& finding) { return finding.code == "K017"; }),
             list.end());
  findings.counts.erase("K017");
  Finding finding = MakeRowFinding("K124", model, all.section, all.row);
  finding.message = DescribeElement(model, all.section, all.row) + ": refers to node " +
                    std::to_string(all.largest) + " of " + std::to_string(count) +
                    ", and no row of the file refers to node 0. The file counts nodes from 1, the "
                    "solver from 0: it stops at this element.";
  finding.remedy =
      "Subtract 1 from all node numbers; look whether materials, thicknesses, sections and the "
      "elements of loads are counted from 1, too.";
  AddFinding(std::move(finding), findings);
  return true;
}

}  // namespace kvx
