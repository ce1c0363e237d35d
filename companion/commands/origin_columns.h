// Columns with the deck's numbers in the tables of an imported model.
//
// In CSV and JSON: behind "node" a column "deck_node", behind "node1" "deck_node1", behind
// "element" "deck_element". For people: "deck" behind "node", "beam" or "element"; of an element
// with its type, "CQUAD4 4711"; where a table has both, that of the node is "deck node". The kind
// of an element is that of the column "kind"; in tables without one it is a beam.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "commands/result_table.h"
#include "tables/model_origin.h"

namespace kvx {

enum class ColumnReader { Program, Person };

struct OriginColumn {
  std::size_t behind = 0;  // the column of the model's numbers
  bool isNode = false;
};

// Where the columns go in the rows of a table. Without an origin it changes nothing.
struct OriginColumns {
  const ModelOrigin* origin = nullptr;
  ColumnReader reader = ColumnReader::Program;
  std::size_t width = 0;              // columns before
  std::size_t kind = 0;               // of an element; `width`: none
  std::vector<OriginColumn> columns;  // in the order of the table
};

// Adds the names and, for programs, a note. The cells of the table stay.
void BeginOriginColumns(const ModelOrigin& origin, ColumnReader reader, ResultTable& table,
                        OriginColumns& columns);

// Adds the cells to whole rows of the table as it was before.
void AddOriginCells(const OriginColumns& columns, std::vector<Cell>& cells);

// Both, for a table that has its rows.
void AddOriginColumns(const ModelOrigin& origin, ColumnReader reader, ResultTable& table);

}  // namespace kvx
