// Notation: P outline points, n steps, d = EndPoint2 - EndPoint1. Outline point i (x_i, y_i, z_i)
// at station s is node 1 + s P + i, at
//   EndPoint1 + x_i e1 + y_i e2 + z_i e3 + s d / n    (e1, e2, e3: beam axes, beam/beam_frame.h).
#include "beamshell/extrude_outline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "base/number_text.h"
#include "beam/beam_frame.h"
#include "beam/section_properties.h"
#include "beamshell/average_corners.h"
#include "platform/prefault_memory.h"
#include "report/check_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

// Links: much stiffer than any plate, so that they act as rigid arms, and much softer than the
// penalty on the end nodes (solve_beam_shell.cpp), so that they do not change the end
// displacements.
constexpr Material LinkMaterial{1e20, 0.3, 0.0};
constexpr CBeamSection LinkSection{5.0, 1.0};

// Memory that stays in use after the solution. Per node: position and displacements. Per shell: the
// record and its nodes.
constexpr std::uint64_t BytesPerNode = sizeof(Vector3) + 6 * sizeof(double);
constexpr std::uint64_t BytesPerShell = sizeof(Shell4Element) + 4 * sizeof(std::int32_t);
constexpr std::uint64_t BytesPerLink = sizeof(BeamElement) + 2 * sizeof(std::int32_t);

// Tables of the equation system, per equation: those of the profile, and those of the search for
// independent systems (skyline/independent_systems.cpp), which also lists non-zero entries in up to
// an eighth of the matrix's memory.
constexpr std::uint64_t TableBytesPerEquation = 140;
constexpr std::uint64_t BytesPerEntry = sizeof(double) + sizeof(double) / 8;

[[noreturn]] void StopTooManySteps(std::int32_t beam, double steps) {
  NumberBuffer buffer;
  std::string text = "Beam element " + std::to_string(beam) + ": its detail model would have ";
  text.append(FormatNumber(steps, buffer));
  text += " steps along the beam, too many to number its equations.";
  throw Stop{StopKind::Notice, std::move(text)};
}

void CountItems(const SectionOutline& outline, std::int32_t n, BeamShellModel& model) {
  model.ProfileNodeCount = static_cast<std::int32_t>(outline.points.size());
  model.NodeCount = model.ProfileNodeCount * (n + 1) + 2;
  model.NEQ = model.NodeCount * model.DofsPerNode;
  model.ShellCount = static_cast<std::int32_t>(outline.segments.size()) * n;
  model.LinkCount = 2 * model.ProfileNodeCount;
}

// Empties `items` and reserves room for `count` items.
template <typename Vector>
void Empty(std::size_t count, Vector& items) {
  items.clear();
  items.reserve(count);
}

// Empties the tables of nodes, shells and links and reserves room for the counts in `model`.
void EmptyTables(std::int32_t beam, BeamShellModel& model) {
  const auto nodes = static_cast<std::size_t>(model.NodeCount);
  const auto shells = static_cast<std::size_t>(model.ShellCount);
  const auto links = static_cast<std::size_t>(model.LinkCount);
  const std::size_t bytes = nodes * BytesPerNode + shells * BytesPerShell + links * BytesPerLink;
  AllocateOrStop("the detail model of beam element " + std::to_string(beam), bytes, 1, [&] {
    Empty(nodes, model.NodeCoords);
    Empty(shells * 4, model.ShellNodes);
    Empty(shells, model.Shells);
    Empty(links * 2, model.LinkNodes);
    Empty(links, model.Links);
  });
  PrefaultMemory(model.Shells.data(), shells * sizeof(Shell4Element));
}

void PlaceNodes(const SectionOutline& outline, std::int32_t n, BeamShellModel& model) {
  const Vector3 d = Subtract(model.EndPoint2, model.EndPoint1);
  BeamFrame frame;
  ComputeBeamFrame(d, model.OrientVector, frame);
  model.NodeCoords.push_back(model.EndPoint1);
  for (std::int32_t s = 0; s <= n; ++s) {
    for (const Vector3& p : outline.points) {
      Vector3 node{};
      for (std::size_t i = 0; i < 3; ++i) {
        node[i] = model.EndPoint1[i] + p[0] * frame[i] + p[1] * frame[3 + i] + p[2] * frame[6 + i] +
                  s * d[i] / n;
      }
      model.NodeCoords.push_back(node);
    }
  }
  model.NodeCoords.push_back(model.EndPoint2);
}

