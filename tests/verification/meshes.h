// What the models of the book share: supports and loads by place, merged blocks, node orders.
#pragma once

#include <functional>

#include "support/shell_mesh.h"
#include "verification/run_model.h"

namespace korvex::book {

using test::Cells;
using test::Point3;

inline constexpr double Pi = 3.14159265358979323846;

// Supports by dof: ux, uy, uz, rx, ry, rz.
using Fixed = std::array<int, 6>;
inline constexpr Fixed Clamped{1, 1, 1, 1, 1, 1};
// Planes of symmetry with the normals X, Y and Z.
inline constexpr Fixed MirrorX{1, 0, 0, 0, 1, 1};
inline constexpr Fixed MirrorY{0, 1, 0, 1, 0, 1};
inline constexpr Fixed MirrorZ{0, 0, 1, 1, 1, 0};
// A plate in the XY plane: nothing strains in its plane.
inline constexpr Fixed PlateOnly{1, 1, 0, 0, 0, 1};

using Where = std::function<bool(const Point3&)>;

// Equal but for rounding: lengths are of the order of 1 to 1000 in the models.
inline bool Same(double a, double b) { return a - b < 1e-6 && b - a < 1e-6; }

// Fixes all nodes at these places. Several rows for one node add up.
void FixWhere(ModelText& model, const Where& where, const Fixed& fixed);

// The node at a place; the nearest one.
int NodeAt(const ModelText& model, const Point3& place);

// A uniform pressure on all shells.
void PressShells(ModelText& model, double pressure);

// A force on the straight edge of the nodes from..to in steps of `step`: equal shares, half of one
// at the ends, as linear elements of equal length take it.
void LoadEdge(ModelText& model, int from, int to, int step, const Six& force);

// Joins nodes that coincide; the first one stays.
void MergeNodes(ModelText& model);

// Numbers the nodes anew: node `order[k]` becomes node k. All references follow.
void RenumberNodes(ModelText& model, const std::vector<int>& order);

// Numbers the nodes in the order of `key`, so that the matrix has a small band.
void SortNodes(ModelText& model, const std::function<double(const Point3&)>& key);

// Appends the nodes and shells of `part`, with the thickness number `thickness`.
void Append(ModelText& model, const ModelText& part, int thickness = 0);

}  // namespace korvex::book
