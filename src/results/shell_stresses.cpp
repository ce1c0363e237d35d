#include "results/shell_stresses.h"

#include <algorithm>

#include "results/corner_stress.h"
#include "shell/bilinear_map.h"
#include "workers/share_range.h"

namespace korvex {

namespace {

// d: 6 * nodeCount, element dof order, written completely.
// displacements: six per node, global; nodes: the element's nodeCount node indices.
void GatherDisplacements(const std::vector<double>& displacements, const std::int32_t* nodes,
                         std::size_t nodeCount, double* d) {
  for (std::size_t k = 0; k < nodeCount; ++k) {
    const auto first = static_cast<std::size_t>(nodes[k]) * DofsPerNode;
    std::copy_n(&displacements[first], DofsPerNode, d + DofsPerNode * k);
  }
}

// The elements that a thread takes at once.
constexpr std::int64_t PieceElements = 64;

// Calls work(e) for the elements 0 .. count - 1.
template <typename Work>
void ShareElements(int threads, std::size_t count, const Work& work) {
  ShareRange(threads, static_cast<std::int64_t>(count), PieceElements,
             [&](std::int64_t first, std::int64_t end) {
               for (auto e = static_cast<std::size_t>(first); e < static_cast<std::size_t>(end);
                    ++e) {
                 work(e);
               }
             });
}

// Area coordinates of the point whose stresses all corners of a triangle get: corner 1.
constexpr std::array<double, 3> TrianglePoint{1.0, 0.0, 0.0};

}  // namespace

void RecoverShell4Stresses(const std::vector<double>& displacements,
                           const std::vector<std::int32_t>& connectivity,
                           std::vector<Shell4Element>& elements, int threads) {
  const auto recover = [&](std::size_t e) {
    Shell4Element& element = elements[e];
    std::array<double, Shell4Dofs> d{};
    GatherDisplacements(displacements, &connectivity[e * NodesPerShell4], NodesPerShell4, d.data());
    for (std::size_t k = 0; k < NodesPerShell4; ++k) {
      Shell4CornerStress(element, element.NodeStressTop[k], element.NodeStressBottom[k], d.data(),
                         CornerXi[k], CornerEta[k]);
    }
  };
  ShareElements(threads, elements.size(), recover);
}

void RecoverShellStresses(Model& model, int threads) {
  RecoverShell4Stresses(model.Displacements, model.Tables.Shell4Nodes, model.Shell4Elements,
                        threads);
  const auto recover = [&](std::size_t e) {
    Shell3Element& element = model.Shell3Elements[e];
    std::array<double, Shell3Dofs> d{};
    GatherDisplacements(model.Displacements, &model.Tables.Shell3Nodes[e * NodesPerShell3],
                        NodesPerShell3, d.data());
    for (std::size_t k = 0; k < NodesPerShell3; ++k) {
      Shell3CornerStress(element, element.NodeStressTop[k], element.NodeStressBottom[k], d.data(),
                         TrianglePoint);
    }
  };
  ShareElements(threads, model.Shell3Elements.size(), recover);
}

}  // namespace korvex
