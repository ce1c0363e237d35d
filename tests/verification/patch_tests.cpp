// The patch tests of MacNeal & Harder (1985): constant strain and constant curvature on a distorted
// patch of quads, of triangles, or of both.
#include <algorithm>
#include <cmath>

#include "verification/book.h"
#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

constexpr std::size_t SX = 0, SY = 1, TXY = 3;  // places among the six stresses

// Displacements ux, uy, uz, rx, ry, rz at a place of the patch.
using Field = Six (*)(double x, double y);

// u = 1e-3 (x + y/2), v = 1e-3 (y + x/2)
Six MembraneField(double x, double y) {
  return {1e-3 * (x + y / 2), 1e-3 * (y + x / 2), 0.0, 0.0, 0.0, 0.0};
}

// w = 1e-3 (x^2 + xy + y^2) / 2 with rx = dw/dy and ry = -dw/dx
Six BendingField(double x, double y) {
  return {0.0, 0.0, 1e-3 * (x * x + x * y + y * y) / 2, 1e-3 * (y + x / 2), -1e-3 * (x + y / 2),
          0.0};
}

// With Cells::Mixed the first, third and fifth cell are quads.
ModelText BuildPatch(Cells cells, Field field) {
  ModelText model;
  model.materials = {{1e6, 0.25, 0.0}};
  model.thicknesses = {0.001};
  model.nodes = {{0.0, 0.0, 0.0},   {0.24, 0.0, 0.0},  {0.24, 0.12, 0.0}, {0.0, 0.12, 0.0},
                 {0.04, 0.02, 0.0}, {0.18, 0.03, 0.0}, {0.16, 0.08, 0.0}, {0.08, 0.08, 0.0}};
  const std::array<test::Corners, 5> corners{
      {{0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}, {4, 5, 6, 7}}};
  for (int i = 0; i < 5; ++i) test::AddCell(model, cells, i, corners[static_cast<std::size_t>(i)]);
  for (int node = 0; node < 4; ++node) {
    const Point3& p = model.nodes[static_cast<std::size_t>(node)];
    test::Prescribe(model, node, field(p[0], p[1]));
  }
  return model;
}

// The absolute values of one stress over all corners and both faces.
struct Range {
  double lowest = 0.0, highest = 0.0;
  double worst = 0.0;  // the largest relative error
};

// `component`: SX, SY or TXY. `exact`: its absolute value everywhere.
Range FindRange(const Results& results, std::size_t component, double exact) {
  Range range{exact * 1e9, 0.0, 0.0};
  for (const Corners& shell : results.shells) {
    for (const Corner& corner : shell) {
      for (const Six* face : {&corner.top, &corner.bottom}) {
        const double size = std::fabs((*face)[component]);
        range.lowest = std::min(range.lowest, size);
        range.highest = std::max(range.highest, size);
        range.worst = std::max(range.worst, std::fabs(size / exact - 1));
      }
    }
  }
  return range;
}

// The largest error of a displacement. Translations are relative to the largest translation of the
// field, rotations to its largest rotation.
double FindFieldError(const ModelText& model, const Results& results, Field field) {
  std::array<double, 2> sizes{}, errors{};
  for (std::size_t n = 0; n < model.nodes.size(); ++n) {
    const Six exact = field(model.nodes[n][0], model.nodes[n][1]);
    for (std::size_t d = 0; d < 6; ++d) {
      sizes[d / 3] = std::max(sizes[d / 3], std::fabs(exact[d]));
      errors[d / 3] = std::max(errors[d / 3], std::fabs(results.displacements[n][d] - exact[d]));
    }
  }
  return std::max(errors[0] / sizes[0], sizes[1] > 0.0 ? errors[1] / sizes[1] : 0.0);
}

// The result files have six digits.
constexpr double FileDigits = 1e-5;

void AddPatch(Cells cells, const std::string& name, bool bending, std::vector<Row>& rows) {
  const Field field = bending ? BendingField : MembraneField;
  const double sx = bending ? 2.0 / 3.0 : 4000.0 / 3.0, txy = bending ? 0.2 : 400.0;
  const ModelText model = BuildPatch(cells, field);
  const Results results = RunModel(model, Read::Stresses);
  const Range x = FindRange(results, SX, sx), y = FindRange(results, SY, sx);
  const Range xy = FindRange(results, TXY, txy);
  const double stressError = std::max({x.worst, y.worst, xy.worst});
  const double fieldError = FindFieldError(model, results, field);
  const bool exact = stressError < FileDigits;
  rows.push_back({std::string(bending ? "bending, " : "membrane, ") + name,
                  Figure(x.lowest) + " to " + Figure(x.highest),
                  Figure(xy.lowest) + " to " + Figure(xy.highest),
                  exact ? RoundingFigure(stressError, FileDigits) : Figure(stressError, 2),
                  exact ? RoundingFigure(fieldError, FileDigits) : Figure(fieldError, 1)});
}

}  // namespace

Fillings ComputePatchTests(Extent /*extent*/) {
  std::vector<Row> rows{{"", "SX", "TXY", "largest error of a stress", "of a displacement"}};
  for (const bool bending : {false, true}) {
    AddPatch(Cells::Quads, "quads", bending, rows);
    AddPatch(Cells::Triangles, "triangles", bending, rows);
    AddPatch(Cells::Mixed, "both", bending, rows);
  }
  return {{"table:patches", FormatTable(rows)}, {"value:file digits", Figure(FileDigits, 1)}};
}

}  // namespace korvex::book
