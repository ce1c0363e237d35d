// The files of a run: those of korvex byte for byte, all of them or none.
#include "engine/result_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "audit/displacement_file.h"
#include "model/read_input_file.h"
#include "report/stop.h"
#include "support/expect_stop.h"
#include "support/folder_bytes.h"
#include "support/good_models.h"
#include "support/read_bytes.h"
#include "support/repeats.h"
#include "support/run_program.h"
#include "support/solved_examples.h"
#include "support/temp_folder.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ExpectStop;
using korvex::test::ListFolder;
using korvex::test::TempFolder;
using korvex::test::WithLog;
using korvex::test::WriteFile;

using BeforeFile = std::function<void(const char* name)>;

// The results of a model with these displacements, NPOIN x 6, in the folder.
void WriteResultFolder(const std::string& folder, const std::string& modelText,
                       const std::vector<double>& displacements, const BeforeFile& before,
                       const std::string& solution = "", int threads = 1) {
  UnfinishedFolder unfinished;
  BeginUnfinished(folder, NameResultFiles(), unfinished);
  korvex::Model model;
  korvex::ReadInputText(modelText, model);
  korvex::NumberEquations(model);
  model.Displacements = displacements;
  DetailPeaks details;
  WriteResults({modelText, 0.25, solution, before, {}, threads}, model, details, unfinished);
}

// A model text with its displacements, in an empty folder.
struct Solved {
  TempFolder folder;
  std::string prefix = folder.Path().string() + '/';
  std::string text;
  std::vector<double> displacements;

  explicit Solved(std::string modelText) : text(std::move(modelText)) {
    SolvedModel solved;
    SolveInMemory(text, {}, solved);
    displacements = solved.model.Displacements;
  }
  void Write(const BeforeFile& before = {}, int threads = 1) const {
    WriteResultFolder(prefix, text, displacements, before, "", threads);
  }
};

std::string GoodText(std::uint32_t seed) { return korvex::test::WriteModel(MakeGoodModel(seed)); }

const std::vector<std::string> NoNames;
const std::vector<std::string> Names{"Korvex_AverageStrs.txt",
                                     "Node_Dis.txt",
                                     "Shell element average node stress.txt",
                                     "Shell element node stress.txt",
                                     "deformation.dxf",
                                     "displacements.bin",
                                     "structure.dxf"};

TEST(ResultFolder, HasTheBytesOfTheSolver) {
  for (const std::string& name : ListSolvedExamples()) {
    const Solved solved(ReadBytes(std::string(KORVEX_EXAMPLES "/") + name + "/fem_solving.txt"));
    solved.Write();
    EXPECT_EQ(ListDifferent(ReadFolder(solved.folder.Path()), RunSolver(solved.text)), NoNames)
        << name;
  }
  for (std::uint32_t seed = 0; seed < 12; ++seed) {
    const Solved solved(GoodText(seed));
    solved.Write();
    EXPECT_EQ(ListDifferent(ReadFolder(solved.folder.Path()), RunSolver(solved.text)), NoNames)
        << seed;
  }
}

TEST(ResultFolder, HasTheSameBytesForAnyNumberOfThreads) {
  for (std::uint32_t seed = 20; seed < 20 + korvex::test::Repeats(12); ++seed) {
    const Solved solved(GoodText(seed));
    solved.Write();
    const FolderBytes expected = ReadFolder(solved.folder.Path());
    std::vector<int> numbers{3, 2, 8};
    numbers.resize(korvex::test::Repeats(3));
    for (const int threads : numbers) {
      solved.Write({}, threads);
      EXPECT_EQ(ListDifferent(ReadFolder(solved.folder.Path()), expected), NoNames)
          << seed << ", threads: " << threads;
    }
  }
}

TEST(ResultFolder, KeepsTheDisplacementsBitByBit) {
  const Solved solved(GoodText(3));
  solved.Write();
  EXPECT_EQ(ListFolder(solved.folder.Path()), WithLog(Names));
  std::vector<double> read;
  const DisplacementReading reading =
      ReadDisplacementFile(solved.prefix + "displacements.bin", IdentifyModelFile(solved.text),
                           static_cast<std::int32_t>(solved.displacements.size() / 6), read);
  EXPECT_EQ(reading.fit, DisplacementFit::Fits) << reading.reason;
  EXPECT_EQ(read, solved.displacements);
}

