// The file of averaged stresses of the global shells and of all detail models, for post-processors.
//
// Values are separated by commas without blanks; six significant digits, 0-based numbers, global
// axes, model units. A stress line has SX, SY, SZ, TXY, TXZ, TYZ and the von Mises stress. In
// order:
//   NPOIN=        x,y,z of all nodes, then their six displacements
//   NELEM_S_4ND=  per shell: its nodes; per corner: the upper and the lower face, one line each
//   NELEM_S_3ND=  the same
//   NELEM_B=      per beam: BEI= its number, its end points as SND(x,y,z) and END(x,y,z), and its
//                 detail model: NPOIN= and NELEM= as above. Links are not written.
#pragma once

#include <cstddef>
#include <string>

#include "model/model.h"
#include "results/result_file.h"

namespace korvex {

// Returns false if the file could not be written completely. Throws a Stop where it cannot be
// opened, and where the memory is too small to count its rows. threads: that make the text.
bool WriteAverageStressFile(const std::string& fileName, const Model& model, int threads = 1);

// The same file for callers that do not hold all detail models at once: opens it and writes all
// that precedes them. Throws a Stop where it cannot be opened. CloseResultFile ends it.
void BeginAverageStressFile(const std::string& fileName, const Model& model, int threads,
                            ResultFile& file);

// Adds the detail models of the beams firstBeam, firstBeam + 1, ...; details: [count] of them.
// Throws a Stop where the memory is too small to count their rows.
void AddDetailModels(std::size_t firstBeam, const BeamShellModel* details, std::size_t count,
                     ResultFile& file);

}  // namespace korvex
