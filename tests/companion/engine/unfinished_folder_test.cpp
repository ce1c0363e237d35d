// New files replace those that were there all together, or not at all; also after a process was
// killed on the way.
#include "engine/unfinished_folder.h"

#include <gtest/gtest.h>

#include "report/stop.h"
#include "support/expect_stop.h"
#include "support/folder_bytes.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::StopKind;
using korvex::test::ExpectStop;
using korvex::test::TempFolder;
using korvex::test::WriteFile;

const std::vector<FileToMake> Files{{"a", "A"}, {"b", "B"}, {"c", "C"}};

// Of the files only "b" is new.
const FolderBytes Old{{"a", "old a"}, {"c", "old c"}, {"other", "mine"}};
const FolderBytes New{{"a", "new a"}, {"b", "new b"}, {"c", "new c"}, {"other", "mine"}};

void Fill(const fs::path& folder, const FolderBytes& files) {
  for (const auto& [name, bytes] : files) WriteFile(folder / name, bytes);
}

struct UnfinishedFolderTest : testing::Test {
  TempFolder folder;
  std::string prefix = folder.Path().string() + '/';
  fs::path unfinished = folder.Path() / "kvx-unfinished";
  void SetUp() override { Fill(folder.Path(), Old); }
  void Make() const {
    for (const char* name : {"a", "b", "c"}) {
      WriteFile(unfinished / name, std::string("new ") + name);
    }
  }
};

TEST_F(UnfinishedFolderTest, GivesAllFilesTheirNames) {
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, Files, making);
    EXPECT_EQ(making.prefix, prefix + "kvx-unfinished/");
    EXPECT_TRUE(making.place.is_absolute());
    EXPECT_TRUE(fs::exists(making.place / "other"));
    Make();
    MoveFiles(making);
    // What is left there is never taken back.
    EXPECT_TRUE(fs::exists(unfinished));
    EXPECT_FALSE(fs::exists(unfinished / "old"));
  }
  EXPECT_EQ(ReadFolder(folder.Path()), New);
}

TEST_F(UnfinishedFolderTest, LeavesNothingWithoutAMove) {
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, Files, making);
    Make();
  }
  EXPECT_EQ(ReadFolder(folder.Path()), Old);
}

TEST_F(UnfinishedFolderTest, MovesNothingWhereAFileIsMissing) {
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, Files, making);
    Make();
    fs::remove(unfinished / "c");
    ExpectStop([&] { MoveFiles(making); }, "C cannot be written: it has not been made.",
               StopKind::ResultFile);
  }
  EXPECT_EQ(ReadFolder(folder.Path()), Old);
}

// A folder that comes between cannot be replaced by a file.
TEST_F(UnfinishedFolderTest, TakesAMoveBack) {
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, Files, making);
    Make();
    fs::create_directories(unfinished / "old" / "c" / "full");
    EXPECT_THROW(MoveFiles(making), korvex::Stop);
    EXPECT_EQ(ReadFolder(folder.Path()).at("a"), "old a");
    EXPECT_EQ(ReadFolder(folder.Path()).count("b"), 0U);
  }
}

// Each state in which a killed process can leave the move: after `steps` of its steps.
void LeaveMoveAt(int steps, const fs::path& place) {
  const fs::path path = place / "kvx-unfinished", old = path / "old";
  const std::vector<std::pair<fs::path, fs::path>> renames{
      {place / "a", old / "a"},  {place / "c", old / "c"},  {path / "a", place / "a"},
      {path / "b", place / "b"}, {path / "c", place / "c"}, {old, path / "done"}};
  fs::create_directory(old);
  for (int k = 0; k < steps; ++k) {
    const auto& [from, to] = renames[static_cast<std::size_t>(k)];
    fs::rename(from, to);
  }
}

TEST_F(UnfinishedFolderTest, TakesBackWhatAKilledRunHasMoved) {
  for (int steps = 0; steps <= 6; ++steps) {
    SCOPED_TRACE(steps);
    const TempFolder other;
    Fill(other.Path(), Old);
    const fs::path path = other.Path() / "kvx-unfinished";
    fs::create_directory(path);
    Fill(path, {{"a", "new a"}, {"b", "new b"}, {"c", "new c"}, {"lock", ""}, {"x", "half"}});
    LeaveMoveAt(steps, other.Path());
    {
      UnfinishedFolder making;
      BeginUnfinished(other.Path().string() + '/', Files, making);
      EXPECT_EQ(ReadFolder(path), (FolderBytes{{"lock", ""}}));
    }
    EXPECT_EQ(ReadFolder(other.Path()), steps < 6 ? Old : New);
  }
}

