#include "mesh/nastran/nastran_nodal_loads.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace kvx {

namespace {

using korvex::Vector3;

constexpr std::string_view LoadIsZero = "its load is 0";

bool IsZero(const Vector3& v) { return v[0] == 0.0 && v[1] == 0.0 && v[2] == 0.0; }

// Whether a card says nothing of its vector: it should, so the card may be cut off.
bool HasNoVector(const NastranRow& row, std::size_t field) {
  return IsBlank(row, field) && IsBlank(row, field + 1) && IsBlank(row, field + 2);
}

constexpr std::string_view NoVector = "its vector is blank: no direction";

Vector3 ReadVector(const NastranRow& row, std::size_t field) {
  return {RealField(row, field, 0.0), RealField(row, field + 1, 0.0),
          RealField(row, field + 2, 0.0)};
}

// The direction that a card gives by nodes: from G1 to G2, or square to G1-G2 and G3-G4. Returns
// false where a node is missing or there is no direction.
bool FindDirection(const NastranCard& card, bool isCross, NastranLoadInput& in,
                   Vector3& direction) {
  std::array<Vector3, 4> places;
  for (std::size_t k = 0; k < (isCross ? 4U : 2U); ++k) {
    const std::int32_t node = FindNode(card, NeedInteger(RowOf(in, card), 5 + k), in);
    if (node < 0) return false;
    places[k] = PlaceOf(in.model, node);
  }
  direction = korvex::Subtract(places[1], places[0]);
  if (isCross) direction = korvex::Cross(direction, korvex::Subtract(places[3], places[2]));
  if (IsZero(direction)) {
    ReportSetCard(card, Fate::Refused, "its nodes give no direction", in);
    return false;
  }
  direction = korvex::Normalise(direction);
  return true;
}

// The load of a FORCE or MOMENT: its vector has any length, and its factor multiplies it.
bool FindVector(const NastranCard& card, std::int32_t node, NastranLoadInput& in, Vector3& load) {
  const NastranRow row = RowOf(in, card);
  const NastranSystem* system = FindSystem(card, IntegerField(row, 4, 0), in);
  if (system == nullptr) return false;
  const double factor = NeedReal(row, 5);
  if (HasNoVector(row, 6)) {
    ReportSetCard(card, Fate::Lost, NoVector, in);
    return false;
  }
  const Vector3 components = ReadVector(row, 6);
  const Vector3 vector = VectorOf(*system, components, PlaceOf(in.model, node));
  load = {factor * vector[0], factor * vector[1], factor * vector[2]};
  if (!IsZero(load) && HasOpenComponent(*system, components, PlaceOf(in.model, node))) {
    ReportSetCard(card, Fate::Limited, OnAxisOfSystem, in);
  }
  constexpr std::size_t FieldsOfCard = 7;
  ReportExcess(card, FieldsOfCard, in);
  return true;
}

}  // namespace

void TakeNodalLoad(const NastranCard& card, NastranLoadInput& in, ImportCase& loads) {
  const NastranRow row = RowOf(in, card);
  const bool isMoment = card.name.front() == 'M';
  const std::int32_t node = FindNode(card, NeedInteger(row, 3), in);
  if (node < 0) return;
  Vector3 load{};
  if (card.name.back() == '1' || card.name.back() == '2') {
    const double size = NeedReal(row, 4);
    if (!FindDirection(card, card.name.back() == '2', in, load)) return;
    for (double& each : load) each *= size;
  } else if (!FindVector(card, node, in, load)) {
    return;
  }
  if (IsZero(load)) return ReportSetCard(card, Fate::NoEffect, LoadIsZero, in);
  korvex::NodalForce force;
  force.node = node;
  for (std::size_t k = 0; k < 3; ++k) force.components[k + (isMoment ? 3 : 0)] = load[k];
  loads.forces.push_back(force);
}

void TakeGravity(const NastranCard& card, NastranLoadInput& in, ImportCase& loads) {
  const NastranRow row = RowOf(in, card);
  const NastranSystem* system = FindSystem(card, IntegerField(row, 3, 0), in);
  if (system == nullptr) return;
  if (system->kind != NastranSystemKind::Rectangular) {
    return ReportSetCard(card, Fate::Refused,
                         "its direction in a cylindrical or spherical system is not the same "
                         "everywhere",
                         in);
  }
  const double size = NeedReal(row, 4);
  if (HasNoVector(row, 5)) return ReportSetCard(card, Fate::Lost, NoVector, in);
  const Vector3 vector = VectorOf(*system, ReadVector(row, 5), system->origin);
  const Vector3 load{size * vector[0], size * vector[1], size * vector[2]};
  if (IsZero(load)) return ReportSetCard(card, Fate::NoEffect, LoadIsZero, in);
  loads.hasAcceleration = true;
  for (std::size_t k = 0; k < 3; ++k) loads.acceleration[k] += load[k];
}

}  // namespace kvx
