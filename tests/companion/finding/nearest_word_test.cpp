// The nearest words, as people mistype them.
#include "finding/nearest_word.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using Words = std::vector<std::string>;

TEST(NearestWord, CountsSlips) {
  EXPECT_EQ(CountSlips("", ""), 0U);
  EXPECT_EQ(CountSlips("check", "check"), 0U);
  EXPECT_EQ(CountSlips("", "abc"), 3U);
  EXPECT_EQ(CountSlips("abc", ""), 3U);
  EXPECT_EQ(CountSlips("chek", "check"), 1U);    // left out
  EXPECT_EQ(CountSlips("checkk", "check"), 1U);  // doubled
  EXPECT_EQ(CountSlips("chack", "check"), 1U);   // changed
  EXPECT_EQ(CountSlips("chekc", "check"), 1U);   // swapped
  EXPECT_EQ(CountSlips("hceck", "check"), 1U);   // swapped at the start
  EXPECT_EQ(CountSlips("ca", "abc"), 3U);        // what was swapped is not changed again
}

TEST(NearestWord, FindsTheNearest) {
  const Words commands{"check", "explain", "licenses", "--help", "--version"};
  EXPECT_EQ(FindNearest("chek", commands), Words{"check"});
  EXPECT_EQ(FindNearest("chk", commands), Words{"check"});
  EXPECT_EQ(FindNearest("licences", commands), Words{"licenses"});
  EXPECT_EQ(FindNearest("help", commands), Words{"--help"});
  EXPECT_EQ(FindNearest("version", commands), Words{"--version"});
  EXPECT_EQ(FindNearest("ex", commands), Words{"explain"});
  EXPECT_EQ(FindNearest("K14", {"K014", "K101", "K104"}), (Words{"K014", "K104"}));
}

TEST(NearestWord, FindsNoneWhereNothingIsNear) {
  EXPECT_EQ(FindNearest("foo", {"check", "explain"}), Words{});
  EXPECT_EQ(FindNearest("", {"check", "explain"}), Words{});
  EXPECT_EQ(FindNearest("K999", {"K001", "K109"}), Words{});
  EXPECT_EQ(FindNearest("check", {}), Words{});
  EXPECT_EQ(FindNearest(std::string(100000, 'c'), {"check"}), Words{});
}

}  // namespace
}  // namespace kvx
