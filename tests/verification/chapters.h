// The chapters of the book.
//
// Each routine computes its chapter as far as `extent` goes and returns its text, with figures as
// marks (book.h).
#pragma once

#include <string>

#include "verification/convergence.h"

namespace korvex::book {

std::string WritePatchTests(Extent extent);
std::string WritePlates(Extent extent);
std::string WriteSkewPlates(Extent extent);
std::string WriteCurvedShells(Extent extent);
std::string WriteCantilevers(Extent extent);
std::string WriteBeams(Extent extent);
std::string WriteStiffeners(Extent extent);
std::string WriteDetailModels(Extent extent);
std::string WriteInvariants(Extent extent);

// What has no figures: the words before the first chapter, and the last two chapters.
std::string WriteIntroduction();
std::string WriteAdvice(Extent extent);
std::string WriteSources(Extent extent);

}  // namespace korvex::book
