// Times the checks of models of 10,000, 100,000 and 1,000,000 nodes, stage by stage, and measures
// the memory that they take.
//
//   stiffened  a plate with a stiffener along every fifth line, oblique in space
//   shuffled   the same with its nodes in random order
//   graded     a plate round a hole, its elements 500 times larger at the rim than at the hole
//   seam       two plates side by side whose nodes along the common edge are not merged
//
// Times are processor times; each model is checked once, after the smallest one has warmed up the
// program. Memory is counted where it is allocated: what the stage has at its peak, without what
// was there before. The tables of nodes and loads are allocated otherwise and not counted.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "check/check_mesh.h"
#include "check/parts.h"
#include "check/read_checked.h"
#include "commands/check_model.h"
#include "deck/write_tables.h"
#include "measure.h"

namespace {

// Bytes that are allocated now, and the most since it was set.
std::size_t allocated = 0, peak = 0;

// Before each block, its size; a block stays aligned for every type.
constexpr std::size_t HeadSize = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t size) {
  void* block = std::malloc(size + HeadSize);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  allocated += size;
  peak = std::max(peak, allocated);
  return static_cast<char*>(block) + HeadSize;
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  void* block = static_cast<char*>(memory) - HeadSize;
  allocated -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

namespace {

using korvex::ModelTables;

// A material, a thickness and a tube section, and the first node clamped.
void AddCommonTables(ModelTables& tables) {
  tables.Materials.push_back({206000.0, 0.3, 7.85e-9});
  tables.ShellThicknesses.push_back({10.0});
  tables.CBeamSections.push_back({50.0, 5.0});
  korvex::NodalRestraint clamp;
  clamp.fixed.fill(1);
  tables.NodalRestraints.push_back(clamp);
}

// Quadrilaterals over rows x columns nodes, numbered along the rows, from `first`.
void AddQuads(std::int32_t first, std::int32_t rows, std::int32_t columns, bool isClosed,
              ModelTables& tables) {
  for (std::int32_t j = 0; j + 1 < rows; ++j) {
    for (std::int32_t i = 0; i + (isClosed ? 0 : 1) < columns; ++i) {
      const std::int32_t next = (i + 1) % columns, row = first + j * columns;
      const std::array<std::int32_t, 4> nodes{row + i, row + next, row + columns + next,
                                              row + columns + i};
      tables.Shell4Nodes.insert(tables.Shell4Nodes.end(), nodes.begin(), nodes.end());
      tables.Shell4Properties.push_back({0, 0});
    }
  }
}

void MakeStiffened(std::int32_t side, ModelTables& tables) {
  for (std::int32_t j = 0; j < side; ++j) {
    for (std::int32_t i = 0; i < side; ++i) {
      const double x = 100.0 * i, y = 100.0 * j;
      tables.Nodes.push_back({0.8 * x, 0.36 * x + 0.8 * y, 0.48 * x - 0.6 * y});
    }
  }
  AddQuads(0, side, side, false, tables);
  for (std::int32_t j = 0; j < side; j += 5) {
    for (std::int32_t i = 0; i + 1 < side; ++i) {
      const std::int32_t node = j * side + i;
      tables.BeamNodes.insert(tables.BeamNodes.end(), {node, node + 1});
      tables.BeamSectionRefs.push_back({korvex::BeamSecTypeC, 0, 0.0, false});
      tables.BeamProperties.push_back({{0.0, 0.6, 0.8}, 0});
    }
  }
}

void MakeShuffled(std::int32_t side, ModelTables& tables) {
  MakeStiffened(side, tables);
  std::vector<std::int32_t> newNumber(tables.Nodes.size());
  std::iota(newNumber.begin(), newNumber.end(), 0);
  std::shuffle(newNumber.begin(), newNumber.end(), std::mt19937(1));
  const auto old = tables.Nodes;
  const auto at = [](std::int32_t number) { return static_cast<std::size_t>(number); };
  for (std::size_t k = 0; k < old.size(); ++k) tables.Nodes[at(newNumber[k])] = old[k];
  for (std::int32_t& node : tables.Shell4Nodes) node = newNumber[at(node)];
  for (std::int32_t& node : tables.BeamNodes) node = newNumber[at(node)];
}

// Rings of as many nodes as there are rings. The radius grows from ring to ring as the length of a
// cell does, so all cells are nearly square; e^(2 pi) = 535 times in all.
void MakeGraded(std::int32_t side, ModelTables& tables) {
  const double angle = 2.0 * std::acos(-1.0) / side;
  for (std::int32_t j = 0; j < side; ++j) {
    const double radius = 100.0 * std::exp(angle * j);
    for (std::int32_t i = 0; i < side; ++i) {
      tables.Nodes.push_back({radius * std::cos(angle * i), radius * std::sin(angle * i), 0.0});
    }
  }
  AddQuads(0, side, side, true, tables);
}

void MakeSeam(std::int32_t side, ModelTables& tables) {
  const std::int32_t half = side / 2;
  for (const std::int32_t from : {0, half - 1}) {
    const auto first = static_cast<std::int32_t>(tables.Nodes.size());
    for (std::int32_t j = 0; j < half; ++j) {
      for (std::int32_t i = 0; i < side; ++i)
        tables.Nodes.push_back({100.0 * i, 100.0 * (from + j), 0.0});
    }
    AddQuads(first, half, side, false, tables);
  }
}

// Processor time and memory of one stage.
struct Cost {
  double seconds = 0.0;
  std::size_t bytes = 0;
};
Cost MeasureStage(const std::function<void()>& work) {
  const std::size_t before = allocated;
  peak = allocated;
  Cost cost;
  cost.seconds = korvex::bench::Measure(work);
  cost.bytes = peak - before;
  return cost;
}

void PrintStage(const char* model, std::int32_t nodes, const char* stage, const Cost& cost) {
  std::printf("%-10s %9d  %-6s %8.3f s %8.2f us/node %8.0f bytes/node\n", model, nodes, stage,
              cost.seconds, 1e6 * cost.seconds / nodes, static_cast<double>(cost.bytes) / nodes);
}

void MeasureChecks(const char* name, std::int32_t side,
                   const std::function<void(std::int32_t, ModelTables&)>& make) {
  std::string text;
  std::int32_t nodes = 0;
  {
    ModelTables tables;
    AddCommonTables(tables);
    make(side, tables);
    nodes = static_cast<std::int32_t>(tables.Nodes.size());
    text = korvex::WriteTables(tables);
  }
  {
    kvx::CheckedModel model;
    kvx::Parts parts;
    kvx::FindingList findings;
    std::vector<kvx::Gap> gaps;
    PrintStage(name, nodes, "read", MeasureStage([&] { kvx::ReadChecked(text, model); }));
    PrintStage(name, nodes, "parts", MeasureStage([&] { kvx::FindParts(model, parts); }));
    PrintStage(name, nodes, "mesh",
               MeasureStage([&] { kvx::CheckMesh(parts, 0.0, model, gaps, findings); }));
  }
  kvx::CheckReport report;
  PrintStage(name, nodes, "all", MeasureStage([&] { kvx::CheckModel(text, {}, report); }));
}

}  // namespace

int main() {
  for (const std::int32_t side : {100, 316, 1000}) {
    MeasureChecks("stiffened", side, MakeStiffened);
    MeasureChecks("shuffled", side, MakeShuffled);
    MeasureChecks("graded", side, MakeGraded);
    MeasureChecks("seam", side, MakeSeam);
  }
  return 0;
}
