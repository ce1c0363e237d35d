#include "mesh/abaqus/abaqus_transforms.h"

#include <string>

#include "mesh/abaqus/abaqus_data_line.h"
#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_placing.h"
#include "mesh/abaqus/abaqus_sets.h"
#include "mesh/abaqus/abaqus_surplus.h"

namespace kvx {

namespace {

using korvex::Vector3;

constexpr AbaqusAxes GlobalAxes{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};

// *TRANSFORM: R has points on x' and in the plane x'y', seen from the origin; C and S two points of
// the polar axis, C's first one is the origin of the radius.
AbaqusTransform ReadTransform(AbaqusImport& import, const AbaqusKeyword& keyword) {
  constexpr std::array<std::string_view, 2> known{"NSET", "TYPE"};
  ReportOtherParameters(import, keyword, known);
  AbaqusTransform transform;
  const std::string type = UpperWords(ParameterText(import.deck, keyword, "TYPE"));
  if (!type.empty()) transform.kind = type[0];
  std::array<double, 6> values{};
  TakeDataLine(import, keyword, 0, values);
  ReportSurplusOfLine(import, keyword, 0, values.size());
  ReportSurplusLines(import, keyword, 1);
  if (transform.kind == 'R') {
    transform.isSound =
        MakeAxes(TurnDirection(import, keyword, VectorAt(values, 0)),
                 TurnDirection(import, keyword, VectorAt(values, 3)), transform.axes);
    return transform;
  }
  transform.origin = PlacePoint(import, keyword, VectorAt(values, 0));
  const Vector3 end = PlacePoint(import, keyword, VectorAt(values, 3));
  const Vector3 along = korvex::Subtract(end, transform.origin);
  const bool hasLength = korvex::Length(along) > 0.0;
  if (hasLength) transform.axes[2] = korvex::Normalise(along);
  transform.isSound = hasLength && (transform.kind == 'C' || transform.kind == 'S');
  return transform;
}

// Radial, tangential and axial direction of a cylindrical system; radial, circumferential and
// meridional of a spherical one.
bool PolarAxes(const AbaqusTransform& transform, const Vector3& at, AbaqusAxes& axes) {
  const Vector3 out = korvex::Subtract(at, transform.origin);
  const Vector3 around = korvex::Cross(transform.axes[2], out);
  if (!(korvex::Length(around) > ParallelShare * korvex::Length(out))) return false;
  axes[1] = korvex::Normalise(around);
  if (transform.kind == 'C') {
    axes[2] = transform.axes[2];
    axes[0] = korvex::Cross(axes[1], axes[2]);
  } else {
    axes[0] = korvex::Normalise(out);
    axes[2] = korvex::Cross(axes[0], axes[1]);
  }
  return true;
}

}  // namespace

void TakeAbaqusTransforms(AbaqusImport& import, AbaqusTransforms& transforms) {
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart || keyword.name != "TRANSFORM") continue;
    const AbaqusTransform transform = ReadTransform(import, keyword);
    const AbaqusParameter* nset = FindParameter(import.deck, keyword, "NSET");
    const std::string_view name = nset == nullptr ? std::string_view{} : nset->value;
    const AbaqusTargets targets = FindTargets(import, false, name, keyword);
    if (!transform.isSound || targets.set < 0) {
      const std::string_view reason =
          transform.isSound ? "its node set does not exist" : "its points give no axes";
      ReportCard("*TRANSFORM", Fate::Refused, reason, keyword.place, name, import.report);
      continue;
    }
    const auto row = static_cast<std::int32_t>(transforms.transforms.size());
    transforms.transforms.push_back(transform);
    SpendEntries(import, CountTargets(import, targets), keyword.place);
    for (std::size_t k = 0; k < CountTargets(import, targets); ++k) {
      transforms.ofNode[TargetAt(import, targets, k)] = row;
    }
  }
}

bool AxesOfNode(const ImportModel& model, const AbaqusTransforms& transforms, std::int32_t node,
                AbaqusAxes& axes) {
  axes = GlobalAxes;
  const auto at = transforms.ofNode.find(node);
  if (at == transforms.ofNode.end()) return true;
  const AbaqusTransform& transform = transforms.transforms[static_cast<std::size_t>(at->second)];
  if (transform.kind != 'R') return PolarAxes(transform, PlaceOf(model, node), axes);
  axes = transform.axes;
  return true;
}

}  // namespace kvx
