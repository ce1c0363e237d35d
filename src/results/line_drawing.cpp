// Each item has a line of its own, and a group code precedes each value. The code "  0" after an
// entity belongs to the next one.
#include "results/line_drawing.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "report/check_memory.h"
#include "report/texts.h"
#include "results/result_file.h"

namespace korvex {

namespace {

void AddEdge(ResultText& text, const Vector3& a, const Vector3& b) {
  AddLine(text, "LINE\n  8\n0\n 10\n", a[0], "\n 20\n", a[1], "\n 30\n", a[2], "\n 11\n", b[0],
          "\n 21\n", b[1], "\n 31\n", b[2], "\n  0");
}

// Adds the edges of each element: node 1-2, 2-3 and so on, and from the last node to node 1.
// connectivity: elements x nodesPerElement node indices, element-major; points: one per node.
void AddEdges(ResultFile& file, const std::vector<std::int32_t>& connectivity,
              std::size_t nodesPerElement, const std::vector<Vector3>& points) {
  constexpr std::size_t EdgeSize = 85;
  AddRows(file, static_cast<std::int64_t>(connectivity.size() / nodesPerElement),
          static_cast<std::int64_t>(nodesPerElement * EdgeSize),
          [&](std::int64_t row, ResultText& text) {
            const std::size_t first = static_cast<std::size_t>(row) * nodesPerElement;
            for (std::size_t k = 0; k < nodesPerElement; ++k) {
              const std::int32_t a = connectivity[first + k];
              const std::int32_t b = connectivity[first + (k + 1) % nodesPerElement];
              AddEdge(text, points[static_cast<std::size_t>(a)],
                      points[static_cast<std::size_t>(b)]);
            }
          });
}

// Draws all shell elements. points: one position per node. Returns whether the file is complete.
bool WriteDrawing(const std::string& fileName, const Model& model,
                  const std::vector<Vector3>& points, int threads) {
  ResultFile file;
  OpenResultFile(fileName, DrawingFailed, file, threads);
  Add(file.text, "  0\nSECTION\n  2\nENTITIES\n  0\n");
  AddEdges(file, model.Tables.Shell4Nodes, NodesPerShell4, points);
  AddEdges(file, model.Tables.Shell3Nodes, NodesPerShell3, points);
  Add(file.text, "ENDSEC\n  0\nEOF\n");
  return CloseResultFile(file);
}

void AllocatePoints(const Model& model, std::vector<Vector3>& points) {
  AllocateItems("the drawing of " + std::to_string(model.Tables.NPOIN) + " nodal points",
                model.Tables.Nodes.size(), points);
}

// The first of node n's three translations.
const double* Translations(const Model& model, std::size_t n) {
  return &model.Displacements[n * DofsPerNode];
}

double LargestTranslation(const Model& model) {
  double largest = std::fabs(Translations(model, 0)[0]);
  for (std::size_t n = 0; n < model.Tables.Nodes.size(); ++n) {
    for (std::size_t d = 0; d < 3; ++d) {
      largest = std::max(largest, std::fabs(Translations(model, n)[d]));
    }
  }
  return largest;
}

double LargestExtent(const Model& model) {
  Node low = model.Tables.Nodes.front();
  Node high = low;
  for (const Node& node : model.Tables.Nodes) {
    low = {std::min(low.x, node.x), std::min(low.y, node.y), std::min(low.z, node.z)};
    high = {std::max(high.x, node.x), std::max(high.y, node.y), std::max(high.z, node.z)};
  }
  return std::max({high.x - low.x, high.y - low.y, high.z - low.z});
}

}  // namespace

bool WriteStructureDrawing(const std::string& fileName, const Model& model, int threads) {
  std::vector<Vector3> points;
  AllocatePoints(model, points);
  for (std::size_t n = 0; n < model.Tables.Nodes.size(); ++n) {
    const Node& node = model.Tables.Nodes[n];
    points[n] = {node.x, node.y, node.z};
  }
  return WriteDrawing(fileName, model, points, threads);
}

double ComputeDrawingScale(const Model& model) {
  if (model.Tables.Nodes.empty()) return 0.0;
  return LargestExtent(model) / LargestTranslation(model) * DrawnDisplacementShare;
}

bool WriteDeformationDrawing(const std::string& fileName, const Model& model, int threads) {
  const double scale = ComputeDrawingScale(model);
  std::vector<Vector3> points;
  AllocatePoints(model, points);
  for (std::size_t n = 0; n < model.Tables.Nodes.size(); ++n) {
    const Node& node = model.Tables.Nodes[n];
    const double* u = Translations(model, n);
    points[n] = {node.x + scale * u[0], node.y + scale * u[1], node.z + scale * u[2]};
  }
  return WriteDrawing(fileName, model, points, threads);
}

}  // namespace korvex
