// K701 .. K709 and K721 .. K723: each fault that is planted in a good model is named alone, with
// its place; good models have none.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "audit/beam_models.h"
#include "commands/result_findings.h"
#include "results/corner_stress.h"
#include "support/audited.h"
#include "support/dof_names.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"

namespace kvx::test {
namespace {

using namespace korvex::test;  // NOLINT(google-build-using-namespace): Fx, Uy and their like

constexpr std::uint32_t Seeds = 30;

void ScaleLoads(ModelText& model, double factor) {
  for (auto& force : model.forces) {
    for (double& component : force.components) component *= factor;
  }
  for (auto* loads : {&model.shell4Loads, &model.shell3Loads}) {
    for (auto& load : *loads) {
      for (double& q : load.q) q *= factor;
    }
  }
  for (auto& load : model.beamLoads) {
    load.q1 *= factor;
    load.q2 *= factor;
  }
}

// Loads under which nothing is large: random models may well bend too far.
ModelText MakeSmallModel(std::uint32_t seed) {
  ModelText model = MakeGoodModel(seed);
  const Verdict verdict = Audit(model).report.verdict;
  constexpr double SmallShare = 0.01, SmallRotation = 0.05;
  ScaleLoads(model, std::min(SmallShare / verdict.share, SmallRotation / verdict.rotation.value));
  return model;
}

TEST(SolutionFindings, AreNoneInGoodModels) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    const Audited audited = Audit(MakeSmallModel(seed));
    for (const Finding& finding : audited.report.findings.findings) {
      const bool isAdvice = finding.code == "K721" || finding.code == "K722";
      // Quads of curved shells of random models are warped: their couples are told.
      const bool isWarped =
          finding.code == "K707" && WeighUnbalanced(audited.report.reactions) > NotableCouple;
      EXPECT_TRUE((isAdvice && finding.severity == Severity::Hint) || isWarped)
          << finding.code << ' ' << finding.message;
    }
    EXPECT_EQ(CountFindings(audited.report.findings, Severity::Error), 0U);
  }
}

// The only error, whatever hints and true warnings of another kind there are.
void ExpectError(const Audited& audited, const Expected& expected) {
  const Finding finding = FindFinding(audited.report, expected.code);
  ASSERT_EQ(finding.code, expected.code) << VerdictText(audited.report);
  EXPECT_EQ(CountFindings(audited.report.findings, Severity::Error), 1U);
  EXPECT_EQ(finding.severity, Severity::Error);
  EXPECT_EQ(finding.table, expected.table);
  if (expected.row >= 0) {
    EXPECT_EQ(finding.rows, std::vector<std::int32_t>{expected.row}) << finding.message;
    EXPECT_EQ(finding.line,
              static_cast<std::size_t>(LineOfRow(audited.text, expected.table, expected.row)));
  }
  if (expected.node >= 0) {
    ASSERT_FALSE(finding.nodes.empty());
    EXPECT_EQ(finding.nodes[0], expected.node) << finding.message;
    const auto& place = audited.solved.model.Tables.Nodes[static_cast<std::size_t>(expected.node)];
    if (finding.nodes.size() == 1) {
      EXPECT_EQ(finding.position, (korvex::Vector3{place.x, place.y, place.z}));
    }
  }
  // Without a solution there is nothing to say about stresses.
  EXPECT_EQ(FindFinding(audited.report, "K721").code, "");
  EXPECT_EQ(FindFinding(audited.report, "K722").code, "");
  EXPECT_TRUE(finding.hasPosition);
  EXPECT_FALSE(finding.message.empty());
  EXPECT_FALSE(finding.remedy.empty());
  EXPECT_EQ(VerdictText(audited.report).rfind("balanced", 0), std::string::npos);
}

