// Which change of a model changes its stiffness: every field of every table, one by one. What is
// said is compared with the bits of the assembled matrices too.
#include "engine/same_stiffness.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>

#include "model/read_input_file.h"
#include "results/shell_stresses.h"
#include "support/good_models.h"
#include "support/same_bits.h"
#include "support/solve_model.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// A quadrilateral, a triangle and a beam of each kind of section; a second row in each table of
// materials, thicknesses and sections that nothing uses.
ModelText MakeModel() {
  ModelText text;
  text.materials = {{2.06e11, 0.3, 7850.0}, {7e10, 0.33, 2700.0}};
  text.thicknesses = {0.01, 0.02};
  text.tSections = {{0.3, 0.01, 0.1, 0.012}, {0.4, 0.01, 0.1, 0.012}};
  text.lSections = {{0.2, 0.01, 0.1, 0.01}, {0.4, 0.01, 0.1, 0.012}};
  text.cSections = {{0.1, 0.005}, {0.2, 0.01}};
  text.nodes = {{0, 0, 0}, {1, 0, 0}, {1.1, 1.2, 0}, {0, 1, 0}, {2, 0, 0.5}, {3, 1, 1}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.shells3 = {{{1, 4, 2}, 0, 0}};
  text.beams.resize(3);
  for (std::size_t b = 0; b < 3; ++b) {
    text.beams[b].node1 = static_cast<int>(b) + 2;
    text.beams[b].node2 = 5;
    text.beams[b].orientation = {0.1, 0.2, 1.0};
    text.beams[b].BeamSecType = static_cast<int>(b);
    text.beams[b].BeamSecOz = 0.05;
  }
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {0, 0, 1, 0, 0, 0}}};
  text.forces = {{2, {1, 2, 3, 4, 5, 6}}};
  text.shell4Loads = {{0, {1, 2, 3}}};
  text.shell3Loads = {{0, {1, 2, 3}}};
  text.beamLoads = {{0, 1, 2}};
  return text;
}

struct Change {
  std::string name;
  std::function<void(ModelText&)> make;
};

bool AreSame(const ModelText& a, const ModelText& b) {
  korvex::Model first, second;
  korvex::ReadInputText(WriteModel(a), first);
  korvex::ReadInputText(WriteModel(b), second);
  const bool isSame = HaveSameStiffness(first, second);
  EXPECT_EQ(HaveSameStiffness(second, first), isSame);
  return isSame;
}

bool HaveSameMatrix(const ModelText& a, const ModelText& b) {
  korvex::Model first, second;
  korvex::test::AssembleModel(a, first);
  korvex::test::AssembleModel(b, second);
  return first.Stiffness.ColumnHeights == second.Stiffness.ColumnHeights &&
         korvex::test::SameBits(first.Stiffness.Values, second.Stiffness.Values);
}

// The next row, or a little more: not the last digit, which may be rounded off in a section's area.
template <typename Number>
void Nudge(Number& number) {
  if constexpr (std::is_integral_v<Number>) {
    ++number;
  } else {
    number *= 1.0 + 1e-12;
  }
}

// Changes of all fields that the stiffness is made of.
std::vector<Change> ListChanges() {
  std::vector<Change> changes = {
      {"E", [](ModelText& t) { Nudge(t.materials[0][0]); }},
      {"Mu", [](ModelText& t) { Nudge(t.materials[0][1]); }},
      {"thickness", [](ModelText& t) { Nudge(t.thicknesses[0]); }},
      {"node 2 z from 0 to 1e-9", [](ModelText& t) { t.nodes[2][2] = 1e-9; }},
      {"shell material", [](ModelText& t) { t.shells4[0].material = 1; }},
      {"shell thickness", [](ModelText& t) { t.shells4[0].thickness = 1; }},
      {"triangle material", [](ModelText& t) { t.shells3[0].material = 1; }},
      {"triangle thickness", [](ModelText& t) { t.shells3[0].thickness = 1; }},
      {"shell begins elsewhere",
       [](ModelText& t) {
         t.shells4[0].nodes = {1, 2, 3, 0};
       }},
      {"triangle begins elsewhere",
       [](ModelText& t) {
         t.shells3[0].nodes = {4, 2, 1};
       }},
      {"one more shell", [](ModelText& t) { t.shells4.push_back(t.shells4[0]); }},
      {"one more beam", [](ModelText& t) { t.beams.push_back(t.beams[0]); }},
      {"one shell less", [](ModelText& t) { t.shells4.clear(), t.shell4Loads.clear(); }},
      {"one more node",
       [](ModelText& t) {
         t.nodes.push_back({9, 9, 9});
       }},
      {"mirrored L", [](ModelText& t) { t.beams[1].BeamSecMirrored = 1; }},
      {"one more held dof", [](ModelText& t) { t.restraints[1].fixed[4] = 1; }},
      {"one held dof less", [](ModelText& t) { t.restraints[0].fixed[5] = 0; }},
      {"a flag other than 1", [](ModelText& t) { t.restraints[0].fixed[5] = 2; }},
      {"restraint of another node", [](ModelText& t) { t.restraints[1].node = 4; }},
  };
  for (std::size_t i = 0; i < 4; ++i) {
    changes.push_back({"T", [i](ModelText& t) { Nudge(t.tSections[0][i]); }});
    changes.push_back({"L", [i](ModelText& t) { Nudge(t.lSections[0][i]); }});
  }
  for (std::size_t i = 0; i < 2; ++i) {
    changes.push_back({"C", [i](ModelText& t) { Nudge(t.cSections[0][i]); }});
  }
  for (std::size_t b = 0; b < 3; ++b) {
    changes.push_back({"material of beam", [b](ModelText& t) { t.beams[b].material = 1; }});
    changes.push_back({"section of beam", [b](ModelText& t) { t.beams[b].BeamSecIndex = 1; }});
    changes.push_back({"offset", [b](ModelText& t) { Nudge(t.beams[b].BeamSecOz); }});
    changes.push_back({"node of beam", [b](ModelText& t) { t.beams[b].node1 = 0; }});
    for (std::size_t i = 0; i < 3; ++i) {
      changes.push_back({"orientation", [=](ModelText& t) { t.beams[b].orientation[i] += 0.01; }});
    }
  }
  for (std::size_t n = 1; n < 6; ++n) {
    changes.push_back({"x of a node", [n](ModelText& t) { t.nodes[n][0] += 1e-12; }});
    changes.push_back({"y of a node", [n](ModelText& t) { t.nodes[n][1] += 1e-12; }});
    changes.push_back({"z of a node", [n](ModelText& t) { t.nodes[n][2] += 1e-12; }});
  }
  return changes;
}

