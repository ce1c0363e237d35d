// Disjoint sets: joined directly and by way of other numbers, counted and listed.
#include "skyline/disjoint_sets.h"

#include <gtest/gtest.h>

namespace korvex {
namespace {

using Numbers = std::vector<std::int32_t>;

TEST(DisjointSets, EachNumberIsASetAtFirst) {
  DisjointSets sets;
  InitSets(sets, 3);
  EXPECT_EQ(CountSets(sets), 3);
  for (std::int32_t i = 0; i < 3; ++i) EXPECT_EQ(FindSet(sets, i), i);
}

// 5 - 3 - 1 and 4 - 0; 2 stays alone.
DisjointSets MakeThreeSets() {
  DisjointSets sets;
  InitSets(sets, 6);
  JoinSets(sets, 5, 3);
  JoinSets(sets, 4, 0);
  JoinSets(sets, 1, 5);
  JoinSets(sets, 3, 1);  // joined already
  return sets;
}

// FindSet returns the lowest number of the set.
TEST(DisjointSets, JoinsByWayOfOtherNumbers) {
  DisjointSets sets = MakeThreeSets();
  const Numbers lowest = {0, 1, 2, 1, 0, 1};
  for (std::int32_t i = 0; i < 6; ++i) {
    EXPECT_EQ(FindSet(sets, i), lowest[static_cast<std::size_t>(i)]) << i;
  }
}

TEST(DisjointSets, ListsSetsByTheirLowestNumbers) {
  DisjointSets sets = MakeThreeSets();
  EXPECT_EQ(CountSets(sets), 3);
  SetList list;
  ListSets(sets, list);
  EXPECT_EQ(list.members, (Numbers{0, 4, 1, 3, 5, 2}));
  EXPECT_EQ(list.begins, (Numbers{0, 2, 5, 6}));
  EXPECT_EQ(list.places, (Numbers{0, 0, 0, 1, 1, 2}));
}

TEST(DisjointSets, ListsNoSetsWithoutNumbers) {
  DisjointSets sets;
  InitSets(sets, 0);
  EXPECT_EQ(CountSets(sets), 0);
  SetList list;
  ListSets(sets, list);
  EXPECT_TRUE(list.members.empty());
  EXPECT_EQ(list.begins, Numbers{0});
  EXPECT_TRUE(list.places.empty());
}

// Joined from the highest number down, each number links to the next lower one: the longest path.
TEST(DisjointSets, FollowsLongPaths) {
  constexpr std::int32_t n = 100000;
  DisjointSets sets;
  InitSets(sets, n);
  for (std::int32_t i = n - 1; i > 0; --i) JoinSets(sets, i, i - 1);
  for (std::int32_t i = 0; i < n; ++i) ASSERT_EQ(FindSet(sets, i), 0);
}

}  // namespace
}  // namespace korvex
