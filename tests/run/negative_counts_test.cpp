// A whole run of a model whose counts of sections, elements, forces and distributed loads are
// negative. It gives the results of a model with zeros there, except for the three counts that a
// result file repeats.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/model_text.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

constexpr const char* DetailFile = "Korvex_AverageStrs.txt";

// Replaces the only "key=0\n" in `text` by this count.
void SetCount(const std::string& key, const std::string& count, std::string& text) {
  const std::string zero = key + "=0\n";
  const std::size_t at = text.find(zero);
  ASSERT_NE(at, std::string::npos) << key;
  EXPECT_EQ(text.find(zero, at + 1), std::string::npos) << key;
  text.replace(at, zero.size(), key + "=" + count + "\n");
}

// Two supported nodes and no elements, forces or distributed loads.
std::string MakeModel() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}};
  text.thicknesses = {0.01};
  text.nodes = {{0, 0, 0}, {1, 2, 3}};
  text.restraints = {{0}, {1}};
  return WriteModel(text);
}

ProgramRun RunModel(const std::string& model, const TempFolder& folder) {
  WriteFile(folder.Path() / "fem_solving.txt", model);
  return RunProgram(KORVEX_PROGRAM, folder.Path());
}

TEST(NegativeCounts, ActAsZeroInAWholeRun) {
  const std::string zeros = MakeModel();
  std::string negative = zeros;
  for (const char* key : {"NTBS", "NLBS", "NCBS", "NFOR", "NDL_S_4ND", "NDL_S_3ND", "NDL_B"})
    SetCount(key, "-3", negative);
  SetCount("NELEM_S_4ND", "-1", negative);
  SetCount("NELEM_S_3ND", "-2147483648", negative);
  SetCount("NELEM_B", "-17", negative);

  const TempFolder zeroFolder, negativeFolder;
  const ProgramRun expected = RunModel(zeros, zeroFolder);
  const ProgramRun run = RunModel(negative, negativeFolder);
  EXPECT_EQ(expected.exitStatus, 0);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(MaskTime(run.out), MaskTime(expected.out));
  EXPECT_EQ(run.err, expected.err);
  EXPECT_EQ(run.notices, expected.notices);

  const std::vector<std::string> files = ListFolder(zeroFolder.Path());
  EXPECT_EQ(ListFolder(negativeFolder.Path()), files);
  for (const char* name : {"Node_Dis.txt", "Shell element average node stress.txt",
                           "Shell element node stress.txt", "deformation.dxf", "structure.dxf"}) {
    EXPECT_TRUE(std::filesystem::exists(zeroFolder.Path() / name)) << name;
    EXPECT_EQ(ReadFile(negativeFolder.Path() / name), ReadFile(zeroFolder.Path() / name)) << name;
  }
  std::string details = ReadFile(zeroFolder.Path() / DetailFile);
  SetCount("NELEM_S_4ND", "-1", details);
  SetCount("NELEM_S_3ND", "-2147483648", details);
  SetCount("NELEM_B", "-17", details);
  EXPECT_EQ(ReadFile(negativeFolder.Path() / DetailFile), details);
}

}  // namespace
}  // namespace korvex::test
