// The beam sections of the tests: their rows for a model file and their section properties.
//
// The properties are computed from the shape, independently of src: T and L sections are sums of
// rectangles about their common centroid; the tube, two circles, is written in its mean radius and
// wall thickness.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "deck/model_tables.h"
#include "support/force_method.h"
#include "support/model_text.h"

namespace korvex::test {

struct TestSection {
  std::string name;
  int BeamSecType = BeamSecTypeT;
  std::array<double, 4> dimensions{};  // Hw, Tw, Bf, Tf, or R, T
  double BeamSecOz = 0.0;
  bool mirrored = false;
};

// The name of the section in messages of failed tests.
std::ostream& operator<<(std::ostream& out, const TestSection& section);

// T, L, mirrored L, flat bar and tube, each without and with an offset.
std::vector<TestSection> AllSections();

SectionNumbers ComputeNumbers(const TestSection& section);

// Makes the section the only row of its table and lets the beam refer to it.
void UseSection(const TestSection& section, ModelText& model, ModelText::Beam& beam);

}  // namespace korvex::test
