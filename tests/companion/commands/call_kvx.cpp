#include "commands/call_kvx.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/temp_folder.h"

namespace kvx::test {

using korvex::test::ProgramRun;

namespace {

std::string WithoutReturns(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

}  // namespace

ProgramRun CallKvx(const std::string& modelText, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& files) {
  const korvex::test::TempFolder folder;
  korvex::test::WriteFile(folder.Path() / "fem_solving.txt", modelText);
  for (const auto& [name, bytes] : files) korvex::test::WriteFile(folder.Path() / name, bytes);
  ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", arguments);
  run.out = WithoutReturns(run.out);
  run.err = WithoutReturns(run.err);
  return run;
}

std::string OutputOf(const korvex::test::ModelText& model,
                     const std::vector<std::string>& arguments) {
  const ProgramRun run = CallKvx(korvex::test::WriteModel(model), arguments);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  return run.out;
}

}  // namespace kvx::test
