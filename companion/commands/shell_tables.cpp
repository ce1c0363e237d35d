#include "commands/shell_tables.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "check/describe.h"
#include "commands/element_words.h"
#include "commands/number_json.h"
#include "commands/origin_words.h"
#include "commands/tidy_number.h"

namespace kvx {

using korvex::Model;
using Json = nlohmann::ordered_json;

namespace {

constexpr double DegreesPerRadian = 57.29577951308232;

// The numbers of a point in the order of AddPointCells. 1 and 2: principal values; angle: of the
// larger one; vector: the same direction, global.
constexpr std::array<const char*, 53> PointNames{"x",
                                                 "y",
                                                 "z",
                                                 "nx",
                                                 "ny",
                                                 "nxy",
                                                 "mx",
                                                 "my",
                                                 "mxy",
                                                 "qx",
                                                 "qy",
                                                 "n1",
                                                 "n2",
                                                 "n_angle",
                                                 "m1",
                                                 "m2",
                                                 "m_angle",
                                                 "membrane_x",
                                                 "membrane_y",
                                                 "membrane_xy",
                                                 "bending_x",
                                                 "bending_y",
                                                 "bending_xy",
                                                 "upper_x",
                                                 "upper_y",
                                                 "upper_xy",
                                                 "upper_1",
                                                 "upper_2",
                                                 "upper_angle",
                                                 "upper_dir_x",
                                                 "upper_dir_y",
                                                 "upper_dir_z",
                                                 "upper_von_mises",
                                                 "lower_x",
                                                 "lower_y",
                                                 "lower_xy",
                                                 "lower_1",
                                                 "lower_2",
                                                 "lower_angle",
                                                 "lower_dir_x",
                                                 "lower_dir_y",
                                                 "lower_dir_z",
                                                 "lower_von_mises",
                                                 "middle_x",
                                                 "middle_y",
                                                 "middle_xy",
                                                 "middle_1",
                                                 "middle_2",
                                                 "middle_angle",
                                                 "middle_dir_x",
                                                 "middle_dir_y",
                                                 "middle_dir_z",
                                                 "middle_von_mises"};

constexpr std::array<const char*, ShellPeakCount> PeakNames{
    "nx", "ny", "nxy", "mx", "my", "mxy", "qx", "qy", "von Mises upper", "lower", "middle"};

const FaceState& FaceOf(const ShellPoint& point, Face face) {
  return point.faces[static_cast<std::size_t>(face)];
}

// In the order of PeakNames.
std::array<double, ShellPeakCount> PeakNumbers(const ShellPoint& point) {
  return {point.n.x,
          point.n.y,
          point.n.xy,
          point.m.x,
          point.m.y,
          point.m.xy,
          point.qx,
          point.qy,
          FaceOf(point, Face::Upper).vonMises,
          FaceOf(point, Face::Lower).vonMises,
          FaceOf(point, Face::Middle).vonMises};
}

double PeakScale(std::size_t peak, const ShellScales& scales) {
  constexpr std::size_t FirstMoment = 3, FirstShear = 6, FirstStress = 8;
  if (peak >= FirstStress) return scales.stress;
  return peak >= FirstMoment && peak < FirstShear ? scales.moment : scales.force;
}

void AddTensor(const PlaneTensor& tensor, std::vector<Cell>& cells) {
  for (const double component : {tensor.x, tensor.y, tensor.xy}) cells.emplace_back(component);
}

void AddAngle(const PrincipalValues& values, std::vector<Cell>& cells) {
  cells.push_back(values.hasDirection ? Cell(DegreesPerRadian * values.angle) : Cell());
}

void AddPrincipal(const PrincipalValues& values, std::vector<Cell>& cells) {
  cells.emplace_back(values.larger);
  cells.emplace_back(values.smaller);
  AddAngle(values, cells);
}

void AddFace(const FaceState& face, std::vector<Cell>& cells) {
  AddTensor(face.local, cells);
  AddPrincipal(face.principal, cells);
  for (const double component : face.direction) {
    cells.push_back(face.principal.hasDirection ? Cell(component) : Cell());
  }
  cells.emplace_back(face.vonMises);
}

// hasShear: without it qx and qy are empty.
void AddPointCells(const ShellPoint& point, bool hasShear, std::vector<Cell>& cells) {
  for (const double coordinate : point.place) cells.emplace_back(coordinate);
  AddTensor(point.n, cells);
  AddTensor(point.m, cells);
  for (const double q : {point.qx, point.qy}) cells.push_back(hasShear ? Cell(q) : Cell());
  AddPrincipal(FindPrincipalValues(point.n), cells);
  AddPrincipal(FindPrincipalValues(point.m), cells);
  AddTensor(point.membrane, cells);
  AddTensor(point.bending, cells);
  for (const Face face : {Face::Upper, Face::Lower, Face::Middle}) {
    AddFace(FaceOf(point, face), cells);
  }
}

// Axis 1, 2 or 3 of the frame.
korvex::Vector3 AxisOf(const ShellFrame& frame, std::size_t axis) {
  korvex::Vector3 vector{};
  for (std::size_t i = 0; i < 3; ++i) vector[i] = frame.axes[3 * i + axis];
  return vector;
}

std::string PointName(const Model& model, const ShellResult& result, std::int32_t corner) {
  if (corner < 0) return "centre";
  return "node " + std::to_string(NodesOfElement(model, result.element).nodes[corner]);
}

// corner: 0-based; -1: the centre.
const ShellPoint& PointOf(const ShellResult& result, std::int32_t corner) {
  if (corner < 0) return result.values.centre;
  return result.values.corner[static_cast<std::size_t>(corner)];
}

std::int32_t LastCorner(const ShellResult& result, bool hasCorners) {
  return hasCorners ? result.values.corners - 1 : -1;
}

void AddForceRow(const ShellPoint& point, bool hasShear, const ShellScales& scales,
                 std::vector<Cell>& cells) {
  constexpr std::size_t FirstShear = 6, FirstStress = 8;
  const auto numbers = PeakNumbers(point);
  for (std::size_t i = 0; i < FirstStress; ++i) {
    const bool isShear = i >= FirstShear;
    cells.push_back(isShear && !hasShear ? Cell()
                                         : Cell(TidyNumber(numbers[i], PeakScale(i, scales))));
  }
}

void AddStressRow(const ShellPoint& point, const ShellScales& scales, std::vector<Cell>& cells) {
  for (const Face face : {Face::Upper, Face::Lower}) {
    const FaceState& state = FaceOf(point, face);
    cells.emplace_back(TidyNumber(state.principal.larger, scales.stress));
    cells.emplace_back(TidyNumber(state.principal.smaller, scales.stress));
    constexpr double LargestAngle = 90.0;
    const bool hasAngle =
        state.principal.hasDirection && state.vonMises > RoundingShare * scales.stress;
    const double angle = TidyNumber(DegreesPerRadian * state.principal.angle, LargestAngle);
    cells.push_back(hasAngle ? Cell(angle) : Cell());
    cells.emplace_back(TidyNumber(state.vonMises, scales.stress));
  }
  cells.emplace_back(TidyNumber(FaceOf(point, Face::Middle).vonMises, scales.stress));
}

Json PointJson(const ShellPoint& point, bool hasShear) {
  std::vector<Cell> cells;
  AddPointCells(point, hasShear, cells);
  Json json = Json::object();
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const auto* number = std::get_if<double>(&cells[i]);
    json[PointNames[i]] = number == nullptr ? Json(nullptr) : NumberJson(*number);
  }
  return json;
}

Json NodesJson(const Model& model, const ElementRef& element) {
  const NodeSpan span = NodesOfElement(model, element);
  return std::vector<std::int32_t>(span.nodes, span.nodes + span.count);
}

}  // namespace

