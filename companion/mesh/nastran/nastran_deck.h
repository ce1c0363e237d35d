// A bulk data deck as text: its case control and its cards, fields apart.
//
// Fields are 8 wide, 16 wide (a star behind the card's name) or between commas, mixed by line.
// Continuations are joined to their card, wherever they stand. Fields are numbered as the format's
// manuals do: field 1 is the name, 2 to 9 the data of the first line, 10 the continuation mark,
// 12 to 19 the data of the second line and so on; FieldOf takes these numbers.
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

// One card with its continuations.
struct NastranCard {
  std::string_view name;         // upper case, without the star: "GRID"
  std::uint32_t firstField = 0;  // row of NastranDeck::fields
  std::uint32_t fieldCount = 0;  // data fields: eight for each line that the card has
  SourcePlace place;             // its first line
};

// One line of the case control: its subcase and its text.
struct NastranCommand {
  std::int64_t subcase = 0;  // 0: above the first SUBCASE
  std::string text;          // trimmed, in upper case but for titles and labels
  SourcePlace place;
};

struct NastranDeck {
  std::deque<SourceFile> files;  // the included files; a deque, as texts must not move
  std::deque<std::string> made;  // texts of fields that stand in no file as they are needed
  std::vector<NastranCommand> commands;
  std::vector<NastranCard> cards;  // in the order of the deck
  // Trimmed; "" for a blank one. Words are in upper case, numbers are as they stand.
  std::vector<std::string_view> fields;
};

// Reads a deck. Fields are parts of `file`, which must stay while the deck is used. Each card is
// counted in the report by its name, each command as "case control SPC", each statement above CEND
// as "executive SOL"; these are reported here, too, and lines behind ENDDATA. Throws a Stop where a
// line is no card, an included file is missing or includes itself, or a continuation has no card.
void ReadNastranDeck(const SourceFile& file, const IncludeReader& include, NastranDeck& deck,
                     ImportReport& report);
void ReadNastranDeck(SourceFile&&, const IncludeReader&, NastranDeck&, ImportReport&) = delete;

// The field with the manual's number (2 to 9, 12 to 19, ...); "" where the card does not have it.
std::string_view FieldOf(const NastranDeck& deck, const NastranCard& card, std::size_t number);

// The k-th data field, from 0, all lines one after the other; "" where the card does not have it.
std::string_view DataField(const NastranDeck& deck, const NastranCard& card, std::size_t k);

}  // namespace kvx
