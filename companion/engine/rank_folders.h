// The folders for the factors of several ranks: each makes one of its own below the same name,
// which may be on one disk that all of them see, or on a disk of each machine.
#pragma once

#include <string>

#include "engine/factor_folder.h"

namespace kvx {

// As MakeFactorFolder (factor_folder.h), on all ranks; folder: that of rank 0. Also throws a Stop
// that names another rank, where its folder cannot be made.
// parent: absolute.
void MakeRankFolders(const std::string& parent, FactorFolder& folder);

// What another rank does for that.
void HelpMakeFolders(FactorFolder& folder);

}  // namespace kvx
