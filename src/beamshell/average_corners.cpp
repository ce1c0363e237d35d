// Nodes are numbered through all models. A sweep through the own model, which stays in a cache,
// finds its nodes near a point, and with them the corners of the shells there. A spatial grid finds
// those of other models. Most nodes lie far from all of them: the boxes around the models tell, and
// such nodes are not in the grid.
//
// A corner is excluded if its distance is greater than the tolerance. A distance that is NaN is not
// greater, so it excludes nothing: a corner with a NaN coordinate, as in the model of a beam
// without length, is averaged with all corners of its own model and of the models that share an
// end. Nodes without finite coordinates cannot be in the grid; they are listed and compared with
// every point.
#include "beamshell/average_corners.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "beamshell/point_grid.h"
#include "platform/prefault_memory.h"
#include "results/corner_sum.h"
#include "workers/share_range.h"

namespace korvex {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

using Numbers = std::vector<std::size_t>;

// The box around the finite nodes of a model, and Reach more in all directions: no other node of
// the model coincides with a point outside.
struct NodeBox {
  Vector3 low{Infinity, Infinity, Infinity};
  Vector3 high{-Infinity, -Infinity, -Infinity};
};

// The nodes of all models, the corners at each node, and the grids that find them.
struct CornerTable {
  Numbers firstNode;            // [models + 1] each model's first node
  std::vector<Vector3> points;  // [nodes] positions
  Numbers firstCorner;          // [nodes + 1] where a node's corners begin in `corners`
  Numbers corners;              // 4 * shell + k in its model, node after node, ascending per node
  Numbers nonFinite;            // nodes without finite coordinates, ascending
  std::vector<NodeBox> boxes;   // [models]
  PointGrid ends;               // end points of the models: 2 * m and 2 * m + 1 for model m
  Numbers meeting;              // finite nodes that may meet nodes of other models
  PointGrid grid;               // of their positions: i stands for node meeting[i]
};

// A model and the models that share an end with it.
struct Family {
  std::size_t own = 0;
  Numbers others;     // ascending
  Numbers nonFinite;  // nodes of all these models without finite coordinates
};

// Corner k of a shell of a model: position = 4 * shell + k.
struct Corner {
  std::size_t model, position;
};

// Enlarges the box so that it holds a point and Reach around it.
void Enclose(const Vector3& point, NodeBox& box) {
  for (std::size_t i = 0; i < 3; ++i) {
    box.low[i] = std::min(box.low[i], point[i] - Reach);
    box.high[i] = std::max(box.high[i], point[i] + Reach);
  }
}

bool IsInside(const Vector3& point, const NodeBox& box) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (point[i] < box.low[i] || point[i] > box.high[i]) return false;
  }
  return true;
}

// Appends the nodes of one model and the corners at each.
void AppendNodes(const BeamShellModel& model, CornerTable& table) {
  const std::size_t nodes = model.NodeCoords.size(), before = table.corners.size();
  NodeBox box;
  for (const Vector3& point : model.NodeCoords) {
    if (IsFinite(point)) {
      Enclose(point, box);
    } else {
      table.nonFinite.push_back(table.points.size());
    }
    table.points.push_back(point);
  }
  table.boxes.push_back(box);
  table.firstNode.push_back(table.points.size());

  Numbers next(nodes + 1, before);
  for (const std::int32_t node : model.ShellNodes) ++next[static_cast<std::size_t>(node) + 1];
  for (std::size_t i = 0; i < nodes; ++i) next[i + 1] += next[i] - before;
  table.firstCorner.insert(table.firstCorner.end(), next.begin() + 1, next.end());
  table.corners.resize(before + model.ShellNodes.size());
  for (std::size_t position = 0; position < model.ShellNodes.size(); ++position) {
    table.corners[next[static_cast<std::size_t>(model.ShellNodes[position])]++] = position;
  }
}

// Reserves room for the nodes and corners of all models.
void ReserveTable(const std::vector<BeamShellModel>& models, CornerTable& table) {
  std::size_t nodes = 0, corners = 0;
  for (const BeamShellModel& model : models) {
    nodes += model.NodeCoords.size();
    corners += model.ShellNodes.size();
  }
  table.firstNode.reserve(models.size() + 1);
  table.points.reserve(nodes);
  table.firstCorner.reserve(nodes + 1);
  table.corners.reserve(corners);
  PrefaultMemory(table.points.data(), nodes * sizeof(Vector3));
  PrefaultMemory(table.firstCorner.data(), nodes * sizeof(std::size_t));
  PrefaultMemory(table.corners.data(), corners * sizeof(std::size_t));
}

