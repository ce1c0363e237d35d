// The files of loads of a renumbered model: those that the case files in its folder name.
#pragma once

#include <cstdint>
#include <vector>

#include "commands/moved_file.h"

namespace kvx {

// Adds the files of loads with their nodes moved: places[old row] is the new row. Looks at all
// *.toml in the current folder, which is the model's, that are case files of its model file. Throws
// a Stop with a remedy where loads would be wrong afterwards: a file outside the folder, one that
// cases of another model use too, a whole model, one that cannot be read, cases.toml with a
// mistake. Nothing is written.
void MoveCaseLoads(const std::vector<std::int32_t>& places, std::vector<MovedFile>& files);

}  // namespace kvx
