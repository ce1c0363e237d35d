// The tables of the free and the fixed dofs against what was said of their size before.
#include "sparse/free_matrix.h"

#include <gtest/gtest.h>

#include "model/read_input_file.h"
#include "support/good_models.h"
#include "support/same_bits.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

// Memory is foreseen from the graph alone. A's tables lose the entries that are 0 for all elements,
// and are never larger than foreseen; those of C are kept as they are.
TEST(FreeMatrix, TakesTheBytesThatWereCounted) {
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    korvex::Model model;
    korvex::ReadInputText(korvex::test::WriteModel(MakeGoodModel(seed)), model);
    korvex::NumberEquations(model);
    FreeDofs dofs;
    ListFreeDofs(model.Tables, dofs);
    NodeGraph graph;
    BuildNodeGraph(model.Tables, graph);
    UpperMatrix A;
    FixedRows C;
    AssembleFree(model, graph, dofs, {}, A, C);
    constexpr std::size_t EntryBytes = sizeof(std::int32_t) + sizeof(double);
    EXPECT_EQ(CountFixedBytes(graph, dofs),
              C.columns.size() * EntryBytes + C.begins.size() * sizeof(std::int64_t));
    EXPECT_EQ(C.columns.capacity(), C.columns.size());
    EXPECT_EQ(C.values.size(), C.columns.size());
    EXPECT_LE(A.columns.size() * EntryBytes, CountMatrixBytes(graph, dofs));
  }
}

// The entries get their terms in the order of the elements, whoever forms these.
TEST(FreeMatrix, HasTheSameBitsOnAnyNumberOfThreads) {
  for (std::uint32_t seed = 0; seed < 5; ++seed) {
    korvex::Model model;
    korvex::ReadInputText(korvex::test::WriteModel(MakeGoodModel(seed)), model);
    korvex::NumberEquations(model);
    FreeDofs dofs;
    ListFreeDofs(model.Tables, dofs);
    NodeGraph graph;
    BuildNodeGraph(model.Tables, graph);
    UpperMatrix A, several;
    FixedRows C, fixed;
    AssembleFree(model, graph, dofs, {}, A, C);
    for (const int threads : {2, 3, 8}) {
      SCOPED_TRACE(std::to_string(seed) + ", threads: " + std::to_string(threads));
      AssembleFree(model, graph, dofs, {}, several, fixed, threads);
      EXPECT_EQ(several.columns, A.columns);
      EXPECT_TRUE(korvex::test::SameBits(several.values, A.values));
      EXPECT_EQ(fixed.columns, C.columns);
      EXPECT_TRUE(korvex::test::SameBits(fixed.values, C.values));
    }
  }
}

}  // namespace
}  // namespace kvx::test
