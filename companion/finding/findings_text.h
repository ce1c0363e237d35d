// Findings as text for a terminal or a report:
//
//   ERROR K104 line 7019: beam 10 at (1500, 600, 0) .. (1500, 1200, 0): its orientation vector ...
//         ... Use <0,0,1>.
#pragma once

#include <cstddef>
#include <string>

#include "finding/codes.h"
#include "finding/finding.h"

namespace kvx {

// The width where there is no terminal, as in a file.
inline constexpr std::size_t DefaultWidth = 100;

struct TextStyle {
  std::size_t width = DefaultWidth;  // characters of a line
  bool color = false;                // severities in colour, by escape sequences
};

// "error", "warning", "hint"
const char* SeverityName(Severity severity);

// A text in the colour of a severity, where the style has colours. It may end with "\n".
std::string PaintAs(Severity severity, const std::string& text, const TextStyle& style);

// One finding, broken at the width; ends with "\n". Whatever bytes of a file its texts hold, the
// text is UTF-8 without control characters.
std::string FindingText(const Finding& finding, const TextStyle& style);

// "K104 line 7019: beam 10 ...": a finding within a sentence, without its remedy.
std::string NameFinding(const Finding& finding);

// "3 errors, 1 warning, 2 hints"; kinds that do not occur are left out, but "No errors, no
// warnings." stands where neither occurs.
std::string TotalText(const FindingList& list);

// What `kvx explain` shows of a code; a text that is empty is left out.
std::string ExplanationText(const CodeText& code, const TextStyle& style);

// All codes, one a line, under the names of their groups.
std::string CodeListText(const TextStyle& style);

}  // namespace kvx
