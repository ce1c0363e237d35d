// Whether the folders of `kvx cases` can take its results, before anything is solved.
#pragma once

#include <filesystem>

#include "commands/case_set.h"
#include "commands/made_folders.h"

namespace kvx {

// results: the folder of the results, absolute; made where it is missing, and noted. Throws a Stop
// (StopKind::ResultFile) with the remedy where the folder of a case holds a file that the run
// reads, or a model that kvx cases has not written (case_record.h); and where a folder cannot be
// written to. Leaves everything else as it is.
void CheckCaseFolders(const std::filesystem::path& results, const CaseSet& set, MadeFolders& made);

}  // namespace kvx
