// The points of a system: A its origin, B on its z axis, C in its x-z plane (quick reference guide,
// CORD2R). Angles are degrees.
#include "mesh/nastran/nastran_systems.h"

#include <cmath>
#include <string>
#include <utility>

#include "mesh/nastran/nastran_fields.h"
#include "mesh/nastran/nastran_repeats.h"
#include "mesh/sine_cosine.h"

namespace kvx {

namespace {

using korvex::Cross;
using korvex::Length;
using korvex::Normalise;
using korvex::Subtract;
using korvex::Vector3;

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

// Components along the system's straight axes -> global.
Vector3 AlongAxes(const NastranSystem& system, const Vector3& v) {
  Vector3 sum{};
  for (std::size_t i = 0; i < 3; ++i) {
    sum[i] = system.axes[0][i] * v[0] + system.axes[1][i] * v[1] + system.axes[2][i] * v[2];
  }
  return sum;
}

// cosine and sine of the angle of (x, y); on the axis the angle is 0.
SineCosine AngleOf(double x, double y) {
  const double radius = std::sqrt(x * x + y * y);
  if (radius == 0.0) return {0.0, 1.0};
  return {y / radius, x / radius};
}

// Off the axis, or off the origin, by no more than the rounding of the points that it is the
// difference of.
bool IsRounding(double distance, const NastranSystem& system, const Vector3& point) {
  constexpr double Share = 1e-12;  // some thousand times the last bit of a double
  return distance <= Share * (Length(point) + Length(system.origin));
}

// Makes the axes of the three points. Returns false where they lie on one line.
bool MakeSystem(const std::array<Vector3, 3>& points, NastranSystem& system) {
  constexpr double LeastSine = 1e-9;  // of the angle at A: below it the x axis is rounding
  const Vector3 z = Subtract(points[1], points[0]), toC = Subtract(points[2], points[0]);
  const Vector3 y = Cross(z, toC);
  if (!(Length(y) > LeastSine * Length(z) * Length(toC))) return false;
  system.origin = points[0];
  system.axes[2] = Normalise(z);
  system.axes[1] = Normalise(y);
  system.axes[0] = Cross(system.axes[1], system.axes[2]);
  return true;
}

NastranSystemKind KindOfName(std::string_view name) {
  if (name.back() == 'C') return NastranSystemKind::Cylindrical;
  return name.back() == 'S' ? NastranSystemKind::Spherical : NastranSystemKind::Rectangular;
}

void AddSystem(const NastranDeck& deck, const SystemCard& system, SystemTable& table,
               ImportReport& report) {
  const auto [at, isNew] = table.rows.emplace(system.number, table.cards.size());
  if (isNew) {
    table.cards.push_back(system);
    return;
  }
  ReportRepeated(deck, deck.cards[table.cards[at->second].card], deck.cards[system.card],
                 system.number, report);
}

void RefuseSystem(const NastranDeck& deck, SystemCard& system, std::string_view reason,
                  ImportReport& report) {
  const NastranCard& card = deck.cards[system.card];
  system.state = SystemState::Failed;
  ReportCard(card.name, Fate::Refused, reason, card.place, CardText(card.name, system.number),
             report);
}

// The systems that a system needs first: of CORD2 its reference, of CORD1 those of its nodes.
// Returns false where a node is missing.
bool NeededSystems(const SystemCard& system, const GridTable& grids,
                   std::array<std::int64_t, 3>& needed) {
  needed = {system.reference, 0, 0};
  if (!system.isOnNodes) return true;
  for (std::size_t i = 0; i < 3; ++i) {
    const auto row = grids.rows->find(system.nodes[i]);
    if (row == grids.rows->end()) return false;
    needed[i] = grids.grids[static_cast<std::size_t>(row->second)].system;
  }
  return true;
}

// The three points in global axes; all systems that they need are there.
std::array<Vector3, 3> GlobalPoints(const SystemCard& system, const GridTable& grids,
                                    const NastranSystems& systems) {
  std::array<Vector3, 3> points{};
  for (std::size_t i = 0; i < 3; ++i) {
    if (!system.isOnNodes) {
      points[i] = PointOf(systems.systems.at(system.reference), system.points[i]);
      continue;
    }
    const auto row = static_cast<std::size_t>(grids.rows->at(system.nodes[i]));
    const GridPoint& grid = grids.grids[row];
    points[i] = PointOf(systems.systems.at(grid.system), grid.coordinates);
  }
  return points;
}

// What became of looking at a system: whether it is settled, or which one has to be settled first.
struct Step {
  bool isSettled = true;
  std::size_t first = 0;  // row of the table's cards
};

Step StepSystem(const NastranDeck& deck, const GridTable& grids, std::size_t row,
                SystemTable& table, NastranSystems& systems, ImportReport& report) {
  SystemCard& system = table.cards[row];
  std::array<std::int64_t, 3> needed{};
  if (!NeededSystems(system, grids, needed)) {
    RefuseSystem(deck, system, "a node that it stands on does not exist", report);
    return {};
  }
  for (const std::int64_t number : needed) {
    if (systems.systems.count(number) > 0) continue;
    const auto at = table.rows.find(number);
    if (at == table.rows.end() || table.cards[at->second].state == SystemState::Failed) {
      RefuseSystem(deck, system, "a coordinate system that it stands in cannot be had", report);
      return {};
    }
    if (table.cards[at->second].state == SystemState::InWork) {
      RefuseSystem(deck, system, "it stands in itself, by way of others", report);
      return {};
    }
    return {false, at->second};
  }
  NastranSystem made;
  made.kind = system.kind;
  if (!MakeSystem(GlobalPoints(system, grids, systems), made)) {
    RefuseSystem(deck, system, "its three points lie on one line", report);
    return {};
  }
  system.state = SystemState::Resolved;
  systems.systems.emplace(system.number, made);
  return {};
}

}  // namespace

Vector3 PointOf(const NastranSystem& system, const Vector3& coordinates) {
  Vector3 local = coordinates;
  if (system.kind == NastranSystemKind::Cylindrical) {
    const SineCosine turn = SineCosineOfDegrees(coordinates[1]);
    local = {coordinates[0] * turn.cosine, coordinates[0] * turn.sine, coordinates[2]};
  } else if (system.kind == NastranSystemKind::Spherical) {
    const SineCosine tilt = SineCosineOfDegrees(coordinates[1]);
    const SineCosine turn = SineCosineOfDegrees(coordinates[2]);
    const double radius = coordinates[0] * tilt.sine;
    local = {radius * turn.cosine, radius * turn.sine, coordinates[0] * tilt.cosine};
  }
  const Vector3 v = AlongAxes(system, local);
  return {system.origin[0] + v[0], system.origin[1] + v[1], system.origin[2] + v[2]};
}

Vector3 VectorOf(const NastranSystem& system, const Vector3& components, const Vector3& point) {
  if (system.kind == NastranSystemKind::Rectangular) return AlongAxes(system, components);
  const Vector3 from = Subtract(point, system.origin);
  const double x = Dot(from, system.axes[0]), y = Dot(from, system.axes[1]);
  const double z = Dot(from, system.axes[2]);
  SineCosine turn = AngleOf(x, y);
  if (IsRounding(std::sqrt(x * x + y * y), system, point)) turn = SineCosine{};
  double radial = components[0], across = components[1], axial = components[2];
  if (system.kind == NastranSystemKind::Spherical) {
    // Along the radius, against the axis round the equator's poles, round the axis.
    const SineCosine tilt = AngleOf(z, std::sqrt(x * x + y * y));
    radial = components[0] * tilt.sine + components[1] * tilt.cosine;
    axial = components[0] * tilt.cosine - components[1] * tilt.sine;
    across = components[2];
  }
  return AlongAxes(system, {radial * turn.cosine - across * turn.sine,
                            radial * turn.sine + across * turn.cosine, axial});
}

std::uint8_t OpenComponents(const NastranSystem& system, const Vector3& point) {
  constexpr std::uint8_t OnAxisOfCylinder = 3, OnAxisOfSphere = 6, InOriginOfSphere = 7;
  if (system.kind == NastranSystemKind::Rectangular) return 0;
  const Vector3 from = Subtract(point, system.origin);
  const double x = Dot(from, system.axes[0]), y = Dot(from, system.axes[1]);
  if (!IsRounding(std::sqrt(x * x + y * y), system, point)) return 0;
  if (system.kind == NastranSystemKind::Cylindrical) return OnAxisOfCylinder;
  return IsRounding(Length(from), system, point) ? InOriginOfSphere : OnAxisOfSphere;
}

bool HasOpenComponent(const NastranSystem& system, const Vector3& components,
                      const Vector3& point) {
  const unsigned open = OpenComponents(system, point);
  for (unsigned k = 0; k < 3; ++k) {
    if ((open >> k & 1U) != 0 && components[k] != 0.0) return true;
  }
  return false;
}

void ReadSystemCard(const NastranDeck& deck, std::size_t card, SystemTable& table,
                    ImportReport& report) {
  const NastranCard& text = deck.cards[card];
  const NastranRow row{deck, text, report};
  SystemCard system;
  system.card = card;
  system.kind = KindOfName(text.name);
  system.isOnNodes = text.name[4] == '1';  // CORD1R
  system.number = NeedNumber(row, 2);
  if (!system.isOnNodes) {
    system.reference = IntegerField(row, 3, 0);
    system.points[0] = {RealField(row, 4, 0.0), RealField(row, 5, 0.0), RealField(row, 6, 0.0)};
    system.points[1] = {RealField(row, 7, 0.0), RealField(row, 8, 0.0), RealField(row, 9, 0.0)};
    system.points[2] = {RealField(row, 12, 0.0), RealField(row, 13, 0.0), RealField(row, 14, 0.0)};
    AddSystem(deck, system, table, report);
    return;
  }
  system.nodes = {NeedNumber(row, 3), NeedNumber(row, 4), NeedNumber(row, 5)};
  AddSystem(deck, system, table, report);
  if (IsBlank(row, 6)) return;
  system.number = NeedNumber(row, 6);
  system.nodes = {NeedNumber(row, 7), NeedNumber(row, 8), NeedNumber(row, 9)};
  AddSystem(deck, system, table, report);
}

void ResolveSystems(const NastranDeck& deck, const GridTable& grids, SystemTable& table,
                    NastranSystems& systems, ImportReport& report) {
  systems.systems.emplace(0, NastranSystem{});
  std::vector<std::size_t> waiting;  // each waits for the one behind it
  for (std::size_t first = 0; first < table.cards.size(); ++first) {
    if (table.cards[first].state != SystemState::Unresolved) continue;
    waiting.push_back(first);
    while (!waiting.empty()) {
      const std::size_t row = waiting.back();
      table.cards[row].state = SystemState::InWork;
      const Step step = StepSystem(deck, grids, row, table, systems, report);
      if (step.isSettled) {
        waiting.pop_back();
      } else {
        waiting.push_back(step.first);
      }
    }
  }
}

}  // namespace kvx
