// Wire-frame drawings of the shell mesh in the minimal DXF form: one ENTITIES section of LINEs on
// layer "0", no header, no tables.
//
// All edges of all shell elements are drawn, four-node shells first; an edge of two elements is
// drawn twice. Beams are not drawn. Coordinates have six significant digits.
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Drawn length of the largest translation / largest extent of the model.
inline constexpr double DrawnDisplacementShare = 0.05;

// Both routines return false if the file could not be written completely. They throw a Stop where
// it cannot be opened or the memory is too small for the points. threads: that make the text.

// Draws the undeformed mesh.
bool WriteStructureDrawing(const std::string& fileName, const Model& model, int threads = 1);

// Draws the mesh with its translations scaled by ComputeDrawingScale.
bool WriteDeformationDrawing(const std::string& fileName, const Model& model, int threads = 1);

// Returns (largest edge of the nodes' bounding box / largest absolute translation component) x
// DrawnDisplacementShare. Not finite if all translations are zero; 0 for a model without nodes.
double ComputeDrawingScale(const Model& model);

}  // namespace korvex
