// The program at a terminal, and where its input or output fails: what POSIX has devices for.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>

#include "support/model_text.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;

using korvex::test::ProgramRun;
using korvex::test::TempFolder;

// Runs a line of the shell in the folder; "kvx" in it is the program with planted findings.
ProgramRun RunLine(const fs::path& folder, std::string line) {
  line = "kvx() { " KVX_PLANTED_PROGRAM " \"$@\"; }\n" + line;
  return korvex::test::RunProgram("/bin/sh", folder, "", {"-c", line});
}

// Whether programs can have a terminal here: a bare root folder may lack the file system for them.
bool HasTerminals() {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal < 0) return false;
  const char* const name = ptsname(terminal);  // NOLINT(concurrency-mt-unsafe)
  const bool isThere = name != nullptr && access(name, R_OK | W_OK) == 0;
  close(terminal);
  return isThere;
}

// What a terminal of this width shows of the line. The output must be less than the 4096 bytes that
// a terminal holds for its reader.
std::string ShowOnTerminal(const fs::path& folder, const std::string& line, unsigned short width) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) return "no terminal";
  const std::string name = ptsname(terminal);                // NOLINT(concurrency-mt-unsafe)
  const int keeper = open(name.c_str(), O_RDWR | O_NOCTTY);  // so that what is written stays
  winsize size{};
  size.ws_col = width;
  ioctl(terminal, TIOCSWINSZ, &size);
  EXPECT_EQ(RunLine(folder, "TERM=xterm; export TERM\n" + line + " >" + name).err, "");
  fcntl(terminal, F_SETFL, O_NONBLOCK);
  std::array<char, 4096> buffer{};
  std::string text;
  for (ssize_t count = 0; (count = read(terminal, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(keeper);
  close(terminal);
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

struct KvxTerminal : testing::Test {
  TempFolder folder;
  void Plant(const std::string& text) {
    korvex::test::WriteFile(folder.Path() / "fem_solving.txt", text);
  }
};

TEST_F(KvxTerminal, IsObeyedInItsWidth) {
  if (!HasTerminals()) GTEST_SKIP() << "there are no terminals here";
  Plant("K104 7 0 one two three four five six seven eight nine\n");
  const std::string text = ShowOnTerminal(folder.Path(), "kvx check --color=never", 42);
  EXPECT_EQ(text.rfind("ERROR K104 line 7: one two three four five\n"
                       "      six seven eight nine\n",
                       0),
            0U)
      << text;
  // A terminal that does not know its width.
  const std::string unknown = ShowOnTerminal(folder.Path(), "kvx check --color=never", 0);
  EXPECT_EQ(unknown.rfind("ERROR K104 line 7: one two three four five six seven eight nine\n", 0),
            0U)
      << unknown;
}

TEST_F(KvxTerminal, IsColoredUnlessUnwanted) {
  if (!HasTerminals()) GTEST_SKIP() << "there are no terminals here";
  Plant("K104 7 0 a\n");
  const auto isColored = [&](const std::string& line) {
    const std::string text = ShowOnTerminal(folder.Path(), line, 80);
    EXPECT_NE(text.find("ERROR"), std::string::npos) << text;
    return text.find("\x1B[") != std::string::npos;
  };
  EXPECT_TRUE(isColored("kvx check"));
  EXPECT_TRUE(isColored("kvx check --color=auto"));
  EXPECT_FALSE(isColored("kvx check --color=never"));
  EXPECT_FALSE(isColored("NO_COLOR=1 kvx check"));
  EXPECT_TRUE(isColored("NO_COLOR= kvx check"));
  EXPECT_TRUE(isColored("NO_COLOR=1 kvx check --color=always"));
  EXPECT_FALSE(isColored("TERM=dumb kvx check"));
}

TEST_F(KvxTerminal, SaysWhereStandardOutputFails) {
  Plant("K104 7 0 a\n");
  const char* failed = "kvx: standard output cannot be written: is it closed, or the disk full?\n";
  for (const char* command :
       {"kvx check", "kvx check --json", "kvx explain", "kvx explain K104", "kvx explain --page",
        "kvx licenses", "kvx --help", "kvx --version"}) {
    for (const char* target : {" >/dev/full", " >&-"}) {
      const ProgramRun run = RunLine(folder.Path(), std::string(command) + target);
      EXPECT_EQ(run.exitStatus, 73) << command << target;
      EXPECT_EQ(run.err, failed) << command << target;
    }
  }
}

TEST_F(KvxTerminal, ReadsFromAPipe) {
  Plant("K104 7 0 a\n");
  const ProgramRun run = RunLine(folder.Path(), "cat fem_solving.txt | kvx check /dev/stdin");
  EXPECT_EQ(run.exitStatus, 1) << run.err;
  EXPECT_NE(run.out.find("ERROR K104 line 7: a\n"), std::string::npos) << run.out;
}

TEST_F(KvxTerminal, SaysThatAFileCannotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read every file";
  Plant("");
  fs::permissions(folder.Path() / "fem_solving.txt", fs::perms::none);
  const ProgramRun run = RunLine(folder.Path(), "kvx check");
  EXPECT_EQ(run.exitStatus, 66);
  EXPECT_EQ(run.err, "kvx check: \"fem_solving.txt\" cannot be read.\n");
}

// A file with a hole of a terabyte, which takes no room on the disk.
TEST_F(KvxTerminal, SaysThatAFileIsLargerThanTheMemory) {
  Plant("");
  fs::resize_file(folder.Path() / "fem_solving.txt", std::uintmax_t{1} << 40U);
  const ProgramRun run = RunLine(folder.Path(), "kvx check");
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.err.rfind("kvx check: \"fem_solving.txt\": Not enough memory for the text of the "
                          "model file: ",
                          0),
            0U)
      << run.err;
}

// To open a pipe would wait for somebody who reads it.
TEST(KvxViewPipe, IsLeftAlone) {
  const TempFolder base;
  korvex::test::WriteFile(base.Path() / "fem_solving.txt", korvex::test::WriteModel({}));
  ASSERT_EQ(mkfifo((base.Path() / "pipe").c_str(), S_IRUSR | S_IWUSR), 0);
  const ProgramRun run =
      korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", {"view", "-o", "pipe"});
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_EQ(run.err, "kvx view: \"pipe\" is no file. Name a file with -o.\n");
  EXPECT_TRUE(fs::is_fifo(base.Path() / "pipe"));
}

}  // namespace
}  // namespace kvx::test