TEST(SameStiffness, SeesEveryChangeOfTheStructure) {
  const ModelText model = MakeModel();
  ASSERT_TRUE(AreSame(model, model));
  int count = 0;
  for (const Change& change : ListChanges()) {
    ModelText changed = model;
    change.make(changed);
    EXPECT_FALSE(AreSame(model, changed)) << change.name << ", number " << count;
    // The changes are ones of the matrix indeed.
    EXPECT_FALSE(HaveSameMatrix(model, changed)) << change.name << ", number " << count;
    ++count;
  }
}

TEST(SameStiffness, TakesNoNoticeOfLoadsAndUnusedRows) {
  const std::vector<Change> changes = {
      {"density", [](ModelText& t) { t.materials[0][2] = 1.0; }},
      {"unused material", [](ModelText& t) { t.materials[1][0] = 1.0; }},
      {"one more material",
       [](ModelText& t) {
         t.materials.push_back({1, 0, 0});
       }},
      {"unused thickness", [](ModelText& t) { t.thicknesses[1] = 1.0; }},
      {"unused sections",
       [](ModelText& t) { t.tSections[1][0] = t.lSections[1][0] = t.cSections[1][0] = 7.0; }},
      {"force", [](ModelText& t) { t.forces[0].components[2] = 9.0; }},
      {"prescribed displacement",
       [](ModelText& t) {
         t.forces = {{0, {1e18, 0, 0, 0, 0, 0}}};
       }},
      {"no loads",
       [](ModelText& t) {
         t.forces.clear();
         t.shell4Loads.clear();
         t.shell3Loads.clear();
         t.beamLoads.clear();
       }},
      {"load on a triangle",
       [](ModelText& t) {
         t.shell3Loads[0].q = {9, 9, 9};
       }},
      {"a dof held twice", [](ModelText& t) { t.restraints.push_back(t.restraints[0]); }},
      {"order of restraints", [](ModelText& t) { std::swap(t.restraints[0], t.restraints[1]); }},
      {"flags that do not hold", [](ModelText& t) { t.restraints[1].fixed = {7, 0, 1, -1, 2, 0}; }},
      {"a row that holds nothing",
       [](ModelText& t) {
         t.restraints.push_back({4, {0, 0, 0, 0, 0, 0}});
       }},
  };
  const ModelText model = MakeModel();
  for (const Change& change : changes) {
    ModelText changed = model;
    change.make(changed);
    EXPECT_TRUE(AreSame(model, changed)) << change.name;
    EXPECT_TRUE(HaveSameMatrix(model, changed)) << change.name;
  }
}

// -0 and +0 are different bits.
TEST(SameStiffness, ComparesBits) {
  ModelText model = MakeModel(), changed = model;
  changed.nodes[0][0] = -0.0;
  EXPECT_FALSE(AreSame(model, changed));
}

// Results that a record already holds do not matter.
TEST(SameStiffness, TakesNoNoticeOfStresses) {
  korvex::Model solved, read;
  korvex::test::SolveModel(MakeModel(), solved);
  korvex::RecoverShellStresses(solved);
  korvex::ReadInputText(WriteModel(MakeModel()), read);
  EXPECT_TRUE(HaveSameStiffness(solved, read));
}

TEST(SameStiffness, AModelThatHoldsNoNodeIsLikeNone) {
  for (const int node : {-1, 6}) {
    ModelText model = MakeModel();
    model.restraints.push_back({node, {0, 0, 0, 0, 0, 1}});
    EXPECT_FALSE(AreSame(model, model));
    model.restraints.back().fixed[5] = 0;  // then the solver does not look at the node
    EXPECT_TRUE(AreSame(model, model));
  }
}

TEST(SameStiffness, OfRandomModels) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    const ModelText model = MakeGoodModel(seed);
    ModelText moved = model, loaded = model;
    for (std::array<double, 3>& material : moved.materials) Nudge(material[0]);
    loaded.forces.push_back({0, {1, 2, 3, 4, 5, 6}});
    EXPECT_FALSE(AreSame(model, moved)) << seed;
    EXPECT_TRUE(AreSame(model, loaded)) << seed;
    EXPECT_FALSE(AreSame(model, MakeGoodModel(seed + 1))) << seed;
  }
}

}  // namespace
}  // namespace kvx::test
