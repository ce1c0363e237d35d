// The program as a process: commands, mistakes of its user, exit statuses. What it finds is planted
// by planted_check.cpp, so that these tests do not depend on the checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;

using Arguments = std::vector<std::string>;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;

std::string ToLineFeeds(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

ProgramRun RunIn(const char* program, const fs::path& folder, const Arguments& arguments) {
  ProgramRun run = korvex::test::RunProgram(program, folder, "", arguments);
  run.out = ToLineFeeds(run.out);
  run.err = ToLineFeeds(run.err);
  return run;
}

ProgramRun Call(const Arguments& arguments) {
  const TempFolder folder;
  return RunIn(KVX_PROGRAM, folder.Path(), arguments);
}

// Checks a model whose findings are planted by `text`.
ProgramRun CheckPlanted(const std::string& text, Arguments arguments = {}) {
  const TempFolder folder;
  korvex::test::WriteFile(folder.Path() / "fem_solving.txt", text);
  arguments.insert(arguments.begin(), "check");
  return RunIn(KVX_PLANTED_PROGRAM, folder.Path(), arguments);
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Nothing on standard output, one line on standard error.
void ExpectComplaint(const ProgramRun& run, int exitStatus, const std::string& line) {
  EXPECT_EQ(run.exitStatus, exitStatus);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, line + "\n");
}

TEST(KvxProgram, HelpsOnStandardOutput) {
  const ProgramRun all = Call({"--help"});
  EXPECT_EQ(all.exitStatus, 0);
  EXPECT_EQ(all.err, "");
  for (const char* command : {"check", "explain", "licenses"}) {
    EXPECT_TRUE(Holds(all.out, std::string("\n  ") + command + " ")) << command;
    const ProgramRun one = Call({command, "--help"});
    EXPECT_EQ(one.exitStatus, 0) << command;
    EXPECT_TRUE(Holds(one.out, std::string("Usage: kvx ") + command)) << one.out;
    EXPECT_TRUE(Holds(one.out, std::string("Example: kvx ") + command)) << one.out;
    EXPECT_EQ(one.out, Call({command, "-h"}).out);
    const ProgramRun help = Call({"help", command});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_EQ(help.out, one.out);
  }
  for (const Arguments& arguments : {Arguments{"help"}, {"help", "help"}, {"help", "--help"}}) {
    EXPECT_EQ(Call(arguments).exitStatus, 0);
    EXPECT_EQ(Call(arguments).out, all.out);
  }
}

TEST(KvxProgram, HasAVersion) {
  const ProgramRun run = Call({"--version"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "kvx " KORVEX_VERSION "\n");
}

TEST(KvxProgram, AnswersMistypedCommands) {
  ExpectComplaint(Call({"chek"}), 64, "kvx: there is no command \"chek\". Did you mean \"check\"?");
  ExpectComplaint(Call({"help", "chek"}), 64,
                  "kvx: there is no command \"chek\". Did you mean \"check\"?");
  ExpectComplaint(Call({"help", "check", "deck"}), 64, "kvx help: \"deck\" is one word too many.");
  ExpectComplaint(Call({"xyz"}), 64,
                  "kvx: there is no command \"xyz\". \"kvx --help\" lists the commands.");
  ExpectComplaint(Call({"."}), 64, "kvx: there is no command \".\". Did you mean \"kvx check .\"?");
  const ProgramRun none = Call({});
  EXPECT_EQ(none.exitStatus, 64);
  EXPECT_EQ(none.out, "");
  EXPECT_TRUE(Holds(none.err, "Usage: kvx")) << none.err;
}

TEST(KvxProgram, AnswersMistypedOptions) {
  ExpectComplaint(Call({"check", "--strikt"}), 64,
                  "kvx check: there is no option \"--strikt\". Did you mean \"--strict\"?");
  ExpectComplaint(Call({"check", "--jsn=1"}), 64,
                  "kvx check: there is no option \"--jsn\". Did you mean \"--json\"?");
  ExpectComplaint(Call({"--strict", "check"}), 64,
                  "kvx check: write \"--strict\" behind \"kvx check\".");
  ExpectComplaint(Call({"--versio"}), 64,
                  "kvx: there is no option \"--versio\". Did you mean \"--version\"?");
  ExpectComplaint(
      Call({"check", "a", "b"}), 64,
      "kvx check: \"b\" is one word too many. \"kvx check --help\" tells how it is called.");
  ExpectComplaint(Call({"check", "--tolerance", "0,5"}), 64,
                  "kvx check: --tolerance: write a length with a point, such as 0.5, not \"0,5\". "
                  "\"kvx check --help\" shows the options.");
  for (const char* tolerance : {"0", "-1", "nan", "inf"}) {
    ExpectComplaint(
        Call({"check", "--tolerance", tolerance}), 64,
        "kvx check: --tolerance is a length greater than 0, in the units of the model.");
  }
  for (const Arguments& arguments :
       {Arguments{"check", "--tolerance", "1,5"}, Arguments{"check", "--tolerance"},
        Arguments{"check", "--color", "blue"}, Arguments{"licenses", "--page"}}) {
    const ProgramRun run = Call(arguments);
    EXPECT_EQ(run.exitStatus, 64) << arguments[1];
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(Holds(run.err, "\"kvx " + arguments[0] + " --help\"")) << run.err;
  }
}

TEST(KvxProgram, SaysWhichInputIsMissing) {
  ExpectComplaint(Call({"check", "nowhere"}), 66,
                  "kvx check: there is no folder or file \"nowhere\".");
  ExpectComplaint(Call({"check", ""}), 66, "kvx check: there is no folder or file \"\".");
  ExpectComplaint(
      Call({"check"}), 66,
      "kvx check: there is no file fem_solving.txt in the folder \".\". Name the folder "
      "of a model, or its file.");
  const TempFolder folder;
  fs::create_directory(folder.Path() / "fem_solving.txt");
  ExpectComplaint(RunIn(KVX_PROGRAM, folder.Path(), {"check"}), 66,
                  "kvx check: \"fem_solving.txt\" cannot be read.");
}

TEST(KvxCheck, TakesAFolderOrAFile) {
  const TempFolder folder;
  const fs::path deck = fs::u8path("d\xC3\xA4\xE6\x97\xA5 k");  // also beyond any one code page
  fs::create_directory(folder.Path() / deck);
  korvex::test::WriteFile(folder.Path() / deck / "fem_solving.txt", "");
  korvex::test::WriteFile(folder.Path() / deck / "other.txt", "K104 1 0 other\n");
  const ProgramRun whole = RunIn(KVX_PLANTED_PROGRAM, folder.Path(), {"check", deck.u8string()});
  EXPECT_EQ(whole.exitStatus, 0) << whole.err;
  EXPECT_TRUE(Holds(whole.out, (deck / "fem_solving.txt").u8string() + "\n")) << whole.out;
  EXPECT_TRUE(Holds(whole.out, "No errors, no warnings.\n")) << whole.out;
  const ProgramRun file =
      RunIn(KVX_PLANTED_PROGRAM, folder.Path(), {"check", (deck / "other.txt").u8string()});
  EXPECT_EQ(file.exitStatus, 1) << file.err;
  EXPECT_TRUE(Holds(file.out, "ERROR K104 line 1: other\n")) << file.out;
}

TEST(KvxCheck, HasAnExitStatusForItsFindings) {
  EXPECT_EQ(CheckPlanted("").exitStatus, 0);
  EXPECT_EQ(CheckPlanted("K501 0 0 hint").exitStatus, 0);
  EXPECT_EQ(CheckPlanted("K018 1 0 warning").exitStatus, 0);
  EXPECT_EQ(CheckPlanted("K104 1 0 error").exitStatus, 1);
  EXPECT_EQ(CheckPlanted("K501 0 0 hint", {"--strict"}).exitStatus, 0);
  EXPECT_EQ(CheckPlanted("K018 1 0 warning", {"--strict"}).exitStatus, 1);
  EXPECT_EQ(CheckPlanted("K018 1 0 warning", {"--strict", "--json"}).exitStatus, 1);
}

TEST(KvxCheck, WritesTextOnStandardOutput) {
  const ProgramRun run = CheckPlanted("K018 9 0 behind\nK104 7 3 across\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "ERROR K104 line 7, column 3: across\n"
            "WARN  K018 line 9: behind\n"
            "\n"
            "fem_solving.txt\n"
            "  The model is empty.\n"
            "1 error, 1 warning.\n"
            "kvx explain K104 tells more.\n");
}

TEST(KvxCheck, WritesJsonAloneOnStandardOutput) {
  const ProgramRun run = CheckPlanted("K104 7 3 across\n", {"--json"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitStatus, 1);
  const auto json = nlohmann::json::parse(run.out);
  EXPECT_EQ(json["errors"], 1);
  EXPECT_EQ(json["findings"][0]["line"], 7);
}

TEST(KvxCheck, HandsTheToleranceOn) {
  EXPECT_TRUE(Holds(CheckPlanted("TOLERANCE").out, "tolerance 0.000000\n"));
  EXPECT_TRUE(Holds(CheckPlanted("TOLERANCE", {"--tolerance", "0.5"}).out, "tolerance 0.5"));
}

TEST(KvxCheck, ColorsOnRequestAlone) {
  const std::string colored = "\x1B[1;31mERROR\x1B[0m K104";
  EXPECT_TRUE(Holds(CheckPlanted("K104 1 0 a", {"--color", "always"}).out, colored));
  EXPECT_TRUE(Holds(CheckPlanted("K104 1 0 a", {"--color=always"}).out, colored));
  EXPECT_FALSE(Holds(CheckPlanted("K104 1 0 a", {"--color=never"}).out, "\x1B"));
  EXPECT_FALSE(Holds(CheckPlanted("K104 1 0 a").out, "\x1B"));  // a file is no terminal
}

// Nothing of the file reaches the terminal as an order.
TEST(KvxCheck, EscapesWhatTheFileHolds) {
  const ProgramRun run = CheckPlanted("K104 1 0 a\x1B[2Jb\xFF");
  EXPECT_TRUE(Holds(run.out, "a\\x1B[2Jb\\xFF\n")) << run.out;
}

TEST(KvxCheck, TellsDataFromFaults) {
  ExpectComplaint(CheckPlanted("STOP"), 65, "kvx check: \"fem_solving.txt\": planted stop");
  ExpectComplaint(CheckPlanted("MEMORY"), 65,
                  "kvx check: \"fem_solving.txt\": there is not enough memory to check it.");
  ExpectComplaint(CheckPlanted("FAULT"), 70,
                  "kvx: this is a fault of kvx, not yours. Please report it: planted");
}

TEST(KvxExplain, ExplainsCodes) {
  const ProgramRun upper = Call({"explain", "K104"});
  EXPECT_EQ(upper.exitStatus, 0);
  EXPECT_EQ(upper.out.rfind("K104 ", 0), 0U) << upper.out;
  EXPECT_EQ(upper.out, Call({"explain", "k104"}).out);
  const ProgramRun other = Call({"explain", "K501"});
  EXPECT_EQ(Call({"explain", "K104", "K501"}).out, upper.out + "\n\n" + other.out);
  EXPECT_TRUE(Holds(Call({"explain", "--color=always", "K104"}).out, "\x1B[1;31merror"));
}

TEST(KvxExplain, ListsAllCodes) {
  const ProgramRun run = Call({"explain"});
  EXPECT_EQ(run.exitStatus, 0);
  for (const char* code : {"K001", "K104", "K201", "K501"}) {
    EXPECT_TRUE(Holds(run.out, std::string("\n  ") + code + "  ")) << code;
  }
}

TEST(KvxExplain, NamesTheNearestCodes) {
  ExpectComplaint(
      Call({"explain", "k14"}), 64,
      "kvx explain: there is no code \"k14\". Did you mean K014, K104, K114, K124 or K714? "
      "\"kvx explain\" lists all codes.");
  ExpectComplaint(Call({"explain", "K104", "xyz"}), 64,
                  "kvx explain: there is no code \"xyz\". \"kvx explain\" lists all codes.");
}

TEST(KvxExplain, WritesThePage) {
  const ProgramRun run = Call({"explain", "--page"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, korvex::test::ReadFile(KORVEX_DOCS "/findings.md"));
}

TEST(KvxLicenses, HoldsTheTextsOfTheLibraries) {
  const ProgramRun run = Call({"licenses"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_TRUE(Holds(run.out, "\n---- CLI11 ----\n"));
  EXPECT_TRUE(Holds(run.out, "University of Cincinnati"));
  EXPECT_TRUE(Holds(run.out, "Redistributions in binary form must reproduce"));
  EXPECT_TRUE(Holds(run.out, "\n---- JSON for Modern C++ ----\n"));
  EXPECT_TRUE(Holds(run.out, "Niels Lohmann"));
  EXPECT_TRUE(Holds(run.out, "Permission is hereby granted, free of charge"));
  EXPECT_TRUE(Holds(run.out, "\n---- zlib ----\n"));
  EXPECT_TRUE(Holds(run.out, "Jean-loup Gailly"));
  EXPECT_TRUE(Holds(run.out, "\n---- three.js, in the pages of kvx view ----\n"));
  EXPECT_TRUE(Holds(run.out, "three.js authors"));
}

}  // namespace
}  // namespace kvx::test
