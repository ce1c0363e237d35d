// The file of node_displacements.h.
#include "results/node_displacements.h"

#include <fstream>

#include "platform/gbk_texts.h"
#include "platform/stop_run.h"
#include "results/columns.h"

namespace korvex {

void WriteNodeDisplacements(const Model& model) {
  std::ofstream file("Node_Dis.txt");
  if (!file.is_open()) StopUnwritable(GbkDisplacementFileFailed);
  WriteColumnTitles(file, {"Node", "dx", "dy", "dz", "rx", "ry", "rz"});
  for (std::int32_t n = 0; n < model.NPOIN; ++n) {
    WriteNodeNumber(file, n);
    const double* u = &model.Displacements[static_cast<std::size_t>(n) * DofsPerNode];
    for (std::int32_t d = 0; d < DofsPerNode; ++d) WriteValue(file, u[d]);
    file << '\n';
  }
}

}  // namespace korvex
