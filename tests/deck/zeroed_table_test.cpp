// Tables whose rows are zero without being written.
#include "deck/zeroed_table.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstring>

#include "model/model.h"
#include "platform/free_memory.h"
#include "report/check_memory.h"

namespace korvex {
namespace {

// A default record has the same bytes as a row of a new table.
template <typename Record>
void ExpectZeroByDefault() {
  const Record record{};
  const ZeroedTable<Record> table(1);
  EXPECT_EQ(std::memcmp(&record, table.data(), sizeof record), 0);
}

TEST(ZeroedTable, DefaultRecordsOfAllTablesAreZero) {
  ExpectZeroByDefault<Material>();
  ExpectZeroByDefault<ShellThickness>();
  ExpectZeroByDefault<BeamSection>();
  ExpectZeroByDefault<CBeamSection>();
  ExpectZeroByDefault<Node>();
  ExpectZeroByDefault<NodalRestraint>();
  ExpectZeroByDefault<NodalForce>();
  ExpectZeroByDefault<ShellSurfaceLoad>();
  ExpectZeroByDefault<BeamLineLoad>();
}

TEST(ZeroedTable, RowsKeepTheirValuesAndCopies) {
  ZeroedTable<Node> table(3);
  table[1] = {1.0, 2.0, 3.0};
  const ZeroedTable<Node> copy = table;
  EXPECT_EQ(copy[0].x, 0.0);
  EXPECT_EQ(copy[1].z, 3.0);
  table.push_back({4.0, 5.0, 6.0});
  EXPECT_EQ(table[1].y, 2.0);
  EXPECT_EQ(table[3].y, 5.0);
}

// A table in memory that was used before is zero too.
TEST(ZeroedTable, ANewTableIsZeroAgain) {
  ZeroedTable<Node> table;
  for (int round = 0; round < 3; ++round) {
    AllocateItems("nodes", 10, table);
    for (Node& node : table) {
      EXPECT_EQ(node.y, 0.0);
      node.y = 7.0;
    }
  }
}

// A table of a quarter of the free memory: the process must hold hardly more than before.
TEST(ZeroedTable, RowsTakeNoMemoryUntilTheyAreWritten) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the address sanitizer writes a byte for every eight that are allocated";
#endif
  const std::uint64_t bytes = ReadFreeMemory() / 4;
  struct rusage before {
  }, after{};
  getrusage(RUSAGE_SELF, &before);
  ZeroedTable<Node> table;
  AllocateItems("nodes", static_cast<std::size_t>(bytes / sizeof(Node)), table);
  EXPECT_EQ(table.back().z, 0.0);
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(static_cast<std::uint64_t>(after.ru_maxrss - before.ru_maxrss) * 1024, bytes / 10);
}

}  // namespace
}  // namespace korvex
