#include "mesh/abaqus/abaqus_case_loads.h"

#include <cmath>
#include <string>

#include "mesh/abaqus/abaqus_axes.h"
#include "mesh/equivalent_loads.h"

namespace kvx {

namespace {

using korvex::Vector3;

struct CaseLoader {
  AbaqusImport& import;
  const AbaqusSections& sections;
  ImportCase& made;
};

void AddPoint(const CaseLoader& loader, const AbaqusTransforms& transforms,
              const PointLoad& point) {
  AbaqusAxes axes{};
  if (!AxesOfNode(loader.import.model, transforms, point.node, axes)) {
    const auto row = static_cast<std::size_t>(point.node);
    ReportCard("*CLOAD", Fate::Refused,
               "a force on the axis of its cylindrical or spherical system", loader.made.place,
               "node " + std::to_string(loader.import.model.nodeNumbers[row]),
               loader.import.report);
    return;
  }
  const auto& v = point.values;
  const Vector3 force = Combine(axes, {v[0], v[1], v[2]});
  const Vector3 moment = Combine(axes, {v[3], v[4], v[5]});
  if (force == Vector3{} && moment == Vector3{}) return;
  loader.made.forces.push_back(
      {point.node, {force[0], force[1], force[2], moment[0], moment[1], moment[2]}});
}

// A force per length along a direction, on the whole beam.
void AddLine(const CaseLoader& loader, std::int32_t beam, double q, const Vector3& direction) {
  BeamSpanLoad load;
  load.beam = beam;
  load.direction = direction;
  load.qFrom = load.qTo = q;
  AddBeamLoad(loader.import.model, load, loader.made);
}

void AddLocalLine(const CaseLoader& loader, std::int32_t beam, double q, AbaqusLoadKind kind) {
  const AbaqusBeamAxes axes = AxesOfBeam(loader.import.model, loader.sections, beam);
  if (!axes.areKnown) {
    ReportCard("*DLOAD", Fate::Lost, "P1 or P2 on a beam whose n1 is not known", loader.made.place,
               ExampleOf(loader.import,
                         ElementCode(AbaqusElementKind::Beam, static_cast<std::size_t>(beam))),
               loader.import.report);
    return;
  }
  AddLine(loader, beam, q, kind == AbaqusLoadKind::Line1 ? axes.n1 : axes.n2);
}

double AreaOf(const ImportSection& section) {
  const korvex::BeamSection& p = section.plates;
  const double pi = std::acos(-1.0);
  if (section.type == korvex::BeamSecTypeC) return 2.0 * pi * section.tube.R * section.tube.T;
  return p.Hw * p.Tw + p.Bf * p.Tf;
}

// A force per volume on an element. Returns false where its size is not known.
bool AddBody(const CaseLoader& loader, std::int32_t code, double q, const Vector3& direction) {
  const ImportModel& model = loader.import.model;
  const std::int32_t row = RowOfCode(code);
  if (KindOfCode(code) == AbaqusElementKind::Shell) {
    const std::int32_t thickness = model.shells[static_cast<std::size_t>(row)].thickness;
    if (thickness < 0) return false;
    const double perArea = q * model.thicknesses[static_cast<std::size_t>(thickness)].TK;
    AddTraction(model, row, {perArea, perArea, perArea, perArea}, direction, loader.made);
    return true;
  }
  const std::int32_t section = model.beams[static_cast<std::size_t>(row)].section;
  if (section < 0) return false;
  AddLine(loader, row, q * AreaOf(model.sections[static_cast<std::size_t>(section)]), direction);
  return true;
}

void AddBodies(const CaseLoader& loader, const DistributedLoads& loads) {
  for (const DistributedLoad& load : loads.loads) {
    if (AddBody(loader, load.element, load.value, loads.direction)) continue;
    ReportCard("*DLOAD", Fate::Lost, "a force per volume on an element whose section is not known",
               loader.made.place, ExampleOf(loader.import, load.element), loader.import.report);
  }
}

void AddKind(const CaseLoader& loader, const DistributedLoads& loads) {
  const ImportModel& model = loader.import.model;
  for (const DistributedLoad& load : loads.loads) {
    const std::int32_t row = RowOfCode(load.element);
    const double q = load.value;
    if (q == 0.0) continue;
    switch (loads.kind) {
      case AbaqusLoadKind::Pressure:
      case AbaqusLoadKind::LowerPressure:
        AddPressure(model, row, {q, q, q, q}, loader.made);
        break;
      case AbaqusLoadKind::UpperPressure:
        AddPressure(model, row, {-q, -q, -q, -q}, loader.made);
        break;
      case AbaqusLoadKind::Traction:
      case AbaqusLoadKind::SurfaceTraction:
        AddTraction(model, row, {q, q, q, q}, loads.direction, loader.made);
        break;
      case AbaqusLoadKind::LineGlobal:
        AddLine(loader, row, q, loads.direction);
        break;
      case AbaqusLoadKind::Line1:
      case AbaqusLoadKind::Line2:
        AddLocalLine(loader, row, q, loads.kind);
        break;
      case AbaqusLoadKind::Gravity:
      case AbaqusLoadKind::Body:
        break;
    }
  }
}

// The accelerations of all elements, shells before beams.
struct Gravity {
  std::vector<Vector3> accelerations;
  bool isAny = false;
};

Gravity SumGravity(const CaseLoader& loader, const AbaqusLoads& loads) {
  const ImportModel& model = loader.import.model;
  Gravity gravity;
  for (const DistributedLoads& kind : loads.kinds) {
    if (kind.kind != AbaqusLoadKind::Gravity || kind.loads.empty()) continue;
    if (!gravity.isAny) {
      SpendEntries(loader.import, model.shells.size() + model.beams.size(), loader.made.place);
      gravity.accelerations.assign(model.shells.size() + model.beams.size(), Vector3{});
    }
    gravity.isAny = true;
    for (const DistributedLoad& load : kind.loads) {
      const bool isShell = KindOfCode(load.element) == AbaqusElementKind::Shell;
      const auto row = static_cast<std::size_t>(RowOfCode(load.element));
      Vector3& sum = gravity.accelerations[isShell ? row : model.shells.size() + row];
      sum = Add(sum, Scale(load.value, kind.direction));
    }
  }
  return gravity;
}

std::int32_t MaterialAt(const ImportModel& model, std::size_t k) {
  if (k < model.shells.size()) return model.shells[k].material;
  return model.beams[k - model.shells.size()].material;
}

// The density of an element; -1 where its material is not known yet.
double DensityAt(const ImportModel& model, std::size_t k) {
  const std::int32_t material = MaterialAt(model, k);
  return material < 0 ? -1.0 : model.materials[static_cast<std::size_t>(material)].values.Density;
}

// Whether all elements that have a mass are accelerated alike.
bool IsUniform(const ImportModel& model, const Gravity& gravity, Vector3& acceleration) {
  bool isFirst = true;
  for (std::size_t k = 0; k < gravity.accelerations.size(); ++k) {
    if (DensityAt(model, k) == 0.0) continue;
    if (isFirst) acceleration = gravity.accelerations[k];
    if (gravity.accelerations[k] != acceleration) return false;
    isFirst = false;
  }
  return true;
}

void AddPartialGravity(const CaseLoader& loader, const Gravity& gravity) {
  const ImportModel& model = loader.import.model;
  for (std::size_t k = 0; k < gravity.accelerations.size(); ++k) {
    const Vector3& acceleration = gravity.accelerations[k];
    const double size = korvex::Length(acceleration);
    if (size == 0.0) continue;
    const bool isShell = k < model.shells.size();
    const std::int32_t code = isShell
                                  ? ElementCode(AbaqusElementKind::Shell, k)
                                  : ElementCode(AbaqusElementKind::Beam, k - model.shells.size());
    const double density = DensityAt(model, k);
    const bool isAdded =
        density >= 0.0 && AddBody(loader, code, density * size, korvex::Normalise(acceleration));
    ReportCard("*DLOAD", isAdded ? Fate::Limited : Fate::Lost,
               isAdded ? "GRAV on a part of the elements becomes loads of these elements"
                       : "GRAV on elements whose section or material is not known",
               loader.made.place, ExampleOf(loader.import, code), loader.import.report);
  }
}

void AddGravity(const CaseLoader& loader, const AbaqusLoads& loads) {
  const Gravity gravity = SumGravity(loader, loads);
  if (!gravity.isAny) return;
  Vector3 acceleration{};
  if (!IsUniform(loader.import.model, gravity, acceleration)) {
    AddPartialGravity(loader, gravity);
    return;
  }
  loader.made.hasAcceleration = acceleration != Vector3{};
  loader.made.acceleration = acceleration;
}

}  // namespace

void AddCaseLoads(AbaqusImport& import, const AbaqusTransforms& transforms,
                  const AbaqusSections& sections, const AbaqusLoads& loads, ImportCase& made) {
  const CaseLoader loader{import, sections, made};
  SpendEntries(import, loads.points.size(), made.place);
  for (const PointLoad& point : loads.points) AddPoint(loader, transforms, point);
  for (const DistributedLoads& kind : loads.kinds) {
    SpendEntries(import, kind.loads.size() + 1, made.place);
    AddKind(loader, kind);
    if (kind.kind == AbaqusLoadKind::Body) AddBodies(loader, kind);
  }
  AddGravity(loader, loads);
}

}  // namespace kvx