// The time stands as a stream writes 0.25; the memory is that of korvex (above).
TEST(ResultFolder, HasTheTimeInItsLog) {
  const Solved solved(GoodText(4));
  solved.Write();
  const std::string log = korvex::test::ReadFile(solved.folder.Path() / korvex::test::LogPath());
  EXPECT_EQ(log.substr(log.find('\n') + 1), "Solution time:0.25 seconds.\n");
}

// solution.json comes and goes with the other files; without a text there is none.
TEST(ResultFolder, HasWhatIsToldOfTheSolution) {
  const Solved solved(GoodText(4));
  const fs::path file = solved.folder.Path() / "solution.json";
  WriteResultFolder(solved.prefix, solved.text, solved.displacements, {}, "{\"a\": 1}\n");
  EXPECT_EQ(ReadBytes(file), "{\"a\": 1}\n");
  EXPECT_EQ(ListResultFiles(solved.prefix).size(), 9U);
  struct Enough {};
  const auto stop = [](const char* name) {
    if (std::string(name) == "displacements.bin") throw Enough{};
  };
  EXPECT_THROW(WriteResultFolder(solved.prefix, solved.text, solved.displacements, stop, "new"),
               Enough);
  EXPECT_EQ(ReadBytes(file), "{\"a\": 1}\n");
  EXPECT_EQ(RemoveStaleResults(solved.prefix, solved.text + ' ').size(), 9U);
  EXPECT_FALSE(fs::exists(file));
  solved.Write();
  EXPECT_FALSE(fs::exists(file));
}

// Interrupted before each of its files, what was there stays, and nothing else.
TEST(ResultFolder, StaysAsItIsWhereTheWorkEndsEarly) {
  const Solved solved(GoodText(5));
  for (const std::string& name : Names) WriteFile(solved.folder.Path() / name, "old " + name);
  const FolderBytes before = ReadFolder(solved.folder.Path());
  struct Enough {};
  std::vector<std::string> begun;
  for (std::size_t last = 0; last < Names.size(); ++last) {
    begun.clear();
    EXPECT_THROW(solved.Write([&](const char* name) {
      EXPECT_TRUE(fs::exists(solved.folder.Path() / "kvx-unfinished"));
      begun.emplace_back(name);
      if (begun.size() > last) throw Enough{};
    }),
                 Enough);
    EXPECT_EQ(ListDifferent(ReadFolder(solved.folder.Path()), before), NoNames);
    EXPECT_EQ(ListFolder(solved.folder.Path()), Names);
    EXPECT_EQ(ReadBytes(solved.folder.Path() / "displacements.bin"), "old displacements.bin");
  }
  // All files but the log were asked for.
  EXPECT_EQ(korvex::test::Sorted(begun), Names);
  solved.Write();
  EXPECT_EQ(ListDifferent(ReadFolder(solved.folder.Path()), RunSolver(solved.text)), NoNames);
  EXPECT_NE(ReadBytes(solved.folder.Path() / "displacements.bin"), "old displacements.bin");
}

TEST(ResultFolder, StaysAsItIsWhereAFolderHasTheNameOfAFile) {
  const Solved solved(GoodText(6));
  fs::create_directory(solved.folder.Path() / "Node_Dis.txt");
  WriteFile(solved.folder.Path() / "structure.dxf", "old");
  ExpectStop([&] { solved.Write(); },
             solved.prefix + "Node_Dis.txt cannot be written: a folder has this name.",
             korvex::StopKind::ResultFile);
  EXPECT_EQ(ListFolder(solved.folder.Path()),
            (std::vector<std::string>{"Node_Dis.txt", "structure.dxf"}));
  EXPECT_EQ(ReadBytes(solved.folder.Path() / "structure.dxf"), "old");
}

