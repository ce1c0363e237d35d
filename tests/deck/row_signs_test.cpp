// The signs between the numbers of a row: each must directly follow the digits before it. A blank
// in between ends the reading of the row there, and nothing after the row is read.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "deck/read_tables.h"
#include "support/model_text.h"

namespace korvex {
namespace {

// One row of each kind that has signs between its numbers.
std::string MakeFile() {
  test::ModelText text;
  text.materials = {{2e11, 0.3, 7850}};
  text.thicknesses = {0.01};
  text.tSections = {{0.3, 0.01, 0.1, 0.012}};
  text.nodes = {{2, 3, 4}};
  text.shells4 = {{{0, 0, 0, 0}, 0, 0}};
  text.shells3 = {{{0, 0, 0}, 0, 0}};
  text.beams.resize(1);
  text.beams[0].node2 = 0;
  text.restraints = {{5, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{7, {11, 12, -1000, 14, 15, 16}}};
  text.shell4Loads = {{8, {21, 22, 23}}};
  text.shell3Loads = {{9, {31, 32, 33}}};
  text.beamLoads = {{6, 41, 42}};
  return test::WriteModel(text);
}

// A kind of row.
struct Kind {
  Section section;
  const char* name;
  std::string row;  // as it stands in the file
};

const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kinds{
      {Section::Nodes, "node", "0:2,3,4"},
      {Section::Shells4, "quadrilateral", "0:0,0,0,0[0,0]"},
      {Section::Shells3, "triangle", "0:0,0,0[0,0]"},
      {Section::Beams, "beam",
       "0:0,0<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
      {Section::Restraints, "restraint", "5: 1 1 1 1 1 1"},
      {Section::Forces, "force", "7<11,12,-1000,14,15,16>"},
      {Section::Shell4Loads, "load on a quadrilateral", "8:21,22,23"},
      {Section::Shell3Loads, "load on a triangle", "9:31,32,33"},
      {Section::BeamLoads, "load on a beam", "6:41,42"},
  };
  return kinds;
}

const Kind& KindOf(Section section) {
  for (const Kind& kind : Kinds()) {
    if (kind.section == section) return kind;
  }
  ADD_FAILURE() << "no such kind";
  return Kinds().front();
}

// What the listener is told about the only row of a section.
RowReading ReadRow(const std::string& text, Section section, ModelTables& tables) {
  RowReading found;
  RowListener listener;
  listener.row = [&](const RowReading& reading) {
    if (reading.section == section && reading.row == 0) found = reading;
  };
  ReadTables(text, listener, tables);
  EXPECT_EQ(found.row, 0);
  return found;
}

// The file with a blank inserted before byte `at` of the row, counted from 0.
std::string InsertBlank(const Kind& kind, std::size_t at) {
  std::string text = MakeFile();
  const std::size_t begin = text.find('\n' + kind.row + '\n');
  EXPECT_NE(begin, std::string::npos) << kind.row;
  return text.insert(begin + 1 + at, 1, ' ');
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A correct row is read whole; one with a blank before one of its signs is read up to that sign.
TEST(RowSigns, FollowTheirDigitsDirectly) {
  for (const Kind& kind : Kinds()) {
    ModelTables whole;
    EXPECT_EQ(ReadRow(MakeFile(), kind.section, whole).awaited, nullptr) << kind.name;
    int numbers = 0;
    for (std::size_t at = 1; at < kind.row.size(); ++at) {
      if (!IsDigit(kind.row[at - 1]) || IsDigit(kind.row[at])) continue;
      ++numbers;  // complete before `at`
      if (kind.row[at] == ' ') continue;
      SCOPED_TRACE(kind.name + (": " + kind.row.substr(0, at)) + " " + kind.row.substr(at));
      ModelTables tables;
      const RowReading reading = ReadRow(InsertBlank(kind, at), kind.section, tables);
      EXPECT_EQ(reading.fieldsTaken, numbers);
      ASSERT_NE(reading.awaited, nullptr);
      EXPECT_EQ(reading.awaited[0], kind.row[at]);
    }
    EXPECT_GT(numbers, 1) << kind.name;
  }
}

// Reads the file with a blank after the first digit of the section's row.
void ReadRowWithBlank(Section section, ModelTables& tables) {
  ReadRow(InsertBlank(KindOf(section), 1), section, tables);
}

// "7 <11,...": the node is read, the components of the force are not.
TEST(RowSigns, AForceRowWithABlankBeforeItsValuesHasTheNodeAlone) {
  ModelTables tables;
  ReadRowWithBlank(Section::Forces, tables);
  ASSERT_EQ(tables.NodalForces.size(), 1U);
  EXPECT_EQ(tables.NodalForces[0].node, 7);
  EXPECT_EQ(tables.NodalForces[0].components, (std::array<double, 6>{}));
  EXPECT_EQ(tables.NDL_S_4ND, 0);  // not read, nor is anything after it
  EXPECT_EQ(tables.NDL_B, 0);
}

// The same for the rows whose first sign is a colon.
TEST(RowSigns, ARowWithABlankBeforeItsColonHasItsNumberAlone) {
  ModelTables node, restraint, load4, load3, loadB;
  ReadRowWithBlank(Section::Nodes, node);
  EXPECT_EQ(node.Nodes.at(0).x, 0.0);
  EXPECT_EQ(node.NELEM_S_4ND, 0);
  ReadRowWithBlank(Section::Restraints, restraint);
  EXPECT_EQ(restraint.NodalRestraints.at(0).node, 5);
  EXPECT_EQ(restraint.NodalRestraints.at(0).fixed, (std::array<std::int32_t, 6>{}));
  EXPECT_EQ(restraint.NFOR, 0);
  ReadRowWithBlank(Section::Shell4Loads, load4);
  EXPECT_EQ(load4.Shell4SurfaceLoads.at(0).element, 8);
  EXPECT_EQ(load4.Shell4SurfaceLoads.at(0).q, (std::array<double, 3>{}));
  EXPECT_EQ(load4.NDL_S_3ND, 0);
  ReadRowWithBlank(Section::Shell3Loads, load3);
  EXPECT_EQ(load3.Shell3SurfaceLoads.at(0).element, 9);
  EXPECT_EQ(load3.Shell3SurfaceLoads.at(0).q, (std::array<double, 3>{}));
  EXPECT_EQ(load3.NDL_B, 0);
  ReadRowWithBlank(Section::BeamLoads, loadB);
  EXPECT_EQ(loadB.BeamLineLoads.at(0).element, 6);
  EXPECT_EQ(loadB.BeamLineLoads.at(0).q, (std::array<double, 2>{}));
}

}  // namespace
}  // namespace korvex
