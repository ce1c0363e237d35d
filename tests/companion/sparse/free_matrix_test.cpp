// The tables of the free and the fixed dofs against what was said of their size before.
#include "sparse/free_matrix.h"

#include <gtest/gtest.h>

#include "model/read_input_file.h"
#include "support/good_models.h"
#include "support/same_bits.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

// A good model with what its matrix is made from.
struct GoodSystem {
  korvex::Model model;
  FreeDofs dofs;
  NodeGraph graph;

  explicit GoodSystem(std::uint32_t seed) {
    korvex::ReadInputText(korvex::test::WriteModel(MakeGoodModel(seed)), model);
    korvex::NumberEquations(model);
    ListFreeDofs(model.Tables, dofs);
    BuildNodeGraph(model.Tables, graph);
  }
  void Assemble(int threads, UpperMatrix& A, FixedRows& C) const {
    AssembleFree(model, graph, dofs, {}, A, C, threads);
  }
};

// Memory is foreseen from the graph alone. A's tables lose the entries that are 0 for all elements,
// and are never larger than foreseen; those of C are kept as they are.
TEST(FreeMatrix, TakesTheBytesThatWereCounted) {
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    const GoodSystem system(seed);
    UpperMatrix A;
    FixedRows C;
    system.Assemble(1, A, C);
    constexpr std::size_t EntryBytes = sizeof(std::int32_t) + sizeof(double);
    EXPECT_EQ(CountFixedBytes(system.graph, system.dofs),
              C.columns.size() * EntryBytes + C.begins.size() * sizeof(std::int64_t));
    EXPECT_EQ(C.columns.capacity(), C.columns.size());
    EXPECT_EQ(C.values.size(), C.columns.size());
    EXPECT_LE(A.columns.size() * EntryBytes, CountMatrixBytes(system.graph, system.dofs));
  }
}

// The entries get their terms in the order of the elements, whoever forms these.
TEST(FreeMatrix, HasTheSameBitsOnAnyNumberOfThreads) {
  for (std::uint32_t seed = 0; seed < 5; ++seed) {
    const GoodSystem system(seed);
    UpperMatrix A, several;
    FixedRows C, fixed;
    system.Assemble(1, A, C);
    for (const int threads : {2, 3, 8}) {
      SCOPED_TRACE(std::to_string(seed) + ", threads: " + std::to_string(threads));
      system.Assemble(threads, several, fixed);
      EXPECT_EQ(several.columns, A.columns);
      EXPECT_TRUE(korvex::test::SameBits(several.values, A.values));
      EXPECT_EQ(fixed.columns, C.columns);
      EXPECT_TRUE(korvex::test::SameBits(fixed.values, C.values));
    }
  }
}

}  // namespace
}  // namespace kvx::test
