#include "mesh/abaqus/abaqus_deck.h"

#include <algorithm>
#include <unordered_map>

#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_keywords.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

// Includes within includes; a deck that nests deeper goes in a circle under changing names.
constexpr std::size_t DeepestInclude = 32;

// Included files in all. Files that include each other twice over would multiply without end.
constexpr std::size_t MostIncludes = 10000;

// A text that is being read.
struct Cursor {
  std::string_view rest;
  SourcePlace place;          // of the line that was taken last
  bool hasDataAlone = false;  // of INPUT=: keywords are not allowed
  bool hasOpenEnd = false;    // the line taken last is the file's last, and no line end ends it
};

struct DeckReader {
  const IncludeReader& include;
  AbaqusDeck& deck;
  ImportReport& report;
  std::vector<Cursor> cursors;                           // the file that is read is the last one
  std::unordered_map<std::string, std::int32_t> opened;  // name -> row of deck.files
  std::size_t includes = 0;
};

// Takes the next line, trimmed, of the innermost file; false where it has ended.
bool TakeLine(Cursor& cursor, std::string_view& line) {
  if (cursor.rest.empty()) return false;
  const std::size_t end = cursor.rest.find('\n');
  line = cursor.rest.substr(0, end);
  cursor.rest = end == std::string_view::npos ? std::string_view{} : cursor.rest.substr(end + 1);
  ++cursor.place.line;
  cursor.hasOpenEnd = end == std::string_view::npos;
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  line = TrimBlanks(line);
  return true;
}

bool IsComment(std::string_view line) { return line.substr(0, 2) == "**"; }

bool IsKeyword(std::string_view line) { return !line.empty() && line[0] == '*'; }

// Opens a file that the deck names; its lines come next.
void OpenFile(DeckReader& reader, std::string_view written, SourcePlace place, bool hasDataAlone) {
  const std::string name(WithoutQuotes(TrimBlanks(written)));
  if (name.empty()) StopImport(reader.report, place, "no name of a file behind INPUT=");
  if (++reader.includes > MostIncludes) {
    StopImport(reader.report, place, "the deck includes more files than can be meant");
  }
  auto known = reader.opened.find(name);
  if (known == reader.opened.end()) {
    SourceFile file{name, {}};
    if (!reader.include(name, file.text)) {
      StopImport(reader.report, place, "the included file \"" + name + "\" cannot be read");
    }
    reader.deck.files.push_back(std::move(file));
    reader.report.files.push_back(name);
    const auto row = static_cast<std::int32_t>(reader.deck.files.size() - 1);
    known = reader.opened.emplace(name, row).first;
  }
  const SourcePlace top{known->second + 1, 0};  // the deck itself is file 0
  const bool isOpen =
      std::any_of(reader.cursors.begin(), reader.cursors.end(),
                  [&](const Cursor& cursor) { return cursor.place.file == top.file; });
  if (isOpen || reader.cursors.size() > DeepestInclude) {
    StopImport(reader.report, place, "the included file \"" + name + "\" includes itself");
  }
  const std::string& text = reader.deck.files[static_cast<std::size_t>(known->second)].text;
  reader.cursors.push_back({text, top, hasDataAlone});
}

// Where the part of a keyword line up to the next comma ends; a comma in quotes does not end it.
std::size_t FindComma(std::string_view text) {
  bool isQuoted = false;
  for (std::size_t k = 0; k < text.size(); ++k) {
    if (text[k] == '"') isQuoted = !isQuoted;
    if (text[k] == ',' && !isQuoted) return k;
  }
  return std::string_view::npos;
}

void AddParameters(std::string_view text, AbaqusDeck& deck) {
  for (bool isLast = false; !isLast;) {
    const std::size_t comma = FindComma(text);
    isLast = comma == std::string_view::npos;
    const std::string_view part = TrimBlanks(text.substr(0, comma));
    if (!isLast) text.remove_prefix(comma + 1);
    if (part.empty()) continue;
    const std::size_t equals = part.find('=');
    AbaqusParameter parameter{UpperWords(part.substr(0, equals)), {}};
    if (equals != std::string_view::npos) parameter.value = TrimBlanks(part.substr(equals + 1));
    deck.parameters.push_back(std::move(parameter));
  }
}

