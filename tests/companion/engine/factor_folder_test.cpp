// Folders for factors: made, removed, and what killed runs have left.
#include "engine/factor_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

#include "report/stop.h"
#include "sparse/sparse_factor.h"
#include "support/expect_stop.h"
#include "support/run_program.h"
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

// Runs that begin at the same moment, each of which clears away what nobody holds.
TEST(FactorFolder, GivesManyRunsAtOnceTheirOwn) {
  // Windows removes a folder when the last who looks at it has gone: one may stay then.
  if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  const korvex::test::TempFolder parent;
  for (int turn = 0; turn < 20; ++turn) {
    std::vector<std::thread> runs;
    runs.reserve(4);
    std::atomic<int> losses{0};
    for (int k = 0; k < 4; ++k) {
      runs.emplace_back([&, k] {
        FactorFolder folder;
        try {
          MakeFactorFolder(parent.Path().u8string(), folder);
        } catch (const korvex::Stop&) {
          ++losses;
          return;
        }
        const std::string name = "factors_" + std::to_string(k);
        std::ofstream(folder.path / name) << "x";
        for (int look = 0; look < 20; ++look) {
          std::this_thread::yield();
          if (!fs::exists(folder.path / name)) ++losses;
        }
        if (std::distance(fs::directory_iterator(folder.path), {}) != 2) ++losses;
      });
    }
    for (std::thread& run : runs) run.join();
    EXPECT_EQ(losses, 0);
    EXPECT_TRUE(IsEmpty(parent.Path()));
  }
}

// Another process may make files there until the folder is gone.
TEST(FactorFolder, IsRemovedOnce) {
  const korvex::test::TempFolder parent;
  FactorFolder folder, other;
  MakeFactorFolder(parent.Path().u8string(), folder);
  std::ofstream(folder.path / "factors_1") << "x";
  RemoveFactorFolder(folder);
  EXPECT_TRUE(IsEmpty(parent.Path()));
  MakeFactorFolder(parent.Path().u8string(), other);
  RemoveFactorFolder(folder);  // has none any more
  EXPECT_TRUE(fs::exists(other.path));
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

// Of people who like the name, and of those who want others' files to be removed.
TEST(FactorFolder, LeavesWhatIsNotOfARun) {
  const korvex::test::TempFolder parent, elsewhere;
  fs::create_directory(elsewhere.Path() / "factors_2");
  std::ofstream(elsewhere.Path() / "factors_1") << "x";
  std::ofstream(elsewhere.Path() / "factors_2" / "file") << "x";
  std::error_code error;
  fs::create_directory_symlink(elsewhere.Path(), parent.Path() / "kvx-factors-1", error);
  if (error) GTEST_SKIP() << "there are no links here: " << error.message();
  fs::create_directories(parent.Path() / "kvx-factors-2" / "a");
  std::ofstream(parent.Path() / "kvx-factors-2" / "factors_1") << "x";
  fs::create_directory(parent.Path() / "kvx-factors-3");
  std::ofstream(parent.Path() / "kvx-factors-3" / "notes") << "x";
  fs::create_directory(parent.Path() / "kvx-factors-4");
  fs::create_symlink(elsewhere.Path() / "factors_1", parent.Path() / "kvx-factors-4" / "factors_1");
  std::ofstream(parent.Path() / "kvx-factors-5") << "x";
  {
    FactorFolder folder;
    MakeFactorFolder(parent.Path().u8string(), folder);
    EXPECT_EQ(folder.path.filename(), "kvx-factors-6");
  }
  for (const char* name :
       {"kvx-factors-1/factors_1", "kvx-factors-1/factors_2/file", "kvx-factors-2/factors_1",
        "kvx-factors-3/notes", "kvx-factors-4/factors_1", "kvx-factors-5"}) {
    EXPECT_TRUE(fs::exists(parent.Path() / name)) << name;
  }
  EXPECT_FALSE(fs::exists(parent.Path() / "kvx-factors-6"));
}

// More than the names that a single run tries; what was left goes before.
TEST(FactorFolder, GivesManyProcessesOfARunTheirOwn) {
  const korvex::test::TempFolder parent;
  const std::string place = parent.Path().u8string();
  for (const char* name : {"kvx-factors-7", "kvx-factors-90", "kvx-factors-x"}) {
    fs::create_directory(parent.Path() / name);
    std::ofstream(parent.Path() / name / "factors_1") << "x";
  }
  {
    std::vector<FactorFolder> folders(70);
    for (std::size_t k = 0; k < folders.size(); ++k) RemoveLeftFactors(place);
    for (std::size_t k = 0; k < folders.size(); ++k) {
      TakeFactorFolder(place, static_cast<int>(k) + 1, folders[k]);
      EXPECT_EQ(folders[k].path.filename(), "kvx-factors-" + std::to_string(k + 1));
      EXPECT_FALSE(fs::exists(folders[k].path / "factors_1"));
    }
    EXPECT_FALSE(fs::exists(parent.Path() / "kvx-factors-90"));
  }
  EXPECT_EQ(korvex::test::ListFolder(parent.Path()), std::vector<std::string>{"kvx-factors-x"});
}

TEST(FactorFolder, SaysThatAllNamesAreTaken) {
  const korvex::test::TempFolder parent;
  for (int number = 1; number <= 1024; ++number) {
    std::ofstream(parent.Path() / ("kvx-factors-" + std::to_string(number))) << "x";
  }
  FactorFolder folder;
  korvex::test::ExpectStop(
      [&] { MakeFactorFolder(parent.Path().u8string(), folder); },
      "The folder for the factors, \"" + parent.Path().u8string() +
          "\", cannot be written to: the names kvx-factors-1 to kvx-factors-1024 are taken, by "
          "runs "
          "that are at work there or by other folders. Remove those that nobody needs, or give "
          "another folder (--out-of-core DIR).",
      korvex::StopKind::ResultFile);
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
