// The load cases of an import as files: what they are called, their loads, cases.toml.
#pragma once

#include <string>
#include <vector>

#include "mesh/build_tables.h"

namespace kvx {

inline constexpr const char* ImportCasesFileName = "cases.toml";

// A case as it is written.
struct ImportedCase {
  std::string name;      // as cases.toml has it: a name for a folder on every system
  std::string deckName;  // as the deck has it
  std::string file;      // of its loads; "": they stand in the model file, or it has none
  bool hasAcceleration = false;
  korvex::Vector3 acceleration{};  // global, length / time^2 in model units
  korvex::Vector3 force{};         // sum of its loads with gravity, global; known after the check
};

// Names of the deck as far as a folder may have them, blanks as "-", each once.
std::vector<std::string> NamesOfFolders(const std::vector<std::string>& deckNames);

// The cases in their order, with such names.
void NameCases(const std::vector<BuiltCase>& built, std::vector<ImportedCase>& cases);

// Whether one model file holds all loads: at most one case, without acceleration.
bool FitModelFile(const std::vector<BuiltCase>& built);

// The sections NFOR .. NDL_B of the tables.
std::string LoadsFileText(const korvex::ModelTables& loads);

// The text of cases.toml. deck: for its comment, any bytes.
std::string CasesFileText(const std::string& deck, const std::vector<ImportedCase>& cases);

}  // namespace kvx
