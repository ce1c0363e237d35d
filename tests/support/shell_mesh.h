// Meshes of flat shells for tests: grids of quads, of triangles or of both, prescribed
// displacements, and whole models turned in space.
#pragma once

#include <array>
#include <functional>
#include <ostream>

#include "model/model.h"
#include "support/model_text.h"

namespace korvex::test {

using Point3 = std::array<double, 3>;

// What the cells of a mesh are made of: each a quad, each two triangles, or alternately the one and
// the other.
enum class Cells { Quads, Triangles, Mixed };

// Its name in test names and in messages of failed tests.
const char* NameCells(Cells cells);
std::ostream& operator<<(std::ostream& out, Cells cells);

// The four corners of a cell by node, counter-clockwise seen from the side of its normal.
using Corners = std::array<int, 4>;

// Adds cell number `index` of a mesh, of material 0 and thickness 0. Triangles are cut along the
// diagonal from the first corner.
void AddCell(ModelText& model, Cells cells, int index, const Corners& corners);

// A grid of n1 x n2 cells over the unit square of (s, t), placed in space by `place`. The node at
// (i / n1, j / n2) is i + j (n1 + 1): with n1 the short side the matrix has the smallest band. The
// normal is d(place)/ds x d(place)/dt.
ModelText BuildGrid(int n1, int n2, Cells cells,
                    const std::function<Point3(double s, double t)>& place);

// The number of the grid's node (i, j).
inline int GridNode(int n1, int i, int j) { return i + j * (n1 + 1); }

// The diagonal entry of a supported dof.
inline constexpr double SupportPenalty = 1e20;

// Moves the node's six dofs by `values`: supports all of them and applies SupportPenalty times
// `values` as forces.
void Prescribe(ModelText& model, int node, const std::array<double, 6>& values);

// The six displacements of a node.
std::array<double, 6> NodeDisplacements(const Model& model, int node);

// v turned by the rotation of the unit quaternion (1, 2, 3, 4) / sqrt(30): a matrix with rational
// entries and no zero among them.
Point3 Turn(const Point3& v);
// The same of six displacements, or of a force and a moment: both vectors turned.
std::array<double, 6> TurnSix(const std::array<double, 6>& v);
StressVector TurnStress(const StressVector& stress);

// The whole model turned about the origin. Supports are copied unchanged. So a node must have all
// three translations fixed or none, and all three rotations fixed or none.
ModelText TurnModel(const ModelText& model);

}  // namespace korvex::test
