// Beams whose detail models should not be read as they are: under line load and not divided, or too
// short for their section.
//
// A detail model is driven by the ends of its beam and does not see the line load between them. At
// mid-length it lacks the moment of a beam clamped at both ends, (q1 + q2) L^2 / 48, and with it a
// part of the stress. That part matters against the largest moment of the girder, which is a line
// of beams of one section that continue each other.
#pragma once

#include <cstdint>
#include <vector>

#include "audit/section_forces.h"
#include "model/model.h"

namespace kvx {

// A missing moment below this part of the girder's largest is no reason to divide. A simply
// supported span misses 8 % with two elements and 2 % with four; a clamped one 12 % and 3 %.
inline constexpr double MissingMomentLimit = 0.05;

// Below three widths of its widest plate the rigid ends of a detail model reach its middle.
inline constexpr double ShortestDetail = 3.0;

struct UndividedBeam {
  std::int32_t beam = 0;
  double missingMoment = 0.0;  // My at mid-length that the detail model lacks, with its sign
  double missingStress = 0.0;  // its largest bending stress, not negative
  double girderMoment = 0.0;   // the largest |My| along the girder
  double part = 0.0;           // |missingMoment| / girderMoment, above MissingMomentLimit
  std::int32_t pieces = 0;     // into so many equal beams it should be divided, at least
};

// forces: of all beams of the model. In the order of the table. Beams whose numbers are not finite
// are left out.
void FindUndividedBeams(const korvex::Model& model, const std::vector<BeamForces>& forces,
                        std::vector<UndividedBeam>& found);

struct ShortDetail {
  std::int32_t beam = 0;
  std::int32_t steps = 0;    // of the detail model along the beam, 1 or 2
  double widestPlate = 0.0;  // width of the section's widest plate
  double ratio = 0.0;        // length of the beam / widestPlate, below ShortestDetail
};

// In the order of the table. Beams without a section table or whose numbers are not finite are left
// out. Throws a Stop where a section index leads outside its table, or where there are not as many
// elements as rows.
void FindShortDetails(const korvex::Model& model, std::vector<ShortDetail>& found);

}  // namespace kvx
