// *SHELL SECTION and *BEAM SECTION: thicknesses, sections, materials and axes of the elements.
#pragma once

#include <cstdint>
#include <vector>

#include "base/vector3.h"
#include "mesh/abaqus/abaqus_materials.h"
#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// The axes across a beam: n1 and n2, of length 1; t, n1, n2 are right-handed.
struct AbaqusBeamAxes {
  bool areKnown = false;
  korvex::Vector3 n1{}, n2{};
};

// What the sections leave for the loads.
struct AbaqusSections {
  std::vector<korvex::Vector3> approximateN1;  // [..] one for each *BEAM SECTION and third node
  std::vector<std::int32_t> n1OfBeam;          // [beams] row of approximateN1; -1: no section
};

// Gives the elements of the model what the sections say. Groups must be there: where a section
// cannot be taken over, its group says why.
void TakeAbaqusSections(AbaqusImport& import, const AbaqusMaterials& materials,
                        AbaqusSections& sections);

// The axes of a beam; not known where it has no section, no length, or an n1 along its axis.
AbaqusBeamAxes AxesOfBeam(const ImportModel& model, const AbaqusSections& sections,
                          std::int32_t beam);

}  // namespace kvx
