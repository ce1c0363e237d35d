#include "vtu/mesh_vtu.h"

#include <algorithm>
#include <functional>
#include <limits>

#include "audit/detail_stress.h"
#include "report/stop.h"

namespace kvx {

using korvex::Model;
using korvex::Vector3;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t Six = korvex::DofsPerNode;
constexpr std::int64_t NoRow = -1;

// How many cells there are of each kind, and which of them cell k is.
struct Cells {
  std::size_t shells = 0, triangles = 0, beams = 0;
};

Cells CountCells(const Model& model) {
  return {model.Shell4Elements.size(), model.Shell3Elements.size(), model.BeamElements.size()};
}

std::size_t Total(const Cells& cells) { return cells.shells + cells.triangles + cells.beams; }

// The kind of a cell is its number of nodes.
struct CellRef {
  std::size_t nodes = 0;  // 4, 3 or 2
  std::size_t row = 0;
};

CellRef CellAt(const Cells& cells, std::size_t cell) {
  if (cell < cells.shells) return {4, cell};
  cell -= cells.shells;
  if (cell < cells.triangles) return {3, cell};
  return {2, cell - cells.triangles};
}

// The entries of the connectivity up to the end of a cell.
std::size_t EndOfCell(const Cells& cells, std::size_t cell) {
  const CellRef ref = CellAt(cells, cell);
  const std::size_t before = ref.nodes == 4   ? 0
                             : ref.nodes == 3 ? 4 * cells.shells
                                              : 4 * cells.shells + 3 * cells.triangles;
  return before + ref.nodes * (ref.row + 1);
}

void AddPointDoubles(const char* name, std::size_t width, const FillDoubles& fill, MeshGrid& mesh) {
  std::vector<std::string> components;
  if (width == 3) components = {"X", "Y", "Z"};
  mesh.grid.pointData.push_back({name, components, width, mesh.points.points, fill});
}

void AddCellDoubles(const char* name, std::vector<std::string> components, const Cells& cells,
                    const FillDoubles& fill, MeshGrid& mesh) {
  const std::size_t width = components.empty() ? 1 : components.size();
  mesh.grid.cellData.push_back({name, std::move(components), width, Total(cells), fill});
}

// of: the number of a cell.
void AddCellInteger(const char* name, const Cells& cells,
                    const std::function<std::int64_t(const CellRef& cell)>& of, MeshGrid& mesh) {
  const auto fill = [cells, of](std::size_t cell, std::int64_t* value) {
    *value = of(CellAt(cells, cell));
  };
  mesh.grid.cellData.push_back({name, {}, 1, Total(cells), FillIntegers(fill)});
}

void BuildPoints(const Model& model, MeshGrid& mesh) {
  const MeshPoints* const points = &mesh.points;
  const auto place = [&model, points](std::size_t point, double* xyz) {
    const auto node = static_cast<std::size_t>(NodeOfPoint(*points, point));
    const korvex::Node& at = model.Tables.Nodes[node];
    xyz[0] = at.x;
    xyz[1] = at.y;
    xyz[2] = at.z;
  };
  mesh.grid.points = {"Points", {}, 3, points->points, FillDoubles(place)};
  const auto number = [points](std::size_t point, std::int64_t* node) {
    *node = NodeOfPoint(*points, point);
  };
  mesh.grid.pointData.push_back({"node_id", {}, 1, points->points, FillIntegers(number)});
}

void BuildCells(const Cells& cells, MeshGrid& mesh) {
  const MeshPoints* const points = &mesh.points;
  const std::size_t entries = 4 * cells.shells + 3 * cells.triangles + 2 * cells.beams;
  const auto point = [points](std::size_t corner, std::int64_t* value) {
    *value = points->isShared ? points->cornerNodes[corner] : static_cast<std::int64_t>(corner);
  };
  mesh.grid.connectivity = {"connectivity", {}, 1, entries, FillIntegers(point)};
  const auto end = [cells](std::size_t cell, std::int64_t* value) {
    *value = static_cast<std::int64_t>(EndOfCell(cells, cell));
  };
  mesh.grid.offsets = {"offsets", {}, 1, Total(cells), FillIntegers(end)};
  const auto type = [cells](std::size_t cell, std::uint8_t* value) {
    const std::size_t nodes = CellAt(cells, cell).nodes;
    *value = nodes == 4 ? VtkQuad : nodes == 3 ? VtkTriangle : VtkLine;
  };
  mesh.grid.types = {"types", {}, 1, Total(cells), FillBytes(type)};
}

const korvex::ShellRowProperties& PropertiesOf(const Model& model, const CellRef& cell) {
  const korvex::ModelTables& tables = model.Tables;
  return cell.nodes == 4 ? tables.Shell4Properties[cell.row] : tables.Shell3Properties[cell.row];
}

double ThicknessOf(const Model& model, const CellRef& cell) {
  if (cell.nodes == 2) return NaN;
  return cell.nodes == 4 ? model.Shell4Elements[cell.row].TK : model.Shell3Elements[cell.row].TK;
}

const korvex::ElementFrame& FrameOf(const Model& model, const CellRef& cell) {
  return cell.nodes == 4 ? model.Shell4Elements[cell.row].Frame
                         : model.Shell3Elements[cell.row].Frame;
}

// axis: 0 or 2, local x or z of the element. A shell's frame has the axes in its columns, a beam's
// in its rows.
Vector3 AxisOf(const MeshResults& results, const CellRef& cell, std::size_t axis) {
  if (cell.nodes == 2) {
    const korvex::BeamFrame& frame = results.beamForces[cell.row].frame;
    return {frame[3 * axis], frame[3 * axis + 1], frame[3 * axis + 2]};
  }
  const korvex::ElementFrame& frame = FrameOf(results.solved.model, cell);
  return {frame[axis], frame[3 + axis], frame[6 + axis]};
}

void AddAxis(const char* name, std::size_t axis, const MeshResults& results, const Cells& cells,
             MeshGrid& mesh) {
  // A copy of the record: it holds references to what outlives the grid.
  const auto fill = [results, cells, axis](std::size_t cell, double* values) {
    const Vector3 direction = AxisOf(results, CellAt(cells, cell), axis);
    for (std::size_t k = 0; k < direction.size(); ++k) values[k] = direction[k];
  };
  AddCellDoubles(name, {"X", "Y", "Z"}, cells, fill, mesh);
}

void AddIdentity(const MeshResults& results, const Cells& cells, MeshGrid& mesh) {
  const Model& model = results.solved.model;
  const std::vector<std::int32_t>& parts = results.parts;
  AddCellInteger(
      "element", cells, [](const CellRef& cell) { return static_cast<std::int64_t>(cell.row); },
      mesh);
  AddCellInteger(
      "kind", cells, [](const CellRef& cell) { return static_cast<std::int64_t>(cell.nodes); },
      mesh);
  AddCellDoubles(
      "thickness", {}, cells,
      [&model, cells](std::size_t cell, double* value) {
        *value = ThicknessOf(model, CellAt(cells, cell));
      },
      mesh);
  AddCellInteger(
      "material", cells,
      [&model](const CellRef& cell) -> std::int64_t {
        if (cell.nodes == 2) return model.Tables.BeamProperties[cell.row].material;
        return PropertiesOf(model, cell).material;
      },
      mesh);
  const auto part = [&parts](std::size_t cell, std::int64_t* value) { *value = parts[cell]; };
  mesh.grid.cellData.push_back({"part", {}, 1, Total(cells), FillIntegers(part)});
  AddCellInteger(
      "section_type", cells,
      [&model](const CellRef& cell) {
        return cell.nodes > 2 ? NoRow : model.Tables.BeamSectionRefs[cell.row].BeamSecType;
      },
      mesh);
  AddCellInteger(
      "section", cells,
      [&model](const CellRef& cell) {
        return cell.nodes > 2 ? NoRow : model.Tables.BeamSectionRefs[cell.row].BeamSecIndex;
      },
      mesh);
  AddAxis("axis_x", 0, results, cells, mesh);
  AddAxis("axis_z", 2, results, cells, mesh);
}

// The numbers that points and cells have in the deck.
void AddOrigin(const MeshResults& results, const Cells& cells, MeshGrid& mesh) {
  if (results.origin == nullptr || !HasOrigin(*results.origin)) return;
  const ModelOrigin& origin = *results.origin;
  const MeshPoints* const points = &mesh.points;
  const auto node = [&origin, points](std::size_t point, std::int64_t* value) {
    *value = origin.nodes[static_cast<std::size_t>(NodeOfPoint(*points, point))];
  };
  mesh.grid.pointData.push_back({"deck_node", {}, 1, points->points, FillIntegers(node)});
  AddCellInteger(
      "deck_element", cells,
      [&origin](const CellRef& cell) {
        const ElementOrigin& elements = cell.nodes == 4   ? origin.shells4
                                        : cell.nodes == 3 ? origin.shells3
                                                          : origin.beams;
        return elements.numbers[cell.row];
      },
      mesh);
}

// The three translations (first: 0) or rotations (3) of a vector with six numbers to a node.
void AddHalf(const char* name, const std::vector<double>& six, std::size_t first, MeshGrid& mesh) {
  const MeshPoints* const points = &mesh.points;
  const auto fill = [&six, points, first](std::size_t point, double* values) {
    const auto node = static_cast<std::size_t>(NodeOfPoint(*points, point));
    for (std::size_t k = 0; k < 3; ++k) values[k] = six[Six * node + first + k];
  };
  AddPointDoubles(name, 3, fill, mesh);
}

// The forces of supports: 0 where nothing is held.
void AddReactions(const char* name, const MeshResults& results, std::size_t first, MeshGrid& mesh) {
  const MeshPoints* const points = &mesh.points;
  const SolvedModel& solved = results.solved;
  const Reactions& reactions = results.reactions;
  const auto fill = [&solved, &reactions, points, first](std::size_t point, double* values) {
    const auto node = static_cast<std::size_t>(NodeOfPoint(*points, point));
    for (std::size_t k = 0; k < 3; ++k) {
      const std::size_t equation = Six * node + first + k;
      values[k] = solved.isHeld[equation] != 0 ? reactions.r[equation] : 0.0;
    }
  };
  AddPointDoubles(name, 3, fill, mesh);
}

PointStress CornerStress(const Model& model, std::size_t corner, bool isAveraged) {
  const std::size_t shells = 4 * model.Shell4Elements.size();
  const auto of = [isAveraged](const auto& element, std::size_t c) {
    return isAveraged ? MakePointStress(element.AvgStressTop[c], element.AvgStressBottom[c])
                      : MakePointStress(element.NodeStressTop[c], element.NodeStressBottom[c]);
  };
  if (corner < shells) return of(model.Shell4Elements[corner / 4], corner % 4);
  corner -= shells;
  if (corner >= 3 * model.Shell3Elements.size()) return NoStress();
  return of(model.Shell3Elements[corner / 3], corner % 3);
}

void AddStresses(const Model& model, MeshGrid& mesh) {
  const MeshPoints* const points = &mesh.points;
  const auto averaged = [&model, points](std::size_t point) {
    return StressAtPoint(model, *points, point);
  };
  const auto recovered = [&model](std::size_t point) { return CornerStress(model, point, false); };
  std::vector<VtuArray>& arrays = mesh.grid.pointData;
  if (points->isShared) {
    AddStressArrays(averaged, "_node_mean", points->points, arrays);
    return;
  }
  AddStressArrays(averaged, "", points->points, arrays);
  AddStressArrays(recovered, "_unaveraged", points->points, arrays);
}

void ComputeCentres(const Model& model, std::vector<CentreResultants>& centres) {
  const std::size_t shells = model.Shell4Elements.size();
  centres.resize(shells + model.Shell3Elements.size());
  for (std::size_t e = 0; e < shells; ++e) {
    ComputeShell4Centre(model, static_cast<std::int32_t>(e), {}, centres[e]);
  }
  for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
    ComputeShell3Centre(model, static_cast<std::int32_t>(e), {}, centres[shells + e]);
  }
}

