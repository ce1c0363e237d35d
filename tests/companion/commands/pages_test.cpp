// The manual, the page of the companion and the completion name every command and option that the
// help shows, and the page every exit status.
#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <sstream>

#include "commands/exit_status.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::test::ReadFile;

std::string HelpOf(const std::vector<std::string>& arguments) {
  const korvex::test::TempFolder folder;
  return korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", arguments).out;
}

// The words of the lines that are indented by two blanks below a headline such as "Options:".
std::set<std::string> ReadNames(const std::string& help, const std::string& headline) {
  std::set<std::string> names;
  std::istringstream lines(help);
  bool isInside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(headline, 0) == 0) {
      isInside = true;
    } else if (line.rfind("  ", 0) != 0) {
      isInside = false;
    } else if (isInside && line.rfind("   ", 0) != 0) {
      std::string name;
      std::istringstream(line) >> name;  // "-h,--help", "--json", "check"
      names.insert(name.substr(name.find(',') + 1));
    }
  }
  return names;
}

std::set<std::string> CommandNames() { return ReadNames(HelpOf({"--help"}), "Commands:"); }

// Those of the program and of all commands.
std::set<std::string> OptionNames() {
  std::set<std::string> options = ReadNames(HelpOf({"--help"}), "Options:");
  for (const std::string& command : CommandNames()) {
    options.merge(ReadNames(HelpOf({command, "--help"}), "Options:"));
  }
  return options;
}

// The name stands in the text, and not as the beginning of a longer one.
bool Names(const std::string& text, const std::string& name) {
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
    const char next = at + name.size() < text.size() ? text[at + name.size()] : ' ';
    if (std::isalnum(static_cast<unsigned char>(next)) == 0 && next != '-') return true;
  }
  return false;
}

void ExpectNames(const std::string& page, const std::string& text) {
  for (const std::string& command : CommandNames()) EXPECT_TRUE(Names(text, command)) << page;
  for (const std::string& option : OptionNames()) {
    EXPECT_TRUE(Names(text, option)) << page << ": " << option;
  }
}

// The part of the page below the headline of a command.
std::string SectionOf(const std::string& page, const std::string& command) {
  const std::size_t begin = page.find("\n## kvx " + command + "\n");
  if (begin == std::string::npos) return "";
  return page.substr(begin, page.find("\n## ", begin + 1) - begin);
}

// The names are found at all.
TEST(KvxPages, HelpIsUnderstood) {
  EXPECT_EQ(CommandNames().count("check"), 1U);
  EXPECT_EQ(CommandNames().count("licenses"), 1U);
  for (const char* option :
       {"--help", "--version", "--strict", "--tolerance", "--deep", "--page"}) {
    EXPECT_EQ(OptionNames().count(option), 1U) << option;
  }
  EXPECT_FALSE(Names("--strictly", "--strict"));
}

TEST(KvxPages, ManualIsWhole) {
  std::string manual = ReadFile(KORVEX_DOCS "/man/kvx.1");
  for (std::size_t at = 0; (at = manual.find("\\-", at)) != std::string::npos;) manual.erase(at, 1);
  ExpectNames("kvx.1", manual);
  for (const int status : {ExitFine, ExitFindings, ExitUsage, ExitUnusableData, ExitMissingInput,
                           ExitFault, ExitOutputFailed, ExitInterrupted}) {
    EXPECT_NE(manual.find("\n.B " + std::to_string(status) + "\n"), std::string::npos) << status;
  }
}

TEST(KvxPages, PageOfTheCompanionIsWhole) {
  const std::string page = ReadFile(KORVEX_DOCS "/companion.md");
  ExpectNames("companion.md", page);
  for (const int status : {ExitFine, ExitFindings, ExitUsage, ExitUnusableData, ExitMissingInput,
                           ExitFault, ExitOutputFailed, ExitInterrupted}) {
    EXPECT_NE(page.find("\n| " + std::to_string(status) + " |"), std::string::npos) << status;
  }
}

// Each command has a section with its options and a line that shows how it is called.
TEST(KvxPages, PageOfTheCompanionHasASectionForEachCommand) {
  const std::string page = ReadFile(KORVEX_DOCS "/companion.md");
  for (const std::string& command : CommandNames()) {
    const std::string section = SectionOf(page, command);
    EXPECT_NE(section, "") << command;
    if (command == "licenses") continue;
    EXPECT_NE(section.find("\n    kvx " + command + " ["), std::string::npos) << command;
    for (const std::string& option : ReadNames(HelpOf({command, "--help"}), "Options:")) {
      EXPECT_TRUE(option == "--help" || Names(section, option)) << command << ": " << option;
    }
  }
}

TEST(KvxPages, CompletionIsWhole) {
  ExpectNames("completion", ReadFile(KORVEX_SOURCE "/companion/completion/kvx"));
}

}  // namespace
}  // namespace kvx::test
