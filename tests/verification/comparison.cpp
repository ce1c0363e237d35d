#include "verification/comparison.h"

#include "verification/book.h"

namespace korvex::book {

std::string FormatComparisons(const std::vector<Comparison>& comparisons) {
  std::vector<Row> rows{{"", "reference", "result", "result / reference"}};
  for (const Comparison& c : comparisons) {
    rows.push_back({c.name, Figure(c.reference), Figure(c.result), Ratio(c.result / c.reference)});
  }
  return FormatTable(rows);
}

}  // namespace korvex::book
