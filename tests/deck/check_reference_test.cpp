// References at the first and last row of a table and beyond, counts at zero and below, and the
// texts of the notices.
#include "deck/check_reference.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/expect_stop.h"

namespace korvex {
namespace {

using test::ExpectStop;

constexpr std::int32_t Smallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Largest = std::numeric_limits<std::int32_t>::max();

TEST(CheckReference, RowsOfTheTablePass) {
  CheckReference("Beam element", 17, "node", 0, {"nodal points", 800});
  CheckReference("Beam element", 17, "node", 799, {"nodal points", 800});
  CheckReference("Beam element", 17, "node", Largest - 1, {"nodal points", Largest});
}

TEST(CheckReference, ARowAfterTheLastStops) {
  ExpectStop(
      [] {
        CheckReference("Beam element", 17, "node", 800, {"nodal points", 800});
      },
      "Beam element 17 refers to node 800; there are 800 nodal points.");
  ExpectStop(
      [] {
        CheckReference("Beam element", 17, "node", 812, {"nodal points", 800});
      },
      "Beam element 17 refers to node 812; there are 800 nodal points.");
}

TEST(CheckReference, ANegativeRowStops) {
  ExpectStop(
      [] {
        CheckReference("Nodal force", 0, "node", -1, {"nodal points", 3});
      },
      "Nodal force 0 refers to node -1; there are 3 nodal points.");
  ExpectStop(
      [] {
        CheckReference("Nodal force", 0, "node", Smallest, {"nodal points", 3});
      },
      "Nodal force 0 refers to node -2147483648; there are 3 nodal points.");
}

TEST(CheckReference, AnEmptyTableHasNoRows) {
  ExpectStop(
      [] {
        CheckReference("Beam element", 2, "material", 0, {"materials", 0});
      },
      "Beam element 2 refers to material 0; there are 0 materials.");
}

TEST(CheckCount, ZeroAndAbovePass) {
  CheckCount("NPOIN", 0);
  CheckCount("NPOIN", Largest);
}

TEST(CheckCount, ANegativeCountStops) {
  ExpectStop([] { CheckCount("NPOIN", -1); }, "The count NPOIN is negative: -1.");
  ExpectStop([] { CheckCount("NDL_B", Smallest); }, "The count NDL_B is negative: -2147483648.");
}

}  // namespace
}  // namespace korvex
