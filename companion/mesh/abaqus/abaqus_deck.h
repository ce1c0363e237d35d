// A deck as text: its keywords with their parameters and data lines, included files put in place.
//
// A keyword line begins with one star, a comment with two. Names of keywords and parameters stand
// here in upper case with single blanks between their words; both programs ignore their case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/import_report.h"
#include "mesh/source_files.h"

namespace kvx {

struct AbaqusParameter {
  std::string name;
  std::string_view value;  // as it stands, quotes and all; "" for a parameter without
};

// A data line: not blank, not a comment, without blanks at its ends.
struct AbaqusLine {
  std::string_view text;
  SourcePlace place;
};

// Where a keyword stands. Names and numbers within a part are its own.
enum class AbaqusScope : std::uint8_t {
  Global,      // in a deck without parts, or in a step
  Part,        // in the part that is used, or in its instance
  Assembly,    // in the assembly, outside of an instance
  UnusedPart,  // in a part that no instance uses
};

struct AbaqusKeyword {
  std::string name;              // "SHELL SECTION"
  std::size_t firstParameter{};  // row of AbaqusDeck::parameters
  std::size_t parameterCount{};
  std::size_t firstLine{};  // row of AbaqusDeck::lines
  std::size_t lineCount{};
  SourcePlace place;
  AbaqusScope scope = AbaqusScope::Global;
};

struct AbaqusDeck {
  std::deque<SourceFile> files;  // included files; a deque, as texts must not move
  std::vector<AbaqusKeyword> keywords;
  std::vector<AbaqusParameter> parameters;
  std::vector<AbaqusLine> lines;
};

// Reads a deck, its *INCLUDE and the files of INPUT=. Each keyword is counted in the report. The
// texts of `file` and of the deck's files must stay while the deck is used. A last line of a
// file that has no line end is reported, unless it is *END STEP. Throws a Stop where a file is
// missing or includes itself, or text stands above the first keyword.
void ReadAbaqusDeck(const SourceFile& file, const IncludeReader& include, AbaqusDeck& deck,
                    ImportReport& report);

// The parameter; nullptr where the keyword does not have it.
const AbaqusParameter* FindParameter(const AbaqusDeck& deck, const AbaqusKeyword& keyword,
                                     std::string_view name);

// A parameter's value without quotes; "" where the keyword does not have it.
std::string_view ParameterText(const AbaqusDeck& deck, const AbaqusKeyword& keyword,
                               std::string_view name);

}  // namespace kvx
