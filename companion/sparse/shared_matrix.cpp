#include "sparse/shared_matrix.h"

#include <array>
#include <type_traits>

#include "base/dof_counts.h"
#include "ranks/ranks.h"
#include "renumber/node_graph.h"
#include "report/check_memory.h"

namespace kvx {

namespace {

// Calls take(table) for all tables of a part that another rank gets.
template <typename Part, typename Take>
void ForTables(Part& part, const Take& take) {
  take(part.model.Shell4Elements);
  take(part.model.Shell3Elements);
  take(part.model.BeamElements);
  take(part.model.Tables.Shell4Nodes);
  take(part.model.Tables.Shell3Nodes);
  take(part.model.Tables.BeamNodes);
  take(part.dofs.places);
  take(part.dofs.isFixed);
  take(part.dofs.equations);
  take(part.elements);
}

constexpr std::size_t TableCount = 10;

// Of the work of rank 0, about: to make the parts and to send them.
constexpr double PartsShare = 0.3;

// What the others need to know before they make room.
struct PartSizes {
  std::int32_t n = 0;  // rows of all
  std::array<std::uint64_t, TableCount> counts{};
};

PartSizes SizesOf(const RowPart& part, std::int32_t n) {
  PartSizes sizes;
  sizes.n = n;
  std::size_t k = 0;
  ForTables(part, [&](const auto& table) { sizes.counts[k++] = table.size(); });
  return sizes;
}

void MakeRoom(const PartSizes& sizes, RowPart& part) {
  std::size_t k = 0;
  ForTables(part, [&](auto& table) {
    korvex::AllocateItems("a table of this rank", static_cast<std::size_t>(sizes.counts[k++]),
                          table);
  });
}

template <typename Table>
std::size_t BytesToSend(const Table& table) {
  static_assert(std::is_trivially_copyable_v<typename Table::value_type>, "records go as bytes");
  return table.size() * sizeof(typename Table::value_type);
}

void SendPart(int rank, const RowPart& part) {
  ForTables(part, [&](const auto& table) { Send(rank, table.data(), BytesToSend(table)); });
}

void ReceivePart(RowPart& part) {
  ForTables(part, [&](auto& table) { Receive(0, table.data(), BytesToSend(table)); });
}

// From equations of the part to those of the model.
void NumberColumns(const RowPart& part, FixedRows& C) {
  constexpr std::int32_t Dofs = korvex::DofsPerNode;
  for (std::int32_t& column : C.columns) {
    column = part.nodes[static_cast<std::size_t>(column / Dofs)] * Dofs + column % Dofs;
  }
}

}  // namespace

void AssembleRows(RowPart& part, std::int32_t n, const korvex::ShareCallback& report,
                  UpperMatrix& A, FixedRows& C, int threads) {
  korvex::ModelTables& tables = part.model.Tables;
  tables.NPOIN = static_cast<std::int32_t>(part.dofs.places.size()) / korvex::DofsPerNode;
  korvex::AllocateItems("the nodes of this rank", static_cast<std::size_t>(tables.NPOIN),
                        tables.Nodes);
  NodeGraph graph;
  BuildNodeGraph(tables, graph);
  AssembleFree(part.model, graph, part.dofs, report, A, C, threads, part.elements);
  NumberColumns(part, C);
  A.isPart = true;
  A.n = n;
  korvex::ReserveItems("the numbers of the rows", part.dofs.equations.size(), A.rows);
  for (const std::int32_t equation : part.dofs.equations) {
    A.rows.push_back(part.dofs.places[static_cast<std::size_t>(equation)]);
  }
}

void AssembleShared(const korvex::Model& model, const FreeDofs& dofs,
                    const std::vector<std::int32_t>& owners, const korvex::ShareCallback& report,
                    UpperMatrix& A, FixedRows& C, int threads,
                    std::vector<std::uint64_t>& elements) {
  const auto n = static_cast<std::int32_t>(dofs.equations.size());
  const int ranks = CountRanks();
  elements.assign(static_cast<std::size_t>(ranks), 0);
  const auto tell = [&](double share) {
    if (report) report(share);
  };
  RowPart part;
  Tell(RankTask::TakeRows);
  for (int rank = ranks - 1; rank >= 0; --rank) {  // its own comes last, and stays
    DoTogether([&] {
      MakeRowPart(model, dofs, owners, rank, part);
      tell(PartsShare * static_cast<double>(ranks - rank) / static_cast<double>(ranks));
    });
    elements[static_cast<std::size_t>(rank)] = part.elements.size();
    if (rank == 0) break;
    const PartSizes sizes = SizesOf(part, n);
    Send(rank, &sizes, sizeof sizes);
    DoTogether([] {});  // the rank makes room
    SendPart(rank, part);
  }
  const auto tellRows = [&](double share) { tell(PartsShare + share * (1.0 - PartsShare)); };
  DoTogether([&] { AssembleRows(part, n, tellRows, A, C, threads); });
}

void HelpAssemble(UpperMatrix& A, std::vector<double>& work) {
  RowPart part;
  PartSizes sizes;
  for (int rank = CountRanks() - 1; rank > 0; --rank) {
    const bool isMine = rank == RankOfThis();
    DoTogether([] {});
    if (isMine) Receive(0, &sizes, sizeof sizes);
    DoTogether([&] {
      if (isMine) MakeRoom(sizes, part);
    });
    if (isMine) ReceivePart(part);
  }
  DoTogether([] {});
  FixedRows none;
  DoTogether([&] {
    AssembleRows(part, sizes.n, {}, A, none, 1);
    korvex::AllocateItems("the products of this rank", 3 * static_cast<std::size_t>(sizes.n), work);
  });
}

}  // namespace kvx
