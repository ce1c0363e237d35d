// The value of the solution time on the console, with two decimals, and in the log, with six
// significant digits, from the counts of a clock that the test sets.
#include <gtest/gtest.h>

#include "support/model_text.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

// A complete run of a model of one supported node with these counts: frequency, start, end.
struct TimedRun {
  explicit TimedRun(const std::string& counts) {
    ModelText text;
    text.nodes = {{0, 0, 0}};
    text.restraints = {{0}};
    const TempFolder folder;
    WriteFile(folder.Path() / "fem_solving.txt", WriteModel(text));
    run = RunProgram(KORVEX_FIXED_CLOCK_PROGRAM, folder.Path(), counts);
    log = ReadFile(folder.Path() / LogPath());
  }

  ProgramRun run;
  std::string log;
};

// console, inLog: the printed seconds.
void ExpectTime(const std::string& counts, const std::string& console, const std::string& inLog) {
  SCOPED_TRACE(counts);
  const TimedRun timed(counts);
  EXPECT_EQ(timed.run.exitStatus, 0);
  const std::string line = "100%Completed.(Solution time:" + console + " seconds)\n";
  EXPECT_NE(timed.run.out.find(line), std::string::npos) << timed.run.out;
  const std::size_t end = timed.log.find('\n');
  ASSERT_NE(end, std::string::npos);
  EXPECT_EQ(timed.log.substr(end + 1), "Solution time:" + inLog + " seconds.\n");
}

// 12345678 counts of a thousandth of a second.
TEST(SolutionTime, IsTheDifferenceOverTheFrequency) {
  ExpectTime("1000 0 12345678", "12345.68", "12345.7");
  ExpectTime("1000 87654322 100000000", "12345.68", "12345.7");
}

// 1.234567 milliseconds, 12.5 microseconds, 123456789.0123 seconds.
TEST(SolutionTime, IsInGeneralNotationInTheLog) {
  ExpectTime("1000000000 5000000000 5001234567", "0.00", "0.00123457");
  ExpectTime("10000000 0 125", "0.00", "1.25e-05");
  ExpectTime("10000 0 1234567890123", "123456789.01", "1.23457e+08");
  ExpectTime("10000000 77 77", "0.00", "0");
}

// Each count is converted to double before the subtraction. Above 2^53 doubles are 2 apart: 2^53 +
// 1 becomes 2^53 and 2^53 + 3 becomes 2^53 + 4, so that a difference of 2 becomes 4.
TEST(SolutionTime, CountsAreDoublesBeforeTheyAreSubtracted) {
  ExpectTime("1 9007199254740993 9007199254740995", "4.00", "4");
  ExpectTime("1 9007199254740992 9007199254740993", "0.00", "0");
}

}  // namespace
}  // namespace korvex::test
