// The solved model: the bits of a run without its files, what is held, and what is prescribed.
#include "audit/solved_model.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/same_bits.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::test::Equation;
using korvex::test::ExpectStop;
using korvex::test::ModelText;
using korvex::test::SameBits;
using korvex::test::SingleLoad;
using korvex::test::WriteModel;

// Two beams in a row along x, the first node clamped.
ModelText Cantilever() {
  ModelText text;
  text.materials = {{2.06e11, 0.3, 7850.0}};
  text.tSections = {{0.3, 0.01, 0.1, 0.012}};
  text.nodes = {{0, 0, 0}, {2, 0, 0}, {4, 0, 0}};
  text.beams.resize(2);
  text.beams[1].node1 = 1;
  text.beams[1].node2 = 2;
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{2, SingleLoad(2, -1000.0)}};
  text.beamLoads = {{0, -500.0, -500.0}};
  return text;
}

TEST(SolvedModel, HasTheBitsOfARun) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    const ModelText text = MakeGoodModel(seed);
    korvex::Model run, before;
    korvex::test::SolveModel(text, run);
    korvex::test::AssembleModel(text, before);
    SolvedModel solved;
    SolveInMemory(WriteModel(text), {}, solved);
    EXPECT_TRUE(SameBits(solved.model.Displacements, run.Displacements)) << "seed " << seed;
    EXPECT_TRUE(SameBits(solved.model.LoadVector, before.LoadVector)) << "seed " << seed;
    EXPECT_TRUE(solved.model.Stiffness.Values.empty());
    EXPECT_TRUE(solved.prescribed.empty());
  }
}

TEST(SolvedModel, IsTheSameFromItsDisplacements) {
  const std::string text = WriteModel(MakeGoodModel(3));
  SolvedModel solved, read;
  SolveInMemory(text, {}, solved);
  CompleteFromDisplacements(text, solved.model.Displacements, read);
  EXPECT_EQ(read.file, solved.file);
  EXPECT_EQ(read.isHeld, solved.isHeld);
  EXPECT_EQ(read.model.NEQ, solved.model.NEQ);
  EXPECT_TRUE(SameBits(read.model.LoadVector, solved.model.LoadVector));
  EXPECT_TRUE(SameBits(read.model.Displacements, solved.model.Displacements));
  EXPECT_EQ(read.model.BeamElements.size(), solved.model.BeamElements.size());
  EXPECT_EQ(read.model.Shell4Elements.size(), solved.model.Shell4Elements.size());
}

