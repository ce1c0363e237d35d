// The block of results against the bytes of the result files, the solved model and other audits.
#include "view/results_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

#include "audit/maxima.h"
#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "results/average_stresses.h"
#include "results/node_displacements.h"
#include "results/shell_stresses.h"
#include "results/stress_files.h"
#include "support/page_columns.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"
#include "support/whole_results.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using Words = std::vector<std::string>;

PageBlock MakeBlock(const SolvedModel& solved) {
  CaseResults results;
  CollectResults(solved, results);
  PageBlock block;
  AddResults(results, block);
  return block;
}

Words ShowAll(const std::vector<double>& numbers) {
  Words words;
  for (const double number : numbers) words.push_back(ShowNumber(number));
  return words;
}

// The titles, then of each node its number and six displacements.
TEST(ResultsBlock, DisplacementsAreThoseOfTheFile) {
  for (const NamedModel& model : ListSolvedModels()) {
    const korvex::test::TempFolder folder;
    const std::string file = (folder.Path() / "displacements.txt").string();
    ASSERT_TRUE(korvex::WriteNodeDisplacements(file, model.solved.model));
    const Words words = ReadWords(file);
    const Words shown = ShowAll(ReadDecimals(MakeBlock(model.solved), "displacements"));
    ASSERT_EQ(words.size(), 7 + shown.size() / 6 * 7) << model.name;
    for (std::size_t i = 0; i < shown.size(); ++i) {
      ASSERT_EQ(shown[i], words[7 + i / 6 * 7 + 1 + i % 6]) << model.name << ' ' << i;
    }
  }
}

// An element's lines: "Four-nodes element: 7", eight titles; then two lines for each corner: node,
// six components and the von Mises stress of the upper and of the lower face.
TEST(ResultsBlock, StressesAreThoseOfTheFile) {
  for (const NamedModel& model : ListSolvedModels()) {
    const korvex::test::TempFolder folder;
    const std::string file = (folder.Path() / "stresses.txt").string();
    ASSERT_TRUE(korvex::WriteAverageNodeStresses(file, model.solved.model));
    const Words words = ReadWords(file);
    const PageBlock block = MakeBlock(model.solved);
    const std::vector<std::int32_t> rows = ReadIntegers(block, "shells.rows");
    const Words upper = ShowAll(ReadDecimals(block, "shells.upper"));
    const Words lower = ShowAll(ReadDecimals(block, "shells.lower"));
    const Words upperMises = ShowAll(ReadDecimals(block, "shells.upperMises"));
    const Words lowerMises = ShowAll(ReadDecimals(block, "shells.lowerMises"));
    std::size_t corner = 0;
    for (std::size_t at = 0; at < words.size();) {
      const std::size_t corners = words[at] == "Four-nodes" ? 4 : 3;
      at += 11;
      for (std::size_t k = 0; k < corners; ++k, ++corner, at += 16) {
        const auto row = static_cast<std::size_t>(rows.at(corner));
        for (std::size_t i = 0; i < 6; ++i) {
          ASSERT_EQ(upper.at(6 * row + i), words.at(at + 1 + i)) << model.name << ' ' << corner;
          ASSERT_EQ(lower.at(6 * row + i), words.at(at + 9 + i)) << model.name << ' ' << corner;
        }
        ASSERT_EQ(upperMises.at(row), words.at(at + 7)) << model.name << ' ' << corner;
        ASSERT_EQ(lowerMises.at(row), words.at(at + 15)) << model.name << ' ' << corner;
      }
    }
    EXPECT_EQ(corner, rows.size()) << model.name;
  }
}

TEST(ResultsBlock, ReactionsAreThoseOfTheAudit) {
  for (const NamedModel& model : ListSolvedModels()) {
    Reactions expected;
    ComputeReactions(model.solved, expected);
    const PageBlock block = MakeBlock(model.solved);
    const std::vector<std::int32_t> nodes = ReadIntegers(block, "reactionNodes");
    const Words shown = ShowAll(ReadDecimals(block, "reactions"));
    ASSERT_FALSE(nodes.empty()) << model.name;
    ASSERT_EQ(nodes.size(), expected.supports.size()) << model.name;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      const Support& support = expected.supports[i];
      EXPECT_EQ(nodes[i], support.node) << model.name;
      for (std::size_t d = 0; d < 6; ++d) {
        EXPECT_EQ(shown[6 * i + d], ShowNumber(support.force[d])) << model.name << ' ' << i;
      }
    }
  }
}

