#include "mesh/nastran/nastran_surface_loads.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "mesh/equivalent_loads.h"
#include "mesh/letter_case.h"
#include "mesh/nastran/nastran_patch_load.h"
#include "shell/element_frame.h"

namespace kvx {

namespace {

using korvex::Vector3;

// A vector that is off the normal by less than this angle is the normal: the rounding of local axes
// lies far below.
constexpr double SameDirection = 1e-9;

// Whether a card of the deck may be the element: coordinate systems have numbers of their own.
bool HasElementCard(std::int64_t number, const NastranLoadInput& in, SurfaceIndex& index) {
  if (!index.hasElements) {
    index.hasElements = true;
    for (const NastranCard& card : in.deck.cards) {
      const bool isElement = card.name.front() == 'C' && card.name.substr(0, 4) != "CORD";
      if (!isElement || !HoldsInteger(RowOf(in, card), 2)) continue;
      index.elements.push_back(IntegerField(RowOf(in, card), 2, 0));
    }
    std::sort(index.elements.begin(), index.elements.end());
  }
  return std::binary_search(index.elements.begin(), index.elements.end(), number);
}

// The row of a shell; -1 where there is none: then the card is reported.
std::int32_t FindShell(const NastranCard& card, std::int64_t number, NastranLoadInput& in,
                       SurfaceIndex& index) {
  const auto at = in.numbers.shells.find(number);
  if (at != in.numbers.shells.end()) return at->second;
  if (in.numbers.beams.count(number) > 0) {
    ReportSetCard(card, Fate::Refused, "its element is no shell", in);
  } else if (HasElementCard(number, in, index)) {
    ReportSetCard(card, Fate::Lost, "its element is not taken over", in);
  } else {
    ReportSetCard(card, Fate::Refused, "it names an element that does not exist", in);
  }
  return -1;
}

// The shells that a card names: single ones must be there, of a range those that are.
std::vector<std::int32_t> FindShells(const NastranCard& card, const CardNumbers& list,
                                     NastranLoadInput& in, SurfaceIndex& index) {
  std::vector<std::int32_t> shells;
  for (const std::int64_t number : list.singles) {
    const std::int32_t shell = FindShell(card, number, in, index);
    if (shell >= 0) shells.push_back(shell);
  }
  for (const auto& [first, last] : list.ranges) {
    const auto [begin, end] = RowsInRange(in.shells, first, last);
    if (begin == end) ReportSetCard(card, Fate::Lost, "it names a range without shells", in);
    SpendRows(end - begin, card.place, in);
    for (std::size_t i = begin; i < end; ++i) shells.push_back(in.shells[i].row);
  }
  return shells;
}

void TakePload2(const NastranCard& card, NastranLoadInput& in, SurfaceIndex& index,
                ImportCase& loads) {
  const double p = NeedReal(RowOf(in, card), 3);
  for (const std::int32_t shell : FindShells(card, ReadNumberList(card, 2, in), in, index)) {
    AddPressure(in.model, shell, {p, p, p, p}, loads);
  }
}

// What a PLOAD4 says of its direction.
struct LoadDirection {
  bool isVector = false;  // else along the normal
  const NastranSystem* system = nullptr;
  Vector3 components{};  // of length 1, along the system's axes
};

// Returns false where the card has a fault or cannot be taken over: then it is reported.
bool ReadDirection(const NastranCard& card, NastranLoadInput& in, LoadDirection& direction) {
  const NastranRow row = RowOf(in, card);
  const std::string_view kind = FieldOf(in.deck, card, 16);
  if (!kind.empty() && !IsWord(kind, "SURF")) {
    ReportSetCard(card, Fate::Lost, "loads along the edges of shells are not taken over", in);
    return false;
  }
  direction.isVector = false;
  for (std::size_t field = 12; field <= 15; ++field) {
    direction.isVector = direction.isVector || !IsBlank(row, field);
  }
  if (!direction.isVector) return true;
  direction.system = FindSystem(card, IntegerField(row, 12, 0), in);
  if (direction.system == nullptr) return false;
  for (std::size_t k = 0; k < 3; ++k) direction.components[k] = RealField(row, 13 + k, 0.0);
  if (!(korvex::Length(direction.components) > 0.0)) {
    ReportSetCard(card, Fate::Refused, "its vector has no length", in);
    return false;
  }
  direction.components = korvex::Normalise(direction.components);
  return true;
}

// 1 or -1 where the direction is that of a flat shell's normal or against it; else 0.
double SignAlongNormal(const ImportModel& model, std::int32_t shell, const Vector3& direction) {
  const ImportShell& row = model.shells[static_cast<std::size_t>(shell)];
  const std::size_t corners = CornersOf(row);
  std::array<Vector3, 4> places{};
  for (std::size_t k = 0; k < corners; ++k) places[k] = PlaceOf(model, row.nodes[k]);
  korvex::ElementFrame frame;
  korvex::ComputeElementFrame(places[0], places[1], places[corners - 1], frame);
  const Vector3 e3{frame[2], frame[5], frame[8]};
  const Vector3 diagonal = korvex::Subtract(places[2], places[0]);
  const double height = diagonal[0] * e3[0] + diagonal[1] * e3[1] + diagonal[2] * e3[2];
  const bool isFlat = std::fabs(height) <= SameDirection * korvex::Length(diagonal);
  if (!isFlat || !(korvex::Length(korvex::Cross(direction, e3)) <= SameDirection)) return 0.0;
  return direction[0] * e3[0] + direction[1] * e3[1] + direction[2] * e3[2] > 0.0 ? 1.0 : -1.0;
}

// Adds a load along a vector. In a cylindrical or spherical system the vector turns from corner to
// corner: then its global components are what is linear over the shell.
void AddAlong(const LoadDirection& direction, const std::array<double, 4>& q, std::int32_t shell,
              const NastranLoadInput& in, ImportCase& loads) {
  const ImportShell& row = in.model.shells[static_cast<std::size_t>(shell)];
  if (direction.system->kind == NastranSystemKind::Rectangular) {
    const Vector3 global =
        VectorOf(*direction.system, direction.components, direction.system->origin);
    const double sign = SignAlongNormal(in.model, shell, global);
    if (sign == 0.0) return AddTraction(in.model, shell, q, global, loads);
    return AddPressure(in.model, shell, {sign * q[0], sign * q[1], sign * q[2], sign * q[3]},
                       loads);
  }
  std::array<std::array<double, 4>, 3> parts{};
  for (std::size_t k = 0; k < CornersOf(row); ++k) {
    const Vector3 global =
        VectorOf(*direction.system, direction.components, PlaceOf(in.model, row.nodes[k]));
    for (std::size_t axis = 0; axis < 3; ++axis) parts[axis][k] = q[k] * global[axis];
  }
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Vector3 along{};
    along[axis] = 1.0;
    AddTraction(in.model, shell, parts[axis], along, loads);
  }
}

bool HasOpenCorner(const LoadDirection& direction, std::int32_t shell, const NastranLoadInput& in) {
  const ImportShell& row = in.model.shells[static_cast<std::size_t>(shell)];
  for (std::size_t k = 0; k < CornersOf(row); ++k) {
    const Vector3 place = PlaceOf(in.model, row.nodes[k]);
    if (HasOpenComponent(*direction.system, direction.components, place)) return true;
  }
  return false;
}

void TakePload4(const NastranCard& card, NastranLoadInput& in, SurfaceIndex& index,
                ImportCase& loads) {
  const NastranRow row = RowOf(in, card);
  CardNumbers list;
  const std::int64_t first = NeedInteger(row, 3);
  if (IsWord(FieldOf(in.deck, card, 8), "THRU")) {
    const std::int64_t last = NeedInteger(row, 9);
    list.ranges.emplace_back(std::min(first, last), std::max(first, last));
  } else {
    list.singles.push_back(first);  // G1 and G3 in fields 8 and 9 tell the faces of solids alone
  }
  std::array<double, 4> p{};  // at the grids in the element's order, which is that of the shell
  p[0] = RealField(row, 4, 0.0);
  for (std::size_t k = 1; k < 4; ++k) p[k] = RealField(row, 4 + k, p[0]);
  LoadDirection direction;
  if (!ReadDirection(card, in, direction)) return;
  bool isOpen = false;
  for (const std::int32_t shell : FindShells(card, list, in, index)) {
    if (direction.isVector) {
      isOpen = isOpen || HasOpenCorner(direction, shell, in);
      AddAlong(direction, p, shell, in, loads);
    } else {
      AddPressure(in.model, shell, p, loads);
    }
  }
  if (isOpen) ReportSetCard(card, Fate::Limited, OnAxisOfSystem, in);
}

void IndexCorners(const ImportModel& model, SurfaceIndex& index) {
  if (index.hasCorners) return;
  index.hasCorners = true;
  index.corners.reserve(model.shells.size());
  for (std::size_t i = 0; i < model.shells.size(); ++i) {
    ShellCorners row{model.shells[i].nodes, static_cast<std::int32_t>(i)};
    std::sort(row.nodes.begin(), row.nodes.end());
    index.corners.push_back(row);
  }
  std::stable_sort(index.corners.begin(), index.corners.end(),
                   [](const ShellCorners& a, const ShellCorners& b) { return a.nodes < b.nodes; });
}

// The first shell with these corners, in any order; -1: none. nodes: the last is -1 for three.
std::int32_t FindShellOf(std::array<std::int32_t, 4> nodes, const ImportModel& model,
                         SurfaceIndex& index) {
  IndexCorners(model, index);
  std::sort(nodes.begin(), nodes.end());
  const auto at =
      std::partition_point(index.corners.begin(), index.corners.end(),
                           [&nodes](const ShellCorners& row) { return row.nodes < nodes; });
  return at != index.corners.end() && at->nodes == nodes ? at->shell : -1;
}

void TakePload(const NastranCard& card, NastranLoadInput& in, SurfaceIndex& index,
               ImportCase& loads) {
  const NastranRow row = RowOf(in, card);
  const double p = NeedReal(row, 3);
  std::array<std::int32_t, 4> nodes{-1, -1, -1, -1};
  const std::size_t corners = IntegerField(row, 7, 0) == 0 ? 3 : 4;
  for (std::size_t k = 0; k < corners; ++k) {
    nodes[k] = FindNode(card, NeedInteger(row, 4 + k), in);
    if (nodes[k] < 0) return;
  }
  const std::int32_t shell = FindShellOf(nodes, in.model, index);
  if (shell < 0) {
    ReportSetCard(card, Fate::Limited, "no shell has its corners: forces at the nodes", in);
    return AddPatchPressure(in.model, nodes, p, loads);
  }
  const int sense = SenseOfCorners(in.model.shells[static_cast<std::size_t>(shell)], nodes);
  if (sense == 0) return ReportSetCard(card, Fate::Refused, "its nodes go across the shell", in);
  const double q = sense * p;
  AddPressure(in.model, shell, {q, q, q, q}, loads);
}

}  // namespace

void TakeSurfaceLoad(const NastranCard& card, NastranLoadInput& in, SurfaceIndex& index,
                     ImportCase& loads) {
  if (card.name == "PLOAD4") return TakePload4(card, in, index, loads);
  if (card.name == "PLOAD2") return TakePload2(card, in, index, loads);
  TakePload(card, in, index, loads);
}

}  // namespace kvx
