// The checks have nothing to say against good models: random ones, and the examples.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/expect_findings.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

TEST(CheckGoodModels, HasNothingAgainstRandomOnes) {
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(200); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ExpectNone(Check(MakeGoodModel(seed)));
  }
}

TEST(CheckGoodModels, HasNothingAgainstTheExamples) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KORVEX_EXAMPLES)) {
    const std::filesystem::path file = entry.path() / "fem_solving.txt";
    if (!std::filesystem::exists(file)) continue;
    SCOPED_TRACE(file.string());
    ExpectNone(Check(korvex::test::ReadFile(file)));
    ++count;
  }
  EXPECT_GE(count, 3);
}

}  // namespace
}  // namespace kvx::test