// A beam along its own orientation vector has no frame.
TEST(SolutionFindings, NameABeamThatSpoilsAll) {
  int tried = 0;
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    ModelText model = MakeGoodModel(seed);
    if (model.beams.empty()) continue;
    SCOPED_TRACE(seed);
    Dice dice = MakeDice(seed);
    const int row = RollInteger(dice, 0, static_cast<int>(model.beams.size()) - 1);
    ModelText::Beam& beam = model.beams[static_cast<std::size_t>(row)];
    const auto a = model.nodes[static_cast<std::size_t>(beam.node1)];
    const auto b = model.nodes[static_cast<std::size_t>(beam.node2)];
    // Copies: the table grows below. No length: exactly no axis, which a product of rounded numbers
    // need not be.
    model.nodes.push_back(a);
    for (std::size_t i = 0; i < 3; ++i) beam.orientation[i] = b[i] - a[i];
    beam.node2 = static_cast<int>(model.nodes.size()) - 1;
    ExpectError(Audit(model), {"K702", "NELEM_B", row, beam.node1, 0});
    ++tried;
  }
  EXPECT_GE(tried, 10);
}

// A triangle with two corners at one place has no plane.
TEST(SolutionFindings, NameAShellThatSpoilsAll) {
  int tried = 0;
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    ModelText model = MakeGoodModel(seed);
    if (model.shells4.empty()) continue;
    SCOPED_TRACE(seed);
    const auto& corners = model.shells4[0].nodes;
    model.nodes.push_back(model.nodes[static_cast<std::size_t>(corners[0])]);
    const int twin = static_cast<int>(model.nodes.size()) - 1;
    model.shells3.push_back({{corners[0], twin, corners[1]}, 0, 0});
    ExpectError(Audit(model),
                {"K702", "NELEM_S_3ND", static_cast<int>(model.shells3.size()) - 1, corners[0], 0});
    ++tried;
  }
  EXPECT_GE(tried, 10);
}

bool IsHeld(const ModelText& model, int node) {
  return std::any_of(model.restraints.begin(), model.restraints.end(),
                     [node](const ModelText::Restraint& row) { return row.node == node; });
}

TEST(SolutionFindings, NameALoadThatIsNoNumber) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed);
    const int node = RollInteger(dice, 0, static_cast<int>(model.nodes.size()) - 1);
    const int row = static_cast<int>(model.forces.size());
    model.forces.push_back({node, SingleLoad(Fy, std::nan(""))});
    ExpectError(Audit(model), {"K702", "NFOR", row, node, 0});
    // Two that are numbers, and their sum is none. On a support they prescribe a displacement.
    if (IsHeld(model, node)) continue;
    model.forces[static_cast<std::size_t>(row)] = {node, SingleLoad(Fy, 1.5e308)};
    model.forces.push_back(model.forces.back());
    ExpectError(Audit(model), {"K702", "NPOIN", node, node, 0});
  }
}

TEST(SolutionFindings, NameTheRowOfAPressureThatIsNoNumber) {
  int tried = 0;
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    const auto plant = [&](auto& loads, const char* table) {
      if (loads.empty()) return;
      const int row = static_cast<int>(loads.size()) / 2;
      auto& q = loads[static_cast<std::size_t>(row)].q;
      const double before = q[1];
      q[1] = std::nan("");
      ExpectError(Audit(model), {"K702", table, row, -1, 0});
      q[1] = before;
      ++tried;
    };
    plant(model.shell4Loads, "NDL_S_4ND");
    plant(model.shell3Loads, "NDL_S_3ND");
    if (model.beamLoads.empty()) continue;
    model.beamLoads[0].q2 = std::nan("");
    ExpectError(Audit(model), {"K702", "NDL_B", 0, -1, 0});
    ++tried;
  }
  EXPECT_GE(tried, 20);
}

TEST(SolutionFindings, NameANodeThatNothingHolds) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    const int node = static_cast<int>(model.nodes.size());
    model.nodes.push_back(model.nodes[0]);
    model.forces.push_back({node, SingleLoad(Fz, 1.0)});
    ExpectError(Audit(model), {"K702", "NPOIN", node, node, 0});
  }
}

