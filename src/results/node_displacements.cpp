#include "results/node_displacements.h"

#include "report/texts.h"
#include "results/result_file.h"

namespace korvex {

bool WriteNodeDisplacements(const std::string& fileName, const Model& model, int threads) {
  constexpr std::int64_t RowSize = 106;
  ResultFile file;
  OpenResultFile(fileName, DisplacementFileFailed, file, threads);
  Add(file.text, TitleLine({"Node", "dx", "dy", "dz", "rx", "ry", "rz"}));
  AddRows(file, model.Tables.NPOIN, RowSize, [&](std::int64_t n, ResultText& text) {
    const double* u = &model.Displacements[static_cast<std::size_t>(n) * DofsPerNode];
    AddLine(text, NodeColumn{static_cast<std::int32_t>(n)}, NumberColumn{u[0]}, NumberColumn{u[1]},
            NumberColumn{u[2]}, NumberColumn{u[3]}, NumberColumn{u[4]}, NumberColumn{u[5]});
  });
  return CloseResultFile(file);
}

}  // namespace korvex
