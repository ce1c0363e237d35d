#include "beamshell/generate_beam_shells.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <numeric>
#include <string>
#include <utility>

#include "base/release_vector.h"
#include "beamshell/average_corners.h"
#include "beamshell/extrude_outline.h"
#include "beamshell/group_beams.h"
#include "beamshell/section_outline.h"
#include "beamshell/solve_beam_lanes.h"
#include "beamshell/solve_beam_shell.h"
#include "platform/free_memory.h"
#include "platform/vector_bits.h"
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

// What is known of detail models before they are made.
struct DetailSurvey {
  std::uint64_t resultBytes = 0;  // of all of them
  BeamShapes shapes;              // of the beams up to the first one without a section table
};

// One model is usually small, but a section much smaller than its beam needs many shells.
void SurveyDetails(const Model& model, const std::vector<std::int32_t>& rows,
                   DetailSurvey& survey) {
  SectionOutline outline;
  BeamShellModel detail;
  for (const std::int32_t row : rows) {
    const BeamSectionRef& ref = model.Tables.BeamSectionRefs[static_cast<std::size_t>(row)];
    if (!HasSectionTable(ref.BeamSecType)) break;  // the run will stop at this beam
    DescribeBeam(model, row, detail, outline);
    survey.resultBytes =
        std::min(survey.resultBytes + CountDetailBytes(outline, row, detail), MoreThanAnyMemory);
    AddBeam(DescribeShape(outline, CountSteps(outline, row, detail)),
            CountSystemBytes(outline, row, detail), survey.shapes);
  }
}

// The memory of detail models that are to be made, in bytes.
struct DetailMemory {
  std::uint64_t results = 0;  // what they take besides what is held already
  std::uint64_t systems = 0;  // what is left for the equation systems of all threads
};

// held: by models whose memory serves again. limit: of results and systems together, which may be
// too small for the results; 0: the free memory. Throws a Stop where the free memory is too small.
DetailMemory ShareMemory(const DetailSurvey& survey, std::size_t beams, std::uint64_t held,
                         std::uint64_t limit) {
  const std::uint64_t all = survey.resultBytes;
  DetailMemory memory;
  memory.results = all - std::min(all, held);
  if (!HasMemory(memory.results, 1)) StopOutOfMemory(NameDetailModels(beams), all, 1);
  const std::uint64_t free = ReadFreeMemory();
  memory.systems = free - std::min(free, memory.results);
  if (limit > 0) memory.systems = std::min(memory.systems, limit - std::min(limit, all));
  return memory;
}

// The groups of all beams. The run stops at the first beam without a section table: it is the last
// group.
BeamGroups FormGroups(const DetailSurvey& survey, int vectorBits, std::size_t beams, int threads,
                      const DetailMemory& memory) {
  const auto lanes = static_cast<std::uint64_t>(CountBeamLanes(vectorBits));
  // Rather all threads with single beams than one thread with beams side by side. A thread has a
  // system alone beside those of its lanes (BeamGroups::threadBytes).
  const std::uint64_t share = memory.systems / static_cast<std::uint64_t>(std::max(threads, 1));
  BeamGroups groups = GroupBeams(survey.shapes, lanes, share / (lanes + 1) * lanes);
  const std::size_t known = survey.shapes.ofBeam.size();
  if (known < beams) groups.beams.push_back({known});
  return groups;
}

// Each thread has systems besides the results of all: no allocation fails because several ask.
int CountThreads(int threads, const BeamGroups& groups, const DetailMemory& memory) {
  const std::uint64_t each = std::max<std::uint64_t>(groups.threadBytes, 1);
  const std::uint64_t most = std::max<std::uint64_t>(memory.systems / each, 1);
  const auto wanted = static_cast<std::uint64_t>(std::max(threads, 1));
  return CountThreadsInMemory(static_cast<int>(std::min(wanted, most)), memory.results,
                              groups.threadBytes);
}