std::vector<std::string> ListShellNotes(const FrameChoice& choice) {
  const std::string frame =
      choice.byAxis ? "the projection of " + PointText(choice.axis) +
                          " on the shell (of global x where that is normal to it: see frame)"
                    : std::string("from the element's first node to its second");
  return {"Axis 1 is " + frame +
              "; axis 3 is the element's normal, on the side of its upper face; axis 2 = 3 x 1.",
          "n (force/length) > 0 is tension; m (moment/length): mx > 0 stretches the upper face "
          "along axis 1; q (force/length) = dm/dx. Faces: n/t + 6m/t^2 upper, n/t - 6m/t^2 lower, "
          "n/t middle. Three-node shells have no q. Units of the model, angles in degrees from "
          "axis 1 to axis 2.",
          "As recovered in each element, not averaged. At a clamped edge the centres lie half an "
          "element inside: extrapolate."};
}

void MakeShellResult(const Model& model, const ElementRef& element, const FrameChoice& choice,
                     ShellResult& result) {
  result.element = element;
  if (element.kind == ElementKind::Shell3) {
    ComputeShell3Resultants(model, element.row, choice, result.values);
  } else {
    ComputeShell4Resultants(model, element.row, choice, result.values);
  }
}

void RaiseShellScales(const ShellResult& result, ShellScales& scales) {
  double force = 0.0, moment = 0.0;
  for (std::int32_t corner = -1; corner < result.values.corners; ++corner) {
    const ShellPoint& point = PointOf(result, corner);
    const auto raise = [](double& scale, double value) {
      scale = std::max(scale, std::fabs(value));
    };
    for (const double component : {point.n.x, point.n.y, point.n.xy}) raise(force, component);
    for (const double component : {point.m.x, point.m.y, point.m.xy}) raise(moment, component);
    if (result.values.hasShear) {
      for (const double q : {point.qx, point.qy}) raise(force, q);
    }
    for (const FaceState& face : point.faces) raise(scales.stress, face.vonMises);
  }
  // Where one kind vanishes, what is left of it is rounding of the other.
  const double t = result.values.thickness;
  scales.force = std::max({scales.force, force, moment / t});
  scales.moment = std::max({scales.moment, moment, force * t});
}

