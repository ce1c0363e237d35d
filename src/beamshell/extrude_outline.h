// The extrusion of a section outline along the beam: nodes, shells and links of the detail model.
//
// n equal steps, about as long as the longest segment of the outline, so that the shells are nearly
// square or longer. Links are tubes far stiffer than any plate: rigid arms from the beam's node
// line to the outline of the section.
#pragma once

#include <cstdint>

#include "beamshell/section_outline.h"
#include "model/beam_shell_model.h"

namespace korvex {

// The bytes that the nodes and shells of the model will take, with what their averaging needs. The
// arguments and the stop are those of ExtrudeOutline.
std::uint64_t CountDetailBytes(const SectionOutline& outline, std::int32_t beam,
                               const BeamShellModel& model);

// Fills nodes, shells and links of `model` and their counts. It must hold E, Mu, the end points and
// the orientation vector.
// outline: with the offset, not empty; beam: the beam's number, for the notice.
// Throws a Stop where the model would have more equations than an int32 counts. A zero length or an
// orientation vector along the axis gives non-finite coordinates, silently.
void ExtrudeOutline(const SectionOutline& outline, std::int32_t beam, BeamShellModel& model);

}  // namespace korvex
