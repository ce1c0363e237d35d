// K3xx without the deep check: planted mistakes in the supports of good models at random places.
#include <gtest/gtest.h>

#include <algorithm>

#include "check/describe.h"
#include "check/parts.h"
#include "support/expect_findings.h"
#include "support/good_models.h"
#include "support/repeats.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

constexpr std::uint32_t Seeds = korvex::test::Repeats(60);

// A good model, its parts, and the nodes of each part that are supported.
struct Planting {
  ModelText model;
  Parts parts;
  Dice dice;
};

Planting Prepare(std::uint32_t seed) {
  Planting planting{MakeGoodModel(seed), {}, MakeDice(seed + 1000)};
  FindParts(Check(planting.model).model, planting.parts);
  return planting;
}

int PartOf(const Planting& planting, int node) {
  return planting.parts.partOfNode[static_cast<std::size_t>(node)];
}

int LowestNodeOf(const Planting& planting, int part) {
  const auto& partOfNode = planting.parts.partOfNode;
  return static_cast<int>(std::find(partOfNode.begin(), partOfNode.end(), part) -
                          partOfNode.begin());
}

ModelText::Restraint& RollRestraint(Planting& planting) {
  auto& rows = planting.model.restraints;
  return rows[static_cast<std::size_t>(
      RollInteger(planting.dice, 0, static_cast<int>(rows.size()) - 1))];
}

bool IsClamped(const ModelText::Restraint& row) { return row.fixed[5] == 1; }

const Finding* FindFinding(const CheckReport& report, const std::string& code) {
  for (const Finding& finding : report.findings.findings) {
    if (finding.code == code) return &finding;
  }
  return nullptr;
}

void ExpectInMessage(const CheckReport& report, const std::string& code, const std::string& text) {
  const Finding* finding = FindFinding(report, code);
  ASSERT_NE(finding, nullptr) << code;
  EXPECT_NE(finding->message.find(text), std::string::npos) << finding->message;
}

Expected AtNode(const char* code, int node) {
  Expected expected;
  expected.code = code;
  expected.node = node;
  return expected;
}

Expected AtRow(const char* code, const char* table, int row) {
  Expected expected;
  expected.code = code;
  expected.table = table;
  expected.row = row;
  return expected;
}

TEST(CheckSupports, NameAPartWithoutSupports) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    const int part = PartOf(planting, RollRestraint(planting).node);
    auto& rows = planting.model.restraints;
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [&](const auto& row) { return PartOf(planting, row.node) == part; }),
               rows.end());
    const CheckReport report = Check(planting.model);
    ExpectOnly(report, AtNode("K301", LowestNodeOf(planting, part)));
    ExpectInMessage(report, "K301", "may move and turn in all directions");
  }
}

// One flag too few: of a clamped node the motion of this flag, of a pinned one a turn.
TEST(CheckSupports, NameTheMotionOfAMissingFlag) {
  constexpr std::array<const char*, 3> Axes{"x", "y", "z"};
  std::size_t cases = 0;
  for (std::uint32_t seed = 0; seed < 3 * Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    ModelText::Restraint& row = RollRestraint(planting);
    if (!IsClamped(row)) continue;
    const std::size_t flag = cases++ % 6;
    row.fixed[flag] = 0;
    const int part = PartOf(planting, row.node);
    const CheckReport report = Check(planting.model);
    ExpectOnly(report, AtNode("K301", LowestNodeOf(planting, part)));
    ExpectInMessage(
        report, "K301",
        std::string(flag < 3 ? "may move along " : "may turn about the line through (") +
            (flag < 3 ? Axes[flag] : ""));
    if (flag >= 3) {
      ExpectInMessage(report, "K301", std::string(") along ") + Axes[flag - 3] + ";");
    }
  }
  EXPECT_GE(cases, 6U);
}

// Three pins less one: a turn about the line through the other two, which is oblique.
TEST(CheckSupports, NameTheTurnAboutTwoPins) {
  int count = 0;
  for (std::uint32_t seed = 0; seed < 3 * Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    const ModelText::Restraint row = RollRestraint(planting);
    if (IsClamped(row)) continue;
    auto& rows = planting.model.restraints;
    rows.erase(std::find_if(rows.begin(), rows.end(),
                            [&](const auto& other) { return other.node == row.node; }));
    const CheckReport report = Check(planting.model);
    ExpectOnly(report, AtNode("K301", LowestNodeOf(planting, PartOf(planting, row.node))));
    ExpectInMessage(report, "K301", "may turn about the line through (");
    ++count;
  }
  EXPECT_GT(count, static_cast<int>(korvex::test::Repeats(30)));
}

