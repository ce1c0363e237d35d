#include "audit/end_forces.h"

#include <algorithm>
#include <cmath>

#include "beam/beam_line_load.h"
#include "beam/beam_stiffness.h"
#include "shell/shell_loads.h"
#include "shell/shell_stiffness.h"
#include "system/assemble_stiffness.h"
#include "system/element_matrix.h"

namespace kvx {

namespace {

// K_e u of one element, and |K_e| |u|.
struct ElementProduct {
  std::array<double, korvex::Shell4Dofs> sums{}, sizes{};
};

// Entry j of a row whose equation stands before it, at i < j, is left out: the solver adds this
// coupling to the diagonal once.
inline bool CountsTwice(const std::int32_t* g, std::int32_t i, std::int32_t j) {
  return j < i && g[i] == g[j];
}

void MultiplyElement(const double* ke, const std::int32_t* g, std::int32_t n,
                     const std::vector<double>& u, ElementProduct& product) {
  for (std::int32_t i = 0; i < n; ++i) {
    double sum = 0.0, size = 0.0;
    for (std::int32_t j = 0; j < n; ++j) {
      if (CountsTwice(g, i, j)) continue;
      const double term = ke[i * n + j] * u[static_cast<std::size_t>(g[j])];
      sum += term;
      size += std::fabs(term);
    }
    product.sums[static_cast<std::size_t>(i)] = sum;
    product.sizes[static_cast<std::size_t>(i)] = size;
  }
}

// Subtracts the nodal loads of the rows that load this element.
template <std::int32_t Dofs, typename Element, typename Load>
void SubtractLoads(const Element& element, std::int32_t row, const LoadRows& index,
                   const korvex::ZeroedTable<Load>& loads,
                   void (*vector)(const Element&, const Load&, double*), EndForceArray& forces) {
  std::array<double, Dofs> q{};
  const auto e = static_cast<std::size_t>(row);
  for (std::int32_t at = index.first[e]; at < index.first[e + 1]; ++at) {
    const auto load = static_cast<std::size_t>(index.rows[static_cast<std::size_t>(at)]);
    vector(element, loads[load], q.data());
    for (std::size_t i = 0; i < q.size(); ++i) forces[i] -= q[i];
  }
}

template <typename Load>
void IndexRows(const korvex::ZeroedTable<Load>& loads, std::size_t elements, LoadRows& index) {
  const auto isInside = [&](const Load& load) {
    return load.element >= 0 && static_cast<std::size_t>(load.element) < elements;
  };
  index.first.assign(elements + 1, 0);
  for (const Load& load : loads) {
    if (isInside(load)) ++index.first[static_cast<std::size_t>(load.element) + 1];
  }
  for (std::size_t e = 0; e < elements; ++e) index.first[e + 1] += index.first[e];
  index.rows.resize(static_cast<std::size_t>(index.first.back()));
  std::vector<std::int32_t> next(index.first.begin(), index.first.end() - 1);
  for (std::size_t row = 0; row < loads.size(); ++row) {
    if (!isInside(loads[row])) continue;
    std::int32_t& place = next[static_cast<std::size_t>(loads[row].element)];
    index.rows[static_cast<std::size_t>(place++)] = static_cast<std::int32_t>(row);
  }
}

// K_e u by the routine of the element's kind.
template <std::int32_t Nodes, typename Element>
void FormProduct(const korvex::Model& model, const Element& element, const std::int32_t* nodes,
                 void (*stiffness)(const Element&, double*), EndForceArray& forces) {
  const auto take = [&](const double* ke, const std::int32_t* g, std::int32_t n) {
    ElementProduct product;
    MultiplyElement(ke, g, n, model.Displacements, product);
    std::copy_n(product.sums.begin(), n, forces.begin());
  };
  korvex::HandOverElement<Nodes>(element, nodes, stiffness, take);
}

}  // namespace

ElementRef ElementAt(const korvex::Model& model, std::size_t index) {
  const std::size_t quads = model.Shell4Elements.size(), triangles = model.Shell3Elements.size();
  if (index < quads) return {ElementKind::Shell4, static_cast<std::int32_t>(index)};
  if (index < quads + triangles) {
    return {ElementKind::Shell3, static_cast<std::int32_t>(index - quads)};
  }
  return {ElementKind::Beam, static_cast<std::int32_t>(index - quads - triangles)};
}

NodeSpan NodesOfElement(const korvex::Model& model, const ElementRef& element) {
  const auto row = static_cast<std::size_t>(element.row);
  const korvex::ModelTables& tables = model.Tables;
  switch (element.kind) {
    case ElementKind::Shell4:
      return {&tables.Shell4Nodes[row * korvex::NodesPerShell4], korvex::NodesPerShell4};
    case ElementKind::Shell3:
      return {&tables.Shell3Nodes[row * korvex::NodesPerShell3], korvex::NodesPerShell3};
    default:
      return {&tables.BeamNodes[row * korvex::NodesPerBeam], korvex::NodesPerBeam};
  }
}

void FormStiffForces(const korvex::Model& model,
                     const std::function<void(const StiffForces& forces)>& take, int threads) {
  std::size_t index = 0;
  ElementProduct product;
  const auto multiply = [&](const double* ke, const std::int32_t* g, std::int32_t n) {
    MultiplyElement(ke, g, n, model.Displacements, product);
    take({ElementAt(model, index++), g, n, product.sums.data(), product.sizes.data()});
  };
  korvex::FormElementMatrices(model, multiply, threads);
}

void IndexLoads(const korvex::Model& model, LoadIndex& index) {
  const korvex::ModelTables& tables = model.Tables;
  IndexRows(tables.Shell4SurfaceLoads, model.Shell4Elements.size(), index.shells4);
  IndexRows(tables.Shell3SurfaceLoads, model.Shell3Elements.size(), index.shells3);
  IndexRows(tables.BeamLineLoads, model.BeamElements.size(), index.beams);
}

void FormEndForces(const korvex::Model& model, const LoadIndex& index, const ElementRef& element,
                   EndForceArray& forces) {
  const auto row = static_cast<std::size_t>(element.row);
  const std::int32_t* nodes = NodesOfElement(model, element).nodes;
  const korvex::ModelTables& tables = model.Tables;
  forces.fill(0.0);
  if (element.kind == ElementKind::Shell4) {
    const korvex::Shell4Element& shell = model.Shell4Elements[row];
    FormProduct<korvex::NodesPerShell4>(model, shell, nodes, korvex::Shell4Stiffness, forces);
    SubtractLoads<korvex::Shell4Dofs>(shell, element.row, index.shells4, tables.Shell4SurfaceLoads,
                                      korvex::Shell4LoadVector, forces);
  } else if (element.kind == ElementKind::Shell3) {
    const korvex::Shell3Element& shell = model.Shell3Elements[row];
    FormProduct<korvex::NodesPerShell3>(model, shell, nodes, korvex::Shell3Stiffness, forces);
    SubtractLoads<korvex::Shell3Dofs>(shell, element.row, index.shells3, tables.Shell3SurfaceLoads,
                                      korvex::Shell3LoadVector, forces);
  } else {
    const korvex::BeamElement& beam = model.BeamElements[row];
    FormProduct<korvex::NodesPerBeam>(model, beam, nodes, korvex::BeamStiffness, forces);
    SubtractLoads<korvex::BeamDofs>(beam, element.row, index.beams, tables.BeamLineLoads,
                                    korvex::BeamLineLoadVector, forces);
  }
}

}  // namespace kvx
