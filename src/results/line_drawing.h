// Wire-frame drawings of the shell mesh in the minimal DXF form: one ENTITIES section of LINEs on
// layer "0", no header, no tables.
//
// Every edge of every element is drawn, four-node shells first, an edge shared by two elements
// twice. Beams are not drawn. Coordinates have six significant digits.
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Share of the model's largest extent that the largest translation is drawn as.
inline constexpr double DrawnDisplacementShare = 0.05;

// Both return false where the file could not be written whole, and throw a Stop where it cannot be
// opened or memory cannot hold the points.

// Draws the undeformed mesh.
bool WriteStructureDrawing(const std::string& fileName, const Model& model);

// Draws the mesh with its translations scaled by ComputeDrawingScale.
bool WriteDeformationDrawing(const std::string& fileName, const Model& model);

// Largest extent of the nodes' bounding box / largest absolute translation component x
// DrawnDisplacementShare. Not finite where nothing moves; 0 for a model without nodes.
double ComputeDrawingScale(const Model& model);

}  // namespace korvex
