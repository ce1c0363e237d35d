// The checks of the mesh as a whole: K207, and tables that make no sense.
#include "check/check_mesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "support/expect_findings.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using korvex::Section;

// The parts of a good model are named where there are several, and only there: as many as a count
// by repeated comparison of neighbours gives.
TEST(SeparateParts, AreNamedWithTheirNumber) {
  int several = 0;
  for (std::uint32_t seed = 0; seed < 100; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CheckReport report = Check(MakeGoodModel(seed));
    const korvex::ModelTables& tables = report.model.tables;
    std::vector<std::int32_t> lowest(tables.Nodes.size());
    for (std::size_t k = 0; k < lowest.size(); ++k) lowest[k] = static_cast<std::int32_t>(k);
    for (bool changes = true; changes;) {
      changes = false;
      for (const Section section : ElementSections) {
        for (std::int32_t row = 0; row < CountRows(tables, section); ++row) {
          const ElementNodes element = NodesOf(tables, section, row);
          std::int32_t least = lowest[static_cast<std::size_t>(element.nodes[0])];
          for (std::size_t k = 0; k < element.count; ++k) {
            least = std::min(least, lowest[static_cast<std::size_t>(element.nodes[k])]);
          }
          for (std::size_t k = 0; k < element.count; ++k) {
            std::int32_t& at = lowest[static_cast<std::size_t>(element.nodes[k])];
            changes = changes || at != least;
            at = least;
          }
        }
      }
    }
    std::sort(lowest.begin(), lowest.end());
    lowest.erase(std::unique(lowest.begin(), lowest.end()), lowest.end());
    const Finding* hint = nullptr;
    for (const Finding& finding : report.findings.findings) {
      if (finding.code == "K207") hint = &finding;
    }
    ASSERT_EQ(hint != nullptr, lowest.size() > 1);
    if (hint == nullptr) continue;
    ++several;
    EXPECT_EQ(hint->nodes, lowest);
    EXPECT_EQ(hint->message.rfind(std::to_string(lowest.size()) + " parts", 0), 0U);
    EXPECT_EQ(hint->severity, Severity::Hint);
  }
  EXPECT_GE(several, 30);
}

// Numbers that a text may hold: ordinary, equal, huge, not finite.
double AnyCoordinate(Dice& dice) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
  constexpr std::array<double, 8> Odd{0.0, 0.0, 1.0, 1e300, -1e99, Infinity, -Infinity, NotANumber};
  return RollYes(dice) ? Roll(dice, -1.0, 1.0)
                       : Odd[static_cast<std::size_t>(RollInteger(dice, 0, 7))];
}

// Any tables: the checks end, without an error that a sanitizer would see, and messages come out.
TEST(CheckMesh, TakesAnyTables) {
  std::size_t findings = 0;
  for (std::uint32_t seed = 0; seed < 600; ++seed) {
    Dice dice = MakeDice(seed);
    CheckedModel model;
    const int nodes = RollInteger(dice, 0, 40);
    for (int k = 0; k < nodes; ++k) {
      model.tables.Nodes.push_back({AnyCoordinate(dice), AnyCoordinate(dice), AnyCoordinate(dice)});
    }
    const auto reference = [&] {
      return RollYes(dice, 0.02) ? static_cast<std::int32_t>(dice.engine())
                                 : RollInteger(dice, 0, std::max(nodes - 1, 0));
    };
    for (int k = RollInteger(dice, 0, 30); k > 0; --k) {
      for (int i = 0; i < 4; ++i) model.tables.Shell4Nodes.push_back(reference());
      for (int i = 0; i < 3; ++i) model.tables.Shell3Nodes.push_back(reference());
      for (int i = 0; i < 2; ++i) model.tables.BeamNodes.push_back(reference());
      model.tables.Shell4Properties.emplace_back();
      model.tables.Shell3Properties.emplace_back();
      model.tables.BeamSectionRefs.emplace_back();
      model.tables.BeamProperties.emplace_back();
    }
    model.tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, reference()});
    model.tables.NodalForces.push_back({reference(), {}});
    model.tables.Shell4SurfaceLoads.push_back({reference(), {1.0, 1.0, 1.0}});
    for (const Section section : ElementSections) {
      std::vector<ElementState>& states = model.states[KindOf(section)];
      for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
        states.push_back(RollYes(dice, 0.9) ? ElementState::Sound : ElementState::Broken);
      }
    }
    const double tolerance = RollYes(dice) ? 0.0 : std::pow(10.0, Roll(dice, -320.0, 308.0));
    Parts parts;
    FindParts(model, parts);
    FindingList list;
    std::vector<Gap> gaps;
    CheckMesh(parts, tolerance, model, gaps, list);
    for (const Finding& finding : list.findings) EXPECT_FALSE(finding.message.empty());
    findings += list.findings.size();
  }
  EXPECT_GT(findings, 500U);
}

// 30,000 elements that all lie on one another: n x n comparisons would be 9e8.
TEST(CheckMesh, GivesUpWhereEverythingOverlaps) {
  CheckedModel model;
  Dice dice = MakeDice(1);
  constexpr std::int32_t Count = 30000;
  for (std::int32_t k = 0; k < 3 * Count; ++k) {
    model.tables.Nodes.push_back({Roll(dice, 0.0, 1.0), Roll(dice, 0.0, 1.0), 0.0});
    model.tables.Shell3Nodes.push_back(k);
  }
  model.tables.Shell3Properties.resize(Count);
  model.states[KindOf(Section::Shells3)].assign(Count, ElementState::Sound);
  Parts parts;
  FindParts(model, parts);
  FindingList list;
  std::vector<Gap> gaps;
  CheckMesh(parts, 0.0, model, gaps, list);
  ASSERT_EQ(model.notChecked.size(), 1U);
  EXPECT_NE(model.notChecked[0].find("overlap"), std::string::npos);
}

}  // namespace
}  // namespace kvx::test
