// Writes the results of a solved model before someone who waits: `kvx run` and `kvx cases` show the
// same progress.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "audit/detail_peaks.h"
#include "engine/unfinished_folder.h"
#include "model/model.h"

namespace kvx {

struct SolvedText {
  std::string name;            // of the load case; empty: there is none to name
  std::string_view modelText;  // the bytes of the model file
  double seconds = 0.0;        // of the solution, for the log
  std::string_view solution;   // the bytes of solution.json; empty: it is not written
  int threads = 1;             // for stresses, detail models and files
  std::uint64_t memory = 0;    // bytes for detail models at once; 0: what is free limits them
};

// WriteResults with its progress. Throws a Stop as that does, and Interrupted after an interrupt.
void WriteShown(const SolvedText& solved, korvex::Model& model, DetailPeaks& details,
                UnfinishedFolder& unfinished);

}  // namespace kvx
