// The lists of cards of import_outcome.h.
#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "check/describe.h"
#include "commands/import_losses.h"
#include "commands/import_outcome.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

// A line of the lists: a card, how many, where the first is, what is to be said of it.
struct ReportLine {
  std::string card;
  std::size_t count = 0;
  std::string place;
  std::string remark;
};

// The sections behind that of what was taken, in the order in which they are shown.
struct FateSection {
  Fate fate;
  const char* title;
};
constexpr std::array<FateSection, 4> Sections{
    {{Fate::Limited, "Taken with a limit, results may differ by it"},
     {Fate::Lost, "Lost, the structure or its loads lack it"},
     {Fate::NoEffect, "Without effect on a linear static analysis"},
     {Fate::Refused, "Refused, without it there is no model"}}};

std::size_t CountCharacters(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;  // not a byte within a character
  }));
}

std::string Padded(const std::string& text, std::size_t width) {
  const std::size_t length = CountCharacters(text);
  return length < width ? text + std::string(width - length, ' ') : text;
}

std::string PaddedLeft(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

// Widths of the columns in front of the remarks.
struct ReportColumns {
  std::size_t card = 0, count = 0, place = 0;
};

ReportColumns MeasureColumns(const std::vector<ReportLine>& lines, const TextStyle& style) {
  const std::size_t longestCard = style.width / 3;  // a longer one gets a line of its own
  ReportColumns columns;
  for (const ReportLine& line : lines) {
    const std::size_t card = CountCharacters(line.card);
    if (card <= longestCard) columns.card = std::max(columns.card, card);
    columns.count = std::max(columns.count, std::to_string(line.count).size());
    columns.place = std::max(columns.place, CountCharacters(line.place));
  }
  return columns;
}

// Cards and places, aligned; remarks beside them where there is room for half a line, else below.
std::string LinesText(const std::vector<ReportLine>& lines, const TextStyle& style) {
  const ReportColumns columns = MeasureColumns(lines, style);
  const std::size_t column = 2 + columns.card + 2 + columns.count + 2 + columns.place + 2;
  std::string text;
  for (const ReportLine& line : lines) {
    std::string begin = "  " + Padded(line.card, columns.card) + "  " +
                        PaddedLeft(std::to_string(line.count), columns.count) + "  " +
                        Padded(line.place, columns.place);
    const bool isBeside = 2 * column <= style.width && CountCharacters(begin) + 2 == column;
    if (isBeside && !line.remark.empty()) {
      text += WrapText(line.remark, style.width, begin + "  ", std::string(column, ' '));
      continue;
    }
    begin.erase(begin.find_last_not_of(' ') + 1);
    text += begin + '\n';
    if (!line.remark.empty()) text += WrapText(line.remark, style.width, "      ", "      ");
  }
  return text;
}

// Cards by the places of their first ones; those without a place last.
bool IsBefore(const SourcePlace& a, const SourcePlace& b) {
  if ((a.line == 0) != (b.line == 0)) return b.line == 0;
  return a.file != b.file ? a.file < b.file : a.line < b.line;
}

// Places in the deck itself by their line alone; the first line of all names the deck.
std::string ShownPlace(const ImportReport& report, SourcePlace place) {
  if (place.file == 0 && place.line > 0) return "line " + std::to_string(place.line);
  return CleanText(PlaceText(report, place));
}

std::string RemarkOf(const ReportEntry& entry) {
  if (entry.example.empty()) return CleanText(entry.reason);
  const char* const begin = entry.count > 1 ? " (the first: " : " (";
  return CleanText(entry.reason + begin + entry.example + ')');
}

// The entries of a fate as they are shown: the graver losses first, else in their order.
std::vector<const ReportEntry*> EntriesOf(const ImportReport& report, Fate fate) {
  std::vector<const ReportEntry*> entries;
  for (const ReportEntry& entry : report.entries) {
    if (entry.fate == fate) entries.push_back(&entry);
  }
  if (fate != Fate::Lost) return entries;
  std::stable_sort(entries.begin(), entries.end(),
                   [](const auto* a, const auto* b) { return RankLoss(*a) < RankLoss(*b); });
  return entries;
}

std::string SectionText(const ImportReport& report, const FateSection& section,
                        const TextStyle& style) {
  std::vector<ReportLine> lines;
  for (const ReportEntry* const entry : EntriesOf(report, section.fate)) {
    lines.push_back(
        {CleanText(entry->card), entry->count, ShownPlace(report, entry->first), RemarkOf(*entry)});
  }
  if (lines.empty()) return "";
  return std::string("\n") + section.title + ":\n" + LinesText(lines, style);
}

// What the lists below name of a card.
struct NamedCards {
  std::size_t limited = 0, left = 0;
};

// Cards of which all are named below as not taken do not stand in the list of what was taken. A
// card may be named below for several reasons, so how many were taken is not always known.
std::string TakenText(const ImportReport& report, const TextStyle& style) {
  std::map<std::string, NamedCards> named;
  for (const ReportEntry& entry : report.entries) {
    NamedCards& card = named[entry.card];
    (entry.fate == Fate::Limited ? card.limited : card.left) += entry.count;
  }
  std::vector<std::pair<std::string, CardCount>> cards(report.cards.begin(), report.cards.end());
  std::stable_sort(cards.begin(), cards.end(), [](const auto& a, const auto& b) {
    return IsBefore(a.second.first, b.second.first);
  });
  std::vector<ReportLine> lines;
  for (const auto& [name, card] : cards) {
    const NamedCards& below = named[name];
    if (below.left >= card.count) continue;
    lines.push_back({CleanText(name), card.count, ShownPlace(report, card.first),
                     below.left + below.limited > 0 ? "not all as they stand: see below" : ""});
  }
  return lines.empty() ? "" : "\nTaken:\n" + LinesText(lines, style);
}

}  // namespace

std::string ImportReportText(const ImportReport& report, const TextStyle& style) {
  std::string text = TakenText(report, style);
  for (const FateSection& section : Sections) text += SectionText(report, section, style);
  return text;
}

std::string LossText(const ImportReport& report, const TextStyle& style) {
  constexpr std::size_t MostNamed = 5;  // as many as one line holds
  std::vector<std::string> names;
  std::set<std::string> kinds;
  for (const ReportEntry* const entry : EntriesOf(report, Fate::Lost)) {
    if (kinds.insert(entry->card).second) names.push_back(entry->card);
  }
  const std::size_t lost = CountFate(report, Fate::Lost);
  const std::size_t limited = CountFate(report, Fate::Limited);
  std::string text;
  if (lost > 0) {
    text = "Lost: " + CountText(lost, "card", "cards") + " of " +
           CountText(names.size(), "kind", "kinds") + " (";
    for (std::size_t k = 0; k < std::min(names.size(), MostNamed); ++k) {
      text += (k == 0 ? "" : ", ") + names[k];
    }
    text += std::string(names.size() > MostNamed ? ", ..." : "") + "), which the model lacks";
  }
  if (limited > 0) {
    text += std::string(lost > 0 ? "; taken" : "Taken") +
            " with a limit: " + CountText(limited, "card", "cards");
  }
  if (text.empty()) return "";
  const std::string wrapped = WrapText(CleanText(text + ". See above."), style.width, "", "");
  return PaintAs(lost > 0 ? Severity::Warning : Severity::Hint, wrapped, style);
}

}  // namespace kvx
