// Times the averaging of corner stresses on plates of 50,000 and of 200,000 shell elements.
//
// The larger plate has four times the elements and the same width. A time that grows with the
// number of elements makes a ratio of about 4; comparing all pairs would make 16.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "results/average_stresses.h"

namespace {

using korvex::Model;
using korvex::ShellElement;

constexpr std::int32_t Columns = 500;
constexpr std::int32_t RowsPerBand = 3;                // two of quadrilaterals, one of triangles
constexpr std::int32_t ElementsPerBand = 4 * Columns;  // the triangles are two to a square
constexpr int Runs = 7;

// Appends an element of thickness 10 on `nodes`, with stresses that differ from corner to corner.
template <std::size_t N>
void AddElement(const Model& model, const std::int32_t (&nodes)[N],
                std::vector<ShellElement<static_cast<std::int32_t>(N)>>& elements,
                std::vector<std::int32_t>& connectivity) {
  std::array<double, 3 * N> coordinates{};
  for (std::size_t k = 0; k < N; ++k) {
    const korvex::Node& node = model.Tables.Nodes[static_cast<std::size_t>(nodes[k])];
    coordinates[3 * k] = node.x;
    coordinates[3 * k + 1] = node.y;
    coordinates[3 * k + 2] = node.z;
  }
  connectivity.insert(connectivity.end(), nodes, nodes + N);
  auto& element = elements.emplace_back();
  SetGeometry(element, coordinates.data(), static_cast<std::int32_t>(N), 2e11, 0.3, 10.0);
  for (std::size_t k = 0; k < N; ++k) {
    const double stress = static_cast<double>(elements.size() % 1000 + k);
    element.NodeStressTop[k].fill(stress);
    element.NodeStressBottom[k].fill(-stress);
  }
}

// A flat plate of `bands` bands of squares.
void MakePlate(std::int32_t bands, Model& model) {
  const std::int32_t rows = bands * RowsPerBand;
  model.Tables.NPOIN = (Columns + 1) * (rows + 1);
  for (std::int32_t y = 0; y <= rows; ++y) {
    for (std::int32_t x = 0; x <= Columns; ++x) {
      model.Tables.Nodes.push_back({static_cast<double>(x), static_cast<double>(y), 0.0});
    }
  }
  for (std::int32_t row = 0; row < rows; ++row) {
    for (std::int32_t column = 0; column < Columns; ++column) {
      const std::int32_t a = row * (Columns + 1) + column;
      const std::int32_t b = a + 1, c = b + Columns + 1, d = c - 1;
      if (row % RowsPerBand < 2) {
        AddElement(model, {a, b, c, d}, model.Shell4Elements, model.Tables.Shell4Nodes);
      } else {
        AddElement(model, {a, b, c}, model.Shell3Elements, model.Tables.Shell3Nodes);
        AddElement(model, {a, c, d}, model.Shell3Elements, model.Tables.Shell3Nodes);
      }
    }
  }
  model.Tables.NELEM_S_4ND = static_cast<std::int32_t>(model.Shell4Elements.size());
  model.Tables.NELEM_S_3ND = static_cast<std::int32_t>(model.Shell3Elements.size());
}

// The median time of several runs, in seconds. A first one, not counted, touches the memory.
double TimeAveraging(std::int32_t bands) {
  Model model;
  MakePlate(bands, model);
  AverageNodeStresses(model);
  std::vector<double> seconds;
  for (int run = 0; run < Runs; ++run) {
    const auto start = std::chrono::steady_clock::now();
    AverageNodeStresses(model);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    seconds.push_back(time.count());
  }
  std::sort(seconds.begin(), seconds.end());
  const double median = seconds[Runs / 2];
  std::printf("%d elements: %.3f seconds\n", model.Tables.NELEM_S_4ND + model.Tables.NELEM_S_3ND,
              median);
  return median;
}

}  // namespace

int main() {
  const double small = TimeAveraging(50000 / ElementsPerBand);
  const double large = TimeAveraging(200000 / ElementsPerBand);
  std::printf("ratio: %.1f\n", large / small);
  return 0;
}
