#include "results/result_text.h"

#include <algorithm>

namespace korvex {

char* MakeRoom(std::size_t count, ResultText& text) {
  if (text.room.size() - text.size < count) {
    text.room.resize(std::max(2 * text.room.size(), text.size + count));
  }
  return text.room.data() + text.size;
}

char* WriteItem(NodeColumn item, char* out) {
  constexpr std::size_t Width = ColumnWidth - 1;
  NumberBuffer buffer;
  const std::string_view number = FormatNumber(std::int64_t{item.node}, buffer);
  out = std::fill_n(out, Width - std::min(number.size(), Width), ' ');
  out = std::copy(number.begin(), number.end(), out);
  *out = ':';
  return out + 1;
}

std::string TitleLine(std::initializer_list<std::string_view> titles) {
  std::string line;
  for (const std::string_view title : titles) {
    line.append(ColumnWidth - std::min(title.size(), ColumnWidth), ' ').append(title);
  }
  return line + '\n';
}

}  // namespace korvex
