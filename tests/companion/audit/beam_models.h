// Straight beams of one section for the tests of stresses: N and mm, along global x, web upwards.
#pragma once

#include <vector>

#include "support/beam_sections.h"
#include "support/model_text.h"

namespace kvx::test {

inline constexpr double SteelE = 206000.0;
inline constexpr double SteelMu = 0.3;

// Nodes at these places on the x axis; the first one is clamped.
inline korvex::test::ModelText BuildStraight(const std::vector<double>& places,
                                             const korvex::test::TestSection& section) {
  korvex::test::ModelText model;
  model.materials = {{SteelE, SteelMu, 7.85e-9}};
  for (std::size_t i = 0; i < places.size(); ++i) {
    model.nodes.push_back({places[i], 0.0, 0.0});
    if (i == 0) continue;
    korvex::test::ModelText::Beam beam;
    beam.node1 = static_cast<int>(i) - 1;
    beam.node2 = static_cast<int>(i);
    korvex::test::UseSection(section, model, beam);
    model.beams.push_back(beam);
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  return model;
}

// Sections in mm.
inline korvex::test::TestSection TeeSection() {
  return {"T", korvex::BeamSecTypeT, {300.0, 10.0, 200.0, 12.0}, 7.0, false};
}
inline korvex::test::TestSection AngleSection(bool mirrored) {
  return {"L", korvex::BeamSecTypeL, {250.0, 12.0, 90.0, 16.0}, 7.0, mirrored};
}
inline korvex::test::TestSection FlatBarSection() {
  return {"FlatBar", korvex::BeamSecTypeT, {200.0, 20.0, 0.0, 0.0}, 7.0, false};
}
inline korvex::test::TestSection TubeSection() {
  return {"Tube", korvex::BeamSecTypeC, {100.0, 8.0, 0.0, 0.0}, 7.0, false};
}

}  // namespace kvx::test
