// displacements.bin: the displacements of a run at full precision, beside its other results.
//
//   byte  0  "KVXDISPL"                     8 characters
//         8  version, 1                     4 bytes
//        12  0                              4 bytes
//        16  size of the model file         8 bytes
//        24  its hash (HashBytes)           8 bytes
//        32  number of nodes                8 bytes
//        40  ux, uy, uz, rx, ry, rz of each node, global axes, model units: doubles, 8 bytes each
//
// All numbers are little-endian on every system; integers are unsigned. A NaN keeps its bits.
#pragma once

#include <string>
#include <vector>

#include "audit/solved_model.h"

namespace kvx {

inline constexpr const char* ExactDisplacementFileName = "displacements.bin";

// displacements: NPOIN x 6. Throws a Stop where the file cannot be written whole (whole_file.h).
void WriteDisplacementFile(const std::string& fileName, const ModelFileId& file,
                           const std::vector<double>& displacements);

// Whether a file fits the model, and if not, why.
enum class DisplacementFit {
  Fits,
  Missing,       // there is no such file
  Unreadable,    // it is there, but cannot be read
  NotOurs,       // it is something else
  OtherVersion,  // written by another version of this program
  OtherModel,    // of another model file, or of an earlier state of this one
  Truncated,     // it ends before its last number
  TooLong,       // bytes follow its last number
};

struct DisplacementReading {
  DisplacementFit fit = DisplacementFit::Missing;
  // What is wrong, as a sentence with the file's name; empty where it fits.
  std::string reason;
};

// Reads the file. displacements: nodes x 6 where it fits; else empty. file: the model's; nodes:
// NPOIN of the model. No memory is taken for what the file claims to hold.
DisplacementReading ReadDisplacementFile(const std::string& fileName, const ModelFileId& file,
                                         std::int32_t nodes, std::vector<double>& displacements);

// Which model file the displacements belong to, from the first bytes of the file alone. file: is
// filled where the result is Fits.
DisplacementFit ReadModelOfDisplacements(const std::string& fileName, ModelFileId& file);

}  // namespace kvx
