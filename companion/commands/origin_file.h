// import.json: where the rows of an imported model come from, beside its model file.
//
//   {"kvx": 1, "source": "deck.bdf", "format": "Nastran bulk data", "hash": "0123456789abcdef",
//    "files": ["fem_solving.txt", ...], "hashes": ["85944171f73967e8", ...], "types": ["CQUAD4",
//    ...], "nodes": [...], "shells4":
//    {"numbers": [...], "types": [...]}, "shells3": ..., "beams": ..., "materials": [...],
//    "thicknesses": [...], "sectionsT": [...], "sectionsL": [...], "sectionsC": [...], "groups":
//    [{"name", "source", "nodes", "shells4", "shells3", "beams"}], "report": {"cards": {"GRID":
//    {"count", "file", "line"}, ...},
//               "entries": [{"card", "fate", "reason", "count", "file", "line", "example"}]}}
//
// Rows are 0-based, numbers are the deck's. Fates: "limited", "no effect", "lost", "refused".
// "files": what the import wrote beside it, "hashes": of their bytes. A line of no file has the
// line null.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "commands/hash_text.h"
#include "mesh/import_report.h"
#include "tables/model_origin.h"

namespace kvx {

inline constexpr const char* OriginFileName = "import.json";

// Whether a folder has an import.json, and whether it is that of its model.
enum class OriginState { None, Fits, Foreign };

// The text of the file: ASCII. Numbers are written by hand and not as a tree: a model may have
// millions. files: the names of the files that the import wrote, without folder; hashes: of the
// bytes of each (HashText of hash_text.h), or none.
std::string WriteOrigin(const ModelOrigin& origin, const ImportReport& report,
                        const std::vector<std::string>& files,
                        const std::vector<std::string>& hashes = {});

// Reads the part that is needed to name rows. Returns false, with a sentence in `reason`, where the
// text is no such file. No memory is taken for what it claims to hold. Rows of groups that do not
// exist are left out; the rows of each group are ascending, each once.
bool ReadOrigin(std::string_view text, ModelOrigin& origin, std::string& reason);

// The names of the files that the import wrote. Only names without a folder are taken, since a
// caller may overwrite or remove what is named here. Returns as ReadOrigin does.
bool ReadOriginFiles(std::string_view text, std::vector<std::string>& files, std::string& reason);

// The same with the hash of each file's bytes; "" where the text has none.
struct ImportedFile {
  std::string name;  // UTF-8, without folder
  std::string hash;
};
bool ReadImportedFiles(std::string_view text, std::vector<ImportedFile>& files,
                       std::string& reason);

// Changes the nodes of an import.json to a new order (order[k]: the old row of the node at row k)
// and its hash; every other byte stays. Throws a Stop where the text is no import.json of that many
// nodes.
std::string MoveOriginNodes(std::string_view text, const std::vector<std::int32_t>& order,
                            std::uint64_t hash);

// The text with other hashes of the files: all of ReadImportedFiles, in their order. Every other
// byte stays; all of them where the text has no hash for each.
std::string ChangeImportedHashes(std::string_view text, const std::vector<ImportedFile>& files);

// The origin of the model in the folder of its file, where there is one that fits its tables; else
// an empty one. modelFile: the file's name with its folder, UTF-8; its name alone: in the current
// folder. The model of a load case (case_record.h) has that of the structure it was made from.
// Never complains: a model without it is as good as any. An import.json that cannot be read is
// Foreign.
OriginState FindOrigin(const std::string& modelFile, const korvex::ModelTables& tables,
                       ModelOrigin& origin);

}  // namespace kvx
