// The file of the whole structure's averaged stresses, beams in detail included, for
// post-processors that draw it.
//
// Values are separated by commas, without blanks, six significant digits, 0-based numbers, global
// axes. In turn:
//   NPOIN=, the nodes' x,y,z, their six displacements;
//   NELEM_S_4ND=, for each shell its nodes, and for each corner the upper and the lower face;
//   NELEM_S_3ND=, the same;
//   NELEM_B=, for each beam BEI= its number, SND( ) and END( ) its end points, and its detail
//   model: NPOIN=, nodes, displacements, NELEM=, shells as above. Links are not written.
// A face is SX, SY, SZ, TXY, TXZ, TYZ and the von Mises stress.
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Returns false where the file could not be written whole. Throws a Stop where it cannot be opened.
bool WriteAverageStressFile(const std::string& fileName, const Model& model);

}  // namespace korvex
