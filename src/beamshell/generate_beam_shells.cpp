// The loop over the beams of generate_beam_shells.h.
#include "beamshell/generate_beam_shells.h"

#include "beamshell/average_corners.h"
#include "beamshell/extrude_profile.h"
#include "beamshell/section_profile.h"
#include "beamshell/solve_beam_shell.h"
#include "platform/stop_run.h"

namespace korvex {

namespace {

constexpr double ToleranceDivisor = 10000.0;  // of the beam's length

// Copies what the detail model takes over from its beam.
void DescribeBeam(const BeamElement& beam, std::int32_t meshLevel, BeamShellModel& detail) {
  detail.MeshLevel = meshLevel;
  detail.E = beam.E;
  detail.Mu = beam.Mu;
  detail.EndPoint1 = beam.NodeI;
  detail.EndPoint2 = beam.NodeJ;
  detail.OrientVector = Subtract(beam.RefPoint, beam.NodeI);
  detail.Tolerance = Length(Subtract(detail.EndPoint2, detail.EndPoint1)) / ToleranceDivisor;
}

// The profile of the section that `ref` leads to, with its offset.
void BuildSectionProfile(const Model& model, const BeamSectionRef& ref, SectionProfile& profile) {
  const auto row = static_cast<std::size_t>(ref.BeamSecIndex);
  switch (ref.BeamSecType) {
    case BeamSecTypeT:
      BuildTProfile(model.TBeamSections[row], model.BeamShellMeshLevel, profile);
      break;
    case BeamSecTypeL:
      BuildLProfile(model.LBeamSections[row], ref.BeamSecMirrored, model.BeamShellMeshLevel,
                    profile);
      break;
    case BeamSecTypeC:
      BuildCProfile(model.CBeamSections[row], model.BeamShellMeshLevel, profile);
      break;
    default:
      // "梁截面类型数字错误!" (beam section type number error)
      StopWithNotice(
          "\xE6\xA2\x81\xE6\x88\xAA\xE9\x9D\xA2\xE7\xB1\xBB\xE5\x9E\x8B"
          "\xE6\x95\xB0\xE5\xAD\x97\xE9\x94\x99\xE8\xAF\xAF!");
  }
  ShiftProfile(ref.BeamSecOz, profile);
}

// The six solved displacements of a node.
const double* NodeDisplacements(const Model& model, std::int32_t node) {
  return &model.Displacements[static_cast<std::size_t>(node) * DofsPerNode];
}

}  // namespace

void GenerateBeamShells(Model& model) {
  if (model.NELEM_B < 1) return;
  model.BeamShellModels.assign(static_cast<std::size_t>(model.NELEM_B), {});
  SectionProfile profile;
  BeamShellModel spare;  // holds the memory of the systems between two beams
  for (std::int32_t b = 0; b < model.NELEM_B; ++b) {
    const auto row = static_cast<std::size_t>(b);
    BeamShellModel& detail = model.BeamShellModels[row];
    DescribeBeam(model.BeamElements[row], model.BeamShellMeshLevel, detail);
    BuildSectionProfile(model, model.BeamSectionRefs[row], profile);
    HandOnSystem(spare, detail);
    ExtrudeProfile(profile, b, detail);
    SolveBeamShell(NodeDisplacements(model, model.BeamNodes[row * NodesPerBeam]),
                   NodeDisplacements(model, model.BeamNodes[row * NodesPerBeam + 1]), detail);
    HandOnSystem(detail, spare);
  }
  AverageBeamShellStresses(model.BeamShellModels);
}

}  // namespace korvex
