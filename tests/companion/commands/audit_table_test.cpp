// The table of audits, as audit, run and cases give it with --csv.
#include "commands/audit_table.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/csv.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;

ProgramRun Call(const TempFolder& folder, const std::vector<std::string>& arguments) {
  return korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", arguments);
}

void AddPanel(const fs::path& folder) {
  fs::create_directory(folder);
  for (const char* name : {"fem_solving.txt", "cases.toml", "pallet.txt"}) {
    fs::copy_file(fs::path(KORVEX_EXAMPLES "/stiffened-panel") / name, folder / name);
  }
}

TEST(AuditTable, HasARowForEachFolder) {
  const TempFolder folder;
  AddPanel(folder.Path() / "deck");
  fs::create_directory(folder.Path() / "bad");
  korvex::test::WriteFile(folder.Path() / "bad" / "fem_solving.txt", "no model");
  const ProgramRun run = Call(folder, {"run", "deck", "bad", "nowhere", "--csv"});
  EXPECT_EQ(run.exitStatus, 66);
  const CsvTable table = ReadCsv(run.out);
  ASSERT_EQ(table.rows.size(), 3U) << run.out;
  EXPECT_EQ(FieldOf(table, 0, "model").rfind("deck", 0), 0U);
  // 1008 shells under pressure and four forces: the sum that the panel's README derives.
  EXPECT_NEAR(NumberAt(table, 0, "Fz"), -816000.0, 1e-6);
  EXPECT_EQ(FieldOf(table, 0, "verdict"), "balanced");
  EXPECT_EQ(FieldOf(table, 1, "model").rfind("bad", 0), 0U);
  EXPECT_EQ(FieldOf(table, 1, "Fz"), "");
  EXPECT_EQ(FieldOf(table, 1, "verdict").rfind("not solved: ", 0), 0U);
  EXPECT_EQ(FieldOf(table, 2, "model"), "nowhere");
  EXPECT_EQ(FieldOf(table, 2, "imbalance"), "");
}

// The same numbers as JSON, with all digits.
TEST(AuditTable, IsThatOfTheJson) {
  const TempFolder folder;
  AddPanel(folder.Path() / "deck");
  const auto json = nlohmann::json::parse(Call(folder, {"audit", "deck", "--json"}).out);
  const CsvTable table = ReadCsv(Call(folder, {"audit", "deck", "--csv"}).out);
  ASSERT_EQ(table.rows.size(), 1U);
  const std::vector<std::string> names{"Fx", "Fy", "Fz", "Mx", "My", "Mz"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(NumberAt(table, 0, names[i]), json["loads"][i].get<double>());
    EXPECT_EQ(NumberAt(table, 0, "reaction_" + names[i]), json["reactions"][i].get<double>());
  }
  for (const char* name : {"imbalance", "residual", "errors", "warnings", "hints"}) {
    EXPECT_EQ(NumberAt(table, 0, name), json[name].get<double>()) << name;
  }
}

TEST(AuditTable, HasARowForEachCase) {
  const TempFolder folder;
  AddPanel(folder.Path() / "deck");
  const ProgramRun run = Call(folder, {"cases", "deck", "--csv"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  const CsvTable table = ReadCsv(run.out);
  const std::vector<std::string> names{"base", "weight", "heel", "pallet", "harbour", "sea"};
  ASSERT_EQ(table.rows.size(), names.size()) << run.out;
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(FieldOf(table, i, "case"), names[i]);
}

TEST(AuditTable, StaysEmptyWhereNoCaseIsSolved) {
  const TempFolder folder;
  AddPanel(folder.Path() / "deck");
  korvex::test::WriteFile(folder.Path() / "deck" / "pallet.txt",
                          "Number of forces:NFOR=1\n9999<0,0,-1,0,0,0>\n");
  const ProgramRun run = Call(folder, {"cases", "deck", "--csv"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("Not solved."), std::string::npos) << run.err;
}

}  // namespace
}  // namespace kvx::test
