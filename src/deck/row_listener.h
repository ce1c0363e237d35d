// What the reader of a model file tells while it reads: each row, where it stands, how much of it
// was taken, and where and why the reading of the row stopped.
//
// The reader goes on in any case, as its format demands. A listener may build something from the
// row, collect findings, or end the reading with a Stop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

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

// The row number of a section's first line, which holds its count, and of the header.
inline constexpr std::int32_t TitleRow = -1;

struct RowReading {
  Section section = Section::Header;
  std::int32_t row = TitleRow;  // 0-based in its table
  TextPlace place;              // where the row begins: behind what the row before has taken
  int fieldsExpected = 0;       // numbers that the row should have, its running number included
  int fieldsTaken = 0;          // those that were there

  // The rest of the format from the first directive that did not match, such as ",%lf,%lf\n"; null
  // where the row was taken whole.
  const char* awaited = nullptr;
  TextPlace stop;            // where that was; behind the last byte where the text ends there
  std::size_t stopByte = 0;  // the same place as a position in the text
};

struct RowListener {
  // A section's count has been read; its table gets room for that many rows next.
  std::function<void(Section section, std::int32_t count)> makeRoom;

  // A row has been read and stored in its table. A row that takes nothing of the text is told;
  // those behind it in its section are zeros like it, and of them only elements are told.
  std::function<void(const RowReading& reading)> row;
};

}  // namespace korvex
