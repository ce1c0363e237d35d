// Helpers for the models of the book: supports and loads by place, merged meshes, node orders.
//
// Dofs of a node are ux, uy, uz, rx, ry, rz, loads Fx, Fy, Fz, Mx, My, Mz, in the global axes.
// Model units throughout.
#pragma once

#include <functional>
#include <initializer_list>

#include "support/shell_mesh.h"
#include "verification/run_model.h"

namespace korvex::book {

using test::Cells;
using test::Point3;

inline constexpr double Pi = 3.14159265358979323846;

// The supports of a node, by dof: 1 = fixed, 0 = free.
using Fixed = std::array<int, 6>;
inline constexpr Fixed Clamped{1, 1, 1, 1, 1, 1};
// Planes of symmetry with normal X, Y and Z.
inline constexpr Fixed MirrorX{1, 0, 0, 0, 1, 1};
inline constexpr Fixed MirrorY{0, 1, 0, 1, 0, 1};
inline constexpr Fixed MirrorZ{0, 0, 1, 1, 1, 0};
// For a plate in the XY plane that only bends.
inline constexpr Fixed PlateOnly{1, 1, 0, 0, 0, 1};

// Fixes these dofs alone, given by their places among the six.
Fixed Hold(std::initializer_list<std::size_t> dofs);

// A load with this one component of the six.
Six SingleLoad(std::size_t component, double value);

using Where = std::function<bool(const Point3&)>;

// Equal except for rounding errors. Coordinates in the models are of the order of 1 to 1000.
inline bool Same(double a, double b) { return a - b < 1e-6 && b - a < 1e-6; }

// Fixes all nodes at these places. Where a node gets several rows, a dof fixed in one is fixed.
void FixWhere(ModelText& model, const Where& where, const Fixed& fixed);

// The node that is nearest to `place`.
int NodeAt(const ModelText& model, const Point3& place);

// A uniform pressure on all shells, positive along their normals.
void PressShells(ModelText& model, double pressure);

// Spreads a load over the straight edge of the nodes from, from + step, ..., to: equal shares, half
// a share at each end. These are the nodal loads of linear elements of equal length.
void LoadEdge(ModelText& model, int from, int to, int step, const Six& force);

// Joins nodes that coincide; the first of them stays.
void MergeNodes(ModelText& model);

// Renumbers the nodes: node `order[k]` becomes node k. All references follow. `order` holds every
// node once.
void RenumberNodes(ModelText& model, const std::vector<int>& order);

// Renumbers the nodes in ascending order of `key`, to give the matrix a small band.
void SortNodes(ModelText& model, const std::function<double(const Point3&)>& key);

// Appends the nodes and shells of `part`; its shells get the thickness row `thickness`.
void Append(ModelText& model, const ModelText& part, int thickness = 0);

}  // namespace korvex::book
