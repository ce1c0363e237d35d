#include "named_models.h"

#include <cmath>
#include <cstdint>
#include <fstream>

#include "deck/write_tables.h"
#include "order_models.h"
#include "stage_models.h"

namespace korvex::bench {

bool MakeNamedModel(const std::string& name, double equations, ModelTables& tables) {
  const double nodes = equations / 6.0;
  const auto side = [](double square) { return static_cast<std::int32_t>(std::sqrt(square)); };
  if (name == "plate") {
    MakeShuffledPlate(side(nodes), false, tables);
  } else if (name == "grillage") {
    // Nodes per cell: 1 + 2 / 6 + 5 / 20; 8 cells along for 5 across.
    const std::int32_t width = side(nodes / 1.58 / 1.6);
    MakeGrillage(width * 8 / 5, width, tables);
  } else if (name == "ring") {
    const std::int32_t across = side(nodes / 4.0);
    MakeRing(4 * across, across, tables);
  } else if (name == "box") {
    // Of width 2 and length 6 times the height it has about 50 nodes for a square of the height.
    const std::int32_t height = side(nodes / 50.0);
    MakeBoxGirder(6 * height, 2 * height, height, tables);
  } else if (name == "girders") {
    tables = MakeStageGrillage(side(nodes) - 1);
  } else {
    return false;
  }
  return true;
}

bool WriteModelFile(const ModelTables& tables, const std::string& fileName) {
  std::ofstream file(fileName, std::ios::binary);
  file << WriteTables(tables);
  file.close();
  return static_cast<bool>(file);
}

}  // namespace korvex::bench
