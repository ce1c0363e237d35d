// The stresses of beams from their section forces, at the points of their sections.
//
//   sigma = N / A + My z / Iy - Mz y / Iz          tension positive
//   tau   = shear of Vy, Vz and torsion            not negative, formulas in section_shape.h
//   von Mises stress = sqrt(sigma^2 + 3 tau^2)
//
// Nominal stresses: no concentration, no warping, no effective breadth, no local bending of plates.
#pragma once

#include <vector>

#include "audit/section_forces.h"
#include "audit/section_shape.h"

namespace kvx {

struct FibreStress {
  SectionPlace place = SectionPlace::WebEdge;
  double y = 0.0, z = 0.0;  // from the centroid, local axes
  double sigma = 0.0, tau = 0.0, vonMises = 0.0;
};

// Fills the stresses of all points of a section. sigma is largest at corners, which are among them;
// between points tau and the von Mises stress of plates may be a little larger where bending in
// both planes comes together. Of a tube four places of its outer circle: where sigma is largest,
// where it is smallest, where tau is largest, where the von Mises stress is. Empty for a section of
// the kind None.
void FindFibreStresses(const SectionShape& shape, const SectionForces& forces,
                       std::vector<FibreStress>& stresses);

// What rules for stiffeners and girders ask for.
struct NominalStresses {
  double axial = 0.0;     // N / A
  double webShear = 0.0;  // Vz / web area, mean over the web; of a tube 2 Vz / A, the largest
  double torsion = 0.0;   // |T| t / J with the thickest plate; of a tube |T| Ro / J
};

NominalStresses FindNominalStresses(const SectionShape& shape, const SectionForces& forces);

struct PlacedStress {
  FibreStress fibre;
  double s = 0.0;  // x / length
};

struct BeamStresses {
  PlacedStress tension;      // the largest sigma, may be negative
  PlacedStress compression;  // the smallest sigma, may be positive
  PlacedStress shear;        // the largest tau
  PlacedStress vonMises;     // the largest von Mises stress
  PlacedValue webShear;      // the largest |Vz| / web area
};

// The largest stresses of a beam over `stations` (ListStations, not empty) and, for plates, the
// exact places where sigma of a point is largest or smallest. Stresses that are not numbers, and a
// section of the kind None, give NaNs.
BeamStresses FindBeamStresses(const SectionShape& shape, const BeamForces& forces,
                              const std::vector<double>& stations);

// The same of beam `row` of the model over its ends and quarters and the places where its section
// forces are largest. Throws a Stop as MakeSectionShape does.
BeamStresses FindBeamStresses(const korvex::Model& model, std::size_t row,
                              const BeamForces& forces);

}  // namespace kvx
