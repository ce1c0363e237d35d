#include "support/run_stages.h"

#include <gtest/gtest.h>

#include "run/file_names.h"
#include "run/stages.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"

namespace korvex::test {

namespace {

constexpr int Columns = 12, Rows = 24;

// A stiffener between two nodes of the grid. number: of the beam, chooses its section.
ModelText::Beam MakeStiffener(int node1, int node2, int number) {
  ModelText::Beam beam;
  beam.node1 = node1;
  beam.node2 = node2;
  beam.orientation = {0.1, 0.2, 1.0};
  beam.BeamSecType = number % 3;
  beam.BeamSecOz = 0.01 * (number % 4);
  beam.BeamSecMirrored = number % 2;
  return beam;
}

}  // namespace

FileTexts RunStages(const std::string& modelText, int threads) {
  const TempFolder folder;
  WriteFile(folder.Path() / ModelFileName, modelText);
  Job job;
  job.folder = folder.Path().string() + '/';
  job.threads = threads;
  FileTexts files;
  ForAllStages([&](const Stage& stage) {
    stage.work(job);
    if (stage.file != nullptr) files[stage.file] = ReadFile(folder.Path() / stage.file);
  });
  EXPECT_TRUE(job.incompleteFiles.empty());
  return files;
}

ModelText MakeStiffenedGrid() {
  ModelText text = BuildGrid(Columns, Rows, Cells::Mixed, [](double s, double t) {
    return Point3{2.0 * s, 4.0 * t, 0.3 * s * (1.0 - s) + 0.4 * t * t};
  });
  text.materials = {{2e11, 0.3, 0.0}};
  text.thicknesses = {0.01};
  text.tSections = {{0.1, 0.01, 0.05, 0.012}};
  text.lSections = {{0.12, 0.01, 0.04, 0.01}};
  text.cSections = {{0.05, 0.005}};
  for (const int column : {3, 8}) {
    for (int row = 0; row < Rows; ++row) {
      text.beams.push_back(MakeStiffener(GridNode(Columns, column, row),
                                         GridNode(Columns, column, row + 1),
                                         static_cast<int>(text.beams.size())));
    }
  }
  for (int i = 0; i <= Columns; ++i) text.restraints.push_back({GridNode(Columns, i, 0)});
  text.forces = {{GridNode(Columns, 5, Rows), {10.0, -20.0, 300.0, 1.0, 2.0, 3.0}}};
  for (int e = 0; e < static_cast<int>(text.shells4.size()); ++e) {
    text.shell4Loads.push_back({e, {-100.0, 50.0, -700.0}});
  }
  text.beamLoads = {{2, 10.0, -20.0}};
  return text;
}

ModelText MakePlate(double slope) {
  constexpr int LongSide = 70, ShortSide = 28;
  ModelText text = BuildGrid(LongSide, ShortSide, Cells::Quads, [slope](double s, double t) {
    return Point3{5.0 * s, 2.0 * t, slope * (5.0 * s + 3.0 * t)};
  });
  text.materials = {{2e11, 0.3, 0.0}};
  text.thicknesses = {0.01};
  for (int i = 0; i <= LongSide; ++i) text.restraints.push_back({GridNode(LongSide, i, 0)});
  text.forces = {{GridNode(LongSide, 5, ShortSide), {10.0, -20.0, 300.0, 1.0, 2.0, 3.0}}};
  return text;
}

}  // namespace korvex::test