void AddResultants(const Cells& cells, MeshGrid& mesh) {
  const std::vector<CentreResultants>& centres = mesh.centres;
  const auto add = [&](const char* name, std::vector<std::string> components,
                       const std::function<void(const CentreResultants&, double*)>& put) {
    const std::size_t width = components.size();
    const auto fill = [&centres, put, width](std::size_t cell, double* values) {
      if (cell < centres.size()) {
        put(centres[cell], values);
      } else {
        std::fill_n(values, width, NaN);  // of beams
      }
    };
    AddCellDoubles(name, std::move(components), cells, fill, mesh);
  };
  const auto putTensor = [](const PlaneTensor& tensor, double* values) {
    values[0] = tensor.x;
    values[1] = tensor.y;
    values[2] = tensor.xy;
  };
  add("n", {"nx", "ny", "nxy"},
      [putTensor](const CentreResultants& centre, double* to) { putTensor(centre.n, to); });
  add("m", {"mx", "my", "mxy"},
      [putTensor](const CentreResultants& centre, double* to) { putTensor(centre.m, to); });
  add("q", {"qx", "qy"}, [](const CentreResultants& centre, double* to) {
    to[0] = centre.qx;
    to[1] = centre.qy;
  });
}

void AddSectionForces(const MeshResults& results, const Cells& cells, MeshGrid& mesh) {
  const std::vector<BeamForces>& beams = results.beamForces;
  for (const std::size_t end : {std::size_t{0}, std::size_t{1}}) {
    const auto fill = [&beams, cells, end](std::size_t cell, double* values) {
      const CellRef ref = CellAt(cells, cell);
      SectionForces forces{NaN, NaN, NaN, NaN, NaN, NaN};
      if (ref.nodes == 2) forces = ForcesAt(beams[ref.row], static_cast<double>(end));
      for (std::size_t k = 0; k < forces.size(); ++k) values[k] = forces[k];
    };
    AddCellDoubles(SectionForceArrays[end], {"N", "Vy", "Vz", "T", "My", "Mz"}, cells, fill, mesh);
  }
}

