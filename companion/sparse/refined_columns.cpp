#include "sparse/refined_columns.h"

#include <algorithm>

#include "report/check_memory.h"

namespace kvx {

namespace {

struct Block {
  std::size_t n = 0, first = 0, count = 0;
  bool isLast = false;
  std::vector<double> b, x, d;  // columns; x has one more and d some more, for the condition
};

void Allocate(Block& block) {
  const std::size_t n = block.n;
  korvex::AllocateOrStop("the displacements of a block of loads", CountColumnBytes(n, block.count),
                         1, [&] {
                           block.b.resize(n * block.count);
                           block.x.resize(n * (block.count + 1));
                           block.d.resize(n * (block.count + ModeColumns));
                         });
}

// The first solution: of the loads, and behind those of the first block the condition's probe,
// whose peak is noted.
void SolveFirst(const ColumnWork& work, const QualityTable& table, Block& block,
                std::size_t& peak) {
  const std::size_t n = block.n;
  for (std::size_t k = 0; k < block.count; ++k) work.make(block.first + k, &block.b[k * n]);
  std::copy(block.b.begin(), block.b.end(), block.x.begin());
  double* const probe = block.x.data() + n * block.count;
  const bool isFirst = block.first == 0;
  if (isFirst) MakeProbe(table.rowSums, probe);
  work.solve(static_cast<std::int32_t>(block.count + (isFirst ? 1 : 0)), block.x.data());
  if (isFirst) peak = FindPeak(probe, n);
}

void Measure(const UpperMatrix& A, const ColumnWork& work, QualityTable& table, Block& block,
             std::vector<ColumnQuality>& quality) {
  const std::size_t n = block.n;
  quality.resize(block.count);
  for (std::size_t k = 0; k < block.count; ++k) {
    work.settle(block.first + k, &block.x[k * n], &block.b[k * n]);
    quality[k] = MeasureColumn(A, &block.x[k * n], &block.b[k * n], table, &block.d[k * n]);
    RaiseWeights(&block.x[k * n], table);
  }
}

// The second solution: of the residuals, and behind the last block's of the condition's columns.
void Refine(const UpperMatrix& A, const ColumnWork& work, std::size_t peak, Block& block,
            QualityTable& table, RefinedColumns& refined) {
  const std::size_t n = block.n;
  std::vector<ColumnQuality> quality;
  Measure(A, work, table, block, quality);
  double* const modes = block.d.data() + n * block.count;
  if (block.isLast) {
    std::vector<double>& w = table.weights;
    if (std::all_of(w.begin(), w.end(), [](double value) { return value == 0.0; })) {
      w = table.rowSums;
    }
    MakeModeColumns(w, peak, modes);
  }
  const std::size_t columns = block.count + (block.isLast ? ModeColumns : 0);
  work.solve(static_cast<std::int32_t>(columns), block.d.data());
  for (std::size_t k = 0; k < block.count; ++k) {
    double* const x = &block.x[k * n];
    if (TakeStep(A, &block.b[k * n], table, &block.d[k * n], x, quality[k])) ++refined.steps;
    work.take(block.first + k, x, quality[k]);
  }
  if (block.isLast) TakeModes(table.weights, modes, refined.condition);
}

}  // namespace

void SolveRefined(const UpperMatrix& A, const ColumnWork& work, RefinedColumns& refined) {
  refined = {};
  QualityTable table;
  BeginQuality(A, table);
  Block block;
  block.n = table.rowSums.size();
  std::size_t peak = 0;
  for (; block.first < work.count; block.first += block.count) {
    block.count = std::min(BlockColumns, work.count - block.first);
    block.isLast = block.first + block.count == work.count;
    Allocate(block);
    SolveFirst(work, table, block, peak);
    Refine(A, work, peak, block, table, refined);
  }
}

std::uint64_t CountColumnBytes(std::size_t n, std::size_t columns) {
  const std::uint64_t block = std::min(columns, BlockColumns);
  return n * (3 * block + ModeColumns + 1) * sizeof(double);
}

}  // namespace kvx
