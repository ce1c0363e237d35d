// Writes what the VTU files of a model have to hold, without the code that makes them:
//
//   kvx_dump_results MODEL CORNERS SHARED DETAILS SHAREDDETAILS
//
// MODEL: a model file. The others: files that are written, for each form of the export one. Each
// array is a line "WHERE NAME TYPE COMPONENTS COUNT" and, behind it, COUNT numbers as they stand in
// memory: d for doubles, q for 64-bit integers, B for bytes. WHERE: point, cell or mesh.
// COMPONENTS: names with commas between them, or -.
//
// The model is solved in memory. Everything is taken from the records of the solver and from the
// audit, with loops of its own, element by element.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>
#include <numeric>
#include <string>
#include <type_traits>
#include <vector>

#include "audit/detail_stress.h"
#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "audit/shell_resultants.h"
#include "audit/solved_model.h"
#include "beam/beam_frame.h"
#include "beamshell/generate_beam_shells.h"
#include "results/average_stresses.h"
#include "results/corner_stress.h"
#include "results/shell_stresses.h"

namespace {

using korvex::Model;
using korvex::StressVector;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

template <typename Number>
void Put(std::ostream& to, const std::string& head, const std::vector<Number>& numbers) {
  const char type = sizeof(Number) == 1 ? 'B' : std::is_floating_point_v<Number> ? 'd' : 'q';
  const std::size_t space = head.rfind(' ');
  to << head.substr(0, space) << ' ' << type << head.substr(space) << ' ' << numbers.size() << '\n';
  to.write(reinterpret_cast<const char*>(numbers.data()),
           static_cast<std::streamsize>(numbers.size() * sizeof(Number)));
}

constexpr const char* Axes = "X,Y,Z";

// The six numbers of a tensor as VTK orders them.
void AddTensor(const StressVector& s, std::vector<double>& to) {
  to.insert(to.end(), {s[0], s[1], s[2], s[3], s[5], s[4]});
}

// The stresses of the two faces of all corners, one after the other.
struct Corners {
  std::vector<StressVector> upper, lower;
  std::vector<std::int64_t> points;  // the shared point of each
};

template <typename Element>
void AddCorners(const Element& element, bool isAveraged, Corners& corners) {
  for (std::size_t c = 0; c < element.NodeStressTop.size(); ++c) {
    corners.upper.push_back(isAveraged ? element.AvgStressTop[c] : element.NodeStressTop[c]);
    corners.lower.push_back(isAveraged ? element.AvgStressBottom[c] : element.NodeStressBottom[c]);
  }
}

void PutCorners(std::ostream& to, const std::string& suffix, const Corners& corners,
                std::size_t points) {
  for (const bool isUpper : {true, false}) {
    const std::vector<StressVector>& face = isUpper ? corners.upper : corners.lower;
    std::vector<double> tensors, mises;
    for (const StressVector& stress : face) {
      AddTensor(stress, tensors);
      mises.push_back(korvex::EquivalentStress(stress));
    }
    tensors.resize(6 * points, NaN);
    mises.resize(points, NaN);
    const std::string name = (isUpper ? "upper" : "lower") + suffix;
    Put(to, "point stress_" + name + " XX,YY,ZZ,XY,YZ,XZ", tensors);
    Put(to, "point von_mises_" + name + " -", mises);
  }
}

void PutMeans(std::ostream& to, const Corners& corners, std::size_t points) {
  for (const bool isUpper : {true, false}) {
    const std::vector<StressVector>& face = isUpper ? corners.upper : corners.lower;
    std::vector<double> tensors, mises;
    std::vector<std::vector<std::size_t>> at(points);
    for (std::size_t k = 0; k < face.size(); ++k) {
      at[static_cast<std::size_t>(corners.points[k])].push_back(k);
    }
    for (const std::vector<std::size_t>& here : at) {
      StressVector sum{};
      double sumMises = 0.0;
      for (const std::size_t k : here) {
        for (std::size_t i = 0; i < 6; ++i) sum[i] += face[k][i];
        sumMises += korvex::EquivalentStress(face[k]);
      }
      const double count = here.empty() ? NaN : static_cast<double>(here.size());
      for (double& component : sum) component = here.empty() ? NaN : component / count;
      AddTensor(sum, tensors);
      mises.push_back(here.empty() ? NaN : sumMises / count);
    }
    const std::string name = isUpper ? "upper_node_mean" : "lower_node_mean";
    Put(to, "point stress_" + name + " XX,YY,ZZ,XY,YZ,XZ", tensors);
    Put(to, "point von_mises_" + name + " -", mises);
  }
}

// The nodes of all elements, element by element.
std::vector<std::vector<std::int32_t>> ListElements(const korvex::ModelTables& tables) {
  std::vector<std::vector<std::int32_t>> elements;
  const auto add = [&](const std::vector<std::int32_t>& nodes, std::ptrdiff_t each) {
    for (auto at = nodes.begin(); at != nodes.end(); at += each)
      elements.emplace_back(at, at + each);
  };
  add(tables.Shell4Nodes, 4);
  add(tables.Shell3Nodes, 3);
  add(tables.BeamNodes, 2);
  return elements;
}

// From 1 in the order of the lowest nodes: labels spread until nothing changes.
std::vector<std::int64_t> NumberParts(const std::vector<std::vector<std::int32_t>>& elements,
                                      std::size_t nodes) {
  std::vector<std::int32_t> lowest(nodes);
  std::iota(lowest.begin(), lowest.end(), 0);
  for (bool isChanged = true; isChanged;) {
    isChanged = false;
    for (const auto& element : elements) {
      std::int32_t least = lowest[static_cast<std::size_t>(element[0])];
      for (const std::int32_t node : element) {
        least = std::min(least, lowest[static_cast<std::size_t>(node)]);
      }
      for (const std::int32_t node : element) {
        std::int32_t& label = lowest[static_cast<std::size_t>(node)];
        isChanged = isChanged || label != least;
        label = least;
      }
    }
  }
  std::vector<std::int64_t> number(nodes);
  std::vector<std::uint8_t> hasElement(nodes);
  for (const auto& element : elements) {
    hasElement[static_cast<std::size_t>(lowest[static_cast<std::size_t>(element[0])])] = 1;
  }
  std::int64_t next = 0;
  for (std::size_t node = 0; node < nodes; ++node) {
    if (lowest[node] == static_cast<std::int32_t>(node) && hasElement[node] != 0)
      number[node] = ++next;
  }
  std::vector<std::int64_t> parts;
  for (const auto& element : elements) {
    parts.push_back(number[static_cast<std::size_t>(lowest[static_cast<std::size_t>(element[0])])]);
  }
  return parts;
}

struct Solution {
  kvx::SolvedModel solved;
  kvx::Reactions reactions;
  std::vector<kvx::BeamForces> beams;
  std::vector<std::vector<std::int32_t>> elements;
  std::vector<std::int64_t> parts;
};

void Solve(const std::string& text, Solution& solution) {
  kvx::SolveInMemory(text, {}, solution.solved);
  Model& model = solution.solved.model;
  korvex::RecoverShellStresses(model);
  korvex::AverageNodeStresses(model);
  korvex::GenerateBeamShells(model);
  kvx::AppendDetailPeaks({0, model.BeamShellModels.data(), model.BeamShellModels.size(), true}, {},
                         solution.solved.details);
  kvx::ComputeReactions(solution.solved, solution.reactions);
  kvx::ComputeBeamForces(model, solution.beams);
  solution.elements = ListElements(model.Tables);
  solution.parts = NumberParts(solution.elements, model.Tables.Nodes.size());
}

// nodes: of the points.
void PutNodeData(std::ostream& to, const Solution& solution,
                 const std::vector<std::int64_t>& nodes) {
  const Model& model = solution.solved.model;
  std::vector<double> places;
  std::vector<std::vector<double>> halves(6);
  for (const std::int64_t node : nodes) {
    const auto n = static_cast<std::size_t>(node);
    const korvex::Node& at = model.Tables.Nodes[n];
    places.insert(places.end(), {at.x, at.y, at.z});
    for (std::size_t d = 0; d < 6; ++d) {
      const std::size_t half = d / 3;
      halves[half].push_back(model.Displacements[6 * n + d]);
      bool isHeld = false;
      for (const korvex::NodalRestraint& row : model.Tables.NodalRestraints) {
        isHeld = isHeld || (row.node == node && row.fixed[d] == 1);
      }
      halves[2 + half].push_back(isHeld ? solution.reactions.r[6 * n + d] : 0.0);
      halves[4 + half].push_back(solution.solved.model.LoadVector[6 * n + d]);
    }
  }
  Put(to, "mesh points -", places);
  Put(to, "point node_id -", nodes);
  const char* const names[] = {"displacement",    "rotation",   "reaction_force",
                               "reaction_moment", "load_force", "load_moment"};
  for (std::size_t k = 0; k < halves.size(); ++k) {
    Put(to, std::string("point ") + names[k] + ' ' + Axes, halves[k]);
  }
}

void PutCells(std::ostream& to, const std::vector<std::vector<std::int64_t>>& cells) {
  std::vector<std::int64_t> connectivity, offsets;
  std::vector<std::uint8_t> types;
  for (const auto& cell : cells) {
    connectivity.insert(connectivity.end(), cell.begin(), cell.end());
    offsets.push_back(static_cast<std::int64_t>(connectivity.size()));
    types.push_back(cell.size() == 4 ? 9 : cell.size() == 3 ? 5 : 3);
  }
  Put(to, "mesh connectivity -", connectivity);
  Put(to, "mesh offsets -", offsets);
  Put(to, "mesh types -", types);
}

void PutIdentity(std::ostream& to, const Solution& solution) {
  const Model& model = solution.solved.model;
  const korvex::ModelTables& tables = model.Tables;
  std::vector<std::int64_t> element, kind, material, type, section;
  std::vector<double> thickness, x, z;
  const auto addShells = [&](const auto& shells, const auto& rows, std::int64_t nodes) {
    for (std::size_t e = 0; e < rows.size(); ++e) {
      element.push_back(static_cast<std::int64_t>(e));
      kind.push_back(nodes);
      material.push_back(rows[e].material);
      type.push_back(-1);
      section.push_back(-1);
      thickness.push_back(tables.ShellThicknesses[static_cast<std::size_t>(rows[e].thickness)].TK);
      const korvex::ElementFrame& f = shells[e].Frame;
      x.insert(x.end(), {f[0], f[3], f[6]});
      z.insert(z.end(), {f[2], f[5], f[8]});
    }
  };
  addShells(model.Shell4Elements, tables.Shell4Properties, 4);
  addShells(model.Shell3Elements, tables.Shell3Properties, 3);
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    element.push_back(static_cast<std::int64_t>(b));
    kind.push_back(2);
    material.push_back(tables.BeamProperties[b].material);
    type.push_back(tables.BeamSectionRefs[b].BeamSecType);
    section.push_back(tables.BeamSectionRefs[b].BeamSecIndex);
    thickness.push_back(NaN);
    korvex::BeamFrame f{};
    korvex::ComputeBeamFrame(model.BeamElements[b], f);
    x.insert(x.end(), {f[0], f[1], f[2]});
    z.insert(z.end(), {f[6], f[7], f[8]});
  }
  Put(to, "cell element -", element);
  Put(to, "cell kind -", kind);
  Put(to, "cell thickness -", thickness);
  Put(to, "cell material -", material);
  Put(to, "cell part -", solution.parts);
  Put(to, "cell section_type -", type);
  Put(to, "cell section -", section);
  Put(to, std::string("cell axis_x ") + Axes, x);
  Put(to, std::string("cell axis_z ") + Axes, z);
}

