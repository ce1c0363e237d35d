#include "check/check_beams.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "check/check_numbers.h"
#include "check/describe.h"
#include "check/table_rows.h"

namespace kvx {

using korvex::Length;
using korvex::Section;
using korvex::Vector3;

namespace {

constexpr double Epsilon = std::numeric_limits<double>::epsilon();

// A length below this share of the coordinates and the offset is nothing but rounding: the detail
// model adds them, and six digits of the length must be left.
constexpr double NegligibleShare = 1e-10;

// A length below this share of the section's size is none: the plates of the detail model are then
// needles, and the solver's factorisation has no digits left for them.
constexpr double NoLengthShare = 1e-6;

double LargestOf(const Vector3& v) {
  return std::max({std::fabs(v[0]), std::fabs(v[1]), std::fabs(v[2])});
}

// Of the angle between two vectors. NaN where one has no length.
double SineBetween(const Vector3& p, const Vector3& q) {
  return Length(korvex::Cross(p, q)) / (Length(p) * Length(q));
}

std::string VectorText(const Vector3& v) {
  return "<" + NumberText(v[0]) + "," + NumberText(v[1]) + "," + NumberText(v[2]) + ">";
}

// The sizes of a beam's section: the largest, and the smallest edge of its detail model. 0 where
// its section is not known.
struct SectionSizes {
  double largest = 0.0;
  double smallest = 0.0;
};

SectionSizes SizesOf(const CheckedModel& model, std::int32_t row) {
  const korvex::ModelTables& tables = model.tables;
  const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[static_cast<std::size_t>(row)];
  if (!korvex::HasSectionTable(ref.BeamSecType)) return {};
  const Section table = SectionTableOf(ref.BeamSecType);
  if (!IsRow(tables, table, ref.BeamSecIndex) || IsDoubtful(model, table, ref.BeamSecIndex)) {
    return {};
  }
  const auto at = static_cast<std::size_t>(ref.BeamSecIndex);
  if (table == Section::CBeamSections) {
    const double R = tables.CBeamSections[at].R;
    return {R, R};
  }
  const korvex::BeamSection& s =
      table == Section::TBeamSections ? tables.TBeamSections[at] : tables.LBeamSections[at];
  if (s.Bf == 0.0 || s.Tf == 0.0) return {s.Hw, s.Hw / 3.0};
  return {std::max({s.Hw, s.Bf, s.Tf}), std::min(s.Hw / 3.0, s.Bf / 2.0)};
}

// A global axis that is far from the beam's: z, as webs stand upright, unless the beam is within 30
// degrees of it; then the one of x and y that is farther from it.
Vector3 ProposeVector(const Vector3& d) {
  const double length = Length(d);
  if (std::fabs(d[2]) < std::sqrt(0.75) * length) return {0.0, 0.0, 1.0};
  return std::fabs(d[0]) <= std::fabs(d[1]) ? Vector3{1.0, 0.0, 0.0} : Vector3{0.0, 1.0, 0.0};
}

void AddBeamFinding(const char* code, std::int32_t row, const std::string& fault,
                    const std::string& remedy, const CheckedModel& model, FindingList& list) {
  Finding finding = MakeRowFinding(code, model, Section::Beams, row);
  finding.message = DescribeElement(model, Section::Beams, row) + ": " + fault;
  finding.remedy = remedy;
  AddFinding(std::move(finding), list);
}

constexpr const char* AllNaN = "; all displacements would be NaN.";

// Names a beam whose length, or whose section, is lost beside the coordinates.
bool CheckLength(const CheckedModel& model, std::int32_t row, const Vector3& a, const Vector3& b,
                 FindingList& list) {
  const auto at = static_cast<std::size_t>(row);
  const double L = Length(korvex::Subtract(b, a));
  const SectionSizes sizes = SizesOf(model, row);
  const double place = std::max(LargestOf(a), LargestOf(b));
  const double Oz = std::fabs(model.tables.BeamSectionRefs[at].BeamSecOz);
  const double rounding = NegligibleShare * std::max(place, Oz);
  if (L <= std::max({SmallestLength, rounding, NoLengthShare * sizes.largest})) {
    const std::int32_t* nodes = &model.tables.BeamNodes[at * 2];
    AddBeamFinding("K102", row,
                   "it has no length, its nodes " + std::to_string(nodes[0]) + " and " +
                       std::to_string(nodes[1]) + " are at the same place" + AllNaN,
                   "Merge the two nodes and remove the beam, or mend a coordinate.", model, list);
    return true;
  }
  if (sizes.smallest > 0.0 && sizes.smallest <= NegligibleShare * std::max(place, Oz)) {
    AddBeamFinding("K110", row,
                   "its section is so small beside the coordinates that rounding leaves nothing "
                   "of it; the stresses of its detail model would be NaN.",
                   "Write section, offset and coordinates in the same unit.", model, list);
    return true;
  }
  return false;
}

// Names a vector of which the solver makes nothing, or another direction. taken: what it makes of
// it.
bool CheckVectorDigits(const CheckedModel& model, std::int32_t row, const Vector3& d,
                       const Vector3& taken, const std::string& use, FindingList& list) {
  const Vector3& v = model.tables.BeamProperties[static_cast<std::size_t>(row)].orientation;
  const bool isNone = !(Length(v) > 0.0) || !(Length(taken) > 0.0);
  if (!isNone && !(SineBetween(taken, v) > NearlyParallelSine)) return false;
  std::string fault = " is so short that its digits are lost beside the coordinates";
  if (LargestOf(v) == 0.0) fault = " is zero";
  const bool hasAxes = !isNone && Length(korvex::Cross(taken, d)) > 0.0;
  const std::string makes = "; the solver would take " + VectorText(taken) + " instead.";
  AddBeamFinding("K103", row,
                 "orientation vector " + VectorText(v) + fault + (hasAxes ? makes : AllNaN), use,
                 model, list);
  return true;
}

// Names a beam whose orientation vector does not give axes. Returns whether it has none.
bool CheckOrientation(const CheckedModel& model, std::int32_t row, const Vector3& a,
                      const Vector3& b, FindingList& list) {
  const Vector3& v = model.tables.BeamProperties[static_cast<std::size_t>(row)].orientation;
  const Vector3 d = korvex::Subtract(b, a);
  Vector3 ref{};
  for (std::size_t i = 0; i < 3; ++i) ref[i] = a[i] + v[i];
  const Vector3 taken = korvex::Subtract(ref, a);  // the solver's: without digits lost at `a`
  const std::string use = "Use " + VectorText(ProposeVector(d)) + ".";
  if (CheckVectorDigits(model, row, d, taken, use, list)) return true;
  const double sine = SineBetween(taken, d);
  // What rounding makes of the sine of a vector along the axis: of the cross product, of the axis,
  // which is a difference of coordinates, and of the vector.
  const double place = std::max(LargestOf(a), LargestOf(b));
  const double rounding = 4.0 * Epsilon * (1.0 + place / Length(d)) + 2.0 * SineBetween(taken, v);
  if (!(sine > rounding)) {
    AddBeamFinding("K104", row,
                   "orientation vector " + VectorText(v) + " is parallel to its axis" + AllNaN, use,
                   model, list);
    return true;
  }
  if (sine < NearlyParallelSine) {
    AddBeamFinding("K105", row,
                   "orientation vector " + VectorText(v) + " is nearly parallel to its axis (" +
                       NumberText(std::asin(sine) * 180.0 / std::acos(-1.0)) +
                       " degrees); the direction of the web is left to the last digits.",
                   use, model, list);
  }
  return false;
}

}  // namespace

void CheckBeams(CheckedModel& model, FindingList& list) {
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::Beams); ++row) {
    ElementState& state = StateOf(model, Section::Beams, row);
    if (state != ElementState::Sound || IsDoubtful(model, Section::Beams, row)) continue;
    const ElementNodes beam = NodesOf(model.tables, Section::Beams, row);
    const Vector3 a = PlaceOf(model.tables, beam.nodes[0]);
    const Vector3 b = PlaceOf(model.tables, beam.nodes[1]);
    if (CheckLength(model, row, a, b, list) || CheckOrientation(model, row, a, b, list)) {
      state = ElementState::Broken;
    }
  }
}

}  // namespace kvx
