// The case files (*.toml) in the folder of a model, and what they name. A text that is no case
// file, such as the map file of an import, names nothing.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kvx {

// The name that kvx cases takes by itself.
inline constexpr const char* CaseFileName = "cases.toml";

// All *.toml of a folder, without it, by their names: the same order on every system. None where
// there is no folder.
std::vector<std::filesystem::path> ListTomlFiles(const std::filesystem::path& folder);

// Whether a case of the file takes its loads from this file of the same folder. Where the text has
// cases and a mistake, it is enough that it has the name somewhere: who mends it needs the loads.
// loads: UTF-8, without folder.
bool NamesLoads(const std::filesystem::path& caseFile, const std::string& loads);

// Whether the cases.toml beside a model file has loads or accelerations for this model.
bool HasCasesBeside(const std::filesystem::path& modelFile);

}  // namespace kvx
