#include "mechanism/mode_strain.h"

#include <algorithm>
#include <cmath>

#include "beam/beam_stiffness.h"
#include "mechanism/mode_shape.h"
#include "shell/shell_stiffness.h"
#include "system/element_matrix.h"

namespace kvx {

namespace {

struct ElementEnergy {
  double strain = 0.0;  // v_e^T k_e v_e
  double gross = 0.0;   // |v_e|^T |k_e| |v_e|
};

ElementEnergy EnergyOf(const double* ke, const std::int32_t* g, std::int32_t n,
                       const std::vector<double>& v) {
  ElementEnergy energy;
  for (std::int32_t i = 0; i < n; ++i) {
    const double vi = v[static_cast<std::size_t>(g[i])];
    if (vi == 0.0) continue;
    double force = 0.0, gross = 0.0;
    for (std::int32_t j = 0; j < n; ++j) {
      const double term = ke[i * n + j] * v[static_cast<std::size_t>(g[j])];
      force += term;
      gross += std::abs(term);
    }
    energy.strain += vi * force;
    energy.gross += std::abs(vi) * gross;
  }
  return energy;
}

// How far each element moves: the largest displacement of its nodes, rotations times its size.
std::vector<double> MeasureMotions(const korvex::Model& model, const std::vector<double>& v) {
  std::vector<double> motions;
  ForAllElements(model.Tables, [&](const ElementRef&, const ElementNodes& element) {
    double motion = 0.0, size = 0.0;
    const korvex::Vector3 first = PlaceOf(model.Tables, element.nodes[0]);
    for (std::size_t k = 1; k < element.count; ++k) {
      size = std::max(
          size, korvex::Length(korvex::Subtract(PlaceOf(model.Tables, element.nodes[k]), first)));
    }
    for (std::size_t k = 0; k < element.count; ++k) {
      const double* u = &v[static_cast<std::size_t>(element.nodes[k]) * korvex::DofsPerNode];
      for (std::size_t d = 0; d < 6; ++d) {
        motion = std::max(motion, std::abs(u[d]) * (d < 3 ? 1.0 : size));
      }
    }
    motions.push_back(motion);
  });
  return motions;
}

// Whether one of these elements is strained. Ends with the first one: only mechanisms need the
// matrices of all. motions: how far each of them moves; those that move less than `least` are left
// out.
template <std::int32_t Nodes, typename Element>
bool IsOneStrained(const std::vector<Element>& elements, const std::vector<std::int32_t>& nodes,
                   void (*stiffness)(const Element&, double*), const double* motions, double least,
                   const std::vector<double>& v, double limit) {
  bool isStrained = false;
  const auto take = [&](const double* ke, const std::int32_t* g, std::int32_t n) {
    const ElementEnergy energy = EnergyOf(ke, g, n, v);
    isStrained = std::isfinite(energy.gross) && energy.gross != 0.0 &&
                 std::abs(energy.strain) / energy.gross >= limit;
  };
  for (std::size_t e = 0; e < elements.size() && !isStrained; ++e) {
    if (motions[e] == 0.0 || motions[e] < least) continue;
    korvex::HandOverElement<Nodes>(elements[e], &nodes[e * Nodes], stiffness, take);
  }
  return isStrained;
}

}  // namespace

bool IsStrained(const korvex::Model& model, const std::vector<double>& v, double limit) {
  constexpr double TakesPart = 1e-3;
  const std::vector<double> motions = MeasureMotions(model, v);
  if (motions.empty()) return false;
  const double least = TakesPart * *std::max_element(motions.begin(), motions.end());
  const korvex::ModelTables& tables = model.Tables;
  const double* quads = motions.data();
  const double* triangles = quads + model.Shell4Elements.size();
  const double* beams = triangles + model.Shell3Elements.size();
  return IsOneStrained<korvex::NodesPerShell4>(model.Shell4Elements, tables.Shell4Nodes,
                                               korvex::Shell4Stiffness, quads, least, v, limit) ||
         IsOneStrained<korvex::NodesPerShell3>(model.Shell3Elements, tables.Shell3Nodes,
                                               korvex::Shell3Stiffness, triangles, least, v,
                                               limit) ||
         IsOneStrained<korvex::NodesPerBeam>(model.BeamElements, tables.BeamNodes,
                                             korvex::BeamStiffness, beams, least, v, limit);
}

}  // namespace kvx
