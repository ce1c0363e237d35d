#include "model/read_input_file.h"

#include <algorithm>

#include "deck/load_text.h"
#include "deck/read_tables.h"
#include "model/build_elements.h"
#include "report/check_memory.h"

namespace korvex {

namespace {

// rows: the name of the elements in the notice about too little memory.
template <typename Element>
void ReserveElements(std::int32_t count, const char* rows, std::vector<Element>& elements) {
  const std::int32_t room = std::max(count, 0);
  ReserveItems(std::to_string(room) + " " + rows, static_cast<std::size_t>(room), elements);
}

void MakeRoom(Section section, std::int32_t count, Model& model) {
  if (section == Section::Shells4) {
    ReserveElements(count, "four-node shell elements", model.Shell4Elements);
  } else if (section == Section::Shells3) {
    ReserveElements(count, "three-node shell elements", model.Shell3Elements);
  } else if (section == Section::Beams) {
    ReserveElements(count, "beam elements", model.BeamElements);
  }
}

void BuildElement(Section section, std::int32_t row, Model& model) {
  if (row == TitleRow) return;
  if (section == Section::Shells4) {
    BuildShell4(model.Tables, row, model.Shell4Elements.emplace_back());
  } else if (section == Section::Shells3) {
    BuildShell3(model.Tables, row, model.Shell3Elements.emplace_back());
  } else if (section == Section::Beams) {
    BuildBeam(model.Tables, row, model.BeamElements.emplace_back());
  }
}

}  // namespace

void ReadInputFile(const std::string& fileName, Model& model) {
  std::string text;
  LoadText(fileName, text);
  ReadInputText(text, model);
}

void ReadInputText(std::string_view text, Model& model) {
  RowListener listener;
  listener.makeRoom = [&](Section section, std::int32_t count) { MakeRoom(section, count, model); };
  listener.row = [&](const RowReading& reading) {
    BuildElement(reading.section, reading.row, model);
  };
  ReadTables(text, listener, model.Tables);
}

}  // namespace korvex
