// Mistakes planted into good models at random places: each must be named, and nothing else.
#pragma once

#include <functional>
#include <string>

#include "support/expect_findings.h"
#include "support/good_models.h"

namespace kvx::test {

// Plants one mistake and says what must name it. Returns false where the model has no place for it.
using Plant = std::function<bool(korvex::test::ModelText& model, Dice& dice, Expected& expected)>;

// Plants into random good models until `models` of them had a place, and expects the finding alone
// in each. The finding's line must hold the row: "7:..." or "#7:", where rows are numbered.
void ExpectPlanted(const Plant& plant, int models = 40);

// A random index of a table with `count` rows, as an int.
inline int RollRow(std::size_t count, Dice& dice) {
  return RollInteger(dice, 0, static_cast<int>(count) - 1);
}

// A row of a table that is not empty; `row` gets its number.
template <typename Table>
auto& AnyRow(Table& table, Dice& dice, int& row) {
  row = RollRow(table.size(), dice);
  return table[static_cast<std::size_t>(row)];
}

// A quadrilateral with a node that no other element has.
struct FreeCorner {
  int row = -1;            // of the four-node shells; -1: there is none
  std::size_t corner = 0;  // 0 .. 3
};
FreeCorner FindFreeCorner(const korvex::test::ModelText& model, Dice& dice);

using Point = std::array<double, 3>;
Point& PointOf(korvex::test::ModelText& model, int node);
// a + s (b - a)
Point Between(const Point& a, const Point& b, double s);

}  // namespace kvx::test
