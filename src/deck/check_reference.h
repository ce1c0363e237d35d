// Checks for references of the model file that lead outside their table, and for negative counts.
//
// Another program writes the file, and its references are used without conversion. Each reference
// is checked where it is first used, so that no memory outside a table is read. A wrong one ends
// the run with a notice that names row, field, value and table.
#pragma once

#include <cstdint>

namespace korvex {

// The table that a reference points to, for the notice: "there are 800 nodal points".
struct TableSize {
  const char* name;    // plural, as the model file calls its rows
  std::int32_t count;  // rows
};

// Throws a Stop unless 0 <= value < table.count: "Beam element 17 refers to node 812; there are 800
// nodal points." rowKind, row: the row with the reference; field: the kind of the reference.
void CheckReference(const char* rowKind, std::int32_t row, const char* field, std::int32_t value,
                    const TableSize& table);

// Throws a Stop where `count` is negative. key: its name in the model file.
void CheckCount(const char* key, std::int32_t count);

}  // namespace korvex
