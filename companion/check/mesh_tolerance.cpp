#include "check/mesh_tolerance.h"

#include <algorithm>

#include "check/node_tree.h"
#include "check/usable_elements.h"

namespace kvx {

namespace {

constexpr double ShareOfExtent = 1e-6;
constexpr double ShareOfEdge = 1e-3;

}  // namespace

double DefaultTolerance(const CheckedModel& model) {
  Box box;
  std::vector<float> edges;  // the first edge of each element; six digits are more than enough
  VisitUsable(model, [&](korvex::Section, std::int32_t, const ElementNodes& element) {
    for (std::size_t k = 0; k < element.count; ++k) {
      if (!HasUsablePlace(model, element.nodes[k])) return;
    }
    const korvex::Vector3 a = PlaceOf(model.tables, element.nodes[0]);
    const korvex::Vector3 b = PlaceOf(model.tables, element.nodes[1]);
    if (edges.empty()) box = {a, a};
    edges.push_back(static_cast<float>(korvex::Length(korvex::Subtract(a, b))));
    for (std::size_t k = 0; k < element.count; ++k) {
      const korvex::Vector3 place = PlaceOf(model.tables, element.nodes[k]);
      for (std::size_t i = 0; i < 3; ++i) {
        box.low[i] = std::min(box.low[i], place[i]);
        box.high[i] = std::max(box.high[i], place[i]);
      }
    }
  });
  if (edges.empty()) return 0.0;
  const auto middle = edges.begin() + static_cast<std::ptrdiff_t>(edges.size() / 2);
  std::nth_element(edges.begin(), middle, edges.end());
  const double extent = korvex::Length(korvex::Subtract(box.high, box.low));
  return std::min(ShareOfExtent * extent, ShareOfEdge * static_cast<double>(*middle));
}

}  // namespace kvx
