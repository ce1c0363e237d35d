#include "mesh/nastran/nastran_deck.h"

#include <algorithm>
#include <string>

#include "mesh/nastran/nastran_control.h"
#include "mesh/nastran/nastran_joiner.h"
#include "mesh/nastran/nastran_line.h"
#include "mesh/nastran/nastran_sources.h"

namespace kvx {

namespace {

// Bytes of text for each field that are met in decks of fixed columns: eight a field, and line
// ends.
constexpr std::size_t BytesOfField = 9;

// The first word where it may be one of those that are no card; else "".
std::string FirstWordOf(std::string_view line) {
  const std::size_t begin = line.find_first_not_of(" \t");
  const char c = line[begin];
  const bool canBe = c == 'I' || c == 'i' || c == 'B' || c == 'b' || c == 'E' || c == 'e';
  return canBe ? FirstWord(line.substr(0, line.find_first_of("'\""))) : "";
}

NastranSection TakeLineOfBulk(std::string_view line, SourcePlace place, NastranJoiner& joiner) {
  const std::string word = FirstWordOf(line);
  if (word == "ENDDATA") {
    CountCard(word, place, joiner.report);
    return NastranSection::End;
  }
  if (word == "BEGIN") {
    StopImport(joiner.report, place, "a second BEGIN: superelements cannot be read");
  }
  TakeBulkLine(line, place, joiner);
  return NastranSection::Bulk;
}

NastranSection TakeLine(NastranSection section, std::string_view line, SourcePlace place,
                        NastranSources& sources, NastranJoiner& joiner, std::int64_t& subcase) {
  if (section == NastranSection::Executive) return TakeExecutiveLine(line, place, sources);
  if (section == NastranSection::CaseControl) {
    return TakeCaseControlLine(line, place, sources, subcase);
  }
  return TakeLineOfBulk(line, place, joiner);
}

// Behind ENDDATA, which may stand in an included file, nothing belongs to the deck; whoever wrote
// cards there may have thought so. A second ENDDATA says nothing.
void ReportBehindEnd(NastranSources& sources) {
  std::size_t count = 0;
  SourcePlace first, place;
  std::string example;
  for (std::string_view line; NextNastranLine(sources, line, place);) {
    const std::string word = FirstWord(line);
    if (word == "ENDDATA" || ++count > 1) continue;
    first = place;
    example = QuoteForMessage(word);
  }
  if (count == 0) return;
  ReportCard("ENDDATA", Fate::Lost, "the lines behind it are not read", first, example,
             sources.report, count);
}

// A deck that can be run ends with ENDDATA. One that is bulk data from its first line on is to be
// included in another, and needs none.
void CheckEnd(NastranSection first, NastranSection last, SourcePlace place, ImportReport& report) {
  if (last == NastranSection::Executive || last == NastranSection::CaseControl) {
    StopImport(report, {0, 0}, "there is no BEGIN BULK");
  }
  const bool canRun = first == NastranSection::Executive || first == NastranSection::CaseControl;
  if (!canRun || last == NastranSection::End) return;
  ReportCard("end of file", Fate::Limited, "the deck ends without ENDDATA; it may be cut off",
             place, "", report);
}

}  // namespace

void ReadNastranDeck(const SourceFile& file, const IncludeReader& include, NastranDeck& deck,
                     ImportReport& report) {
  NastranSources sources{include, deck, report, {}};
  NastranJoiner joiner{deck, report, {}, false, false, false, {}, false, {}, {}};
  deck.fields.reserve(file.text.size() / BytesOfField);
  OpenDeck(file, sources);
  NastranSection first = NastranSection::Unknown, section = NastranSection::Unknown;
  std::int64_t subcase = 0;
  std::string_view line;
  SourcePlace place;
  while (section != NastranSection::End && NextNastranLine(sources, line, place)) {
    if (FirstWordOf(line) == "INCLUDE") {
      CountCard("INCLUDE", place, report);
      OpenInclude(line, place, sources);
      continue;
    }
    if (section == NastranSection::Unknown) first = section = FirstSection(line, sources);
    section = TakeLine(section, line, place, sources, joiner, subcase);
  }
  CheckEnd(first, section, place, report);
  if (section == NastranSection::End) ReportBehindEnd(sources);
  JoinLooseLines(joiner);
}

std::string_view FieldOf(const NastranDeck& deck, const NastranCard& card, std::size_t number) {
  // Of ten fields the first and the last are no data.
  const std::size_t column = number % 10;
  if (column < 2) return {};
  return DataField(deck, card, number / 10 * 8 + column - 2);
}

std::string_view DataField(const NastranDeck& deck, const NastranCard& card, std::size_t k) {
  return k < card.fieldCount ? deck.fields[card.firstField + k] : std::string_view{};
}

}  // namespace kvx
