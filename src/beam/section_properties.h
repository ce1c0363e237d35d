// Section properties of T, L and circular-tube beams, in the beam's local axes.
//
// A T or L section stands on its node: the web's free edge lies at z = 0 (plus BeamSecOz), the web
// rises along +z to Hw, the flange caps it from Hw to Hw + Tf. The web is centred on y = 0; a T
// flange is centred on the web, an L flange runs from the web's outer face on the -y side towards
// +y (towards -y if mirrored). A tube's centre lies on the node line, shifted by BeamSecOz.
//
// Second moments by the parallel-axis theorem; J of the open sections is the sum of b t^3 / 3 of
// the plates (Timoshenko & Goodier 1970, ch. 10). Shear parameter 12 E I / (G As L^2)
// (Przemieniecki 1968, sec. 5.6). Nothing is checked: a zero length or a zero shear area gives
// infinities or NaNs, which pass on.
#pragma once

#include <array>

#include "base/material.h"
#include "beam/beam_element.h"

namespace korvex {

// The T section. `element` must hold NodeI, NodeJ, E and Mu. A zero Bf or Tf leaves the web alone,
// a rectangle Hw x Tw.
SectionProperties SectionPropertiesT(const BeamElement& element, double Hw, double Tw, double Bf,
                                     double Tf, double BeamSecOz);

// The L section; arguments and the case without a flange as for the T section. Iy and Iz are about
// axes parallel to flange and web, and no product of inertia is formed: the section is treated as
// if these axes were its principal ones.
SectionProperties SectionPropertiesL(const BeamElement& element, double Hw, double Tw, double Bf,
                                     double Tf, double BeamSecOz, bool mirrored);

// The tube: fills the whole `element` but for BeamSecMirrored.
// refPointAndTolerance: 4 doubles, x, y, z of RefPoint and Tolerance.
void InitCBeamElement(BeamElement& element, const Vector3& nodeI, const Vector3& nodeJ,
                      const std::array<double, 4>& refPointAndTolerance, const Material& material,
                      const CBeamSection& section, double BeamSecOz);

}  // namespace korvex
