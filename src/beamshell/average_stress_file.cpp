#include "beamshell/average_stress_file.h"

#include "report/texts.h"
#include "results/corner_stress.h"
#include "results/result_file.h"

namespace korvex {

namespace {

// Writes one line of `count` values.
template <typename Value>
void WriteRow(ResultFile& file, const Value* values, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) Add(file, ',');
    Add(file, values[i]);
  }
  AddLine(file);
}

// displacements: DofsPerNode per node, node by node.
void WriteDisplacements(ResultFile& file, const std::vector<double>& displacements) {
  for (std::size_t first = 0; first < displacements.size(); first += DofsPerNode) {
    WriteRow(file, &displacements[first], DofsPerNode);
  }
}

void WriteFace(ResultFile& file, const StressVector& stress) {
  for (const double component : stress) {
    Add(file, component);
    Add(file, ',');
  }
  AddLine(file, EquivalentStress(stress));
}

// connectivity: elements x Nodes node indices, element-major.
template <std::int32_t Nodes>
void WriteShells(ResultFile& file, const std::vector<ShellElement<Nodes>>& shells,
                 const std::vector<std::int32_t>& connectivity) {
  for (std::size_t e = 0; e < shells.size(); ++e) {
    WriteRow(file, &connectivity[e * Nodes], Nodes);
    for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
      WriteFace(file, shells[e].AvgStressTop[k]);
      WriteFace(file, shells[e].AvgStressBottom[k]);
    }
  }
}

// Writes a point as key(x,y,z).
void WritePoint(ResultFile& file, const char* key, const Vector3& point) {
  AddLine(file, key, '(', point[0], ',', point[1], ',', point[2], ')');
}

void WriteDetailModel(ResultFile& file, const BeamShellModel& detail) {
  AddLine(file, "NPOIN=", detail.NodeCount);
  for (const Vector3& node : detail.NodeCoords) WriteRow(file, node.data(), node.size());
  WriteDisplacements(file, detail.Displacements);
  AddLine(file, "NELEM=", detail.ShellCount);
  WriteShells(file, detail.Shells, detail.ShellNodes);
}

}  // namespace

bool WriteAverageStressFile(const std::string& fileName, const Model& model) {
  ResultFile file;
  OpenResultFile(fileName, AverageStressFileFailed, file);

  AddLine(file, "NPOIN=", model.Tables.NPOIN);
  for (const Node& node : model.Tables.Nodes) {
    AddLine(file, node.x, ',', node.y, ',', node.z);
  }
  WriteDisplacements(file, model.Displacements);
  AddLine(file, "NELEM_S_4ND=", model.Tables.NELEM_S_4ND);
  WriteShells(file, model.Shell4Elements, model.Tables.Shell4Nodes);
  AddLine(file, "NELEM_S_3ND=", model.Tables.NELEM_S_3ND);
  WriteShells(file, model.Shell3Elements, model.Tables.Shell3Nodes);

  AddLine(file, "NELEM_B=", model.Tables.NELEM_B);
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    const BeamShellModel& detail = model.BeamShellModels[b];
    AddLine(file, "BEI=", static_cast<std::int64_t>(b));
    WritePoint(file, "SND", detail.EndPoint1);
    WritePoint(file, "END", detail.EndPoint2);
    WriteDetailModel(file, detail);
  }
  return CloseResultFile(file);
}

}  // namespace korvex
