// Every code is explained: none of its six texts is missing. Some have no example: what is wrong
// with a file that is not plain text cannot be seen, no file is known that cannot be understood,
// and what is wrong with result files does not stand in a model file.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "finding/codes.h"

namespace kvx {
namespace {

TEST(Explanations, AreComplete) {
  const std::set<std::string> withoutExample{"K002", "K019", "K711", "K712", "K713",
                                             "K714", "K715", "K716", "K717"};
  for (const CodeText* code : ListCodes()) {
    EXPECT_STRNE(code->title, "") << code->code;
    EXPECT_STRNE(code->meaning, "") << code->code << ": what it means";
    EXPECT_STRNE(code->solver, "") << code->code << ": what the solver does with it";
    EXPECT_STRNE(code->remedy, "") << code->code << ": what to do";
    if (withoutExample.count(code->code) > 0) continue;
    EXPECT_STRNE(code->before, "") << code->code << ": an example";
    EXPECT_STRNE(code->after, "") << code->code << ": the example mended";
    EXPECT_STRNE(code->before, code->after) << code->code;
  }
}

// Sentences end, and the examples are lines without an end of their own.
TEST(Explanations, AreSentencesAndLines) {
  for (const CodeText* code : ListCodes()) {
    for (const std::string text : {code->meaning, code->solver, code->remedy}) {
      if (text.empty()) continue;
      EXPECT_TRUE(text.back() == '.' || text.back() == '?') << code->code << ": " << text;
    }
    for (const std::string lines : {code->before, code->after}) {
      if (lines.empty()) continue;
      EXPECT_NE(lines.back(), '\n') << code->code << ": " << lines;
    }
  }
}

}  // namespace
}  // namespace kvx
