// Memory and time of the matrix, a better order, and detail models out of proportion. The memory
// and the processor are given to the checks, so the tests do not depend on the machine.
#include "size/check_size.h"

#include <gtest/gtest.h>

#include <cmath>

#include "beamshell/extrude_outline.h"
#include "check/read_checked.h"
#include "size/check_detail_models.h"
#include "support/beam_sections.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

constexpr std::uint64_t MuchMemory = std::uint64_t{1} << 40U;

CheckedModel ReadModel(const ModelText& text) {
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  return model;
}

// A plate of n1 x n2 cells, its nodes numbered along n1.
ModelText Plate(int n1, int n2) {
  ModelText model =
      korvex::test::BuildGrid(n1, n2, korvex::test::Cells::Quads, [&](double s, double t) {
        return korvex::test::Point3{s * n1, t * n2, 0.0};
      });
  model.materials = {{1.0, 0.3, 1.0}};
  model.thicknesses = {0.1};
  return model;
}

// Every second node stands in the second half of the table.
void ShuffleNodes(ModelText& model) {
  const std::size_t count = model.nodes.size(), half = (count + 1) / 2;
  const auto place = [&](std::size_t k) { return k % 2 == 0 ? k / 2 : half + k / 2; };
  const auto nodes = model.nodes;
  for (std::size_t k = 0; k < count; ++k) model.nodes[place(k)] = nodes[k];
  for (auto& shell : model.shells4) {
    for (int& node : shell.nodes) node = static_cast<int>(place(static_cast<std::size_t>(node)));
  }
}

// 20 x 400 cells, 21 x 401 nodes: a node's first neighbour stands 22 places before it, but for the
// first row and the first column. 6 x 22 + 3.5 entries a column.
TEST(CheckSize, TellsTheSizeOfThePlate) {
  SolutionSize size;
  FindingList findings;
  CheckSize(ReadModel(Plate(20, 400)), {MuchMemory, 512}, size, findings);
  EXPECT_NEAR(size.gigabytes, 21 * 401 * 6 * 135.5 * 8.0 / 1073741824.0, 0.01 * size.gigabytes);
  EXPECT_EQ(size.bestOrder, "given");
  EXPECT_TRUE(findings.findings.empty());
}

TEST(CheckSize, NamesABetterOrder) {
  ModelText plate = Plate(20, 400);
  ShuffleNodes(plate);
  SolutionSize size;
  FindingList findings;
  CheckSize(ReadModel(plate), {MuchMemory, 128}, size, findings);
  ASSERT_EQ(findings.findings.size(), 1U);
  EXPECT_EQ(findings.findings[0].code, "K501");
  EXPECT_EQ(findings.findings[0].remedy.rfind("Call kvx renumber: ", 0), 0U);
  // Half of the nodes have a neighbour half of the table before them: 6 x 8421 / 2 entries a
  // column.
  EXPECT_GT(size.gigabytes, 0.4 * 21 * 401 * 6 * 6 * 4210 * 8.0 / 1073741824.0);
  EXPECT_LT(size.bestGigabytes, 21 * 401 * 6 * 1.35 * 135.5 * 8.0 / 1073741824.0);
}

// A long time is told even where no better order is there.
TEST(CheckSize, TellsALongTime) {
  SolutionSize size;
  FindingList findings;
  CheckSize(ReadModel(Plate(60, 100)), {MuchMemory, 0}, size, findings);
  EXPECT_TRUE(findings.findings.empty());  // 61 x 101 x 6 columns of 375: 5.2e9 operations, 2 s
  CheckSize(ReadModel(Plate(120, 130)), {MuchMemory, 0}, size, findings);
  ASSERT_EQ(findings.findings.size(), 1U);  // 121 x 131 x 6 columns of 735: 5.1e10 operations, 21 s
  EXPECT_EQ(findings.findings[0].code, "K501");
  EXPECT_EQ(findings.findings[0].message.rfind("matrix 0.52 GB, about 21 s", 0), 0U)
      << findings.findings[0].message;
  EXPECT_EQ(findings.findings[0].remedy, "");  // kvx renumber would change nothing
}

TEST(CheckSize, ComparesTheMatrixWithTheMemory) {
  const CheckedModel model = ReadModel(Plate(20, 400));
  SolutionSize size;
  FindingList findings;
  // Entries of 8 bytes above the diagonal and 36 bytes an equation, counted by hand as above.
  const double needed = 21 * 401 * 6 * (134.5 * 8.0 + 36.0);
  CheckSize(model, {static_cast<std::uint64_t>(1.02 * needed), 512}, size, findings);
  EXPECT_TRUE(findings.findings.empty());
  CheckSize(model, {static_cast<std::uint64_t>(0.97 * needed), 512}, size, findings);
  ASSERT_EQ(findings.findings.size(), 1U);
  EXPECT_EQ(findings.findings[0].code, "K502");
  // Header, materials 5 lines, thicknesses 3, sections 3, and this count.
  EXPECT_EQ(findings.findings[0].line, 13U);
}

// The matrix of the given order does not fit, that of the best one would.
TEST(CheckSize, PointsToABetterOrderWhereTheMatrixDoesNotFit) {
  ModelText plate = Plate(20, 400);
  ShuffleNodes(plate);
  SolutionSize size;
  FindingList findings;
  CheckSize(ReadModel(plate), {std::uint64_t{1} << 28U, 128}, size, findings);
  ASSERT_EQ(findings.findings.size(), 2U);
  EXPECT_EQ(findings.findings[0].code, "K502");
  EXPECT_EQ(findings.findings[0].remedy.rfind("Call kvx renumber: ", 0), 0U);
  EXPECT_NE(findings.findings[0].remedy.find(" GB instead of "), std::string::npos);
}

