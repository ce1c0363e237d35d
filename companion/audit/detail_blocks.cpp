#include "audit/detail_blocks.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "audit/end_index.h"
#include "beamshell/extrude_outline.h"
#include "beamshell/generate_beam_shells.h"
#include "platform/free_memory.h"
#include "report/stop.h"

namespace kvx {

using korvex::Model;

namespace {

// The memory of detail models, in bytes.
struct DetailBytes {
  std::vector<std::uint64_t> each;  // by beam, the averaging included
  std::uint64_t largestSystem = 0;  // the most that one takes besides while it is solved
};

void CountBytes(const Model& model, DetailBytes& bytes) {
  korvex::BeamShellModel detail;
  korvex::SectionOutline outline;
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    const auto row = static_cast<std::int32_t>(b);
    korvex::DescribeBeam(model, row, detail, outline);
    bytes.each.push_back(korvex::CountDetailBytes(outline, row, detail));
    bytes.largestSystem =
        std::max(bytes.largestSystem, korvex::CountSystemBytes(outline, row, detail));
  }
}

// Bytes for the detail models of a block. A quarter of what is free beside a system is for the
// systems of other threads, for the text of a file and for other programs.
std::uint64_t FindBlockMemory(std::uint64_t limit, std::uint64_t largestSystem) {
  std::uint64_t usable = korvex::ReadFreeMemory();
  if (limit > 0) usable = std::min(usable, limit);
  return (usable - std::min(usable, largestSystem)) / 4 * 3;
}

struct BlockPlan {
  std::vector<std::size_t> begins;         // of each block, and the number of all beams
  std::vector<std::int64_t> modelsBefore;  // [blocks + 1] detail models made before each block
};

// The rows of these beams and of all that share an end with them, ascending.
void ListRows(const Model& model, const EndIndex& index, std::size_t begin, std::size_t end,
              std::vector<std::int32_t>& rows) {
  rows.clear();
  for (std::size_t b = begin; b < end; ++b) {
    rows.push_back(static_cast<std::int32_t>(b));
    AppendSharing(model, index, rows.back(), rows);
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

// What a beam and its neighbours add to a block.
struct Added {
  std::uint64_t bytes = 0;
  std::int64_t models = 0;
};

// madeIn: the last block that makes each beam.
Added CountAdded(const std::vector<std::int32_t>& rows, const std::vector<std::uint64_t>& bytes,
                 const std::vector<std::size_t>& madeIn, std::size_t block) {
  Added added;
  for (const std::int32_t row : rows) {
    const auto b = static_cast<std::size_t>(row);
    if (madeIn[b] == block) continue;
    added.bytes += bytes[b];
    ++added.models;
  }
  return added;
}

// Each block takes as many beams as its memory holds with those that share an end with them.
void PlanBlocks(const Model& model, const EndIndex& index, std::uint64_t limit, BlockPlan& plan) {
  DetailBytes counted;
  CountBytes(model, counted);
  const std::vector<std::uint64_t>& bytes = counted.each;
  const std::uint64_t memory = FindBlockMemory(limit, counted.largestSystem);
  constexpr std::size_t NoBlock = std::numeric_limits<std::size_t>::max();
  std::vector<std::size_t> madeIn(bytes.size(), NoBlock);
  std::vector<std::int32_t> rows;
  plan.begins = {0};
  plan.modelsBefore = {0};
  Added all;  // models of all blocks, bytes of the last one
  for (std::size_t b = 0; b < bytes.size(); ++b) {
    ListRows(model, index, b, b + 1, rows);
    Added added = CountAdded(rows, bytes, madeIn, plan.begins.size());
    if (b > plan.begins.back() && all.bytes + added.bytes > memory) {
      plan.begins.push_back(b);
      plan.modelsBefore.push_back(all.models);
      all.bytes = 0;
      added = CountAdded(rows, bytes, madeIn, plan.begins.size());
    }
    all.bytes += added.bytes;
    all.models += added.models;
    for (const std::int32_t row : rows) {
      madeIn[static_cast<std::size_t>(row)] = plan.begins.size();
    }
  }
  plan.begins.push_back(bytes.size());
  plan.modelsBefore.push_back(all.models);
}

}  // namespace

void CheckSectionTypes(const korvex::ModelTables& tables) {
  for (std::size_t b = 0; b < tables.BeamSectionRefs.size(); ++b) {
    const std::int32_t type = tables.BeamSectionRefs[b].BeamSecType;
    if (korvex::HasSectionTable(type)) continue;
    throw korvex::Stop{korvex::StopKind::Notice, "Beam " + std::to_string(b) +
                                                     " has BeamSecType=" + std::to_string(type) +
                                                     ", which is no kind of section."};
  }
}

void MakeDetailModels(const Model& model, const DetailWork& work, const TakeDetails& take) {
  if (model.BeamElements.empty()) return;
  CheckSectionTypes(model.Tables);
  EndIndex index;
  IndexEnds(model, index);
  BlockPlan plan;
  PlanBlocks(model, index, work.memory, plan);
  const auto all = static_cast<double>(plan.modelsBefore.back());
  std::vector<std::int32_t> rows;
  std::vector<korvex::BeamShellModel> details;
  for (std::size_t k = 0; k + 1 < plan.begins.size(); ++k) {
    const std::size_t begin = plan.begins[k], end = plan.begins[k + 1];
    ListRows(model, index, begin, end, rows);
    const auto share = [&](double part) {
      const auto before = static_cast<double>(plan.modelsBefore[k]);
      const auto own = static_cast<double>(plan.modelsBefore[k + 1]) - before;
      if (work.share) work.share((before + part * own) / all);
    };
    korvex::GenerateBeamShells(model, rows, details, share, work.threads);
    const auto first = static_cast<std::size_t>(
        std::lower_bound(rows.begin(), rows.end(), static_cast<std::int32_t>(begin)) -
        rows.begin());
    const bool isLast = end == model.BeamElements.size();
    if (!take({begin, &details[first], end - begin, isLast})) return;
  }
}

}  // namespace kvx
