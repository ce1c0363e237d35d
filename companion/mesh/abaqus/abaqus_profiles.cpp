#include "mesh/abaqus/abaqus_profiles.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace kvx {

namespace {

// A bar this compact or more has clearly less torsional stiffness than the thin strip of its sides
// that the model makes of it: b t^3 / 3 instead of 0.263 b t^3 for b = 3 t (Roark's formulas).
constexpr double CompactBar = 3.0;

constexpr std::string_view CompactBarReason =
    "a compact bar: the torsional stiffness here is that of a thin strip, which is larger";
// Told, as manuals draw this section and do not describe it in words.
constexpr std::string_view TypeLReason =
    "SECTION=L: legs along n1 and n2, the node where their middle lines meet";
constexpr std::string_view TypeTReason = "SECTION=T is read as b, h, l, tf, tw";
// The product of inertia is not zero about these axes.
constexpr std::string_view PrincipalAxesReason =
    "SECTION=L: the axes along its legs are taken as principal axes";
constexpr std::string_view ShearCentreReason =
    "a section with one flange: it twists about its centroid here, not about its shear centre";

bool ArePositive(const AbaqusProfileData& data, std::size_t count) {
  for (std::size_t k = 0; k < count; ++k) {
    if (!(data.values[k] > 0.0) || !std::isfinite(data.values[k])) return false;
  }
  return true;
}

AbaqusProfile Lacking(const AbaqusProfileData& data, const std::string& reason) {
  AbaqusProfile profile;
  profile.lacks = "*BEAM SECTION, SECTION=" + std::string(data.type) + ": " + reason;
  return profile;
}

constexpr const char* BadSizes = "its dimensions make no section";

// A profile of plates whose web stands along (web1 n1 + web2 n2).
AbaqusProfile Plates(std::int32_t type, const korvex::BeamSection& plates, double web1, double web2,
                     double BeamSecOz) {
  AbaqusProfile profile;
  profile.isTaken = true;
  profile.section.type = type;
  profile.section.plates = plates;
  profile.web1 = web1;
  profile.web2 = web2;
  profile.BeamSecOz = BeamSecOz;
  return profile;
}

// A bar: the longer side is the web. Its centre stands at (-offset1 a, -offset2 b).
AbaqusProfile PlaceRect(const AbaqusProfileData& data) {
  if (data.count < 2 || !ArePositive(data, 2)) return Lacking(data, BadSizes);
  const double a = data.values[0];
  const double b = data.values[1];
  const bool standsAlong2 = b >= a;
  const double Hw = standsAlong2 ? b : a;
  const double Tw = standsAlong2 ? a : b;
  const double along = standsAlong2 ? data.offset2 : data.offset1;
  const double aside = standsAlong2 ? data.offset1 : data.offset2;
  AbaqusProfile profile = Plates(korvex::BeamSecTypeT, {Hw, Tw, 0.0, 0.0}, standsAlong2 ? 0.0 : 1.0,
                                 standsAlong2 ? 1.0 : 0.0, -Hw / 2.0 - along * Hw);
  profile.isAside = aside != 0.0;
  if (Hw < CompactBar * Tw) profile.limited.push_back(CompactBarReason);
  return profile;
}

// A tube is the same all round: its z is laid along its offset.
AbaqusProfile PlacePipe(const AbaqusProfileData& data) {
  const double r = data.values[0];
  const double t = data.values[1];
  if (data.count < 2 || !ArePositive(data, 2) || t > r) return Lacking(data, BadSizes);
  AbaqusProfile profile;
  profile.isTaken = true;
  profile.section.type = korvex::BeamSecTypeC;
  profile.section.tube = {r - t / 2.0, t};
  const double off = std::sqrt(data.offset1 * data.offset1 + data.offset2 * data.offset2);
  if (off > 0.0) {
    profile.web1 = -data.offset1 / off;
    profile.web2 = -data.offset2 / off;
    profile.BeamSecOz = off * 2.0 * r;
  }
  return profile;
}

// With both flanges it is no section of the model. With the upper one the web begins l below the
// node and stands along +n2; with the lower one it hangs from h - l above it along -n2.
AbaqusProfile PlaceI(const AbaqusProfileData& data) {
  const auto& [l, h, b1, b2, t1, t2, t3, unused] = data.values;
  static_cast<void>(unused);
  if (data.count < 7) return Lacking(data, BadSizes);
  const bool hasLower = b1 != 0.0 && t1 != 0.0;
  const bool hasUpper = b2 != 0.0 && t2 != 0.0;
  if (hasLower && hasUpper) return Lacking(data, "there is no section with two flanges");
  const double Bf = hasLower ? b1 : hasUpper ? b2 : 0.0;
  const double Tf = hasLower ? t1 : hasUpper ? t2 : 0.0;
  const bool isSound = std::isfinite(l) && std::isfinite(h) && Bf >= 0.0 && Tf >= 0.0 &&
                       std::isfinite(Bf) && h > Tf && t3 > 0.0 && std::isfinite(t3);
  if (!isSound) return Lacking(data, BadSizes);
  AbaqusProfile profile = Plates(korvex::BeamSecTypeT, {h - Tf, t3, Bf, Tf}, 0.0,
                                 hasLower ? -1.0 : 1.0, hasLower ? l - h : -l);
  if (hasLower || hasUpper) profile.limited.push_back(ShearCentreReason);
  profile.isAside = data.offset1 != 0.0 || data.offset2 != 0.0;
  return profile;
}

AbaqusProfile PlaceT(const AbaqusProfileData& data) {
  const auto& [b, h, l, tf, tw, u1, u2, u3] = data.values;
  static_cast<void>(u1);
  static_cast<void>(u2);
  static_cast<void>(u3);
  const bool isSound = data.count >= 5 && b > 0.0 && tf > 0.0 && tw > 0.0 && h > tf &&
                       std::isfinite(b) && std::isfinite(h) && std::isfinite(l) &&
                       std::isfinite(tw);
  if (!isSound) return Lacking(data, BadSizes);
  AbaqusProfile profile = Plates(korvex::BeamSecTypeT, {h - tf, tw, b, tf}, 0.0, 1.0, -l);
  profile.limited = {TypeTReason, ShearCentreReason};
  profile.isAside = data.offset1 != 0.0 || data.offset2 != 0.0;
  return profile;
}

// The longer leg is the web, as the model takes its shear deformation into account. The web's free
// edge is its tip, the other leg the flange on its far end, so z points from the tip to the corner:
//   leg along n2 as web: z = -n2, y = z x t = -n1; the flange towards +n1 = -y is mirrored
//   leg along n1 as web: z = -n1, y = z x t = +n2; the flange towards +n2 = +y is not
AbaqusProfile PlaceL(const AbaqusProfileData& data) {
  const auto& [a, b, t1, t2, u1, u2, u3, u4] = data.values;
  static_cast<void>(u1);
  static_cast<void>(u2);
  static_cast<void>(u3);
  static_cast<void>(u4);
  if (data.count < 4 || !ArePositive(data, 4) || t1 >= b || t2 >= a) return Lacking(data, BadSizes);
  const bool standsAlong2 = b >= a;
  AbaqusProfile profile =
      standsAlong2 ? Plates(korvex::BeamSecTypeL, {b - t1, t2, a, t1}, 0.0, -1.0, -(b - t1 / 2.0))
                   : Plates(korvex::BeamSecTypeL, {a - t2, t1, b, t2}, -1.0, 0.0, -(a - t2 / 2.0));
  profile.BeamSecMirrored = standsAlong2;
  profile.limited = {TypeLReason, PrincipalAxesReason, ShearCentreReason};
  profile.isAside = data.offset1 != 0.0 || data.offset2 != 0.0;
  return profile;
}

struct PlacedType {
  std::string_view type;
  AbaqusProfile (*place)(const AbaqusProfileData& data);
  std::size_t valueCount;
};
constexpr PlacedType PlacedTypes[] = {{"RECT", PlaceRect, 2},
                                      {"PIPE", PlacePipe, 2},
                                      {"THICK PIPE", PlacePipe, 2},
                                      {"THICKPIPE", PlacePipe, 2},
                                      {"I", PlaceI, 7},
                                      {"T", PlaceT, 5},
                                      {"L", PlaceL, 4}};

}  // namespace

bool IsPlacedProfile(std::string_view type) {
  return std::any_of(std::begin(PlacedTypes), std::end(PlacedTypes),
                     [&](const PlacedType& placed) { return placed.type == type; });
}

std::size_t CountProfileValues(std::string_view type) {
  for (const PlacedType& placed : PlacedTypes) {
    if (placed.type == type) return placed.valueCount;
  }
  return 0;
}

AbaqusProfile PlaceProfile(const AbaqusProfileData& data) {
  for (const PlacedType& placed : PlacedTypes) {
    if (placed.type == data.type) return placed.place(data);
  }
  if (data.type == "CIRC") return Lacking(data, "there is no solid round section");
  return Lacking(data, "there is no such section");
}

}  // namespace kvx