// The same where kvx has another engine: korvex stops, kvx run need not.
TEST(CheckSize, WarnsWhereAnotherEngineMaySolveIt) {
  ModelText plate = Plate(20, 400);
  ShuffleNodes(plate);
  SolutionSize size;
  FindingList findings;
  CheckSize(ReadModel(plate), {std::uint64_t{1} << 28U, 128, true}, size, findings);
  ASSERT_EQ(findings.findings.size(), 2U);
  const Finding& finding =
      findings.findings[0].code == "K502" ? findings.findings[0] : findings.findings[1];
  EXPECT_EQ(finding.code, "K502");
  EXPECT_EQ(finding.severity, Severity::Warning);
  EXPECT_NE(finding.message.find(" of kvx; kvx run looks whether its sparse engine fits."),
            std::string::npos)
      << finding.message;
  EXPECT_EQ(finding.remedy.rfind("Solve it with kvx run; kvx run --dry-run tells what that", 0), 0U)
      << finding.remedy;
}

double LengthOf(const ModelText& text, std::size_t beam) {
  const auto& a = text.nodes[static_cast<std::size_t>(text.beams[beam].node1)];
  const auto& b = text.nodes[static_cast<std::size_t>(text.beams[beam].node2)];
  return std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
}

// A section in metres among coordinates in millimetres.
TEST(CheckDetailModels, NamesASectionThatIsMuchTooSmall) {
  int planted = 0;
  for (std::uint32_t seed = 0; planted < 10; ++seed) {
    ModelText text = MakeGoodModel(seed);
    if (text.beams.empty()) continue;
    ++planted;
    FindingList none;
    CheckDetailModels(ReadModel(text), MuchMemory, none);
    EXPECT_TRUE(none.findings.empty());
    Dice dice = MakeDice(seed);
    const auto row =
        static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(text.beams.size()) - 1));
    text.beams[row].BeamSecType = korvex::BeamSecTypeT;
    text.beams[row].BeamSecIndex = static_cast<int>(text.tSections.size());
    // Its widest strip is half of the flange, a ten thousandth of the beam.
    const double strip = LengthOf(text, row) / 10000.0;
    text.tSections.push_back({strip, 0.1 * strip, 2.0 * strip, 0.1 * strip});
    FindingList findings;
    CheckDetailModels(ReadModel(text), MuchMemory, findings);
    ASSERT_EQ(findings.findings.size(), 1U) << "seed " << seed;
    EXPECT_EQ(findings.findings[0].code, "K503");
    EXPECT_EQ(findings.findings[0].rows, std::vector<std::int32_t>{static_cast<int>(row)});
    // With little memory it is the reason why the run stops.
    FindingList stop;
    CheckDetailModels(ReadModel(text), 100000, stop);
    ASSERT_EQ(stop.findings.size(), 1U) << "seed " << seed;
    EXPECT_EQ(stop.findings[0].code, "K504");
    EXPECT_EQ(stop.findings[0].severity, Severity::Error);
    EXPECT_NE(stop.findings[0].message.find(
                  ", and there are 0 GB free: the run stops after the solution."),
              std::string::npos)
        << stop.findings[0].message;  // 100,000 bytes, rounded down
    EXPECT_EQ(stop.findings[0].rows, std::vector<std::int32_t>{static_cast<int>(row)});
  }
}

// Ten equal beams in a line: each is rebuilt as 28 rows of shells (3000 / 106). kvx needs three at
// once, as a beam is averaged with those that share an end with it, and the system of one.
TEST(CheckDetailModels, TellsABlockThatDoesNotFitFromAllTogether) {
  constexpr int Beams = 10;
  ModelText text;
  text.materials = {{2.06e5, 0.3, 0.0}};
  text.nodes = {{0.0, 0.0, 0.0}};
  for (int b = 0; b < Beams; ++b) {
    text.nodes.push_back({3000.0 * (b + 1), 0.0, 0.0});
    ModelText::Beam beam;
    korvex::test::UseSection({"T", korvex::BeamSecTypeT, {300, 10, 200, 12}, 0.0, false}, text,
                             beam);
    beam.node1 = b;
    beam.node2 = b + 1;
    text.beams.push_back(beam);
  }
  const CheckedModel model = ReadModel(text);
  korvex::SectionOutline outline;
  korvex::BuildTOutline(model.tables.TBeamSections[0], 0, outline);
  korvex::BeamShellModel detail;
  detail.EndPoint2 = {3000.0, 0.0, 0.0};
  const std::uint64_t one = korvex::CountDetailBytes(outline, 0, detail);
  const std::uint64_t system = korvex::CountSystemBytes(outline, 0, detail);
  const auto find = [&](std::uint64_t freeMemory) {
    FindingList findings;
    CheckDetailModels(model, freeMemory, findings);
    return findings.findings;
  };
  EXPECT_TRUE(find(Beams * one + system).empty());
  for (const std::uint64_t bytes : {Beams * one + system - 1, 3 * one + system}) {
    const std::vector<Finding> found = find(bytes);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].code, "K504");
    EXPECT_EQ(found[0].severity, Severity::Warning);
    EXPECT_EQ(found[0].message.rfind("all detail models together take ", 0), 0U);
    EXPECT_EQ(found[0].remedy.rfind("Solve the model with kvx run, which makes them in blocks.", 0),
              0U);
  }
  const Finding error = find(3 * one + system - 1).at(0);
  EXPECT_EQ(error.severity, Severity::Error);
  EXPECT_NE(error.message.find(": its detail model and those of the 2 beams that share an end with "
                               "it take "),
            std::string::npos)
      << error.message;
}

}  // namespace
}  // namespace kvx::test