// Without supports there is a mechanism, or the rounding that takes its place: never a balance.
TEST(SolutionFindings, NameAModelThatNothingHolds) {
  int unbalanced = 0;
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    model.restraints.clear();
    const Audited audited = Audit(model);
    ASSERT_EQ(CountFindings(audited.report.findings, Severity::Error), 1U);
    const Finding& finding = audited.report.findings.findings.front();
    EXPECT_TRUE(finding.code == "K702" || finding.code == "K703") << finding.message;
    EXPECT_NE(finding.remedy.find("kvx check finds"), std::string::npos) << finding.remedy;
    if (finding.code == "K703") ++unbalanced;
  }
  EXPECT_GE(unbalanced, 10);
}

// Another load than that of the displacements, on a node that is free.
TEST(SolutionFindings, NameLoadsWithoutReactions) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeSmallModel(seed);
    const Audited before = Audit(model);
    const Reactions& r = before.report.reactions;
    std::size_t free = 2;  // Fz of a node
    while (before.solved.isHeld[free] != 0) free += 6;
    const int node = static_cast<int>(free / 6);
    // As large as the largest force of any element, so that nothing else is less in equilibrium.
    model.forces.push_back({node, SingleLoad(Fz, 2.0 * r.endScales.force + r.sumScales.force)});
    ExpectError(AuditDisplacements(model, before.solved.model.Displacements),
                {"K703", "NPOIN", node, node, 0});
  }
}

// A free node away from its place: its elements pull and push one another, and the supports feel
// nothing of it, so that loads and reactions balance.
TEST(SolutionFindings, NameANodeThatIsNotInEquilibrium) {
  int tried = 0;
  for (std::uint32_t seed = 0; seed < Seeds / 2; ++seed) {
    SCOPED_TRACE(seed);
    const ModelText model = MakeSmallModel(seed);
    const Audited before = Audit(model);
    std::size_t free = 0;  // Ux of a node
    while (before.solved.isHeld[free] != 0 || before.solved.isHeld[free + 1] != 0) free += 6;
    std::vector<double> u = before.solved.model.Displacements;
    u[free] += 0.01 * before.report.verdict.translation.value;
    const Audited audited = AuditDisplacements(model, u);
    const Finding finding = FindFinding(audited.report, "K704");
    if (finding.code != "K704") continue;  // a neighbour is a support, and takes a part
    ++tried;
    ASSERT_EQ(finding.nodes.size(), 1U);
    // The node itself, or one that shares an element with it.
    const auto node = static_cast<std::int32_t>(free / 6);
    const korvex::Model& m = audited.solved.model;
    bool isNear = finding.nodes[0] == node;
    for (const auto& [nodes, step] : {std::pair(&m.Tables.Shell4Nodes, 4),
                                      {&m.Tables.Shell3Nodes, 3},
                                      {&m.Tables.BeamNodes, 2}}) {
      for (auto at = nodes->begin(); at != nodes->end(); at += step) {
        isNear = isNear || (std::count(at, at + step, node) > 0 &&
                            std::count(at, at + step, finding.nodes[0]) > 0);
      }
    }
    EXPECT_TRUE(isNear) << finding.message;
    EXPECT_NE(finding.remedy.find("displacements.bin"), std::string::npos);
    EXPECT_EQ(VerdictText(audited.report), "a node is not in equilibrium");
    // What is left over grows with the way: from a millionth on it counts. The second step, from a
    // small way, has the scale of the forces without it.
    double way = 0.01 * before.report.verdict.translation.value;
    double left = audited.report.reactions.residual.relative;
    for (const double part : {1e-5, 2e-6, 5e-7}) {
      way *= part / left;
      u[free] = before.solved.model.Displacements[free] + way;
      const AuditReport small = AuditDisplacements(model, u).report;
      left = small.reactions.residual.relative;
      EXPECT_EQ(FindFinding(small, "K704").code, part > 1e-6 ? "K704" : "") << left;
    }
  }
  EXPECT_GE(tried, 8);
}

