// Reads the text of a model file with the solver's reader, for the checks: the tables, and the line
// of each row, up to the first slip of the reader.
//
// A slip is a row that is not taken whole, a number whose value is not what its text says, a count
// that is negative or that the text cannot hold, or the reader's own stop.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "check/checked_model.h"

namespace kvx {

struct Slip {
  korvex::Section section = korvex::Section::Header;
  std::int32_t row = korvex::TitleRow;
  std::size_t byte = 0;        // where the reader noticed it, 0-based
  std::string stop;            // the text of the reader's stop; empty if it goes on
  bool isOutOfMemory = false;  // this machine has not enough memory for the tables
};

// The running numbers of a section's rows, where they are not 0, 1, 2, ...
struct RunningNumbers {
  std::int32_t firstRow = -1;  // the first row with another number; -1: none
  std::int32_t number = 0;     // its number
  std::int64_t others = 0;     // how many rows have another number
};

struct CheckedReading {
  bool isWhole = false;  // no slip: the tables are those of the file
  Slip slip;
  std::size_t end = 0;  // where the reading ended, bytes
  std::array<RunningNumbers, SectionCount> numbers;
};

// Whether the text has enough bytes behind `end` for so many rows. No table is made for a count
// that it cannot hold.
bool HasRoom(std::string_view text, std::size_t end, korvex::Section section, std::int32_t count);

// Fills tables, lines and title lines of `model`, which must be empty; up to the slip if there is
// one. Without a slip all elements are Sound.
CheckedReading ReadChecked(std::string_view text, CheckedModel& model);

}  // namespace kvx
