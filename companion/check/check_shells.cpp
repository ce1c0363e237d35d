#include "check/check_shells.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "check/describe.h"
#include "check/table_rows.h"

namespace kvx {

using korvex::Section;

namespace {

template <std::size_t Nodes>
std::array<korvex::Vector3, Nodes> PlacesOf(const korvex::ModelTables& tables,
                                            const ElementNodes& element) {
  std::array<korvex::Vector3, Nodes> places{};
  for (std::size_t k = 0; k < Nodes; ++k) places[k] = PlaceOf(tables, element.nodes[k]);
  return places;
}

double ThicknessOf(const CheckedModel& model, std::int32_t row) {
  const std::int32_t thickness =
      model.tables.Shell4Properties[static_cast<std::size_t>(row)].thickness;
  if (!IsRow(model.tables, Section::ShellThicknesses, thickness)) return 0.0;
  return model.tables.ShellThicknesses[static_cast<std::size_t>(thickness)].TK;
}

const char* CodeOf(ShapeFault fault) {
  switch (fault) {
    case ShapeFault::Crossing:
      return "K115";
    case ShapeFault::Concave:
    case ShapeFault::InLine:
      return "K116";
    case ShapeFault::Skewed:
      return "K118";
    case ShapeFault::Elongated:
      return "K119";
    case ShapeFault::Warped:
      return "K120";
    default:
      return "K117";
  }
}

std::string NodePair(const ElementNodes& element, std::size_t corner) {
  return std::to_string(element.nodes[corner]) + " and " +
         std::to_string(element.nodes[(corner + 1) % element.count]);
}

std::string FaultText(const ShellShape& shape, const ElementNodes& element) {
  const std::string node = "node " + std::to_string(element.nodes[shape.corner]);
  switch (shape.fault) {
    case ShapeFault::SamePlace:
      return "its nodes " + NodePair(element, shape.corner) +
             " are at the same place; results are wrong or not numbers.";
    case ShapeFault::NoArea:
      return "its nodes lie on a line, it has no area; displacements are wrong or not numbers.";
    case ShapeFault::Crossing:
      return "its edges cross; displacements are wrong or not numbers.";
    case ShapeFault::Concave:
      return "its corner at " + node + " is re-entrant; its stiffness and stresses are wrong.";
    case ShapeFault::InLine:
      return "its edges at " + node +
             " lie on a line; its stresses, and perhaps all displacements, are not numbers.";
    case ShapeFault::Skewed:
      return "its angle at " + node + " is " + NumberText(shape.measure) +
             " degrees; it is too stiff, its stresses are poor.";
    case ShapeFault::Elongated:
      return "it is " + NumberText(shape.measure) +
             " times as long as wide; its stresses across are poor.";
    default:
      return node + " stands " + NumberText(shape.measure) + " off the plane of the others, " +
             NumberText(100.0 * shape.measure / shape.size) +
             " % of its size; the solver lays it flat.";
  }
}

const char* RemedyOf(const ShellShape& shape) {
  // A corner that far off its element is another node.
  constexpr double OtherNode = 0.5;
  switch (shape.fault) {
    case ShapeFault::Crossing:
      return "Write the nodes in order round the element: exchange two neighbours.";
    case ShapeFault::Concave:
      return "Move a node, or divide it into two triangles.";
    case ShapeFault::InLine:
      return "Write a triangle of the other three nodes, or move a node.";
    case ShapeFault::Skewed:
      return "Move a node, or divide the mesh differently here.";
    case ShapeFault::Elongated:
      return "Divide it along its length, or mend a coordinate.";
    case ShapeFault::Warped:
      if (shape.measure > OtherNode * shape.size) return "Mend that node's number or coordinates.";
      return "Mend a coordinate, divide it into two triangles, or refine the mesh.";
    default:
      return "Mend a coordinate, or remove the element and merge its nodes.";
  }
}

// A shell that is not as it should be.
struct BadShell {
  Section section = Section::Shells4;
  std::int32_t row = 0;
  ShellShape shape;
};

void AddShape(const CheckedModel& model, const BadShell& bad, Finding& finding) {
  const ElementNodes element = NodesOf(model.tables, bad.section, bad.row);
  finding.message =
      DescribeElement(model, bad.section, bad.row) + ": " + FaultText(bad.shape, element);
  finding.remedy = RemedyOf(bad.shape);
}

// More bad shells are not those of a few misplaced nodes.
constexpr std::size_t MostGrouped = 1000;

// Which bad shells each node has, by their index, and how many shells in all.
struct NodeShells {
  std::vector<std::size_t> bad;
  std::size_t all = 0;
};
using ShellsOfNodes = std::map<std::int32_t, NodeShells>;

ShellsOfNodes CollectNodes(const CheckedModel& model, const std::vector<BadShell>& shells) {
  ShellsOfNodes nodes;
  for (std::size_t k = 0; k < shells.size(); ++k) {
    const ElementNodes shell = NodesOf(model.tables, shells[k].section, shells[k].row);
    for (std::size_t j = 0; j < shell.count; ++j) nodes[shell.nodes[j]].bad.push_back(k);
  }
  for (const Section section : {Section::Shells4, Section::Shells3}) {
    for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
      if (StateOf(model, section, row) == ElementState::Unusable) continue;
      const ElementNodes shell = NodesOf(model.tables, section, row);
      for (std::size_t j = 0; j < shell.count; ++j) {
        const auto at = nodes.find(shell.nodes[j]);
        if (at != nodes.end()) ++at->second.all;
      }
    }
  }
  return nodes;
}

// Whether the node alone explains its bad shells: all its shells are bad, and each of their other
// nodes has fewer bad ones, all of them among these.
bool IsMisplaced(const CheckedModel& model, const std::vector<BadShell>& shells,
                 const ShellsOfNodes& nodes, std::int32_t node) {
  const NodeShells& own = nodes.at(node);
  if (own.bad.size() < 2 || own.bad.size() != own.all) return false;
  for (const std::size_t k : own.bad) {
    const ElementNodes shell = NodesOf(model.tables, shells[k].section, shells[k].row);
    for (std::size_t j = 0; j < shell.count; ++j) {
      if (shell.nodes[j] == node) continue;
      const std::vector<std::size_t>& others = nodes.at(shell.nodes[j]).bad;
      if (others.size() >= own.bad.size() ||
          !std::includes(own.bad.begin(), own.bad.end(), others.begin(), others.end())) {
        return false;
      }
    }
  }
  return true;
}

// One finding for all shells of a misplaced node: that of the worst one.
void NameMisplaced(const CheckedModel& model, const std::vector<BadShell>& shells,
                   const std::vector<std::size_t>& group, std::int32_t node, FindingList& list) {
  const BadShell& worst =
      shells[*std::min_element(group.begin(), group.end(), [&](std::size_t a, std::size_t b) {
        return shells[a].shape.fault < shells[b].shape.fault;
      })];
  Finding finding = MakeRowFinding(CodeOf(worst.shape.fault), model, worst.section, worst.row);
  AddShape(model, worst, finding);
  for (const std::size_t k : group) {
    if (shells[k].section == worst.section && shells[k].row != worst.row) {
      finding.rows.push_back(shells[k].row);
    }
  }
  finding.message += " All " + std::to_string(group.size()) + " shells at " +
                     DescribeNode(model, node) + " have a bad shape.";
  finding.remedy = "Look at the coordinates of node " + std::to_string(node) + ".";
  AddFinding(std::move(finding), list);
}

void NameShells(const CheckedModel& model, const std::vector<BadShell>& shells, FindingList& list) {
  std::vector<bool> isNamed(shells.size());
  if (shells.size() > 1 && shells.size() <= MostGrouped) {
    const ShellsOfNodes nodes = CollectNodes(model, shells);
    for (const auto& [node, own] : nodes) {
      if (!IsMisplaced(model, shells, nodes, node)) continue;
      NameMisplaced(model, shells, own.bad, node, list);
      for (const std::size_t k : own.bad) isNamed[k] = true;
    }
  }
  for (std::size_t k = 0; k < shells.size(); ++k) {
    if (isNamed[k]) continue;
    Finding finding =
        MakeRowFinding(CodeOf(shells[k].shape.fault), model, shells[k].section, shells[k].row);
    AddShape(model, shells[k], finding);
    AddFinding(std::move(finding), list);
  }
}

}  // namespace

ShellShape JudgeShell(const CheckedModel& model, Section section, std::int32_t row) {
  const ElementNodes element = NodesOf(model.tables, section, row);
  return section == Section::Shells4
             ? JudgeQuad(PlacesOf<4>(model.tables, element), ThicknessOf(model, row))
             : JudgeTriangle(PlacesOf<3>(model.tables, element));
}

void CheckShells(CheckedModel& model, FindingList& list) {
  std::vector<BadShell> shells;
  for (const Section section : {Section::Shells4, Section::Shells3}) {
    for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
      ElementState& state = StateOf(model, section, row);
      if (state != ElementState::Sound || IsDoubtful(model, section, row)) continue;
      const ShellShape shape = JudgeShell(model, section, row);
      if (shape.fault == ShapeFault::None) continue;
      state = ElementState::Broken;
      shells.push_back({section, row, shape});
    }
  }
  NameShells(model, shells, list);
}

}  // namespace kvx
