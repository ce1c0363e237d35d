// import.json: written and read, moved to a new order, and files that are none or spoilt.
#include "commands/origin_file.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <numeric>

#include "report/stop.h"
#include "support/imported.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::ModelTables;
using korvex::test::ModelText;
using korvex::test::WriteFile;
using Json = nlohmann::json;

// A plate of a quadrilateral and a triangle, and a beam.
ModelText SmallModel() {
  ModelText model;
  model.materials = {{210000.0, 0.3, 0.0}};
  model.thicknesses = {10.0, 12.0};
  model.tSections = {{100.0, 10.0, 60.0, 10.0}};
  model.nodes = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0.1, 0}};
  model.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  model.shells3 = {{{1, 4, 2}, 0, 1}};
  model.beams = {{3, 2}};
  return model;
}

ModelOrigin SmallOrigin() { return MakeOrigin(TablesOfText(SmallModel())); }

ImportReport SmallReport() {
  ImportReport report;
  report.files = {"deck.bdf", "part \"two\".inc"};
  CountCard("GRID", {0, 3}, report);
  CountCard("GRID", {0, 4}, report);
  CountCard("RBE2", {1, 7}, report);
  ReportCard("RBE2", Fate::Lost, "rigid elements have no counterpart", {1, 7}, "RBE2 17", report);
  ReportCard("GRID", Fate::Limited, "of some kind", {-1, 0}, "", report);
  return report;
}

std::string SmallText() { return WriteOrigin(SmallOrigin(), SmallReport(), {"fem_solving.txt"}); }

void ExpectSame(const ElementOrigin& a, const ElementOrigin& b) {
  EXPECT_EQ(a.numbers, b.numbers);
  EXPECT_EQ(a.types, b.types);
}

void ExpectSame(const ModelOrigin& a, const ModelOrigin& b) {
  EXPECT_EQ(a.source, b.source);
  EXPECT_EQ(a.format, b.format);
  EXPECT_EQ(a.hash, b.hash);
  EXPECT_EQ(a.nodes, b.nodes);
  EXPECT_EQ(a.types, b.types);
  ExpectSame(a.shells4, b.shells4);
  ExpectSame(a.shells3, b.shells3);
  ExpectSame(a.beams, b.beams);
  EXPECT_EQ(a.materials, b.materials);
  EXPECT_EQ(a.thicknesses, b.thicknesses);
  EXPECT_EQ(a.sectionsT, b.sectionsT);
  EXPECT_EQ(a.sectionsL, b.sectionsL);
  EXPECT_EQ(a.sectionsC, b.sectionsC);
  ASSERT_EQ(a.groups.size(), b.groups.size());
  for (std::size_t k = 0; k < a.groups.size(); ++k) {
    EXPECT_EQ(a.groups[k].name, b.groups[k].name);
    EXPECT_EQ(a.groups[k].source, b.groups[k].source);
    EXPECT_EQ(a.groups[k].nodes, b.groups[k].nodes);
    EXPECT_EQ(a.groups[k].shells4, b.groups[k].shells4);
    EXPECT_EQ(a.groups[k].shells3, b.groups[k].shells3);
    EXPECT_EQ(a.groups[k].beams, b.groups[k].beams);
  }
}

ModelOrigin Read(const std::string& text) {
  ModelOrigin origin;
  std::string reason;
  EXPECT_TRUE(ReadOrigin(text, origin, reason)) << reason;
  return origin;
}

std::string ReasonOf(const std::string& text) {
  ModelOrigin origin = SmallOrigin();
  std::string reason;
  EXPECT_FALSE(ReadOrigin(text, origin, reason)) << text;
  EXPECT_FALSE(HasOrigin(origin));
  EXPECT_FALSE(reason.empty());
  return reason;
}

// With this part of the text of SmallText replaced.
std::string Spoilt(const std::string& part, const std::string& by) {
  std::string text = SmallText();
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return text.replace(at, part.size(), by);
}

