// The values of --threads, --engine, --memory and --out-of-core.
#include <gtest/gtest.h>

#include "commands/core_count.h"
#include "commands/engine_options.h"
#include "platform/usable_cores.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::TempFolder;

TEST(EngineOptions, TakesNumbersOfThreads) {
  for (const char* text : {"1", "2", "64", "512", "007"}) EXPECT_EQ(RefuseThreads(text), "");
  for (const std::string text : {"0", "513", "-1", "1.5", "two", "", " 2", "99999999999", "1e2"}) {
    EXPECT_EQ(RefuseThreads(text), "write a number from 1 to 512, not \"" + text + "\"");
  }
}

TEST(EngineOptions, TakesGigabytes) {
  for (const char* text : {"1", "0.5", "2.5", "16", "1e3"}) EXPECT_EQ(RefuseMemory(text), "");
  for (const std::string text :
       {"0", "-3", "nan", "inf", "16GB", "2,5", "", "1e20", "1e-9", "0x10", " 4"}) {
    EXPECT_EQ(RefuseMemory(text),
              "write a number of gigabytes from 0.001 to 1000000000, such as 16 or 2.5, not \"" +
                  text + "\"");
  }
}

TEST(EngineOptions, SuggestsTheEngineThatWasMeant) {
  for (const char* text : {"auto", "skyline", "sparse"}) EXPECT_EQ(RefuseEngine(text), "");
  EXPECT_EQ(RefuseEngine("sprase"), "there is no engine \"sprase\"; perhaps \"sparse\" is meant");
  EXPECT_EQ(RefuseEngine("sky"), "there is no engine \"sky\"; perhaps \"skyline\" is meant");
  EXPECT_EQ(RefuseEngine("x"), "there is no engine \"x\"; write auto, skyline or sparse");
  EXPECT_EQ(RefuseEngine(""), "there is no engine \"\"; write auto, skyline or sparse");
}

TEST(EngineOptions, RefusesAFolderForTheSkyline) {
  EngineOptions options;
  EXPECT_EQ(RefuseTogether(options), "");
  options.outOfCore = "/var/tmp";
  EXPECT_EQ(RefuseTogether(options), "");
  options.engine = "sparse";
  EXPECT_EQ(RefuseTogether(options), "");
  options.engine = "skyline";
  EXPECT_EQ(RefuseTogether(options),
            "--out-of-core is for the sparse engine: leave it out, or --engine skyline.");
}

TEST(EngineOptions, BecomeSettings) {
  EngineOptions options;
  const EngineSettings none = MakeEngineSettings(options);
  EXPECT_EQ(none.choice, EngineChoice::Auto);
  EXPECT_EQ(none.threads, std::min(korvex::CountUsableCores(), MostThreads));
  EXPECT_EQ(none.memory, 0U);
  EXPECT_EQ(none.outOfCore, "");
  options = {3, "sparse", 1.5, "factors"};
  const EngineSettings all = MakeEngineSettings(options);
  EXPECT_EQ(all.choice, EngineChoice::Sparse);
  EXPECT_EQ(all.threads, 3);
  EXPECT_EQ(all.memory, 1610612736U);  // 1.5 x 2^30
  EXPECT_TRUE(fs::u8path(all.outOfCore).is_absolute());
  EXPECT_EQ(fs::u8path(all.outOfCore), fs::current_path() / "factors");
  options.engine = "skyline";
  EXPECT_EQ(MakeEngineSettings(options).choice, EngineChoice::Skyline);
}

TEST(EngineOptions, LeaveTheFolderForTheFactorsAsItIs) {
  const TempFolder folder;
  EngineSettings settings;
  EXPECT_EQ(CheckOutOfCore("kvx run", settings), ExitFine);
  settings.outOfCore = folder.Path().u8string();
  EXPECT_EQ(CheckOutOfCore("kvx run", settings), ExitFine);
  EXPECT_TRUE(fs::is_empty(folder.Path()));
  settings.outOfCore = (folder.Path() / "none").u8string();
  EXPECT_EQ(CheckOutOfCore("kvx run", settings), ExitOutputFailed);
  korvex::test::WriteFile(folder.Path() / "file", "");
  settings.outOfCore = (folder.Path() / "file").u8string();
  EXPECT_EQ(CheckOutOfCore("kvx run", settings), ExitOutputFailed);
}

}  // namespace
}  // namespace kvx::test
