// Everything that the program writes is text: its lines end with a carriage return and a line feed.
// A model file may have either line end.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "run/console.h"
#include "support/model_text.h"
#include "support/run_program.h"
#include "support/standard_streams.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

std::string ReadBytes(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// Every line feed follows a carriage return, and there is no other carriage return.
bool HasWindowsLineEnds(const std::string& bytes) {
  std::size_t lines = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool paired = bytes[i] != '\n' || (i > 0 && bytes[i - 1] == '\r');
    const bool alone = bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n');
    if (!paired || alone) return false;
    if (bytes[i] == '\n') ++lines;
  }
  return lines > 0;
}

TEST(LineEnds, OfTheConsole) {
  const StdoutInFile out;
  PrintFormatted("%d\n", 1);
  WriteConsoleLine("2");
  EXPECT_EQ(ReadBytes(out.File()), "1\r\n2\r\n");
}

// A supported node with a quad beside it, so that every file has lines.
std::string MakeModel() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}};
  text.thicknesses = {0.01};
  text.tSections = {{0.1, 0.01, 0.0, 0.0}};
  text.nodes = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  text.shells4 = {{{0, 1, 2, 3}}};
  text.beams.resize(1);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{2, {0, 0, -100, 0, 0, 0}}};
  return WriteModel(text);
}

TEST(LineEnds, OfEveryFile) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", MakeModel());
  ASSERT_EQ(RunProgram(KORVEX_PROGRAM, folder.Path()).exitStatus, 0);
  int files = 0;
  for (const auto& entry : fs::directory_iterator(folder.Path())) {
    if (entry.path().filename() == "fem_solving.txt") continue;
    EXPECT_TRUE(HasWindowsLineEnds(ReadBytes(entry.path()))) << entry.path();
    ++files;
  }
  EXPECT_EQ(files, 7);  // displacements, two stress files, the detail file, two drawings, the log
}

TEST(LineEnds, OfAModelFileMakeNoDifference) {
  std::vector<std::string> displacements;
  const std::string model = MakeModel();
  std::string windowsModel;
  for (const char character : model) {
    if (character == '\n') windowsModel += '\r';
    windowsModel += character;
  }
  for (const std::string& text : {model, windowsModel}) {
    const TempFolder folder;
    WriteFile(folder.Path() / "fem_solving.txt", text);
    EXPECT_EQ(RunProgram(KORVEX_PROGRAM, folder.Path()).exitStatus, 0);
    displacements.push_back(ReadBytes(folder.Path() / "Node_Dis.txt"));
  }
  EXPECT_EQ(displacements[0], displacements[1]);
}

}  // namespace
}  // namespace korvex::test
