// K = sum of the element matrices, in table order. Another order would change the last bits.
#include "system/assemble_stiffness.h"

#include "beam/beam_stiffness.h"
#include "shell/shell_stiffness.h"
#include "system/element_matrix.h"

namespace korvex {

namespace {

// Forms and hands over the matrices of all elements of one kind.
// connectivity: elements x Nodes node indices, element-major; stiffness: the kind's routine.
template <std::int32_t Nodes, typename Element>
void HandOverElements(const std::vector<Element>& elements,
                      const std::vector<std::int32_t>& connectivity,
                      void (*stiffness)(const Element&, double*), const TakeElementMatrix& take) {
  for (std::size_t e = 0; e < elements.size(); ++e) {
    HandOverElement<Nodes>(elements[e], &connectivity[e * Nodes], stiffness, take);
  }
}

}  // namespace

void FormElementMatrices(const Model& model, const TakeElementMatrix& take) {
  const ModelTables& tables = model.Tables;
  HandOverElements<NodesPerShell4>(model.Shell4Elements, tables.Shell4Nodes, Shell4Stiffness, take);
  HandOverElements<NodesPerShell3>(model.Shell3Elements, tables.Shell3Nodes, Shell3Stiffness, take);
  HandOverElements<NodesPerBeam>(model.BeamElements, tables.BeamNodes, BeamStiffness, take);
}

void AssembleStiffness(Model& model) {
  SkylineMatrix& K = model.Stiffness;
  FormElementMatrices(model, [&K](const double* ke, const std::int32_t* g, std::int32_t n) {
    ScatterElement(ke, g, n, K);
  });
}

}  // namespace korvex
