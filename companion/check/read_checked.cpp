#include "check/read_checked.h"

#include "deck/read_tables.h"

namespace kvx {

using korvex::RowReading;
using korvex::Section;

void ReadChecked(std::string_view text, CheckedModel& model) {
  korvex::RowListener listener;
  listener.row = [&](const RowReading& reading) {
    const auto line = static_cast<std::uint32_t>(reading.place.line);
    if (reading.row == korvex::TitleRow) {
      model.titleLines[IndexOf(reading.section)] = line;
    } else {
      model.lines[IndexOf(reading.section)].push_back(line);
    }
  };
  korvex::ReadTables(text, listener, model.tables);
  for (const Section section : ElementSections) {
    model.states[KindOf(section)].assign(static_cast<std::size_t>(CountRows(model.tables, section)),
                                         ElementState::Sound);
  }
}

}  // namespace kvx
