#include "support/model_text.h"

#include "deck/write_tables.h"

namespace korvex::test {

namespace {

template <typename Shells>
void CopyShells(const Shells& shells, std::vector<std::int32_t>& connectivity,
                std::vector<ShellRowProperties>& properties) {
  for (const auto& shell : shells) {
    connectivity.insert(connectivity.end(), shell.nodes.begin(), shell.nodes.end());
    properties.push_back({shell.material, shell.thickness});
  }
}

void CopyBeams(const std::vector<ModelText::Beam>& beams, ModelTables& tables) {
  for (const ModelText::Beam& b : beams) {
    tables.BeamNodes.insert(tables.BeamNodes.end(), {b.node1, b.node2});
    tables.BeamSectionRefs.push_back(
        {b.BeamSecType, b.BeamSecIndex, b.BeamSecOz, b.BeamSecMirrored != 0});
    tables.BeamProperties.push_back({b.orientation, b.material});
  }
}

ModelTables MakeTables(const ModelText& model) {
  ModelTables tables;
  for (const auto& m : model.materials) tables.Materials.push_back({m[0], m[1], m[2]});
  for (const double TK : model.thicknesses) tables.ShellThicknesses.push_back({TK});
  for (const auto& s : model.tSections) tables.TBeamSections.push_back({s[0], s[1], s[2], s[3]});
  for (const auto& s : model.lSections) tables.LBeamSections.push_back({s[0], s[1], s[2], s[3]});
  for (const auto& s : model.cSections) tables.CBeamSections.push_back({s[0], s[1]});
  for (const auto& n : model.nodes) tables.Nodes.push_back({n[0], n[1], n[2]});
  CopyShells(model.shells4, tables.Shell4Nodes, tables.Shell4Properties);
  CopyShells(model.shells3, tables.Shell3Nodes, tables.Shell3Properties);
  CopyBeams(model.beams, tables);
  for (const auto& r : model.restraints) tables.NodalRestraints.push_back({r.fixed, r.node});
  for (const auto& f : model.forces) tables.NodalForces.push_back({f.node, f.components});
  for (const auto& l : model.shell4Loads) tables.Shell4SurfaceLoads.push_back({l.element, l.q});
  for (const auto& l : model.shell3Loads) tables.Shell3SurfaceLoads.push_back({l.element, l.q});
  for (const auto& l : model.beamLoads) tables.BeamLineLoads.push_back({l.element, {l.q1, l.q2}});
  return tables;
}

}  // namespace

std::string WriteModel(const ModelText& model) {
  std::string text = WriteTables(MakeTables(model));
  const std::string written = "release=3.0";
  return text.replace(text.find(written), written.size(), "release=" + model.release);
}

}  // namespace korvex::test
