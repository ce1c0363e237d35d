// Reads a deck from a text, and from included texts by name.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"

namespace kvx::test {

using IncludedTexts = std::map<std::string, std::string>;

// The text that a deck is made of must outlive it.
struct DeckOfText {
  SourceFile file;
  NastranDeck deck;
  ImportReport report;
};

// Fills `read` with the deck. Throws what the reader throws.
void ReadDeckText(const std::string& text, DeckOfText& read, const IncludedTexts& included = {});

// The data fields of the k-th card, joined by "|", without the blank ones at its end.
std::string FieldsText(const DeckOfText& read, std::size_t k);

// The text of the Stop that the action throws; "" where it throws none.
std::string StopText(const std::function<void()>& action);

// The text of the Stop that the deck is read with.
std::string DeckStopText(const std::string& text, const IncludedTexts& included = {});

}  // namespace kvx::test