// Linear: the displacement is that of the small loads times the factor.
TEST(SolutionFindings, NameDisplacementsThatAreLarge) {
  int turned = 0;
  for (std::uint32_t seed = 0; seed < Seeds / 3; ++seed) {
    SCOPED_TRACE(seed);
    const ModelText small = MakeSmallModel(seed);
    const Verdict verdict = Audit(small).report.verdict;
    for (const double share : {0.11, 0.09, 0.021, 0.019}) {
      ModelText model = small;
      ScaleLoads(model, share / verdict.share);
      const Audited audited = Audit(model);
      const double rotation = verdict.rotation.value * share / verdict.share;
      const bool isFar = share > 0.1, isTurned = rotation > 0.5;
      const bool isNotable = share > 0.02 || rotation > 0.1;
      const bool byRotation = isNotable && !isFar && (isTurned || share < 0.02);
      const Finding moved = FindFinding(audited.report, "K705"),
                    turning = FindFinding(audited.report, "K706");
      EXPECT_EQ(moved.code, isNotable && !byRotation ? "K705" : "");
      EXPECT_EQ(turning.code, byRotation ? "K706" : "");
      if (!isNotable) continue;
      const Finding& finding = byRotation ? turning : moved;
      EXPECT_EQ(finding.severity, isFar || isTurned ? Severity::Warning : Severity::Hint);
      const int node = byRotation ? verdict.rotation.node : verdict.translation.node;
      EXPECT_EQ(finding.nodes, std::vector<std::int32_t>{node});
      EXPECT_EQ(finding.line, static_cast<std::size_t>(LineOfRow(audited.text, "NPOIN", node)));
      if (byRotation) ++turned;
    }
  }
  EXPECT_GE(turned, 3);
}

// A shaft of three tubes turns by T L / (G J) at its end, and moves nowhere.
TEST(SolutionFindings, NameARotationThatIsLarge) {
  const double radius = 100.0, wall = 10.0, L = 3000.0;
  ModelText model =
      BuildStraight({0.0, 1000.0, 2000.0, L}, {"Tube", korvex::BeamSecTypeC, {radius, wall, 0, 0}});
  const korvex::SectionProperties section = [&] {
    SolvedModel solved;
    SolveInMemory(WriteModel(model), {}, solved);
    return solved.model.BeamElements[0].Section;
  }();
  const double stiffness = SteelE / (2.0 * (1.0 + SteelMu)) * section.J / L;
  for (const auto& [angle, severity] :
       {std::pair(0.51, Severity::Warning), {0.49, Severity::Hint}, {0.11, Severity::Hint}}) {
    model.forces = {{3, SingleLoad(Mx, angle * stiffness)}};
    ExpectOnly(Audit(model), {"K706", "NPOIN", 3, 3, 0}, severity);
  }
  model.forces = {{3, SingleLoad(Mx, 0.09 * stiffness)}};
  EXPECT_TRUE(Audit(model).report.findings.findings.empty());
}