void AverageDetailStresses(int threads, std::vector<BeamShellModel>& details) {
  std::uint64_t nodes = 0, shells = 0;
  for (const BeamShellModel& detail : details) {
    nodes += detail.NodeCoords.size();
    shells += detail.Shells.size();
  }
  AllocateOrStop("the averages of the detail models", CountAveragingBytes(nodes, shells), 1,
                 [&] { AverageBeamShellStresses(details, threads); });
}

// The six solved displacements of a node.
const double* NodeDisplacements(const Model& model, std::int32_t node) {
  return &model.Displacements[static_cast<std::size_t>(node) * DofsPerNode];
}

// What the solution of one group leaves to the next one of the same thread: the memory of its
// systems.
struct BeamMemory {
  SectionOutline outline;
  std::vector<BeamShellModel> links;  // of each beam of a group
  BeamShellModel system;              // of a beam that is solved alone
  BeamLanes lanes;
};

// The memories that no group is using.
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

// Solves beams of the same shape one after the other. What the systems of others hold is given back
// where there is no room for both.
void SolveAlone(const std::vector<LaneBeam>& beams, BeamMemory& memory) {
  for (const LaneBeam& beam : beams) {
    BeamShellModel& detail = *beam.model;
    ReuseSystem(memory.system, detail);
    const std::uint64_t held = detail.Stiffness.Values.capacity() * sizeof(double);
    const std::uint64_t bytes = CountSystemBytes(detail);
    if (!HasMemory(bytes - std::min(bytes, held), 1)) ReleaseVector(memory.lanes.values);
    SolveBeamShell(beam.u1, beam.u2, detail);
    ReuseSystem(detail, memory.system);
  }
}

// Makes and solves the detail models of the beams of a group.
// rows: of all beams; details: as many.
void SolveGroup(const Model& model, const std::vector<std::int32_t>& rows,
                const std::vector<std::size_t>& group, int vectorBits, BeamMemory& memory,
                std::vector<BeamShellModel>& details) {
  std::vector<LaneBeam> beams;
  memory.links.resize(std::max(memory.links.size(), group.size()));
  for (const std::size_t i : group) {
    BeamShellModel& detail = details[i];
    DescribeBeam(model, rows[i], detail, memory.outline);
    ReuseLinks(memory.links[beams.size()], detail);
    ExtrudeOutline(memory.outline, rows[i], detail);
    const std::int32_t* ends =
        &model.Tables.BeamNodes[static_cast<std::size_t>(rows[i]) * NodesPerBeam];
    beams.push_back(
        {NodeDisplacements(model, ends[0]), NodeDisplacements(model, ends[1]), &detail});
  }
  const bool isAlone = beams.size() == 1;
  SolveAlone(isAlone ? beams : SolveBeamLanes(vectorBits, beams, memory.lanes), memory);
  for (std::size_t k = 0; k < beams.size(); ++k) ReuseLinks(*beams[k].model, memory.links[k]);
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
                        int threads, std::uint64_t memory) {
  DetailSurvey survey;
  SurveyDetails(model, rows, survey);
  const DetailMemory shares = ShareMemory(survey, rows.size(), CountHeldBytes(details), memory);
  const int vectorBits = WidestVectorBits();
  const BeamGroups groups = FormGroups(survey, vectorBits, rows.size(), threads, shares);
  const int useful = CountThreads(threads, groups, shares);
  details.clear();
  if (rows.empty()) return;
  AllocateItems(NameDetailModels(rows.size()), rows.size(), details);
  SpareMemories spares;
  std::atomic<std::int64_t> done{0};
  const auto solve = [&](std::int64_t first, std::int64_t) {
    BeamMemory own = TakeMemory(spares);
    const std::vector<std::size_t>& group = groups.beams[static_cast<std::size_t>(first)];
    SolveGroup(model, rows, group, vectorBits, own, details);
    KeepMemory(own, spares);
    done += static_cast<std::int64_t>(group.size());
  };
  const auto report = [&](std::int64_t) {
    if (share) share(static_cast<double>(done) / static_cast<double>(rows.size()));
  };
  ShareRange(useful, static_cast<std::int64_t>(groups.beams.size()), 1, solve, report);
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
