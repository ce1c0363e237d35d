// The rows that ranks form by themselves, against those of the whole matrix.
#include "sparse/row_part.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "model/read_input_file.h"
#include "renumber/node_graph.h"
#include "renumber/orders.h"
#include "report/stop.h"
#include "sparse/multiply.h"
#include "sparse/shared_matrix.h"
#include "support/good_models.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

struct Whole {
  korvex::Model model;
  NodeGraph graph;
  FreeDofs dofs;
  FreeGraph free;
  UpperMatrix A;
  FixedRows C;
  std::vector<std::int32_t> order;
};

void Read(const ModelText& text, Whole& whole) {
  korvex::ReadInputText(korvex::test::WriteModel(text), whole.model);
  korvex::NumberEquations(whole.model);
  BuildNodeGraph(whole.model.Tables, whole.graph);
  ListFreeDofs(whole.model.Tables, whole.dofs);
  BuildFreeGraph(whole.graph, whole.dofs, whole.free);
  // Any order shows whether the parts are right; this one needs no library.
  whole.order = ReverseCuthillMckee(whole.free.graph);
  AssembleFree(whole.model, whole.graph, whole.dofs, {}, whole.A, whole.C);
}

std::vector<std::int32_t> Share(const Whole& whole, int ranks) {
  const auto nodes = static_cast<std::size_t>(CountNodes(whole.graph));
  return ShareNodes(whole.free, whole.order, nodes, ranks);
}

void Form(const Whole& whole, const std::vector<std::int32_t>& owners, int rank, RowPart& part,
          UpperMatrix& A, FixedRows& C) {
  MakeRowPart(whole.model, whole.dofs, owners, rank, part);
  AssembleRows(part, CountRows(whole.A), {}, A, C, 1);
}

template <typename Item>
std::vector<Item> Cut(const std::vector<Item>& items, std::int64_t begin, std::int64_t end) {
  return {items.begin() + begin, items.begin() + end};
}

// Same bits: every entry gets its terms in the same order.
TEST(RowPart, HasTheBitsOfTheWholeMatrix) {
  for (std::uint32_t seed = 300; seed < 315; ++seed) {
    SCOPED_TRACE(seed);
    Whole whole;
    Read(MakeGoodModel(seed), whole);
    for (const int ranks : {1, 2, 3, 7}) {
      const std::vector<std::int32_t> owners = Share(whole, ranks);
      std::set<std::int32_t> seen;
      for (int rank = 0; rank < ranks; ++rank) {
        RowPart part;
        UpperMatrix A;
        FixedRows C;
        Form(whole, owners, rank, part, A, C);
        ASSERT_EQ(CountRows(A), CountRows(whole.A));
        ASSERT_EQ(A.rows.size(), CountRowsHere(A));
        for (std::size_t k = 0; k < CountRowsHere(A); ++k) {
          const std::size_t row = RowOf(A, k);
          const std::int64_t begin = whole.A.begins[row], end = whole.A.begins[row + 1];
          EXPECT_EQ(Cut(A.columns, A.begins[k], A.begins[k + 1]), Cut(whole.A.columns, begin, end));
          EXPECT_EQ(Cut(A.values, A.begins[k], A.begins[k + 1]), Cut(whole.A.values, begin, end));
          EXPECT_TRUE(seen.insert(A.rows[k]).second) << "two ranks have row " << row;
        }
        if (rank == 0) {
          EXPECT_EQ(C.begins, whole.C.begins);
        } else {
          EXPECT_TRUE(C.columns.empty());
        }
      }
      EXPECT_EQ(seen.size(), static_cast<std::size_t>(CountRows(whole.A)));
    }
  }
}

// Rank 0 knows all that couples fixed dofs with others, also where other ranks have these.
TEST(RowPart, GivesRankZeroTheFixedRows) {
  Whole whole;
  Read(MakeGoodModel(301), whole);
  RowPart part;
  UpperMatrix A;
  FixedRows C;
  Form(whole, Share(whole, 5), 0, part, A, C);
  ASSERT_FALSE(whole.C.values.empty());
  EXPECT_EQ(C.columns, whole.C.columns);
  EXPECT_EQ(C.values, whole.C.values);
}

