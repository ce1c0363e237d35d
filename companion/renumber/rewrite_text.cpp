#include "renumber/rewrite_text.h"

#include <algorithm>

#include "deck/row_formats.h"
#include "deck/write_tables.h"

namespace kvx {

using korvex::Section;

namespace {

// "Number of nodal points:NPOIN="
std::string_view TitleOf(Section section) {
  const std::string_view title = korvex::FormatOf(section).title;
  return title.substr(0, title.find('%'));
}

bool EndsLinesAsWindows(std::string_view text) {
  const std::size_t end = text.find('\n');
  return end != std::string_view::npos && end > 0 && text[end - 1] == '\r';
}

void AppendLines(std::string_view lines, bool asWindows, std::string& text) {
  if (!asWindows) {
    text += lines;
    return;
  }
  for (const char c : lines) {
    if (c == '\n') text += '\r';
    text += c;
  }
}

// The last line with this title is the right one: a name of a beam section may look like one, and
// all of these stand before the nodes.
std::size_t FindTitle(std::string_view text, Section section) {
  return std::min(text.rfind(TitleOf(section)), text.size());
}

std::string RewriteFrom(Section section, std::string_view text, std::size_t end,
                        const korvex::ModelTables& tables) {
  const std::string written = korvex::WriteTables(tables);
  const std::string_view rows = std::string_view(written).substr(FindTitle(written, section));
  const bool asWindows = EndsLinesAsWindows(text);
  const std::size_t begin = FindTitle(text.substr(0, end), section);
  std::string rewritten;
  const auto lineEnds = asWindows ? std::count(rows.begin(), rows.end(), '\n') : 0;
  rewritten.reserve(begin + rows.size() + static_cast<std::size_t>(lineEnds) + text.size() - end);
  rewritten += text.substr(0, begin);
  AppendLines(rows, asWindows, rewritten);
  rewritten += text.substr(end);
  return rewritten;
}

}  // namespace

std::string RewriteModel(std::string_view text, std::size_t end,
                         const korvex::ModelTables& tables) {
  return RewriteFrom(Section::Nodes, text, end, tables);
}

std::string RewriteLoads(std::string_view text, std::size_t end, const korvex::ModelTables& loads) {
  return RewriteFrom(Section::Forces, text, end, loads);
}

}  // namespace kvx
