// The lines of a deck and of the files that it includes, one after the other.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/source_files.h"

namespace kvx {

// A text that is being read.
struct NastranText {
  std::string includeName;  // as an INCLUDE names it; "" for the deck
  std::string_view whole;
  std::size_t at = 0;  // begin of the next line
  SourcePlace place;   // of the line read last
};

struct NastranSources {
  const IncludeReader& include;
  NastranDeck& deck;  // its files own the included texts
  ImportReport& report;
  std::vector<NastranText> open;  // the last one is being read
};

// Begins with the deck itself.
void OpenDeck(const SourceFile& file, NastranSources& sources);

// The next line that is not blank, without comment and line end. Goes back to the including file at
// the end of an included one. Returns false at the end of the deck. Reports a last line of a file
// that has no line end, unless it is ENDDATA.
bool NextNastranLine(NastranSources& sources, std::string_view& line, SourcePlace& place);

// The first word of a line in upper case: up to a blank, a comma, "=" or "(".
std::string FirstWord(std::string_view line);

// Goes into the file that the line names: INCLUDE 'name', also over several lines. Throws a Stop
// where there is no such file, or it is being read already.
void OpenInclude(std::string_view line, SourcePlace place, NastranSources& sources);

}  // namespace kvx
