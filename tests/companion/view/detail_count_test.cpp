// The number of shells of detail models, against the models that a run makes.
#include "view/detail_count.h"

#include <gtest/gtest.h>

#include "audit/solved_model.h"
#include "beamshell/generate_beam_shells.h"
#include "deck/read_tables.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

double Count(const ModelText& model) {
  korvex::ModelTables tables;
  korvex::ReadTables(WriteModel(model), {}, tables);
  return CountDetailShells(tables);
}

TEST(KvxDetailCount, IsThatOfARun) {
  double beams = 0.0;
  for (std::uint32_t seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(seed);
    const ModelText model = MakeGoodModel(seed);
    SolvedModel solved;
    SolveInMemory(WriteModel(model), {}, solved);
    korvex::GenerateBeamShells(solved.model);
    double shells = 0.0;
    for (const korvex::BeamShellModel& detail : solved.model.BeamShellModels) {
      shells += static_cast<double>(detail.Shells.size());
      beams += 1.0;
    }
    EXPECT_EQ(Count(model), shells);
  }
  EXPECT_GT(beams, 100.0);  // the models have some
}

// A web of 3 segments of 100, a flange of 2 sides of 50, the topmost web segment 5 longer: 2000 /
// 105 gives 19 steps of 5 shells.
TEST(KvxDetailCount, OfOneBeam) {
  ModelText model;
  model.materials = {{210000.0, 0.3, 0.0}};
  model.tSections = {{300.0, 10.0, 100.0, 10.0}};
  model.nodes = {{0, 0, 0}, {2000, 0, 0}};
  model.beams.resize(1);
  EXPECT_EQ(Count(model), 95.0);
  model.beams[0].BeamSecType = 7;
  EXPECT_EQ(Count(model), 0.0);
  model.beams[0] = {};
  model.beams[0].BeamSecIndex = -1;
  EXPECT_EQ(Count(model), 0.0);
  model.beams[0] = {};
  model.beams[0].node1 = 5;  // no length: one step
  EXPECT_EQ(Count(model), 5.0);
  model.beams[0] = {};
  model.nodes[1] = {1e150, 0, 0};
  EXPECT_GT(Count(model), 1e140);  // more than any integer
}

}  // namespace
}  // namespace kvx::test
