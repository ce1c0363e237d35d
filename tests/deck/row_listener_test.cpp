// What the reader reports about each row: place, fields, where and why it stopped. The tables can
// also be read without a listener.
#include "deck/row_listener.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "deck/read_tables.h"
#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/model_text.h"

namespace korvex {
namespace {

using test::ModelText;

// Three nodes, a triangle, a restraint and a force.
std::string MakeFile() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850}};
  text.thicknesses = {0.01};
  text.nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  text.shells3 = {{{0, 1, 2}, 0, 0}};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 0, 0, 0}}};
  text.forces = {{2, {0, 0, -1000, 0, 0, 0}}};
  return test::WriteModel(text);
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

// All that a listener hears of the text.
std::vector<RowReading> Listen(const std::string& text, ModelTables& tables) {
  std::vector<RowReading> readings;
  RowListener listener;
  listener.row = [&](const RowReading& reading) { readings.push_back(reading); };
  ReadTables(text, listener, tables);
  return readings;
}

std::vector<RowReading> Listen(const std::string& text) {
  ModelTables tables;
  return Listen(text, tables);
}

const RowReading& Find(const std::vector<RowReading>& readings, Section section, std::int32_t row) {
  for (const RowReading& reading : readings) {
    if (reading.section == section && reading.row == row) return reading;
  }
  ADD_FAILURE() << "no such row";
  return readings.front();
}

// The line of the text, 1-based, that begins with `start`.
std::size_t LineOf(const std::string& text, const std::string& start) {
  std::size_t line = 1;
  for (std::size_t at = 0; at < text.find('\n' + start) + 1; ++at) line += text[at] == '\n' ? 1 : 0;
  return line;
}

// The header, fourteen counts, and a material, a thickness, three nodes, a triangle, two restraints
// and a force.
TEST(RowListener, HearsEveryRowInOrder) {
  const std::string text = MakeFile();
  const std::vector<RowReading> readings = Listen(text);
  EXPECT_EQ(readings.size(), 1U + 14U + 9U);
  int section = -1;
  std::size_t line = 0;
  for (const RowReading& reading : readings) {
    EXPECT_EQ(reading.awaited, nullptr);
    EXPECT_EQ(reading.fieldsTaken, reading.fieldsExpected);
    EXPECT_GE(static_cast<int>(reading.section), section);
    EXPECT_GT(reading.place.line, line);
    EXPECT_EQ(reading.place.column, 1U);
    section = static_cast<int>(reading.section);
    line = reading.place.line;
  }
}

TEST(RowListener, TellsTheLineAndTheFieldsOfARow) {
  const std::string text = MakeFile();
  const std::vector<RowReading> readings = Listen(text);
  const RowReading& material = Find(readings, Section::Materials, 0);
  EXPECT_EQ(material.place.line, 3U);
  EXPECT_EQ(material.fieldsExpected, 4);  // its label, E, Mu, Density
  const RowReading& node = Find(readings, Section::Nodes, 2);
  EXPECT_EQ(node.place.line, LineOf(text, "2:0,1,0"));
  EXPECT_EQ(node.fieldsExpected, 4);
  EXPECT_EQ(Find(readings, Section::Shells3, 0).fieldsExpected, 6);
  EXPECT_EQ(Find(readings, Section::Restraints, 1).fieldsExpected, 7);
  const RowReading& count = Find(readings, Section::Forces, TitleRow);
  EXPECT_EQ(count.place.line, LineOf(text, "Number of forces"));
  EXPECT_EQ(count.fieldsExpected, 1);
}

// "0: 1,1,1,1,1,1": the comma ends the first flag; the other five find no number, nor do the rows
// after it.
TEST(RowListener, TellsWhereAndWhyARestraintWithCommasStops) {
  const std::string text = Replace(MakeFile(), "0: 1 1 1 1 1 1", "0: 1,1,1,1,1,1");
  const std::vector<RowReading> readings = Listen(text);
  const RowReading& reading = Find(readings, Section::Restraints, 0);
  EXPECT_EQ(reading.place.line, LineOf(text, "0: 1,1"));
  EXPECT_EQ(reading.fieldsTaken, 2);
  EXPECT_EQ(reading.fieldsExpected, 7);
  EXPECT_STREQ(reading.awaited, "%d");
  EXPECT_EQ(reading.stop.line, reading.place.line);
  EXPECT_EQ(reading.stop.column, 5U);
  EXPECT_EQ(text[reading.stopByte], ',');
}

TEST(RowListener, TellsRunningNumbersAndOddNumbers) {
  const std::string text = Replace(MakeFile(), "1:1,0,0\n", "7:1,1e999,5e\n");
  const std::vector<RowReading> readings = Listen(text);
  const RowReading& reading = Find(readings, Section::Nodes, 1);
  EXPECT_EQ(reading.awaited, nullptr);
  EXPECT_EQ(reading.number, 7);
  EXPECT_EQ(reading.odd, OddNumber::RealTooLarge);
  EXPECT_EQ(text.substr(reading.oddByte, 5), "1e999");
  EXPECT_EQ(text.substr(reading.endByte, 4), "2:0,");
  EXPECT_EQ(Find(readings, Section::Materials, 0).number, 0);
  EXPECT_EQ(Find(readings, Section::Shells3, 0).odd, OddNumber::None);
  EXPECT_EQ(Find(readings, Section::BeamLoads, TitleRow).endByte, text.size());
}

