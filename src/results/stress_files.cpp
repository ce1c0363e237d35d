#include "results/stress_files.h"

#include "report/texts.h"
#include "results/corner_stress.h"
#include "results/result_file.h"

namespace korvex {

namespace {

// The differences between the two files.
struct StressFile {
  const char* title4;  // before a four-node element's number
  const char* title3;  // before a three-node element's number
  bool averaged;       // whether the averages are written or the stresses as recovered
};

constexpr StressFile ElementFile{"Four-nodes shell element:", "Three-nodes shell element:", false};
constexpr StressFile AverageFile{"Four-nodes element:", "Three-nodes element:", true};

void AddFace(ResultText& text, std::int32_t node, const StressVector& stress) {
  AddLine(text, NodeColumn{node}, NumberColumn{stress[0]}, NumberColumn{stress[1]},
          NumberColumn{stress[2]}, NumberColumn{stress[3]}, NumberColumn{stress[4]},
          NumberColumn{stress[5]}, NumberColumn{EquivalentStress(stress)});
}

// The block of element e. titles: of the columns; connectivity: elements x Nodes node indices,
// element-major.
template <std::int32_t Nodes>
void AddBlock(ResultText& text, const char* title, const std::string& titles, bool averaged,
              std::size_t e, const ShellElement<Nodes>& element,
              const std::vector<std::int32_t>& connectivity) {
  const auto& top = averaged ? element.AvgStressTop : element.NodeStressTop;
  const auto& bottom = averaged ? element.AvgStressBottom : element.NodeStressBottom;
  Add(text, title, static_cast<std::int64_t>(e), '\n', titles);
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    const std::int32_t node = connectivity[e * Nodes + k];
    AddFace(text, node, top[k]);
    AddFace(text, node, bottom[k]);
  }
}

template <std::int32_t Nodes>
void AddBlocks(ResultFile& file, const char* title, bool averaged,
               const std::vector<ShellElement<Nodes>>& elements,
               const std::vector<std::int32_t>& connectivity) {
  constexpr std::int64_t LineSize = 121;
  const std::string titles = TitleLine({"Node", "SX", "SY", "SZ", "TXY", "TXZ", "TYZ", "SE"});
  AddRows(file, static_cast<std::int64_t>(elements.size()), (2 * Nodes + 2) * LineSize,
          [&](std::int64_t row, ResultText& text) {
            const auto e = static_cast<std::size_t>(row);
            AddBlock(text, title, titles, averaged, e, elements[e], connectivity);
          });
}

bool WriteStressFile(const StressFile& layout, const std::string& fileName, const Model& model,
                     int threads) {
  ResultFile file;
  OpenResultFile(fileName, StressFileFailed, file, threads);
  AddBlocks(file, layout.title4, layout.averaged, model.Shell4Elements, model.Tables.Shell4Nodes);
  AddBlocks(file, layout.title3, layout.averaged, model.Shell3Elements, model.Tables.Shell3Nodes);
  return CloseResultFile(file);
}

}  // namespace

bool WriteElementNodeStresses(const std::string& fileName, const Model& model, int threads) {
  return WriteStressFile(ElementFile, fileName, model, threads);
}

bool WriteAverageNodeStresses(const std::string& fileName, const Model& model, int threads) {
  return WriteStressFile(AverageFile, fileName, model, threads);
}

}  // namespace korvex
