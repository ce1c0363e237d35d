// Detail models of single beams: the bits of a run that makes those of all beams.
#include "audit/beam_details.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "audit/beam_models.h"
#include "audit/solved_model.h"
#include "beamshell/generate_beam_shells.h"
#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "support/same_bits.h"
#include "support/solved_examples.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::test::ModelText;

std::vector<std::int32_t> AllBeams(const Model& model) {
  std::vector<std::int32_t> rows(model.BeamElements.size());
  std::iota(rows.begin(), rows.end(), 0);
  return rows;
}

// All beams, one by one, against the detail models of all. Returns how many there were.
std::size_t ExpectBitsOfARun(const std::string& text) {
  SolvedModel solved;
  SolveInMemory(text, {}, solved);
  Model& model = solved.model;
  std::vector<DetailStress> found;
  FindDetailStresses(model, AllBeams(model), {}, found);
  korvex::GenerateBeamShells(model);
  for (std::size_t b = 0; b < found.size(); ++b) {
    const DetailStress expected = FindDetailStress(model.BeamShellModels[b]);
    EXPECT_EQ(found[b].vonMises, expected.vonMises) << "beam " << b;
    EXPECT_EQ(found[b].steps, expected.steps);
    EXPECT_EQ(found[b].plate, expected.plate);
    EXPECT_EQ(found[b].point, expected.point);
    EXPECT_EQ(found[b].upper, expected.upper);
  }
  return found.size();
}

TEST(BeamDetails, HaveTheBitsOfARun) {
  std::size_t beams = 0;
  for (const std::string& name : ListSolvedExamples()) {
    SCOPED_TRACE(name);
    beams +=
        ExpectBitsOfARun(korvex::test::ReadFile(KORVEX_EXAMPLES "/" + name + "/fem_solving.txt"));
  }
  EXPECT_GE(beams, 228U);  // of stiffened-panel alone
  beams = 0;
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(12); ++seed) {
    SCOPED_TRACE(seed);
    beams += ExpectBitsOfARun(WriteModel(MakeGoodModel(seed)));
  }
  EXPECT_GT(beams, korvex::test::Repeats(100));
}

// Beams drawn over each other: of the same ends, the other way round, and one that ends at the
// middle of another. Each counts in the averages of the others.
TEST(BeamDetails, SeeTheBeamsThatLieOnThem) {
  ModelText text = BuildStraight({0.0, 1000.0, 2000.0, 3000.0}, TubeSection());
  ModelText::Beam beam = text.beams[0];
  for (const auto& [a, b] : {std::pair{0, 2}, std::pair{0, 2}, std::pair{2, 0}, std::pair{1, 3}}) {
    beam.node1 = a;
    beam.node2 = b;
    text.beams.push_back(beam);
  }
  text.forces = {{3, {1e3, 2e3, -3e3, 1e5, 2e5, 0}}, {1, {0, 5e3, 0, 0, 0, 0}}};
  EXPECT_EQ(ExpectBitsOfARun(WriteModel(text)), 7U);

  // They do count: alone, a beam has another stress.
  SolvedModel solved;
  SolveInMemory(WriteModel(text), {}, solved);
  std::vector<DetailStress> together, alone;
  FindDetailStresses(solved.model, {3}, {}, together);
  Model single = solved.model;
  single.Tables.NELEM_B = 1;
  single.BeamElements = {solved.model.BeamElements[3]};
  single.Tables.BeamSectionRefs = {solved.model.Tables.BeamSectionRefs[3]};
  single.Tables.BeamNodes = {0, 2};
  korvex::GenerateBeamShells(single);
  EXPECT_NE(FindDetailStress(single.BeamShellModels[0]).vonMises, together[0].vonMises);
}

TEST(BeamDetails, WithoutADetailModel) {
  ModelText text = BuildStraight({0.0, 2000.0, 4000.0}, TeeSection());
  text.forces = {{2, {0, 0, -1e3, 0, 0, 0}}};
  SolvedModel solved;
  SolveInMemory(WriteModel(text), {}, solved);
  solved.model.Tables.BeamSectionRefs[1].BeamSecType = 7;
  std::vector<DetailStress> found;
  std::vector<std::size_t> calls;
  FindDetailStresses(
      solved.model, {1, 0}, [&](std::size_t i) { calls.push_back(i); }, found);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_TRUE(std::isnan(found[0].vonMises));
  EXPECT_EQ(found[0].steps, 0);
  EXPECT_GT(found[1].vonMises, 0.0);
  EXPECT_EQ(calls, (std::vector<std::size_t>{0, 1}));
  for (const std::int32_t row : {-1, 2}) {
    EXPECT_THROW(FindDetailStresses(solved.model, {row}, {}, found), korvex::Stop);
  }
}

}  // namespace
}  // namespace kvx::test
