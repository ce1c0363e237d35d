#include "commands/origin_columns.h"

#include <algorithm>
#include <limits>

#include "commands/element_words.h"
#include "commands/origin_words.h"

namespace kvx {

namespace {

// "node", "node1" .. "node4"
bool IsNodeColumn(const std::string& name) {
  const std::string word = "node";
  return name.compare(0, word.size(), word) == 0 &&
         std::all_of(name.begin() + static_cast<std::ptrdiff_t>(word.size()), name.end(),
                     [](char c) { return c >= '0' && c <= '9'; });
}

bool IsElementColumn(const std::string& name, ColumnReader reader) {
  return name == "element" || (name == "beam" && reader == ColumnReader::Person);
}

// Whether the cell is this word, for people or for programs.
bool IsKind(const Cell& cell, Holder holder) {
  const auto* const text = std::get_if<std::string>(&cell);
  return text != nullptr && (*text == NameOf(holder) || *text == KindWord(holder));
}

Holder HolderAt(const OriginColumns& columns, const Cell* row) {
  if (columns.kind == columns.width) return Holder::Beam;
  for (const Holder holder : {Holder::Shell4, Holder::Shell3, Holder::Beam}) {
    if (IsKind(row[columns.kind], holder)) return holder;
  }
  return Holder::Node;
}

// Empty where the cell holds no number, or the deck has none.
Cell NumberCell(const std::vector<std::int64_t>& numbers, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);  // very large if negative
  return at < numbers.size() ? Cell(numbers[at]) : Cell();
}

Cell OriginCell(const OriginColumns& columns, const OriginColumn& column, const Cell* row) {
  const auto* const number = std::get_if<std::int64_t>(&row[column.behind]);
  if (number == nullptr || *number < 0 || *number > std::numeric_limits<std::int32_t>::max()) {
    return {};
  }
  const auto at = static_cast<std::int32_t>(*number);
  const ModelOrigin& origin = *columns.origin;
  const Holder holder = column.isNode ? Holder::Node : HolderAt(columns, row);
  if (holder == Holder::Node) return NumberCell(origin.nodes, at);
  const ElementOrigin& elements = OriginOf(origin, ElementKindOf(holder));
  if (columns.reader == ColumnReader::Program) return NumberCell(elements.numbers, at);
  std::string text = OriginOfElement(origin, elements, at);
  return text.empty() ? Cell() : Cell(std::move(text));
}

std::string ColumnName(const OriginColumn& column, const std::string& behind, ColumnReader reader,
                       bool hasElements) {
  if (reader == ColumnReader::Program) return "deck_" + behind;
  return column.isNode && hasElements ? "deck node" : "deck";
}

}  // namespace

void BeginOriginColumns(const ModelOrigin& origin, ColumnReader reader, ResultTable& table,
                        OriginColumns& columns) {
  columns = {};
  columns.reader = reader;
  columns.width = table.columns.size();
  if (!HasOrigin(origin)) return;
  columns.origin = &origin;
  const auto kind = std::find(table.columns.begin(), table.columns.end(), "kind");
  columns.kind = static_cast<std::size_t>(kind - table.columns.begin());
  bool hasElements = false;
  for (std::size_t c = 0; c < columns.width; ++c) {
    const bool isElement = IsElementColumn(table.columns[c], reader);
    if (!isElement && !IsNodeColumn(table.columns[c])) continue;
    columns.columns.push_back({c, !isElement});
    hasElements = hasElements || isElement;
  }
  for (auto column = columns.columns.rbegin(); column != columns.columns.rend(); ++column) {
    const auto at = table.columns.begin() + static_cast<std::ptrdiff_t>(column->behind);
    table.columns.insert(at + 1, ColumnName(*column, *at, reader, hasElements));
  }
  if (reader == ColumnReader::Program && !columns.columns.empty()) {
    table.notes.push_back("deck_node, deck_element: their numbers in " + origin.source + ".");
  }
}

void AddOriginCells(const OriginColumns& columns, std::vector<Cell>& cells) {
  if (columns.columns.empty()) return;
  std::vector<Cell> wide;
  wide.reserve(cells.size() / columns.width * (columns.width + columns.columns.size()));
  for (std::size_t first = 0; first + columns.width <= cells.size(); first += columns.width) {
    const Cell* const row = &cells[first];
    auto next = columns.columns.begin();
    for (std::size_t c = 0; c < columns.width; ++c) {
      wide.push_back(row[c]);
      if (next == columns.columns.end() || next->behind != c) continue;
      wide.push_back(OriginCell(columns, *next, row));
      ++next;
    }
  }
  cells.swap(wide);
}

void AddOriginColumns(const ModelOrigin& origin, ColumnReader reader, ResultTable& table) {
  OriginColumns columns;
  BeginOriginColumns(origin, reader, table, columns);
  AddOriginCells(columns, table.cells);
}

}  // namespace kvx
