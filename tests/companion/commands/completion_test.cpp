// The completion for bash, asked as bash asks it.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::test::TempFolder;

// What bash offers for the words, of which the last one is being typed; one a line.
std::string Complete(const std::string& words) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.Path() / "deck one");
  korvex::test::WriteFile(folder.Path() / "deck.txt", "");
  korvex::test::WriteFile(folder.Path() / "cases.toml", "");
  korvex::test::WriteFile(folder.Path() / "old.html", "");
  korvex::test::WriteFile(folder.Path() / "hull.MSH", "");
  const std::string line = "source \"" KORVEX_SOURCE
                           "/companion/completion/kvx\" && "
                           "COMP_WORDS=(" +
                           words +
                           ") && COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) && "
                           "_kvx && printf \"%s\\n\" \"${COMPREPLY[@]}\"";
  const auto run = korvex::test::RunProgram("/bin/bash", folder.Path(), "", {"-c", line});
  EXPECT_EQ(run.err, "");
  return run.out;
}

TEST(KvxCompletion, IsKnownToBash) {
  const TempFolder folder;
  const auto run = korvex::test::RunProgram(
      "/bin/bash", folder.Path(), "",
      {"-c", "source \"" KORVEX_SOURCE "/companion/completion/kvx\"; complete -p kvx"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "complete -o filenames -F _kvx kvx\n");
}

TEST(KvxCompletion, CompletesCommands) {
  EXPECT_EQ(Complete("kvx ch"), "check\n");
  EXPECT_EQ(Complete("kvx \"\""),
            "import\ncheck\nrun\naudit\nreactions\nforces\ntop\ncases\nview\nexport\nrenumber\nexpl"
            "ain\nlicenses\n--help\n"
            "--version\n");
}

TEST(KvxCompletion, CompletesOptionsAndTheirValues) {
  EXPECT_EQ(Complete("kvx check --s"), "--strict\n");
  EXPECT_EQ(Complete("kvx explain --p"), "--page\n");
  EXPECT_EQ(Complete("kvx view --no"), "--no-details\n");
  EXPECT_EQ(Complete("kvx explain --s"), "");
  EXPECT_EQ(Complete("kvx check --color a"), "auto\nalways\n");
  EXPECT_EQ(Complete("kvx check --color = n"), "never\n");
  EXPECT_EQ(Complete("kvx check --color ="), "auto\nalways\nnever\n");
  EXPECT_EQ(Complete("kvx top --of b"), "beams\nbending\n");
  EXPECT_EQ(Complete("kvx top --by =  t"), "thickness\n");
  EXPECT_EQ(Complete("kvx forces --beam \"\""), "all\n");
  EXPECT_EQ(Complete("kvx run --engine s"), "skyline\nsparse\n");
  EXPECT_EQ(Complete("kvx cases --engine = a"), "auto\n");
  EXPECT_EQ(Complete("kvx run --threads \"\""), "\n");
  EXPECT_EQ(Complete("kvx run --dr"), "--dry-run\n");
  EXPECT_EQ(Complete("kvx run -n d"), "deck one\n");
  EXPECT_EQ(Complete("kvx top -n d"), "\n");
  EXPECT_EQ(Complete("kvx run --out-of-core \"\""), "deck one\n");
  EXPECT_EQ(Complete("kvx export --de"), "--details\n");
  EXPECT_EQ(Complete("kvx top --yield \"\""), "\n");
  EXPECT_EQ(Complete("kvx import --map-"), "--map-template\n");
  EXPECT_EQ(Complete("kvx import --format \"\""), "gmsh\nnastran\nabaqus\n");
  EXPECT_EQ(Complete("kvx import --map \"\""), "cases.toml\ndeck one\n");
}

TEST(KvxCompletion, CompletesFoldersAndCodes) {
  EXPECT_EQ(Complete("kvx check d"), "deck one\n");
  EXPECT_EQ(Complete("kvx forces d"), "deck one\n");
  EXPECT_EQ(Complete("kvx import \"\""), "hull.MSH\ndeck one\n");
  EXPECT_EQ(Complete("kvx import -o d"), "deck one\n");
  EXPECT_EQ(Complete("kvx cases --output d"), "deck one\n");
  EXPECT_EQ(Complete("kvx cases \"\""), "cases.toml\ndeck one\n");
  EXPECT_EQ(Complete("kvx view \"\""), "cases.toml\ndeck one\n");
  EXPECT_EQ(Complete("kvx view -o \"\""), "old.html\ndeck one\n");
  EXPECT_EQ(Complete("kvx view --results \"\""), "deck one\n");
  EXPECT_EQ(Complete("kvx export \"\""), "cases.toml\ndeck one\n");
  EXPECT_EQ(Complete("kvx export --results d"), "deck one\n");
  EXPECT_EQ(Complete("\"" KVX_PROGRAM "\" explain k104"), "K104\n");
}

}  // namespace
}  // namespace kvx::test
