#include "mechanism/check_mechanisms.h"

#include <algorithm>
#include <cmath>

#include "check/describe.h"
#include "check/motion_text.h"
#include "check/parts.h"
#include "check/unknown_rows.h"

namespace kvx {

using korvex::Section;
using korvex::Vector3;

namespace {

std::string ListDofs(std::uint8_t dofs) {
  std::string text;
  for (std::size_t d = 0; d < DofNames.size(); ++d) {
    if ((dofs >> d & 1U) == 0) continue;
    text += (text.empty() ? "" : ", ") + std::string(DofNames[d]);
  }
  return text;
}

std::string ListElements(const CheckedModel& model, const std::vector<ElementRef>& elements) {
  std::string text;
  for (const ElementRef& element : elements) {
    text += (text.empty() ? "" : "; ") + DescribeElement(model, element.section, element.row);
  }
  return text;
}

// "node 7 at (..)", "34 nodes, among them node 7 at (..)"
std::string DescribeNodes(const CheckedModel& model, const Mechanism& mechanism) {
  std::string node = DescribeNode(model, mechanism.node);
  if (mechanism.nodes.size() < 2) return node;
  return std::to_string(mechanism.nodes.size()) + " nodes, among them " + node + ",";
}

// How the mechanism's node moves, where its nodes do not move as one body.
std::string NodeMotionText(const Mechanism& mechanism) {
  for (std::size_t k = 0; k < mechanism.nodes.size(); ++k) {
    if (mechanism.nodes[k] != mechanism.node) continue;
    const std::array<double, 6>& u = mechanism.displacements[k];
    const Vector3 t{u[0], u[1], u[2]}, w{u[3], u[4], u[5]};
    const double length = korvex::Length(t), turn = korvex::Length(w);
    std::string text;
    if (length > 0.0) text = "moves along " + DirectionText(korvex::Normalise(t));
    if (turn * mechanism.body.radius <= 1e-6 * length) return text;
    if (!text.empty()) text += " and ";
    return text + "turns about " + DirectionText(korvex::Normalise(w));
  }
  return "moves";
}

std::string MotionOf(const CheckedModel& model, const Mechanism& mechanism) {
  const std::string nodes = DescribeNodes(model, mechanism);
  if (mechanism.kind == MechanismKind::NoStiffness) {
    return nodes + (mechanism.nodes.size() < 2 ? " has" : " have") + " no stiffness against " +
           ListDofs(mechanism.dofs);
  }
  const std::string may = mechanism.kind == MechanismKind::Soft ? " can all but " : " may ";
  if (!mechanism.motions.empty()) {
    return nodes + may + MotionsText(mechanism.body, mechanism.motions);
  }
  return nodes + (mechanism.nodes.size() < 2 ? " moves" : " move") +
         (mechanism.kind == MechanismKind::Soft ? " nearly" : "") +
         " without resistance: " + DescribeNode(model, mechanism.node) + " " +
         NodeMotionText(mechanism);
}

Finding MakeMechanismFinding(const CheckedModel& model, const Mechanism& mechanism) {
  const bool isSoft = mechanism.kind == MechanismKind::Soft;
  Finding finding = MakeNodeFinding(isSoft ? "K311" : "K310", model, mechanism.node);
  finding.message = MotionOf(model, mechanism);
  if (isSoft) {
    finding.message += "; rounding errors there are of the order of " +
                       NumberText(std::max(0.1, std::round(1000.0 * mechanism.error) / 10.0)) +
                       " % of the displacements.";
  } else {
    finding.message += "; the displacements are meaningless or NaN.";
  }
  if (!mechanism.elements.empty()) {
    finding.message += " Beside: " + ListElements(model, mechanism.elements) + ".";
  }
  finding.remedy =
      isSoft ? "Compare the stiffness of the elements named with that of their neighbours: E, "
               "thickness, section sizes and units."
             : "Look at E, thickness and section of the elements named, connect the nodes, or "
               "support them.";
  return finding;
}

bool HasCode(const FindingList& findings, const char* code) {
  return findings.counts.count(code) > 0;
}

// Whether the mechanism is the motion of a whole part.
bool IsWholePart(const Parts& parts, const Mechanism& mechanism) {
  const std::int32_t part = parts.partOfNode[static_cast<std::size_t>(mechanism.node)];
  return part >= 0 &&
         mechanism.nodes.size() ==
             static_cast<std::size_t>(parts.nodeCounts[static_cast<std::size_t>(part)]);
}

// K312, but for elements at nodes that nothing else holds: these are mechanisms, which name them.
void AddBrokenElements(const CheckedModel& model, const MechanismReport& report,
                       FindingList& findings) {
  std::vector<bool> isLoose(model.tables.Nodes.size(), false);
  for (const Mechanism& mechanism : report.mechanisms) {
    if (mechanism.kind != MechanismKind::NoStiffness) continue;
    for (const std::int32_t node : mechanism.nodes) isLoose[static_cast<std::size_t>(node)] = true;
  }
  for (const ElementRef& element : report.brokenElements) {
    const ElementNodes nodes = NodesOf(model.tables, element.section, element.row);
    if (StateOf(model, element.section, element.row) != ElementState::Sound ||
        std::any_of(nodes.nodes, nodes.nodes + nodes.count,
                    [&](std::int32_t node) { return isLoose[static_cast<std::size_t>(node)]; })) {
      continue;
    }
    Finding finding = MakeRowFinding("K312", model, element.section, element.row);
    finding.message = DescribeElement(model, element.section, element.row) +
                      ": its stiffness is infinite or not a number; so are the displacements of "
                      "all that is connected with it.";
    finding.remedy = "Look at its nodes, material, thickness or section.";
    AddFinding(std::move(finding), findings);
  }
}

}  // namespace

void AddMechanismFindings(const CheckedModel& model, const MechanismReport& report,
                          FindingList& findings) {
  AddBrokenElements(model, report, findings);
  Parts parts;
  FindParts(model, parts);
  const bool partsAreNamed =
      HasCode(findings, "K301") || HasCode(findings, "K302") || HasCode(findings, "K306");
  for (const Mechanism& mechanism : report.mechanisms) {
    if (partsAreNamed && IsWholePart(parts, mechanism)) continue;
    AddFinding(MakeMechanismFinding(model, mechanism), findings);
  }
  if (!report.more) return;
  Finding finding = MakeFinding("K310");
  finding.message = "there are more mechanisms; mend these first.";
  AddFinding(std::move(finding), findings);
}

void CheckMechanisms(bool reorders, CheckedModel& model, FindingList& findings) {
  if (HasUnknownElements(model) || HasLostRows(model, Section::Nodes) ||
      HasLostRows(model, Section::Restraints)) {
    model.notChecked.push_back(
        "Mechanisms were not looked for, because rows of nodes, elements or restraints are not "
        "known.");
    return;
  }
  MechanismReport report;
  if (reorders) {
    FindMechanismsReordered(model.tables, report);
  } else {
    FindMechanisms(model.tables, report);
  }
  if (!report.notExamined.empty()) {
    model.notChecked.push_back(
        "Mechanisms were not looked for: " + report.notExamined +
        " Where kvx has its sparse engine, kvx run --engine sparse takes less memory, and names "
        "node and direction where the structure can move.");
  }
  AddMechanismFindings(model, report, findings);
}

}  // namespace kvx