void AddDetailStress(const std::vector<DetailStress>& details, const Cells& cells, MeshGrid& mesh) {
  const auto fill = [&details, cells](std::size_t cell, double* value) {
    const CellRef ref = CellAt(cells, cell);
    *value = ref.nodes == 2 ? details[ref.row].vonMises : NaN;
  };
  AddCellDoubles("detail_von_mises", {}, cells, fill, mesh);
}

void CheckResults(const MeshResults& results) {
  const Model& model = results.solved.model;
  const Cells cells = CountCells(model);
  const bool fits = results.parts.size() == Total(cells) &&
                    results.beamForces.size() == cells.beams &&
                    results.reactions.r.size() == results.solved.isHeld.size() &&
                    (!results.hasDetails || results.solved.details.stresses.size() == cells.beams);
  if (fits) return;
  throw korvex::Stop{korvex::StopKind::Notice, "The results are not those of the model."};
}

// Appends the nodes that no corner stands at.
void AddLonelyNodes(std::size_t nodes, std::vector<std::int32_t>& cornerNodes) {
  std::vector<std::uint8_t> isUsed(nodes);
  for (const std::int32_t node : cornerNodes) isUsed[static_cast<std::size_t>(node)] = 1;
  for (std::size_t node = 0; node < nodes; ++node) {
    if (isUsed[node] == 0) cornerNodes.push_back(static_cast<std::int32_t>(node));
  }
}

}  // namespace

