// K = sum of the element matrices, in table order. Another order would change the last bits.
#include "system/assemble_stiffness.h"

#include <array>
#include <vector>

#include "beam/beam_stiffness.h"
#include "shell/shell_stiffness.h"
#include "system/element_matrix.h"
#include "workers/make_in_order.h"

namespace korvex {

namespace {

// The elements that a thread takes at once. Their matrices stay in the cache until they are handed
// over.
constexpr std::size_t PieceElements = 8;

// Forms and hands over the matrices of all elements of one kind.
// connectivity: elements x Nodes node indices, element-major; stiffness: the kind's routine.
template <std::int32_t Nodes, typename Element>
void HandOverElements(const std::vector<Element>& elements,
                      const std::vector<std::int32_t>& connectivity,
                      void (*stiffness)(const Element&, double*), int threads,
                      const TakeElementMatrix& take) {
  using PieceMatrices = std::array<ElementMatrix<Nodes>, PieceElements>;
  std::vector<PieceMatrices> places(static_cast<std::size_t>(CountPlaces(threads)));
  const auto form = [&](int place, std::int64_t first, std::int64_t end) {
    auto matrix = places[static_cast<std::size_t>(place)].begin();
    for (auto e = static_cast<std::size_t>(first); e < static_cast<std::size_t>(end); ++e) {
      FormElement(elements[e], &connectivity[e * Nodes], stiffness, *matrix++);
    }
  };
  const auto handOver = [&](int place, std::int64_t first, std::int64_t end) {
    auto matrix = places[static_cast<std::size_t>(place)].begin();
    for (std::int64_t e = first; e < end; ++e, ++matrix) {
      take(matrix->ke.data(), matrix->g.data(), matrix->n);
    }
  };
  MakeInOrder(threads, static_cast<std::int64_t>(elements.size()), PieceElements, form, handOver);
}

}  // namespace

void FormElementMatrices(const Model& model, const TakeElementMatrix& take, int threads) {
  const ModelTables& tables = model.Tables;
  HandOverElements<NodesPerShell4>(model.Shell4Elements, tables.Shell4Nodes, Shell4Stiffness,
                                   threads, take);
  HandOverElements<NodesPerShell3>(model.Shell3Elements, tables.Shell3Nodes, Shell3Stiffness,
                                   threads, take);
  HandOverElements<NodesPerBeam>(model.BeamElements, tables.BeamNodes, BeamStiffness, threads,
                                 take);
}

void AssembleStiffness(Model& model, int threads) {
  SkylineMatrix& K = model.Stiffness;
  const auto add = [&K](const double* ke, const std::int32_t* g, std::int32_t n) {
    ScatterElement(ke, g, n, K);
  };
  FormElementMatrices(model, add, threads);
}

}  // namespace korvex
