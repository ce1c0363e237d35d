#include "results/result_file.h"

#include "base/number_text.h"
#include "report/check_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

constexpr std::size_t ColumnWidth = 15;

void AddRightAligned(ResultFile& file, std::string_view item, std::size_t width) {
  if (item.size() < width) file.text.append(width - item.size(), ' ');
  file.text.append(item);
}

// Large blocks need fewer write calls than single lines, and 64 kB stay in the cache.
constexpr std::size_t BlockSize = std::size_t{1} << 16U;

void WriteBlock(ResultFile& file) {
  file.stream.write(file.text.data(), static_cast<std::streamsize>(file.text.size()));
  file.text.clear();
}

}  // namespace

void OpenResultFile(const std::string& name, const char* failure, ResultFile& file) {
  file.name = name;
  file.stream.open(name);
  if (!file.stream.is_open()) {
    CheckOpeningMemory();
    throw Stop{StopKind::ResultFile, failure};
  }
  constexpr std::size_t Size = BlockSize + BlockSize / 4;
  AllocateOrStop("the text of " + file.name, Size, 1, [&] { file.text.reserve(Size); });
}

bool CloseResultFile(ResultFile& file) {
  WriteBlock(file);
  file.stream.close();  // the stream remembers a failure of any earlier block
  return static_cast<bool>(file.stream);
}

void Add(ResultFile& file, std::string_view text) { file.text.append(text); }

void Add(ResultFile& file, char character) {
  file.text.push_back(character);
  if (character == '\n' && file.text.size() >= BlockSize) WriteBlock(file);
}

void Add(ResultFile& file, std::int64_t number) {
  NumberBuffer buffer;
  file.text.append(FormatNumber(number, buffer));
}

void Add(ResultFile& file, double number) {
  NumberBuffer buffer;
  file.text.append(FormatNumber(number, buffer));
}

void AddColumn(ResultFile& file, double number) {
  NumberBuffer buffer;
  AddRightAligned(file, FormatNumber(number, buffer), ColumnWidth);
}

void AddNodeColumn(ResultFile& file, std::int32_t node) {
  NumberBuffer buffer;
  AddRightAligned(file, FormatNumber(static_cast<std::int64_t>(node), buffer), ColumnWidth - 1);
  file.text.push_back(':');
}

void AddTitles(ResultFile& file, std::initializer_list<std::string_view> titles) {
  for (const std::string_view title : titles) AddRightAligned(file, title, ColumnWidth);
  Add(file, '\n');
}

}  // namespace korvex
