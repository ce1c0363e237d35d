// The run with a memory that refuses, at each of its requests in turn: it ends with a whole
// sentence and the status 1, never by a signal.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>

#include "deck/model_tables.h"
#include "support/model_text.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

// A plate and a tube beside it: every stage has work.
std::string MakeModel() {
  ModelText text;
  text.materials = {{2e11, 0.3, 0}};
  text.thicknesses = {0.01};
  text.cSections = {{0.1, 0.01}};
  text.nodes = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.beams.resize(1);
  text.beams[0].BeamSecType = BeamSecTypeC;
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{2, {0, 0, -1, 0, 0, 0}}};
  return WriteModel(text);
}

// Runs the model with a memory that grants `blocks` requests and then refuses `refusals`.
ProgramRun RunWithMemory(int blocks, int refusals, const TempFolder& folder) {
  setenv("KORVEX_BLOCKS", std::to_string(blocks).c_str(), 1);
  setenv("KORVEX_REFUSALS", std::to_string(refusals).c_str(), 1);
  ProgramRun run = RunProgram(KORVEX_FAILING_MEMORY_PROGRAM, folder.Path());
  unsetenv("KORVEX_BLOCKS");
  unsetenv("KORVEX_REFUSALS");
  return run;
}

constexpr int ForEver = 1000000;
constexpr int BlocksAtMost = 1000;  // the run takes some hundred

// No memory is left for a text with a name in it.
TEST(FailingMemory, ThatRefusesAllFromARequestOnEndsTheRunWithASentence) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", MakeModel());
  int blocks = 0;
  for (;; ++blocks) {
    ASSERT_LT(blocks, BlocksAtMost);
    const ProgramRun run = RunWithMemory(blocks, ForEver, folder);
    if (run.exitStatus == 0) break;
    ASSERT_EQ(run.exitStatus, 1) << blocks << ": " << run.err;
    EXPECT_EQ(run.notices, std::vector<std::string>{"Warning!\nNot enough memory."}) << blocks;
  }
  EXPECT_GT(blocks, 20);
}

// Memory is there again for the notice, which names what was to be allocated.
TEST(FailingMemory, ThatRefusesOneRequestIsNamed) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", MakeModel());
  const int complete = 400;  // more than the run takes
  EXPECT_EQ(RunWithMemory(complete, ForEver, folder).exitStatus, 0);
  std::set<std::string> named;
  for (int blocks = 0; blocks < complete; ++blocks) {
    const ProgramRun run = RunWithMemory(blocks, 1, folder);
    ASSERT_TRUE(run.exitStatus == 0 || run.exitStatus == 1) << blocks << ": " << run.err;
    for (const std::string& text : run.notices) {
      if (text.find("Not enough memory for ") == std::string::npos) continue;
      EXPECT_EQ(text.substr(text.size() - 4), " GB.") << text;
      named.insert(text);
    }
  }
  EXPECT_GT(named.size(), 10U);
  const auto names = [&](const std::string& what) {
    return std::any_of(named.begin(), named.end(), [&](const std::string& text) {
      return text.find(what) != std::string::npos;
    });
  };
  EXPECT_TRUE(names("the global stiffness matrix"));
}

}  // namespace
}  // namespace korvex::test