// Coefficient c of component f of beam b stands at 24 b + 4 f + c: the curve of the section forces.
TEST(ResultsBlock, ForcesAreTheCurvesOfSectionForces) {
  for (const NamedModel& model : ListSolvedModels()) {
    std::vector<BeamForces> beams;
    ComputeBeamForces(model.solved.model, beams);
    const Words shown = ShowAll(ReadDecimals(MakeBlock(model.solved), "forces"));
    ASSERT_EQ(shown.size(), 24 * beams.size()) << model.name;
    for (std::size_t at = 0; at < shown.size(); ++at) {
      const double expected = beams[at / 24].curves[at % 24 / 4][at % 4];
      ASSERT_EQ(shown[at], ShowNumber(expected)) << model.name << ' ' << at;
    }
  }
}

// What kvx top lists of all beams.
TEST(ResultsBlock, DetailStressesAreThoseOfTheMaxima) {
  std::size_t beams = 0;
  for (const NamedModel& model : ListSolvedModels()) {
    const std::size_t count = model.solved.model.BeamElements.size();
    const PageBlock block = MakeBlock(model.solved);
    EXPECT_EQ(HasColumn(block, "detailStresses"), count > 0) << model.name;
    if (count == 0) continue;
    MaximaRequest request;
    request.quantities = {Quantity::BeamVonMises};
    request.count = count;
    std::vector<PeakList> lists;
    FindMaxima(model.solved.model, request, {}, model.solved.details.offers, lists);
    const Words shown = ShowAll(ReadDecimals(block, "detailStresses"));
    ASSERT_EQ(shown.size(), count) << model.name;
    ASSERT_EQ(lists.at(0).peaks.size(), count) << model.name;
    for (const Peak& peak : lists[0].peaks) {
      const auto beam = static_cast<std::size_t>(peak.element);
      EXPECT_EQ(shown[beam], ShowNumber(peak.value)) << model.name << ' ' << beam;
    }
    beams += count;
  }
  EXPECT_GT(beams, 0U);
}

TEST(ResultsBlock, WithoutDetailModelsThereIsNoColumnOfThem) {
  SolvedModel solved = ListSolvedModels()[0].solved;
  solved.details = {};
  EXPECT_FALSE(HasColumn(MakeBlock(solved), "detailStresses"));
}

// A plate of 4 x 3 cells, clamped at the nodes with j = 0 and pulled at one corner out of its plane
// and in it.
ModelText BuildPlate(korvex::test::Cells cells,
                     const std::function<korvex::test::Point3(double s, double t)>& place) {
  ModelText model = korvex::test::BuildGrid(4, 3, cells, place);
  model.materials = {{206000.0, 0.3, 7.85e-9}};
  model.thicknesses = {10.0};
  for (int i = 0; i <= 4; ++i) {
    model.restraints.push_back({korvex::test::GridNode(4, i, 0), {1, 1, 1, 1, 1, 1}});
  }
  model.forces = {{korvex::test::GridNode(4, 4, 3), {3000.0, 1000.0, 500.0, 0.0, 0.0, 0.0}}};
  return model;
}

std::size_t CountRows(const ModelText& text) {
  return ReadDecimals(MakeBlock(SolveWhole(text)), "shells.upperMises").size();
}

// In a plane all corners at a node have one average: a row for each of the 20 nodes.
TEST(ResultsBlock, CornersInAPlaneShareARow) {
  const auto place = [](double s, double t) {
    return korvex::test::Turn({400.0 * s + 50.0 * t, 300.0 * t, 0.0});
  };
  EXPECT_EQ(CountRows(BuildPlate(korvex::test::Cells::Quads, place)), 20U);
  EXPECT_EQ(CountRows(BuildPlate(korvex::test::Cells::Mixed, place)), 20U);
}