void AddShell(const std::array<std::int32_t, 4>& nodes, double thickness, BeamShellModel& model) {
  std::array<double, 12> coordinates{};
  for (std::size_t k = 0; k < 4; ++k) {
    const Vector3& node = model.NodeCoords[static_cast<std::size_t>(nodes[k])];
    std::copy(node.begin(), node.end(), coordinates.begin() + static_cast<std::ptrdiff_t>(3 * k));
  }
  model.ShellNodes.insert(model.ShellNodes.end(), nodes.begin(), nodes.end());
  model.Shells.emplace_back();
  SetGeometry(model.Shells.back(), coordinates.data(), model.NodesPerShell, model.E, model.Mu,
              thickness);
}

void AddShells(const SectionOutline& outline, std::int32_t n, BeamShellModel& model) {
  for (std::int32_t s = 1; s <= n; ++s) {
    const std::int32_t before = 1 + (s - 1) * model.ProfileNodeCount;
    const std::int32_t here = before + model.ProfileNodeCount;
    for (const OutlineSegment& segment : outline.segments) {
      const auto [a, b] = segment.points;
      AddShell({before + a, here + a, here + b, before + b}, segment.thickness, model);
    }
  }
}

// Adds the links from node `end` to the P nodes of its station, which begin at `firstNode`.
void AddLinks(std::int32_t end, std::int32_t firstNode, BeamShellModel& model) {
  const Vector3 d = Subtract(model.EndPoint2, model.EndPoint1);
  const Vector3& nodeI = model.NodeCoords[static_cast<std::size_t>(end)];
  const std::array<double, 4> refPointAndTolerance{nodeI[0] + d[0], nodeI[1] + d[1],
                                                   nodeI[2] + d[2], BeamTolerance};
  for (std::int32_t i = firstNode; i < firstNode + model.ProfileNodeCount; ++i) {
    model.LinkNodes.insert(model.LinkNodes.end(), {end, i});
    model.Links.emplace_back();
    InitCBeamElement(model.Links.back(), nodeI, model.NodeCoords[static_cast<std::size_t>(i)],
                     refPointAndTolerance, LinkMaterial, LinkSection, 0.0);
  }
}

// The shells between two stations couple their 2 P nodes: no column is higher.
std::uint64_t CountSystemBytes(std::uint64_t P, std::uint64_t equations, std::uint64_t dofs) {
  return equations * (2 * P * dofs * BytesPerEntry + TableBytesPerEquation) + 2 * P * BytesPerLink;
}

}  // namespace

// n = L / longest segment, truncated, but at least 1; 1 also if the quotient is not finite.
std::int32_t CountSteps(const SectionOutline& outline, std::int32_t beam,
                        const BeamShellModel& model) {
  const double L = Length(Subtract(model.EndPoint2, model.EndPoint1));
  const double quotient = L / LongestSegment(outline);
  if (!std::isfinite(quotient) || quotient < 1.0) return 1;

  constexpr std::int64_t Limit = std::numeric_limits<std::int32_t>::max();
  if (quotient > static_cast<double>(Limit)) StopTooManySteps(beam, quotient);
  const auto n = static_cast<std::int64_t>(quotient);
  const auto P = static_cast<std::int64_t>(outline.points.size());
  if ((P * (n + 1) + 2) * model.DofsPerNode > Limit) StopTooManySteps(beam, quotient);
  return static_cast<std::int32_t>(n);
}

std::uint64_t CountDetailBytes(const SectionOutline& outline, std::int32_t beam,
                               const BeamShellModel& model) {
  const auto n = static_cast<std::uint64_t>(CountSteps(outline, beam, model));
  const std::uint64_t nodes = outline.points.size() * (n + 1) + 2;
  const std::uint64_t shells = outline.segments.size() * n;
  return nodes * BytesPerNode + shells * BytesPerShell + CountAveragingBytes(nodes, shells);
}

std::uint64_t CountSystemBytes(const SectionOutline& outline, std::int32_t beam,
                               const BeamShellModel& model) {
  const auto n = static_cast<std::uint64_t>(CountSteps(outline, beam, model));
  const std::uint64_t P = outline.points.size();
  const auto dofs = static_cast<std::uint64_t>(model.DofsPerNode);
  return CountSystemBytes(P, (P * (n + 1) + 2) * dofs, dofs);
}

std::uint64_t CountSystemBytes(const BeamShellModel& model) {
  return CountSystemBytes(static_cast<std::uint64_t>(model.ProfileNodeCount),
                          static_cast<std::uint64_t>(model.NEQ),
                          static_cast<std::uint64_t>(model.DofsPerNode));
}

void ExtrudeOutline(const SectionOutline& outline, std::int32_t beam, BeamShellModel& model) {
  const std::int32_t n = CountSteps(outline, beam, model);
  CountItems(outline, n, model);
  EmptyTables(beam, model);
  PlaceNodes(outline, n, model);
  AddShells(outline, n, model);

  const std::int32_t lastNode = model.NodeCount - 1;
  AddLinks(0, 1, model);
  AddLinks(lastNode, lastNode - model.ProfileNodeCount, model);
}

}  // namespace korvex
