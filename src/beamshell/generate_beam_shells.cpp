#include "beamshell/generate_beam_shells.h"

#include <algorithm>
#include <mutex>
#include <numeric>
#include <string>
#include <utility>

#include "beamshell/average_corners.h"
#include "beamshell/extrude_outline.h"
#include "beamshell/section_outline.h"
#include "beamshell/solve_beam_shell.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "report/texts.h"
#include "workers/share_range.h"

namespace korvex {

namespace {

constexpr double ToleranceDivisor = 10000.0;  // of the beam's length

// Copies the beam's data to its detail model.
void CopyBeam(const BeamElement& beam, std::int32_t meshLevel, BeamShellModel& detail) {
  detail.MeshLevel = meshLevel;
  detail.E = beam.E;
  detail.Mu = beam.Mu;
  detail.EndPoint1 = beam.NodeI;
  detail.EndPoint2 = beam.NodeJ;
  detail.OrientVector = Subtract(beam.RefPoint, beam.NodeI);
  detail.Tolerance = Length(Subtract(detail.EndPoint2, detail.EndPoint1)) / ToleranceDivisor;
}

// Builds the outline of the section that `ref` selects, shifted by its offset. Throws a Stop where
// the section type has no table.
void BuildSectionOutline(const Model& model, const BeamSectionRef& ref, SectionOutline& outline) {
  const auto row = static_cast<std::size_t>(ref.BeamSecIndex);
  switch (ref.BeamSecType) {
    case BeamSecTypeT:
      BuildTOutline(model.Tables.TBeamSections[row], model.BeamShellMeshLevel, outline);
      break;
    case BeamSecTypeL:
      BuildLOutline(model.Tables.LBeamSections[row], ref.BeamSecMirrored, model.BeamShellMeshLevel,
                    outline);
      break;
    case BeamSecTypeC:
      BuildCOutline(model.Tables.CBeamSections[row], model.BeamShellMeshLevel, outline);
      break;
    default:
      throw Stop{StopKind::Notice, SectionTypeFailed};
  }
  ShiftOutline(ref.BeamSecOz, outline);
}

// The sum of bytes is limited to this, so that it cannot overflow.
constexpr std::uint64_t MoreThanAnyMemory = std::uint64_t{1} << 62U;

// The memory of detail models, in bytes.
struct DetailMemory {
  std::uint64_t results = 0;        // of all of them, less what is held already
  std::uint64_t largestSystem = 0;  // of one, while it is solved
};

// The memory that detail models hold, in bytes. What the system has to spare does not tell it once
// they are freed: the library may keep it for the next ones.
std::uint64_t CountHeldBytes(const std::vector<BeamShellModel>& details) {
  std::uint64_t bytes = 0;
  for (const BeamShellModel& detail : details) {
    bytes += detail.NodeCoords.capacity() * sizeof(Vector3) +
             detail.ShellNodes.capacity() * sizeof(std::int32_t) +
             detail.Shells.capacity() * sizeof(Shell4Element) +
             detail.Displacements.capacity() * sizeof(double);
  }
  return bytes;
}

// The memory that these detail models need besides the `held` bytes. Throws a Stop where it is too
// small. One model is usually small, but a section much smaller than its beam needs many shells.
void CheckDetailMemory(const Model& model, const std::vector<std::int32_t>& rows,
                       std::uint64_t held, DetailMemory& memory) {
  SectionOutline outline;
  BeamShellModel detail;
  for (const std::int32_t row : rows) {
    const BeamSectionRef& ref = model.Tables.BeamSectionRefs[static_cast<std::size_t>(row)];
    if (!HasSectionTable(ref.BeamSecType)) break;  // the run will stop at this beam
    DescribeBeam(model, row, detail, outline);
    memory.results =
        std::min(memory.results + CountDetailBytes(outline, row, detail), MoreThanAnyMemory);
    memory.largestSystem = std::max(memory.largestSystem, CountSystemBytes(outline, row, detail));
  }
  const std::uint64_t results = memory.results;
  memory.results -= std::min(results, held);
  if (!HasMemory(memory.results, 1)) StopOutOfMemory(NameDetailModels(rows.size()), results, 1);
}

// Averages the corner stresses of all detail models. Memory of the averaging, per node: a position
// and four indices; per corner: one index.
void AverageDetailStresses(int threads, std::vector<BeamShellModel>& details) {
  constexpr std::uint64_t BytesPerNode = sizeof(Vector3) + 4 * sizeof(std::size_t);
  std::uint64_t bytes = 0;
  for (const BeamShellModel& detail : details) {
    bytes +=
        detail.NodeCoords.size() * BytesPerNode + detail.ShellNodes.size() * sizeof(std::size_t);
  }
  AllocateOrStop("the averages of the detail models", bytes, 1,
                 [&] { AverageBeamShellStresses(details, threads); });
}

// The six solved displacements of a node.
const double* NodeDisplacements(const Model& model, std::int32_t node) {
  return &model.Displacements[static_cast<std::size_t>(node) * DofsPerNode];
}

// What the solution of one beam leaves to the next one of the same thread: the memory of its
// system.
struct BeamMemory {
  SectionOutline outline;
  BeamShellModel spare;
};

// The memories that no beam is using.
struct SpareMemories {
  std::mutex mutex;
  std::vector<BeamMemory> memories;
};

BeamMemory TakeMemory(SpareMemories& spares) {
  const std::lock_guard<std::mutex> lock(spares.mutex);
  if (spares.memories.empty()) return {};
  BeamMemory memory = std::move(spares.memories.back());
  spares.memories.pop_back();
  return memory;
}

void KeepMemory(BeamMemory& memory, SpareMemories& spares) {
  const std::lock_guard<std::mutex> lock(spares.mutex);
  spares.memories.push_back(std::move(memory));
}

// Makes and solves the detail model of the beam at this row.
void SolveBeam(const Model& model, std::int32_t row, BeamMemory& memory, BeamShellModel& detail) {
  DescribeBeam(model, row, detail, memory.outline);
  ReuseMemory(memory.spare, detail);
  ExtrudeOutline(memory.outline, row, detail);
  const std::int32_t* ends = &model.Tables.BeamNodes[static_cast<std::size_t>(row) * NodesPerBeam];
  SolveBeamShell(NodeDisplacements(model, ends[0]), NodeDisplacements(model, ends[1]), detail);
  ReuseMemory(detail, memory.spare);
}

}  // namespace

std::string NameDetailModels(std::size_t beams) {
  return "the detail models of " + std::to_string(beams) + " beam elements";
}

void DescribeBeam(const Model& model, std::int32_t row, BeamShellModel& detail,
                  SectionOutline& outline) {
  const auto b = static_cast<std::size_t>(row);
  CopyBeam(model.BeamElements[b], model.BeamShellMeshLevel, detail);
  BuildSectionOutline(model, model.Tables.BeamSectionRefs[b], outline);
}

void GenerateBeamShells(const Model& model, const std::vector<std::int32_t>& rows,
                        std::vector<BeamShellModel>& details, const ShareCallback& share,
                        int threads) {
  DetailMemory memory;
  CheckDetailMemory(model, rows, CountHeldBytes(details), memory);
  // Each thread has a system besides the results of all: no allocation fails because several ask.
  const int useful = CountThreadsInMemory(threads, memory.results, memory.largestSystem);
  details.clear();
  if (rows.empty()) return;
  AllocateItems(NameDetailModels(rows.size()), rows.size(), details);
  SpareMemories spares;
  const auto solve = [&](std::int64_t first, std::int64_t) {
    BeamMemory own = TakeMemory(spares);
    const auto i = static_cast<std::size_t>(first);
    SolveBeam(model, rows[i], own, details[i]);
    KeepMemory(own, spares);
  };
  const auto beams = static_cast<std::int64_t>(rows.size());
  const auto report = [&](std::int64_t done) {
    if (share) share(static_cast<double>(done) / static_cast<double>(beams));
  };
  ShareRange(useful, beams, 1, solve, report);
  spares.memories.clear();
  AverageDetailStresses(useful, details);
}

void GenerateBeamShells(Model& model, const ShareCallback& share, int threads) {
  if (model.Tables.NELEM_B < 1) return;
  std::vector<std::int32_t> rows;
  AllocateItems("the rows of " + std::to_string(model.Tables.NELEM_B) + " beam elements",
                static_cast<std::size_t>(model.Tables.NELEM_B), rows);
  std::iota(rows.begin(), rows.end(), 0);
  GenerateBeamShells(model, rows, model.BeamShellModels, share, threads);
}

}  // namespace korvex
