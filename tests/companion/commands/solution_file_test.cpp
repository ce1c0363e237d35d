// solution.json: what was written comes back, and what is not of the model, or not whole, is not
// used.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>

#include "commands/solution_file.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using korvex::test::TempFolder;
using korvex::test::WriteFile;

const ModelFileId ThisFile{9120, 0x85944171f73967e8U};

SolutionRecord MakeRecord() {
  SolutionRecord record;
  record.engine = EngineChoice::Sparse;
  record.isOutOfCore = true;
  record.threads = 2;
  record.equations = 600;
  record.freeEquations = 594;
  record.orderSeconds = 0.5;
  record.factorSeconds = 1.25;
  record.solveSeconds = 0.1;
  record.bytes = 5000000000U;
  record.diskBytes = 123;
  record.flops = 1.5e12;
  record.refinementSteps = 1;
  record.loads.resize(2);
  record.loads[1] = {1e-17, 2e-16, 3e5, 5.5};
  return record;
}

// The current folder is that of the test for its time.
struct SolutionFile : testing::Test {
  TempFolder folder;
  fs::path before = fs::current_path();

  SolutionFile() { fs::current_path(folder.Path()); }
  ~SolutionFile() override { fs::current_path(before); }
  SolutionFile(const SolutionFile&) = delete;
  SolutionFile& operator=(const SolutionFile&) = delete;
};

TEST_F(SolutionFile, ComesBack) {
  EXPECT_FALSE(ReadSolutionFile(ThisFile));
  const std::string text = SolutionFileText(ThisFile, SolutionOfLoad(MakeRecord(), 1));
  WriteFile("solution.json", text);
  const auto read = ReadSolutionFile(ThisFile);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->loads.size(), 1U);
  EXPECT_EQ(SolutionFileText(ThisFile, *read), text);
  EXPECT_EQ(read->engine, EngineChoice::Sparse);
  EXPECT_TRUE(read->isOutOfCore);
  EXPECT_EQ(read->bytes, 5000000000U);
  EXPECT_EQ(read->loads[0].digitsLost, 5.5);
}

TEST_F(SolutionFile, KeepsWhatIsNotKnown) {
  WriteFile("solution.json", SolutionFileText(ThisFile, SolutionOfLoad(MakeRecord(), 0)));
  const auto read = ReadSolutionFile(ThisFile);
  ASSERT_TRUE(read);
  EXPECT_TRUE(std::isnan(read->loads[0].residual));
  EXPECT_TRUE(std::isnan(read->loads[0].digitsLost));
}

// JSON has no infinite numbers: a word stands for them, and no other word.
TEST_F(SolutionFile, KeepsAConditionThatIsInfinite) {
  const double infinity = std::numeric_limits<double>::infinity();
  SolutionRecord record = MakeRecord();
  record.loads = {{1e-17, 2e-16, infinity, infinity}};
  const std::string text = SolutionFileText(ThisFile, record);
  const Json json = Json::parse(text);
  EXPECT_EQ(json["condition"], "infinite");
  EXPECT_EQ(json["digits_lost"], "infinite");
  WriteFile("solution.json", text);
  const auto read = ReadSolutionFile(ThisFile);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->loads[0].condition, infinity);
  EXPECT_EQ(read->loads[0].digitsLost, infinity);
  for (const char* key : {"condition", "digits_lost", "threads"}) {
    Json spoilt = json;
    spoilt[key] = std::string(key) == "threads" ? "infinite" : "large";
    WriteFile("solution.json", spoilt.dump());
    EXPECT_FALSE(ReadSolutionFile(ThisFile)) << key;
  }
}

TEST_F(SolutionFile, IsNotThatOfAnotherModel) {
  WriteFile("solution.json", SolutionFileText(ThisFile, SolutionOfLoad(MakeRecord(), 1)));
  EXPECT_FALSE(ReadSolutionFile({9121, ThisFile.hash}));
  EXPECT_FALSE(ReadSolutionFile({9120, ThisFile.hash + 1}));
  std::string reason;
  ReadSolutionFile({9121, ThisFile.hash}, reason);
  EXPECT_EQ(reason, "solution.json is of another model file, or of an earlier state of this one.");
  EXPECT_TRUE(ReadSolutionFile(ThisFile, reason));
  EXPECT_EQ(reason, "");
}

