// A table of results as data, and its three forms: text, CSV, JSON.
//
// Text: title, columns aligned, six significant digits, notes below. CSV (RFC 4180): the notes as
// lines that begin with "# ", a line with the names of the columns, then the rows; numbers as the
// shortest text that gives the same double; NaN as "nan"; lines end with "\n". JSON: an array of
// objects, one for each row, keyed by the names of the columns; what is not finite is null.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <variant>
#include <vector>

#include "finding/findings_text.h"

namespace kvx {

// Empty cells are for what does not exist, such as the force of a dof that is free.
using Cell = std::variant<std::monostate, std::int64_t, double, std::string>;

struct ResultTable {
  std::string title;                 // a line above the text; not in CSV and JSON
  std::vector<std::string> notes;    // sentences: frame, signs, units
  std::vector<std::string> columns;  // names, the same in all forms: "Fx", "node"
  std::vector<Cell> cells;           // rows x columns, row-major
};

// Numbers are right-aligned, words left-aligned. The notes are wrapped at the style's width, the
// rows are not.
std::string TableText(const ResultTable& table, const TextStyle& style);

std::string TableCsv(const ResultTable& table);

// Its two parts, for tables that are written in blocks: notes and names, and the rows.
std::string CsvHead(const ResultTable& table);
std::string CsvRows(const ResultTable& table);

nlohmann::ordered_json TableJson(const ResultTable& table);

// One line of ASCII that ends with "\n". Bytes that are no UTF-8 become U+FFFD.
std::string JsonLine(const nlohmann::ordered_json& json);

}  // namespace kvx
