#include "mesh/abaqus/abaqus_placing.h"

#include <array>

#include "mesh/abaqus/abaqus_axes.h"
#include "mesh/abaqus/abaqus_data_line.h"
#include "mesh/sine_cosine.h"

namespace kvx {

namespace {

using korvex::Vector3;

// x' = R (x - a) + a about the line from a to b (Rodrigues' formula), as the data lines say.
void TakePlacing(AbaqusImport& import, const AbaqusKeyword& keyword) {
  AbaqusPlacing& placing = import.mesh.placing;
  std::array<double, 7> first{};
  TakeDataLine(import, keyword, 0, first);
  placing.shift = VectorAt(first, 0);
  std::array<double, 7> second{};
  TakeDataLine(import, keyword, 1, second);
  placing.isPlaced = keyword.lineCount > 0;
  if (second[6] == 0.0) return;
  placing.centre = VectorAt(second, 0);
  const Vector3 along = korvex::Subtract(VectorAt(second, 3), placing.centre);
  if (!(korvex::Length(along) > 0.0)) {
    StopImport(import.report, keyword.place, "the axis of the instance's rotation has no length");
  }
  const Vector3 axis = korvex::Normalise(along);
  const SineCosine turn = SineCosineOfDegrees(second[6]);
  for (std::size_t k = 0; k < 3; ++k) {
    Vector3 unit{};
    unit[k] = 1.0;
    placing.rotation[k] =
        Add(Add(Scale(turn.cosine, unit), Scale(turn.sine, korvex::Cross(axis, unit))),
            Scale((1.0 - turn.cosine) * axis[k], axis));
  }
  placing.isTurned = true;
}

bool IsPlaced(const AbaqusImport& import, const AbaqusKeyword& keyword) {
  return import.mesh.placing.isPlaced && keyword.scope == AbaqusScope::Part;
}

}  // namespace

void TakeAbaqusPlacing(AbaqusImport& import) {
  bool hasInstance = false;
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.name == "ASSEMBLY") import.mesh.hasAssembly = true;
    if (keyword.name != "INSTANCE") continue;
    constexpr std::array<std::string_view, 2> known{"NAME", "PART"};
    ReportOtherParameters(import, keyword, known);
    if (hasInstance) {
      ReportCard("*INSTANCE", Fate::Refused,
                 "several instances: have the deck written without parts and assembly",
                 keyword.place, {}, import.report);
      continue;
    }
    hasInstance = true;
    TakePlacing(import, keyword);
  }
}

Vector3 TurnDirection(const AbaqusImport& import, const AbaqusKeyword& keyword,
                      const Vector3& direction) {
  if (!IsPlaced(import, keyword) || !import.mesh.placing.isTurned) return direction;
  return Combine(import.mesh.placing.rotation, direction);
}

Vector3 PlacePoint(const AbaqusImport& import, const AbaqusKeyword& keyword, const Vector3& point) {
  if (!IsPlaced(import, keyword)) return point;
  const AbaqusPlacing& placing = import.mesh.placing;
  const Vector3 moved = Add(point, placing.shift);
  if (!placing.isTurned) return moved;
  return Add(placing.centre, Combine(placing.rotation, korvex::Subtract(moved, placing.centre)));
}

}  // namespace kvx
