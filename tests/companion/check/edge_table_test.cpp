// The edges of shells, with the shells and their directions.
#include "check/edge_table.h"

#include <gtest/gtest.h>

#include <map>

#include "check/read_checked.h"
#include "support/good_models.h"
#include "support/mesh_mistakes.h"

namespace kvx::test {
namespace {

// All edges of random models, as a map finds them.
TEST(EdgeTable, HoldsTheEdgesOfAllShells) {
  std::size_t edgeCount = 0;
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    const korvex::test::ModelText text = MakeGoodModel(seed);
    using Entry = std::pair<std::uint32_t, bool>;  // shell, runs down
    std::map<std::pair<int, int>, std::vector<Entry>> expected, found;
    std::uint32_t shell = 0;
    for (const ShellOfText& at : ListShells(text)) {
      for (std::size_t k = 0; k < at.nodes.size(); ++k) {
        const int from = at.nodes[k], to = at.nodes[(k + 1) % at.nodes.size()];
        expected[std::minmax(from, to)].emplace_back(shell, from > to);
      }
      ++shell;
    }
    CheckedModel model;
    ReadChecked(korvex::test::WriteModel(text), model);
    EdgeTable table;
    BuildEdgeTable(model, table);
    for (std::int32_t node = 0; node < CountRows(model.tables, korvex::Section::Nodes); ++node) {
      VisitEdgesOf(table, node, [&](std::int32_t low, const ShellEdge* at, const ShellEdge* end) {
        std::vector<Entry>& entries = found[{low, at->high}];
        EXPECT_TRUE(entries.empty());
        for (; at != end; ++at) entries.emplace_back(ShellOf(*at), RunsDown(*at));
      });
    }
    EXPECT_EQ(found, expected);
    edgeCount += found.size();
  }
  EXPECT_GT(edgeCount, 1000U);
}

}  // namespace
}  // namespace kvx::test
