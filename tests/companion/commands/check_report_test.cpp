// What kvx check says: the text with its summary, and the JSON with exactly the keys of the page.
#include "commands/check_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "support/expect_findings.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> KeysOf(const Json& json) {
  std::vector<std::string> keys;
  for (const auto& item : json.items()) keys.push_back(item.key());
  return keys;
}

// Three nodes, two beams on one section, one support, one force.
korvex::test::ModelText MakeFrame() {
  korvex::test::ModelText text;
  text.materials = {{206000.0, 0.3, 0.0}};
  text.tSections = {{100.0, 10.0, 50.0, 10.0}};
  text.nodes = {{0, 0, 0}, {1000, 0, 0}, {2000, 0, 0}};
  text.beams.resize(2);
  text.beams[1].node1 = 1;
  text.beams[1].node2 = 2;
  text.restraints.resize(1);
  text.forces = {{2, {0, 0, -1000, 0, 0, 0}}};
  return text;
}

TEST(ReportText, SumsTheModelUp) {
  CheckReport report;
  report = Check(MakeFrame());
  report.findings = {};
  EXPECT_EQ(ReportText("deck/fem_solving.txt", report, {}),
            "deck/fem_solving.txt\n"
            "  3 nodes, 2 beams\n"
            "  1 material, 1 T section\n"
            "  1 restraint, 1 force\n"
            "  sum of loads (0, 0, -1000), moments about the origin (0, 2e+06, 0)\n"
            "  line of action of the loads through (2000, 0, 0)\n"
            "No errors, no warnings.\n");
}

TEST(ReportText, ListsFindingsAndWhatWasNotChecked) {
  CheckReport report;
  report.findings.findings.push_back(MakeFinding("K202"));
  report.findings.findings[0].message = "two nodes.";
  report.model.notChecked = {"Only the text was checked."};
  EXPECT_EQ(ReportText("bad\x1Bname", report, {}),
            "WARN  K202 two nodes.\n"
            "\n"
            "bad\\x1Bname\n"
            "  Only the text was checked.\n"
            "1 warning.\n"
            "kvx explain K202 tells more.\n");
}

TEST(ReportJson, HasTheKeysOfThePage) {
  CheckReport report = Check(MakeFrame());
  report.findings = {};
  Finding finding = MakeFinding("K104");
  finding.line = 17;
  finding.column = 3;
  finding.table = "NELEM_B";
  finding.rows = {1};
  finding.nodes = {1, 2};
  finding.hasPosition = true;
  finding.position = {1500, 0.1, 0};
  finding.message = "a";
  finding.remedy = "b";
  report.findings.findings = {finding, MakeFinding("K202"), MakeFinding("K501")};

  const std::string text = ReportJson(report);
  EXPECT_EQ(text.find('\n'), text.size() - 1);
  const Json json = Json::parse(text);
  EXPECT_EQ(KeysOf(json), (std::vector<std::string>{"model", "loads", "findings", "errors",
                                                    "warnings", "hints"}));
  EXPECT_EQ(KeysOf(json["model"]),
            (std::vector<std::string>{"NMT", "NTK", "NTBS", "NLBS", "NCBS", "NPOIN", "NELEM_S_4ND",
                                      "NELEM_S_3ND", "NELEM_B", "NRN", "NFOR", "NDL_S_4ND",
                                      "NDL_S_3ND", "NDL_B"}));
  EXPECT_EQ(json["model"]["NPOIN"], 3);
  EXPECT_EQ(json["model"]["NELEM_B"], 2);
  EXPECT_EQ(json["model"]["NDL_B"], 0);
  EXPECT_EQ(json["loads"].dump(),
            R"({"force":[0.0,0.0,-1000.0],"moment":[0.0,2000000.0,0.0],"point":[2000.0,0.0,0.0]})");
  ASSERT_EQ(json["findings"].size(), 3U);
  EXPECT_EQ(json["findings"][0].dump(),
            R"({"code":"K104","severity":"error","line":17,"column":3,"table":"NELEM_B",)"
            R"("rows":[1],"nodes":[1,2],"position":[1500.0,0.1,0.0],"message":"a","remedy":"b"})");
  EXPECT_EQ(json["findings"][1].dump(),
            R"({"code":"K202","severity":"warning","line":null,"column":null,"table":null,)"
            R"("rows":[],"nodes":[],"position":null,"message":"","remedy":""})");
  EXPECT_EQ(json["errors"], 1);
  EXPECT_EQ(json["warnings"], 1);
  EXPECT_EQ(json["hints"], 1);
}

// Whatever the file holds, a program can read it: no NaN, no byte that is no UTF-8, nothing raw
// that a terminal obeys.
TEST(ReportJson, IsAsciiForAnyBytes) {
  CheckReport report;
  Finding finding = MakeFinding("K011");
  finding.hasPosition = true;
  finding.position = {std::numeric_limits<double>::quiet_NaN(),
                      -std::numeric_limits<double>::infinity(), 1e300};
  for (int byte = 0; byte < 256; ++byte) finding.message += static_cast<char>(byte);
  finding.message += "\xC3\xA4\xC2\x9B";  // U+00E4, U+009B
  finding.remedy = "\"\\";
  report.findings.findings = {finding};

  const std::string text = ReportJson(report);
  for (const char byte : text.substr(0, text.size() - 1)) {
    ASSERT_TRUE(byte >= 0x20 && byte < 0x7F) << static_cast<int>(byte);
  }
  const Json json = Json::parse(text);
  const Json& found = json["findings"][0];
  EXPECT_EQ(found["position"].dump(), "[null,null,1e+300]");
  EXPECT_EQ(found["remedy"], "\"\\");
  const std::string message = found["message"];
  EXPECT_EQ(message.substr(0, 128), finding.message.substr(0, 128));
  EXPECT_EQ(message.substr(128, 3), "\xEF\xBF\xBD");  // U+FFFD in place of a byte
  EXPECT_EQ(message.substr(message.size() - 4), "\xC3\xA4\xC2\x9B");
}

// Counts are those of all findings, also of those that are listed together.
TEST(ReportJson, CountsAllOfAKind) {
  CheckReport report;
  for (std::int32_t row = 0; row < 50; ++row) {
    Finding finding = MakeFinding("K104");
    finding.rows = {row};
    AddFinding(finding, report.findings);
  }
  SortFindings(report.findings);
  const Json json = Json::parse(ReportJson(report));
  EXPECT_EQ(json["errors"], 50);
  EXPECT_EQ(json["findings"].size(), FindingsOfAKind + 1);
  EXPECT_EQ(json["findings"][FindingsOfAKind]["rows"].size(), 50 - FindingsOfAKind);
}

}  // namespace
}  // namespace kvx::test
