// Meshes whose order of nodes matters, as pre-processors number them: surface by surface.
//
// All nodes lie on a lattice, so that surfaces that meet share theirs. What lies at x = 0 is
// clamped, the last node has a force. Units: mm, N.
#pragma once

#include <cstdint>

#include "deck/model_tables.h"

namespace korvex::bench {

// A flat plate of length x width quadrilaterals along x and y, numbered line by line along x,
// clamped along one edge. isTilted: it is parallel to no coordinate plane, so that membrane and
// bending are one system.
void MakePlate(std::int32_t length, std::int32_t width, bool isTilted, ModelTables& tables);

// The same of side x side, its nodes in random order.
void MakeShuffledPlate(std::int32_t side, bool isTilted, ModelTables& tables);

// A lattice of tubes: cubes, `length` x width x height of them, with a diagonal in each of their
// faces; numbered along x, then y, then z.
void MakeLattice(std::int32_t length, std::int32_t width, std::int32_t height, ModelTables& tables);

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
