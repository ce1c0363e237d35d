// The blocks of average_stress_file.h, written once for the structure and the detail models.
#include "beamshell/average_stress_file.h"

#include <fstream>

#include "platform/gbk_texts.h"
#include "platform/stop_run.h"
#include "results/corner_stress.h"

namespace korvex {

namespace {

// One line of `count` values.
template <typename Value>
void WriteRow(std::ostream& file, const Value* values, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) file << (i == 0 ? "" : ",") << values[i];
  file << '\n';
}

// displacements: DofsPerNode for each node.
void WriteDisplacements(std::ostream& file, const std::vector<double>& displacements) {
  for (std::size_t first = 0; first < displacements.size(); first += DofsPerNode) {
    WriteRow(file, &displacements[first], DofsPerNode);
  }
}

void WriteFace(std::ostream& file, const StressVector& stress) {
  for (const double component : stress) file << component << ',';
  file << EquivalentStress(stress) << '\n';
}

// connectivity: elements x Nodes node indices, element-major.
template <std::int32_t Nodes>
void WriteShells(std::ostream& file, const std::vector<ShellElement<Nodes>>& shells,
                 const std::vector<std::int32_t>& connectivity) {
  for (std::size_t e = 0; e < shells.size(); ++e) {
    WriteRow(file, &connectivity[e * Nodes], Nodes);
    for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
      WriteFace(file, shells[e].AvgStressTop[k]);
      WriteFace(file, shells[e].AvgStressBottom[k]);
    }
  }
}

// A point behind its key, in brackets.
void WritePoint(std::ostream& file, const char* key, const Vector3& point) {
  file << key << '(' << point[0] << ',' << point[1] << ',' << point[2] << ")\n";
}

void WriteDetailModel(std::ostream& file, const BeamShellModel& detail) {
  file << "NPOIN=" << detail.NodeCount << '\n';
  for (const Vector3& node : detail.NodeCoords) WriteRow(file, node.data(), node.size());
  WriteDisplacements(file, detail.Displacements);
  file << "NELEM=" << detail.ShellCount << '\n';
  WriteShells(file, detail.Shells, detail.ShellNodes);
}

}  // namespace

void WriteAverageStressFile(const char* fileName, const Model& model) {
  std::ofstream file(fileName);
  if (!file.is_open()) StopUnwritable(GbkAverageStressFileFailed);

  file << "NPOIN=" << model.NPOIN << '\n';
  for (const Node& node : model.Nodes) {
    file << node.x << ',' << node.y << ',' << node.z << '\n';
  }
  WriteDisplacements(file, model.Displacements);
  file << "NELEM_S_4ND=" << model.NELEM_S_4ND << '\n';
  WriteShells(file, model.Shell4Elements, model.Shell4Nodes);
  file << "NELEM_S_3ND=" << model.NELEM_S_3ND << '\n';
  WriteShells(file, model.Shell3Elements, model.Shell3Nodes);

  file << "NELEM_B=" << model.NELEM_B << '\n';
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    const BeamShellModel& detail = model.BeamShellModels[b];
    file << "BEI=" << b << '\n';
    WritePoint(file, "SND", detail.EndPoint1);
    WritePoint(file, "END", detail.EndPoint2);
    WriteDetailModel(file, detail);
  }
}

}  // namespace korvex
