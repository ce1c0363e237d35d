#include "mesh/abaqus/abaqus_nodes.h"

#include <algorithm>
#include <array>
#include <string>

#include "mesh/abaqus/abaqus_axes.h"
#include "mesh/abaqus/abaqus_data_line.h"
#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_placing.h"
#include "mesh/abaqus/abaqus_sets.h"
#include "mesh/letter_case.h"
#include "mesh/sine_cosine.h"

namespace kvx {

namespace {

using korvex::Vector3;

// The kind of coordinates that a *NODE gives: SYSTEM=R, C or S.
enum class Coordinates { Rectangular, Cylindrical, Spherical };

// The system of *SYSTEM, which holds for the nodes behind it.
struct NodeSystem {
  bool isGlobal = true;
  Vector3 origin{};
  AbaqusAxes axes{};
};

void TakeSystem(AbaqusImport& import, const AbaqusKeyword& keyword, NodeSystem& system) {
  ReportOtherParameters(import, keyword, std::array<std::string_view, 0>{});
  system = NodeSystem{};
  std::array<double, 7> first{};
  const std::size_t given = TakeDataLine(import, keyword, 0, first);
  if (given == 0) return;
  std::array<double, 7> second{};
  const bool hasThird = TakeDataLine(import, keyword, 1, second) > 0;
  system.isGlobal = false;
  system.origin = VectorAt(first, 0);
  system.axes = {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  if (given <= 3) return;
  const Vector3 onX = korvex::Subtract(VectorAt(first, 3), system.origin);
  // Without the third point x' lies across the global z, about which the system is turned.
  const Vector3 inPlane = hasThird ? korvex::Subtract(VectorAt(second, 0), system.origin)
                                   : korvex::Cross({0.0, 0.0, 1.0}, onX);
  if (!MakeAxes(onX, inPlane, system.axes)) {
    StopImport(import.report, keyword.place, "the points of *SYSTEM give no axes");
  }
}

Coordinates CoordinatesOf(const AbaqusImport& import, const AbaqusKeyword& keyword) {
  const std::string_view name = ParameterText(import.deck, keyword, "SYSTEM");
  if (name.empty() || IsWord(name, "R")) return Coordinates::Rectangular;
  if (IsWord(name, "C")) return Coordinates::Cylindrical;
  if (IsWord(name, "S")) return Coordinates::Spherical;
  StopImport(import.report, keyword.place, "SYSTEM is R, C or S");
}

// r, theta, z or r, theta, phi with angles in degrees, phi from the x-y plane -> x, y, z.
Vector3 Rectangular(Coordinates kind, const Vector3& given) {
  if (kind == Coordinates::Rectangular) return given;
  const SineCosine theta = SineCosineOfDegrees(given[1]);
  if (kind == Coordinates::Cylindrical) {
    return {given[0] * theta.cosine, given[0] * theta.sine, given[2]};
  }
  const SineCosine phi = SineCosineOfDegrees(given[2]);
  const double across = given[0] * phi.cosine;
  return {across * theta.cosine, across * theta.sine, given[0] * phi.sine};
}

struct NodeReader {
  NodeSystem system;
  std::size_t normals = 0;  // nodes with a normal
};

void TakeNode(AbaqusImport& import, const AbaqusKeyword& keyword, const AbaqusLine& line,
              Coordinates kind, NodeReader& reader) {
  AbaqusFields fields{line.text};
  std::string_view field;
  NextField(fields, field);
  if (field.empty()) StopImport(import.report, line.place, "a node without a number");
  const std::int64_t number = IntegerOf(field, 0, line.place, import.report);
  Vector3 at{};
  for (double& coordinate : at) coordinate = NextReal(fields, 0.0, line.place, import.report);
  Vector3 normal{};
  for (double& component : normal) component = NextReal(fields, 0.0, line.place, import.report);
  if (korvex::Length(normal) > 0.0) ++reader.normals;
  at = Rectangular(kind, at);
  if (!reader.system.isGlobal) at = Add(reader.system.origin, Combine(reader.system.axes, at));
  at = PlacePoint(import, keyword, at);
  AddNumber(number, static_cast<std::int32_t>(import.model.nodes.size()), import.mesh.nodes);
  import.model.nodes.push_back({at[0], at[1], at[2]});
  import.model.nodeNumbers.push_back(number);
}

// Rows of nodes that one *NODE has made, and their set.
struct NodeRange {
  std::int32_t set;
  std::size_t begin, end;
};

void TakeNodeKeyword(AbaqusImport& import, const AbaqusKeyword& keyword, NodeReader& reader,
                     std::vector<NodeRange>& ranges) {
  if (keyword.scope == AbaqusScope::Assembly) {
    ReportCard("*NODE", Fate::Lost, "a reference point of the assembly belongs to no element here",
               keyword.place, {}, import.report);
    return;
  }
  constexpr std::array<std::string_view, 3> known{"NSET", "INPUT", "SYSTEM"};
  ReportOtherParameters(import, keyword, known);
  const Coordinates kind = CoordinatesOf(import, keyword);
  const std::size_t begin = import.model.nodes.size();
  reader.normals = 0;
  for (std::size_t k = 0; k < keyword.lineCount; ++k) {
    TakeNode(import, keyword, import.deck.lines[keyword.firstLine + k], kind, reader);
  }
  if (reader.normals > 0) {
    ReportCard("*NODE", Fate::Limited, "normals of nodes are not taken over", keyword.place, {},
               import.report, reader.normals);
  }
  const std::string_view set = ParameterText(import.deck, keyword, "NSET");
  if (set.empty()) return;
  const AbaqusParameter* written = FindParameter(import.deck, keyword, "NSET");
  ranges.push_back(
      {SetRowOf(import, false, written->value, keyword), begin, import.model.nodes.size()});
}

// Refuses nodes of one number at different places. At the same place they are one node.
void RefuseDoubledNodes(AbaqusImport& import) {
  const auto& entries = import.mesh.nodes.entries;
  for (std::size_t k = 1; k < entries.size(); ++k) {
    if (entries[k].first != entries[k - 1].first) continue;
    const Vector3 a = PlaceOf(import.model, entries[k - 1].second);
    const Vector3 b = PlaceOf(import.model, entries[k].second);
    if (a == b) continue;
    ReportCard("*NODE", Fate::Refused, "a node is given twice, at different places",
               import.report.cards["*NODE"].first, "node " + std::to_string(entries[k].first),
               import.report);
  }
}

}  // namespace

void TakeAbaqusNodes(AbaqusImport& import) {
  NodeReader reader;
  std::vector<NodeRange> ranges;
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart) continue;
    if (keyword.name == "SYSTEM") TakeSystem(import, keyword, reader.system);
    if (keyword.name == "END PART" || keyword.name == "END INSTANCE") reader.system = NodeSystem{};
    if (keyword.name == "NODE") TakeNodeKeyword(import, keyword, reader, ranges);
  }
  SortNumbers(import.mesh.nodes);
  RefuseDoubledNodes(import);
  for (const NodeRange& range : ranges) {
    auto& members = import.mesh.sets[static_cast<std::size_t>(range.set)].members;
    for (std::size_t k = range.begin; k < range.end; ++k) {
      members.push_back(FindNumber(import.mesh.nodes, import.model.nodeNumbers[k]));
    }
  }
}

}  // namespace kvx
