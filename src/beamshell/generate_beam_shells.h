// The detail models of all beams: each beam is rebuilt as flat shells along its outline, loaded by
// its solved end displacements and solved.
//
// Per beam: outline (section_outline.h), extrusion (extrude_outline.h), solution
// (solve_beam_shell.h; beams of one shape side by side, solve_beam_lanes.h); after the last beam
// the corner stresses are averaged (average_corners.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "beamshell/section_outline.h"
#include "model/model.h"
#include "skyline/work_share.h"

namespace korvex {

// Fills model.BeamShellModels from the beams and the displacements, in table order. Does nothing if
// there is no beam. Throws a Stop where a beam's BeamSecType has no section table, where a detail
// model has too many equations, and where the memory is too small.
//
// share: called with the share of the beams that are done, which never falls, on the caller's
// thread: before each beam of that thread, or each group of beams that are solved side by side, and
// with several threads once before any beam. May be empty.
//
// threads: each solves some of the beams, in its own memory; there are fewer where the memory has
// no room for as many systems. A Stop is that of the first beam that has one; where the memory ends
// while beams are solved side by side, it may name a later one.
void GenerateBeamShells(Model& model, const ShareCallback& share = {}, int threads = 1);

// The same for some beams: details[i] becomes that of beam rows[i]. The memory of what `details`
// had before serves again.
// rows: of the table of beams, ascending. The averaged stresses of a beam have the bits of a run
// where all beams that share an end with it are among the rows; its other values always have them.
// memory: bytes for the models and the systems of all threads: what is left beside the models
// limits the systems that are solved side by side; 0: what is free does.
void GenerateBeamShells(const Model& model, const std::vector<std::int32_t>& rows,
                        std::vector<BeamShellModel>& details, const ShareCallback& share = {},
                        int threads = 1, std::uint64_t memory = 0);

// "the detail models of 20 beam elements", as messages name them.
std::string NameDetailModels(std::size_t beams);

// Describes the beam at this row, and its section as an outline, for ExtrudeOutline and
// CountDetailBytes. Throws a Stop where the section type has no table.
void DescribeBeam(const Model& model, std::int32_t row, BeamShellModel& detail,
                  SectionOutline& outline);

}  // namespace korvex
