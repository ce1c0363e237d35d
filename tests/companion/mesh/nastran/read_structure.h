// The nodes, elements and properties of a deck that is given as a text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_structure.h"
#include "mesh/nastran/read_deck.h"

namespace kvx::test {

struct StructureOfText {
  DeckOfText read;
  ImportModel model;
  NastranNumbers numbers;
  NastranSystems systems;
};

// Fills `structure`. Throws what the readers throw.
void ReadStructureText(const std::string& text, StructureOfText& structure);

// The report's entries as "CARD fate count: reason (example)", sorted.
std::vector<std::string> Entries(const ImportReport& report);

// Whether the report has an entry of this card and fate whose reason begins with `reason`.
bool HasEntry(const ImportReport& report, std::string_view card, Fate fate,
              std::string_view reason);

}  // namespace kvx::test