// A twisted strip. What the supports do not get is the difference of the sums.
TEST(SolutionFindings, NameWarpedQuadrilaterals) {
  const auto audit = [](double twist) {
    ModelText model = BuildGrid(2, 12, Cells::Quads, [&](double s, double t) {
      return Point3{1000.0 * t, 200.0 * (s - 0.5) * std::cos(twist * t),
                    200.0 * (s - 0.5) * std::sin(twist * t)};
    });
    model.materials = {{SteelE, SteelMu, 0.0}};
    model.thicknesses = {20.0};
    for (int i = 0; i <= 2; ++i) model.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
    model.forces = {{GridNode(2, 1, 12), SingleLoad(Fz, -100.0)}};
    return Audit(model);
  };
  int warnings = 0, hints = 0;
  for (const double twist : {1.5, 0.8, 0.1, 1e-2, 1e-3}) {
    SCOPED_TRACE(twist);
    const Audited audited = audit(twist);
    const Reactions& r = audited.report.reactions;
    // Of the load: its force times half the diagonal of the model.
    double gap = 0.0;
    ForceSum left{};
    for (std::size_t i = 0; i < 6; ++i) left[i] = r.loads[i] + r.reactions[i];
    korvex::Vector3 force{left[0], left[1], left[2]};
    const korvex::Vector3 arm = korvex::Cross(r.centre, force);
    for (std::size_t i = 0; i < 3; ++i) {
      gap = std::max(gap, std::fabs(left[3 + i] - arm[i]) / (100.0 * r.size));
    }
    EXPECT_GT(gap, 1e-9);
    const Finding finding = FindFinding(audited.report, "K707");
    ASSERT_EQ(finding.code, "K707");
    EXPECT_EQ(finding.table, std::string("NELEM_S_4ND"));
    EXPECT_EQ(finding.rows.size(), 24U);
    // The worst row stands first. The forces of a warped quad leave a couple alone.
    const auto coupleOf = [](const UnbalancedElement& element) {
      return std::max(
          {std::fabs(element.sum[3]), std::fabs(element.sum[4]), std::fabs(element.sum[5])});
    };
    const auto worst =
        std::max_element(r.unbalanced.begin(), r.unbalanced.end(),
                         [&](const auto& a, const auto& b) { return coupleOf(a) < coupleOf(b); });
    EXPECT_EQ(finding.rows[0], worst->element.row);
    EXPECT_EQ(finding.line,
              static_cast<std::size_t>(LineOfRow(audited.text, "NELEM_S_4ND", worst->element.row)));
    EXPECT_EQ(finding.severity, gap > 0.01 ? Severity::Warning : Severity::Hint) << gap;
    (gap > 0.01 ? warnings : hints) += 1;
    EXPECT_EQ(CountFindings(audited.report.findings, Severity::Error), 0U);
  }
  EXPECT_GE(warnings, 1);
  EXPECT_GE(hints, 1);
  EXPECT_EQ(FindFinding(audit(0.0).report, "K707").code, "");
}

// Two supports of the stiffness 1e20 with a bar of k between them, the second one moved by d: its
// displacement is d / (1 - (k / 1e20)^2), since the solver puts 1e20 in the place of the diagonal.
TEST(SolutionFindings, NameAPrescribedDisplacementThatIsNotReached) {
  const double d = 2e-3, radius = 0.01, wall = 0.001, A = 2.0 * std::acos(-1.0) * radius * wall;
  ModelText model = BuildStraight({0.0, 1.0}, {"Tube", korvex::BeamSecTypeC, {radius, wall, 0, 0}});
  model.restraints.push_back({1, {1, 0, 0, 0, 0, 0}});
  model.forces = {{1, SingleLoad(Fx, 1e20 * d)}};
  EXPECT_TRUE(Audit(model).report.findings.findings.empty());
  for (const double part : {0.1, 0.04}) {  // k / 1e20
    model.materials[0][0] = part * 1e20 / A;
    const Audited audited = Audit(model);
    ExpectOnly(audited, {"K708", "NFOR", 0, 1, 0}, Severity::Warning);
    const double reached = audited.report.reactions.moved.at(0).displacement;
    EXPECT_NEAR(reached, d / (1.0 - part * part),
                0.1 * part * part * d);  // A is that of a thin ring
  }
  model.materials[0][0] = 0.02 * 1e20 / A;  // 0.0004 is missing
  EXPECT_TRUE(Audit(model).report.findings.findings.empty());
}

// What an audit says of the digits, of a good model whose solution is told to be so exact.
AuditReport AuditQuality(const LoadQuality& load) {
  ModelText model = BuildStraight({0.0, 4000.0}, TeeSection());
  model.forces = {{1, SingleLoad(Fz, -1.0)}};
  Audited audited = Audit(model);
  AuditOptions options;
  options.comparesFiles = false;
  options.modelText = audited.text;
  options.solution.emplace();
  options.solution->loads = {load};
  AuditReport report;
  AuditModel(options, audited.solved, report);
  return report;
}

