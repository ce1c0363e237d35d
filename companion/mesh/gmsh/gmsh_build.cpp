#include "mesh/gmsh/gmsh_build.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "mesh/gmsh/gmsh_element_types.h"
#include "mesh/gmsh/gmsh_elements.h"
#include "mesh/gmsh/gmsh_node_table.h"

namespace kvx {

namespace {

using NodeRows = std::array<std::int32_t, 4>;

// Rows of ImportModel::typeNames.
enum TypeRow : std::int32_t { LineRow, TriangleRow, QuadrangleRow };

void Report(const GmshElement& element, Fate fate, const char* reason, const std::string& more,
            ImportReport& report) {
  ReportCard(GmshCard(element.type), fate, reason, {0, element.line},
             "element " + std::to_string(element.number) + more, report);
}

// Returns false where a node is missing.
bool FindNodes(const GmshElement& element, const GmshNodeTable& table, ImportReport& report,
               NodeRows& nodes) {
  nodes = {-1, -1, -1, -1};
  const std::size_t count = FindGmshType(element.type)->nodeCount;
  for (std::size_t k = 0; k < count; ++k) {
    nodes[k] = FindNode(table, element.nodes[k]);
    if (nodes[k] >= 0) continue;
    Report(element, Fate::Refused, "a node of it does not exist",
           ", node " + std::to_string(element.nodes[k]), report);
    return false;
  }
  return true;
}

// Makes a triangle of a quadrilateral with two equal neighbours. Returns false where the nodes of a
// shell make no element.
bool CollapseShell(const GmshElement& element, ImportReport& report, NodeRows& nodes) {
  const std::size_t count = nodes[3] < 0 ? 3 : 4;
  std::size_t equal = 0;
  std::size_t gone = 0;
  for (std::size_t k = 0; k < count; ++k) {
    for (std::size_t m = k + 1; m < count; ++m) {
      if (nodes[k] != nodes[m]) continue;
      ++equal;
      gone = m - k == 2 ? 0 : m;  // corners 1 and 3, 2 and 4 are no neighbours
    }
  }
  if (equal == 0) return true;
  if (count == 3 || equal > 1 || gone == 0) {
    Report(element, Fate::Refused, "a node stands twice in it", "", report);
    return false;
  }
  Report(element, Fate::Limited, "two of its corners are one node: taken as a triangle", "",
         report);
  std::rotate(nodes.begin() + static_cast<std::ptrdiff_t>(gone),
              nodes.begin() + static_cast<std::ptrdiff_t>(gone) + 1, nodes.end());
  nodes[3] = -1;
  return true;
}

std::int32_t AddShell(const GmshElement& element, NodeRows nodes, ImportModel& model,
                      ImportReport& report) {
  if (!CollapseShell(element, report, nodes)) return -1;
  ImportShell shell;
  shell.number = element.number;
  shell.nodes = nodes;
  shell.type = element.type == GmshTriangle ? TriangleRow : QuadrangleRow;
  model.shells.push_back(shell);
  return static_cast<std::int32_t>(model.shells.size()) - 1;
}

std::int32_t AddBeam(const GmshElement& element, const NodeRows& nodes, ImportModel& model,
                     ImportReport& report) {
  if (nodes[0] == nodes[1]) {
    Report(element, Fate::Refused, "a node stands twice in it", "", report);
    return -1;
  }
  ImportBeam beam;
  beam.number = element.number;
  beam.nodes = {nodes[0], nodes[1]};
  beam.type = LineRow;
  model.beams.push_back(beam);
  return static_cast<std::int32_t>(model.beams.size()) - 1;
}

// Whether an element is left out because of what it is, with a line in the report.
bool IsLeftOut(const GmshElement& element, GmshUse use, bool hasGroup, ImportReport& report) {
  if (use == GmshUse::Again) return true;
  const char* reason = nullptr;
  if (use == GmshUse::Interface) {
    reason = "lies between partitions and is no part of the geometry";
  } else if (use == GmshUse::Ghost) {
    reason = "a copy of an element for another partition";
  } else if (!hasGroup && element.type == GmshLine) {
    reason = "in no physical group: an edge of the geometry, no beam";
  } else if (!hasGroup && element.type == GmshPoint) {
    reason = "in no physical group: a point of the geometry";
  }
  if (reason == nullptr) return false;
  Report(element, Fate::NoEffect, reason, "", report);
  return true;
}

}  // namespace

void BuildGmshElements(const std::vector<GmshMember>& members, const std::vector<GmshUse>& uses,
                       GmshMesh& mesh, ImportModel& model, ImportReport& report,
                       std::vector<std::int32_t>& rows) {
  GmshNodeTable table;
  FillNodeTable(mesh, report, table);
  model.nodes = std::move(mesh.nodes);
  model.nodeNumbers = std::move(mesh.nodeNumbers);
  model.typeNames = {"line", "triangle", "quadrangle"};
  std::vector<bool> hasGroup(mesh.elements.size(), false);
  for (const GmshMember& member : members) hasGroup[member.element] = true;
  rows.assign(mesh.elements.size(), -1);
  NodeRows nodes{};
  for (std::size_t k = 0; k < mesh.elements.size(); ++k) {
    const GmshElement& element = mesh.elements[k];
    if (IsLeftOut(element, uses[k], hasGroup[k], report)) continue;
    if (!FindNodes(element, table, report, nodes)) continue;
    if (element.type == GmshPoint) {
      rows[k] = nodes[0];
    } else if (element.type == GmshLine) {
      rows[k] = AddBeam(element, nodes, model, report);
    } else {
      rows[k] = AddShell(element, nodes, model, report);
    }
  }
}

}  // namespace kvx
