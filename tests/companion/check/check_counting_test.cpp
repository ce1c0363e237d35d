// A file that counts its nodes from 1 is one finding; one reference beyond the last node is not.
#include "check/check_counting.h"

#include <gtest/gtest.h>

#include "support/expect_findings.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

TEST(CheckCounting, NamesAFileThatCountsFromOne) {
  for (std::uint32_t seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    for (auto& shell : model.shells4) {
      for (int& node : shell.nodes) ++node;
    }
    for (auto& shell : model.shells3) {
      for (int& node : shell.nodes) ++node;
    }
    for (auto& beam : model.beams) {
      ++beam.node1;
      ++beam.node2;
    }
    for (auto& row : model.restraints) ++row.node;
    for (auto& row : model.forces) ++row.node;
    ExpectOnly(Check(model), {"K124", "", -1, static_cast<int>(model.nodes.size()), 0});
  }
}

TEST(CheckCounting, LeavesOneWrongReferenceToTheOtherChecks) {
  for (std::uint32_t seed = 0; seed < 40; ++seed) {
    ModelText model = MakeGoodModel(seed);
    if (model.shells4.empty()) continue;
    const auto last = static_cast<int>(model.nodes.size());
    model.shells4[0].nodes[0] = last;
    const CheckReport report = Check(model);
    EXPECT_EQ(report.findings.counts.count("K124"), 0U);
    EXPECT_EQ(report.findings.counts.count("K101"), 1U);
  }
}

}  // namespace
}  // namespace kvx::test
