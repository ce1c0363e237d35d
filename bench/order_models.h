// Meshes whose order of nodes matters, as pre-processors number them: surface by surface.
//
// All nodes lie on a lattice, so that surfaces that meet share theirs. Units: mm, N.
#pragma once

#include <cstdint>

#include "deck/model_tables.h"

namespace korvex::bench {

// A flat plate of side x side quadrilaterals, its nodes in random order, clamped along one edge.
void MakeShuffledPlate(std::int32_t side, ModelTables& tables);

// A plate stiffened by webs of quadrilaterals along both directions: every 6 elements one of height
// 2 along it, every 20 one of height 5 across it. length, width: in elements. Numbered along the
// plate line by line, then web by web.
void MakeGrillage(std::int32_t length, std::int32_t width, ModelTables& tables);

// A closed ring of around x across quadrilaterals, numbered line by line around it.
void MakeRing(std::int32_t around, std::int32_t across, ModelTables& tables);

// A box girder of the given width and height in elements, with a diaphragm every `height` elements
// of its length; numbered face by face, then diaphragm by diaphragm.
void MakeBoxGirder(std::int32_t length, std::int32_t width, std::int32_t height,
                   ModelTables& tables);

}  // namespace korvex::bench
