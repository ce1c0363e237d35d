#include "beamshell/generate_beam_shells.h"

#include <algorithm>
#include <string>

#include "beamshell/average_corners.h"
#include "beamshell/extrude_outline.h"
#include "beamshell/section_outline.h"
#include "beamshell/solve_beam_shell.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "report/texts.h"

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

// Fills the beams' data into all detail models. Throws a Stop where the memory is too small for all
// of them. One model is usually small, but a section much smaller than its beam needs many shells.
void DescribeBeams(Model& model) {
  const std::string what =
      "the detail models of " + std::to_string(model.Tables.NELEM_B) + " beam elements";
  AllocateItems(what, static_cast<std::size_t>(model.Tables.NELEM_B), model.BeamShellModels);
  SectionOutline outline;
  std::uint64_t bytes = 0;
  for (std::int32_t b = 0; b < model.Tables.NELEM_B; ++b) {
    const auto row = static_cast<std::size_t>(b);
    DescribeBeam(model.BeamElements[row], model.BeamShellMeshLevel, model.BeamShellModels[row]);
    const BeamSectionRef& ref = model.Tables.BeamSectionRefs[row];
    if (!HasSectionTable(ref.BeamSecType)) break;  // the run will stop at this beam
    BuildSectionOutline(model, ref, outline);
    bytes = std::min(bytes + CountDetailBytes(outline, b, model.BeamShellModels[row]),
                     MoreThanAnyMemory);
  }
  CheckMemory(what, bytes, 1);
}

// Averages the corner stresses of all detail models. Memory of the averaging, per node: a position
// and four indices; per corner: one index.
void AverageDetailStresses(std::vector<BeamShellModel>& details) {
  constexpr std::uint64_t BytesPerNode = sizeof(Vector3) + 4 * sizeof(std::size_t);
  std::uint64_t bytes = 0;
  for (const BeamShellModel& detail : details) {
    bytes +=
        detail.NodeCoords.size() * BytesPerNode + detail.ShellNodes.size() * sizeof(std::size_t);
  }
  AllocateOrStop("the averages of the detail models", bytes, 1,
                 [&] { AverageBeamShellStresses(details); });
}

// The six solved displacements of a node.
const double* NodeDisplacements(const Model& model, std::int32_t node) {
  return &model.Displacements[static_cast<std::size_t>(node) * DofsPerNode];
}

}  // namespace

void GenerateBeamShells(Model& model, const ShareCallback& share) {
  if (model.Tables.NELEM_B < 1) return;
  DescribeBeams(model);
  SectionOutline outline;
  BeamShellModel spare;  // keeps the memory of one beam's system for the next beam
  for (std::int32_t b = 0; b < model.Tables.NELEM_B; ++b) {
    const auto row = static_cast<std::size_t>(b);
    if (share) share(static_cast<double>(b) / model.Tables.NELEM_B);
    BeamShellModel& detail = model.BeamShellModels[row];
    BuildSectionOutline(model, model.Tables.BeamSectionRefs[row], outline);
    ReuseMemory(spare, detail);
    ExtrudeOutline(outline, b, detail);
    SolveBeamShell(NodeDisplacements(model, model.Tables.BeamNodes[row * NodesPerBeam]),
                   NodeDisplacements(model, model.Tables.BeamNodes[row * NodesPerBeam + 1]),
                   detail);
    ReuseMemory(detail, spare);
  }
  AverageDetailStresses(model.BeamShellModels);
}

}  // namespace korvex