// Two ends coincide if their distance is less than the tolerance. (Corners coincide also at a
// distance equal to the tolerance.)
bool ShareEnd(const BeamShellModel& a, const BeamShellModel& b) {
  for (const Vector3& endA : {a.EndPoint1, a.EndPoint2}) {
    for (const Vector3& endB : {b.EndPoint1, b.EndPoint2}) {
      if (Length(Subtract(endA, endB)) < CoincidenceTolerance) return true;
    }
  }
  return false;
}

// Sorts the numbers and removes duplicates.
void SortUnique(Numbers& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

void FindFamily(const std::vector<BeamShellModel>& models, const CornerTable& table,
                std::size_t own, Family& family) {
  family.own = own;
  family.others.clear();
  for (const Vector3& end : {models[own].EndPoint1, models[own].EndPoint2}) {
    if (IsFinite(end)) FindNear(table.ends, end, family.others);
  }
  for (std::size_t& end : family.others) end /= 2;
  SortUnique(family.others);
  const auto isStranger = [&](std::size_t m) {
    return m == own || !ShareEnd(models[m], models[own]);
  };
  family.others.erase(std::remove_if(family.others.begin(), family.others.end(), isStranger),
                      family.others.end());

  family.nonFinite.clear();
  const auto addNonFinite = [&](std::size_t m) {
    const auto begin = table.nonFinite.begin(), end = table.nonFinite.end();
    family.nonFinite.insert(family.nonFinite.end(),
                            std::lower_bound(begin, end, table.firstNode[m]),
                            std::lower_bound(begin, end, table.firstNode[m + 1]));
  };
  addNonFinite(own);
  for (const std::size_t m : family.others) addNonFinite(m);
}

// Beyond so many other models, asking each for its box would take longer than the large grid.
constexpr std::size_t MaxAsked = 32;

// Whether a node of the family outside its own model may coincide with `point`, or one without
// finite coordinates.
bool MayMeetOthers(const CornerTable& table, const Family& family, const Vector3& point) {
  return !family.nonFinite.empty() || family.others.size() > MaxAsked ||
         std::any_of(family.others.begin(), family.others.end(),
                     [&](std::size_t m) { return IsInside(point, table.boxes[m]); });
}

// Where a node meets one of another model, that one meets a node of the first one's model: both are
// in the grid.
void BuildMeetingGrid(const std::vector<BeamShellModel>& models, CornerTable& table) {
  Family family;
  for (std::size_t own = 0; own < models.size(); ++own) {
    FindFamily(models, table, own, family);
    for (std::size_t node = table.firstNode[own]; node < table.firstNode[own + 1]; ++node) {
      const Vector3& point = table.points[node];
      if (IsFinite(point) && MayMeetOthers(table, family, point)) table.meeting.push_back(node);
    }
  }
  std::vector<Vector3> points;
  points.reserve(table.meeting.size());
  for (const std::size_t node : table.meeting) points.push_back(table.points[node]);
  BuildPointGrid(points, table.grid);
}

void BuildCornerTable(const std::vector<BeamShellModel>& models, CornerTable& table) {
  ReserveTable(models, table);
  std::vector<Vector3> ends;
  table.firstNode = {0};
  table.firstCorner = {0};
  for (const BeamShellModel& model : models) {
    ends.insert(ends.end(), {model.EndPoint1, model.EndPoint2});
    AppendNodes(model, table);
  }
  BuildPointGrid(ends, table.ends);
  BuildMeetingGrid(models, table);
}

// The finite nodes of a model along the axis on which they reach farthest.
struct NodeSweep {
  struct Place {
    double position;
    std::size_t node;  // of the model
  };
  std::size_t axis = 0;
  std::vector<Place> places;  // ascending
};

void SortNodes(const std::vector<Vector3>& points, const NodeBox& box, NodeSweep& sweep) {
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t a = sweep.axis;
    if (box.high[i] - box.low[i] > box.high[a] - box.low[a]) sweep.axis = i;
  }
  sweep.places.clear();
  for (std::size_t node = 0; node < points.size(); ++node) {
    if (IsFinite(points[node])) sweep.places.push_back({points[node][sweep.axis], node});
  }
  std::sort(sweep.places.begin(), sweep.places.end(),
            [](const auto& a, const auto& b) { return a.position < b.position; });
}

