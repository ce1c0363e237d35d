// Where a section of a bulk data deck stands, in the solver's terms: the direction of its web, and
// how far above the nodes the web begins.
#pragma once

#include <array>

#include "base/vector3.h"
#include "mesh/import_model.h"
#include "mesh/nastran/nastran_elements.h"

namespace kvx {

// The line of a beam. Vectors are global.
struct BeamLine {
  korvex::Vector3 orientation{};             // of the deck: in its x-y plane
  std::array<korvex::Vector3, 3> axes{};     // its x, y, z
  std::array<korvex::Vector3, 2> offsets{};  // from the nodes to the line's ends
  double length = 0.0;                       // from node to node
  bool hasShearCentre = false;               // on the line; else the centroid
};

// Gives the beam its section, orientation and BeamSecOz, and reports what they cannot say. Without
// a section the beam stays as it is.
void PlaceSection(const NastranCard& card, const BeamLine& line, NastranProperty& property,
                  ImportBeam& beam, NastranElements& elements);

}  // namespace kvx
