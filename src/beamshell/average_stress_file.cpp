// Every part of the file is a table of rows: lines, or a shell with the lines of its stresses. The
// parts of the detail models are one table together, because most beams have few rows.
#include "beamshell/average_stress_file.h"

#include <algorithm>

#include "report/check_memory.h"
#include "report/texts.h"
#include "results/corner_stress.h"

namespace korvex {

namespace {

// Usual characters of a number and its comma.
constexpr std::int64_t NumberSize = 10;

// Adds one line of `count` values, at least one.
template <typename Value>
void AddValues(ResultText& text, const Value* values, std::size_t count) {
  Add(text, values[0]);
  for (std::size_t i = 1; i < count; ++i) Add(text, ',', values[i]);
  Add(text, '\n');
}

// displacements: DofsPerNode per node, node by node.
void AddDisplacements(ResultText& text, const std::vector<double>& displacements,
                      std::size_t node) {
  AddValues(text, &displacements[node * DofsPerNode], DofsPerNode);
}

void AddFace(ResultText& text, const StressVector& stress) {
  AddLine(text, stress[0], ',', stress[1], ',', stress[2], ',', stress[3], ',', stress[4], ',',
          stress[5], ',', EquivalentStress(stress));
}

// Adds shell e. connectivity: elements x Nodes node indices, element-major.
template <std::int32_t Nodes>
void AddShell(ResultText& text, const std::vector<ShellElement<Nodes>>& shells,
              const std::vector<std::int32_t>& connectivity, std::size_t e) {
  AddValues(text, &connectivity[e * Nodes], Nodes);
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    AddFace(text, shells[e].AvgStressTop[k]);
    AddFace(text, shells[e].AvgStressBottom[k]);
  }
}

template <std::int32_t Nodes>
void AddShells(ResultFile& file, const std::vector<ShellElement<Nodes>>& shells,
               const std::vector<std::int32_t>& connectivity) {
  constexpr std::int64_t RowSize = (2 * 7 * NumberSize + NumberSize) * Nodes;
  AddRows(file, static_cast<std::int64_t>(shells.size()), RowSize,
          [&](std::int64_t e, ResultText& text) {
            AddShell(text, shells, connectivity, static_cast<std::size_t>(e));
          });
}

void AddNodes(ResultFile& file, const Model& model) {
  AddLine(file.text, "NPOIN=", model.Tables.NPOIN);
  AddRows(file, static_cast<std::int64_t>(model.Tables.Nodes.size()), 3 * NumberSize,
          [&](std::int64_t n, ResultText& text) {
            const Node& node = model.Tables.Nodes[static_cast<std::size_t>(n)];
            AddLine(text, node.x, ',', node.y, ',', node.z);
          });
  AddRows(file, static_cast<std::int64_t>(model.Displacements.size() / DofsPerNode), 6 * NumberSize,
          [&](std::int64_t n, ResultText& text) {
            AddDisplacements(text, model.Displacements, static_cast<std::size_t>(n));
          });
}

// Adds a point as key(x,y,z).
void AddPoint(ResultText& text, const char* key, const Vector3& point) {
  AddLine(text, key, '(', point[0], ',', point[1], ',', point[2], ')');
}

// The rows of a detail model: its head lines, nodes, displacements, the number of shells, shells.
std::size_t CountDetailRows(const BeamShellModel& detail) {
  return 2 + detail.NodeCoords.size() + detail.Displacements.size() / DofsPerNode +
         detail.Shells.size();
}

// Adds row `row` of the detail model of this beam.
void AddDetailRow(ResultText& text, std::size_t beam, const BeamShellModel& detail,
                  std::size_t row) {
  if (row == 0) {
    AddLine(text, "BEI=", static_cast<std::int64_t>(beam));
    AddPoint(text, "SND", detail.EndPoint1);
    AddPoint(text, "END", detail.EndPoint2);
    AddLine(text, "NPOIN=", detail.NodeCount);
    return;
  }
  std::size_t i = row - 1;
  if (i < detail.NodeCoords.size()) {
    AddValues(text, detail.NodeCoords[i].data(), detail.NodeCoords[i].size());
    return;
  }
  i -= detail.NodeCoords.size();
  const std::size_t displacements = detail.Displacements.size() / DofsPerNode;
  if (i < displacements) {
    AddDisplacements(text, detail.Displacements, i);
  } else if (i == displacements) {
    AddLine(text, "NELEM=", detail.ShellCount);
  } else {
    AddShell(text, detail.Shells, detail.ShellNodes, i - displacements - 1);
  }
}

// Sets the first row of each detail model in their common table, and the number of all rows.
// details: [count]; firstRow: [count + 1].
void CountRows(const BeamShellModel* details, std::size_t count,
               std::vector<std::size_t>& firstRow) {
  AllocateItems("the rows of " + std::to_string(count) + " detail models", count + 1, firstRow);
  for (std::size_t b = 0; b < count; ++b) {
    firstRow[b + 1] = firstRow[b] + CountDetailRows(details[b]);
  }
}

// firstRow: of each of the detail models in their common table.
void AddDetails(std::size_t firstBeam, const BeamShellModel* details,
                const std::vector<std::size_t>& firstRow, ResultFile& file) {
  constexpr std::int64_t RowSize = 30 * NumberSize;  // half of the rows are shells
  AddRows(file, static_cast<std::int64_t>(firstRow.back()), RowSize,
          [&](std::int64_t row, ResultText& text) {
            const auto r = static_cast<std::size_t>(row);
            const auto next = std::upper_bound(firstRow.begin(), firstRow.end(), r);
            const auto b = static_cast<std::size_t>(next - firstRow.begin()) - 1;
            AddDetailRow(text, firstBeam + b, details[b], r - firstRow[b]);
          });
}

}  // namespace

void BeginAverageStressFile(const std::string& fileName, const Model& model, int threads,
                            ResultFile& file) {
  OpenResultFile(fileName, AverageStressFileFailed, file, threads);
  AddNodes(file, model);
  AddLine(file.text, "NELEM_S_4ND=", model.Tables.NELEM_S_4ND);
  AddShells(file, model.Shell4Elements, model.Tables.Shell4Nodes);
  AddLine(file.text, "NELEM_S_3ND=", model.Tables.NELEM_S_3ND);
  AddShells(file, model.Shell3Elements, model.Tables.Shell3Nodes);
  AddLine(file.text, "NELEM_B=", model.Tables.NELEM_B);
}

void AddDetailModels(std::size_t firstBeam, const BeamShellModel* details, std::size_t count,
                     ResultFile& file) {
  std::vector<std::size_t> firstRow;
  CountRows(details, count, firstRow);
  AddDetails(firstBeam, details, firstRow, file);
}

bool WriteAverageStressFile(const std::string& fileName, const Model& model, int threads) {
  // Before the file is opened: without memory none is begun.
  std::vector<std::size_t> firstRow;
  CountRows(model.BeamShellModels.data(), model.BeamShellModels.size(), firstRow);
  ResultFile file;
  BeginAverageStressFile(fileName, model, threads, file);
  AddDetails(0, model.BeamShellModels.data(), firstRow, file);
  return CloseResultFile(file);
}

}  // namespace korvex