void BeginShellTables(ShellTables& tables) {
  tables = {};
  tables.forces.title = "Forces and moments of shells:";
  tables.forces.columns = {"kind", "element", "at", "x",  "y",   "z",  "nx",
                           "ny",   "nxy",     "mx", "my", "mxy", "qx", "qy"};
  tables.stresses.title = "Stresses of shells:";
  tables.stresses.columns = {"kind", "element", "at",        "upper: 1",
                             "2",    "angle",   "von Mises", "lower: 1",
                             "2",    "angle",   "von Mises", "middle: von Mises"};
}

void AddToShellTables(const Model& model, const ShellResult& result, bool hasCorners,
                      const ShellScales& scales, ShellTables& tables) {
  for (std::int32_t corner = -1; corner <= LastCorner(result, hasCorners); ++corner) {
    const ShellPoint& point = PointOf(result, corner);
    for (ResultTable* table : {&tables.forces, &tables.stresses}) {
      table->cells.emplace_back(NameOf(result.element.kind));
      table->cells.emplace_back(std::int64_t{result.element.row});
      table->cells.emplace_back(PointName(model, result, corner));
    }
    for (const double coordinate : point.place) tables.forces.cells.emplace_back(coordinate);
    AddForceRow(point, result.values.hasShear, scales, tables.forces.cells);
    AddStressRow(point, scales, tables.stresses.cells);
  }
}

void RaiseShellExtremes(const ShellResult& result, ShellExtremes& extremes) {
  const ShellPoint& centre = result.values.centre;
  const auto numbers = PeakNumbers(centre);
  for (std::size_t i = 0; i < ShellPeakCount; ++i) {
    const ShellPeak peak{numbers[i], result.element, centre.place};
    ShellPeak &low = extremes.smallest[i], &high = extremes.largest[i];
    if (std::isnan(peak.value)) continue;  // a triangle's q
    if (!extremes.hasAny[i] || peak.value < low.value) low = peak;
    if (!extremes.hasAny[i] || peak.value > high.value) high = peak;
    extremes.hasAny[i] = true;
  }
}