TEST(OriginFile, ComesBackWhole) {
  ModelOrigin origin = SmallOrigin();
  origin.nodes[1] = std::numeric_limits<std::int64_t>::max();
  origin.nodes[2] = -7;
  origin.hash = 0x00000000000000ABU;  // with its zeros
  origin.source = "Decke \"\xC3\x9C\x62\x65r\\alles\".bdf";
  origin.groups[0].name = "a\nb";
  ExpectSame(Read(WriteOrigin(origin, SmallReport(), {})), origin);
}

// 45 nodes: more than stand in a line.
TEST(OriginFile, ListsOfSeveralLinesComeBackWhole) {
  ModelOrigin origin;
  origin.nodes.resize(45);
  std::iota(origin.nodes.begin(), origin.nodes.end(), std::int64_t{100});
  const std::string text = WriteOrigin(origin, {}, {});
  EXPECT_EQ(Read(text).nodes, origin.nodes);
  EXPECT_NE(text.find("119,\n120"), std::string::npos) << text;
}

TEST(OriginFile, IsJsonThatOtherProgramsRead) {
  const Json json = Json::parse(SmallText());
  EXPECT_EQ(json["kvx"], 1);
  EXPECT_EQ(json["source"], "deck.bdf");
  EXPECT_EQ(json["hash"].get<std::string>().size(), 16U);
  EXPECT_EQ(json["files"], Json({"fem_solving.txt"}));
  EXPECT_EQ(json["nodes"], Json({1001, 1003, 1005, 1007, 1009}));
  EXPECT_EQ(json["shells4"]["numbers"], Json({5001}));
  EXPECT_EQ(json["shells3"]["types"], Json({1}));
  EXPECT_EQ(json["groups"][1]["name"], "PSHELL 20");
  EXPECT_EQ(json["groups"][1]["shells3"], Json({0}));
  const Json& report = json["report"];
  EXPECT_EQ(report["cards"]["GRID"]["count"], 2);
  EXPECT_EQ(report["cards"]["GRID"]["line"], 3);
  EXPECT_EQ(report["cards"]["RBE2"]["file"], "part \"two\".inc");
  ASSERT_EQ(report["entries"].size(), 2U);
  const Json lost = {{"card", "RBE2"},
                     {"fate", "lost"},
                     {"reason", "rigid elements have no counterpart"},
                     {"count", 1},
                     {"file", "part \"two\".inc"},
                     {"line", 7},
                     {"example", "RBE2 17"}};
  EXPECT_EQ(report["entries"][0], lost);
  EXPECT_EQ(report["entries"][1]["fate"], "limited");
  EXPECT_TRUE(report["entries"][1]["file"].is_null());
  EXPECT_TRUE(report["entries"][1]["line"].is_null());
}

// A deck may be in any code page; the file is ASCII.
TEST(OriginFile, BytesThatAreNoUtf8AreReplaced) {
  ModelOrigin origin = SmallOrigin();
  origin.groups[0].name = "Tr\xE4ger";
  const std::string text = OriginText(origin);
  EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](char c) { return c >= 0; }));
  EXPECT_EQ(Read(text).groups[0].name, "Tr\xEF\xBF\xBDger");
}

TEST(OriginFile, NamesOfFilesAreThoseOfTheFolderAlone) {
  const std::vector<std::string> names{
      "fem_solving.txt", "../up.txt", "/etc/passwd", "a\\b", "C:x", "", "..", "loads-uls.txt", "."};
  std::vector<std::string> files{"left over"};
  std::string reason;
  EXPECT_TRUE(ReadOriginFiles(WriteOrigin(SmallOrigin(), {}, names), files, reason)) << reason;
  EXPECT_EQ(files, (std::vector<std::string>{"fem_solving.txt", "loads-uls.txt"}));
  EXPECT_FALSE(ReadOriginFiles("{", files, reason));
  EXPECT_TRUE(files.empty());
}

TEST(OriginFile, EveryTruncatedTextIsRefused) {
  const std::string text = SmallText();
  const std::size_t whole = text.find_last_of('}') + 1;
  for (std::size_t length = 0; length < whole; ++length) ReasonOf(text.substr(0, length));
  Read(text.substr(0, whole));
}

