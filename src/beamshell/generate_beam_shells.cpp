#include "beamshell/generate_beam_shells.h"

#include <algorithm>
#include <mutex>
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
void DescribeBeam(const BeamElement& beam, std::int32_t meshLevel, BeamShellModel& detail) {
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

// The memory of all detail models, in bytes.
struct DetailMemory {
  std::uint64_t results = 0;        // of all of them
  std::uint64_t largestSystem = 0;  // of one, while it is solved
};

// Fills the beams' data into all detail models. Throws a Stop where the memory is too small for all
// of them. One model is usually small, but a section much smaller than its beam needs many shells.
void DescribeBeams(Model& model, DetailMemory& memory) {
  const std::string what =
      "the detail models of " + std::to_string(model.Tables.NELEM_B) + " beam elements";
  AllocateItems(what, static_cast<std::size_t>(model.Tables.NELEM_B), model.BeamShellModels);
  SectionOutline outline;
  for (std::int32_t b = 0; b < model.Tables.NELEM_B; ++b) {
    const auto row = static_cast<std::size_t>(b);
    BeamShellModel& detail = model.BeamShellModels[row];
    DescribeBeam(model.BeamElements[row], model.BeamShellMeshLevel, detail);
    const BeamSectionRef& ref = model.Tables.BeamSectionRefs[row];
    if (!HasSectionTable(ref.BeamSecType)) break;  // the run will stop at this beam
    BuildSectionOutline(model, ref, outline);
    memory.results =
        std::min(memory.results + CountDetailBytes(outline, b, detail), MoreThanAnyMemory);
    memory.largestSystem = std::max(memory.largestSystem, CountSystemBytes(outline, b, detail));
  }
  CheckMemory(what, memory.results, 1);
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

// Makes and solves the detail model of beam b.
void SolveBeam(std::int32_t b, BeamMemory& memory, Model& model) {
  const auto row = static_cast<std::size_t>(b);
  BeamShellModel& detail = model.BeamShellModels[row];
  BuildSectionOutline(model, model.Tables.BeamSectionRefs[row], memory.outline);
  ReuseMemory(memory.spare, detail);
  ExtrudeOutline(memory.outline, b, detail);
  SolveBeamShell(NodeDisplacements(model, model.Tables.BeamNodes[row * NodesPerBeam]),
                 NodeDisplacements(model, model.Tables.BeamNodes[row * NodesPerBeam + 1]), detail);
  ReuseMemory(detail, memory.spare);
}

}  // namespace

void GenerateBeamShells(Model& model, const ShareCallback& share, int threads) {
  if (model.Tables.NELEM_B < 1) return;
  DetailMemory memory;
  DescribeBeams(model, memory);
  // Each thread has a system besides the results of all: no allocation fails because several ask.
  const int useful = CountThreadsInMemory(threads, memory.results, memory.largestSystem);
  SpareMemories spares;
  const auto solve = [&](std::int64_t first, std::int64_t) {
    BeamMemory own = TakeMemory(spares);
    SolveBeam(static_cast<std::int32_t>(first), own, model);
    KeepMemory(own, spares);
  };
  const auto report = [&](std::int64_t beams) {
    if (share) share(static_cast<double>(beams) / model.Tables.NELEM_B);
  };
  ShareRange(useful, model.Tables.NELEM_B, 1, solve, report);
  spares.memories.clear();
  AverageDetailStresses(useful, model.BeamShellModels);
}

}  // namespace korvex