void PutForces(std::ostream& to, const Solution& solution) {
  const Model& model = solution.solved.model;
  std::vector<double> n, m, q, first, second, detail;
  const auto addShell = [&](const kvx::ShellResultants& shell) {
    const kvx::ShellPoint& centre = shell.centre;
    n.insert(n.end(), {centre.n.x, centre.n.y, centre.n.xy});
    m.insert(m.end(), {centre.m.x, centre.m.y, centre.m.xy});
    q.insert(q.end(), {centre.qx, centre.qy});
    first.insert(first.end(), 6, NaN);
    second.insert(second.end(), 6, NaN);
    detail.push_back(NaN);
  };
  kvx::ShellResultants shell;
  for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) {
    kvx::ComputeShell4Resultants(model, static_cast<std::int32_t>(e), {}, shell);
    addShell(shell);
  }
  for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
    kvx::ComputeShell3Resultants(model, static_cast<std::int32_t>(e), {}, shell);
    addShell(shell);
  }
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    n.insert(n.end(), 3, NaN);
    m.insert(m.end(), 3, NaN);
    q.insert(q.end(), 2, NaN);
    const kvx::SectionForces f1 = kvx::ForcesAt(solution.beams[b], 0.0);
    const kvx::SectionForces f2 = kvx::ForcesAt(solution.beams[b], 1.0);
    first.insert(first.end(), f1.begin(), f1.end());
    second.insert(second.end(), f2.begin(), f2.end());
    detail.push_back(kvx::FindDetailStress(model.BeamShellModels[b]).vonMises);
  }
  Put(to, "cell n nx,ny,nxy", n);
  Put(to, "cell m mx,my,mxy", m);
  Put(to, "cell q qx,qy", q);
  Put(to, "cell section_forces_1 N,Vy,Vz,T,My,Mz", first);
  Put(to, "cell section_forces_2 N,Vy,Vz,T,My,Mz", second);
  if (!model.BeamElements.empty()) Put(to, "cell detail_von_mises -", detail);
}

