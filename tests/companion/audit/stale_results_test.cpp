// Result files that are not those of the model are named, with the line where they begin to differ.
#include "audit/stale_results.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "audit/written_bytes.h"
#include "report/stop.h"
#include "report/texts.h"
#include "results/result_file.h"
#include "run/stages.h"
#include "support/dof_names.h"
#include "support/good_models.h"
#include "support/read_bytes.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ModelText;
using korvex::test::SingleLoad;
using korvex::test::TempFolder;
using korvex::test::WriteFile;
using korvex::test::WriteModel;

// A model with both kinds of shells and a beam, so that every file has rows.
ModelText SmallModel() {
  ModelText text;
  text.materials = {{1200.0, 0.25, 1.0}};
  text.thicknesses = {0.5};
  text.tSections = {{2.0, 0.5, 0.0, 0.0}};
  text.nodes = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {4, 1, 0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.shells3 = {{{1, 4, 2}, 0, 0}};
  text.beams.resize(1);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {3, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{4, SingleLoad(2, -1.0)}};
  return text;
}

// A folder with the files of a run.
struct RunFolder {
  TempFolder folder;
  std::string prefix = folder.Path().string() + '/';
  std::string text;

  explicit RunFolder(const ModelText& model) : text(WriteModel(model)) {
    WriteFile(folder.Path() / "fem_solving.txt", text);
    korvex::Job job;
    job.folder = prefix;
    korvex::ForAllStages([&](const korvex::Stage& stage) { stage.work(job); });
  }
};

std::vector<ResultState> CompareWith(const std::string& prefix, const std::string& text,
                                     int threads = 1) {
  SolvedModel solved;
  SolveInMemory(text, {}, solved);
  std::vector<ResultState> results;
  CompareResults(prefix, {}, solved, results, threads);
  return results;
}

// The state of one file; all others are the same.
ResultState OnlyOther(const std::vector<ResultState>& results, const std::string& name) {
  ResultState found;
  for (const ResultState& result : results) {
    if (result.name == name) {
      found = result;
    } else {
      EXPECT_EQ(result.fit, ResultFit::Same) << result.name;
    }
  }
  return found;
}

TEST(StaleResults, KnowTheFilesOfARun) {
  std::vector<ModelText> models{SmallModel()};
  for (std::uint32_t seed = 0; seed < 6; ++seed) models.push_back(MakeGoodModel(seed));
  for (const ModelText& model : models) {
    const RunFolder run(model);
    for (const int threads : {1, 3}) {
      for (const ResultState& result : CompareWith(run.prefix, run.text, threads)) {
        EXPECT_EQ(result.fit, ResultFit::Same) << result.name << ", line " << result.line;
        EXPECT_EQ(result.line, 0U);
      }
    }
  }
}

// All files that the stages write, in their order, and none besides.
TEST(StaleResults, LookAtEveryFileOfARun) {
  const RunFolder run(SmallModel());
  std::set<std::string> written, compared;
  for (const auto& entry : fs::directory_iterator(run.folder.Path())) {
    if (entry.path().filename() != "fem_solving.txt") {
      written.insert(entry.path().filename().string());
    }
  }
  std::vector<std::string> announced;
  SolvedModel solved;
  SolveInMemory(run.text, {}, solved);
  std::vector<ResultState> results;
  CompareResults(run.prefix, {[&](const char* name) { announced.emplace_back(name); }, {}}, solved,
                 results);
  ASSERT_EQ(results.size(), announced.size());
  for (std::size_t k = 0; k < results.size(); ++k) {
    compared.insert(results[k].name);
    EXPECT_EQ(announced[k], results[k].name);
  }
  EXPECT_EQ(compared, written);
}

TEST(StaleResults, LeaveTheFolderAsItIs) {
  const RunFolder run(SmallModel());
  const auto before = fs::last_write_time(run.folder.Path() / "Node_Dis.txt");
  const auto count = std::distance(fs::directory_iterator(run.folder.Path()), {});
  CompareWith(run.prefix, run.text);
  EXPECT_EQ(fs::last_write_time(run.folder.Path() / "Node_Dis.txt"), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(run.folder.Path()), {}), count);
}

// Each file in turn: missing, cut off, with a byte too many, with one digit changed.
TEST(StaleResults, NameTheFileThatIsNotRight) {
  const RunFolder run(SmallModel());
  for (const ResultState& state : CompareWith(run.prefix, run.text)) {
    SCOPED_TRACE(state.name);
    const std::string file = run.prefix + state.name;
    const std::string bytes = ReadBytes(file);
    const auto lines = static_cast<std::uint64_t>(std::count(bytes.begin(), bytes.end(), '\n'));
    ASSERT_GT(lines, 3U);

    fs::remove(file);
    EXPECT_EQ(OnlyOther(CompareWith(run.prefix, run.text), state.name).fit, ResultFit::Missing);

    WriteFile(file, bytes.substr(0, bytes.size() - 1));
    ResultState found = OnlyOther(CompareWith(run.prefix, run.text), state.name);
    EXPECT_EQ(found.fit, ResultFit::Truncated);
    EXPECT_EQ(found.line, lines);

    WriteFile(file, "");
    found = OnlyOther(CompareWith(run.prefix, run.text), state.name);
    EXPECT_EQ(found.fit, ResultFit::Truncated);
    EXPECT_EQ(found.line, 1U);

    WriteFile(file, bytes + '\n');
    found = OnlyOther(CompareWith(run.prefix, run.text), state.name);
    EXPECT_EQ(found.fit, ResultFit::Differs);
    EXPECT_EQ(found.line, lines + 1);

    std::string other = bytes;
    std::size_t at = other.find_last_not_of("\n ");
    other[at] = other[at] == '1' ? '2' : '1';
    WriteFile(file, other);
    found = OnlyOther(CompareWith(run.prefix, run.text), state.name);
    EXPECT_EQ(found.fit, ResultFit::Differs);
    EXPECT_EQ(found.line, lines);

    WriteFile(file, bytes);
  }
}