TEST(ResultFolder, DoesNotReplaceAProtectedFile) {
  const Solved solved(GoodText(6));
  const fs::path file = solved.folder.Path() / "deformation.dxf";
  WriteFile(file, "mine");
  fs::permissions(file, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  ExpectStop([&] { solved.Write(); },
             solved.prefix + "deformation.dxf cannot be written: it is protected against writing.",
             korvex::StopKind::ResultFile);
  EXPECT_EQ(ListFolder(solved.folder.Path()), std::vector<std::string>{"deformation.dxf"});
  EXPECT_EQ(ReadBytes(file), "mine");
  fs::permissions(file, fs::perms::owner_all);
}

// Each file of the solver in turn lies on a disk that is full.
TEST(ResultFolder, StaysAsItIsWhereAFileIsIncomplete) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  const Solved solved(GoodText(9));
  WriteFile(solved.folder.Path() / "structure.dxf", "old");
  for (const std::string& full : Names) {
    if (full == "displacements.bin") continue;  // it is made beside its place
    SCOPED_TRACE(full);
    const auto spoil = [&](const char* name) {
      if (name != full) return;
      fs::create_symlink("/dev/full", solved.folder.Path() / "kvx-unfinished" / name);
    };
    for (const int threads : {1, 3}) {
      ExpectStop([&] { solved.Write(spoil, threads); },
                 full + " cannot be written: No space left on device.",
                 korvex::StopKind::ResultFile);
      EXPECT_EQ(ListFolder(solved.folder.Path()), std::vector<std::string>{"structure.dxf"});
      EXPECT_EQ(ReadBytes(solved.folder.Path() / "structure.dxf"), "old");
    }
  }
}

TEST(ResultFolder, NeedsAllDisplacements) {
  Solved solved(GoodText(6));
  const std::size_t equations = solved.displacements.size();
  solved.displacements.pop_back();
  ExpectStop([&] { solved.Write(); }, "There are " + std::to_string(equations - 1) +
                                          " displacements for " + std::to_string(equations) +
                                          " equations.");
  EXPECT_EQ(ListFolder(solved.folder.Path()), std::vector<std::string>{});
}

TEST(ResultFolder, NamesAFolderThatIsNotThere) {
  const Solved solved(GoodText(6));
  try {
    WriteResultFolder(solved.prefix + "no/", solved.text, solved.displacements, {});
    FAIL();
  } catch (const korvex::Stop& stop) {
    EXPECT_EQ(stop.kind, korvex::StopKind::ResultFile);
    EXPECT_EQ(stop.text.rfind(solved.prefix + "no/ cannot be written: ", 0), 0U) << stop.text;
  }
}

TEST(RemovedResults, AreThoseOfAnEarlierState) {
  const Solved solved(GoodText(7));
  solved.Write();
  WriteFile(solved.folder.Path() / "fem_solving.txt", solved.text);
  WriteFile(solved.folder.Path() / "notes.txt", "mine");
  const std::vector<std::string> all = ListFolder(solved.folder.Path());
  EXPECT_FALSE(HasStaleResults(solved.prefix, solved.text));
  EXPECT_EQ(RemoveStaleResults(solved.prefix, solved.text), std::vector<std::string>{});
  EXPECT_EQ(ListFolder(solved.folder.Path()), all);

  const std::vector<std::string> there = ListResultFiles(solved.prefix);
  EXPECT_EQ(there.size(), 8U);  // six of the solver, its log and displacements.bin
  EXPECT_TRUE(HasStaleResults(solved.prefix, solved.text + ' '));
  EXPECT_EQ(RemoveStaleResults(solved.prefix, solved.text + ' '), there);
  std::vector<std::string> left = ListFolder(solved.folder.Path());
  // The link of the log stays, for the next one.
  for (const std::string& name : korvex::test::LogNames()) {
    left.erase(std::remove(left.begin(), left.end(), name), left.end());
  }
  EXPECT_EQ(left, (std::vector<std::string>{"fem_solving.txt", "notes.txt"}));
  EXPECT_EQ(ListResultFiles(solved.prefix), std::vector<std::string>{});
}

// Of results without displacements.bin, or with one that says nothing, nothing is known.
TEST(RemovedResults, AreNotThoseOfWhichNothingIsKnown) {
  const Solved solved(GoodText(8));
  solved.Write();
  const std::string exact = ReadBytes(solved.folder.Path() / "displacements.bin");
  for (const std::string& bytes : {exact.substr(0, 39), "x" + exact, std::string()}) {
    WriteFile(solved.folder.Path() / "displacements.bin", bytes);
    EXPECT_FALSE(HasStaleResults(solved.prefix, solved.text + ' '));
    EXPECT_EQ(RemoveStaleResults(solved.prefix, solved.text + ' '), std::vector<std::string>{});
    EXPECT_EQ(ListResultFiles(solved.prefix).size(), 8U);
  }
  fs::remove(solved.folder.Path() / "displacements.bin");
  EXPECT_EQ(RemoveStaleResults(solved.prefix, solved.text + ' '), std::vector<std::string>{});
  EXPECT_EQ(ListResultFiles(solved.prefix).size(), 7U);
}

}  // namespace
}  // namespace kvx::test
