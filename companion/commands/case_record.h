// case.json: beside the model of a case, what this model was made from.
//
//   {"case": "uls", "program": "kvx cases", "sources": [
//     {"file": "../../fem_solving.txt", "size": 9120, "hash": "85944171f73967e8"}, ...]}
//
// Files are relative to the folder of case.json, hashes those of HashBytes. It tells apart the
// models that `kvx cases` may replace from those that people made, and whether a source has been
// changed since. It is for mistakes, not against forgery.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "audit/solved_model.h"

namespace kvx {

inline constexpr const char* CaseRecordFileName = "case.json";

struct CaseSource {
  std::filesystem::path place;  // absolute
  ModelFileId id;
};

// Adds the file unless it is in the list. Returns its row there.
std::size_t AddSource(const CaseSource& source, std::vector<CaseSource>& list);

// The bytes of the file. folder: where it will stand, absolute; it exists. Pipes
// and the like are left out: nobody can look at them again.
std::string CaseRecordText(const std::string& name, const std::vector<CaseSource>& sources,
                           const std::filesystem::path& folder);

// Whether the folder has a record that `kvx cases` wrote.
bool HasCaseRecord(const std::filesystem::path& folder);

// The sources that are not as the folder's record says: "the model was made from
// ../../fem_solving.txt, which has changed since." Empty where all are, and where there is no
// record of ours. folder: any; its record may be any file.
std::string DescribeChangedSources(const std::filesystem::path& folder);

// The folders of the files that the record of a folder names, each once; empty without a record of
// ours. As DescribeChangedSources takes the folder.
std::vector<std::filesystem::path> ListSourceFolders(const std::filesystem::path& folder);

// What to do then.
inline constexpr const char* ChangedSourcesRemedy = "Run kvx cases again.";

}  // namespace kvx