// 16 digits are 15.95 of a double, whose rounding is 2^-53: with the condition 1e10 5.95 are left.
TEST(SolutionFindings, NameAFewDigitsThatAreLeft) {
  const double rounding = 1e-16;
  for (const LoadQuality& load : {LoadQuality(),
                                  LoadQuality{1e-17, rounding, 0.0, 0.0},
                                  {1e-17, rounding, 1e9, 9.0},
                                  {1e-17, rounding, LoadQuality::Unknown, LoadQuality::Unknown},
                                  {1e-17, 1e-10, 9e3, 3.95}}) {
    EXPECT_EQ(FindFinding(AuditQuality(load), "K709").code, "") << load.condition;
  }
  struct Few {
    LoadQuality load;
    Severity severity;
    const char* words;
  };
  const double infinite = std::numeric_limits<double>::infinity();
  for (const Few& few :
       {Few{{1e-17, rounding, 1e10, 10.0}, Severity::Warning, "as few as 5.9 may"},
        {{1e-17, rounding, 8e12, 12.9}, Severity::Warning, "as few as 3 may"},
        {{1e-17, rounding, 1e13, 13.0}, Severity::Error, "as few as 2.9 may"},
        {{1e-17, 1e-10, 1e5, 5.0}, Severity::Warning, "as few as 5 may"},
        {{1e-17, rounding, 1e17, 17.0}, Severity::Error, "maybe none is right"},
        {{1e-17, rounding, infinite, infinite}, Severity::Error, "(condition infinite, "}}) {
    SCOPED_TRACE(few.words);
    const AuditReport report = AuditQuality(few.load);
    const Finding finding = FindFinding(report, "K709");
    ASSERT_EQ(finding.code, "K709");
    EXPECT_EQ(finding.severity, few.severity);
    EXPECT_NE(finding.message.find(few.words), std::string::npos) << finding.message;
    EXPECT_FALSE(finding.remedy.empty());
    EXPECT_EQ(VerdictText(report), few.severity == Severity::Error
                                       ? "few digits of the displacements are right"
                                       : "balanced, but few digits of the displacements are right");
  }
}

// A beam clamped at both ends under a uniform load q lacks q L^2 / 24 of q L^2 / 12.
TEST(SolutionFindings, NameBeamsThatShouldBeDivided) {
  for (const TestSection& section : {TeeSection(), FlatBarSection(), AngleSection(true)}) {
    ModelText model = BuildStraight({0.0, 4000.0, 8000.0, 12000.0}, section);
    for (int node = 1; node <= 3; ++node) model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
    EXPECT_TRUE(Audit(model).report.findings.findings.empty());
    model.beamLoads = {{1, -0.01, -0.01}};
    ExpectOnly(Audit(model), {"K721", "NELEM_B", 1, 1, 0}, Severity::Hint);
    // The worse one stands first, the verdict is no worse for it.
    model.beamLoads.push_back({2, -0.02, -0.02});
    const AuditReport report = Audit(model).report;
    ASSERT_EQ(report.findings.findings.size(), 2U);
    EXPECT_EQ(report.findings.findings[0].rows, std::vector<std::int32_t>{2});
    EXPECT_EQ(report.findings.findings[1].rows, std::vector<std::int32_t>{1});
    EXPECT_EQ(VerdictText(report), "balanced");
  }
}

TEST(SolutionFindings, NameBeamsWithAShortDetailModel) {
  for (const double widths : {0.5, 1.5, 2.9}) {
    // The widest strip of the T is the topmost third of its web, 300 / 3 + 12 / 2.
    ModelText model = BuildStraight({0.0, 2000.0, 2000.0 + widths * 106.0}, TeeSection());
    model.forces = {{2, SingleLoad(Fz, -1.0)}};
    ExpectOnly(Audit(model), {"K722", "NELEM_B", 1, 1, 0}, Severity::Hint);
  }
}

