// Joins the lines of bulk data to cards.
//
// A continuation without a mark goes on with the line before it; one with a mark ("+MAT1") goes on
// with the line that has the mark in field 10, wherever that line stands. Two lines of large fields
// make one of eight.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/nastran/nastran_line.h"

namespace kvx {

// A card whose last line has a mark: it may go on elsewhere.
struct MarkedCardEnd {
  std::size_t card = 0;
  std::string_view mark;
  bool endsHalf = false;  // with the first of two large lines
};

// Marked continuations that do not stand behind the line that they continue.
struct LooseLines {
  SourcePlace place;
  std::string_view mark;           // of the first
  std::vector<NastranLine> lines;  // the first and those that follow it
  bool isUsed = false;
};

struct NastranJoiner {
  NastranDeck& deck;
  ImportReport& report;
  std::map<std::string, std::string_view, std::less<>> upperTexts;  // texts that were in lower case
  bool hasLine = false;                                             // whether a line was read
  bool isLoose = false;     // whether the line read last belongs to the last of looseLines
  bool endsHalf = false;    // whether the card ends with the first of two large lines
  std::string_view mark;    // in field 10 of the line read last
  bool isEquation = false;  // the card is DEQATN: its lines are text without fields
  std::vector<MarkedCardEnd> markedEnds;
  std::vector<LooseLines> looseLines;
};

// Takes the next line of bulk data. Each new card is counted.
void TakeBulkLine(std::string_view text, SourcePlace place, NastranJoiner& joiner);

// Joins the loose lines to their cards, when all lines are read.
void JoinLooseLines(NastranJoiner& joiner);

}  // namespace kvx
