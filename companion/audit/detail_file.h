// The file of averaged stresses with all detail models, which are made while it is written
// (beamshell/average_stress_file.h, detail_blocks.h).
#pragma once

#include <functional>
#include <string>

#include "audit/detail_peaks.h"

namespace kvx {

// Writes the file with the bytes of a run, and fills the peaks of the detail models as an audit
// takes them: averaged, at mid-length. Returns false where the file could not be written whole.
// Throws a Stop where it cannot be opened, and as MakeDetailModels. Then, and where it returns
// false, `peaks` is empty. model: with the averaged stresses of its shells. beforeLast: called when
// all detail models are made, before the last ones are written; may be empty.
bool WriteDetailFile(const std::string& fileName, const korvex::Model& model,
                     const DetailWork& work, const std::function<void()>& beforeLast,
                     DetailPeaks& peaks);

}  // namespace kvx
