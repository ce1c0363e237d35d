#include "check/describe.h"

#include <algorithm>

#include "base/number_text.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

const char* NameOf(Section section) {
  switch (section) {
    case Section::Shells4:
      return "four-node shell";
    case Section::Shells3:
      return "three-node shell";
    default:
      return "beam";
  }
}

// The middle of the element's nodes.
korvex::Vector3 MiddleOf(const CheckedModel& model, const ElementNodes& element) {
  korvex::Vector3 middle{};
  for (std::size_t k = 0; k < element.count; ++k) {
    const korvex::Vector3 place = PlaceOf(model.tables, element.nodes[k]);
    for (std::size_t i = 0; i < 3; ++i) middle[i] += place[i] / static_cast<double>(element.count);
  }
  return middle;
}

bool HasPlace(const CheckedModel& model, std::int32_t node) {
  return node >= 0 && node < CountRows(model.tables, Section::Nodes) &&
         !IsLost(model, Section::Nodes, node);
}

bool HasPlace(const CheckedModel& model, const ElementNodes& element) {
  return std::all_of(element.nodes, element.nodes + element.count,
                     [&](std::int32_t node) { return HasPlace(model, node); });
}

}  // namespace

std::string NumberText(double value) {
  korvex::NumberBuffer buffer;
  return std::string(korvex::FormatNumber(value, buffer));
}

std::string PointText(const korvex::Vector3& point) {
  return "(" + NumberText(point[0]) + ", " + NumberText(point[1]) + ", " + NumberText(point[2]) +
         ")";
}

std::string DescribeNode(const CheckedModel& model, std::int32_t node) {
  std::string name = "node " + std::to_string(node);
  if (!HasPlace(model, node)) return name;
  return name + " at " + PointText(PlaceOf(model.tables, node));
}

std::string DescribeElement(const CheckedModel& model, Section section, std::int32_t row) {
  std::string name = std::string(NameOf(section)) + " " + std::to_string(row);
  const ElementNodes element = NodesOf(model.tables, section, row);
  if (IsLost(model, section, row) || !HasPlace(model, element)) return name;
  if (section != Section::Beams) return name + " at " + PointText(MiddleOf(model, element));
  return name + " at " + PointText(PlaceOf(model.tables, element.nodes[0])) + " .. " +
         PointText(PlaceOf(model.tables, element.nodes[1]));
}

Finding MakeRowFinding(const char* code, const CheckedModel& model, Section section,
                       std::int32_t row) {
  Finding finding = MakeFinding(code);
  finding.line = LineOf(model, section, row);
  finding.table = korvex::FormatOf(section).key;
  finding.rows = {row};
  if (section == Section::Nodes) {
    finding.nodes = {row};
    finding.hasPosition = HasPlace(model, row);
    if (finding.hasPosition) finding.position = PlaceOf(model.tables, row);
  }
  if (std::find(ElementSections.begin(), ElementSections.end(), section) == ElementSections.end() ||
      IsLost(model, section, row)) {
    return finding;
  }
  const ElementNodes element = NodesOf(model.tables, section, row);
  finding.nodes.assign(element.nodes, element.nodes + element.count);
  finding.hasPosition = HasPlace(model, element);
  if (finding.hasPosition) finding.position = MiddleOf(model, element);
  return finding;
}

Finding MakeNodeFinding(const char* code, const CheckedModel& model, std::int32_t node) {
  return MakeRowFinding(code, model, Section::Nodes, node);
}

}  // namespace kvx
