// Which results are enveloped over load cases, and their values in one case.
//
// A row of an envelope is one item (a node, a support, a beam's station, a beam, a shell element)
// with all its components; what occurs with an extreme value is the rest of its row. Signs and
// frames are those of the headers named below; a shell's resultants are in its own frame.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "audit/maxima.h"
#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "audit/solved_model.h"
#include "cases/envelope.h"

namespace kvx {

enum EnvelopeKind : std::size_t {
  // Nodes: displacements and rotations, global.
  EnvelopeDisplacements,  // ux, uy, uz, rx, ry, rz
  // Nodes with a held dof: force of the support on the structure, global (reactions.h). Components
  // of free dofs are absent.
  EnvelopeReactions,  // Fx, Fy, Fz, Mx, My, Mz
  // Stations of beams, local axes, about the centroid (section_forces.h). They are the same in all
  // cases, because places of zero slope move from case to case: five, evenly spaced, ends included.
  // Between two stations a moment may exceed both by q L^2 / 128, with the largest line load q and
  // the length L of the beam: 6 % of the moment of a simply supported span that is one beam, 1/n^2
  // of that where it is n beams.
  EnvelopeBeamForces,  // N, Vy, Vz, T, My, Mz
  // Beams: the extreme values along each, also at places of zero slope (FindBeamStresses). They
  // occur in the same case, not at the same point.
  EnvelopeBeamStresses,  // sigma_max, sigma_min, tau_max, von_mises (section_stresses.h),
                         // detail_von_mises (of the detail model at mid-length, detail_stress.h)
  // Shells: resultants at the centre (shell_resultants.h). qx and qy of triangles are absent.
  EnvelopeShellForces,  // nx, ny, nxy, mx, my, mxy, qx, qy
  // Shells: the extreme values of the averaged corner stresses (maxima.h). They occur in the same
  // case, not at the same corner.
  EnvelopeShellStresses,  // upper_von_mises, lower_von_mises, middle_von_mises; principal_max,
  // principal_min: the largest and the smallest principal stress of both faces
};
inline constexpr std::size_t EnvelopeKindCount = 6;

// The names of the components, in order: as above.
const std::vector<const char*>& ListComponents(EnvelopeKind kind);

struct EnvelopeItem {
  Holder holder = Holder::Node;
  std::int32_t number = 0;  // 0-based, of the node or in the element's table
  double station = -1.0;    // of section forces: x / length, 0 .. 1; others: -1
  // Global: of the node, on the line between a beam's nodes (its middle where there is no station),
  // of a shell the mean of its nodes.
  korvex::Vector3 place{};
};

// What is enveloped. It depends on structure and supports alone, not on the case.
struct EnvelopeItems {
  struct Kind {
    std::vector<EnvelopeItem> items;     // nodes ascending; four-node, then three-node shells
    std::vector<std::uint8_t> isAbsent;  // as Envelope::isAbsent
  };
  std::array<Kind, EnvelopeKindCount> kinds;
};

// solved: any case of the structure. Throws a Stop where the record of the model is not complete.
void ListEnvelopeItems(const SolvedModel& solved, EnvelopeItems& items);

// [EnvelopeKind] items x components.
using CaseValues = std::array<std::vector<double>, EnvelopeKindCount>;

// The values of one case, for all envelopes to which the case belongs.
// solved: the case, with the stresses of its own displacements: RecoverShellStresses,
// AverageNodeStresses, SolvedModel::details; reactions, beams: of it. Throws a Stop where the
// records do not belong together. Values that are not to be had, as of a model that can move, are
// NaN. An item of which any corner or point is not finite is NaN as a whole.
void ComputeCaseValues(const SolvedModel& solved, const Reactions& reactions,
                       const std::vector<BeamForces>& beams, CaseValues& values);

// [EnvelopeKind] One envelope over some of the cases. It takes 1.7 kB for each shell, 0.7 kB for
// each node, 4 kB for each beam.
using CaseEnvelopes = std::array<Envelope, EnvelopeKindCount>;

void InitCaseEnvelopes(const EnvelopeItems& items, CaseEnvelopes& envelopes);

// caseNumber: into the list of names with which the envelopes are shown. Throws a Stop where the
// values are those of another structure.
void AddCaseValues(const CaseValues& values, std::int32_t caseNumber, CaseEnvelopes& envelopes);

}  // namespace kvx
