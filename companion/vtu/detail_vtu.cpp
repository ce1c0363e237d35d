#include "vtu/detail_vtu.h"

#include <functional>

#include "base/dof_counts.h"

namespace kvx {

using korvex::BeamShellModel;
using korvex::Model;
using korvex::Shell4Element;

namespace {

constexpr std::size_t Corners = korvex::NodesPerShell4;
constexpr std::size_t Six = korvex::DofsPerNode;

const BeamShellModel& DetailOf(const Model& model, const DetailRef& ref) {
  return model.BeamShellModels[static_cast<std::size_t>(ref.beam)];
}

const Shell4Element& ShellOf(const Model& model, const DetailRef& ref) {
  return DetailOf(model, ref).Shells[static_cast<std::size_t>(ref.row)];
}

// The node at a corner of a shell.
std::int32_t CornerNode(const Model& model, const DetailRef& shell, std::size_t corner) {
  return DetailOf(model, shell).ShellNodes[Corners * static_cast<std::size_t>(shell.row) + corner];
}

// The node that a point stands at.
DetailRef NodeOf(const Model& model, const DetailGrid& details, std::size_t point) {
  if (details.isShared) return details.nodes[point];
  const DetailRef& shell = details.shells[point / Corners];
  return {shell.beam, CornerNode(model, shell, point % Corners)};
}

// Node 0 and the last one are the ends of the beam.
void ListNodes(const Model& model, DetailGrid& details) {
  std::vector<std::int32_t> before;  // by beam: the point of node 1, less 1
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    before.push_back(static_cast<std::int32_t>(details.nodes.size()) - 1);
    const auto last = static_cast<std::int32_t>(model.BeamShellModels[b].NodeCoords.size()) - 1;
    for (std::int32_t node = 1; node < last; ++node) {
      details.nodes.push_back({static_cast<std::int32_t>(b), node});
    }
  }
  for (const DetailRef& shell : details.shells) {
    for (std::size_t c = 0; c < Corners; ++c) {
      details.cornerNodes.push_back(before[static_cast<std::size_t>(shell.beam)] +
                                    CornerNode(model, shell, c));
    }
  }
}

PointStress CornerStress(const Model& model, const DetailGrid& details, std::size_t corner,
                         bool isAveraged) {
  const Shell4Element& shell = ShellOf(model, details.shells[corner / Corners]);
  const std::size_t c = corner % Corners;
  return isAveraged ? MakePointStress(shell.AvgStressTop[c], shell.AvgStressBottom[c])
                    : MakePointStress(shell.NodeStressTop[c], shell.NodeStressBottom[c]);
}

void ListShells(const Model& model, bool isShared, DetailGrid& details) {
  details.isShared = isShared;
  details.shells.clear();
  details.nodes.clear();
  details.cornerNodes.clear();
  details.means.clear();
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    const auto count = static_cast<std::int32_t>(model.BeamShellModels[b].Shells.size());
    for (std::int32_t row = 0; row < count; ++row) {
      details.shells.push_back({static_cast<std::int32_t>(b), row});
    }
  }
  if (!isShared) return;
  ListNodes(model, details);
  const auto corner = [&](std::size_t k) { return CornerStress(model, details, k, true); };
  AverageAtNodes(corner, details.cornerNodes, details.nodes.size(), details.means);
}

std::size_t CountPoints(const DetailGrid& details) {
  return details.isShared ? details.nodes.size() : Corners * details.shells.size();
}

void BuildPoints(const Model& model, DetailGrid& details) {
  const DetailGrid* const all = &details;
  const auto place = [&model, all](std::size_t point, double* xyz) {
    const DetailRef node = NodeOf(model, *all, point);
    const korvex::Vector3& at =
        DetailOf(model, node).NodeCoords[static_cast<std::size_t>(node.row)];
    for (std::size_t k = 0; k < at.size(); ++k) xyz[k] = at[k];
  };
  details.grid.points = {"Points", {}, 3, CountPoints(details), FillDoubles(place)};
}

void BuildCells(DetailGrid& details) {
  const DetailGrid* const all = &details;
  const std::size_t shells = details.shells.size();
  const auto point = [all](std::size_t corner, std::int64_t* value) {
    *value = all->isShared ? all->cornerNodes[corner] : static_cast<std::int64_t>(corner);
  };
  details.grid.connectivity = {"connectivity", {}, 1, Corners * shells, FillIntegers(point)};
  const auto end = [](std::size_t cell, std::int64_t* value) {
    *value = static_cast<std::int64_t>(Corners * (cell + 1));
  };
  details.grid.offsets = {"offsets", {}, 1, shells, FillIntegers(end)};
  const auto type = [](std::size_t, std::uint8_t* value) { *value = VtkQuad; };
  details.grid.types = {"types", {}, 1, shells, FillBytes(type)};
}

void AddInteger(const char* name, const std::function<std::int64_t(const DetailRef& shell)>& of,
                DetailGrid& details) {
  const DetailGrid* const all = &details;
  const auto fill = [all, of](std::size_t cell, std::int64_t* value) {
    *value = of(all->shells[cell]);
  };
  details.grid.cellData.push_back({name, {}, 1, details.shells.size(), FillIntegers(fill)});
}

