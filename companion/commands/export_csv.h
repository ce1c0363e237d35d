// The CSV files of `kvx export`: one table of a model or of its results in each, as the tables of
// the other commands are written (result_table.h).
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/unfinished_folder.h"
#include "vtu/mesh_vtu.h"

namespace kvx {

// All files that WriteCsvFiles leaves.
std::vector<FileToMake> NameCsvFiles();

// Writes all files and gives them their names together.
// results: without detail models. before: called with the name of each file. unfinished: begun with
// NameCsvFiles; its prefix must lead to it from the current folder. Throws a Stop where a file
// cannot be written, and Interrupted.
void WriteCsvFiles(const MeshResults& results, const std::function<void(const char* name)>& before,
                   UnfinishedFolder& unfinished);

}  // namespace kvx