ResultTable MakeExtremesTable(const ModelOrigin& origin, const ShellExtremes& extremes,
                              const ShellScales& scales) {
  ResultTable table;
  table.title = "Smallest and largest values at the centres of shells:";
  table.columns = {"of", "smallest", "in", "at", "largest", "in", "at"};
  for (std::size_t i = 0; i < ShellPeakCount; ++i) {
    if (!extremes.hasAny[i]) continue;
    table.cells.emplace_back(std::string(PeakNames[i]));
    for (const ShellPeak* peak : {&extremes.smallest[i], &extremes.largest[i]}) {
      table.cells.emplace_back(TidyNumber(peak->value, PeakScale(i, scales)));
      table.cells.emplace_back(std::string(NameOf(peak->element.kind)) + " " +
                               std::to_string(peak->element.row) + InDeck(origin, peak->element));
      table.cells.emplace_back(PointText(peak->place));
    }
  }
  return table;
}

void BeginShellCsv(const FrameChoice& choice, ResultTable& table) {
  table = {};
  table.notes = ListShellNotes(choice);
  table.notes.emplace_back(
      "kind: shell has four nodes, triangle three; each kind is numbered from 0. node: that of the "
      "corner, empty at the centre. 1, 2: principal values, angle and dir (global) of the larger "
      "one.");
  table.columns = {"kind",    "element",  "node",     "thickness", "frame",
                   "axis1_x", "axis1_y",  "axis1_z",  "axis2_x",   "axis2_y",
                   "axis2_z", "normal_x", "normal_y", "normal_z"};
  table.columns.insert(table.columns.end(), PointNames.begin(), PointNames.end());
}

void AddShellRows(const Model& model, const ShellResult& result, bool hasCorners,
                  ResultTable& table) {
  const NodeSpan span = NodesOfElement(model, result.element);
  for (std::int32_t corner = -1; corner <= LastCorner(result, hasCorners); ++corner) {
    std::vector<Cell>& cells = table.cells;
    cells.emplace_back(KindWord(result.element.kind));
    cells.emplace_back(std::int64_t{result.element.row});
    cells.push_back(corner < 0 ? Cell() : Cell(std::int64_t{span.nodes[corner]}));
    cells.emplace_back(result.values.thickness);
    cells.emplace_back(std::string(NameOf(result.values.frame.source)));
    for (const std::size_t axis : {0U, 1U, 2U}) {
      for (const double component : AxisOf(result.values.frame, axis)) {
        cells.emplace_back(component);
      }
    }
    AddPointCells(PointOf(result, corner), result.values.hasShear, cells);
  }
}

Json ShellJson(const Model& model, const ModelOrigin& origin, const ShellResult& result,
               bool hasCorners) {
  const ShellResultants& values = result.values;
  Json axes = Json::array();
  for (const std::size_t axis : {0U, 1U, 2U}) {
    axes.push_back(VectorJson(AxisOf(values.frame, axis)));
  }
  Json json;
  json[KindWord(result.element.kind)] = result.element.row;
  json["nodes"] = NodesJson(model, result.element);
  AddDeckNumbers(model, origin, result.element, json);
  json["thickness"] = NumberJson(values.thickness);
  json["frame"] = NameOf(values.frame.source);
  json["axes"] = std::move(axes);
  json["centre"] = PointJson(values.centre, values.hasShear);
  if (!hasCorners) return json;
  json["corners"] = Json::array();
  for (std::int32_t corner = 0; corner < values.corners; ++corner) {
    json["corners"].push_back(PointJson(PointOf(result, corner), values.hasShear));
  }
  return json;
}

const char* NameOf(FrameSource source) {
  if (source == FrameSource::Element) return "element";
  if (source == FrameSource::Axis) return "axis";
  return source == FrameSource::GlobalX ? "global x" : "global y";
}

}  // namespace kvx
