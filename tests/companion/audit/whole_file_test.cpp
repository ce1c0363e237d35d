// Files that are whole or not there, also on a full disk. POSIX only: a limit for the size of files
// and a device that is always full.
#include "audit/whole_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "support/expect_stop.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::StopKind;
using korvex::test::ExpectStop;
using korvex::test::ReadFile;
using korvex::test::TempFolder;
using korvex::test::WriteFile;

// While it exists, this process cannot write files larger than `bytes`: writing fails, as on a full
// disk, instead of ending the process.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST(WholeFile, IsReplacedInOneStep) {
  const TempFolder folder;
  const std::string file = (folder.Path() / "file").string();
  WriteFile(file, "old");
  WriteWholeFile(file, [&](std::ostream& stream) {
    stream << "new\n" << std::flush;
    EXPECT_EQ(ReadFile(file), "old");
    EXPECT_EQ(ReadFile(NameBeside(file)), "new\n");
  });
  EXPECT_EQ(ReadFile(file), "new\n");
  EXPECT_FALSE(fs::exists(NameBeside(file)));
}

// Both where the stream writes and where it writes its last bytes when it is closed.
TEST(WholeFile, StaysAsItIsOnAFullDisk) {
  for (const std::size_t size : {std::size_t{200}, std::size_t{1000000}}) {
    const TempFolder folder;
    const std::string file = (folder.Path() / "file").string();
    WriteFile(file, "old");
    const FileSizeLimit limit(100);
    ExpectStop(
        [&] {
          WriteWholeFile(file, [&](std::ostream& stream) { stream << std::string(size, 'x'); });
        },
        file + " cannot be written: File too large.", StopKind::ResultFile);
    EXPECT_EQ(ReadFile(file), "old");
    EXPECT_FALSE(fs::exists(NameBeside(file)));
  }
}

// What lies beside is a link to a device that is always full: the reason is the disk's own.
TEST(WholeFile, NamesTheReason) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  const TempFolder folder;
  const std::string file = (folder.Path() / "file").string();
  fs::create_symlink("/dev/full", NameBeside(file));
  ExpectStop([&] { WriteWholeFile(file, [](std::ostream& stream) { stream << "text"; }); },
             file + " cannot be written: No space left on device.", StopKind::ResultFile);
  EXPECT_FALSE(fs::exists(file));
  EXPECT_FALSE(fs::is_symlink(NameBeside(file)));
}

TEST(WholeFile, StaysAsItIsWhereTheWriterIsInterrupted) {
  struct Interruption {};
  const TempFolder folder;
  const std::string file = (folder.Path() / "file").string();
  WriteFile(file, "old");
  EXPECT_THROW(WriteWholeFile(file,
                              [](std::ostream& stream) {
                                stream << "half";
                                throw Interruption();
                              }),
               Interruption);
  EXPECT_EQ(ReadFile(file), "old");
  EXPECT_FALSE(fs::exists(NameBeside(file)));
}

}  // namespace
}  // namespace kvx::test
