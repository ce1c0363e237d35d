// The section kinds of the tests, each with its rows for a model file and its numbers.
//
// The numbers come from the shape alone: T and L sections are rectangles summed about their common
// centroid, the tube is the difference of two circles in its mean radius and thickness.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "support/force_method.h"
#include "support/model_text.h"

namespace korvex::test {

struct TestSection {
  std::string name;
  int BeamSecType = 0;
  std::array<double, 4> dimensions{};  // Hw, Tw, Bf, Tf, or R, T
  double BeamSecOz = 0.0;
  bool mirrored = false;
};

// How a failed test names the section.
std::ostream& operator<<(std::ostream& out, const TestSection& section);

// T, L, mirrored L, flat bar and tube, each without and with an offset.
std::vector<TestSection> AllSections();

SectionNumbers ComputeNumbers(const TestSection& section);

// Puts the section into its table, as the only row of it, and fills in the beam's reference.
void UseSection(const TestSection& section, ModelText& model, ModelText::Beam& beam);

}  // namespace korvex::test
