// The count of a section against the rows that follow it.
//
// Where the two differ, the lines that are no row may explain it: one row that cannot be recognised
// is named for itself, not as a wrong count. Running numbers tell which row is missing or stands
// twice; the rows behind keep their places, to which other rows refer.
#pragma once

#include "check/list_sections.h"

namespace kvx {

struct FileSize {
  std::uint32_t lines = 0;
  std::size_t bytes = 0;
};

// Sets the kinds of the section's items; adds rows that are missing. lastOfFile: lines behind the
// rows of the last section are not read at all. Adds findings K007, K008 and K018.
void SettleRows(const FileSize& file, bool lastOfFile, SectionText& part, FindingList& findings);

}  // namespace kvx
