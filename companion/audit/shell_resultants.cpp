#include "audit/shell_resultants.h"

#include <algorithm>
#include <limits>

#include "audit/check_solved.h"
#include "base/matrix.h"
#include "results/corner_stress.h"
#include "shell/element_parts.h"
#include "shell/quad_plate.h"

namespace kvx {

using korvex::DofsPerNode, korvex::Model, korvex::Shell3Element, korvex::Shell4Element;
using korvex::StressVector, korvex::Vector3;

namespace {

constexpr std::size_t Upper = static_cast<std::size_t>(Face::Upper);
constexpr std::size_t Lower = static_cast<std::size_t>(Face::Lower);
constexpr std::size_t Middle = static_cast<std::size_t>(Face::Middle);

constexpr std::array<double, 4> CornerXi{-1.0, 1.0, 1.0, -1.0};
constexpr std::array<double, 4> CornerEta{-1.0, -1.0, 1.0, 1.0};

PlaneTensor Scale(double a, const PlaneTensor& s) { return {a * s.x, a * s.y, a * s.xy}; }

// (s + a t) / 2
PlaneTensor HalfSum(const PlaneTensor& s, double a, const PlaneTensor& t) {
  return Scale(0.5, {s.x + a * t.x, s.y + a * t.y, s.xy + a * t.xy});
}

// The membrane and the bending stress from the stresses of the upper and the lower face.
struct StressParts {
  PlaneTensor membrane, bending;
};
StressParts SplitStresses(const PlaneTensor& upper, const PlaneTensor& lower) {
  return {HalfSum(upper, 1.0, lower), HalfSum(upper, -1.0, lower)};
}

PlaneTensor MembraneForces(double t, const StressParts& parts) { return Scale(t, parts.membrane); }
PlaneTensor Moments(double t, const StressParts& parts) {
  return Scale(t * t / 6.0, parts.bending);
}

PlaneTensor LocalStress(const korvex::ElementFrame& axes, const StressVector& stress) {
  return PlaneOf(StressInFrame(axes, stress));
}

// Fills what follows from state.stress.
void CompleteFace(const korvex::ElementFrame& axes, FaceState& state) {
  state.local = LocalStress(axes, state.stress);
  state.principal = FindPrincipalValues(state.local);
  state.direction = DirectionAt(axes, state.principal.angle);
  state.vonMises = korvex::EquivalentStress(state.stress);
}

// Fills the point from the stresses of its upper and lower face, which are in it.
void CompletePoint(const ShellFrame& frame, double t, ShellPoint& point) {
  auto& faces = point.faces;
  for (std::size_t i = 0; i < 6; ++i) {
    faces[Middle].stress[i] = (faces[Upper].stress[i] + faces[Lower].stress[i]) / 2.0;
  }
  for (FaceState& face : faces) CompleteFace(frame.axes, face);
  const StressParts parts = SplitStresses(faces[Upper].local, faces[Lower].local);
  point.membrane = parts.membrane;
  point.bending = parts.bending;
  point.n = MembraneForces(t, parts);
  point.m = Moments(t, parts);
}

// d: 6 per node, element dof order, written completely. nodes: the element's, checked.
void GatherDisplacements(const Model& model, const std::int32_t* nodes, std::int32_t count,
                         double* d) {
  for (std::int32_t k = 0; k < count; ++k) {
    const auto first = static_cast<std::size_t>(nodes[k]) * DofsPerNode;
    std::copy_n(&model.Displacements[first], DofsPerNode, d + DofsPerNode * k);
  }
}

Vector3 CornerPlace(const double* coordinates, std::size_t k) {
  return {coordinates[3 * k], coordinates[3 * k + 1], coordinates[3 * k + 2]};
}

// The mean of the first `count` nodes.
Vector3 CentrePlace(const double* coordinates, std::size_t count) {
  Vector3 place{};
  for (std::size_t k = 0; k < count; ++k) {
    for (std::size_t i = 0; i < 3; ++i) {
      place[i] += coordinates[3 * k + i] / static_cast<double>(count);
    }
  }
  return place;
}

// Fills what does not depend on displacements.
template <std::int32_t Nodes>
void BeginResultants(const korvex::ShellElement<Nodes>& element, const FrameChoice& choice,
                     ShellResultants& out) {
  constexpr auto corners = static_cast<std::size_t>(Nodes);
  out.frame = MakeShellFrame(element.Frame, choice);
  out.thickness = element.TK;
  out.hasShear = Nodes == korvex::NodesPerShell4;
  out.corners = Nodes;
  out.centre.place = CentrePlace(element.Coordinates.data(), corners);
  for (std::size_t k = 0; k < corners; ++k) {
    out.corner[k].place = CornerPlace(element.Coordinates.data(), k);
  }
}

// qx and qy in the frame: the components of the vector that they form in the shell's plane.
void ComputeShear(const Shell4Element& element, const ShellFrame& frame, const double* d, double xi,
                  double eta, double& qx, double& qy) {
  double q1 = 0.0, q2 = 0.0;
  Shell4TransverseShear(element, d, xi, eta, q1, q2);
  const auto& own = element.Frame;
  const auto& axes = frame.axes;
  const auto component = [&](std::size_t column) {
    double sum = 0.0;
    for (std::size_t r = 0; r < 9; r += 3) {
      sum += (q1 * own[r] + q2 * own[r + 1]) * axes[r + column];
    }
    return sum;
  };
  qx = component(0);
  qy = component(1);
}

void ComputeShell4Point(const Shell4Element& element, const ShellFrame& frame, const double* d,
                        double xi, double eta, ShellPoint& point) {
  auto& faces = point.faces;
  korvex::Shell4CornerStress(element, faces[Upper].stress, faces[Lower].stress, d, xi, eta);
  CompletePoint(frame, element.TK, point);
  ComputeShear(element, frame, d, xi, eta, point.qx, point.qy);
}

void ComputeShell3Point(const Shell3Element& element, const ShellFrame& frame, const double* d,
                        const std::array<double, 3>& L, ShellPoint& point) {
  auto& faces = point.faces;
  korvex::Shell3CornerStress(element, faces[Upper].stress, faces[Lower].stress, d, L);
  CompletePoint(frame, element.TK, point);
  point.qx = point.qy = std::numeric_limits<double>::quiet_NaN();
}

// Fills n and m from the global stresses of both faces.
void FormCentre(const ShellFrame& frame, double t, const StressVector& upper,
                const StressVector& lower, CentreResultants& out) {
  const StressParts parts =
      SplitStresses(LocalStress(frame.axes, upper), LocalStress(frame.axes, lower));
  out.n = MembraneForces(t, parts);
  out.m = Moments(t, parts);
}

constexpr double Third = 1.0 / 3.0;

}  // namespace

void Shell4TransverseShear(const Shell4Element& element, const double* displacements, double xi,
                           double eta, double& qx, double& qy) {
  std::array<double, korvex::Shell4Dofs> local{};
  std::copy_n(displacements, local.size(), local.begin());
  korvex::RotateVectorToLocal(element.Frame, korvex::NodesPerShell4, local.data());
  std::array<double, 12> plateDofs{};
  for (std::size_t k = 0; k < 4; ++k) {
    for (std::size_t i = 0; i < 3; ++i) {
      plateDofs[3 * k + i] = local[6 * k + static_cast<std::size_t>(korvex::PlatePlace[i])];
    }
  }
  korvex::QuadPlate plate;
  korvex::SetUpPart(element, plate);
  plate.ShapeFunctions(xi, eta);
  plate.Jacobian();
  plate.ShearStrainMatrix(plate.detJ, xi, eta);
  std::array<double, 2> strains{};
  korvex::MatMultiply(strains.data(), plate.Bs.data(), plateDofs.data(), 2, 12, 1);
  // The shear rigidity of QuadPlate::Stiffness, which forms it together with the whole matrix.
  const double rigidity =
      element.E * element.TK / ((element.Mu + 1.0) * 2.0 * korvex::ShearCorrectionDivisor);
  qx = rigidity * strains[0];
  qy = rigidity * strains[1];
}

void ComputeShell4Resultants(const Model& model, std::int32_t e, const FrameChoice& choice,
                             ShellResultants& out) {
  CheckSolvedShell4(model, e);
  const auto row = static_cast<std::size_t>(e);
  const Shell4Element& element = model.Shell4Elements[row];
  std::array<double, korvex::Shell4Dofs> d{};
  GatherDisplacements(model, &model.Tables.Shell4Nodes[4 * row], 4, d.data());
  BeginResultants(element, choice, out);
  ComputeShell4Point(element, out.frame, d.data(), 0.0, 0.0, out.centre);
  for (std::size_t k = 0; k < 4; ++k) {
    ComputeShell4Point(element, out.frame, d.data(), CornerXi[k], CornerEta[k], out.corner[k]);
  }
}

void ComputeShell3Resultants(const Model& model, std::int32_t e, const FrameChoice& choice,
                             ShellResultants& out) {
  CheckSolvedShell3(model, e);
  const auto row = static_cast<std::size_t>(e);
  const Shell3Element& element = model.Shell3Elements[row];
  std::array<double, korvex::Shell3Dofs> d{};
  GatherDisplacements(model, &model.Tables.Shell3Nodes[3 * row], 3, d.data());
  BeginResultants(element, choice, out);
  ComputeShell3Point(element, out.frame, d.data(), {Third, Third, Third}, out.centre);
  for (std::size_t k = 0; k < 3; ++k) {
    std::array<double, 3> L{};
    L[k] = 1.0;
    ComputeShell3Point(element, out.frame, d.data(), L, out.corner[k]);
  }
}

void ComputeShell4Centre(const Model& model, std::int32_t e, const FrameChoice& choice,
                         CentreResultants& out) {
  CheckSolvedShell4(model, e);
  const auto row = static_cast<std::size_t>(e);
  const Shell4Element& element = model.Shell4Elements[row];
  std::array<double, korvex::Shell4Dofs> d{};
  GatherDisplacements(model, &model.Tables.Shell4Nodes[4 * row], 4, d.data());
  const ShellFrame frame = MakeShellFrame(element.Frame, choice);
  StressVector upper{}, lower{};
  korvex::Shell4CornerStress(element, upper, lower, d.data(), 0.0, 0.0);
  FormCentre(frame, element.TK, upper, lower, out);
  ComputeShear(element, frame, d.data(), 0.0, 0.0, out.qx, out.qy);
}

void ComputeShell3Centre(const Model& model, std::int32_t e, const FrameChoice& choice,
                         CentreResultants& out) {
  CheckSolvedShell3(model, e);
  const auto row = static_cast<std::size_t>(e);
  const Shell3Element& element = model.Shell3Elements[row];
  std::array<double, korvex::Shell3Dofs> d{};
  GatherDisplacements(model, &model.Tables.Shell3Nodes[3 * row], 3, d.data());
  const ShellFrame frame = MakeShellFrame(element.Frame, choice);
  StressVector upper{}, lower{};
  korvex::Shell3CornerStress(element, upper, lower, d.data(), {Third, Third, Third});
  FormCentre(frame, element.TK, upper, lower, out);
  out.qx = out.qy = std::numeric_limits<double>::quiet_NaN();
}

}  // namespace kvx
