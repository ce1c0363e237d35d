// The materials of a bulk data deck. MAT1 is taken; the others have no counterpart.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"

namespace kvx {

struct NastranMaterial {
  std::int64_t number = 0;
  std::size_t card = 0;   // row of the deck's cards
  std::int32_t row = -1;  // row of the model's materials; -1: not yet, or it cannot be taken
  korvex::Material values;
  std::string lacks;  // why it cannot be taken; "": it can
  bool isUsed = false;
};

struct MaterialTable {
  std::vector<NastranMaterial> materials;
  std::unordered_map<std::int64_t, std::size_t> rows;  // number -> row of materials
  double massFactor = 1.0;                             // PARAM WTMASS: of all densities
};

// Reads all materials; repeated numbers are reported.
void ReadMaterials(const NastranDeck& deck, const std::vector<std::uint32_t>& cards,
                   MaterialTable& table, ImportReport& report);

// The material with this number, now used and, where it can be taken, a row of the model. Null
// where there is none.
const NastranMaterial* UseMaterial(const NastranDeck& deck, std::int64_t number,
                                   MaterialTable& table, ImportModel& model, ImportReport& report);

// Reports the materials that nothing uses.
void ReportUnusedMaterials(const NastranDeck& deck, const MaterialTable& table,
                           ImportReport& report);

}  // namespace kvx
