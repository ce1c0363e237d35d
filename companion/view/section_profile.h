// The cross-section of a beam as it is drawn: the outline of its plates, not their mid-lines.
//
// Local axes of the beam, from the line between its nodes (beam/beam_frame.h). The plates lie where
// the section properties have them (beam/section_properties.h): an L flange begins at the web's
// face, mirrored at the other one, and the offset moves all along z.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

// A circle is drawn as a polygon whose corners lie on it.
inline constexpr std::size_t CirclePoints = 24;

struct SectionProfile {
  const char* type = "";    // "T", "L", "flat bar", "tube"; empty without a row of a table
  std::int32_t index = -1;  // row of its table
  bool mirrored = false;    // an L with its flange towards -y; of no effect on the others
  double offset = 0.0;      // BeamSecOz
  std::string name;         // filled by the caller: the tables have no names
  std::string origin;       // filled by the caller: its name in the deck; empty: not known
  std::string sizes;        // "Hw 120, Tw 8, Bf 80, Tf 10": all digits of the numbers
  // Closed rings y0, z0, y1, z1 ... T: 8 corners, L: 6, flat bar: 4, tube: two circles. The outer
  // ring runs from y towards z, then a tube's hole the other way round. None where a coordinate
  // would not be finite; a tube without a hole has one.
  std::vector<std::vector<double>> rings;
  std::array<double, 2> centroid{};    // y, z: Ey, Ez of SectionProperties
  double A = 0.0, Iy = 0.0, Iz = 0.0;  // as in SectionProperties
};

// A section type without a table, or an index outside its table, gives no type and no rings.
SectionProfile MakeSectionProfile(const korvex::ModelTables& tables,
                                  const korvex::BeamSectionRef& ref);

}  // namespace kvx
