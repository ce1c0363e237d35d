// Folders for factors: made, removed, and what killed runs have left.
#include "engine/factor_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>

#include "report/stop.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;

bool IsEmpty(const fs::path& folder) {
  return fs::directory_iterator(folder) == fs::directory_iterator();
}

TEST(FactorFolder, GoesWithItsFiles) {
  const korvex::test::TempFolder parent;
  {
    FactorFolder folder;
    MakeFactorFolder(parent.Path().u8string(), folder);
    EXPECT_TRUE(fs::is_directory(folder.path));
    std::ofstream(folder.path / "factors_1") << "x";
  }
  EXPECT_TRUE(IsEmpty(parent.Path()));
}

TEST(FactorFolder, GivesTwoRunsTheirOwn) {
  const korvex::test::TempFolder parent;
  FactorFolder second;
  {
    FactorFolder first;
    MakeFactorFolder(parent.Path().u8string(), first);
    MakeFactorFolder(parent.Path().u8string(), second);
    EXPECT_NE(first.path, second.path);
    std::ofstream(second.path / "factors_1") << "x";
  }
  EXPECT_TRUE(fs::exists(second.path / "factors_1"));
}

// Folders whose lock nobody holds; other things stay.
TEST(FactorFolder, RemovesWhatKilledRunsHaveLeft) {
  const korvex::test::TempFolder parent;
  for (const char* name : {"kvx-factors-1", "kvx-factors-3", "mine"}) {
    fs::create_directory(parent.Path() / name);
    std::ofstream(parent.Path() / name / "factors_1") << "x";
  }
  {
    FactorFolder folder;
    MakeFactorFolder(parent.Path().u8string(), folder);
    EXPECT_FALSE(fs::exists(folder.path / "factors_1"));
    EXPECT_FALSE(fs::exists(parent.Path() / "kvx-factors-3"));
  }
  EXPECT_FALSE(fs::exists(parent.Path() / "kvx-factors-1"));
  EXPECT_TRUE(fs::exists(parent.Path() / "mine" / "factors_1"));
}

TEST(FactorFolder, StopsWhereThereIsNone) {
  const korvex::test::TempFolder parent;
  FactorFolder folder;
  try {
    MakeFactorFolder((parent.Path() / "none").u8string(), folder);
    FAIL();
  } catch (const korvex::Stop& stop) {
    EXPECT_EQ(stop.kind, korvex::StopKind::ResultFile);
    EXPECT_NE(stop.text.find("cannot be written to"), std::string::npos) << stop.text;
  }
}

}  // namespace
}  // namespace kvx::test
