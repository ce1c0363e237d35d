// The file of node_displacements.h.
#include "results/node_displacements.h"

#include "platform/gbk_texts.h"
#include "results/result_file.h"

namespace korvex {

void WriteNodeDisplacements(const Model& model) {
  ResultFile file;
  OpenResultFile("Node_Dis.txt", GbkDisplacementFileFailed, file);
  AddTitles(file, {"Node", "dx", "dy", "dz", "rx", "ry", "rz"});
  for (std::int32_t n = 0; n < model.NPOIN; ++n) {
    AddNodeColumn(file, n);
    const double* u = &model.Displacements[static_cast<std::size_t>(n) * DofsPerNode];
    for (std::int32_t d = 0; d < DofsPerNode; ++d) AddColumn(file, u[d]);
    AddLine(file);
  }
  CloseResultFile(file);
}

}  // namespace korvex
