#include "results/node_displacements.h"

#include "report/texts.h"
#include "results/result_file.h"

namespace korvex {

bool WriteNodeDisplacements(const std::string& fileName, const Model& model, int threads) {
  constexpr std::int64_t RowSize = 106;
  ResultFile file;
  OpenResultFile(fileName, DisplacementFileFailed, file, threads);
  AddTitles(file.text, {"Node", "dx", "dy", "dz", "rx", "ry", "rz"});
  AddRows(file, model.Tables.NPOIN, RowSize, [&](std::int64_t n, std::string& text) {
    AddNodeColumn(text, static_cast<std::int32_t>(n));
    const double* u = &model.Displacements[static_cast<std::size_t>(n) * DofsPerNode];
    for (std::int32_t d = 0; d < DofsPerNode; ++d) AddColumn(text, u[d]);
    AddLine(text);
  });
  return CloseResultFile(file);
}

}  // namespace korvex