TEST_F(SolutionFile, IsNotUsedWhereItIsNotAsItWasWritten) {
  const std::string text = SolutionFileText(ThisFile, SolutionOfLoad(MakeRecord(), 1));
  for (const std::string& spoilt :
       {std::string(), std::string("[]"), std::string("null"), text.substr(0, text.size() / 2),
        std::string(5000000, ' ') + text}) {
    WriteFile("solution.json", spoilt);
    std::string reason;
    EXPECT_FALSE(ReadSolutionFile(ThisFile, reason)) << spoilt.substr(0, 40);
    EXPECT_NE(reason, "");
  }
  const Json whole = Json::parse(text);
  for (const auto& [key, value] : whole.items()) {
    SCOPED_TRACE(key);
    Json spoilt = whole;
    spoilt.erase(key);
    WriteFile("solution.json", spoilt.dump());
    EXPECT_FALSE(ReadSolutionFile(ThisFile));
    spoilt = whole;
    spoilt[key] = Json::array({1});
    WriteFile("solution.json", spoilt.dump());
    EXPECT_FALSE(ReadSolutionFile(ThisFile));
  }
  fs::remove("solution.json");
  fs::create_directory("solution.json");
  EXPECT_FALSE(ReadSolutionFile(ThisFile));
}

// More than any cluster has today; and a row that lacks something.
TEST_F(SolutionFile, KeepsWhatEachRankDid) {
  SolutionRecord record = SolutionOfLoad(MakeRecord(), 1);
  for (std::uint64_t rank = 0; rank < 10000; ++rank) {
    record.ranks.push_back({rank + 1, rank + 2, 0.5 + static_cast<double>(rank), rank + 3});
  }
  const std::string text = SolutionFileText(ThisFile, record);
  WriteFile("solution.json", text);
  const auto read = ReadSolutionFile(ThisFile);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->ranks.size(), record.ranks.size());
  EXPECT_EQ(read->ranks[7].elements, 8U);
  EXPECT_EQ(read->ranks[7].entries, 9U);
  EXPECT_EQ(read->ranks[7].flops, 7.5);
  EXPECT_EQ(read->ranks[7].bytes, 10U);
  for (const char* key : {"elements", "entries", "flops", "bytes"}) {
    Json spoilt = Json::parse(text);
    spoilt["ranks"][3].erase(key);
    WriteFile("solution.json", spoilt.dump());
    EXPECT_FALSE(ReadSolutionFile(ThisFile)) << key;
  }
}

TEST(EngineJson, HasNoNameWhereNothingFits) {
  SolutionPlan plan;
  plan.engine = EngineChoice::Sparse;
  plan.reason = "It takes less time.";
  plan.sparse = {true, "", 12.0, 1000, 0};
  plan.skyline.reason = "It does not fit.";
  const Json fits = EngineJson(plan, true, nullptr);
  EXPECT_EQ(fits["name"], "sparse");
  EXPECT_EQ(fits["reason"], "It takes less time.");
  EXPECT_EQ(fits["prediction"]["sparse"]["seconds"], 12.0);
  EXPECT_TRUE(fits["prediction"]["skyline"]["seconds"].is_null());  // not predicted: no bytes
  EXPECT_EQ(fits["prediction"]["skyline"]["reason"], "It does not fit.");
  EXPECT_TRUE(fits["solution"].is_null());
  const SolutionRecord record = MakeRecord();
  const Json none = EngineJson(plan, false, &record);
  EXPECT_TRUE(none["name"].is_null());
  EXPECT_EQ(none["solution"]["threads"], 2);
  EXPECT_FALSE(none["solution"].contains("digits_lost"));  // of two loads
}

}  // namespace
}  // namespace kvx::test
