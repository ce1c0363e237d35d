#include "check/read_checked.h"

#include "check/scan_row.h"
#include "deck/read_tables.h"
#include "report/stop.h"

namespace kvx {

using korvex::RowReading;
using korvex::Section;

namespace {

// Ends the reading at a slip; the slip itself is in the CheckedReading.
struct SlipFound {};

void Keep(const RowReading& reading, CheckedReading& kept) {
  RunningNumbers& numbers = kept.numbers[IndexOf(reading.section)];
  if (reading.row < 0 || reading.number == reading.row || !HasRunningNumber(reading.section)) {
    return;
  }
  if (numbers.others++ > 0) return;
  numbers.firstRow = reading.row;
  numbers.number = reading.number;
}

// A label is any text up to the line's end. So text behind the number before it, on the same line,
// would be taken for the label.
bool IsLabelGlued(std::string_view text, std::size_t begin, const RowReading& reading) {
  return reading.row >= 0 && reading.section != Section::Header && HasLabel(reading.section) &&
         !BeginsLine(text, begin);
}

}  // namespace

bool HasRoom(std::string_view text, std::size_t end, Section section, std::int32_t count) {
  const auto rows = static_cast<std::uint64_t>(count > 0 ? count : 0);
  return rows * LeastBytes(section) <= text.size() - end;
}

CheckedReading ReadChecked(std::string_view text, CheckedModel& model) {
  CheckedReading kept;
  bool isMaking = false;  // between a count and the first row of its table
  const auto slip = [&](Section section, std::int32_t row, std::size_t byte) {
    kept.slip = {section, row, byte, "", false};
    throw SlipFound{};
  };
  korvex::RowListener listener;
  listener.row = [&](const RowReading& reading) {
    isMaking = false;
    if (reading.awaited != nullptr) slip(reading.section, reading.row, reading.stopByte);
    if (reading.odd != korvex::OddNumber::None) {
      slip(reading.section, reading.row, reading.oddByte);
    }
    if (IsLabelGlued(text, kept.end, reading)) slip(reading.section, reading.row, kept.end);
    kept.end = reading.endByte;
    kept.slip.section = reading.section;
    kept.slip.row = reading.row;
    const auto line = static_cast<std::uint32_t>(reading.place.line);
    if (reading.row == korvex::TitleRow) {
      model.titleLines[IndexOf(reading.section)] = line;
    } else {
      model.lines[IndexOf(reading.section)].push_back(line);
      Keep(reading, kept);
    }
  };
  listener.makeRoom = [&](Section section, std::int32_t count) {
    isMaking = true;
    if (count < 0 || !HasRoom(text, kept.end, section, count)) {
      slip(section, korvex::TitleRow, kept.end);
    }
  };
  try {
    korvex::ReadTables(text, listener, model.tables);
    kept.isWhole = true;
    for (const Section section : ElementSections) {
      model.states[KindOf(section)].assign(
          static_cast<std::size_t>(CountRows(model.tables, section)), ElementState::Sound);
    }
  } catch (const SlipFound&) {
  } catch (const korvex::Stop& stop) {
    kept.slip.byte = kept.end;
    kept.slip.stop = stop.text;
    kept.slip.isOutOfMemory = isMaking;
  }
  return kept;
}

}  // namespace kvx
