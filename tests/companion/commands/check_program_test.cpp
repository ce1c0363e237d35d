// kvx check as its user meets it: an example that is good, and the same with a slip of the hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::test::ProgramRun;

std::string ReadPanel() {
  return korvex::test::ReadFile(KORVEX_EXAMPLES "/stiffened-panel/fem_solving.txt");
}

ProgramRun CheckText(const std::string& text, std::vector<std::string> arguments = {}) {
  const korvex::test::TempFolder folder;
  korvex::test::WriteFile(folder.Path() / "fem_solving.txt", text);
  arguments.insert(arguments.begin(), "check");
  return korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", arguments);
}

// Replaces the only place of `before`.
std::string Replaced(std::string text, const std::string& before, const std::string& after) {
  const std::size_t at = text.find(before);
  EXPECT_NE(at, std::string::npos) << before;
  EXPECT_EQ(text.find(before, at + 1), std::string::npos) << before;
  return text.replace(at, before.size(), after);
}

// 1-based.
std::size_t LineOf(const std::string& text, const std::string& part) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(text.find(part));
  return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

TEST(KvxCheckProgram, HasNothingAgainstAnExample) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, std::vector<std::string>{"--strict"}}) {
    const ProgramRun run = CheckText(ReadPanel(), arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.out;
    EXPECT_NE(run.out.find("No errors, no warnings"), std::string::npos) << run.out;
  }
}

TEST(KvxCheckProgram, NamesAVectorAlongABeam) {
  const std::string text = ReadPanel();
  // Beam 0 runs along x.
  const std::size_t beams = text.find("NELEM_B=");
  const std::string row = text.substr(text.find("\n0:", beams), 40);
  const std::string before = row.substr(0, row.find('>') + 1);
  const std::string after = before.substr(0, before.find('<')) + "<1,0,0>";
  const std::string spoilt = Replaced(text, before, after);
  const std::string line = std::to_string(LineOf(text, before) + 1);  // behind the line end

  const ProgramRun run = CheckText(spoilt);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out.rfind("ERROR K104 line " + line + ": beam 0 at (", 0), 0U) << run.out;
  EXPECT_NE(run.out.find("\n1 error"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\nkvx explain K104 tells more."), std::string::npos) << run.out;

  const ProgramRun asJson = CheckText(spoilt, {"--json"});
  EXPECT_EQ(asJson.exitStatus, 1);
  const auto json = nlohmann::json::parse(asJson.out);
  EXPECT_EQ(json["errors"], 1);
  ASSERT_FALSE(json["findings"].empty());
  EXPECT_EQ(json["findings"][0]["code"], "K104");
  EXPECT_EQ(json["findings"][0]["line"], std::stoul(line));
  EXPECT_EQ(json["findings"][0]["table"], "NELEM_B");
  EXPECT_EQ(json["findings"][0]["rows"], std::vector<int>{0});
}

TEST(KvxCheckProgram, FindsThatAFileIsEmpty) {
  const ProgramRun run = CheckText("");
  EXPECT_EQ(run.exitStatus, 1) << run.err;
  EXPECT_EQ(run.out.rfind("ERROR K0", 0), 0U) << run.out;
  EXPECT_EQ(run.err, "");
}

TEST(KvxCheckProgram, TakesAnyFile) {
  std::string bytes;
  for (unsigned i = 0; i < 100000; ++i) bytes += static_cast<char>((i * i + i / 7) % 256);
  const ProgramRun run = CheckText(bytes, {"--json"});
  EXPECT_EQ(run.exitStatus, 1) << run.err;
  EXPECT_GE(nlohmann::json::parse(run.out)["errors"], 1);
}

}  // namespace
}  // namespace kvx::test
