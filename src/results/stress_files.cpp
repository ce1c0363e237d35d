// The files of stress_files.h, written once for both files and both element kinds.
#include "results/stress_files.h"

#include "platform/gbk_texts.h"
#include "results/corner_stress.h"
#include "results/result_file.h"

namespace korvex {

namespace {

// What makes the difference between the two files.
struct StressFile {
  const char* name;
  const char* title4;  // before a four-node element's number
  const char* title3;  // before a three-node element's number
  bool averaged;       // which slots are written
};

constexpr StressFile ElementFile{"Shell element node stress.txt",
                                 "Four-nodes shell element:", "Three-nodes shell element:", false};
constexpr StressFile AverageFile{"Shell element average node stress.txt",
                                 "Four-nodes element:", "Three-nodes element:", true};

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

void WriteStressFile(const StressFile& layout, const Model& model) {
  ResultFile file;
  OpenResultFile(layout.name, GbkStressFileFailed, file);
  WriteBlocks(file, layout.title4, layout.averaged, model.Shell4Elements, model.Shell4Nodes);
  WriteBlocks(file, layout.title3, layout.averaged, model.Shell3Elements, model.Shell3Nodes);
  CloseResultFile(file);
}

}  // namespace

void WriteElementNodeStresses(const Model& model) { WriteStressFile(ElementFile, model); }

void WriteAverageNodeStresses(const Model& model) { WriteStressFile(AverageFile, model); }

}  // namespace korvex