Corners CollectCorners(const Model& model, bool isAveraged) {
  Corners corners;
  for (const auto& element : model.Shell4Elements) AddCorners(element, isAveraged, corners);
  for (const auto& element : model.Shell3Elements) AddCorners(element, isAveraged, corners);
  return corners;
}

void DumpByCorners(std::ostream& to, const Solution& solution) {
  const Model& model = solution.solved.model;
  std::vector<std::int64_t> nodes;
  std::vector<std::vector<std::int64_t>> cells;
  std::vector<std::uint8_t> isUsed(model.Tables.Nodes.size());
  for (const auto& element : solution.elements) {
    cells.emplace_back();
    for (const std::int32_t node : element) {
      cells.back().push_back(static_cast<std::int64_t>(nodes.size()));
      nodes.push_back(node);
      isUsed[static_cast<std::size_t>(node)] = 1;
    }
  }
  for (std::size_t node = 0; node < isUsed.size(); ++node) {
    if (isUsed[node] == 0) nodes.push_back(static_cast<std::int64_t>(node));
  }
  PutNodeData(to, solution, nodes);
  PutCells(to, cells);
  PutCorners(to, "", CollectCorners(model, true), nodes.size());
  PutCorners(to, "_unaveraged", CollectCorners(model, false), nodes.size());
  PutIdentity(to, solution);
  PutForces(to, solution);
}

