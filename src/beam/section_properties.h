// Section properties of T, L and circular-tube beams, in the beam's local axes.
//
// A T or L section stands on its node: the web reaches from z = 0 to Hw, the flange from Hw to
// Hw + Tf, both shifted by BeamSecOz. The web is centred on y = 0. A T flange is centred on the
// web; an L flange runs from the web's face on the -y side towards +y (if mirrored, from the +y
// side towards -y). A tube's centre lies on the node line, shifted by BeamSecOz.
//
// Second moments by the parallel-axis theorem; J of the open sections is the sum of b t^3 / 3 of
// the plates (Timoshenko & Goodier 1970, ch. 10). Shear parameter 12 E I / (G As L^2)
// (Przemieniecki 1968, sec. 5.6). Nothing is checked: a zero length or a zero shear area gives
// infinities or NaNs.
#pragma once

#include <array>

#include "base/material.h"
#include "beam/beam_element.h"

namespace korvex {

// Returns the properties of a T section.
// element: must have NodeI, NodeJ, E and Mu; Hw, Tw, Bf, Tf: as in BeamSection; BeamSecOz: the
// section's offset along local z. With Bf = 0 or Tf = 0 the section is a rectangle Hw x Tw.
SectionProperties SectionPropertiesT(const BeamElement& element, double Hw, double Tw, double Bf,
                                     double Tf, double BeamSecOz);

// Returns the properties of an L section; arguments and the case without flange as for the T
// section. mirrored: the flange points towards -y. Iy and Iz are about axes parallel to flange and
// web. No product of inertia is formed: these axes are used as if they were the principal ones.
SectionProperties SectionPropertiesL(const BeamElement& element, double Hw, double Tw, double Bf,
                                     double Tf, double BeamSecOz, bool mirrored);

// Fills all of `element`, a tube, except BeamSecMirrored.
// refPointAndTolerance: 4 doubles, x, y, z of RefPoint and Tolerance.
void InitCBeamElement(BeamElement& element, const Vector3& nodeI, const Vector3& nodeJ,
                      const std::array<double, 4>& refPointAndTolerance, const Material& material,
                      const CBeamSection& section, double BeamSecOz);

}  // namespace korvex
