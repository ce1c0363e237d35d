// The checks against the solver on 5,000 spoilt models: wherever the checks have no error, the
// solver reads what they have read, and all its results are finite.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "mutate_model.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "support/solver_agreement.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;

// The seeds of the fuzzer, in the order of their names, and twelve good models.
std::vector<std::string> Seeds() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(fs::path(KORVEX_SOURCE) / "fuzz" / "corpus")) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<std::string> texts;
  for (const fs::path& file : files) texts.push_back(korvex::test::ReadFile(file));
  for (std::uint32_t seed = 0; seed < 12; ++seed) {
    texts.push_back(korvex::test::WriteModel(MakeGoodModel(seed)));
  }
  return texts;
}

TEST(Agreement, WhereChecksHaveNoErrorResultsAreFinite) {
  constexpr std::uint64_t Models = korvex::test::Repeats(5000);
  const std::vector<std::string> seeds = Seeds();
  const korvex::test::TempFolder folder;
  int disagreements = 0;
  for (std::uint64_t k = 0; k < Models && disagreements < 10; ++k) {
    std::string text = seeds[k % seeds.size()];
    korvex::fuzz::MutateModel(text, k);
    const std::string difference = FindDisagreement(text, folder.Path().string() + "/");
    if (difference.empty()) continue;
    ++disagreements;
    ADD_FAILURE() << "mutation " << k << ": " << difference;
    if (const char* keep = std::getenv("KORVEX_KEEP_MODELS")) {
      std::ofstream(fs::path(keep) / ("disagreement-" + std::to_string(k) + ".txt"),
                    std::ios::binary)
          << text;
    }
  }
}

}  // namespace
}  // namespace kvx::test
