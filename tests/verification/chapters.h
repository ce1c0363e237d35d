// The chapters of the book: what is computed for each.
//
// Each routine computes the tables and figures of its chapter, as far as `extent` goes, and returns
// them for the placeholders of templates/CHAPTER.md, with figures as marks (book.h). Throws
// std::runtime_error where a run of the program fails.
#pragma once

#include "verification/convergence.h"
#include "verification/template.h"

namespace korvex::book {

Fillings ComputePatchTests(Extent extent);
Fillings ComputePlates(Extent extent);
Fillings ComputeSkewPlates(Extent extent);
Fillings ComputeCurvedShells(Extent extent);
Fillings ComputeCantilevers(Extent extent);
Fillings ComputeBeams(Extent extent);
Fillings ComputeStiffeners(Extent extent);
Fillings ComputeDetailModels(Extent extent);
Fillings ComputeInvariants(Extent extent);

}  // namespace korvex::book
