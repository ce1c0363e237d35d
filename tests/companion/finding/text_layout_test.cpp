// Bytes of a file are shown and never obeyed; lines are broken where they should be.
#include "finding/text_layout.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(CleanText, LeavesValidTextAlone) {
  EXPECT_EQ(CleanText(""), "");
  EXPECT_EQ(CleanText("beam 10 at (1500, 600, 0) \\x"), "beam 10 at (1500, 600, 0) \\x");
  // U+00E4, U+20AC, U+1F6A2: two, three and four bytes.
  EXPECT_EQ(CleanText("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x9A\xA2"),
            "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x9A\xA2");
}

TEST(CleanText, EscapesControlCharacters) {
  EXPECT_EQ(CleanText("a\x1B[31mb"), "a\\x1B[31mb");
  EXPECT_EQ(CleanText(std::string_view("\0\t\n\r\x7F", 5)), "\\x00\\x09\\x0A\\x0D\\x7F");
  EXPECT_EQ(CleanText("\xC2\x9B"), "\\xC2\\x9B");                        // U+009B, as escape and [
  EXPECT_EQ(CleanText("\xE2\x80\xAE"), "\\xE2\\x80\\xAE");               // U+202E, right to left
  EXPECT_EQ(CleanText("\xE2\x81\xA6"), "\\xE2\\x81\\xA6");               // U+2066
  EXPECT_EQ(CleanText("\xC2\xA0\xE2\x80\x93"), "\xC2\xA0\xE2\x80\x93");  // U+00A0, U+2013 are none
}

// The cases of the Unicode standard, section 3.9, table 3-7.
TEST(CleanText, EscapesWhatIsNoUtf8) {
  EXPECT_EQ(CleanText("\x80"), "\\x80");
  EXPECT_EQ(CleanText("\xFF"), "\\xFF");
  EXPECT_EQ(CleanText("\xC3"), "\\xC3");                    // cut off
  EXPECT_EQ(CleanText("\xC3("), "\\xC3(");                  // not continued
  EXPECT_EQ(CleanText("\xC0\xAF"), "\\xC0\\xAF");           // longer than needed
  EXPECT_EQ(CleanText("\xE0\x80\xAF"), "\\xE0\\x80\\xAF");  // the same with three
  EXPECT_EQ(CleanText("\xF0\x8F\xBF\xBF"), "\\xF0\\x8F\\xBF\\xBF");
  EXPECT_EQ(CleanText("\xED\xA0\x80"), "\\xED\\xA0\\x80");           // half of a pair of UTF-16
  EXPECT_EQ(CleanText("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");  // beyond U+10FFFF
  EXPECT_EQ(CleanText("\xBC\xC6 GBK"), "\\xBC\\xC6 GBK");
}

TEST(WrapText, BreaksAtTheWidth) {
  EXPECT_EQ(WrapText("", 10, "> ", "  "), "> \n");
  EXPECT_EQ(WrapText("one two", 9, "> ", "  "), "> one two\n");  // nine characters
  EXPECT_EQ(WrapText("one two", 8, "> ", "  "), "> one\n  two\n");
  EXPECT_EQ(WrapText(" one  two\nthree ", 100, "", ""), "one two three\n");
  EXPECT_EQ(WrapText("a-word-longer-than-the-width b", 10, "> ", "  "),
            "> a-word-longer-than-the-width\n  b\n");
}

// "ää" has two characters and four bytes.
TEST(WrapText, CountsCharacters) {
  EXPECT_EQ(WrapText("\xC3\xA4\xC3\xA4 b", 4, "", ""), "\xC3\xA4\xC3\xA4 b\n");
}

TEST(CountText, KnowsOneAndSeveral) {
  EXPECT_EQ(CountText(0, "node", "nodes"), "0 nodes");
  EXPECT_EQ(CountText(1, "node", "nodes"), "1 node");
  EXPECT_EQ(CountText(2, "node", "nodes"), "2 nodes");
}

}  // namespace
}  // namespace kvx
