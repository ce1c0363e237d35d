// Bulk data decks (.bdf, .dat, .nas) -> ImportModel. See docs/import.md for each card.
#pragma once

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/source_files.h"

namespace kvx {

// file: the deck; any bytes. model and report: empty; report.files gets the names of all files.
// Throws a Stop with file and line where a card cannot be read.
void ImportNastran(const SourceFile& file, const IncludeReader& include, ImportModel& model,
                   ImportReport& report);

}  // namespace kvx
