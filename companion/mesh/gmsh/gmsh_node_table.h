// From the number of a node to its row. Numbers may have gaps of any size.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/import_report.h"

namespace kvx {

struct GmshNodeTable {
  std::int64_t first = 0;                                     // the smallest number
  std::vector<std::int32_t> rows;                             // [number - first], -1: none
  std::vector<std::pair<std::int64_t, std::int32_t>> sparse;  // instead, where the gaps are large
};

// Ends the import where two nodes have the same number.
void FillNodeTable(const GmshMesh& mesh, const ImportReport& report, GmshNodeTable& table);

// The row of a node; -1 where there is none.
std::int32_t FindNode(const GmshNodeTable& table, std::int64_t number);

}  // namespace kvx