// Appends the nodes of the own model near `point`, which is finite.
// sweep: of this model.
void FindOwnNear(const CornerTable& table, std::size_t own, const NodeSweep& sweep,
                 const Vector3& point, Numbers& found) {
  const double position = point[sweep.axis];
  auto place =
      std::lower_bound(sweep.places.begin(), sweep.places.end(), position - Reach,
                       [](const NodeSweep::Place& a, double low) { return a.position < low; });
  for (; place != sweep.places.end() && place->position <= position + Reach; ++place) {
    const std::size_t node = table.firstNode[own] + place->node;
    const Vector3& other = table.points[node];
    const bool isNear = std::fabs(other[0] - point[0]) <= Reach &&
                        std::fabs(other[1] - point[1]) <= Reach &&
                        std::fabs(other[2] - point[2]) <= Reach;
    if (isNear) found.push_back(node);
  }
}

// found: a superset of the family's nodes that coincide with `point`; a number may occur more than
// once.
// sweep: of the own model.
void FindCandidates(const CornerTable& table, const Family& family, const NodeSweep& sweep,
                    const Vector3& point, Numbers& found) {
  found.clear();
  const auto addAll = [&](std::size_t m) {
    for (std::size_t i = table.firstNode[m]; i < table.firstNode[m + 1]; ++i) found.push_back(i);
  };
  if (!IsFinite(point)) {
    addAll(family.own);
    for (const std::size_t m : family.others) addAll(m);
    return;
  }
  if (MayMeetOthers(table, family, point)) {
    FindNear(table.grid, point, found);
    for (std::size_t& i : found) i = table.meeting[i];
    found.insert(found.end(), family.nonFinite.begin(), family.nonFinite.end());
  }
  FindOwnNear(table, family.own, sweep, point, found);
}

// The model that a node belongs to.
std::size_t ModelOf(const CornerTable& table, const Family& family, std::size_t node) {
  if (node >= table.firstNode[family.own] && node < table.firstNode[family.own + 1]) {
    return family.own;
  }
  const auto next = std::upper_bound(table.firstNode.begin(), table.firstNode.end(), node);
  return static_cast<std::size_t>(next - table.firstNode.begin()) - 1;
}

// coincident: the family's corners at `point`; first those of the own model, then those of the
// other models, ascending. candidates: node numbers from FindCandidates; they are sorted.
void FindCoincident(const CornerTable& table, const Family& family, const Vector3& point,
                    Numbers& candidates, std::vector<Corner>& coincident) {
  coincident.clear();
  SortUnique(candidates);
  std::size_t nodes = 0;
  for (const std::size_t node : candidates) {
    if (Length(Subtract(table.points[node], point)) > CoincidenceTolerance) continue;
    const std::size_t m = ModelOf(table, family, node);
    if (m != family.own && !std::binary_search(family.others.begin(), family.others.end(), m)) {
      continue;
    }
    ++nodes;
    for (std::size_t c = table.firstCorner[node]; c < table.firstCorner[node + 1]; ++c) {
      coincident.push_back({m, table.corners[c]});
    }
  }
  if (nodes < 2) return;  // the corners of one node ascend
  std::sort(coincident.begin(), coincident.end(), [&](const Corner& a, const Corner& b) {
    const bool aIsOther = a.model != family.own, bIsOther = b.model != family.own;
    return std::tie(aIsOther, a.model, a.position) < std::tie(bIsOther, b.model, b.position);
  });
}

