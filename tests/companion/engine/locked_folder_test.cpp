// Folders that several want at the same moment.
#include "engine/locked_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>
#include <vector>

#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;

TEST(LockedFolder, GoesWhereItIsEmpty) {
  const korvex::test::TempFolder parent;
  const fs::path path = parent.Path() / "folder";
  FileLock lock;
  std::string reason;
  bool isNew = false;
  ASSERT_EQ(TakeFolder(path, lock, isNew, reason), LockResult::Taken) << reason;
  EXPECT_TRUE(isNew);
  std::ofstream(path / "file") << "x";
  LeaveFolder(path, lock);
  EXPECT_TRUE(fs::exists(path / "file"));
  ASSERT_EQ(TakeFolder(path, lock, isNew, reason), LockResult::Taken) << reason;
  EXPECT_FALSE(isNew);
  EmptyFolder(path);
  LeaveFolder(path, lock);
  EXPECT_FALSE(fs::exists(path));
  LeaveFolder(path, lock);  // not taken: nothing
  EXPECT_EQ(TakeFolder(parent.Path() / "none" / "folder", lock, isNew, reason), LockResult::Failed);
  EXPECT_FALSE(reason.empty());
  std::ofstream(path) << "a file";
  EXPECT_EQ(TakeFolder(path, lock, isNew, reason), LockResult::Failed);
}

// Each removes the folder behind itself, mostly while another is about to take it: that is not said
// to have failed, and two never have it.
TEST(LockedFolder, BelongsToOneAtATime) {
  const korvex::test::TempFolder parent;
  const fs::path path = parent.Path() / "folder";
  std::atomic<int> owners{0}, taken{0}, failures{0}, meetings{0};
  const auto work = [&] {
    for (int k = 0; k < 300; ++k) {
      FileLock lock;
      std::string reason;
      bool isNew = false;
      const LockResult result = TakeFolder(path, lock, isNew, reason);
      if (result == LockResult::Failed) ++failures;
      if (result != LockResult::Taken) continue;
      ++taken;
      if (++owners > 1) ++meetings;
      std::this_thread::yield();  // time for another to meet it
      --owners;
      LeaveFolder(path, lock);
    }
  };
  std::vector<std::thread> threads;
  threads.reserve(3);
  for (int k = 0; k < 3; ++k) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(meetings, 0);
  EXPECT_GT(taken, 0);
  EXPECT_FALSE(fs::exists(path));
}

}  // namespace
}  // namespace kvx::test
