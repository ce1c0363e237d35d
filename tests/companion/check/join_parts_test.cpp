// A part that a seam cuts off from its supports is one slip: the seam becomes an error, and no
// rigid motion is told.
#include "check/join_parts.h"

#include <gtest/gtest.h>

#include "support/expect_findings.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// A cantilever of two beams at height y; `isCut`: the second beam has a node of its own where they
// meet. Held at its first node, loaded at its last.
void AddCantilever(double y, bool isCut, bool isHeld, ModelText& model) {
  const auto first = static_cast<int>(model.nodes.size());
  for (const double x : {0.0, 1000.0, 2000.0}) model.nodes.push_back({x, y, 0.0});
  ModelText::Beam beam;
  beam.node1 = first;
  beam.node2 = first + 1;
  model.beams.push_back(beam);
  if (isCut) model.nodes.push_back({1000.0, y, 0.0});
  beam.node1 = isCut ? first + 3 : first + 1;
  beam.node2 = first + 2;
  model.beams.push_back(beam);
  if (isHeld) model.restraints.push_back({first, {1, 1, 1, 1, 1, 1}});
  model.forces.push_back({first + 2, {0.0, 0.0, -1.0, 0.0, 0.0, 0.0}});
}

ModelText EmptyModel() {
  ModelText model;
  model.materials = {{206000.0, 0.3, 7.85e-9}};
  model.tSections = {{100.0, 10.0, 60.0, 10.0}};
  return model;
}

TEST(JoinParts, MakesAnErrorOfTheSeamThatCutsAPartOff) {
  ModelText model = EmptyModel();
  AddCantilever(0.0, false, true, model);
  AddCantilever(500.0, true, true, model);
  const CheckReport report = Check(model);
  ExpectOnly(report, {"K202", "NPOIN", -1, 6, 0});
  EXPECT_EQ(CountFindings(report.findings, Severity::Error), 1U);
}

// Where both sides have a hold, the seam is a warning.
TEST(JoinParts, LeavesASeamOfHeldPartsAWarning) {
  ModelText model = EmptyModel();
  AddCantilever(0.0, true, true, model);
  model.restraints.push_back({2, {1, 1, 1, 1, 1, 1}});
  model.forces = {{3, {0.0, 0.0, -1.0, 0.0, 0.0, 0.0}}};
  const CheckReport report = Check(model);
  ExpectOnly(report, {"K202", "NPOIN", -1, 3, 0});
  EXPECT_EQ(CountFindings(report.findings, Severity::Error), 0U);
}

// However many other parts are loose, of which the findings are counted only.
TEST(JoinParts, DoesNotDependOnOtherParts) {
  ModelText model = EmptyModel();
  for (int k = 0; k < 30; ++k) AddCantilever(500.0 * k, false, false, model);
  for (int k = 30; k < 35; ++k) AddCantilever(500.0 * k, true, true, model);
  const CheckReport report = Check(model);
  std::size_t errors = 0;
  for (const Finding& finding : report.findings.findings) {
    if (finding.code == "K202") errors += finding.severity == Severity::Error ? 1U : 0U;
  }
  EXPECT_EQ(errors, 5U);
  EXPECT_EQ(report.findings.counts.at("K301"), 30U);
}

}  // namespace
}  // namespace kvx::test