// At any byte: the line where the file breaks off.
TEST(StaleResults, NameWhereAFileBreaksOff) {
  const RunFolder run(SmallModel());
  const std::string file = run.prefix + "Node_Dis.txt";
  const std::string bytes = ReadBytes(file);
  for (std::size_t size = 0; size < bytes.size(); size += 7) {
    WriteFile(file, bytes.substr(0, size));
    const ResultState found = OnlyOther(CompareWith(run.prefix, run.text), "Node_Dis.txt");
    EXPECT_EQ(found.fit, ResultFit::Truncated);
    const auto line =
        std::count(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size), '\n') + 1;
    EXPECT_EQ(found.line, static_cast<std::uint64_t>(line));
  }
}

// Another load: everything is stale but the drawing of the structure. The rows of the free nodes
// differ first: node 0 and 3 hold their support forces.
TEST(StaleResults, OfAnEarlierStateOfTheModel) {
  const RunFolder run(SmallModel());
  ModelText text = SmallModel();
  text.forces[0].components[2] = -1.5;
  const std::vector<ResultState> results = CompareWith(run.prefix, WriteModel(text));
  for (const ResultState& result : results) {
    const bool isStructure = result.name == std::string("structure.dxf");
    const bool isDeformation = result.name == std::string("deformation.dxf");
    if (isDeformation) continue;  // scaled to the same size, so that it may be the same
    EXPECT_EQ(result.fit, isStructure ? ResultFit::Same : ResultFit::Differs) << result.name;
  }
  EXPECT_EQ(results[1].line, 2U);  // behind the titles: the support force of node 0
}

// A beam type without a section: the run stops before the file of detail models.
TEST(StaleResults, OfAModelThatHasNotAllResults) {
  const RunFolder run(SmallModel());
  ModelText text = SmallModel();
  text.beams[0].BeamSecType = 3;
  const std::vector<ResultState> results = CompareWith(run.prefix, WriteModel(text));
  EXPECT_EQ(results[5].fit, ResultFit::Unknown);
  EXPECT_EQ(results[5].reason, "Beam 0 has BeamSecType=3, which is no kind of section.");
  EXPECT_EQ(results[1].fit, ResultFit::Differs);  // NaNs
}

TEST(StaleResults, AFolderInTheirPlace) {
  const RunFolder run(SmallModel());
  fs::remove(run.prefix + "Node_Dis.txt");
  fs::create_directory(run.prefix + "Node_Dis.txt");
  const ResultState found = OnlyOther(CompareWith(run.prefix, run.text), "Node_Dis.txt");
  EXPECT_EQ(found.fit, ResultFit::Unknown);
  EXPECT_EQ(found.reason, run.prefix + "Node_Dis.txt cannot be read.");
}

TEST(StaleResults, InAnEmptyFolder) {
  const TempFolder folder;
  SolvedModel solved;
  SolveInMemory(WriteModel(SmallModel()), {}, solved);
  std::vector<ResultState> results;
  CompareResults(folder.Path().string() + '/', {}, solved, results);
  for (const ResultState& result : results) EXPECT_EQ(result.fit, ResultFit::Missing);
  EXPECT_TRUE(solved.details.offers.empty());  // nothing is made for files that are missing
}

TEST(StaleResults, CanBeInterrupted) {
  struct Interruption {};
  const RunFolder run(SmallModel());
  SolvedModel solved;
  SolveInMemory(run.text, {}, solved);
  std::vector<ResultState> results;
  const ComparisonProgress atFile{[](const char*) { throw Interruption(); }, {}};
  EXPECT_THROW(CompareResults(run.prefix, atFile, solved, results), Interruption);
  const ComparisonProgress atDetails{{}, [](double) { throw Interruption(); }};
  EXPECT_THROW(CompareResults(run.prefix, atDetails, solved, results), Interruption);
}

using TakeRoutine = bool (*)(const FileWriter&, const TakeBytes&);

// Both ways give the bytes of a file, more than a pipe holds at once.
TEST(WrittenBytes, AreThoseOfTheFile) {
  for (const TakeRoutine take : {&TakeWrittenBytes, &TakeBytesOfTemporaryFile}) {
    std::string bytes;
    const bool isWhole = take(
        [](const std::string& name) {
          korvex::ResultFile file;
          korvex::OpenResultFile(name, "failed", file);
          for (int k = 0; k < 50000; ++k) korvex::AddLine(file.text, k);
          return korvex::CloseResultFile(file);
        },
        [&](const char* block, std::size_t count) { bytes.append(block, count); });
    std::string expected;
    for (int k = 0; k < 50000; ++k) expected += std::to_string(k) + '\n';
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\r'), bytes.end());
    EXPECT_TRUE(isWhole);
    EXPECT_EQ(bytes.size(), expected.size());
    EXPECT_TRUE(bytes == expected);
  }
}

// A writer that opens nothing, fails or throws does not leave the reader waiting.
TEST(WrittenBytes, EndWhereTheWriterEnds) {
  for (const TakeRoutine take : {&TakeWrittenBytes, &TakeBytesOfTemporaryFile}) {
    std::size_t bytes = 0;
    const TakeBytes count = [&](const char*, std::size_t n) { bytes += n; };
    EXPECT_FALSE(take([](const std::string&) { return false; }, count));
    struct Failure {};
    EXPECT_THROW(take([](const std::string&) -> bool { throw Failure(); }, count), Failure);
    EXPECT_EQ(bytes, 0U);
  }
}

}  // namespace
}  // namespace kvx::test