void DumpShared(std::ostream& to, const Solution& solution) {
  const Model& model = solution.solved.model;
  std::vector<std::int64_t> nodes(model.Tables.Nodes.size());
  std::iota(nodes.begin(), nodes.end(), 0);
  std::vector<std::vector<std::int64_t>> cells;
  Corners corners = CollectCorners(model, true);
  for (const auto& element : solution.elements) {
    cells.emplace_back(element.begin(), element.end());
    if (element.size() > 2) {
      corners.points.insert(corners.points.end(), element.begin(), element.end());
    }
  }
  PutNodeData(to, solution, nodes);
  PutCells(to, cells);
  PutMeans(to, corners, nodes.size());
  PutIdentity(to, solution);
  PutForces(to, solution);
}

// The cells of all detail models.
void PutDetailCells(std::ostream& to, const Solution& solution) {
  const Model& model = solution.solved.model;
  const std::size_t before = model.Shell4Elements.size() + model.Shell3Elements.size();
  std::vector<std::int64_t> beam, shell, material, part, type, section;
  std::vector<double> thickness, station, x, z;
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    const korvex::BeamShellModel& detail = model.BeamShellModels[b];
    const std::int32_t steps = kvx::FindDetailStress(detail).steps;
    const std::size_t plates = detail.Shells.size() / static_cast<std::size_t>(steps);
    for (std::size_t s = 0; s < detail.Shells.size(); ++s) {
      beam.push_back(static_cast<std::int64_t>(b));
      shell.push_back(static_cast<std::int64_t>(s));
      material.push_back(model.Tables.BeamProperties[b].material);
      part.push_back(solution.parts[before + b]);
      type.push_back(model.Tables.BeamSectionRefs[b].BeamSecType);
      section.push_back(model.Tables.BeamSectionRefs[b].BeamSecIndex);
      thickness.push_back(detail.Shells[s].TK);
      station.push_back((static_cast<double>(s / plates) + 0.5) / steps);
      const korvex::ElementFrame& f = detail.Shells[s].Frame;
      x.insert(x.end(), {f[0], f[3], f[6]});
      z.insert(z.end(), {f[2], f[5], f[8]});
    }
  }
  Put(to, "cell beam -", beam);
  Put(to, "cell shell -", shell);
  Put(to, "cell material -", material);
  Put(to, "cell part -", part);
  Put(to, "cell section_type -", type);
  Put(to, "cell section -", section);
  Put(to, "cell thickness -", thickness);
  Put(to, "cell station -", station);
  Put(to, std::string("cell axis_x ") + Axes, x);
  Put(to, std::string("cell axis_z ") + Axes, z);
}

