// The part of a rank where memory is short: in child processes with a limit. POSIX only.
#include <gtest/gtest.h>

#include "report/stop.h"
#include "sparse/row_part.h"
#include "support/limited_child.h"

namespace kvx::test {
namespace {

constexpr std::int32_t Shells = 20000;

// A strip of shells, of which nothing but the records and their nodes is needed.
void MakeStrip(korvex::Model& model, FreeDofs& dofs) {
  model.Shell4Elements.resize(Shells);
  for (std::int32_t e = 0; e < Shells; ++e) {
    for (const std::int32_t node : {2 * e, 2 * e + 1, 2 * e + 3, 2 * e + 2}) {
      model.Tables.Shell4Nodes.push_back(node);
    }
  }
  model.Tables.Nodes.resize(2 * Shells + 2);
  ListFreeDofs(model.Tables, dofs);
}

// With any memory the part is made or a Stop says that it cannot be; with little it is that.
TEST(RowPart, StopsWhereMemoryIsShort) {
  if (korvex::test::IsMemoryUnlimited) GTEST_SKIP() << "sanitizers take addresses of their own";
  korvex::Model model;
  FreeDofs dofs;
  MakeStrip(model, dofs);
  const std::vector<std::int32_t> owners(model.Tables.Nodes.size(), 1);
  constexpr int Steps = 12;
  const std::uint64_t whole = Shells * sizeof(korvex::Shell4Element);
  int stops = 0;
  for (int step = 1; step <= Steps; ++step) {
    const std::uint64_t bytes = static_cast<std::uint64_t>(step) * 2 * whole / Steps;
    RowPart part;
    const auto make = [&] { MakeRowPart(model, dofs, owners, 1, part); };
    if (korvex::test::SucceedsWithin(bytes, make)) continue;
    ++stops;
    EXPECT_TRUE(korvex::test::SucceedsWithin(bytes, [&] {
      try {
        make();
      } catch (const korvex::Stop& stop) {
        if (stop.text.rfind("Not enough memory for the ", 0) != 0) throw;
      }
    })) << bytes;
  }
  EXPECT_GT(stops, 3);
  EXPECT_LT(stops, Steps);  // the last ones hold it
}

}  // namespace
}  // namespace kvx::test