TEST(OriginFile, WhatIsNoOriginIsRefused) {
  EXPECT_NE(ReasonOf("[1, 2").find("no JSON text"), std::string::npos);
  for (const char* text : {"", "7", "[]", "{}", "null", "\xFF\xFE", "{\"kvx\": 1}"}) ReasonOf(text);
  ReasonOf(Spoilt("\"kvx\": 1", "\"kvx\": 2"));
  ReasonOf(Spoilt("\"kvx\": 1", "\"kvx\": \"1\""));
  ReasonOf(Spoilt("\"hash\": \"", "\"hash\": \"x"));
  ReasonOf(Spoilt("\"hash\"", "\"hush\""));
  // An item that is left out would shift all behind it.
  for (const char* item :
       {"null", "1.5", "\"1003\"", "true", "[1003]", "{}", "1e3", "9223372036854775808"}) {
    ReasonOf(Spoilt("1003", item));
  }
  ReasonOf(Spoilt("\"CTRIA3\"", "3"));
  ReasonOf(Spoilt("\"CTRIA3\"", "null"));
}

TEST(OriginFile, UnknownKeysAreReadOver) {
  const std::string text =
      Spoilt("\"types\"",
             "\"later\": {\"nodes\": [1], \"groups\": [{\"name\": 7}], \"x\": null}, \"types\"");
  ExpectSame(Read(text), SmallOrigin());
}

TEST(OriginFile, DeepNestingIsReadOver) {
  constexpr std::size_t Deep = 1000000;
  const std::string inner = std::string(Deep, '[') + std::string(Deep, ']');
  ExpectSame(Read(Spoilt("\"types\"", "\"later\": " + inner + ", \"types\"")), SmallOrigin());
}

TEST(OriginFile, RowsThatDoNotExistAreLeftOut) {
  // The group "edge" has the nodes 0 and 1 of five.
  const ModelOrigin origin =
      Read(Spoilt("[0,1]", "[4, 1, 5, -1, 0, 1, 99999999999, 2147483648, -9000000000]"));
  EXPECT_EQ(origin.groups.back().nodes, (std::vector<std::int32_t>{0, 1, 4}));
  // Likewise the type of an element.
  const ModelOrigin other = Read(Spoilt("\"types\": [1]", "\"types\": [99999999999]"));
  EXPECT_EQ(OriginOfElement(other, other.shells3, 0), "element 6001");
}

TEST(OriginFile, GroupsWithoutANameAreLeftOut) {
  const ModelOrigin origin = Read(Spoilt("\"groups\": [", "\"groups\": [{\"nodes\": [3]}, {}, "));
  ExpectSame(origin, SmallOrigin());
}

// Each byte in turn is replaced by others: nothing but a refusal or an origin comes of it.
TEST(OriginFile, SpoiltBytesDoNoHarm) {
  const std::string text = SmallText();
  for (std::size_t at = 0; at < text.size(); ++at) {
    for (const char c : {'"', '{', ']', ',', ':', '9', '\0', '\\'}) {
      std::string spoilt = text;
      spoilt[at] = c;
      ModelOrigin origin;
      std::string reason;
      const bool isRead = ReadOrigin(spoilt, origin, reason);
      EXPECT_EQ(isRead, reason.empty());
      for (const OriginGroup& group : origin.groups) {
        for (const std::int32_t row : group.nodes) {
          EXPECT_LT(static_cast<std::size_t>(row), origin.nodes.size());
        }
      }
      try {
        MoveOriginNodes(spoilt, {4, 3, 2, 1, 0}, 0);
      } catch (const korvex::Stop&) {
        continue;
      }
      EXPECT_TRUE(isRead) << at;
    }
  }
}

TEST(OriginFile, MovedNodesAreThoseOfAnOriginThatWasMoved) {
  const std::vector<std::int32_t> order{3, 0, 4, 1, 2};
  ModelOrigin origin = SmallOrigin();
  const std::string moved = MoveOriginNodes(SmallText(), order, 0x123456789ABCDEF0U);
  PermuteOrigin(order, origin);
  origin.hash = 0x123456789ABCDEF0U;
  ExpectSame(Read(moved), origin);
  // The whole text is as if the moved origin had been written.
  EXPECT_EQ(moved, WriteOrigin(origin, SmallReport(), {"fem_solving.txt"}));
}

