// What `kvx renumber` says: as text, and as JSON.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "finding/findings_text.h"
#include "size/check_size.h"

namespace kvx {

struct RenumberReport {
  std::string place;  // as the user wrote it
  std::string file;   // of the model, as the user would write it
  bool isUndo = false, isDryRun = false;
  bool isWorth = true;  // false: no order is better, nothing is written
  std::size_t nodes = 0;
  SolutionSize size;  // of the order before, and as "best" of the one afterwards

  // Names of files in the folder.
  std::vector<std::string> moved;    // besides the model: their nodes have the new numbers, too
  std::vector<std::string> written;  // results that were written anew in these numbers
  std::vector<std::string> removed;  // results in the numbers before
  std::vector<std::string> stale;    // files that look like such results and stay

  std::vector<std::string> notes;  // sentences
};

std::string RenumberText(const RenumberReport& report, const TextStyle& style);

// One line. Its keys are in docs/companion.md.
std::string RenumberJson(const RenumberReport& report);

}  // namespace kvx
