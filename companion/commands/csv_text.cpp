#include "commands/csv_text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kvx {

void AddCsvNumber(double number, std::string& text) {
  if (std::isnan(number)) {  // without its sign
    text += "nan";
    return;
  }
  std::array<char, 32> digits{};
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number + 0.0).ptr;
  text.append(digits.data(), end);
}

void AddCsvText(std::string_view field, std::string& text) {
  if (field.find_first_of(",\"\r\n") == std::string_view::npos) {
    text += field;
    return;
  }
  text += '"';
  for (const char c : field) {
    text += c;
    if (c == '"') text += c;
  }
  text += '"';
}

}  // namespace kvx