TEST(SolvedModel, WritesNoFile) {
  const korvex::test::WorkingFolder folder;
  SolvedModel solved;
  SolveInMemory(WriteModel(Cantilever()), {}, solved);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(SolvedModel, ReportsProgressAndCanBeInterrupted) {
  const std::string text = WriteModel(Cantilever());
  double last = 0.0;
  SolvedModel solved;
  SolveInMemory(
      text, [&](double share) { last = share; }, solved);
  EXPECT_EQ(last, 1.0);
  struct Interruption {};
  EXPECT_THROW(SolveInMemory(
                   text, [](double) { throw Interruption(); }, solved),
               Interruption);
}

// The test values of the hash's authors.
TEST(SolvedModel, KnowsTheModelFileBySizeAndHash) {
  EXPECT_EQ(HashBytes(""), 0xcbf29ce484222325U);
  EXPECT_EQ(HashBytes("a"), 0xaf63dc4c8601ec8cU);
  EXPECT_EQ(HashBytes("foobar"), 0x85944171f73967e8U);
  const ModelFileId id = IdentifyModelFile("foobar");
  EXPECT_EQ(id.size, 6U);
  EXPECT_EQ(id.hash, HashBytes("foobar"));
  EXPECT_NE(id, IdentifyModelFile("foobaz"));
}

// A flag other than 1 leaves free, and a later row cannot release.
TEST(SolvedModel, MarksHeldDofs) {
  ModelText text = Cantilever();
  text.restraints.push_back({2, {0, 2, 1, 0, 0, -1}});
  text.restraints.push_back({0, {0, 0, 0, 0, 0, 0}});
  SolvedModel solved;
  SolveInMemory(WriteModel(text), {}, solved);
  std::vector<std::uint8_t> expected(18, 0);
  for (std::size_t d = 0; d < 6; ++d) expected[d] = 1;
  expected[Equation(2, korvex::test::Uz)] = 1;
  EXPECT_EQ(solved.isHeld, expected);
}

// Node 2 is held in z and about x and y; the extent is 4. Its bounds are 4e-9 for z and 1e-6 for
// rotations.
TEST(SolvedModel, SeparatesPrescribedDisplacementsFromLoads) {
  ModelText text = Cantilever();
  text.restraints.push_back({2, {0, 0, 1, 1, 1, 0}});
  text.forces = {{2, {3e12, 0, -2.5e17, 1e13, 7e13, 0}},  // a free force; settles by 2.5e-3; loads
                 {2, {0, 0, -80.0, 0, 2e16, 0}},          // a load; turns by 2e-4
                 {2, {0, 0, 3.9e11, 0, 0, 0}},            // just no settlement
                 {2, {0, 0, 4.1e11, 0, 0, 0}}};           // just one
  SolvedModel solved;
  SolveInMemory(WriteModel(text), {}, solved);
  ASSERT_EQ(solved.prescribed.size(), 3U);
  EXPECT_EQ(solved.prescribed[0].row, 0);
  EXPECT_EQ(solved.prescribed[0].node, 2);
  EXPECT_EQ(solved.prescribed[0].dof, 2);
  EXPECT_DOUBLE_EQ(solved.prescribed[0].value, -2.5e-3);
  EXPECT_EQ(solved.prescribed[1].row, 1);
  EXPECT_EQ(solved.prescribed[1].dof, 4);
  EXPECT_DOUBLE_EQ(solved.prescribed[1].value, 2e-4);
  EXPECT_EQ(solved.prescribed[2].row, 3);
  // The loads that remain; the line load acts on nodes 0 and 1 alone.
  const double* load = &solved.model.LoadVector[12];
  EXPECT_EQ(load[0], 3e12);
  EXPECT_EQ(load[2], -80.0 + 3.9e11);
  EXPECT_EQ(load[3], 1e13);
  EXPECT_EQ(load[4], 7e13);
  // The tables are as they were.
  EXPECT_EQ(solved.model.Tables.NodalForces[0].components[2], -2.5e17);
}

TEST(SolvedModel, StopsWhereARunStops) {
  SolvedModel solved;
  ModelText text = Cantilever();
  text.restraints[0].node = 7;
  ExpectStop([&] { SolveInMemory(WriteModel(text), {}, solved); },
             "Restraint 0 refers to node 7; there are 3 nodal points.");
  text = Cantilever();
  text.forces[0].node = -1;
  ExpectStop([&] { SolveInMemory(WriteModel(text), {}, solved); },
             "Force 0 refers to node -1; there are 3 nodal points.");
  ExpectStop([&] { CompleteFromDisplacements(WriteModel(text), std::vector<double>(18), solved); },
             "Force 0 refers to node -1; there are 3 nodal points.");
  text = Cantilever();
  text.beamLoads[0].element = 9;
  const std::string wrong =
      "Distributed load on beam elements 0 refers to element 9; there are 2 beam elements.";
  ExpectStop([&] { SolveInMemory(WriteModel(text), {}, solved); }, wrong);
  ExpectStop([&] { CompleteFromDisplacements(WriteModel(text), std::vector<double>(18), solved); },
             wrong);
}

TEST(SolvedModel, StopsAtAnotherNumberOfDisplacements) {
  SolvedModel solved;
  ExpectStop(
      [&] { CompleteFromDisplacements(WriteModel(Cantilever()), std::vector<double>(17), solved); },
      "There are 17 displacements for 3 nodal points, which need six each.");
}

// A record that did not come from the reader.
TEST(SolvedModel, StopsAtElementsWithoutTheirNodes) {
  SolvedModel solved;
  SolveInMemory(WriteModel(Cantilever()), {}, solved);
  solved.model.Tables.BeamNodes[3] = 3;
  ExpectStop([&] { CompleteSolvedModel(solved); },
             "Beam element 1 refers to node 3; there are 3 nodal points.");
  solved.model.Tables.BeamNodes.pop_back();
  ExpectStop([&] { CompleteSolvedModel(solved); },
             "The numbers of nodes and of elements do not fit: Beam element.");
}

TEST(SolvedModel, AcceptsAnEmptyModel) {
  SolvedModel solved;
  SolveInMemory(WriteModel(ModelText()), {}, solved);
  EXPECT_EQ(solved.model.NEQ, 0);
  EXPECT_TRUE(solved.isHeld.empty());
}

}  // namespace
}  // namespace kvx::test
