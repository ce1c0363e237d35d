// The stages of AssembleSystem, in the order in which a run shows them.
#include "system/assemble_system.h"

#include "beam/beam_stiffness.h"
#include "dxf/line_drawing.h"
#include "model/read_input_file.h"
#include "platform/check_memory.h"
#include "platform/console.h"
#include "shell/shell_stiffness.h"
#include "system/assemble_element.h"
#include "system/load_vector.h"
#include "system/profile.h"
#include "system/supports.h"

namespace korvex {

namespace {

// Adds the stiffness of all elements of one kind, in table order.
// connectivity: elements x Nodes node indices, element-major; stiffness: the kind's routine.
template <std::int32_t Nodes, typename Element>
void AssembleElements(const std::vector<Element>& elements,
                      const std::vector<std::int32_t>& connectivity,
                      void (*stiffness)(const Element&, double*), SkylineMatrix& K) {
  for (std::size_t e = 0; e < elements.size(); ++e) {
    AssembleElement<Nodes>(elements[e], &connectivity[e * Nodes], stiffness, K);
  }
}

}  // namespace

void AssembleStiffness(Model& model) {
  AssembleElements<NodesPerShell4>(model.Shell4Elements, model.Shell4Nodes, Shell4Stiffness,
                                   model.Stiffness);
  AssembleElements<NodesPerShell3>(model.Shell3Elements, model.Shell3Nodes, Shell3Stiffness,
                                   model.Stiffness);
  AssembleElements<NodesPerBeam>(model.BeamElements, model.BeamNodes, BeamStiffness,
                                 model.Stiffness);
}

void AssembleSystem(Model& model, std::ostream& log) {
  model.NFOR = model.NDL_S_4ND = model.NDL_S_3ND = model.NDL_B = 0;
  ReadInputFile("fem_solving.txt", model);

  NumberEquations(model);
  BuildProfile(model);
  ComputeDiagonalAddresses(model.Stiffness);
  ReportMemoryEstimate(model.Stiffness, log);
  AllocateOrStop("the global stiffness matrix",
                 static_cast<std::uint64_t>(model.Stiffness.SkylineSize), sizeof(double),
                 [&] { AllocateValues(model.Stiffness); });

  WriteStructureDrawing("structure.dxf", model);

  WriteConsoleLine("Assembling the global stiffness matrix...");
  AssembleStiffness(model);
  AssembleLoadVector(model);
  ImposeSupports(model);
}

}  // namespace korvex
