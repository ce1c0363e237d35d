#include "beamshell/solve_beam_shell.h"

#include <string>
#include <utility>

#include "base/release_vector.h"
#include "beam/beam_frame.h"
#include "beam/beam_stiffness.h"
#include "report/check_memory.h"
#include "results/shell_stresses.h"
#include "shell/shell_stiffness.h"
#include "skyline/reserve_system.h"
#include "skyline/solve_skyline.h"
#include "system/element_matrix.h"
#include "system/profile.h"

namespace korvex {

namespace {

// The square of PenaltyFactor. So much larger than the links' stiffness that an end node follows
// its given displacement to the last digit.
constexpr double PenaltyDiagonal = 1e40;

// load = displacement * PenaltyFactor * PenaltyFactor. Two products with 1e20 round differently
// from one product with 1e40.
constexpr double PenaltyFactor = 1e20;

// Drives `node` by the displacements u. u: 6, ux, uy, uz, rx, ry, rz, global.
void DriveNode(std::int32_t node, const double* u, const DriveEquation& drive) {
  for (std::size_t d = 0; d < 6; ++d) {
    drive(static_cast<std::size_t>(node) * 6 + d, PenaltyDiagonal,
          u[d] * PenaltyFactor * PenaltyFactor);
  }
}

}  // namespace

void BuildBeamShellColumns(const BeamShellModel& model, SkylineMatrix& K) {
  InitColumnHeights(K, model.NEQ);
  RaiseElementColumns(model.ShellNodes, model.NodesPerShell, K);
  RaiseElementColumns(model.LinkNodes, model.NodesPerLink, K);
  ComputeDiagonalAddresses(K);
}

void BuildBeamShellProfile(BeamShellModel& model) {
  const std::string equations = std::to_string(model.NEQ) + " equations of a detail model";
  ReserveSystem("the " + equations, model.NEQ, model.Stiffness, model.LoadVector,
                model.Displacements);
  BuildBeamShellColumns(model, model.Stiffness);
  // The memory handed over from the beam before may be large enough.
  const auto entries = static_cast<std::uint64_t>(model.Stiffness.SkylineSize);
  const bool hasRoom = entries <= model.Stiffness.Values.capacity();
  if (!hasRoom) ReleaseVector(model.Stiffness.Values);
  AllocateOrStop("the stiffness matrix of " + equations, hasRoom ? 0 : entries, sizeof(double),
                 [&] { AllocateValues(model.Stiffness); });
  model.LoadVector.assign(static_cast<std::size_t>(model.NEQ), 0.0);
  model.Displacements.resize(static_cast<std::size_t>(model.NEQ));
}

void HandOverLinks(const BeamShellModel& model, BeamEnd end, const TakeElementMatrix& take) {
  const std::size_t half = model.Links.size() / 2, first = end == BeamEnd::First ? 0 : half;
  for (std::size_t i = first; i < first + half; ++i) {
    if (BeamLength(model.Links[i]) < model.Tolerance) continue;
    HandOverElement<2>(model.Links[i], &model.LinkNodes[i * 2], BeamStiffness, take);
  }
}

void AssembleBeamShell(BeamShellModel& model) {
  SkylineMatrix& K = model.Stiffness;
  const auto add = [&K](const double* ke, const std::int32_t* g, std::int32_t n) {
    ScatterElement(ke, g, n, K);
  };
  for (std::size_t e = 0; e < model.Shells.size(); ++e) {
    HandOverElement<4>(model.Shells[e], &model.ShellNodes[e * 4], Shell4Stiffness, add);
  }
  HandOverLinks(model, BeamEnd::First, add);
  HandOverLinks(model, BeamEnd::Second, add);
}

// The end node, and the nodes of its station that coincide with it.
void DriveEnd(const BeamShellModel& model, BeamEnd end, const double* u,
              const DriveEquation& drive) {
  const std::int32_t lastNode = model.NodeCount - 1;
  const std::int32_t node = end == BeamEnd::First ? 0 : lastNode;
  const std::int32_t firstOfStation = end == BeamEnd::First ? 1 : lastNode - model.ProfileNodeCount;
  DriveNode(node, u, drive);
  const Vector3& endPoint = model.NodeCoords[static_cast<std::size_t>(node)];
  for (std::int32_t i = firstOfStation; i < firstOfStation + model.ProfileNodeCount; ++i) {
    const Vector3& point = model.NodeCoords[static_cast<std::size_t>(i)];
    if (Length(Subtract(point, endPoint)) < model.Tolerance) DriveNode(i, u, drive);
  }
}

void ImposeEndDisplacements(const double* u1, const double* u2, BeamShellModel& model) {
  const auto drive = [&model](std::size_t equation, double diagonal, double load) {
    const std::int64_t address = model.Stiffness.DiagonalAddress[equation];
    model.Stiffness.Values[static_cast<std::size_t>(address)] = diagonal;
    model.LoadVector[equation] = load;
  };
  DriveEnd(model, BeamEnd::First, u1, drive);
  DriveEnd(model, BeamEnd::Second, u2, drive);
}

void SolveBeamShell(const double* u1, const double* u2, BeamShellModel& model) {
  BuildBeamShellProfile(model);
  AssembleBeamShell(model);
  ImposeEndDisplacements(u1, u2, model);
  SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, {});
  RecoverShell4Stresses(model.Displacements, model.ShellNodes, model.Shells);
}

void ReuseLinks(BeamShellModel& solved, BeamShellModel& next) {
  next.LinkNodes = std::move(solved.LinkNodes);
  next.Links = std::move(solved.Links);
}

void ReuseSystem(BeamShellModel& solved, BeamShellModel& next) {
  next.Stiffness = std::move(solved.Stiffness);
  next.LoadVector = std::move(solved.LoadVector);
}

}  // namespace korvex
