#include "commands/result_table.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "check/describe.h"
#include "commands/csv_text.h"
#include "commands/number_json.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t Gap = 2;  // blanks between columns

std::string ShortestText(double value) {
  std::string text;
  AddCsvNumber(value, text);
  return text;
}

// The cell as text; numbers by `numberText`.
template <typename NumberToText>
std::string CellText(const Cell& cell, const NumberToText& numberText) {
  if (const auto* integer = std::get_if<std::int64_t>(&cell)) return std::to_string(*integer);
  if (const auto* number = std::get_if<double>(&cell)) return numberText(*number + 0.0);
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  return {};
}

std::size_t CountCharacters(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;  // not a byte within a character
  }));
}

// Calls f(first) with the first cell of each row. A table without columns has no rows.
template <typename Function>
void ForRows(const ResultTable& table, const Function& f) {
  const std::size_t columns = table.columns.size();
  for (std::size_t first = 0; columns > 0 && first + columns <= table.cells.size();
       first += columns) {
    f(first);
  }
}

struct TextColumn {
  std::size_t width = 0;  // characters
  bool isText = false;    // holds words
};

// cells: one for each column.
void AddLine(const std::vector<TextColumn>& columns, const std::string* cells, std::string& text) {
  std::string line;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    if (c > 0) line.append(Gap, ' ');
    const std::string blanks(columns[c].width - CountCharacters(cells[c]), ' ');
    line += columns[c].isText ? cells[c] + blanks : blanks + cells[c];
  }
  line.erase(line.find_last_not_of(' ') + 1);
  text += "  " + line + '\n';
}

Json CellJson(const Cell& cell) {
  if (const auto* integer = std::get_if<std::int64_t>(&cell)) return *integer;
  if (const auto* number = std::get_if<double>(&cell)) return NumberJson(*number);
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  return nullptr;
}

}  // namespace

std::string TableText(const ResultTable& table, const TextStyle& style) {
  std::vector<TextColumn> columns;
  for (const std::string& name : table.columns) columns.push_back({CountCharacters(name), false});
  std::vector<std::string> cells;
  cells.reserve(table.cells.size());
  ForRows(table, [&](std::size_t first) {
    for (std::size_t c = 0; c < columns.size(); ++c) {
      const Cell& cell = table.cells[first + c];
      cells.push_back(CleanText(CellText(cell, NumberText)));
      columns[c].width = std::max(columns[c].width, CountCharacters(cells.back()));
      if (std::holds_alternative<std::string>(cell)) columns[c].isText = true;
    }
  });

  std::string text;
  if (!table.title.empty()) text += WrapText(CleanText(table.title), style.width, "", "  ");
  AddLine(columns, table.columns.data(), text);
  ForRows(table, [&](std::size_t first) { AddLine(columns, &cells[first], text); });
  for (const std::string& note : table.notes) text += WrapText(note, style.width, "", "");
  return text;
}

std::string TableCsv(const ResultTable& table) { return CsvHead(table) + CsvRows(table); }

std::string CsvHead(const ResultTable& table) {
  std::string text;
  for (const std::string& note : table.notes) text += "# " + note + '\n';
  const std::size_t columns = table.columns.size();
  for (std::size_t c = 0; c < columns; ++c) {
    if (c > 0) text += ',';
    AddCsvText(table.columns[c], text);
  }
  return text + '\n';
}

std::string CsvRows(const ResultTable& table) {
  std::string text;
  ForRows(table, [&](std::size_t first) {
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
      if (c > 0) text += ',';
      AddCsvText(CellText(table.cells[first + c], ShortestText), text);
    }
    text += '\n';
  });
  return text;
}

Json TableJson(const ResultTable& table) {
  Json rows = Json::array();
  ForRows(table, [&](std::size_t first) {
    Json row = Json::object();
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
      row[table.columns[c]] = CellJson(table.cells[first + c]);
    }
    rows.push_back(std::move(row));
  });
  return rows;
}

std::string JsonLine(const Json& json) {
  constexpr int OneLine = -1;
  constexpr bool AsAscii = true;
  return json.dump(OneLine, ' ', AsAscii, Json::error_handler_t::replace) + '\n';
}

}  // namespace kvx
