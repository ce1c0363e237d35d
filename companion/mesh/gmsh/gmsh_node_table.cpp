#include "mesh/gmsh/gmsh_node_table.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace kvx {

namespace {

// A table by number is made where it has at most so many places for each node.
constexpr std::size_t PlacesOfNode = 4;

[[noreturn]] void FailDouble(const GmshMesh& mesh, const ImportReport& report, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);
  StopImport(report, {0, mesh.nodeLines[at]},
             "node " + std::to_string(mesh.nodeNumbers[at]) + " stands twice in the file");
}

void FillDense(const GmshMesh& mesh, std::size_t places, const ImportReport& report,
               GmshNodeTable& table) {
  table.rows.assign(places, -1);
  for (std::size_t k = 0; k < mesh.nodeNumbers.size(); ++k) {
    std::int32_t& row = table.rows[static_cast<std::size_t>(mesh.nodeNumbers[k] - table.first)];
    if (row >= 0) FailDouble(mesh, report, static_cast<std::int32_t>(k));
    row = static_cast<std::int32_t>(k);
  }
}

}  // namespace

void FillNodeTable(const GmshMesh& mesh, const ImportReport& report, GmshNodeTable& table) {
  const std::vector<std::int64_t>& numbers = mesh.nodeNumbers;
  if (numbers.empty()) return;
  const auto [least, most] = std::minmax_element(numbers.begin(), numbers.end());
  table.first = *least;
  const auto range = static_cast<std::size_t>(*most - *least);
  if (range / PlacesOfNode < numbers.size()) {
    FillDense(mesh, range + 1, report, table);
    return;
  }
  table.sparse.reserve(numbers.size());
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    table.sparse.emplace_back(numbers[k], static_cast<std::int32_t>(k));
  }
  std::sort(table.sparse.begin(), table.sparse.end());
  for (std::size_t k = 1; k < table.sparse.size(); ++k) {
    if (table.sparse[k].first == table.sparse[k - 1].first) {
      FailDouble(mesh, report, table.sparse[k].second);
    }
  }
}

std::int32_t FindNode(const GmshNodeTable& table, std::int64_t number) {
  if (table.sparse.empty()) {
    // Numbers are not negative, so the difference does not overflow.
    const std::int64_t at = number - table.first;
    const bool isInside = at >= 0 && at < static_cast<std::int64_t>(table.rows.size());
    return isInside ? table.rows[static_cast<std::size_t>(at)] : -1;
  }
  const auto found = std::lower_bound(table.sparse.begin(), table.sparse.end(),
                                      std::pair(number, std::int32_t{-1}));
  return found != table.sparse.end() && found->first == number ? found->second : -1;
}

}  // namespace kvx
