// A beam of the tables as the solver makes it: its end points, material and section properties.
#pragma once

#include "beam/beam_element.h"
#include "check/checked_model.h"

namespace kvx {

// Fills `beam`, newly constructed, and its length L. Returns false where its material or section
// is not known, or a finding names it. The row must be a sound beam.
bool MakeSolverBeam(const CheckedModel& model, std::int32_t row, korvex::BeamElement& beam,
                    double& L);

}  // namespace kvx
