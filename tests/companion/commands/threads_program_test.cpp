// kvx on several threads: whole runs of small models, which the thread sanitizer takes, too.
#include <gtest/gtest.h>

#include "sparse/sparse_factor.h"
#include "support/folder_bytes.h"
#include "support/good_models.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ProgramRun;

// Folders: deck with a model, factors for the factors.
struct KvxThreads : testing::Test {
  korvex::test::TempFolder base;
  fs::path deck = base.Path() / "deck";

  void SetUp() override {
    fs::create_directory(deck);
    fs::create_directory(base.Path() / "factors");
    korvex::test::WriteFile(deck / "fem_solving.txt", korvex::test::WriteModel(MakeGoodModel(203)));
  }
  void Call(const std::vector<std::string>& arguments) const {
    const ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  }
};

TEST_F(KvxThreads, WriteTheBytesOfOne) {
  Call({"run", "deck", "--engine=skyline", "--threads=1"});
  const FolderBytes expected = ReadFolder(deck);
  Call({"run", "deck", "--engine=skyline", "--threads=3"});
  EXPECT_EQ(ListDifferent(ReadFolder(deck), expected), std::vector<std::string>());
  Call({"audit", "deck"});
}

// BLAS, MUMPS and the thread that looks out for interrupts at once.
TEST_F(KvxThreads, SolveOutOfCore) {
  if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  Call({"run", "deck", "--engine=sparse", "--threads=3", "--out-of-core=factors"});
  EXPECT_TRUE(fs::is_empty(base.Path() / "factors"));
}

}  // namespace
}  // namespace kvx::test
