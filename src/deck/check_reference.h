// References of the model file that lead outside their table, and counts that no table can have.
//
// The file is written by another program and is used as it stands; but nothing may be read from
// memory that no row was read into. Each reference is therefore checked where it is first used, and
// a bad one ends the run with a notice that names row, field, value and table.
#pragma once

#include <cstdint>

namespace korvex {

// What a reference leads to, for the notice: "there are 800 nodal points".
struct TableSize {
  const char* name;    // plural, as the model file calls its rows
  std::int32_t count;  // rows
};

// Throws a Stop unless 0 <= value < table.count. `rowKind` and `row` name the referring row,
// `field` what it refers to: "Beam element 17 refers to node 812; there are 800 nodal points."
void CheckReference(const char* rowKind, std::int32_t row, const char* field, std::int32_t value,
                    const TableSize& table);

// Throws a Stop if `count` is negative; `key` is its name in the model file.
void CheckCount(const char* key, std::int32_t count);

}  // namespace korvex
