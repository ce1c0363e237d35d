// The memory that the machine, a container and a limit of the process leave.
#include "platform/free_memory.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <limits>

#include "platform/container_limit.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

namespace fs = std::filesystem;

using test::TempFolder;
using test::WriteFile;

constexpr std::uint64_t Gigabyte = std::uint64_t{1} << 30U;

TEST(FreeMemory, IsLessThanPhysicalMemoryAndSwap) {
  const auto pages = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES));
  const auto size = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  const std::uint64_t free = ReadFreeMemory();
  EXPECT_GT(free, std::uint64_t{1} << 20U);
  EXPECT_LT(free, pages * size + (std::uint64_t{1} << 45U));  // no swap space of 32 TB
}

// Under a limit far below what the process already uses, nothing is free. In a child process, so
// that the limit does not stay.
TEST(FreeMemory, ALimitOfTheAddressSpaceCounts) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the address sanitizer asks for addresses of its own";
#endif
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // The first reading leaves free heap behind, which the second one needs: under the limit the
    // heap cannot grow, and a file could not be opened.
    const bool isFreeBefore = ReadFreeMemory() > 0;
    struct rlimit limit {};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = 4096;
    const bool isSet = setrlimit(RLIMIT_AS, &limit) == 0;
    const bool isNamed = FindMemoryBound() == MemoryBound::Addresses;
    _exit(isFreeBefore && isSet && ReadFreeMemory() == 0 && isNamed ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

// The limit from a folder of group files. groups: the text of the list of the process's groups.
std::uint64_t LimitOf(const TempFolder& folder, const std::string& groups) {
  WriteFile(folder.Path() / "groups", groups);
  return ReadContainerLimit((folder.Path() / "groups").string(), folder.Path().string());
}

TEST(ContainerLimit, NoGroupsMeanNoLimit) {
  const TempFolder folder;
  EXPECT_EQ(LimitOf(folder, ""), UnknownMemory);
  EXPECT_EQ(LimitOf(folder, "garbage\n:\n"), UnknownMemory);
  EXPECT_EQ(LimitOf(folder, "0::/\n"), UnknownMemory);
  EXPECT_EQ(ReadContainerLimit("/no/such/file", "/no/such/folder"), UnknownMemory);
}

TEST(ContainerLimit, TheSmallestLimitOfAGroupAndItsParentsCounts) {
  const TempFolder folder;
  fs::create_directories(folder.Path() / "a" / "b");
  WriteFile(folder.Path() / "a" / "b" / "memory.max", "max\n");
  EXPECT_EQ(LimitOf(folder, "0::/a/b\n"), UnknownMemory);
  WriteFile(folder.Path() / "a" / "memory.max", "3221225472\n");
  EXPECT_EQ(LimitOf(folder, "0::/a/b\n"), 3 * Gigabyte);
  WriteFile(folder.Path() / "a" / "b" / "memory.max", "2147483648\n");
  EXPECT_EQ(LimitOf(folder, "0::/a/b\n"), 2 * Gigabyte);
  EXPECT_EQ(LimitOf(folder, "0::/a\n"), 3 * Gigabyte);
  WriteFile(folder.Path() / "memory.max", "1073741824\n");
  EXPECT_EQ(LimitOf(folder, "0::/a/b\n"), Gigabyte);
}

TEST(ContainerLimit, Version1HasAFolderForMemory) {
  const TempFolder folder;
  fs::create_directories(folder.Path() / "memory" / "a");
  WriteFile(folder.Path() / "memory" / "memory.limit_in_bytes", "9223372036854771712\n");
  WriteFile(folder.Path() / "memory" / "a" / "memory.limit_in_bytes", "1073741824\n");
  EXPECT_EQ(LimitOf(folder, "4:cpu:/x\n3:hugetlb,memory:/a\n"), Gigabyte);
  EXPECT_EQ(LimitOf(folder, "4:cpu:/a\n"), UnknownMemory);
  EXPECT_EQ(LimitOf(folder, "3:memory:/\n"), 9223372036854771712U);
}

// How many cores a folder of group files allows.
double CoresOf(const TempFolder& folder, const std::string& groups) {
  WriteFile(folder.Path() / "groups", groups);
  return ReadContainerCores((folder.Path() / "groups").string(), folder.Path().string());
}

constexpr double Unlimited = std::numeric_limits<double>::infinity();

TEST(ContainerCores, AreTheSmallestQuotaOfAGroupAndItsParents) {
  const TempFolder folder;
  EXPECT_EQ(CoresOf(folder, ""), Unlimited);
  EXPECT_EQ(CoresOf(folder, "0::/\n"), Unlimited);
  fs::create_directories(folder.Path() / "a" / "b");
  WriteFile(folder.Path() / "a" / "b" / "cpu.max", "max 100000\n");
  EXPECT_EQ(CoresOf(folder, "0::/a/b\n"), Unlimited);
  WriteFile(folder.Path() / "a" / "cpu.max", "400000 100000\n");
  EXPECT_EQ(CoresOf(folder, "0::/a/b\n"), 4.0);
  WriteFile(folder.Path() / "a" / "b" / "cpu.max", "75000 50000\n");
  EXPECT_EQ(CoresOf(folder, "0::/a/b\n"), 1.5);
  EXPECT_EQ(CoresOf(folder, "0::/a\n"), 4.0);
  for (const char* wrong : {"", "200000\n", "0 0\n", "1 0\n"}) {
    WriteFile(folder.Path() / "a" / "b" / "cpu.max", wrong);
    EXPECT_EQ(CoresOf(folder, "0::/a/b\n"), 4.0) << wrong;
  }
}

TEST(ContainerCores, HaveTwoFilesInVersion1) {
  const TempFolder folder;
  fs::create_directories(folder.Path() / "cpu" / "a");
  WriteFile(folder.Path() / "cpu" / "cpu.cfs_quota_us", "-1\n");
  WriteFile(folder.Path() / "cpu" / "cpu.cfs_period_us", "100000\n");
  EXPECT_EQ(CoresOf(folder, "4:cpu,cpuacct:/a\n"), Unlimited);
  WriteFile(folder.Path() / "cpu" / "a" / "cpu.cfs_quota_us", "250000\n");
  EXPECT_EQ(CoresOf(folder, "4:cpu,cpuacct:/a\n"), Unlimited);
  WriteFile(folder.Path() / "cpu" / "a" / "cpu.cfs_period_us", "100000\n");
  EXPECT_EQ(CoresOf(folder, "4:cpu,cpuacct:/a\n"), 2.5);
  EXPECT_EQ(CoresOf(folder, "4:cpuset:/a\n"), Unlimited);
}

}  // namespace
}  // namespace korvex
