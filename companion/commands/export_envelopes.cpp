#include "commands/export_envelopes.h"

#include <array>
#include <cmath>

#include "base/dof_counts.h"
#include "base/vector3.h"

namespace kvx {

namespace {

constexpr std::size_t MotionCount = 4, SizeOfMotion = 3;
constexpr std::size_t FaceValues = 3;
constexpr std::array<const char*, FaceValues> FaceNames{"von_mises_upper", "von_mises_lower",
                                                        "von_mises_both"};

std::vector<double> MotionOf(const korvex::Model& model) {
  std::vector<double> values;
  constexpr std::size_t Six = korvex::DofsPerNode;
  for (std::size_t at = 0; at < model.Displacements.size(); at += Six) {
    const korvex::Vector3 u{model.Displacements[at], model.Displacements[at + 1],
                            model.Displacements[at + 2]};
    values.insert(values.end(), {u[0], u[1], u[2], korvex::Length(u)});
  }
  return values;
}

std::vector<double> StressesOf(const korvex::Model& model, const MeshPoints& points) {
  std::vector<double> values;
  for (std::size_t point = 0; point < points.points; ++point) {
    const PointStress stress = StressAtPoint(model, points, point);
    // A face that is NaN makes both faces NaN.
    const bool isLower = !(stress.upperMises >= stress.lowerMises);
    const double larger =
        std::isnan(stress.upperMises) || !isLower ? stress.upperMises : stress.lowerMises;
    values.insert(values.end(), {stress.upperMises, stress.lowerMises, larger});
  }
  return values;
}

// One side of an envelope.
struct Side {
  const char* name;
  const std::vector<double>* values;
  const std::vector<std::int32_t>* cases;
};

std::array<Side, 2> SidesOf(const Envelope& envelope) {
  return {{{"_largest", &envelope.largest, &envelope.largestCase},
           {"_smallest", &envelope.smallest, &envelope.smallestCase}}};
}

// Components first .. first + width - 1 of the items, and their cases. itemOf: the item of a point.
void AddSide(const std::string& name, const Side& side, const Envelope& envelope, std::size_t first,
             std::size_t width, const std::function<std::size_t(std::size_t point)>& itemOf,
             MeshGrid& mesh) {
  const std::size_t n = envelope.components, points = mesh.points.points;
  std::vector<std::string> axes;
  if (width == 3) axes = {"X", "Y", "Z"};
  const auto copy = [n, first, width, itemOf](const auto& from, std::size_t point, auto* to) {
    for (std::size_t k = 0; k < width; ++k) to[k] = from[itemOf(point) * n + first + k];
  };
  const auto value = [copy, from = side.values](std::size_t point, double* to) {
    copy(*from, point, to);
  };
  const auto number = [copy, from = side.cases](std::size_t point, std::int64_t* to) {
    copy(*from, point, to);
  };
  mesh.grid.pointData.push_back({name + side.name, axes, width, points, FillDoubles(value)});
  mesh.grid.pointData.push_back(
      {name + side.name + "_case", axes, width, points, FillIntegers(number)});
}

void AddMotion(const PointEnvelope& envelope, MeshGrid& mesh) {
  const MeshPoints* const points = &mesh.points;
  const auto itemOf = [points](std::size_t point) {
    return static_cast<std::size_t>(NodeOfPoint(*points, point));
  };
  for (const Side& side : SidesOf(envelope.motion)) {
    AddSide("displacement", side, envelope.motion, 0, 3, itemOf, mesh);
  }
  for (const Side& side : SidesOf(envelope.motion)) {
    AddSide("displacement_size", side, envelope.motion, SizeOfMotion, 1, itemOf, mesh);
  }
  const Envelope* const motion = &envelope.motion;
  const auto governing = [motion, itemOf](std::size_t point, double* to) {
    const std::size_t at = itemOf(point) * MotionCount + SizeOfMotion;
    for (std::size_t k = 0; k < 3; ++k) to[k] = motion->withLargest[at * MotionCount + k];
  };
  mesh.grid.pointData.push_back({"displacement_of_largest_size",
                                 {"X", "Y", "Z"},
                                 3,
                                 mesh.points.points,
                                 FillDoubles(governing)});
}

}  // namespace

void AddToPointEnvelope(const MeshResults& results, bool isShared, std::size_t row,
                        PointEnvelope& envelope) {
  const korvex::Model& model = results.solved.model;
  // The means of shared points are those of this case.
  ListMeshPoints(model, isShared, envelope.points);
  if (!envelope.hasBegun) {
    InitEnvelope(model.Tables.Nodes.size(), MotionCount, {}, envelope.motion);
    InitEnvelope(envelope.points.points, FaceValues, {}, envelope.stresses);
    envelope.hasBegun = true;
  }
  const auto number = static_cast<std::int32_t>(row);
  AddCase(MotionOf(model), number, envelope.motion);
  AddCase(StressesOf(model, envelope.points), number, envelope.stresses);
}

void BuildEnvelopeGrid(const MeshResults& results, const PointEnvelope& envelope, MeshGrid& mesh) {
  BuildMesh(results, envelope.points.isShared, mesh);
  AddMotion(envelope, mesh);
  const auto itemOf = [](std::size_t point) { return point; };
  const std::string suffix = envelope.points.isShared ? "_node_mean" : "";
  for (std::size_t face = 0; face < FaceValues; ++face) {
    for (const Side& side : SidesOf(envelope.stresses)) {
      AddSide(FaceNames[face] + suffix, side, envelope.stresses, face, 1, itemOf, mesh);
    }
  }
}

}  // namespace kvx
