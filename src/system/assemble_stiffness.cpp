// K = sum of the element matrices, in table order. Another order would change the last bits.
#include "system/assemble_stiffness.h"

#include <array>
#include <vector>

#include "beam/beam_stiffness.h"
#include "platform/vector_bits.h"
#include "shell/lanes/form_shells.h"
#include "shell/lanes/shell_lanes.h"
#include "shell/shell_stiffness.h"
#include "system/element_matrix.h"
#include "workers/make_in_order.h"

namespace korvex {

namespace {

// The elements that a thread takes at once: as many as the longest vectors have lanes. Their
// matrices stay in the cache until they are handed over.
constexpr std::size_t PieceElements = static_cast<std::size_t>(MaxShellLanes);

// Forms the matrices of some elements one after the other.
template <typename Element, void (*stiffness)(const Element&, double*)>
void FormEach(const Element* elements, std::size_t count, double* const* matrices) {
  for (std::size_t e = 0; e < count; ++e) stiffness(elements[e], matrices[e]);
}

// Forms and hands over the matrices of all elements of one kind.
// connectivity: elements x Nodes node indices, element-major; form(elements, count, matrices):
// forms those of up to PieceElements elements.
template <std::int32_t Nodes, typename Element, typename Form>
void HandOverElements(const std::vector<Element>& elements,
                      const std::vector<std::int32_t>& connectivity, const Form& form, int threads,
                      const TakeElementMatrix& take) {
  using PieceMatrices = std::array<ElementMatrix<Nodes>, PieceElements>;
  std::vector<PieceMatrices> places(static_cast<std::size_t>(CountPlaces(threads)));
  const auto make = [&](int place, std::int64_t first, std::int64_t end) {
    PieceMatrices& piece = places[static_cast<std::size_t>(place)];
    std::array<double*, PieceElements> matrices{};
    for (std::int64_t e = first; e < end; ++e) {
      ElementMatrix<Nodes>& matrix = piece[static_cast<std::size_t>(e - first)];
      BuildDofList(&connectivity[static_cast<std::size_t>(e) * Nodes], Nodes, matrix.g.data());
      matrices[static_cast<std::size_t>(e - first)] = matrix.ke.data();
    }
    form(&elements[static_cast<std::size_t>(first)], static_cast<std::size_t>(end - first),
         matrices.data());
  };
  const auto handOver = [&](int place, std::int64_t first, std::int64_t end) {
    auto matrix = places[static_cast<std::size_t>(place)].begin();
    for (std::int64_t e = first; e < end; ++e, ++matrix) {
      take(matrix->ke.data(), matrix->g.data(), matrix->n);
    }
  };
  MakeInOrder(threads, static_cast<std::int64_t>(elements.size()), PieceElements, make, handOver);
}

}  // namespace

void FormElementMatrices(const Model& model, const TakeElementMatrix& take, int threads) {
  const ModelTables& tables = model.Tables;
  const int vectorBits = WidestVectorBits();
  const auto formQuads = [vectorBits](const Shell4Element* shells, std::size_t count,
                                      double* const* matrices) {
    FormShell4Stiffnesses(vectorBits, shells, count, matrices);
  };
  HandOverElements<NodesPerShell4>(model.Shell4Elements, tables.Shell4Nodes, formQuads, threads,
                                   take);
  HandOverElements<NodesPerShell3>(model.Shell3Elements, tables.Shell3Nodes,
                                   FormEach<Shell3Element, Shell3Stiffness>, threads, take);
  HandOverElements<NodesPerBeam>(model.BeamElements, tables.BeamNodes,
                                 FormEach<BeamElement, BeamStiffness>, threads, take);
}

void AssembleStiffness(Model& model, int threads) {
  SkylineMatrix& K = model.Stiffness;
  const auto add = [&K](const double* ke, const std::int32_t* g, std::int32_t n) {
    ScatterElement(ke, g, n, K);
  };
  FormElementMatrices(model, add, threads);
}

}  // namespace korvex
