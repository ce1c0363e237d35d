// Open texts are a stack of our own: how deep a deck nests its files is bounded here.
#include "mesh/nastran/nastran_sources.h"

#include <cctype>

#include "mesh/letter_case.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

// More is a circle under changing names, or files that multiply: no deck of a person is like that.
constexpr std::size_t MostNested = 100;
constexpr std::size_t MostIncluded = 10000;

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

// The name behind the word INCLUDE; a name in quotes may go on over lines of the same file.
std::string IncludeName(std::string_view line, SourcePlace place, NastranSources& sources) {
  constexpr std::string_view Separators = " \t,=";
  line = TrimBlanks(line);
  line.remove_prefix(std::string_view("INCLUDE").size());
  const std::size_t begin = line.find_first_not_of(Separators);
  if (begin == std::string_view::npos) {
    StopImport(sources.report, place, "INCLUDE names no file");
  }
  line.remove_prefix(begin);
  const char quote = line[0];
  if (quote != '\'' && quote != '"') return std::string(TrimBlanks(line));
  line.remove_prefix(1);
  std::string name;
  std::size_t end = line.find(quote);
  while (end == std::string_view::npos) {
    name += TrimBlanks(line);
    SourcePlace next;
    if (!NextNastranLine(sources, line, next) || next.file != place.file) {
      StopImport(sources.report, place, "the name of INCLUDE has no closing quote");
    }
    end = line.find(quote);
  }
  name += TrimBlanks(line.substr(0, end));
  return name;
}

void CheckIncluding(const std::string& name, SourcePlace place, const NastranSources& sources) {
  for (const NastranText& text : sources.open) {
    if (text.includeName == name) {
      StopImport(sources.report, place, "the file '" + name + "' includes itself");
    }
  }
  if (sources.open.size() > MostNested || sources.deck.files.size() >= MostIncluded) {
    StopImport(sources.report, place,
               sources.open.size() > MostNested
                   ? "more than " + std::to_string(MostNested) + " files include one another"
                   : "more than " + std::to_string(MostIncluded) + " files are included");
  }
}

void OpenText(const std::string& shownName, const std::string& includeName, std::string_view text,
              NastranSources& sources) {
  if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
    text.remove_prefix(ByteOrderMark.size());
  }
  const auto row = static_cast<std::int32_t>(sources.report.files.size());
  sources.report.files.push_back(shownName);
  sources.open.push_back({includeName, text, 0, {row, 0}});
}

// A file that is cut off ends within a line, and what is left of a number may be one, too.
void ReportOpenEnd(std::string_view line, SourcePlace place, NastranSources& sources) {
  if (FirstWord(line) == "ENDDATA") return;
  ReportCard("end of file", Fate::Limited, "the last line has no end; it may be cut off", place, "",
             sources.report);
}

}  // namespace

void OpenDeck(const SourceFile& file, NastranSources& sources) {
  OpenText(file.name, "", file.text, sources);
}

bool NextNastranLine(NastranSources& sources, std::string_view& line, SourcePlace& place) {
  while (!sources.open.empty()) {
    NastranText& text = sources.open.back();
    if (text.at >= text.whole.size()) {
      if (sources.open.size() == 1) return false;
      sources.open.pop_back();
      continue;
    }
    const std::size_t end = text.whole.find('\n', text.at);
    line = text.whole.substr(text.at, end == std::string_view::npos ? end : end - text.at);
    text.at = end == std::string_view::npos ? text.whole.size() : end + 1;
    ++text.place.line;
    line = line.substr(0, line.find('$'));
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (TrimBlanks(line).empty()) continue;
    place = text.place;
    if (end == std::string_view::npos) ReportOpenEnd(line, place, sources);
    return true;
  }
  return false;
}

std::string FirstWord(std::string_view line) {
  line = TrimBlanks(line);
  std::string word(line.substr(0, line.find_first_of(" \t,=(")));
  for (char& c : word) c = UpperLetter(c);
  return word;
}

void OpenInclude(std::string_view line, SourcePlace place, NastranSources& sources) {
  const std::string name = IncludeName(line, place, sources);
  CheckIncluding(name, place, sources);
  SourceFile file{name, ""};
  if (!sources.include || !sources.include(name, file.text)) {
    StopImport(sources.report, place, "the included file '" + name + "' cannot be read");
  }
  sources.deck.files.push_back(std::move(file));
  OpenText(name, name, sources.deck.files.back().text, sources);
}

}  // namespace kvx