// At a right angle between the second and the third column of cells, the 4 nodes of the fold have a
// row for each of its two sides.
TEST(ResultsBlock, CornersAtAFoldDoNotShare) {
  const auto place = [](double s, double t) {
    const double along = 400.0 * std::min(s, 0.5), up = 400.0 * std::max(s - 0.5, 0.0);
    return korvex::test::Turn({along + 50.0 * t, 300.0 * t, up});
  };
  EXPECT_EQ(CountRows(BuildPlate(korvex::test::Cells::Quads, place)), 24U);
}

// Numbers that are none stay so: one node's displacements spoil the elements at this node.
TEST(ResultsBlock, NotANumberStaysWhereItIs) {
  const auto place = [](double s, double t) {
    return korvex::test::Point3{400.0 * s, 300.0 * t, 0.0};
  };
  SolvedModel solved = SolveWhole(BuildPlate(korvex::test::Cells::Quads, place));
  const auto node = static_cast<std::size_t>(korvex::test::GridNode(4, 0, 3));
  solved.model.Displacements[6 * node + 2] = std::nan("");
  korvex::RecoverShellStresses(solved.model);
  korvex::AverageNodeStresses(solved.model);
  const PageBlock block = MakeBlock(solved);
  const std::vector<double> displacements = ReadDecimals(block, "displacements");
  for (std::size_t i = 0; i < displacements.size(); ++i) {
    EXPECT_EQ(std::isnan(displacements[i]), i == 6 * node + 2) << i;
  }
  // Cell 8 has the node, and shares its nodes with cells 4, 5 and 9: NaN at these four nodes.
  const std::vector<std::int32_t> rows = ReadIntegers(block, "shells.rows");
  const std::vector<double> stresses = ReadDecimals(block, "shells.upperMises");
  const std::vector<std::int32_t>& nodes = solved.model.Tables.Shell4Nodes;
  const std::set<std::int32_t> spoilt(nodes.begin() + 32, nodes.begin() + 36);
  for (std::size_t c = 0; c < rows.size(); ++c) {
    EXPECT_EQ(std::isnan(stresses[static_cast<std::size_t>(rows[c])]), spoilt.count(nodes[c]) == 1)
        << c;
  }
}

// A plate without thickness and supports: everything is NaN, and is shown so.
TEST(ResultsBlock, NothingButNotANumberDoesNotBreakIt) {
  const auto place = [](double s, double t) {
    return korvex::test::Point3{400.0 * s, 300.0 * t, 0.0};
  };
  ModelText text = BuildPlate(korvex::test::Cells::Mixed, place);
  text.restraints.clear();
  text.thicknesses = {0.0};
  const PageBlock block = MakeBlock(SolveWhole(text));
  EXPECT_EQ(ReadDecimals(block, "displacements").size(), 120U);
  EXPECT_TRUE(ReadIntegers(block, "reactionNodes").empty());
  for (const double stress : ReadDecimals(block, "shells.upperMises")) {
    EXPECT_TRUE(std::isnan(stress));
  }
}

// A frame has no shells, a plate has no beams: the columns are there, and empty.
TEST(ResultsBlock, MissingKindsOfElementsHaveEmptyColumns) {
  const PageBlock frame = MakeBlock(ListSolvedModels()[0].solved);
  EXPECT_TRUE(HasColumn(frame, "shells.rows"));
  EXPECT_TRUE(ReadIntegers(frame, "shells.rows").empty());
  EXPECT_TRUE(ReadDecimals(frame, "shells.upper").empty());
  EXPECT_FALSE(ReadDecimals(frame, "forces").empty());
  const auto place = [](double s, double t) {
    return korvex::test::Point3{400.0 * s, 300.0 * t, 0.0};
  };
  const PageBlock plate = MakeBlock(SolveWhole(BuildPlate(korvex::test::Cells::Triangles, place)));
  EXPECT_TRUE(HasColumn(plate, "forces"));
  EXPECT_TRUE(ReadDecimals(plate, "forces").empty());
  EXPECT_EQ(ReadIntegers(plate, "shells.rows").size(), 72U);
}

}  // namespace
}  // namespace kvx::test
