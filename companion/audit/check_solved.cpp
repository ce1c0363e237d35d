#include "audit/check_solved.h"

#include <string>

#include "deck/check_reference.h"
#include "report/stop.h"

namespace kvx {

using korvex::CheckReference, korvex::Model, korvex::TableSize;

namespace {

constexpr const char* Shell4Kind = "Four-node shell element";
constexpr const char* Shell3Kind = "Three-node shell element";
constexpr const char* BeamKind = "Beam element";

[[noreturn]] void StopOnCount(const char* what, std::size_t found, std::size_t expected) {
  throw korvex::Stop{korvex::StopKind::Notice, std::string("The solved model has ") +
                                                   std::to_string(found) + " " + what + ", not " +
                                                   std::to_string(expected) + "."};
}

[[noreturn]] void StopOnElement(const char* kind, std::int32_t e, std::size_t elements) {
  throw korvex::Stop{korvex::StopKind::Notice, std::string(kind) + " " + std::to_string(e) +
                                                   " does not exist; there are " +
                                                   std::to_string(elements) + "."};
}

void ExpectCount(const char* what, std::size_t found, std::size_t expected) {
  if (found != expected) StopOnCount(what, found, expected);
}

void CheckNodes(const Model& model) {
  const std::size_t nodes = model.Tables.Nodes.size();
  ExpectCount("displacements", model.Displacements.size(), 6 * nodes);
}

// nodes: elements x perElement node indices, element-major.
void CheckRow(const char* kind, std::int32_t row, const std::vector<std::int32_t>& nodes,
              std::int32_t perElement, const Model& model) {
  const TableSize points{"nodal points", static_cast<std::int32_t>(model.Tables.Nodes.size())};
  const auto first = static_cast<std::size_t>(row) * static_cast<std::size_t>(perElement);
  for (std::size_t k = 0; k < static_cast<std::size_t>(perElement); ++k) {
    CheckReference(kind, row, "node", nodes[first + k], points);
  }
}

void CheckTable(const char* kind, const char* what, const std::vector<std::int32_t>& nodes,
                std::int32_t perElement, std::size_t elements, const Model& model) {
  ExpectCount(what, nodes.size(), elements * static_cast<std::size_t>(perElement));
  for (std::size_t e = 0; e < elements; ++e) {
    CheckRow(kind, static_cast<std::int32_t>(e), nodes, perElement, model);
  }
}

void CheckShell(const char* kind, const char* what, std::int32_t e,
                const std::vector<std::int32_t>& nodes, std::int32_t perElement,
                std::size_t elements, const Model& model) {
  CheckNodes(model);
  ExpectCount(what, nodes.size(), elements * static_cast<std::size_t>(perElement));
  // As an unsigned number a negative e is huge.
  if (static_cast<std::size_t>(e) >= elements) StopOnElement(kind, e, elements);
  CheckRow(kind, e, nodes, perElement, model);
}

}  // namespace

void CheckSolvedModel(const Model& model) {
  const auto& t = model.Tables;
  CheckNodes(model);
  const std::size_t shells4 = model.Shell4Elements.size(), shells3 = model.Shell3Elements.size();
  const std::size_t beams = model.BeamElements.size();
  CheckTable(Shell4Kind, "nodes of four-node shell elements", t.Shell4Nodes, korvex::NodesPerShell4,
             shells4, model);
  CheckTable(Shell3Kind, "nodes of three-node shell elements", t.Shell3Nodes,
             korvex::NodesPerShell3, shells3, model);
  CheckTable(BeamKind, "nodes of beam elements", t.BeamNodes, korvex::NodesPerBeam, beams, model);
  ExpectCount("rows of four-node shell elements", t.Shell4Properties.size(), shells4);
  ExpectCount("rows of three-node shell elements", t.Shell3Properties.size(), shells3);
  ExpectCount("rows of beam elements", t.BeamProperties.size(), beams);
  ExpectCount("sections of beam elements", t.BeamSectionRefs.size(), beams);
}

void CheckSolvedShell4(const Model& model, std::int32_t e) {
  CheckShell(Shell4Kind, "nodes of four-node shell elements", e, model.Tables.Shell4Nodes,
             korvex::NodesPerShell4, model.Shell4Elements.size(), model);
}

void CheckSolvedShell3(const Model& model, std::int32_t e) {
  CheckShell(Shell3Kind, "nodes of three-node shell elements", e, model.Tables.Shell3Nodes,
             korvex::NodesPerShell3, model.Shell3Elements.size(), model);
}

}  // namespace kvx