TEST(RowListener, TellsTheLiteralThatIsMissing) {
  const std::string text = Replace(MakeFile(), "1:1,0,0\n", "1:1;0,0\n");
  const RowReading reading = Find(Listen(text), Section::Nodes, 1);
  EXPECT_EQ(reading.fieldsTaken, 2);
  EXPECT_STREQ(reading.awaited, ",%lf,%lf\n");
  EXPECT_EQ(reading.stop.column, 4U);
  EXPECT_EQ(text[reading.stopByte], ';');
}

// The row's second format fails first; that later ones fail too is not reported.
TEST(RowListener, TellsTheFirstOfSeveralStops) {
  const std::string text = Replace(MakeFile(), "E=2e+11", "E:2e+11");
  const RowReading reading = Find(Listen(text), Section::Materials, 0);
  EXPECT_EQ(reading.fieldsTaken, 1);
  EXPECT_STREQ(reading.awaited, "=%lf\n");
  EXPECT_EQ(reading.stop.line, 4U);
  EXPECT_EQ(reading.stop.column, 2U);
}

// The stop lies after the last byte; only the first of the missing rows is reported.
TEST(RowListener, TellsTheEndOfTheText) {
  const std::string text = Replace(MakeFile(), "NFOR=1", "NFOR=5");
  const std::string cut = text.substr(0, text.find("2<0,0"));
  const std::vector<RowReading> readings = Listen(cut);
  const RowReading& first = Find(readings, Section::Forces, 0);
  EXPECT_EQ(first.fieldsTaken, 0);
  EXPECT_EQ(first.stopByte, cut.size());
  EXPECT_EQ(first.stop.line, first.place.line);
  int forces = 0;
  for (const RowReading& reading : readings) forces += reading.section == Section::Forces ? 1 : 0;
  EXPECT_EQ(forces, 2);  // the count and the first row
}

// A decimal comma, in a line with indentation and a Windows line end.
TEST(RowListener, CountsLinesAndColumnsInBytes) {
  const std::string text = Replace(MakeFile(), "Mu=0.3\n", "\r\n  Mu=0,3\r\n");
  const RowReading reading = Find(Listen(text), Section::Materials, 0);
  EXPECT_STREQ(reading.awaited, "Density=%lf\n");
  EXPECT_EQ(reading.stop.line, 6U);
  EXPECT_EQ(reading.stop.column, 7U);
}

TEST(RowListener, HearsOfACountBeforeItsRows) {
  std::vector<std::string> calls;
  RowListener listener;
  listener.makeRoom = [&](Section section, std::int32_t count) {
    if (section == Section::Restraints) calls.push_back("room for " + std::to_string(count));
  };
  listener.row = [&](const RowReading& reading) {
    if (reading.section != Section::Restraints) return;
    calls.push_back("row " + std::to_string(reading.row));
  };
  ModelTables tables;
  ReadTables(MakeFile(), listener, tables);
  EXPECT_EQ(calls, (std::vector<std::string>{"row -1", "room for 2", "row 0", "row 1"}));
}

// When the listener hears of a row, the values are already in the table.
TEST(RowListener, HearsOfARowWhenItIsStored) {
  ModelTables tables;
  RowListener listener;
  int rows = 0;
  listener.row = [&](const RowReading& reading) {
    if (reading.row == TitleRow) return;
    ++rows;
    if (reading.section == Section::Nodes && reading.row == 2) {
      EXPECT_EQ(tables.Nodes[2].y, 1.0);
    }
    if (reading.section == Section::Shells3) {
      EXPECT_EQ(tables.Shell3Nodes, (std::vector<std::int32_t>{0, 1, 2}));
      EXPECT_EQ(tables.Shell3Properties.size(), 1U);
    }
  };
  ReadTables(MakeFile(), listener, tables);
  EXPECT_EQ(rows, 9);
}

// References are not checked here: any row number is accepted.
TEST(RowListener, TablesAreReadWithoutAListener) {
  ModelTables tables;
  ReadTables(Replace(MakeFile(), "0:0,1,2[0,0]", "0:0,1,99[-7,8]"), {}, tables);
  EXPECT_EQ(tables.NPOIN, 3);
  EXPECT_EQ(tables.Shell3Nodes, (std::vector<std::int32_t>{0, 1, 99}));
  EXPECT_EQ(tables.Shell3Properties.at(0).material, -7);
  EXPECT_EQ(tables.Shell3Properties.at(0).thickness, 8);
  EXPECT_EQ(tables.NodalForces.at(0).components[test::Fz], -1000.0);
}

// A listener may end the reading by throwing; the tables then hold the rows read so far.
TEST(RowListener, MayStopTheReading) {
  RowListener listener;
  listener.row = [](const RowReading& reading) {
    if (reading.section == Section::Nodes && reading.row == 1) {
      throw Stop{StopKind::Notice, "enough"};
    }
  };
  ModelTables tables;
  test::ExpectStop([&] { ReadTables(MakeFile(), listener, tables); }, "enough");
  EXPECT_EQ(tables.Nodes.at(1).x, 1.0);
  EXPECT_TRUE(tables.Shell3Nodes.empty());
}

}  // namespace
}  // namespace korvex
