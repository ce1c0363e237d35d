// The sections of the model file in the order that the reader expects. The running numbers of the
// rows and the labels of the beam sections are for people; the reader ignores them.
#include "deck/write_tables.h"

#include <array>
#include <charconv>

namespace korvex {

namespace {

void Add(const char* text, std::string& out) { out += text; }

template <typename Number>
void Add(Number number, std::string& out) {
  std::array<char, 32> buffer;  // the longest is "-2.2250738585072014e-308"
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  out.append(buffer.data(), end.ptr);
}

template <typename... Items>
void AddAll(std::string& out, const Items&... items) {
  (Add(items, out), ...);
}

template <typename Number>
void AddList(const Number* values, std::size_t count, const char* separator, std::string& out) {
  for (std::size_t i = 0; i < count; ++i) AddAll(out, i > 0 ? separator : "", values[i]);
}

void AddMaterials(const ModelTables& tables, std::string& out) {
  AddAll(out, "Number of materials:NMT=", tables.Materials.size(), "\n");
  for (std::size_t row = 0; row < tables.Materials.size(); ++row) {
    const Material& m = tables.Materials[row];
    AddAll(out, "#", row, ":\nE=", m.E, "\nMu=", m.Mu, "\nDensity=", m.Density, "\n");
  }
  AddAll(out, "Number of shell thicknesses:NTK=", tables.ShellThicknesses.size(), "\n");
  for (std::size_t row = 0; row < tables.ShellThicknesses.size(); ++row) {
    AddAll(out, "#", row, ":\nTK=", tables.ShellThicknesses[row].TK, "\n");
  }
}

// kind: "T_beam" or "L_beam".
void AddBeamSections(const ZeroedTable<BeamSection>& sections, const char* kind, const char* key,
                     std::string& out) {
  AddAll(out, "Number of ", kind, " sections:", key, "=", sections.size(), "\n");
  for (std::size_t row = 0; row < sections.size(); ++row) {
    const BeamSection& s = sections[row];
    AddAll(out, kind, " #", row, "\nHw=", s.Hw, "\nTw=", s.Tw, "\nBf=", s.Bf, "\nTf=", s.Tf, "\n");
  }
}

void AddSectionTables(const ModelTables& tables, std::string& out) {
  AddBeamSections(tables.TBeamSections, "T_beam", "NTBS", out);
  AddBeamSections(tables.LBeamSections, "L_beam", "NLBS", out);
  AddAll(out, "Number of C_beam sections:NCBS=", tables.CBeamSections.size(), "\n");
  for (std::size_t row = 0; row < tables.CBeamSections.size(); ++row) {
    const CBeamSection& s = tables.CBeamSections[row];
    AddAll(out, "C_beam #", row, "\nR=", s.R, "\nT=", s.T, "\n");
  }
}

void AddNodes(const ModelTables& tables, std::string& out) {
  AddAll(out, "Number of nodal points:NPOIN=", tables.Nodes.size(), "\n");
  for (std::size_t row = 0; row < tables.Nodes.size(); ++row) {
    const Node& node = tables.Nodes[row];
    AddAll(out, row, ":", node.x, ",", node.y, ",", node.z, "\n");
  }
}

void AddShells(const std::vector<std::int32_t>& connectivity, std::size_t nodes,
               const std::vector<ShellRowProperties>& properties, std::string& out) {
  for (std::size_t row = 0; row < properties.size(); ++row) {
    AddAll(out, row, ":");
    AddList(&connectivity[row * nodes], nodes, ",", out);
    AddAll(out, "[", properties[row].material, ",", properties[row].thickness, "]\n");
  }
}

void AddElements(const ModelTables& tables, std::string& out) {
  AddAll(out, "Number of four-nodes shell elements:NELEM_S_4ND=", tables.Shell4Properties.size(),
         "\n");
  AddShells(tables.Shell4Nodes, NodesPerShell4, tables.Shell4Properties, out);
  AddAll(out, "Number of three-nodes shell elements:NELEM_S_3ND=", tables.Shell3Properties.size(),
         "\n");
  AddShells(tables.Shell3Nodes, NodesPerShell3, tables.Shell3Properties, out);
  AddAll(out, "Number of beam elements:NELEM_B=", tables.BeamProperties.size(), "\n");
  for (std::size_t row = 0; row < tables.BeamProperties.size(); ++row) {
    const BeamRowProperties& properties = tables.BeamProperties[row];
    const BeamSectionRef& ref = tables.BeamSectionRefs[row];
    AddAll(out, row, ":");
    AddList(&tables.BeamNodes[row * NodesPerBeam], NodesPerBeam, ",", out);
    AddAll(out, "<");
    AddList(properties.orientation.data(), 3, ",", out);
    AddAll(out, ">[", properties.material, ",BeamSecType=", ref.BeamSecType,
           ",BeamSecIndex=", ref.BeamSecIndex, ",BeamSecOz=", ref.BeamSecOz,
           ",BeamSecMirrored=", ref.BeamSecMirrored ? 1 : 0, "]\n");
  }
}

void AddSupportsAndForces(const ModelTables& tables, std::string& out) {
  AddAll(out, "Number of restricted nodal points:NRN=", tables.NodalRestraints.size(), "\n");
  for (const NodalRestraint& restraint : tables.NodalRestraints) {
    AddAll(out, restraint.node, ": ");
    AddList(restraint.fixed.data(), restraint.fixed.size(), " ", out);
    AddAll(out, "\n");
  }
  AddAll(out, "Number of forces:NFOR=", tables.NodalForces.size(), "\n");
  for (const NodalForce& force : tables.NodalForces) {
    AddAll(out, force.node, "<");
    AddList(force.components.data(), force.components.size(), ",", out);
    AddAll(out, ">\n");
  }
}

// on: "four-nodes shell", "three-nodes shell" or "beam".
template <typename Load>
void AddLoads(const ZeroedTable<Load>& loads, const char* on, const char* key, std::string& out) {
  AddAll(out, "Number of distributed loads on ", on, " elements:", key, "=", loads.size(), "\n");
  for (const Load& load : loads) {
    AddAll(out, load.element, ":");
    AddList(load.q.data(), load.q.size(), ",", out);
    AddAll(out, "\n");
  }
}

}  // namespace

std::string WriteTables(const ModelTables& tables) {
  std::string out = "### Toln_Korvex release=3.0 ###\n";
  AddMaterials(tables, out);
  AddSectionTables(tables, out);
  AddNodes(tables, out);
  AddElements(tables, out);
  AddSupportsAndForces(tables, out);
  AddLoads(tables.Shell4SurfaceLoads, "four-nodes shell", "NDL_S_4ND", out);
  AddLoads(tables.Shell3SurfaceLoads, "three-nodes shell", "NDL_S_3ND", out);
  AddLoads(tables.BeamLineLoads, "beam", "NDL_B", out);
  return out;
}

}  // namespace korvex
