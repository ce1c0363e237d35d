// The points of a beam's cross-section at which stresses are read, and what each force gives there.
//
// The shape is that of the section properties (beam/section_properties.h): an L flange begins at
// the web's outer face, so its tip stands Bf - Tw / 2 from the web's centre line. As in the solver
// there is no product of inertia: an L section is bent about web and flange axes as if these were
// its principal ones. So do the displacements, and with them the detail model.
#pragma once

#include <cstddef>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

enum class SectionKind { None, T, L, FlatBar, Tube };

enum class SectionPlace {
  WebEdge,           // corners of the web's free edge; of a flat bar both edges
  WebAtCentroid,     // faces of the web at the height of the centroid
  WebTop,            // faces of the web where the flange begins
  FlangeTip,         // corners of the flange's free end
  FlangeRoot,        // faces of the flange beside the web
  FlangeAtCentroid,  // faces of an L flange at the centroid's y
  FlangeHeel,        // an L flange's outer corner over the web
  Centre,            // of a flat bar
  Circle,            // the outer circle of a tube
};

// Shear of T and L sections is that of thin-walled open sections, V Q / (I t), with Q the first
// moment of the area between the point and the free end of its plate (Timoshenko & Gere 1972, sec.
// 5.6 and 7.6): zero at free edges, largest near the centroid. Both shear forces run along the
// plate and are added with their signs. Torsion is that of open sections, T t / J at the faces of a
// plate of thickness t (Timoshenko & Goodier 1970, ch. 10): plates turn freely, warping is not held
// anywhere. It is zero at a plate's edges in truth, and is taken at all points of its faces.
//
// A flat bar is a web alone: V Q / (I t) is 1.5 Vz / A at mid-height. Across its thickness it
// carries 1.5 Vy / A at its centre. A tube has no points: its stresses are waves along its circle
// (section_stresses.h), with the shear 2 V / A of a thin ring and the torsion T Ro / J.
struct SectionPoint {
  SectionPlace place = SectionPlace::WebEdge;
  double y = 0.0, z = 0.0;  // from the centroid
  // Shear stress along the plate = |alongVy Vy + alongVz Vz| + torsion |T|.
  double alongVy = 0.0, alongVz = 0.0;  // 1 / area
  double torsion = 0.0;                 // 1 / length^3
  double acrossVy = 0.0;                // 1 / area; shear across the plate = acrossVy Vy
};

struct SectionShape {
  SectionKind kind = SectionKind::None;
  double A = 0.0, Iy = 0.0, Iz = 0.0, J = 0.0;  // as in SectionProperties
  double webArea = 0.0;      // Hw Tw; of a tube A / 2: what the mean shear of Vz is taken on
  double thickness = 0.0;    // the largest of the plates'
  double outerRadius = 0.0;  // of a tube
  std::vector<SectionPoint> points;  // none for a tube
};

// The shape of beam `row`. A section type without table gives the kind None, sizes of zero or less
// give infinities or NaNs. Throws a Stop where the row does not exist or its section index leads
// outside its table.
SectionShape MakeSectionShape(const korvex::ModelTables& tables, const korvex::BeamElement& beam,
                              std::size_t row);

}  // namespace kvx
