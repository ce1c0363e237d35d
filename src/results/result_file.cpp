// The text of result_file.h.
#include "results/result_file.h"

#include <array>
#include <charconv>

#include "platform/stop_run.h"

namespace korvex {

namespace {

constexpr int SignificantDigits = 6;
constexpr std::size_t ColumnWidth = 15;

// Long enough for "-1.23457e-308" and for every 64-bit integer.
using Digits = std::array<char, 24>;

std::string_view Format(double number, Digits& digits) {
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                 std::chars_format::general, SignificantDigits);
  return {digits.data(), static_cast<std::size_t>(end.ptr - digits.data())};
}

std::string_view Format(std::int64_t number, Digits& digits) {
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), static_cast<std::size_t>(end.ptr - digits.data())};
}

void AddRightAligned(ResultFile& file, std::string_view item, std::size_t width) {
  if (item.size() < width) file.text.append(width - item.size(), ' ');
  file.text.append(item);
}

// Writing block by block saves a call for each line, and keeps the text within the cache.
constexpr std::size_t BlockSize = std::size_t{1} << 16U;

void WriteBlock(ResultFile& file) {
  file.stream.write(file.text.data(), static_cast<std::streamsize>(file.text.size()));
  file.text.clear();
}

}  // namespace

void OpenResultFile(const char* name, const char* gbkFailure, ResultFile& file) {
  file.stream.open(name);
  if (!file.stream.is_open()) StopUnwritable(gbkFailure);
  file.text.reserve(BlockSize + BlockSize / 4);
}

void CloseResultFile(ResultFile& file) {
  WriteBlock(file);
  file.stream.close();
}

void Add(ResultFile& file, std::string_view text) { file.text.append(text); }

void Add(ResultFile& file, char character) {
  file.text.push_back(character);
  if (character == '\n' && file.text.size() >= BlockSize) WriteBlock(file);
}

void Add(ResultFile& file, std::int64_t number) {
  Digits digits;
  file.text.append(Format(number, digits));
}

void Add(ResultFile& file, double number) {
  Digits digits;
  file.text.append(Format(number, digits));
}

void AddColumn(ResultFile& file, double number) {
  Digits digits;
  AddRightAligned(file, Format(number, digits), ColumnWidth);
}

void AddNodeColumn(ResultFile& file, std::int32_t node) {
  Digits digits;
  AddRightAligned(file, Format(static_cast<std::int64_t>(node), digits), ColumnWidth - 1);
  file.text.push_back(':');
}

void AddTitles(ResultFile& file, std::initializer_list<std::string_view> titles) {
  for (const std::string_view title : titles) AddRightAligned(file, title, ColumnWidth);
  Add(file, '\n');
}

}  // namespace korvex
