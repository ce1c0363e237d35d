// The share of work: parts of the plan, a plan that changes, work beyond the plan.
#include "skyline/work_share.h"

#include <gtest/gtest.h>

namespace korvex {
namespace {

TEST(WorkShare, GrowsWithTheWork) {
  std::vector<double> shares;
  WorkShare work;
  work.report = [&](double share) { shares.push_back(share); };
  work.rest = 8.0;
  for (const double units : {2.0, 4.0, 2.0}) AddWork(units, work);
  EXPECT_EQ(shares, (std::vector<double>{0.25, 0.75, 1.0}));
  EXPECT_EQ(work.rest, 0.0);
}

// Half done; then what is left is twice as much as was planned: it fills the other half.
TEST(WorkShare, GoesOnWhereThePlanChanges) {
  WorkShare work;
  work.rest = 8.0;
  AddWork(4.0, work);
  EXPECT_EQ(work.share, 0.5);
  work.rest = 16.0;
  AddWork(8.0, work);
  EXPECT_EQ(work.share, 0.75);
  AddWork(8.0, work);
  EXPECT_EQ(work.share, 1.0);
}

TEST(WorkShare, IsNeverMoreThanOne) {
  WorkShare work;
  AddWork(1.0, work);  // nothing was planned
  EXPECT_EQ(work.share, 1.0);
  work.rest = 3.0;
  AddWork(5.0, work);
  EXPECT_EQ(work.share, 1.0);
  EXPECT_EQ(work.rest, 0.0);
}

// Heights 1, 2, 3: squares 1 + 4 + 9, and 80 for each of the 6 entries.
TEST(WorkShare, CountsColumns) {
  SkylineMatrix K;
  K.ColumnHeights = {1, 2, 3};
  EXPECT_EQ(CountFactorUnits(K, 0, 3), 14.0);
  EXPECT_EQ(CountFactorUnits(K, 1, 2), 4.0);
  EXPECT_EQ(CountEntryUnits(K, 0, 3), 480.0);
  EXPECT_EQ(CountEntryUnits(K, 2, 3), 240.0);
}

}  // namespace
}  // namespace korvex