// Where the middle of a shell stands: 0 at the beam's first node, 1 at its second.
double StationOf(const Model& model, const DetailRef& shell) {
  const BeamShellModel& detail = DetailOf(model, shell);
  const auto nodes = static_cast<std::int32_t>(detail.NodeCoords.size());
  const std::int32_t steps = (nodes - 2) / detail.ProfileNodeCount - 1;
  const auto plates = static_cast<std::int32_t>(detail.Shells.size()) / steps;
  const std::int32_t step = shell.row / plates;
  return (step + 0.5) / steps;
}

void AddAxis(const char* name, const Model& model, std::size_t axis, DetailGrid& details) {
  const DetailGrid* const all = &details;
  const auto fill = [&model, all, axis](std::size_t cell, double* values) {
    const korvex::ElementFrame& frame = ShellOf(model, all->shells[cell]).Frame;
    for (std::size_t k = 0; k < 3; ++k) values[k] = frame[3 * k + axis];
  };
  details.grid.cellData.push_back(
      {name, {"X", "Y", "Z"}, 3, details.shells.size(), FillDoubles(fill)});
}

// Rows of the model: of the shell itself, and what its beam has.
void AddRows(const Model& model, const std::vector<std::int32_t>& parts, DetailGrid& details) {
  const korvex::ModelTables& tables = model.Tables;
  const std::size_t before = model.Shell4Elements.size() + model.Shell3Elements.size();
  const auto addOfBeam = [&details](const char* name, const auto& of) {
    const auto ofShell = [of](const DetailRef& shell) -> std::int64_t {
      return of(static_cast<std::size_t>(shell.beam));
    };
    AddInteger(name, ofShell, details);
  };
  addOfBeam("beam", [](std::size_t beam) { return static_cast<std::int64_t>(beam); });
  AddInteger(
      "shell", [](const DetailRef& shell) -> std::int64_t { return shell.row; }, details);
  addOfBeam("material",
            [&tables](std::size_t beam) { return tables.BeamProperties[beam].material; });
  addOfBeam("part", [&parts, before](std::size_t beam) { return parts[before + beam]; });
  addOfBeam("section_type",
            [&tables](std::size_t beam) { return tables.BeamSectionRefs[beam].BeamSecType; });
  addOfBeam("section",
            [&tables](std::size_t beam) { return tables.BeamSectionRefs[beam].BeamSecIndex; });
}

void AddCellData(const Model& model, const std::vector<std::int32_t>& parts, DetailGrid& details) {
  AddRows(model, parts, details);
  const DetailGrid* const all = &details;
  const auto addDouble = [&](const char* name,
                             double (*of)(const Model& model, const DetailRef& shell)) {
    const auto fill = [&model, all, of](std::size_t cell, double* value) {
      *value = of(model, all->shells[cell]);
    };
    details.grid.cellData.push_back({name, {}, 1, details.shells.size(), FillDoubles(fill)});
  };
  addDouble("thickness",
            [](const Model& from, const DetailRef& shell) { return ShellOf(from, shell).TK; });
  addDouble("station", StationOf);
  AddAxis("axis_x", model, 0, details);
  AddAxis("axis_z", model, 2, details);
}

void AddHalf(const char* name, const Model& model, std::size_t first, DetailGrid& details) {
  const DetailGrid* const all = &details;
  const auto fill = [&model, all, first](std::size_t point, double* values) {
    const DetailRef node = NodeOf(model, *all, point);
    const double* const u =
        &DetailOf(model, node).Displacements[Six * static_cast<std::size_t>(node.row) + first];
    for (std::size_t k = 0; k < 3; ++k) values[k] = u[k];
  };
  details.grid.pointData.push_back(
      {name, {"X", "Y", "Z"}, 3, CountPoints(details), FillDoubles(fill)});
}

void AddPointData(const Model& model, DetailGrid& details) {
  const DetailGrid* const all = &details;
  const std::size_t points = CountPoints(details);
  std::vector<VtuArray>& arrays = details.grid.pointData;
  const auto number = [&model, all](std::size_t point, std::int64_t* value) {
    *value = NodeOf(model, *all, point).row;
  };
  arrays.push_back({"detail_node", {}, 1, points, FillIntegers(number)});
  AddHalf("displacement", model, 0, details);
  AddHalf("rotation", model, 3, details);
  if (details.isShared) {
    AddStressArrays([all](std::size_t point) { return all->means[point]; }, "_node_mean", points,
                    arrays);
    return;
  }
  const auto at = [&model, all](bool isAveraged) {
    return [&model, all, isAveraged](std::size_t point) {
      return CornerStress(model, *all, point, isAveraged);
    };
  };
  AddStressArrays(at(true), "", points, arrays);
  AddStressArrays(at(false), "_unaveraged", points, arrays);
}

}  // namespace

void BuildDetailGrid(const Model& model, const std::vector<std::int32_t>& parts, bool isShared,
                     DetailGrid& details) {
  ListShells(model, isShared, details);
  details.grid = {};
  BuildPoints(model, details);
  BuildCells(details);
  AddCellData(model, parts, details);
  AddPointData(model, details);
}

}  // namespace kvx
