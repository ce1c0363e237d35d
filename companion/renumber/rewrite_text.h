// The text of a model file, or of a file of loads, with other rows: what stands before the rows
// that change stays as it is, byte by byte, and so does what stands behind the last row.
//
// The new rows are those of the model's writer: each number has the bits that it had. They end as
// the lines of the text do: with "\r\n" if its first line does, else with "\n".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "deck/model_tables.h"

namespace kvx {

// text: of a model file that is read without a slip. end: where its last row ends, bytes. Rewrites
// everything from the count of nodes on; so the names of sections stay.
std::string RewriteModel(std::string_view text, std::size_t end, const korvex::ModelTables& tables);

// The same for a text whose loads alone change: from the count of forces on.
std::string RewriteLoads(std::string_view text, std::size_t end, const korvex::ModelTables& loads);

}  // namespace kvx