// A flag of 2 where the part stands on it: an error, and K301 says nothing besides.
TEST(CheckSupports, NameAFlagThatIsNot1) {
  constexpr std::array<int, 4> Odd{2, -1, 11, 100};
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    ModelText::Restraint& row = RollRestraint(planting);
    const auto flag = static_cast<std::size_t>(RollInteger(planting.dice, 0, 2));
    row.fixed[flag] = Odd[static_cast<std::size_t>(RollInteger(planting.dice, 0, 3))];
    const int at = static_cast<int>(&row - planting.model.restraints.data());
    const CheckReport report = Check(planting.model);
    ExpectOnly(report, AtRow("K302", "NRN", at));
    const bool needed = IsClamped(row);
    if (needed) {
      EXPECT_EQ(FindFinding(report, "K302")->severity, Severity::Error);
      ExpectInMessage(report, "K302", "can move as a rigid body");
    }
  }
}

// The same on a part that is held besides: a warning.
TEST(CheckSupports, WarnOfAFlagThatIsNot1WhereThePartIsHeld) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    auto& rows = planting.model.restraints;
    const auto isSupported = [&](int node) {
      return std::any_of(rows.begin(), rows.end(),
                         [&](const auto& row) { return row.node == node; });
    };
    int node = 0;
    while (isSupported(node)) ++node;
    planting.model.forces.clear();  // none may act on the new support
    rows.push_back({node, {2, 0, 0, 0, 0, 0}});
    const CheckReport report = Check(planting.model);
    if (FindFinding(report, "K407") != nullptr) continue;  // it had no other loads
    ExpectOnly(report, AtRow("K302", "NRN", static_cast<int>(rows.size()) - 1));
    EXPECT_EQ(FindFinding(report, "K302")->severity, Severity::Warning);
  }
}

TEST(CheckSupports, HintAtADoubledRow) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    planting.model.restraints.push_back(RollRestraint(planting));
    const int row = static_cast<int>(planting.model.restraints.size()) - 1;
    ExpectOnly(Check(planting.model), AtRow("K303", "NRN", row));
  }
}

TEST(CheckSupports, NameASupportOfALooseNode) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    const auto& nodes = planting.model.nodes;
    const int node = static_cast<int>(nodes.size());
    // Beside the model, far enough to touch nothing.
    planting.model.nodes.push_back({nodes[0][0], nodes[0][1] + 1000.0, nodes[0][2] + 1000.0});
    planting.model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
    const int row = static_cast<int>(planting.model.restraints.size()) - 1;
    ExpectOnly(Check(planting.model), AtRow("K304", "NRN", row));
  }
}

TEST(CheckSupports, NameANodeThatDoesNotExist) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    ModelText::Restraint& row = RollRestraint(planting);
    row.node = RollYes(planting.dice, 0.3) ? -1 : static_cast<int>(planting.model.nodes.size());
    const int at = static_cast<int>(&row - planting.model.restraints.data());
    const CheckReport report = Check(planting.model);
    ExpectOnly(report, AtRow("K305", "NRN", at));
    // Whether the part is held without this row is not known.
    EXPECT_EQ(report.model.notChecked.size(), 1U);
  }
}

// A row without a 1 is read and forgotten, whatever its node.
TEST(CheckSupports, WarnOfARowWithoutEffectOnANodeThatDoesNotExist) {
  Planting planting = Prepare(1);
  planting.model.restraints.push_back({-7, {0, 0, 0, 0, 0, 0}});
  const CheckReport report = Check(planting.model);
  const int row = static_cast<int>(planting.model.restraints.size()) - 1;
  ExpectOnly(report, AtRow("K305", "NRN", row));
  EXPECT_EQ(FindFinding(report, "K305")->severity, Severity::Warning);
}

// A good model and a chain of three beams apart from it, on three pins, the middle one beside the
// line of the others. Returns the chain's first node.
int AddPinnedChain(double aside, ModelText& model) {
  const auto first = static_cast<int>(model.nodes.size());
  for (const double s : {0.0, 1.0, 2.0, 3.0}) {
    model.nodes.push_back({-1e5 + s, -1e5 + 0.5 * s, s == 1.0 ? aside : 0.0});
  }
  for (int k = 0; k < 3; ++k) {
    ModelText::Beam beam;
    beam.node1 = first + k;
    beam.node2 = first + k + 1;
    beam.orientation = {0.0, 0.0, 1.0};
    model.beams.push_back(beam);
    model.restraints.push_back({first + k, {1, 1, 1, 0, 0, 0}});
  }
  return first;
}

// By 1e-7 the chain is hardly held; by 1e-3 it is held.
TEST(CheckSupports, WarnOfAPartThatIsHardlyHeld) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    const int first = AddPinnedChain(1e-7, model);
    CheckReport report = Check(model);
    const Finding* finding = FindFinding(report, "K306");
    ASSERT_NE(finding, nullptr) << ListFindings(report);
    EXPECT_EQ(finding->nodes, std::vector<std::int32_t>{first});
    EXPECT_EQ(FindFinding(report, "K301"), nullptr);

    model = MakeGoodModel(seed);
    AddPinnedChain(1e-3, model);
    report = Check(model);
    EXPECT_EQ(FindFinding(report, "K306"), nullptr) << ListFindings(report);
    EXPECT_EQ(FindFinding(report, "K301"), nullptr) << ListFindings(report);
  }
}

}  // namespace
}  // namespace kvx::test
