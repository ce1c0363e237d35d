// The search and the sums of average_corners.h.
//
// Corners are numbered through all models, shell by shell: ascending numbers are the order of the
// sums. The rule excludes a corner whose distance is greater than the tolerance; a distance that is
// not a number excludes nothing. A corner without finite coordinates, as a beam without length has
// them, is therefore averaged with all corners of its own model and of those that share an end. No
// grid can hold it: such corners are listed, and compared with all.
#include "beamshell/average_corners.h"

#include <algorithm>

#include "beamshell/point_grid.h"
#include "results/corner_sum.h"

namespace korvex {

namespace {

using Numbers = std::vector<std::size_t>;

// The corners of all models, by number, and what finds them.
struct CornerTable {
  Numbers firstCorner;          // [models + 1] each model's first corner
  std::vector<Vector3> points;  // [corners] positions
  PointGrid grid;               // of `points`
  Numbers placeless;            // corners that the grid does not hold, ascending
  PointGrid ends;               // of the models' end points: 2 m and 2 m + 1 are those of model m
};

// A model and those that share an end with it.
struct Family {
  std::size_t own = 0;
  Numbers others;     // ascending
  Numbers placeless;  // corners of all of them that the grid does not hold
};

// A corner of a model's shell.
struct Corner {
  std::size_t model, shell, k;
};

void BuildCornerTable(const std::vector<BeamShellModel>& models, CornerTable& table) {
  std::vector<Vector3> ends;
  table.firstCorner = {0};
  for (const BeamShellModel& model : models) {
    ends.insert(ends.end(), {model.EndPoint1, model.EndPoint2});
    for (const std::int32_t node : model.ShellNodes) {
      const Vector3& point = model.NodeCoords[static_cast<std::size_t>(node)];
      if (!HasPlace(point)) table.placeless.push_back(table.points.size());
      table.points.push_back(point);
    }
    table.firstCorner.push_back(table.points.size());
  }
  BuildPointGrid(table.points, table.grid);
  BuildPointGrid(ends, table.ends);
}

// Ends closer than the tolerance are one. At the tolerance they are not, unlike corners.
bool ShareEnd(const BeamShellModel& a, const BeamShellModel& b) {
  for (const Vector3& endA : {a.EndPoint1, a.EndPoint2}) {
    for (const Vector3& endB : {b.EndPoint1, b.EndPoint2}) {
      if (Length(Subtract(endA, endB)) < CoincidenceTolerance) return true;
    }
  }
  return false;
}

void SortOut(Numbers& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

void FindFamily(const std::vector<BeamShellModel>& models, const CornerTable& table,
                std::size_t own, Family& family) {
  family.own = own;
  family.others.clear();
  for (const Vector3& end : {models[own].EndPoint1, models[own].EndPoint2}) {
    if (HasPlace(end)) FindNear(table.ends, end, family.others);
  }
  for (std::size_t& end : family.others) end /= 2;
  SortOut(family.others);
  const auto isStranger = [&](std::size_t m) {
    return m == own || !ShareEnd(models[m], models[own]);
  };
  family.others.erase(std::remove_if(family.others.begin(), family.others.end(), isStranger),
                      family.others.end());

  family.placeless.clear();
  const auto addPlaceless = [&](std::size_t m) {
    const auto begin = table.placeless.begin(), end = table.placeless.end();
    family.placeless.insert(family.placeless.end(),
                            std::lower_bound(begin, end, table.firstCorner[m]),
                            std::lower_bound(begin, end, table.firstCorner[m + 1]));
  };
  addPlaceless(own);
  for (const std::size_t m : family.others) addPlaceless(m);
}

// found: the numbers of all corners that may coincide with `point`, and others, each once; the
// family's own model first, then ascending.
void FindCandidates(const CornerTable& table, const Family& family, const Vector3& point,
                    Numbers& found) {
  found.clear();
  if (HasPlace(point)) {
    FindNear(table.grid, point, found);
    found.insert(found.end(), family.placeless.begin(), family.placeless.end());
  } else {
    const auto addAll = [&](std::size_t m) {
      for (std::size_t c = table.firstCorner[m]; c < table.firstCorner[m + 1]; ++c) {
        found.push_back(c);
      }
    };
    addAll(family.own);
    for (const std::size_t m : family.others) addAll(m);
  }
  SortOut(found);
  const auto ownBegin = std::lower_bound(found.begin(), found.end(), table.firstCorner[family.own]);
  const auto ownEnd = std::lower_bound(ownBegin, found.end(), table.firstCorner[family.own + 1]);
  std::rotate(found.begin(), ownBegin, ownEnd);
}

// coincident: of the candidates the family's corners at `point`.
void KeepCoincident(const CornerTable& table, const Family& family, const Vector3& point,
                    const Numbers& candidates, std::vector<Corner>& coincident) {
  coincident.clear();
  for (const std::size_t c : candidates) {
    if (Length(Subtract(table.points[c], point)) > CoincidenceTolerance) continue;
    const auto next = std::upper_bound(table.firstCorner.begin(), table.firstCorner.end(), c);
    const auto m = static_cast<std::size_t>(next - table.firstCorner.begin()) - 1;
    if (m != family.own && !std::binary_search(family.others.begin(), family.others.end(), m)) {
      continue;
    }
    const std::size_t position = c - table.firstCorner[m];
    coincident.push_back({m, position / 4, position % 4});
  }
}

// Averages corner k of `shell` over the coincident corners that lie in its surface.
void AverageCorner(const std::vector<BeamShellModel>& models, const std::vector<Corner>& coincident,
                   std::size_t k, Shell4Element& shell) {
  CornerSum sum;
  sum.normal = Normal(shell);
  sum.TK = shell.TK;
  for (const Corner& corner : coincident) {
    AddCorner(models[corner.model].Shells[corner.shell], corner.k, sum);
  }
  // Divided, not multiplied by the reciprocal: that would change the last bit.
  for (std::size_t i = 0; i < sum.top.size(); ++i) {
    shell.AvgStressTop[k][i] = sum.top[i] / sum.count;
    shell.AvgStressBottom[k][i] = sum.bottom[i] / sum.count;
  }
}

}  // namespace

void AverageBeamShellStresses(std::vector<BeamShellModel>& models) {
  CornerTable table;
  BuildCornerTable(models, table);
  Family family;
  Numbers candidates;
  std::vector<Corner> coincident;
  for (std::size_t own = 0; own < models.size(); ++own) {
    BeamShellModel& model = models[own];
    FindFamily(models, table, own, family);
    // Node by node: all corners at a node have the same coincident ones.
    for (std::size_t node = 0; node < model.NodeCoords.size(); ++node) {
      const Vector3& point = model.NodeCoords[node];
      FindCandidates(table, family, point, candidates);
      KeepCoincident(table, family, point, candidates, coincident);
      for (const Corner& corner : coincident) {
        if (corner.model != own) break;
        const std::size_t position = corner.shell * 4 + corner.k;
        if (static_cast<std::size_t>(model.ShellNodes[position]) != node) continue;
        AverageCorner(models, coincident, corner.k, model.Shells[corner.shell]);
      }
    }
  }
}

}  // namespace korvex
