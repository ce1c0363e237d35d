// The same mesh in all six forms of a file, and files that are cut off.
#include <gtest/gtest.h>

#include <string>

#include "mesh/gmsh/import_gmsh.h"
#include "mesh/gmsh/sample_mesh.h"
#include "report/stop.h"

namespace kvx::test {
namespace {

// The sample mesh by hand. The group "side" is reversed: its triangles keep their first node and go
// round the other way. Line 105 is in no group.
const char* const SampleModel =
    "node 10: 0.000000 0.000000 0.000000\n"
    "node 20: 2.000000 0.000000 0.000000\n"
    "node 30: 2.000000 1.000000 0.000000\n"
    "node 40: 0.000000 1.000000 0.000000\n"
    "node 50: 4.000000 0.000000 0.500000\n"
    "node 2000000: 4.000000 1.000000 -0.250000\n"
    "quadrangle 101: 10 20 30 40\n"
    "triangle 102: 20 2000000 50 -\n"
    "triangle 103: 20 30 2000000 -\n"
    "line 104: 10 20\n"
    "group tip, physical point 9, nodes 50, elements\n"
    "group edge, physical line 5, nodes 10 20, elements 104\n"
    "group deck, physical surface 1, nodes 10 20 30 40, elements 101\n"
    "group side, physical surface 2, nodes 20 30 50 2000000, elements 102 103\n"
    "group all, physical surface 7, nodes 10 20 30 40, elements 101\n";

TEST(ImportGmsh, AllFormsOfAFileGiveTheSameModel) {
  for (const SampleForm& form : AllForms()) {
    ImportModel model;
    ImportReport report;
    ImportText(WriteSample(MakeSampleMesh(), form), model, report);
    EXPECT_EQ(Describe(model), SampleModel) << FormName(form);
    EXPECT_EQ(model.format, form.is41 ? "gmsh 4.1" : "gmsh 2.2");
    ASSERT_EQ(report.entries.size(), 1U) << Describe(report);
    EXPECT_EQ(report.entries[0].reason, "in no physical group: an edge of the geometry, no beam");
    EXPECT_EQ(report.entries[0].example, "element 105");
    EXPECT_EQ(report.entries[0].fate, Fate::NoEffect);
  }
}

// Rows of the file, counted by hand: format 2.2 has the quadrilateral of two groups twice.
TEST(ImportGmsh, CountsSectionsAndElementRows) {
  for (const SampleForm& form : AllForms()) {
    ImportModel model;
    ImportReport report;
    ImportText(WriteSample(MakeSampleMesh(), form), model, report);
    EXPECT_EQ(report.cards.at("$Nodes").count, 1U);
    EXPECT_EQ(report.cards.at("$PhysicalNames").count, 1U);
    EXPECT_EQ(report.cards.count("$Entities"), form.is41 ? 1U : 0U);
    EXPECT_EQ(report.cards.at("element type 1").count, 2U);
    EXPECT_EQ(report.cards.at("element type 2").count, 2U);
    EXPECT_EQ(report.cards.at("element type 3").count, form.is41 ? 1U : 2U);
    EXPECT_EQ(report.cards.at("element type 15").count, 1U);
    // In text $MeshFormat has three lines, so the next section begins in line 4.
    EXPECT_EQ(report.cards.at("$PhysicalNames").first.line, form.isBinary ? 0U : 4U);
  }
}

TEST(ImportGmsh, WindowsLineEndsAreLineEnds) {
  for (const bool is41 : {false, true}) {
    std::string text = WriteSample(MakeSampleMesh(), {is41, false, false});
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2)) {
      text.insert(at, "\r");
    }
    ImportModel model;
    ImportReport report;
    ImportText(text, model, report);
    EXPECT_EQ(Describe(model), SampleModel);
    EXPECT_EQ(report.cards.at("$PhysicalNames").first.line, 4U);
  }
}

// Every cut but those within the line ends behind the last mark.
TEST(ImportGmsh, AFileThatIsCutOffAnywhereIsNeverLoadedWithLess) {
  for (const SampleForm& form : AllForms()) {
    const std::string text = WriteSample(MakeSampleMesh(), form);
    const std::string place = form.isBinary ? "\"plate.msh\": byte " : "\"plate.msh\", line ";
    ASSERT_GT(text.size(), 400U);
    for (std::size_t size = 0; size + 1 < text.size(); ++size) {
      const std::string stop = StopOf(text.substr(0, size));
      // What is cut off within the first lines is not known to be binary yet.
      const bool isKnown = size > 30;
      EXPECT_EQ(stop.substr(0, isKnown ? place.size() : 11), isKnown ? place : "\"plate.msh\"")
          << FormName(form) << ", cut at " << size << " of " << text.size() << ": " << stop;
    }
    EXPECT_EQ(StopOf(text.substr(0, text.size() - 1)), "");
    EXPECT_EQ(StopOf(text), "");
  }
}

TEST(ImportGmsh, TheLineOfACutIsTheLastOne) {
  const std::string text = WriteSample(MakeSampleMesh(), {false, false, false});
  // Within the coordinates of node 30, the third row: two lines of $Nodes stand before the rows.
  const std::size_t cut = text.find("\n30 2.000") + 6;
  const std::string before = text.substr(0, cut);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::string stop = StopOf(before);
  EXPECT_EQ(stop.substr(0, stop.find(':')), "\"plate.msh\", line " + std::to_string(line));
  EXPECT_NE(stop.find("the file ends within $Nodes"), std::string::npos) << stop;
}

TEST(ImportGmsh, ACutBehindASectionNamesWhatIsMissing) {
  for (const SampleForm& form : AllForms()) {
    const std::string text = WriteSample(MakeSampleMesh(), form);
    const std::size_t elements = text.find("$Elements");
    EXPECT_NE(StopOf(text.substr(0, elements)).find("ends without $Elements"), std::string::npos);
    const std::size_t nodes = text.find("$Nodes");
    EXPECT_NE(StopOf(text.substr(0, nodes)).find("ends without $Nodes"), std::string::npos);
    const std::size_t end = text.find("$EndElements");
    EXPECT_NE(StopOf(text.substr(0, end)).find("$EndElements is missing"), std::string::npos);
  }
}

}  // namespace
}  // namespace kvx::test
