// What an import has taken over from a deck, and what not: by card, keyword or group, with count,
// first place and reason.
//
// "Card" stands here for whatever a format is made of: a card of bulk data ("PLOAD4"), a keyword
// ("*BOUNDARY"), a section of a mesh file ("$Periodic"), an element type ("element type 16").
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/source_files.h"

namespace kvx {

// What became of a card. In the order of their weight.
enum class Fate {
  Limited,   // taken over, but not in all that it says: results may differ by it
  NoEffect,  // not taken over; it says nothing about a linear static analysis (titles, output)
  Lost,      // not taken over, and the structure or its loads lack it
  Refused,   // it cannot be taken over, and without it there is no model: none is written
};

// Cards with the same fate for the same reason.
struct ReportEntry {
  std::string card;
  Fate fate = Fate::Lost;
  std::string reason;     // a sentence part: "rigid elements have no counterpart"
  std::size_t count = 0;  // how many cards
  SourcePlace first;      // the first of them
  std::string example;    // what the first one is: "RBE2 17"; may be empty
};

// How often a card stands in the deck.
struct CardCount {
  std::size_t count = 0;
  SourcePlace first;
};

struct ImportReport {
  std::vector<std::string> files;                // names of the sources, [SourcePlace::file]
  std::map<std::string, CardCount> cards;        // every card of the sources, by name
  std::vector<ReportEntry> entries;              // in the order of their first places
  std::map<std::string, std::size_t> entryRows;  // key of card, fate and reason -> row of entries
};

// Counts a card of the sources. To be called once for each card, whatever becomes of it.
void CountCard(std::string_view card, SourcePlace place, ImportReport& report);

// Says what became of a card that was not taken over as it stands. A card may have several
// entries, of different reasons. `reason` must not hold what differs from card to card (a number):
// cards of one reason are one entry; that goes into `example`, which is kept of the first. count:
// how many at once; `place` and `example` are those of the first.
void ReportCard(std::string_view card, Fate fate, std::string_view reason, SourcePlace place,
                std::string_view example, ImportReport& report, std::size_t count = 1);

// How many cards have this fate.
std::size_t CountFate(const ImportReport& report, Fate fate);

// "line 12"; with more than one source "part.inc, line 12"; "" for no place at all.
std::string PlaceText(const ImportReport& report, SourcePlace place);

// Throws a Stop: "deck.bdf, line 12: " and the text. For what cannot be read at all: a truncated
// file, a number that is none. What is read but cannot be used is reported as Fate::Refused, so
// that all of it is told at once.
[[noreturn]] void StopImport(const ImportReport& report, SourcePlace place,
                             const std::string& text);

}  // namespace kvx
