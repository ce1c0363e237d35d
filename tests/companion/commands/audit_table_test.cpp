// The table of audits, as audit, run and cases give it with --csv.
#include "commands/audit_table.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

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

// As the system writes it.
std::string FileIn(const std::string& folder) {
  return (fs::path(folder) / "fem_solving.txt").string();
}

// The lines behind the notes.
std::vector<std::string> ListRows(const std::string& csv) {
  std::vector<std::string> rows;
  std::istringstream lines(csv);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("# ", 0) != 0) rows.push_back(line);
  }
  return rows;
}

TEST(AuditTable, HasARowForEachFolder) {
  const TempFolder folder;
  AddPanel(folder.Path() / "deck");
  fs::create_directory(folder.Path() / "bad");
  korvex::test::WriteFile(folder.Path() / "bad" / "fem_solving.txt", "no model");
  const ProgramRun run = Call(folder, {"run", "deck", "bad", "nowhere", "--csv"});
  EXPECT_EQ(run.exitStatus, 66);
  const std::vector<std::string> rows = ListRows(run.out);
  ASSERT_EQ(rows.size(), 4U) << run.out;
  EXPECT_EQ(rows[0].rfind("model,Fx,Fy,Fz,Mx,My,Mz,reaction_Fx,", 0), 0U);
  // The load of the panel: 1008 shells under pressure, and four forces; its README adds them up.
  EXPECT_EQ(rows[1].rfind(FileIn("deck") + ",0,0,-816", 0), 0U) << rows[1];
  EXPECT_NE(rows[1].find(",balanced"), std::string::npos) << rows[1];
  EXPECT_EQ(rows[2].rfind(FileIn("bad") + ",,,,", 0), 0U) << rows[2];
  EXPECT_NE(rows[2].find(",not solved: "), std::string::npos) << rows[2];
  EXPECT_EQ(rows[3].rfind("nowhere,,,,", 0), 0U) << rows[3];
}

// The same numbers as JSON, with all digits.
TEST(AuditTable, IsThatOfTheJson) {
  const TempFolder folder;
  AddPanel(folder.Path() / "deck");
  const auto json = nlohmann::json::parse(Call(folder, {"audit", "deck", "--json"}).out);
  const std::vector<std::string> rows = ListRows(Call(folder, {"audit", "deck", "--csv"}).out);
  ASSERT_EQ(rows.size(), 2U);
  std::vector<std::string> fields(1);
  for (const char c : rows[1]) {
    if (c == ',') fields.emplace_back();
    if (c != ',') fields.back() += c;
  }
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(std::stod(fields[1 + i]), json["loads"][i].get<double>());
    EXPECT_EQ(std::stod(fields[7 + i]), json["reactions"][i].get<double>());
  }
  EXPECT_EQ(std::stod(fields[13]), json["imbalance"].get<double>());
  EXPECT_EQ(std::stod(fields[14]), json["residual"].get<double>());
  EXPECT_EQ(std::stoi(fields[19]), json["errors"].get<int>());
  EXPECT_EQ(std::stoi(fields[21]), json["hints"].get<int>());
}

TEST(AuditTable, HasARowForEachCase) {
  const TempFolder folder;
  AddPanel(folder.Path() / "deck");
  const ProgramRun run = Call(folder, {"cases", "deck", "--csv"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  const std::vector<std::string> rows = ListRows(run.out);
  ASSERT_EQ(rows.size(), 7U) << run.out;
  const std::vector<std::string> names{"case",   "base",    "weight", "heel",
                                       "pallet", "harbour", "sea"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(rows[i].rfind(names[i] + ',', 0), 0U) << rows[i];
  }
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
