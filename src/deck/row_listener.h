// The reader's report about each row of a model file: its position, how many of its numbers were
// read, and where and why the reading of the row stopped.
//
// The reader itself always goes on, as the file format demands. A listener may build something from
// the row, collect errors of the file, or end the reading by throwing a Stop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "deck/scan_text.h"

namespace korvex {

// The sections of a model file, in their order.
enum class Section {
  Header,
  Materials,
  ShellThicknesses,
  TBeamSections,
  LBeamSections,
  CBeamSections,
  Nodes,
  Shells4,
  Shells3,
  Beams,
  Restraints,
  Forces,
  Shell4Loads,
  Shell3Loads,
  BeamLoads,
};

// A position in the text.
struct TextPlace {
  std::size_t line = 1;    // 1-based
  std::size_t column = 1;  // 1-based, in bytes
};

// The row number of the header and of a section's first line, which holds the count.
inline constexpr std::int32_t TitleRow = -1;

struct RowReading {
  Section section = Section::Header;
  std::int32_t row = TitleRow;  // 0-based in its table
  TextPlace place;              // begin of the row: after the last byte read for the row before
  int fieldsExpected = 0;       // numbers that the row should have, with its running number
  int fieldsTaken = 0;          // numbers that were read
  std::int32_t number = 0;      // the running number, of rows that have one; no table keeps it
  std::size_t endByte = 0;      // where the reading goes on after the row, 0-based, in the text

  // The rest of the format from the first directive that did not match, such as ",%lf,%lf\n"; null
  // if the whole row was read.
  const char* awaited = nullptr;
  // Where it did not match; one past the last byte at the text's end; inside an "inf" or "nan" that
  // breaks off, behind the byte that did not match.
  TextPlace stop;
  std::size_t stopByte = 0;  // the same position, 0-based, in the text

  // The first number of the row whose value is not what its text says.
  OddNumber odd = OddNumber::None;
  std::size_t oddByte = 0;  // its first byte, 0-based, in the text
};

struct RowListener {
  // Called after a section's count has been read, before its table is allocated.
  std::function<void(Section section, std::int32_t count)> makeRoom;

  // Called after a row has been read and stored in its table. After the first row of a section that
  // reads nothing from the text, all rows are zeros; the calls then go on for elements only.
  std::function<void(const RowReading& reading)> row;
};

}  // namespace korvex