// Averages corner k of `shell` over the coincident corners in its surface (corner_sum.h).
void AverageCorner(const std::vector<BeamShellModel>& models, const std::vector<Corner>& coincident,
                   std::size_t k, Shell4Element& shell) {
  CornerSum sum;
  sum.normal = Normal(shell);
  sum.TK = shell.TK;
  TakeAlike(sum);
  for (const Corner& corner : coincident) {
    AddCorner(models[corner.model].Shells[corner.position / 4], corner.position % 4, sum);
  }
  // A multiplication by 1 / count would change the last bit.
  for (std::size_t i = 0; i < sum.top.size(); ++i) {
    shell.AvgStressTop[k][i] = sum.top[i] / sum.count;
    shell.AvgStressBottom[k][i] = sum.bottom[i] / sum.count;
  }
}

// Whether a coordinate is NaN. Then all corners of the family coincide with the point.
bool IsEverywhere(const Vector3& point) {
  return std::isnan(point[0]) || std::isnan(point[1]) || std::isnan(point[2]);
}

// Averages the corners at one node of model `own`.
// coincident: the corners that coincide with the node; positions: `count` positions (4 * shell + k)
// of the node's corners.
void AverageNode(const std::vector<Corner>& coincident, const std::size_t* positions,
                 std::size_t count, std::size_t own, std::vector<BeamShellModel>& models) {
  BeamShellModel& model = models[own];
  const Shell4Element* before = nullptr;  // the shell averaged last
  std::size_t beforeK = 0;
  for (std::size_t c = 0; c < count; ++c) {
    Shell4Element& shell = model.Shells[positions[c] / 4];
    const std::size_t k = positions[c] % 4;
    if (before != nullptr && LieAlike(shell, *before)) {
      // The same terms in the same order give the same sum, bit for bit.
      shell.AvgStressTop[k] = before->AvgStressTop[beforeK];
      shell.AvgStressBottom[k] = before->AvgStressBottom[beforeK];
    } else {
      AverageCorner(models, coincident, k, shell);
    }
    before = &shell;
    beforeK = k;
  }
}

// The lists that serve for one node after another.
struct NodeLists {
  Family family;
  NodeSweep sweep;  // of the own model
  Numbers candidates;
  std::vector<Corner> coincident;
};

// Averages all corners of model `own`.
void AverageModel(const CornerTable& table, std::size_t own, NodeLists& lists,
                  std::vector<BeamShellModel>& models) {
  FindFamily(models, table, own, lists.family);
  SortNodes(models[own].NodeCoords, table.boxes[own], lists.sweep);
  bool hasAll = false;  // whether `coincident` has all corners of the family
  // Node by node, because all corners at a node have the same coincident corners.
  for (std::size_t node = table.firstNode[own]; node < table.firstNode[own + 1]; ++node) {
    const std::size_t begin = table.firstCorner[node], end = table.firstCorner[node + 1];
    if (begin == end) continue;
    const Vector3& point = table.points[node];
    if (!hasAll || !IsEverywhere(point)) {
      FindCandidates(table, lists.family, lists.sweep, point, lists.candidates);
      FindCoincident(table, lists.family, point, lists.candidates, lists.coincident);
      hasAll = IsEverywhere(point);
    }
    AverageNode(lists.coincident, &table.corners[begin], end - begin, own, models);
  }
}

// The models that a thread takes at once.
constexpr std::int64_t PieceModels = 4;

}  // namespace

// A model's averages are written by the one thread that has the model; the others read only what is
// averaged, and where it lies.
void AverageBeamShellStresses(std::vector<BeamShellModel>& models, int threads) {
  CornerTable table;
  BuildCornerTable(models, table);
  ShareRange(threads, static_cast<std::int64_t>(models.size()), PieceModels,
             [&](std::int64_t first, std::int64_t end) {
               NodeLists lists;
               for (std::int64_t own = first; own < end; ++own) {
                 AverageModel(table, static_cast<std::size_t>(own), lists, models);
               }
             });
}

// A node: its position and, where it may meet other models, the copy in the grid; where its corners
// begin; its number in `meeting`, whose memory doubles as it grows; its place in the grid, whose
// buckets are up to twice as many.
std::uint64_t CountAveragingBytes(std::uint64_t nodes, std::uint64_t shells) {
  constexpr std::uint64_t BytesPerNode = 2 * sizeof(Vector3) + 6 * sizeof(std::size_t);
  constexpr std::uint64_t BytesPerShell = 4 * sizeof(std::size_t);
  return nodes * BytesPerNode + shells * BytesPerShell;
}

}  // namespace korvex
