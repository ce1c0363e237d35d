// Lists of numbers as options take them.
#include "commands/number_list.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

std::vector<std::int32_t> NumbersOf(const std::string& text, std::size_t count) {
  NumberList list;
  std::string complaint;
  std::vector<std::int32_t> numbers;
  EXPECT_TRUE(ParseNumberList(text, list, complaint)) << complaint;
  EXPECT_TRUE(ResolveNumberList(list, count, "beam", numbers, complaint)) << complaint;
  return numbers;
}

std::string ComplaintOf(const std::string& text, std::size_t count = 10) {
  NumberList list;
  std::string complaint;
  std::vector<std::int32_t> numbers;
  if (ParseNumberList(text, list, complaint)) {
    EXPECT_FALSE(ResolveNumberList(list, count, "beam", numbers, complaint)) << text;
  }
  return complaint;
}

using Numbers = std::vector<std::int32_t>;

TEST(NumberList, HoldsNumbersAndRanges) {
  EXPECT_EQ(NumbersOf("0", 1), Numbers{0});
  EXPECT_EQ(NumbersOf("5-8,2", 9), (Numbers{2, 5, 6, 7, 8}));
  EXPECT_EQ(NumbersOf(" 3 , 1 - 3,3-3", 4), (Numbers{1, 2, 3}));
  EXPECT_EQ(NumbersOf("all", 3), (Numbers{0, 1, 2}));
}

TEST(NumberList, ComplainsAboutWhatIsNone) {
  for (const char* text :
       {"", ",", "5,", "a", "-3", "5-", "-", "1.5", "1 2", "5--8", "1-2-3", "+1", "0x1", "All"}) {
    EXPECT_EQ(ComplaintOf(text), '"' + std::string(text) +
                                     "\" is no list of numbers. Write all, or numbers such as "
                                     "5-8,12.")
        << text;
  }
  EXPECT_EQ(ComplaintOf("1,8-5"), "\"8-5\" runs backwards. Write 5-8.");
}

TEST(NumberList, ComplainsAboutNumbersBeyondTheTable) {
  EXPECT_EQ(ComplaintOf("3,10"),
            "there is no beam 10. The model has 10 beams, numbered from 0 to 9.");
  EXPECT_EQ(ComplaintOf("8-30"),
            "there is no beam 30. The model has 10 beams, numbered from 0 to 9.");
  EXPECT_EQ(ComplaintOf("1", 1), "there is no beam 1. The model has 1 beam, numbered from 0.");
  EXPECT_EQ(ComplaintOf("all", 0), "the model has no beams.");
  // No memory is taken for the range.
  EXPECT_EQ(
      ComplaintOf("0-99999999999999999999999999"),
      "there is no beam with so large a number. The model has 10 beams, numbered from 0 to 9.");
  EXPECT_EQ(ComplaintOf("0-4000000000").substr(0, 30), "there is no beam 4000000000. T");
}

}  // namespace
}  // namespace kvx::test
