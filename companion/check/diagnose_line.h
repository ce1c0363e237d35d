// What is wrong with a line that is not read as it is written, in words: the code, the column, what
// was expected and what stands there, and how to mend it.
#pragma once

#include <string>
#include <string_view>

#include "check/scan_row.h"
#include "finding/finding.h"

namespace kvx {

struct LineContext {
  std::string_view text;
  std::size_t begin = 0, end = 0;  // bytes of the line
  korvex::Section section = korvex::Section::Header;
  std::string subject;   // "restraint of node 0"
  bool isTitle = false;  // the line with the section's count
};

// Fills code, severity, column, message and remedy. scan: of the line, whose text ended at the
// line's end. Returns false if the line is read as it is written.
bool DiagnoseLine(const LineContext& line, const RowScan& scan, Finding& finding);

// A line that is no row: a comment, words, or the like.
void DiagnoseStray(std::string_view line, Finding& finding);

// Whether a line begins as comments do in other programs.
bool LooksLikeComment(std::string_view line);

}  // namespace kvx
