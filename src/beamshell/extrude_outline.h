// The extrusion of a section outline along the beam: nodes, shells and links of the detail model.
//
// n equal steps. A step is at least as long as the longest outline segment (unless the beam is
// shorter) and less than twice as long. Links are tubes much stiffer than any plate: rigid arms
// from the beam's end nodes to the outline.
#pragma once

#include <cstdint>

#include "beamshell/section_outline.h"
#include "model/beam_shell_model.h"

namespace korvex {

// Returns n, the steps of the model. Arguments and Stop as for ExtrudeOutline.
std::int32_t CountSteps(const SectionOutline& outline, std::int32_t beam,
                        const BeamShellModel& model);

// Returns the bytes that the nodes and shells of the model will need, their averaging included.
// Arguments and Stop as for ExtrudeOutline.
std::uint64_t CountDetailBytes(const SectionOutline& outline, std::int32_t beam,
                               const BeamShellModel& model);

// Returns the most bytes that the links and the equation system of the model will need, which pass
// to the next model after the solution. Arguments and Stop as for ExtrudeOutline.
std::uint64_t CountSystemBytes(const SectionOutline& outline, std::int32_t beam,
                               const BeamShellModel& model);

// The same of a model that is extruded.
std::uint64_t CountSystemBytes(const BeamShellModel& model);

// Fills nodes, shells and links of `model` and their counts. E, Mu, the end points and the
// orientation vector must be set.
// outline: shifted by the section's offset, not empty; beam: the beam's number, for the notice.
// Throws a Stop where the model would have more than 2^31 - 1 equations or the memory is too small.
// A zero length or an orientation vector along the axis gives non-finite coordinates without
// notice.
void ExtrudeOutline(const SectionOutline& outline, std::int32_t beam, BeamShellModel& model);

}  // namespace korvex
