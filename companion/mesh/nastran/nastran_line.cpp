// Cuts by columns and by commas; all fields are parts of the line, nothing is copied.
#include "mesh/nastran/nastran_line.h"

#include <cstdint>

#include "mesh/scan_number.h"

namespace kvx {

namespace {

constexpr std::size_t FieldWidth = 8;
constexpr std::size_t LineWidth = 80;
constexpr std::size_t MarkColumn = 72;  // 0-based begin of field 10

// A comma within so many characters makes a line free: a name has eight at most, with star nine.
constexpr std::size_t FreeCommaWithin = 10;

constexpr std::size_t SmallFields = 8;
constexpr std::size_t LargeFields = 4;

bool IsMarked(std::string_view first) {
  return !first.empty() && (first[0] == '+' || first[0] == '*');
}

bool SaysLarge(std::string_view first) {
  return !first.empty() && (first[0] == '*' || first.back() == '*');
}

// The part of the line from column `from` to before column `to` (multiples of 8), with tabs.
struct ColumnReader {
  std::string_view line;
  std::size_t at = 0;
  std::size_t column = 0;
};
std::string_view TakeColumns(ColumnReader& reader, std::size_t to) {
  const std::size_t begin = reader.at;
  while (reader.at < reader.line.size() && reader.column < to) {
    const bool isTab = reader.line[reader.at] == '\t';
    reader.column = isTab ? (reader.column / FieldWidth + 1) * FieldWidth : reader.column + 1;
    ++reader.at;
  }
  return reader.line.substr(begin, reader.at - begin);
}

NastranLine CutFixed(std::string_view text) {
  NastranLine line;
  ColumnReader reader{text};
  line.first = TrimBlanks(TakeColumns(reader, FieldWidth));
  line.isLarge = SaysLarge(line.first);
  const std::size_t count = line.isLarge ? LargeFields : SmallFields;
  const std::size_t width = line.isLarge ? 2 * FieldWidth : FieldWidth;
  for (std::size_t k = 0; k < count; ++k) {
    line.data[k] = TrimBlanks(TakeColumns(reader, FieldWidth + (k + 1) * width));
  }
  // Column 73 is not part of the mark: "ABC" there fits a line that begins with "+BC".
  const std::string_view mark =
      reader.column == MarkColumn ? TakeColumns(reader, LineWidth) : std::string_view{};
  if (!mark.empty()) line.mark = TrimBlanks(mark.substr(1));
  return line;
}

// The next field of a free line; `text` becomes what stands behind its comma.
std::string_view TakeToComma(std::string_view& text, bool& isLast) {
  const std::size_t comma = text.find(',');
  const std::string_view field = TrimBlanks(text.substr(0, comma));
  isLast = comma == std::string_view::npos;
  text = isLast ? std::string_view{} : text.substr(comma + 1);
  return field;
}

bool IsNumber(std::string_view text) {
  double value = 0.0;
  return ScanDouble(text, value);
}

NastranLine CutFree(std::string_view text) {
  NastranLine line;
  bool isLast = false;
  line.first = TakeToComma(text, isLast);
  line.isLarge = SaysLarge(line.first);
  const std::size_t count = line.isLarge ? LargeFields : SmallFields;
  for (std::size_t k = 0; k < count && !isLast; ++k) line.data[k] = TakeToComma(text, isLast);
  if (isLast) return line;
  const std::string_view behind = text;
  const std::string_view mark = TakeToComma(text, isLast);
  const bool hasMore = TrimBlanks(text).find_first_not_of(", \t") != std::string_view::npos;
  if (mark == "+" && hasMore) {
    line.rest = behind.substr(behind.find(','));
  } else if (hasMore || (!IsMarked(mark) && IsNumber(mark))) {
    line.hasExcess = true;
  } else {
    line.mark = IsMarked(mark) ? TrimBlanks(mark.substr(1)) : mark;
  }
  return line;
}

}  // namespace

NastranLine CutNastranLine(std::string_view line) {
  const bool isFree = line.substr(0, FreeCommaWithin).find(',') != std::string_view::npos;
  return isFree ? CutFree(line) : CutFixed(line);
}

bool IsContinuation(const NastranLine& line) { return line.first.empty() || IsMarked(line.first); }

std::string_view ContinuationMark(const NastranLine& line) {
  return line.first.empty() ? line.first : TrimBlanks(line.first.substr(1));
}

std::string QuoteForMessage(std::string_view text) {
  constexpr std::size_t Shown = 40;  // a message stays one line
  std::string quoted = "\"";
  for (const char c : text.substr(0, Shown)) quoted += c >= ' ' && c <= '~' ? c : '?';
  return quoted + (text.size() > Shown ? "...\"" : "\"");
}

}  // namespace kvx