std::int32_t NodeOfPoint(const MeshPoints& points, std::size_t point) {
  return points.isShared ? static_cast<std::int32_t>(point) : points.cornerNodes[point];
}

PointStress StressAtPoint(const Model& model, const MeshPoints& points, std::size_t point) {
  return points.isShared ? points.means[point] : CornerStress(model, point, true);
}

void ListMeshPoints(const Model& model, bool isShared, MeshPoints& points) {
  const korvex::ModelTables& tables = model.Tables;
  points.isShared = isShared;
  points.cornerNodes = tables.Shell4Nodes;
  std::vector<std::int32_t>& nodes = points.cornerNodes;
  nodes.insert(nodes.end(), tables.Shell3Nodes.begin(), tables.Shell3Nodes.end());
  points.means.clear();
  if (isShared) {
    const auto corner = [&](std::size_t k) { return CornerStress(model, k, true); };
    AverageAtNodes(corner, nodes, tables.Nodes.size(), points.means);
  }
  nodes.insert(nodes.end(), tables.BeamNodes.begin(), tables.BeamNodes.end());
  if (!isShared) AddLonelyNodes(tables.Nodes.size(), nodes);
  points.points = isShared ? tables.Nodes.size() : nodes.size();
}

void BuildMesh(const MeshResults& results, bool isShared, MeshGrid& mesh) {
  CheckResults(results);
  const Model& model = results.solved.model;
  const Cells cells = CountCells(model);
  ListMeshPoints(model, isShared, mesh.points);
  mesh.grid = {};
  BuildPoints(model, mesh);
  BuildCells(cells, mesh);
  AddIdentity(results, cells, mesh);
  AddOrigin(results, cells, mesh);
}

void BuildMeshGrid(const MeshResults& results, bool isShared, MeshGrid& mesh) {
  const SolvedModel& solved = results.solved;
  const Cells cells = CountCells(solved.model);
  BuildMesh(results, isShared, mesh);
  AddHalf("displacement", solved.model.Displacements, 0, mesh);
  AddHalf("rotation", solved.model.Displacements, 3, mesh);
  AddReactions("reaction_force", results, 0, mesh);
  AddReactions("reaction_moment", results, 3, mesh);
  AddHalf("load_force", solved.model.LoadVector, 0, mesh);
  AddHalf("load_moment", solved.model.LoadVector, 3, mesh);
  AddStresses(solved.model, mesh);
  ComputeCentres(solved.model, mesh.centres);
  AddResultants(cells, mesh);
  AddSectionForces(results, cells, mesh);
  if (results.hasDetails) AddDetailStress(solved.details.stresses, cells, mesh);
}

}  // namespace kvx
