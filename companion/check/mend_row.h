// Rows that cannot be read as they stand: a finding for each slip, and the row as it was meant,
// where that is certain.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "check/scan_row.h"
#include "check/section_text.h"
#include "finding/finding.h"

namespace kvx {

struct MendedRow {
  std::array<double, NumbersPerRow> values{};  // as far as they are known; 0 otherwise
  bool isLost = false;                         // they are not
};

// "restraint of node 0", "node 5", "material 1". number: the row, or what the row begins with where
// it refers to a node or element.
std::string DescribeRow(korvex::Section section, std::int32_t number);

// A row on one line.
MendedRow MendLine(std::string_view text, const TextItem& item, korvex::Section section,
                   std::int32_t row, FindingList& findings);

// A row with several lines: each line that is wrong is named by itself. Lines that are missing,
// doubled or in another order are one finding.
MendedRow MendBlock(std::string_view text, const TextItem& item, korvex::Section section,
                    std::int32_t row, FindingList& findings);

}  // namespace kvx
