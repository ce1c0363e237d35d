// Cross-sections of PBARL and PBEAML, as the solver's tables have them.
//
// Their figures look from end A to end B with the element's y upwards and z to the right. Here a T
// or L section stands on the free edge of its web, and local z runs along the web from there.
#pragma once

#include <string>

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_fields.h"

namespace kvx {

// Along which axis of the deck's element the web runs, from its free edge on.
enum class WebDirection { PlusY, MinusY, PlusZ };

struct NastranSection {
  ImportSection section;
  WebDirection web = WebDirection::PlusY;
  double centroid = 0.0;     // above the free edge of the web; of a tube: above its centre, 0
  double shearCentre = 0.0;  // the same; of T and L where the middle lines of the plates meet
  double beside = 0.0;       // the centroid beside the web's middle line, along local y
  bool isFlatBar = false;
  std::string lacks;        // why it has no counterpart; "": it has one
  bool hasMass = false;     // NSM
  bool isThickBar = false;  // its torsion constant is well below that of a thin plate
};

// Reads the section of a PBARL or PBEAML card.
void ReadNastranSection(const NastranRow& row, NastranSection& section);

// A flat bar with web and thickness exchanged, and its web along the other axis.
NastranSection LyingBar(const NastranSection& bar);

}  // namespace kvx