void DumpDetails(std::ostream& to, const Solution& solution, bool isShared) {
  const Model& model = solution.solved.model;
  std::vector<double> places, displacement, rotation;
  std::vector<std::int64_t> nodes;
  const auto addPoint = [&](const korvex::BeamShellModel& detail, std::int32_t node) {
    const auto n = static_cast<std::size_t>(node);
    nodes.push_back(node);
    places.insert(places.end(), detail.NodeCoords[n].begin(), detail.NodeCoords[n].end());
    const double* u = &detail.Displacements[6 * n];
    displacement.insert(displacement.end(), u, u + 3);
    rotation.insert(rotation.end(), u + 3, u + 6);
  };
  Corners averaged, recovered;
  std::vector<std::vector<std::int64_t>> cells;
  for (const korvex::BeamShellModel& detail : model.BeamShellModels) {
    const auto begin = static_cast<std::int64_t>(nodes.size());
    if (isShared) {
      for (std::int32_t node = 1; node + 1 < detail.NodeCount; ++node) addPoint(detail, node);
    }
    for (std::size_t s = 0; s < detail.Shells.size(); ++s) {
      AddCorners(detail.Shells[s], true, averaged);
      AddCorners(detail.Shells[s], false, recovered);
      cells.emplace_back();
      for (std::size_t c = 0; c < 4; ++c) {
        const std::int32_t node = detail.ShellNodes[4 * s + c];
        cells.back().push_back(isShared ? begin + node - 1
                                        : static_cast<std::int64_t>(nodes.size()));
        averaged.points.push_back(cells.back().back());
        if (!isShared) addPoint(detail, node);
      }
    }
  }
  Put(to, "mesh points -", places);
  PutCells(to, cells);
  Put(to, "point detail_node -", nodes);
  Put(to, std::string("point displacement ") + Axes, displacement);
  Put(to, std::string("point rotation ") + Axes, rotation);
  if (isShared) {
    PutMeans(to, averaged, nodes.size());
  } else {
    PutCorners(to, "", averaged, nodes.size());
    PutCorners(to, "_unaveraged", recovered, nodes.size());
  }
  PutDetailCells(to, solution);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    std::cerr << "kvx_dump_results MODEL CORNERS SHARED DETAILS SHAREDDETAILS\n";
    return 1;
  }
  std::ifstream file(argv[1], std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  Solution solution;
  Solve(text, solution);
  std::ofstream corners(argv[2], std::ios::binary), shared(argv[3], std::ios::binary);
  std::ofstream details(argv[4], std::ios::binary), sharedDetails(argv[5], std::ios::binary);
  DumpByCorners(corners, solution);
  DumpShared(shared, solution);
  DumpDetails(details, solution, false);
  DumpDetails(sharedDetails, solution, true);
  return corners && shared && details && sharedDetails ? 0 : 1;
}
