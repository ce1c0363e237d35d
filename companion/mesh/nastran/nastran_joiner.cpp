// The fields of a card stand one after the other in deck.fields. Lines are nearly always in order,
// so they are appended as they come; a card that goes on elsewhere is copied to the end.
#include "mesh/nastran/nastran_joiner.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "mesh/scan_number.h"

namespace kvx {

namespace {

constexpr std::size_t FieldsOfLine = 8;
constexpr std::size_t FieldsOfLargeLine = 4;
constexpr std::size_t LongestName = 8;

bool IsLower(char c) { return c >= 'a' && c <= 'z'; }
bool IsLetter(char c) { return IsLower(c) || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Words in upper case; numbers keep their e and d.
std::string_view UpperText(std::string_view text, NastranJoiner& joiner) {
  if (text.empty() || !IsLetter(text[0]) || !std::any_of(text.begin(), text.end(), IsLower)) {
    return text;
  }
  const auto known = joiner.upperTexts.find(text);
  if (known != joiner.upperTexts.end()) return known->second;
  std::string upper(text);
  for (char& c : upper) c = IsLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
  joiner.deck.made.push_back(std::move(upper));
  joiner.upperTexts.emplace(text, joiner.deck.made.back());
  return joiner.deck.made.back();
}

// Appends the line's fields to the card, which ends at the end of deck.fields.
void AppendFields(const NastranLine& line, NastranJoiner& joiner, NastranCard& card) {
  std::vector<std::string_view>& fields = joiner.deck.fields;
  const bool isSecondHalf = line.isLarge && joiner.endsHalf;
  if (!isSecondHalf) {
    fields.resize(fields.size() + FieldsOfLine);
    card.fieldCount += static_cast<std::uint32_t>(FieldsOfLine);
  }
  const std::size_t count = line.isLarge ? FieldsOfLargeLine : FieldsOfLine;
  const std::size_t begin = fields.size() - (isSecondHalf ? FieldsOfLargeLine : FieldsOfLine);
  for (std::size_t k = 0; k < count; ++k) fields[begin + k] = UpperText(line.data[k], joiner);
  joiner.endsHalf = line.isLarge && !isSecondHalf;
}

bool IsName(std::string_view name) {
  return !name.empty() && name.size() <= LongestName && IsLetter(name[0]) &&
         std::all_of(name.begin(), name.end(),
                     [](char c) { return IsLetter(c) || IsDigit(c) || c == '_'; });
}

// DEQATN holds a formula, in which commas and "=" are what they are.
bool IsEquation(const NastranLine& line) {
  constexpr std::string_view Name = "DEQATN";
  return line.first.size() == Name.size() &&
         std::equal(Name.begin(), Name.end(), line.first.begin(),
                    [](char upper, char c) { return (IsLower(c) ? c - 'a' + 'A' : c) == upper; });
}

// Cards that are to be written several times by "=" and "*(x)" must not be read as something else.
void RefuseReplication(const NastranLine& line, SourcePlace place, const NastranJoiner& joiner) {
  const auto isReplicated = [](std::string_view field) {
    return !field.empty() && (field[0] == '=' || field.substr(0, 2) == "*(");
  };
  if (isReplicated(line.first) || std::any_of(line.data.begin(), line.data.end(), isReplicated)) {
    StopImport(joiner.report, place,
               "repeated cards (\"=\", \"*(1)\") cannot be read; write each card out");
  }
}

void KeepMarkedEnd(NastranJoiner& joiner) {
  if (joiner.hasLine && !joiner.isLoose && !joiner.mark.empty()) {
    joiner.markedEnds.push_back({joiner.deck.cards.size() - 1, joiner.mark, joiner.endsHalf});
  }
}

void BeginCard(const NastranLine& line, SourcePlace place, NastranJoiner& joiner) {
  std::string_view name = line.first;
  if (name.back() == '*') name = TrimBlanks(name.substr(0, name.size() - 1));
  if (!IsName(name)) {
    StopImport(joiner.report, place, QuoteForMessage(line.first) + " is no name of a card");
  }
  name = UpperText(name, joiner);
  NastranDeck& deck = joiner.deck;
  if (deck.fields.size() > std::numeric_limits<std::uint32_t>::max() - FieldsOfLine) {
    StopImport(joiner.report, place, "the deck has too many fields");
  }
  NastranCard card{name, static_cast<std::uint32_t>(deck.fields.size()), 0, place};
  joiner.endsHalf = false;
  AppendFields(line, joiner, card);
  deck.cards.push_back(card);
  CountCard(name, place, joiner.report);
  joiner.isLoose = false;
  joiner.isEquation = IsEquation(line);
}

void ContinueCard(const NastranLine& line, SourcePlace place, NastranJoiner& joiner) {
  const std::string_view mark = ContinuationMark(line);
  const bool goesOn = joiner.hasLine && (mark.empty() || mark == joiner.mark);
  if (!goesOn && mark.empty()) {
    StopImport(joiner.report, place, "this line continues a card, but there is none before it");
  }
  if (!goesOn) {
    KeepMarkedEnd(joiner);
    joiner.looseLines.push_back({place, mark, {}, false});
    joiner.isLoose = true;
  }
  if (joiner.isLoose) {
    joiner.looseLines.back().lines.push_back(line);
  } else {
    AppendFields(line, joiner, joiner.deck.cards.back());
  }
}

void TakeCutLine(const NastranLine& line, SourcePlace place, NastranJoiner& joiner) {
  if (line.hasExcess && !IsEquation(line)) {
    StopImport(joiner.report, place,
               "more than eight data fields between commas; begin a new line with a comma for the "
               "ninth");
  }
  if (!IsEquation(line)) RefuseReplication(line, place, joiner);
  if (IsContinuation(line)) {
    ContinueCard(line, place, joiner);
  } else {
    KeepMarkedEnd(joiner);
    BeginCard(line, place, joiner);
  }
  joiner.hasLine = true;
  joiner.mark = line.mark;
}

bool BeginsContinuation(char c) {
  return c == ' ' || c == '\t' || c == '+' || c == '*' || c == ',';
}

}  // namespace

void TakeBulkLine(std::string_view text, SourcePlace place, NastranJoiner& joiner) {
  if (joiner.isEquation && BeginsContinuation(text[0])) return;
  NastranLine line = CutNastranLine(text);
  TakeCutLine(line, place, joiner);
  while (!line.rest.empty() && !joiner.isEquation) {
    line = CutNastranLine(line.rest);
    TakeCutLine(line, place, joiner);
  }
}

void JoinLooseLines(NastranJoiner& joiner) {
  if (joiner.looseLines.empty()) return;
  KeepMarkedEnd(joiner);
  NastranDeck& deck = joiner.deck;
  std::unordered_map<std::string_view, std::size_t> byMark;
  for (std::size_t k = 0; k < joiner.looseLines.size(); ++k) {
    const LooseLines& loose = joiner.looseLines[k];
    if (!byMark.emplace(loose.mark, k).second) {
      StopImport(joiner.report, loose.place,
                 "a second continuation marked " + QuoteForMessage(loose.mark));
    }
  }
  for (const MarkedCardEnd& end : joiner.markedEnds) {
    auto next = byMark.find(end.mark);
    if (next == byMark.end()) continue;
    NastranCard& card = deck.cards[end.card];
    const std::size_t from = card.firstField;
    card.firstField = static_cast<std::uint32_t>(deck.fields.size());
    for (std::size_t k = 0; k < card.fieldCount; ++k) {
      const std::string_view field = deck.fields[from + k];  // push_back may move the fields
      deck.fields.push_back(field);
    }
    joiner.endsHalf = end.endsHalf;
    while (next != byMark.end()) {
      LooseLines& loose = joiner.looseLines[next->second];
      if (loose.isUsed) {
        StopImport(joiner.report, loose.place,
                   "several lines end with the mark " + QuoteForMessage(loose.mark));
      }
      loose.isUsed = true;
      for (const NastranLine& line : loose.lines) AppendFields(line, joiner, card);
      next = byMark.find(loose.lines.back().mark);
    }
  }
  for (const LooseLines& loose : joiner.looseLines) {
    if (!loose.isUsed) {
      StopImport(joiner.report, loose.place,
                 "no line ends with the mark " + QuoteForMessage(loose.mark) + " of this one");
    }
  }
}

}  // namespace kvx
