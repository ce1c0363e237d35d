// The stages of AssembleSystem, in the order in which a run shows them.
#include "system/assemble_system.h"

#include <array>

#include "beam/beam_stiffness.h"
#include "dxf/line_drawing.h"
#include "model/read_input_file.h"
#include "platform/console.h"
#include "platform/stop_run.h"
#include "system/load_vector.h"
#include "system/profile.h"
#include "system/supports.h"

namespace korvex {

namespace {

void AssembleBeams(Model& model) {
  std::array<double, static_cast<std::size_t>(BeamDofs) * BeamDofs> ke{};
  std::array<std::int32_t, BeamDofs> g{};
  for (std::size_t e = 0; e < model.BeamElements.size(); ++e) {
    BeamStiffness(model.BeamElements[e], ke.data());
    BuildDofList(&model.BeamNodes[e * NodesPerBeam], NodesPerBeam, g.data());
    ScatterElement(ke.data(), g.data(), BeamDofs, model.Stiffness);
  }
}

// The element kinds follow one another: four-node shells, three-node shells, beams.
void AssembleStiffness(Model& model) {
  // A plate left out would look like a result; so a model with plates ends here.
  if (model.NELEM_S_4ND > 0 || model.NELEM_S_3ND > 0) {
    StopWithNotice("Shell elements are not computed by this version; only their drawing is.");
  }
  AssembleBeams(model);
}

}  // namespace

void AssembleSystem(Model& model, std::ostream& log) {
  model.NFOR = model.NDL_S_4ND = model.NDL_S_3ND = model.NDL_B = 0;
  ReadInputFile("fem_solving.txt", model);

  model.NEQ = model.NPOIN * DofsPerNode;
  BuildProfile(model);
  ComputeDiagonalAddresses(model.Stiffness);
  ReportMemoryEstimate(model.Stiffness, log);
  AllocateValues(model.Stiffness);

  WriteStructureDrawing("structure.dxf", model);

  WriteConsoleLine("Assembling the global stiffness matrix...");
  AssembleStiffness(model);
  AssembleLoadVector(model);
  ImposeSupports(model);
}

}  // namespace korvex
