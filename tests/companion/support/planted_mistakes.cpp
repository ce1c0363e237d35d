#include "support/planted_mistakes.h"
#include "support/repeats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace kvx::test {

using korvex::test::ModelText;

namespace {

std::string LineOfText(const std::string& text, std::size_t line) {
  std::istringstream stream(text);
  std::string content;
  for (std::size_t k = 0; k < line; ++k) std::getline(stream, content);
  return content;
}

// Whether the line holds the row that the finding names first. Sections have labels, and loads
// other numbers in front: their lines are not looked at.
bool HoldsRow(const std::string& text, const Finding& finding) {
  const std::string table = finding.table;
  if (finding.rows.empty()) return true;
  const std::string number = std::to_string(finding.rows.front()) + ":";
  const std::string line = LineOfText(text, finding.line);
  if (table == "NMT" || table == "NTK") return line == "#" + number;
  if (table == "NPOIN" || table.rfind("NELEM", 0) == 0) return line.rfind(number, 0) == 0;
  return true;
}

}  // namespace

void ExpectPlanted(const Plant& plant, int all) {
  const int models = static_cast<int>(korvex::test::Repeats(static_cast<std::uint32_t>(all)));
  int planted = 0;
  for (std::uint32_t seed = 0; planted < models && seed < 2000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed + 77777);
    Expected expected;
    if (!plant(model, dice, expected)) continue;
    ++planted;
    const std::string text = korvex::test::WriteModel(model);
    const CheckReport report = Check(text);
    ExpectOnly(report, expected);
    for (const Finding& finding : report.findings.findings) {
      EXPECT_TRUE(HoldsRow(text, finding)) << ListFindings(report);
    }
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_EQ(planted, models);
}

FreeCorner FindFreeCorner(const ModelText& model, Dice& dice) {
  std::vector<int> uses(model.nodes.size());
  const auto use = [&](int node) { ++uses[static_cast<std::size_t>(node)]; };
  for (const auto& shell : model.shells4)
    std::for_each(shell.nodes.begin(), shell.nodes.end(), use);
  for (const auto& shell : model.shells3)
    std::for_each(shell.nodes.begin(), shell.nodes.end(), use);
  for (const auto& beam : model.beams) {
    use(beam.node1);
    use(beam.node2);
  }
  std::vector<FreeCorner> corners;
  for (std::size_t row = 0; row < model.shells4.size(); ++row) {
    for (std::size_t k = 0; k < 4; ++k) {
      if (uses[static_cast<std::size_t>(model.shells4[row].nodes[k])] == 1) {
        corners.push_back({static_cast<int>(row), k});
      }
    }
  }
  if (corners.empty()) return {};
  return corners[static_cast<std::size_t>(RollRow(corners.size(), dice))];
}

Point& PointOf(ModelText& model, int node) { return model.nodes[static_cast<std::size_t>(node)]; }

Point Between(const Point& a, const Point& b, double s) {
  return {a[0] + s * (b[0] - a[0]), a[1] + s * (b[1] - a[1]), a[2] + s * (b[2] - a[2])};
}

}  // namespace kvx::test
