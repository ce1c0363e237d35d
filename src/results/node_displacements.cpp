// The file of node_displacements.h.
#include "results/node_displacements.h"

#include <fstream>
#include <iomanip>

#include "platform/gbk_texts.h"
#include "platform/stop_run.h"

namespace korvex {

namespace {

constexpr int ColumnWidth = 15;
constexpr int NumberWidth = ColumnWidth - 1;  // the colon takes the last place

}  // namespace

void WriteNodeDisplacements(const Model& model) {
  std::ofstream file("Node_Dis.txt");
  if (!file.is_open()) StopUnwritable(GbkDisplacementFileFailed);
  for (const char* word : {"Node", "dx", "dy", "dz", "rx", "ry", "rz"}) {
    file << std::setw(ColumnWidth) << word;
  }
  file << '\n';
  for (std::int32_t n = 0; n < model.NPOIN; ++n) {
    file << std::setw(NumberWidth) << n << ':';
    const double* u = &model.Displacements[static_cast<std::size_t>(n) * DofsPerNode];
    for (std::int32_t d = 0; d < DofsPerNode; ++d) file << std::setw(ColumnWidth) << u[d];
    file << '\n';
  }
}

}  // namespace korvex
