#include "check/sum_loads.h"

#include <algorithm>
#include <cmath>

#include "base/finite.h"
#include "beam/beam_line_load.h"
#include "check/usable_elements.h"
#include "shell/shell_loads.h"
#include "tables/node_box.h"
#include "tables/prescribed_displacements.h"

namespace kvx {

using korvex::AreFinite;
using korvex::Section;
using korvex::Vector3;

namespace {

struct Adder {
  std::array<double, 6> sums{};
  double size = 0.0;  // the sum of the absolute values of all forces
};

// Adds the six loads of a node at `place`: M = place x F + moment.
void AddNodeLoad(const Vector3& place, const double* load, Adder& adder) {
  const Vector3 F{load[0], load[1], load[2]};
  const Vector3 M = korvex::Cross(place, F);
  for (std::size_t i = 0; i < 3; ++i) {
    adder.sums[i] += F[i];
    adder.sums[3 + i] += M[i] + load[3 + i];
  }
  adder.size += korvex::Length(F);
}

template <std::int32_t Nodes>
void FillElement(const korvex::ModelTables& tables, const std::int32_t* nodes,
                 korvex::ShellElement<Nodes>& element) {
  std::array<double, static_cast<std::size_t>(Nodes) * 3> coordinates{};
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    const Vector3 place = PlaceOf(tables, nodes[k]);
    std::copy(place.begin(), place.end(), &coordinates[3 * k]);
  }
  // The nodal loads do not depend on material and thickness.
  korvex::SetGeometry(element, coordinates.data(), Nodes, 1.0, 0.0, 1.0);
}

void FillElement(const korvex::ModelTables& tables, const std::int32_t* nodes, Vector3 orientation,
                 korvex::BeamElement& beam) {
  beam.NodeI = PlaceOf(tables, nodes[0]);
  beam.NodeJ = PlaceOf(tables, nodes[1]);
  for (std::size_t i = 0; i < 3; ++i) beam.RefPoint[i] = beam.NodeI[i] + orientation[i];
}

// Adds the loads of one table. vector: writes the nodal loads of a row on the element of that row.
template <typename Loads, typename Vector>
void AddElementLoads(const CheckedModel& model, const Loads& loads, Section loadSection,
                     Section section, const Vector& vector, Adder& adder) {
  std::array<double, korvex::Shell4Dofs> f{};
  for (std::size_t row = 0; row < loads.size(); ++row) {
    const auto& load = loads[row];
    if (IsLost(model, loadSection, static_cast<std::int32_t>(row)) || load.element < 0 ||
        load.element >= CountRows(model.tables, section) ||
        !IsUsable(model, section, load.element)) {
      continue;
    }
    const ElementNodes element = NodesOf(model.tables, section, load.element);
    vector(element.nodes, load, f.data());
    if (!AreFinite(f.data(), 6 * element.count)) continue;
    for (std::size_t k = 0; k < element.count; ++k) {
      AddNodeLoad(PlaceOf(model.tables, element.nodes[k]), &f[6 * k], adder);
    }
  }
}

void AddForces(const CheckedModel& model, const FixedDofs& dofs, Adder& adder) {
  const auto& forces = model.tables.NodalForces;
  const double extent = MeasureNodeBox(model.tables).diagonal;
  for (std::size_t row = 0; row < forces.size(); ++row) {
    std::array<double, 6> load = forces[row].components;
    const std::int32_t node = forces[row].node;
    if (!IsNode(model, node) || IsLost(model, Section::Forces, static_cast<std::int32_t>(row)) ||
        !AreFinite(load.data(), load.size())) {
      continue;
    }
    const std::uint8_t fixed = dofs.fixed[static_cast<std::size_t>(node)];
    for (std::size_t d = 0; d < 6; ++d) {
      if (IsFixed(fixed, d) && IsPrescribing(d, load[d], extent)) load[d] = 0.0;
    }
    AddNodeLoad(PlaceOf(model.tables, node), load.data(), adder);
  }
}

void FindLine(const Adder& adder, LoadSums& sums) {
  const Vector3 F{adder.sums[0], adder.sums[1], adder.sums[2]};
  const Vector3 M{adder.sums[3], adder.sums[4], adder.sums[5]};
  const double force = korvex::Length(F);
  // A sum of forces that cancel each other is rounding; its line would lie anywhere.
  constexpr double Rounding = 1e-10;
  sums.hasLine = std::isfinite(force) && force > Rounding * adder.size;
  if (!sums.hasLine) return;
  sums.direction = korvex::Normalise(F);
  const Vector3 across = korvex::Cross(sums.direction, M);
  for (std::size_t i = 0; i < 3; ++i) {
    sums.point[i] = across[i] / force;
    sums.couple += sums.direction[i] * M[i];
  }
}

}  // namespace

void SumLoads(const CheckedModel& model, const FixedDofs& dofs, LoadSums& sums) {
  const korvex::ModelTables& tables = model.tables;
  Adder adder;
  AddForces(model, dofs, adder);
  AddElementLoads(
      model, tables.Shell4SurfaceLoads, Section::Shell4Loads, Section::Shells4,
      [&](const std::int32_t* nodes, const korvex::ShellSurfaceLoad& load, double* f) {
        korvex::Shell4Element element;
        FillElement<4>(tables, nodes, element);
        korvex::Shell4LoadVector(element, load, f);
      },
      adder);
  AddElementLoads(
      model, tables.Shell3SurfaceLoads, Section::Shell3Loads, Section::Shells3,
      [&](const std::int32_t* nodes, const korvex::ShellSurfaceLoad& load, double* f) {
        korvex::Shell3Element element;
        FillElement<3>(tables, nodes, element);
        korvex::Shell3LoadVector(element, load, f);
      },
      adder);
  AddElementLoads(
      model, tables.BeamLineLoads, Section::BeamLoads, Section::Beams,
      [&](const std::int32_t* nodes, const korvex::BeamLineLoad& load, double* f) {
        korvex::BeamElement beam;
        const auto row = static_cast<std::size_t>(load.element);
        FillElement(tables, nodes, tables.BeamProperties[row].orientation, beam);
        korvex::BeamLineLoadVector(beam, load, f);
      },
      adder);
  sums = {};
  sums.sums = adder.sums;
  // What is left of forces that cancel each other is rounding.
  constexpr double Cancelled = 1e-12;
  for (std::size_t i = 0; i < 3; ++i) {
    if (std::abs(sums.sums[i]) <= Cancelled * adder.size) sums.sums[i] = 0.0;
  }
  FindLine(adder, sums);
}

}  // namespace kvx