// Where the last file is, all others fit it: it goes out before them. Neither "a" nor "c" can go;
// the complaint tells which was tried.
TEST_F(UnfinishedFolderTest, MovesTheLastFileOutFirst) {
  UnfinishedFolder making;
  BeginUnfinished(prefix, Files, making);
  Make();
  fs::create_directories(unfinished / "old" / "a" / "full");
  fs::create_directories(unfinished / "old" / "c" / "full");
  try {
    MoveFiles(making);
    FAIL() << "moved";
  } catch (const korvex::Stop& stop) {
    EXPECT_EQ(stop.text.rfind("C cannot be written: ", 0), 0U) << stop.text;
  }
}

// Files in folders, and files that only the killed run knew.
TEST_F(UnfinishedFolderTest, TakesBackFilesOfAnotherRun) {
  fs::create_directory(folder.Path() / "sub");
  WriteFile(folder.Path() / "sub" / "d", "old d");
  const std::vector<FileToMake> files{{fs::path("sub") / "d", "D"}};
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, files, making);
    fs::create_directory(unfinished / "sub");
    WriteFile(unfinished / "sub" / "d", "new d");
    MoveFiles(making);
  }
  EXPECT_EQ(korvex::test::ReadFile(folder.Path() / "sub" / "d"), "new d");
  // Killed before the new file came in.
  fs::create_directories(unfinished / "old" / "sub");
  fs::rename(folder.Path() / "sub" / "d", unfinished / "old" / "sub" / "d");
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, Files, making);
  }
  EXPECT_EQ(korvex::test::ReadFile(folder.Path() / "sub" / "d"), "new d");
  EXPECT_FALSE(fs::exists(unfinished));
}

TEST_F(UnfinishedFolderTest, BelongsToOneRunAtATime) {
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, Files, making);
    Make();
    UnfinishedFolder second;
    ExpectStop([&] { BeginUnfinished(prefix, Files, second); },
               prefix +
                   " cannot be written: another run is at work there; wait for its end, or solve a "
                   "copy of the folder.",
               StopKind::ResultFile);
    EXPECT_TRUE(fs::exists(unfinished / "a"));
  }
  UnfinishedFolder third;
  BeginUnfinished(prefix, Files, third);
  EXPECT_FALSE(fs::exists(unfinished / "a"));
}

TEST_F(UnfinishedFolderTest, LeavesWhatElseHasItsName) {
  WriteFile(unfinished, "mine");
  UnfinishedFolder making;
  ExpectStop([&] { BeginUnfinished(prefix, Files, making); },
             prefix + " cannot be written: something else has the name kvx-unfinished.",
             StopKind::ResultFile);
  EXPECT_EQ(ReadFolder(folder.Path()).at("kvx-unfinished"), "mine");
}

// A file of before whose place is gone is never deleted: the next run that can moves it back.
TEST_F(UnfinishedFolderTest, KeepsWhatItCannotMoveBack) {
  fs::create_directories(unfinished / "old" / "sub");
  WriteFile(unfinished / "old" / "sub" / "a", "old a");
  const std::vector<FileToMake> files{{fs::path("sub") / "a", "A"}};
  for (int attempt = 0; attempt < 2; ++attempt) {
    UnfinishedFolder making;
    ExpectStop([&] { BeginUnfinished(prefix, files, making); },
               prefix +
                   " cannot be written: files in kvx-unfinished/old are of an earlier run, and "
                   "cannot be moved back to their places.",
               StopKind::ResultFile);
  }
  EXPECT_EQ(korvex::test::ReadFile(unfinished / "old" / "sub" / "a"), "old a");

  fs::create_directory(folder.Path() / "sub");
  {
    UnfinishedFolder making;
    BeginUnfinished(prefix, files, making);
  }
  EXPECT_EQ(korvex::test::ReadFile(folder.Path() / "sub" / "a"), "old a");
  EXPECT_FALSE(fs::exists(unfinished));
}

}  // namespace
}  // namespace kvx::test
