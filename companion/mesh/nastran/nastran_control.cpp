// Commands of case control are kept as they stand; who takes the loads interprets them. Nothing of
// executive control is kept: it says which analysis is done, and here that is always the same.
#include "mesh/nastran/nastran_control.h"

#include <algorithm>
#include <array>
#include <string>

#include "mesh/letter_case.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

// Linear statics, by its numbers and its names in the old and the new solution sequences.
constexpr std::array<std::string_view, 8> StaticSolutions = {
    "1", "24", "101", "STATIC", "STATICS", "SESTATIC", "SESTATICS", "LINEAR"};

// Statements that begin a deck; none is the name of a bulk data card.
constexpr std::array<std::string_view, 14> ExecutiveWords = {
    "SOL", "CEND", "ID",      "NASTRAN", "ASSIGN", "TIME",    "DIAG",
    "APP", "INIT", "RESTART", "PROJ",    "ECHOON", "ECHOOFF", "COMPILE"};

template <std::size_t N>
bool IsIn(const std::array<std::string_view, N>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// Which of the words that part a deck stand in the rest of a text, from its current line on.
struct PartingWords {
  bool hasCend = false;
  bool hasBegin = false;
};
PartingWords FindPartingWords(const NastranText& text, std::string_view line) {
  PartingWords found;
  std::size_t at = text.at;
  while (true) {
    const std::size_t begin = line.find_first_not_of(" \t");
    const char c = begin == std::string_view::npos ? ' ' : line[begin];
    if (c == 'C' || c == 'c' || c == 'B' || c == 'b' || c == 'E' || c == 'e') {
      const std::string word = FirstWord(line.substr(0, line.find_first_of("$\r")));
      found.hasCend = found.hasCend || word == "CEND";
      found.hasBegin = found.hasBegin || word == "BEGIN";
      if (found.hasBegin || word == "ENDDATA") return found;
    }
    if (at >= text.whole.size()) return found;
    const std::size_t end = std::min(text.whole.find('\n', at), text.whole.size());
    line = text.whole.substr(at, end - at);
    at = end + 1;
  }
}

std::string UpperText(std::string_view line) {
  std::string text(line);
  for (char& c : text) c = UpperLetter(c);
  return text;
}

// BEGIN BULK; superelements have a BEGIN for each.
NastranSection TakeBegin(std::string_view line, SourcePlace place, NastranSources& sources) {
  const std::string text = UpperText(line);
  if (text.find("SUPER") != std::string::npos || text.find("AUXM") != std::string::npos) {
    StopImport(sources.report, place, "superelements and auxiliary models cannot be read");
  }
  CountCard("BEGIN BULK", place, sources.report);
  return NastranSection::Bulk;
}

// Reads on while a command ends with a comma.
std::string WithNextLines(std::string_view line, NastranSources& sources) {
  std::string text(TrimBlanks(line));
  while (!text.empty() && text.back() == ',') {
    std::string_view next;
    SourcePlace place;
    if (!NextNastranLine(sources, next, place)) break;
    text += ' ';
    text += TrimBlanks(next);
  }
  return text;
}

void ReportExecutive(const std::string& word, const std::string& text, SourcePlace place,
                     ImportReport& report) {
  if (word == "CEND") return;
  const std::string card = "executive " + word;
  if (word != "SOL") {
    ReportCard(card, Fate::NoEffect, "executive control: how a run is done", place, text, report);
    return;
  }
  const std::size_t begin = std::min(text.find_first_not_of(" \t=,", word.size()), text.size());
  if (!IsIn(StaticSolutions, FirstWord(UpperText(text).substr(begin)))) {
    ReportCard(card, Fate::Limited, "another analysis is asked for; here it is linear statics",
               place, text, report);
  }
}

bool IsTitle(std::string_view word) {
  return word.substr(0, 4) == "TITL" || word.substr(0, 4) == "SUBT" || word.substr(0, 4) == "LABE";
}

// Reads the number of a command that begins a subcase: "SUBCASE 3", "SUBCASE=3".
bool ReadSubcase(const std::string& word, const std::string& text, std::int64_t& subcase) {
  const std::array<std::string_view, 5> words = {"SUBCASE", "SUBCOM", "SYM", "SYMCOM", "REPCASE"};
  if (!IsIn(words, word)) return true;
  const std::size_t begin = std::min(text.find_first_not_of(" \t=", word.size()), text.size());
  const std::size_t end = std::min(text.find_first_of(" \t,=", begin), text.size());
  return ScanInteger(std::string_view(text).substr(begin, end - begin), subcase) && subcase > 0;
}

}  // namespace

NastranSection FirstSection(std::string_view line, const NastranSources& sources) {
  if (IsIn(ExecutiveWords, FirstWord(line))) return NastranSection::Executive;
  bool hasBegin = false;
  for (const NastranText& text : sources.open) {
    // Of the including files, what follows counts.
    const PartingWords found =
        FindPartingWords(text, &text == &sources.open.back() ? line : std::string_view{});
    if (found.hasCend) return NastranSection::Executive;
    hasBegin = hasBegin || found.hasBegin;
  }
  return hasBegin ? NastranSection::CaseControl : NastranSection::Bulk;
}

NastranSection TakeExecutiveLine(std::string_view line, SourcePlace place,
                                 NastranSources& sources) {
  const std::string word = FirstWord(line);
  if (word == "BEGIN") return TakeBegin(line, place, sources);
  const std::string text = WithNextLines(line, sources);
  CountCard("executive " + word, place, sources.report);
  ReportExecutive(word, text, place, sources.report);
  return word == "CEND" ? NastranSection::CaseControl : NastranSection::Executive;
}

NastranSection TakeCaseControlLine(std::string_view line, SourcePlace place,
                                   NastranSources& sources, std::int64_t& subcase) {
  const std::string word = FirstWord(line);
  if (word == "BEGIN") return TakeBegin(line, place, sources);
  NastranCommand command;
  command.place = place;
  if (IsTitle(word)) {
    command.text = TrimBlanks(line);
  } else {
    command.text = UpperText(WithNextLines(line, sources));
    if (!ReadSubcase(word, command.text, subcase)) {
      StopImport(sources.report, place, word + " without a number above 0");
    }
  }
  command.subcase = subcase;
  CountCard("case control " + word, place, sources.report);
  sources.deck.commands.push_back(std::move(command));
  return NastranSection::CaseControl;
}

}  // namespace kvx