// A file that is cut off ends within a line, and what is left of a number may be one, too.
// line: what its last line holds, trimmed.
void ReportOpenEnd(const DeckReader& reader, std::string_view line, SourcePlace place) {
  if (line.empty() || IsComment(line) || UpperWords(line) == "*END STEP") return;
  ReportCard("end of file", Fate::Limited, "the last line has no end; it may be cut off", place, {},
             reader.report);
}

// Takes the lines on which a keyword line goes on: it ends with a comma, and no keyword follows.
void ContinueKeyword(DeckReader& reader, std::string_view line) {
  Cursor& cursor = reader.cursors.back();
  while (!line.empty() && line.back() == ',') {
    Cursor ahead = cursor;
    if (!TakeLine(ahead, line)) return;
    if (IsComment(line)) {
      cursor = ahead;
      line = ",";
      continue;
    }
    if (IsKeyword(line)) return;
    cursor = ahead;
    if (cursor.hasOpenEnd) ReportOpenEnd(reader, line, cursor.place);
    AddParameters(line, reader.deck);
  }
}

void AddKeyword(DeckReader& reader, std::string_view line) {
  AbaqusDeck& deck = reader.deck;
  const Cursor& cursor = reader.cursors.back();
  if (cursor.hasDataAlone) {
    StopImport(reader.report, cursor.place, "a keyword in a file that is to hold data lines alone");
  }
  AbaqusKeyword keyword;
  keyword.place = cursor.place;
  keyword.firstParameter = deck.parameters.size();
  const std::size_t comma = line.find(',');
  keyword.name =
      KeywordName(UpperWords(line.substr(1, comma == std::string_view::npos ? comma : comma - 1)));
  if (comma != std::string_view::npos) {
    AddParameters(line.substr(comma + 1), deck);
    ContinueKeyword(reader, line);
  }
  keyword.parameterCount = deck.parameters.size() - keyword.firstParameter;
  keyword.firstLine = deck.lines.size();
  CountCard("*" + keyword.name, keyword.place, reader.report);
  const AbaqusParameter* input = FindParameter(deck, keyword, "INPUT");
  const bool isInclude = keyword.name == "INCLUDE";
  const std::string_view name = input != nullptr ? input->value : std::string_view{};
  const SourcePlace place = keyword.place;
  const bool isRead = isInclude || (input != nullptr && IsTakenKeyword(keyword.name));
  if (!isInclude) deck.keywords.push_back(std::move(keyword));
  if (isRead) OpenFile(reader, name, place, !isInclude);
}

void AddDataLine(DeckReader& reader, std::string_view line) {
  const SourcePlace place = reader.cursors.back().place;
  if (reader.deck.keywords.empty()) {
    StopImport(reader.report, place, "a deck begins with a keyword: a line with a star");
  }
  reader.deck.lines.push_back({line, place});
  ++reader.deck.keywords.back().lineCount;
}

}  // namespace

void ReadAbaqusDeck(const SourceFile& file, const IncludeReader& include, AbaqusDeck& deck,
                    ImportReport& report) {
  if (report.files.empty()) report.files.push_back(file.name);
  DeckReader reader{include, deck, report, {}, {}, 0};
  std::string_view text = file.text;
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
    text.remove_prefix(ByteOrderMark.size());
  }
  reader.cursors.push_back({text, {0, 0}, false});
  while (!reader.cursors.empty()) {
    std::string_view line;
    Cursor& cursor = reader.cursors.back();
    if (!TakeLine(cursor, line)) {
      reader.cursors.pop_back();
      continue;
    }
    if (cursor.hasOpenEnd) ReportOpenEnd(reader, line, cursor.place);
    if (IsKeyword(line) && !IsComment(line)) {
      AddKeyword(reader, line);
    } else if (!line.empty() && !IsComment(line)) {
      AddDataLine(reader, line);
    }
  }
}

const AbaqusParameter* FindParameter(const AbaqusDeck& deck, const AbaqusKeyword& keyword,
                                     std::string_view name) {
  for (std::size_t k = 0; k < keyword.parameterCount; ++k) {
    const AbaqusParameter& parameter = deck.parameters[keyword.firstParameter + k];
    if (parameter.name == name) return &parameter;
  }
  return nullptr;
}

std::string_view ParameterText(const AbaqusDeck& deck, const AbaqusKeyword& keyword,
                               std::string_view name) {
  const AbaqusParameter* parameter = FindParameter(deck, keyword, name);
  return parameter == nullptr ? std::string_view{} : WithoutQuotes(parameter->value);
}

}  // namespace kvx
