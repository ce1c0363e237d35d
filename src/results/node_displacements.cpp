#include "results/node_displacements.h"

#include "report/texts.h"
#include "results/result_file.h"

namespace korvex {

bool WriteNodeDisplacements(const std::string& fileName, const Model& model) {
  ResultFile file;
  OpenResultFile(fileName, DisplacementFileFailed, file);
  AddTitles(file, {"Node", "dx", "dy", "dz", "rx", "ry", "rz"});
  for (std::int32_t n = 0; n < model.Tables.NPOIN; ++n) {
    AddNodeColumn(file, n);
    const double* u = &model.Displacements[static_cast<std::size_t>(n) * DofsPerNode];
    for (std::int32_t d = 0; d < DofsPerNode; ++d) AddColumn(file, u[d]);
    AddLine(file);
  }
  return CloseResultFile(file);
}

}  // namespace korvex
