#include "check/weigh_model.h"

#include "beam/beam_frame.h"
#include "check/solver_beam.h"
#include "check/table_rows.h"

namespace kvx {

using korvex::Section;
using korvex::Vector3;

namespace {

// Sums of mass and of mass times place.
struct Moments {
  double mass = 0.0;
  Vector3 first{};
};

void AddMass(double mass, const Vector3& place, Moments& sums) {
  sums.mass += mass;
  for (std::size_t i = 0; i < 3; ++i) sums.first[i] += mass * place[i];
}

// surfaceMass: mass per area.
void AddTriangle(const Vector3& a, const Vector3& b, const Vector3& c, double surfaceMass,
                 Moments& sums) {
  const double area =
      0.5 * korvex::Length(korvex::Cross(korvex::Subtract(b, a), korvex::Subtract(c, a)));
  Vector3 centre{};
  for (std::size_t i = 0; i < 3; ++i) centre[i] = (a[i] + b[i] + c[i]) / 3.0;
  AddMass(surfaceMass * area, centre, sums);
}

void AddShell(const CheckedModel& model, Section section, std::int32_t row, Moments& sums) {
  const korvex::ModelTables& tables = model.tables;
  const korvex::ShellRowProperties properties = ShellPropertiesOf(tables, section, row);
  if (!IsKnown(model, properties)) return;
  const double surfaceMass =
      tables.Materials[static_cast<std::size_t>(properties.material)].Density *
      tables.ShellThicknesses[static_cast<std::size_t>(properties.thickness)].TK;
  const ElementNodes shell = NodesOf(tables, section, row);
  const auto node = [&](std::size_t k) { return PlaceOf(tables, shell.nodes[k]); };
  if (section == Section::Shells3) {
    AddTriangle(node(0), node(1), node(2), surfaceMass, sums);
    return;
  }
  AddTriangle(node(0), node(1), node(2), 0.5 * surfaceMass, sums);
  AddTriangle(node(0), node(2), node(3), 0.5 * surfaceMass, sums);
  AddTriangle(node(0), node(1), node(3), 0.5 * surfaceMass, sums);
  AddTriangle(node(1), node(2), node(3), 0.5 * surfaceMass, sums);
}

void AddBeam(const CheckedModel& model, std::int32_t row, Moments& sums) {
  korvex::BeamElement beam;
  double L = 0.0;
  if (!MakeSolverBeam(model, row, beam, L)) return;
  korvex::BeamFrame frame;
  korvex::ComputeBeamFrame(beam, frame);
  const korvex::SectionProperties& s = beam.Section;
  Vector3 centre{};
  for (std::size_t i = 0; i < 3; ++i) {
    centre[i] = 0.5 * (beam.NodeI[i] + beam.NodeJ[i]) + s.Ey * frame[3 + i] + s.Ez * frame[6 + i];
  }
  const std::int32_t material = model.tables.BeamProperties[static_cast<std::size_t>(row)].material;
  AddMass(model.tables.Materials[static_cast<std::size_t>(material)].Density * s.A * L, centre,
          sums);
}

}  // namespace

ModelWeight WeighModel(const CheckedModel& model) {
  Moments sums;
  for (const Section section : ElementSections) {
    for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
      if (StateOf(model, section, row) != ElementState::Sound) continue;
      if (section == Section::Beams) {
        AddBeam(model, row, sums);
      } else {
        AddShell(model, section, row, sums);
      }
    }
  }
  ModelWeight weight;
  weight.mass = sums.mass;
  if (sums.mass == 0.0) return weight;
  for (std::size_t i = 0; i < 3; ++i) weight.centre[i] = sums.first[i] / sums.mass;
  return weight;
}

}  // namespace kvx
