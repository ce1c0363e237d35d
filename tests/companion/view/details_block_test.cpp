// The block of detail models against the bytes of Korvex_AverageStrs.txt.
#include "view/details_block.h"

#include <gtest/gtest.h>

#include <cmath>

#include "audit/beam_models.h"
#include "beamshell/average_stress_file.h"
#include "support/expect_stop.h"
#include "support/page_columns.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"
#include "support/whole_results.h"

namespace kvx::test {
namespace {

using Words = std::vector<std::string>;

PageBlock MakeBlock(const korvex::Model& model) {
  DetailModels details;
  CollectDetails(model, details);
  PageBlock block;
  AddDetails(details, block);
  return block;
}

// The block's columns, numbers as the file shows them.
struct Shown {
  Words coordinates, displacements, upper, lower, upperMises, lowerMises;
  std::vector<std::int32_t> shells, beams, rows;
};

Words ShowAll(const std::vector<double>& numbers) {
  Words words;
  for (const double number : numbers) words.push_back(ShowNumber(number));
  return words;
}

Shown Show(const PageBlock& block) {
  Shown shown;
  shown.coordinates = ShowAll(ReadDoubles(block, "coordinates"));
  shown.displacements = ShowAll(ReadDecimals(block, "displacements"));
  shown.upper = ShowAll(ReadDecimals(block, "stresses.upper"));
  shown.lower = ShowAll(ReadDecimals(block, "stresses.lower"));
  shown.upperMises = ShowAll(ReadDecimals(block, "stresses.upperMises"));
  shown.lowerMises = ShowAll(ReadDecimals(block, "stresses.lowerMises"));
  shown.shells = ReadIntegers(block, "shells");
  shown.beams = ReadIntegers(block, "beams");
  shown.rows = ReadIntegers(block, "stresses.rows");
  return shown;
}

// Where the file and the block have been read to.
struct Reading {
  std::size_t word = 0, node = 0, shell = 0;
};

std::size_t TakeCount(const Words& words, const char* key, Reading& at) {
  EXPECT_EQ(words.at(at.word), key);
  const auto count = static_cast<std::size_t>(std::stoul(words.at(at.word + 1)));
  at.word += 2;
  return count;
}

// "NPOIN=", three coordinates a line, then six displacements a line; the block has neither the
// first nor the last node, and translations alone. Returns how many nodes it has.
std::size_t CompareNodes(const Words& words, const Shown& shown, Reading& at) {
  const std::size_t nodes = TakeCount(words, "NPOIN", at);
  for (std::size_t n = 1; n + 1 < nodes; ++n) {
    for (std::size_t i = 0; i < 3; ++i) {
      const std::size_t mine = 3 * (at.node + n - 1) + i;
      EXPECT_EQ(shown.coordinates.at(mine), words.at(at.word + 3 * n + i));
      EXPECT_EQ(shown.displacements.at(mine), words.at(at.word + 3 * nodes + 6 * n + i));
    }
  }
  at.word += 9 * nodes;
  return nodes - 2;
}

// "NELEM=", then of each shell its nodes and of each corner two lines of seven numbers.
void CompareShells(const Words& words, std::int32_t beam, const Shown& shown, Reading& at) {
  const std::size_t shells = TakeCount(words, "NELEM", at);
  for (std::size_t e = 0; e < shells; ++e, ++at.shell) {
    EXPECT_EQ(shown.beams.at(at.shell), beam);
    for (std::size_t k = 0; k < 4; ++k) {
      const auto first = static_cast<std::int32_t>(at.node);
      EXPECT_EQ(shown.shells.at(4 * at.shell + k), std::stoi(words.at(at.word + k)) - 1 + first);
      const auto row = static_cast<std::size_t>(shown.rows.at(4 * at.shell + k));
      const std::size_t line = at.word + 4 + 14 * k;
      for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(shown.upper.at(6 * row + i), words.at(line + i));
        EXPECT_EQ(shown.lower.at(6 * row + i), words.at(line + 7 + i));
      }
      EXPECT_EQ(shown.upperMises.at(row), words.at(line + 6));
      EXPECT_EQ(shown.lowerMises.at(row), words.at(line + 13));
    }
    at.word += 60;
  }
}

Words ReadFileOf(const korvex::Model& model) {
  const korvex::test::TempFolder folder;
  const std::string file = (folder.Path() / "average.txt").string();
  EXPECT_TRUE(korvex::WriteAverageStressFile(file, model));
  return ReadWords(file);
}

TEST(DetailsBlock, NumbersAreThoseOfTheFile) {
  std::size_t beams = 0;
  for (const NamedModel& model : ListSolvedModels()) {
    const Words words = ReadFileOf(model.solved.model);
    const Shown shown = Show(MakeBlock(model.solved.model));
    Reading at;
    while (at.word < words.size() && words[at.word] != "NELEM_B") ++at.word;
    const std::size_t count = TakeCount(words, "NELEM_B", at);
    for (std::size_t b = 0; b < count; ++b) {
      ASSERT_EQ(words.at(at.word), "BEI");
      ASSERT_EQ(words.at(at.word + 1), std::to_string(b));
      at.word += 10;  // its number and end points: BEI= b SND(x,y,z) END(x,y,z)
      const std::size_t nodes = CompareNodes(words, shown, at);
      CompareShells(words, static_cast<std::int32_t>(b), shown, at);
      at.node += nodes;
      ASSERT_FALSE(HasFailure()) << model.name << " beam " << b;
    }
    EXPECT_EQ(at.word, words.size()) << model.name;
    EXPECT_EQ(3 * at.node, shown.coordinates.size()) << model.name;
    EXPECT_EQ(at.shell, shown.beams.size()) << model.name;
    beams += count;
  }
  EXPECT_GT(beams, 100U);
}

// A T of 18 steps has 19 stations of 6 points. Where web and flange meet there are three rows,
// since the two halves of the flange have opposite normals; at the other five points there is one.
TEST(DetailsBlock, CornersOfAPlateShareRows) {
  korvex::test::ModelText text = BuildStraight({0.0, 2000.0}, TeeSection());
  text.forces = {{1, {1e5, 2e3, 3e4, 4e6, 5e6, 6e6}}};
  DetailModels details;
  CollectDetails(SolveWhole(korvex::test::TurnModel(text)).model, details);
  EXPECT_EQ(details.coordinates.size(), 3U * 19U * 6U);
  EXPECT_EQ(details.beams.size(), 18U * 5U);
  EXPECT_EQ(details.stresses.upperMises.size(), 19U * 8U);
}

// Of the first of the beams that remain, the nodes follow those of the beam before it.
TEST(DetailsBlock, BeamsWithoutADetailModelAreLeftOut) {
  korvex::Model model = ListSolvedModels()[1].solved.model;
  ASSERT_GT(model.BeamShellModels.size(), 2U);
  DetailModels all, some;
  CollectDetails(model, all);
  const std::size_t nodes = model.BeamShellModels[1].NodeCoords.size() - 2;
  const std::size_t shells = model.BeamShellModels[1].Shells.size();
  const std::size_t first = model.BeamShellModels[0].Shells.size();
  model.BeamShellModels[1] = {};
  CollectDetails(model, some);
  EXPECT_EQ(some.coordinates.size(), all.coordinates.size() - 3 * nodes);
  ASSERT_EQ(some.beams.size(), all.beams.size() - shells);
  EXPECT_EQ(some.beams[first - 1], 0);
  EXPECT_EQ(some.beams[first], 2);
  EXPECT_EQ(some.shells[4 * first],
            all.shells[4 * (first + shells)] - static_cast<std::int32_t>(nodes));
}

TEST(DetailsBlock, ModelWithoutDetailModelsHasEmptyColumns) {
  korvex::Model model = ListSolvedModels()[1].solved.model;
  model.BeamShellModels.clear();
  const PageBlock block = MakeBlock(model);
  EXPECT_TRUE(HasColumn(block, "coordinates"));
  EXPECT_TRUE(HasColumn(block, "stresses.rows"));
  EXPECT_TRUE(ReadIntegers(block, "shells").empty());
}

TEST(DetailsBlock, NumbersThatAreNoneStay) {
  korvex::Model model = ListSolvedModels()[1].solved.model;
  korvex::BeamShellModel& detail = model.BeamShellModels[0];
  detail.Displacements[6] = std::nan("");
  detail.Shells[0].AvgStressTop[0][2] = INFINITY;
  const PageBlock block = MakeBlock(model);
  EXPECT_TRUE(std::isnan(ReadDecimals(block, "displacements")[0]));
  const auto row = static_cast<std::size_t>(ReadIntegers(block, "stresses.rows")[0]);
  EXPECT_EQ(ReadDecimals(block, "stresses.upper")[6 * row + 2], INFINITY);
}

TEST(DetailsBlock, DetailModelThatIsNotWholeIsRefused) {
  korvex::Model model = ListSolvedModels()[1].solved.model;
  model.BeamShellModels[1].ShellNodes.back() = 0;
  DetailModels details;
  const auto collect = [&] { CollectDetails(model, details); };
  korvex::test::ExpectStop(collect, "The detail model of beam 1 is not whole.");
  model.BeamShellModels[1].ShellNodes.pop_back();
  korvex::test::ExpectStop(collect, "The detail model of beam 1 is not whole.");
}

}  // namespace
}  // namespace kvx::test
