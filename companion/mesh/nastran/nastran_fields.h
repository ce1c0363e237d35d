// The values of a card's fields. A field that is blank takes a default; one that is no number of
// its kind ends the import with its line, card and field.
#pragma once

#include <cstdint>
#include <string_view>

#include "mesh/nastran/nastran_deck.h"

namespace kvx {

// A card and what its messages need.
struct NastranRow {
  const NastranDeck& deck;
  const NastranCard& card;
  const ImportReport& report;
};

// number: as FieldOf. A real may be written 7.0, .7E1, 7.+0, 7.-1, 7.D0; it has a point: "7" is an
// integer, which is taken as a real, too, since programs that write decks do so.
double RealField(const NastranRow& row, std::size_t number, double blank);
std::int64_t IntegerField(const NastranRow& row, std::size_t number, std::int64_t blank);
bool IsBlank(const NastranRow& row, std::size_t number);

// The same where blank is not allowed: ends the import.
double NeedReal(const NastranRow& row, std::size_t number);
std::int64_t NeedInteger(const NastranRow& row, std::size_t number);

// The number of a card, or of one that it refers to: an integer above 0.
std::int64_t NeedNumber(const NastranRow& row, std::size_t number);

// A real in one of the forms above; false where the text is none.
bool ScanReal(std::string_view text, double& value);

// Whether the field holds an integer: some fields hold a node or a vector's component.
bool HoldsInteger(const NastranRow& row, std::size_t number);

}  // namespace kvx