// The largest corner stress of all shells, from the solver's own averages.
TEST(SolutionFindings, NameShellsAboveTheYieldStress) {
  int tried = 0;
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    const ModelText model = MakeSmallModel(seed);
    if (model.shells4.empty() || !model.beams.empty()) continue;
    SCOPED_TRACE(seed);
    const Audited free = Audit(model);
    double largest = 0.0;
    int row = -1, count4 = static_cast<int>(model.shells4.size());
    const auto look = [&](const auto& elements, int first, std::size_t corners) {
      for (std::size_t e = 0; e < elements.size(); ++e) {
        for (std::size_t c = 0; c < corners; ++c) {
          for (const auto* face : {&elements[e].AvgStressTop, &elements[e].AvgStressBottom}) {
            const double stress = korvex::EquivalentStress((*face)[c]);
            if (stress <= largest) continue;
            largest = stress;
            row = first + static_cast<int>(e);
          }
        }
      }
    };
    look(free.solved.model.Shell4Elements, 0, 4);
    look(free.solved.model.Shell3Elements, count4, 3);
    const bool isQuad = row < count4;
    const Audited audited = Audit(model, 0.999 * largest);
    const Finding finding = FindFinding(audited.report, "K723");
    ASSERT_EQ(finding.code, "K723");
    EXPECT_EQ(finding.table, std::string(isQuad ? "NELEM_S_4ND" : "NELEM_S_3ND"));
    EXPECT_EQ(finding.rows[0], isQuad ? row : row - count4);
    EXPECT_EQ(finding.severity, Severity::Warning);
    EXPECT_EQ(VerdictText(audited.report).rfind("balanced, but", 0), 0U);
    EXPECT_EQ(FindFinding(Audit(model, 1.001 * largest).report, "K723").code, "");
    ++tried;
  }
  EXPECT_GE(tried, 5);
}

// A cantilever of a flat bar: M / W at the clamped end is the largest stress.
TEST(SolutionFindings, NameBeamsAboveTheYieldStress) {
  ModelText model = BuildStraight({0.0, 2000.0, 4000.0}, FlatBarSection());
  model.forces = {{2, SingleLoad(Fz, -100.0)}};
  const double stress = 100.0 * 4000.0 / (20.0 * 200.0 * 200.0 / 6.0);
  ExpectOnly(Audit(model, 0.99 * stress), {"K723", "NELEM_B", 0, 0, 0}, Severity::Warning);
  EXPECT_TRUE(Audit(model, 1.01 * stress).report.findings.findings.empty());
  // A few per cent above it are seen.
  const Finding finding = FindFinding(Audit(model, stress / 1.036).report, "K723");
  EXPECT_NE(finding.message.find(" is 1.036 of the yield stress "), std::string::npos)
      << finding.message;
}

// An error that leaves the solution as it is: a force on a node that no element has, and that is
// held.
TEST(SolutionFindings, NameErrorsOfTheModel) {
  ModelText model = BuildStraight({0.0, 2000.0, 4000.0}, FlatBarSection());
  model.forces = {{2, SingleLoad(Fz, -1.0)}};
  Audited audited;
  audited.text = WriteModel(model);
  SolveInMemory(audited.text, {}, audited.solved);
  AuditOptions options;
  options.comparesFiles = false;
  options.modelErrors = 3;
  options.firstError = "K999 line 5: a mistake.";
  AuditModel(options, audited.solved, audited.report);
  const Finding finding = FindFinding(audited.report, "K701");
  EXPECT_EQ(finding.message,
            "kvx check finds 3 errors in the model, first K999 line 5: a mistake.");
  EXPECT_EQ(VerdictText(audited.report), "the model has errors");
}

}  // namespace
}  // namespace kvx::test
