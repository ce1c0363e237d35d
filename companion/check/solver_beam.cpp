#include "check/solver_beam.h"

#include "beam/beam_frame.h"
#include "beam/section_properties.h"
#include "check/table_rows.h"

namespace kvx {

using korvex::Section;

bool MakeSolverBeam(const CheckedModel& model, std::int32_t row, korvex::BeamElement& beam,
                    double& L) {
  const korvex::ModelTables& tables = model.tables;
  const auto at = static_cast<std::size_t>(row);
  const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[at];
  const korvex::BeamRowProperties& properties = tables.BeamProperties[at];
  if (!korvex::HasSectionTable(ref.BeamSecType)) return false;
  const Section table = SectionTableOf(ref.BeamSecType);
  if (!IsRow(tables, table, ref.BeamSecIndex) || IsDoubtful(model, table, ref.BeamSecIndex) ||
      !IsRow(tables, Section::Materials, properties.material) ||
      IsDoubtful(model, Section::Materials, properties.material)) {
    return false;
  }
  const ElementNodes nodes = NodesOf(tables, Section::Beams, row);
  beam.NodeI = PlaceOf(tables, nodes.nodes[0]);
  beam.NodeJ = PlaceOf(tables, nodes.nodes[1]);
  for (std::size_t i = 0; i < 3; ++i) {
    beam.RefPoint[i] = beam.NodeI[i] + properties.orientation[i];
  }
  const korvex::Material& material =
      tables.Materials[static_cast<std::size_t>(properties.material)];
  beam.E = material.E;
  beam.Mu = material.Mu;
  beam.BeamSecOz = ref.BeamSecOz;
  beam.BeamSecMirrored = ref.BeamSecMirrored;
  L = korvex::BeamLength(beam);
  const auto section = static_cast<std::size_t>(ref.BeamSecIndex);
  if (ref.BeamSecType == korvex::BeamSecTypeC) {
    korvex::InitCBeamElement(beam, beam.NodeI, beam.NodeJ,
                             {beam.RefPoint[0], beam.RefPoint[1], beam.RefPoint[2], 0.0}, material,
                             tables.CBeamSections[section], ref.BeamSecOz);
    return true;
  }
  if (ref.BeamSecType == korvex::BeamSecTypeT) {
    const korvex::BeamSection& s = tables.TBeamSections[section];
    beam.Section = korvex::SectionPropertiesT(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz);
  } else {
    const korvex::BeamSection& s = tables.LBeamSections[section];
    beam.Section = korvex::SectionPropertiesL(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz,
                                              ref.BeamSecMirrored);
  }
  return true;
}

}  // namespace kvx
