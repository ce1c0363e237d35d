// Tables of results in their three forms.
#include "commands/result_table.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

namespace kvx::test {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

ResultTable MakeTable() {
  ResultTable table;
  table.title = "Support forces";
  table.notes = {"Global axes."};
  table.columns = {"node", "name", "Fx"};
  table.cells = {Cell(std::int64_t{7}),  Cell(std::string("left")), Cell(1.0 / 3.0),
                 Cell(std::int64_t{12}), Cell(std::string("ä")),    Cell()};
  return table;
}

TEST(ResultTable, TextIsAligned) {
  EXPECT_EQ(TableText(MakeTable(), {}),
            "Support forces\n"
            "  node  name        Fx\n"
            "     7  left  0.333333\n"
            "    12  ä\n"
            "Global axes.\n");
}

TEST(ResultTable, CsvHasAllDigits) {
  EXPECT_EQ(TableCsv(MakeTable()),
            "# Global axes.\n"
            "node,name,Fx\n"
            "7,left,0.3333333333333333\n"
            "12,ä,\n");
}

// RFC 4180, sec. 2: quotes around fields with commas, quotes and line ends; quotes doubled.
TEST(ResultTable, CsvQuotesWhatWouldBreakIt) {
  ResultTable table;
  table.columns = {"a,b", "c"};
  table.cells = {Cell(std::string("1\"2")), Cell(std::string("x\ny"))};
  EXPECT_EQ(TableCsv(table), "\"a,b\",c\n\"1\"\"2\",\"x\ny\"\n");
}

TEST(ResultTable, NumbersThatAreNone) {
  ResultTable table;
  table.columns = {"a", "b", "c", "d"};
  table.cells = {Cell(NaN), Cell(-NaN), Cell(-Infinity), Cell(-0.0)};
  EXPECT_EQ(TableCsv(table), "a,b,c,d\nnan,nan,-inf,0\n");
  EXPECT_EQ(TableJson(table).dump(), R"([{"a":null,"b":null,"c":null,"d":0.0}])");
}

TEST(ResultTable, JsonHasARowAnObject) {
  EXPECT_EQ(TableJson(MakeTable()).dump(), R"([{"node":7,"name":"left","Fx":0.3333333333333333},)"
                                           R"({"node":12,"name":"ä","Fx":null}])");
}

TEST(ResultTable, JsonLineIsAscii) {
  EXPECT_EQ(JsonLine("ä"), "\"\\u00e4\"\n");
  EXPECT_EQ(JsonLine("\xff"), "\"\\ufffd\"\n");
}

TEST(ResultTable, WithoutRows) {
  ResultTable table;
  table.columns = {"node"};
  EXPECT_EQ(TableText(table, {}), "  node\n");
  EXPECT_EQ(TableCsv(table), "node\n");
  EXPECT_EQ(TableJson(table).dump(), "[]");
}

}  // namespace
}  // namespace kvx::test
