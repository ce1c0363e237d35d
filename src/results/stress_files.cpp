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

void WriteFace(ResultFile& file, std::int32_t node, const StressVector& stress) {
  AddNodeColumn(file, node);
  for (const double component : stress) AddColumn(file, component);
  AddColumn(file, EquivalentStress(stress));
  AddLine(file);
}

// connectivity: elements x Nodes node indices, element-major.
template <std::int32_t Nodes>
void WriteBlocks(ResultFile& file, const char* title, bool averaged,
                 const std::vector<ShellElement<Nodes>>& elements,
                 const std::vector<std::int32_t>& connectivity) {
  for (std::size_t e = 0; e < elements.size(); ++e) {
    const ShellElement<Nodes>& element = elements[e];
    const auto& top = averaged ? element.AvgStressTop : element.NodeStressTop;
    const auto& bottom = averaged ? element.AvgStressBottom : element.NodeStressBottom;
    AddLine(file, title, static_cast<std::int64_t>(e));
    AddTitles(file, {"Node", "SX", "SY", "SZ", "TXY", "TXZ", "TYZ", "SE"});
    for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
      const std::int32_t node = connectivity[e * Nodes + k];
      WriteFace(file, node, top[k]);
      WriteFace(file, node, bottom[k]);
    }
  }
}

bool WriteStressFile(const StressFile& layout, const std::string& fileName, const Model& model) {
  ResultFile file;
  OpenResultFile(fileName, StressFileFailed, file);
  WriteBlocks(file, layout.title4, layout.averaged, model.Shell4Elements, model.Tables.Shell4Nodes);
  WriteBlocks(file, layout.title3, layout.averaged, model.Shell3Elements, model.Tables.Shell3Nodes);
  return CloseResultFile(file);
}

}  // namespace

bool WriteElementNodeStresses(const std::string& fileName, const Model& model) {
  return WriteStressFile(ElementFile, fileName, model);
}

bool WriteAverageNodeStresses(const std::string& fileName, const Model& model) {
  return WriteStressFile(AverageFile, fileName, model);
}

}  // namespace korvex