// Of a model with 200 nodes or more, a rank's entries differ from the mean by no more than the
// largest node on either side has, some 200.
TEST(RowPart, SharesTheEntriesEvenly) {
  Whole whole;
  for (std::uint32_t seed = 300; whole.order.size() < 200; ++seed) {
    whole = {};
    Read(MakeGoodModel(seed), whole);
  }
  constexpr int Ranks = 4;
  const std::vector<std::int32_t> owners = Share(whole, Ranks);
  std::vector<double> entries(Ranks, 0.0);
  double sum = 0.0;
  for (std::size_t node = 0; node < whole.free.nodes.size(); ++node) {
    double mine = 0.5 * whole.free.dofs[node] * (whole.free.dofs[node] + 1);
    for (std::int64_t k = whole.free.graph.begins[node]; k < whole.free.graph.begins[node + 1];
         ++k) {
      const auto other =
          static_cast<std::size_t>(whole.free.graph.neighbours[static_cast<std::size_t>(k)]);
      if (other > node) mine += whole.free.dofs[node] * whole.free.dofs[other];
    }
    const std::int32_t owner = owners[static_cast<std::size_t>(whole.free.nodes[node])];
    ASSERT_GE(owner, 0);
    entries[static_cast<std::size_t>(owner)] += mine;
    sum += mine;
  }
  for (const double each : entries) EXPECT_NEAR(each, sum / Ranks, 400.0);
}

// The products of all parts add up to that of the whole; the sums differ by roundings.
TEST(RowPart, MultipliesItsRows) {
  Whole whole;
  Read(MakeGoodModel(303), whole);
  const auto n = static_cast<std::size_t>(CountRows(whole.A));
  std::vector<double> x(n), y(n), s(n), rowSums;
  for (std::size_t i = 0; i < n; ++i) x[i] = std::sin(static_cast<double>(i));
  Multiply(whole.A, x.data(), y.data(), s.data());
  SumRows(whole.A, rowSums);
  std::vector<double> ySum(n, 0.0), sSum(n, 0.0), rowSum(n, 0.0);
  const std::vector<std::int32_t> owners = Share(whole, 3);
  for (int rank = 0; rank < 3; ++rank) {
    RowPart part;
    UpperMatrix A;
    FixedRows C;
    Form(whole, owners, rank, part, A, C);
    std::vector<double> yPart(n), sPart(n), sums;
    Multiply(A, x.data(), yPart.data(), sPart.data());
    SumRows(A, sums);
    for (std::size_t i = 0; i < n; ++i) {
      ySum[i] += yPart[i];
      sSum[i] += sPart[i];
      rowSum[i] += sums[i];
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    EXPECT_NEAR(ySum[i], y[i], 1e-14 * s[i]);
    EXPECT_NEAR(sSum[i], s[i], 1e-14 * s[i]);
    EXPECT_NEAR(rowSum[i], rowSums[i], 1e-14 * rowSums[i]);
  }
}

// More ranks than nodes: some have nothing.
TEST(RowPart, MayBeEmpty) {
  ModelText text;
  text.materials = {{2.1e5, 0.3, 0.0}};
  text.cSections = {{50.0, 5.0}};
  text.nodes = {{0.0, 0.0, 0.0}, {1000.0, 0.0, 0.0}};
  korvex::test::ModelText::Beam beam;
  beam.BeamSecType = korvex::BeamSecTypeC;
  text.beams = {beam};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Whole whole;
  Read(text, whole);
  std::size_t rows = 0;
  for (int rank = 0; rank < 4; ++rank) {
    RowPart part;
    UpperMatrix A;
    FixedRows C;
    Form(whole, Share(whole, 4), rank, part, A, C);
    rows += CountRowsHere(A);
    EXPECT_EQ(part.elements.empty(), rank != 0 && CountRowsHere(A) == 0);
  }
  EXPECT_EQ(rows, 6U);
}

// As the whole model names it.
TEST(RowPart, NamesTheElementThatIsNotFinite) {
  Whole whole;
  std::uint32_t seed = 300;
  while (whole.model.BeamElements.size() < 5) {
    whole = {};
    Read(MakeGoodModel(seed++), whole);
  }
  whole.model.BeamElements[4].E = std::nan("");
  const auto text = [](const auto& work) -> std::string {
    try {
      work();
    } catch (const korvex::Stop& stop) {
      return stop.text;
    }
    return "";
  };
  const std::string expected =
      "The stiffness of the beam 4 is not finite. kvx check says where it is, and why.";
  UpperMatrix A;
  FixedRows C;
  EXPECT_EQ(text([&] { AssembleFree(whole.model, whole.graph, whole.dofs, {}, A, C); }), expected);
  const std::vector<std::int32_t> owners = Share(whole, 3);
  int named = 0;
  for (int rank = 0; rank < 3; ++rank) {
    RowPart part;
    const std::string found = text([&] { Form(whole, owners, rank, part, A, C); });
    EXPECT_TRUE(found.empty() || found == expected) << found;
    if (!found.empty()) ++named;
  }
  EXPECT_GE(named, 1);
}

}  // namespace
}  // namespace kvx::test
