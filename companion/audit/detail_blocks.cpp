#include "audit/detail_blocks.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "beamshell/extrude_outline.h"
#include "beamshell/generate_beam_shells.h"
#include "beamshell/shared_ends.h"
#include "platform/free_memory.h"
#include "report/check_memory.h"
#include "report/stop.h"

namespace kvx {

using korvex::Model, korvex::SharedEnds;

namespace {

using Rows = std::vector<std::int32_t>;  // of the table of beams

constexpr std::size_t NoBlock = std::numeric_limits<std::size_t>::max();

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

// Bytes for the detail models of a block. A quarter of what is left beside a system is for the
// systems of other threads, for the text of a file and for other programs.
std::uint64_t FindBlockMemory(std::uint64_t limit, std::uint64_t largestSystem) {
  std::uint64_t usable = korvex::ReadFreeMemory();
  if (limit > 0) usable = std::min(usable, limit);
  return (usable - std::min(usable, largestSystem)) / 4 * 3;
}

// The beams that are added to blocks, one after the other.
struct Gathering {
  std::vector<std::size_t> madeIn;  // by beam: the last block that makes it, or NoBlock
  Rows sharing;                     // scratch: of one beam
};

// Appends the beam and those that share an end with it to the rows of the block, without those that
// are there.
void GatherBeam(const SharedEnds& ends, std::int32_t row, std::size_t block, Gathering& gathering,
                Rows& rows) {
  Rows& sharing = gathering.sharing;
  sharing = {row};
  korvex::AppendSharing(ends, row, sharing);
  for (const std::int32_t other : sharing) {
    std::size_t& in = gathering.madeIn[static_cast<std::size_t>(other)];
    if (in != block) rows.push_back(other);
    in = block;
  }
}

struct BlockPlan {
  std::vector<std::size_t> begins;         // of each block, and the number of all beams
  std::vector<std::int64_t> modelsBefore;  // [blocks + 1] detail models made before each block
  std::uint64_t mostBytes = 0;             // of the detail models of a block
  std::size_t mostModels = 0;              // in that block
};

// Each block takes as many beams as its memory holds with those that share an end with them, one at
// least.
void PlanBlocks(const SharedEnds& ends, const DetailBytes& bytes, std::uint64_t memory,
                BlockPlan& plan) {
  Gathering gathering;
  gathering.madeIn.assign(bytes.each.size(), NoBlock);
  plan.begins = {0};
  plan.modelsBefore = {0};
  Rows rows;  // of the block
  std::uint64_t blockBytes = 0;
  std::int64_t models = 0;                  // of all blocks
  const auto gather = [&](std::size_t b) {  // returns the bytes that this adds
    const std::size_t before = rows.size();
    GatherBeam(ends, static_cast<std::int32_t>(b), plan.begins.size(), gathering, rows);
    std::uint64_t added = 0;
    for (std::size_t i = before; i < rows.size(); ++i) {
      added += bytes.each[static_cast<std::size_t>(rows[i])];
    }
    return added;
  };
  for (std::size_t b = 0; b < bytes.each.size(); ++b) {
    const std::size_t modelsOfBlock = rows.size();
    std::uint64_t added = gather(b);
    if (b > plan.begins.back() && blockBytes + added > memory) {
      models += static_cast<std::int64_t>(modelsOfBlock);
      plan.begins.push_back(b);
      plan.modelsBefore.push_back(models);
      blockBytes = 0;
      rows.clear();
      added = gather(b);
    }
    blockBytes += added;
    if (blockBytes > plan.mostBytes) {
      plan.mostBytes = blockBytes;
      plan.mostModels = rows.size();
    }
  }
  plan.begins.push_back(bytes.each.size());
  plan.modelsBefore.push_back(models + static_cast<std::int64_t>(rows.size()));
}

// The rows of these beams and of all that share an end with them, ascending.
void ListRows(const SharedEnds& ends, std::size_t begin, std::size_t end, Gathering& gathering,
              Rows& rows) {
  rows.clear();
  for (std::size_t b = begin; b < end; ++b) {
    GatherBeam(ends, static_cast<std::int32_t>(b), begin, gathering, rows);
  }
  std::sort(rows.begin(), rows.end());
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

std::size_t MakeDetailModels(const Model& model, const DetailWork& work, const TakeDetails& take) {
  if (model.BeamElements.empty()) return 0;
  CheckSectionTypes(model.Tables);
  SharedEnds ends;
  korvex::IndexEnds(model, ends);
  DetailBytes bytes;
  CountBytes(model, bytes);
  BlockPlan plan;
  PlanBlocks(ends, bytes, FindBlockMemory(work.memory, bytes.largestSystem), plan);
  // Before the first block: not after hours of work.
  korvex::CheckMemory(korvex::NameDetailModels(plan.mostModels),
                      plan.mostBytes + bytes.largestSystem, 1);
  const auto all = static_cast<double>(plan.modelsBefore.back());
  const std::size_t blocks = plan.begins.size() - 1;
  Gathering gathering;
  gathering.madeIn.assign(bytes.each.size(), NoBlock);
  Rows rows;
  std::vector<korvex::BeamShellModel> details;
  for (std::size_t k = 0; k < blocks; ++k) {
    const std::size_t begin = plan.begins[k], end = plan.begins[k + 1];
    ListRows(ends, begin, end, gathering, rows);
    const auto share = [&](double part) {
      const auto before = static_cast<double>(plan.modelsBefore[k]);
      const auto own = static_cast<double>(plan.modelsBefore[k + 1]) - before;
      if (work.share) work.share((before + part * own) / all);
    };
    korvex::GenerateBeamShells(model, rows, details, share, work.threads, work.memory);
    const auto first = static_cast<std::size_t>(
        std::lower_bound(rows.begin(), rows.end(), static_cast<std::int32_t>(begin)) -
        rows.begin());
    const bool isLast = k + 1 == blocks;
    if (!take({begin, &details[first], end - begin, isLast})) return k + 1;
  }
  return blocks;
}

}  // namespace kvx
