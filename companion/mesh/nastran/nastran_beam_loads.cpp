#include "mesh/nastran/nastran_beam_loads.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "mesh/equivalent_loads.h"

namespace kvx {

namespace {

using korvex::Vector3;

// A place that is off an end by less than this part of the length is the end: lengths in fields of
// eight characters have some six digits.
constexpr double AtEnd = 1e-5;

// A load that is off the axis by less than this angle has no projected length.
constexpr double AlongAxis = 1e-9;

// An arm that is less, for each length of the beam, is rounding of turned axes.
constexpr double NoOffset = 1e-9;

// What TYPE and SCALE say: "FYE", "FRPR".
struct LoadKind {
  bool isMoment = false;
  std::size_t axis = 0;
  bool isOfElement = false;  // along the element's axes, else the global ones
  bool isProjected = false;  // per length across the load
  bool isFraction = false;   // places are parts of the length
};

bool ReadKind(const NastranCard& card, NastranLoadInput& in, LoadKind& kind) {
  const std::string_view type = FieldOf(in.deck, card, 4), scale = FieldOf(in.deck, card, 5);
  const bool isKnown = (type.size() == 2 || (type.size() == 3 && type[2] == 'E')) &&
                       (type[0] == 'F' || type[0] == 'M') && type[1] >= 'X' && type[1] <= 'Z';
  const bool hasScale = scale == "LE" || scale == "FR" || scale == "LEPR" || scale == "FRPR";
  if (!isKnown || !hasScale) {
    ReportSetCard(card, Fate::Refused, "its type or scale is none of the format's", in);
    return false;
  }
  kind.isMoment = type[0] == 'M';
  kind.axis = static_cast<std::size_t>(type[1] - 'X');
  kind.isOfElement = type.size() == 3;
  kind.isFraction = scale[0] == 'F';
  kind.isProjected = scale.size() == 4;
  if (kind.isMoment && kind.isProjected) {
    ReportSetCard(card, Fate::Lost, "moments per projected length are not taken over", in);
    return false;
  }
  return true;
}

// The axis that a load acts along. The deck's y is the part of its own orientation vector across
// the bar; the local axes of a model file may be turned against it, as a section needs it.
bool FindAxis(const NastranCard& card, const LoadKind& kind, std::int32_t beam,
              NastranLoadInput& in, Vector3& axis) {
  axis = {};
  axis[kind.axis] = 1.0;
  if (!kind.isOfElement) return true;
  ImportBeam turned = in.model.beams[static_cast<std::size_t>(beam)];
  turned.orientation = in.systems.beamVectors[static_cast<std::size_t>(beam)];
  const auto [x, y, z] = BeamAxes(in.model, turned);
  // With the deck's vector as orientation, z is the deck's y, and -y the deck's z.
  axis = kind.axis == 0 ? x : kind.axis == 1 ? z : Vector3{-y[0], -y[1], -y[2]};
  if (korvex::Length(axis) > 0.0) return true;
  ReportSetCard(card, Fate::Refused, "its element has no axes", in);
  return false;
}

// A place along the element as a part of its length, held to the ends. false: it is outside.
bool ToPart(double place, double length, double& part) {
  part = place / length;
  if (!(part > -AtEnd && part < 1.0 + AtEnd)) return false;
  if (part < AtEnd) part = 0.0;
  if (part > 1.0 - AtEnd) part = 1.0;
  return true;
}

// Fills the part of the beam and the sizes at its ends.
bool ReadSpan(const NastranCard& card, const LoadKind& kind, double length, NastranLoadInput& in,
              BeamSpanLoad& span) {
  const NastranRow row = RowOf(in, card);
  const double x1 = NeedReal(row, 6), x2 = RealField(row, 8, x1);
  const double whole = kind.isFraction ? 1.0 : length;
  if (!ToPart(x1, whole, span.from) || !ToPart(x2, whole, span.to) || x2 < x1) {
    ReportSetCard(card, Fate::Refused, "it lies outside its element", in);
    return false;
  }
  if (x2 > x1 && span.to == span.from) {
    ReportSetCard(card, Fate::Refused, "the part that it acts on has no length", in);
    return false;
  }
  span.qFrom = NeedReal(row, 7);
  span.qTo = RealField(row, 9, span.qFrom);
  if (x2 > x1 && IsBlank(row, 9)) {
    ReportSetCard(card, Fate::Limited, "its second value is blank: taken as the first", in);
  }
  return true;
}

// Loads per projected length: less per length of the beam, the more it runs along the load.
bool Project(const NastranCard& card, const Vector3& axis, const Vector3& direction,
             NastranLoadInput& in, BeamSpanLoad& span) {
  if (span.from == span.to) return true;
  const double sine = korvex::Length(korvex::Cross(axis, direction));
  if (sine <= AlongAxis) {
    ReportSetCard(card, Fate::NoEffect, "along its element the projected length is 0", in);
    return false;
  }
  span.qFrom *= sine;
  span.qTo *= sine;
  return true;
}

// Tells what nodal loads cannot show. At an end a single load is a nodal load.
void ReportNodalLoads(const NastranCard& card, const BeamSpanLoad& span, NastranLoadInput& in) {
  if (span.from == span.to) {
    if (span.from == 0.0 || span.from == 1.0) return;
    return ReportSetCard(card, Fate::Limited,
                         "becomes loads at both nodes: the section forces between them lack it",
                         in);
  }
  ReportSetCard(card, Fate::Limited,
                "is no line load along the web on the whole length and becomes loads at both "
                "nodes: the section forces between them lack it",
                in);
}

// Adds a load on the element's line. A model file has line loads on the line of the nodes: off it,
// a force has a moment, too. Returns whether all of it is a row.
bool AddOnLine(const BeamSpanLoad& span, double length, const NastranLoadInput& in,
               ImportCase& loads) {
  const bool isRow = AddBeamLoad(in.model, span, loads);
  const Vector3& offset = in.systems.beamOffsets[static_cast<std::size_t>(span.beam)];
  const Vector3 arm = korvex::Cross(offset, span.direction);
  const double size = korvex::Length(arm);
  if (span.isMoment || size <= NoOffset * length) return isRow;
  BeamSpanLoad moment = span;
  moment.isMoment = true;
  moment.direction = korvex::Normalise(arm);
  moment.qFrom *= size;
  moment.qTo *= size;
  AddBeamLoad(in.model, moment, loads);
  return false;
}

std::int32_t FindBeam(const NastranCard& card, NastranLoadInput& in) {
  const std::int64_t number = NeedInteger(RowOf(in, card), 3);
  const auto at = in.numbers.beams.find(number);
  if (at != in.numbers.beams.end()) return at->second;
  ReportSetCard(card, Fate::Refused,
                in.numbers.shells.count(number) > 0 ? "its element is no bar or beam"
                                                    : "it names a bar or beam that does not exist",
                in);
  return -1;
}

}  // namespace

void TakeBeamLoad(const NastranCard& card, NastranLoadInput& in, ImportCase& loads) {
  LoadKind kind;
  BeamSpanLoad span;
  span.beam = FindBeam(card, in);
  if (span.beam < 0 || !ReadKind(card, in, kind)) return;
  const ImportBeam& beam = in.model.beams[static_cast<std::size_t>(span.beam)];
  const Vector3 d =
      korvex::Subtract(PlaceOf(in.model, beam.nodes[1]), PlaceOf(in.model, beam.nodes[0]));
  const double length = korvex::Length(d);
  if (!(length > 0.0)) {
    return ReportSetCard(card, Fate::Refused, "its element has no length", in);
  }
  if (!FindAxis(card, kind, span.beam, in, span.direction)) return;
  span.isMoment = kind.isMoment;
  if (!ReadSpan(card, kind, length, in, span)) return;
  if (kind.isProjected && !Project(card, korvex::Normalise(d), span.direction, in, span)) return;
  if (!AddOnLine(span, length, in, loads)) ReportNodalLoads(card, span, in);
}

}  // namespace kvx