TEST(OriginFile, MovingNodesKeepsEveryOtherByte) {
  const std::string text =
      Spoilt("\"types\"", "\"later\": {\"nodes\": [5, 4, 3],\t\"hash\": \"x\\\"{[\"}, \"types\"");
  const std::string there = MoveOriginNodes(text, {3, 0, 4, 1, 2}, 1);
  EXPECT_NE(there, text);
  EXPECT_NE(there.find("{\"nodes\": [5, 4, 3],\t\"hash\": \"x\\\"{[\"}"), std::string::npos);
  // order[k] is the old row of row k; the way back has the places of the way there.
  EXPECT_EQ(MoveOriginNodes(there, {1, 3, 4, 0, 2}, SmallOrigin().hash), text);
}

TEST(OriginFile, OnlyAnOriginOfAsManyNodesIsMoved) {
  EXPECT_THROW(MoveOriginNodes(SmallText(), {0, 1, 2, 3}, 0), korvex::Stop);
  EXPECT_THROW(MoveOriginNodes("{}", {}, 0), korvex::Stop);
}

struct FoundOrigin : testing::Test {
  korvex::test::TempFolder folder;
  ModelTables tables = TablesOfText(SmallModel());
  ModelOrigin origin;

  OriginState Find(const std::string& name = "fem_solving.txt") {
    return FindOrigin((folder.Path() / name).u8string(), tables, origin);
  }
  void Put(const std::string& name, const std::string& text) const {
    fs::create_directories((folder.Path() / name).parent_path());
    WriteFile(folder.Path() / name, text);
  }
};

TEST_F(FoundOrigin, IsThatBesideTheModel) {
  EXPECT_EQ(Find(), OriginState::None);
  EXPECT_FALSE(HasOrigin(origin));
  Put("import.json", SmallText());
  EXPECT_EQ(Find(), OriginState::Fits);
  ExpectSame(origin, SmallOrigin());
}

TEST_F(FoundOrigin, OfAnotherModelIsForeign) {
  Put("import.json", SmallText());
  tables.Nodes[0].x = 0.5;
  EXPECT_EQ(Find(), OriginState::Foreign);
  EXPECT_FALSE(HasOrigin(origin));
}

TEST_F(FoundOrigin, ThatCannotBeReadIsForeign) {
  Put("import.json", "{");
  EXPECT_EQ(Find(), OriginState::Foreign);
  fs::remove(folder.Path() / "import.json");
  fs::create_directory(folder.Path() / "import.json");
  EXPECT_EQ(Find(), OriginState::None);
}

// Far beyond what an import of five nodes writes; nothing is read of it. The file has no blocks.
TEST_F(FoundOrigin, ThatIsMuchTooLargeIsForeign) {
  Put("import.json", SmallText());
  fs::resize_file(folder.Path() / "import.json", std::uintmax_t{1} << 30U);
  EXPECT_EQ(Find(), OriginState::Foreign);
}

// The record that kvx cases leaves beside the model of a case names the structure's file.
TEST_F(FoundOrigin, OfALoadCaseIsThatOfItsStructure) {
  Put("import.json", SmallText());
  Put("results/uls/case.json",
      R"({"case": "uls", "program": "kvx cases", "sources": [
          {"file": "../../loads/other.txt", "size": 1, "hash": "0"},
          {"file": "../../fem_solving.txt", "size": 1, "hash": "0"}]})");
  EXPECT_EQ(Find("results/uls/fem_solving.txt"), OriginState::Fits);
  ExpectSame(origin, SmallOrigin());
  tables.Nodes[0].x = 0.5;
  EXPECT_EQ(Find("results/uls/fem_solving.txt"), OriginState::None);
  EXPECT_FALSE(HasOrigin(origin));
}

}  // namespace
}  // namespace kvx::test
