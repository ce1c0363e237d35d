// The examples that are meshes and decks of other programs, imported and solved as a user does.
//
// Expected numbers are those of the examples' READMEs, with their digits: "by hand" from formulas,
// "program" as its users read it there. Units: N, mm.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "base/vector3.h"
#include "deck/model_tables.h"
#include "deck/read_tables.h"
#include "support/csv.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ProgramRun;
using korvex::test::Sorted;
using korvex::test::TempFolder;
using nlohmann::json;

// An example, imported into the folder "out" and solved there.
class ImportedExamples : public testing::Test {
 protected:
  TempFolder base;
  json report;  // of the import

  std::string Call(const std::vector<std::string>& arguments) const {
    const ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
    EXPECT_EQ(run.err, "");
    return run.out;
  }

  // The deck lies in examples/, or is one with a path of its own. --strict: nothing is lost or
  // taken with a limit, and the check has no warnings.
  void Import(const std::string& deck, const std::string& map = "") {
    const fs::path examples = KORVEX_EXAMPLES;
    std::vector<std::string> arguments = {
        "import", (examples / deck).u8string(), "-o", "out", "--json", "--strict"};
    if (!map.empty()) arguments.insert(arguments.end(), {"--map", (examples / map).u8string()});
    report = json::parse(Call(arguments));
    for (const json& entry : report["entries"]) EXPECT_EQ(entry["fate"], "no effect") << entry;
  }

  CsvTable Table(const std::vector<std::string>& arguments) const {
    return ReadCsv(Call(arguments));
  }

  // A displacement, "ux" to "rz", of the node with this number in the deck.
  double Displacement(const std::string& folder, const std::string& component,
                      const std::string& deckNode) const {
    const CsvTable table = Table({"top", folder, "--of", component, "-n", "2000", "--csv"});
    return NumberAt(table, RowWhere(table, "deck_node", deckNode), "value");
  }
};

// A column's sum over the rows for which `isWanted`; empty fields, which are NaN, count as 0.
double Sum(const CsvTable& table, const std::string& column,
           const std::function<bool(std::size_t)>& isWanted) {
  double sum = 0.0;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    if (!isWanted(row)) continue;
    const double value = NumberAt(table, row, column);
    if (!std::isnan(value)) sum += value;
  }
  return sum;
}

// The sum over the supports between two places.
double SumOfSupports(const CsvTable& table, const std::string& force, double xFrom, double xTo,
                     double zFrom, double zTo) {
  return Sum(table, force, [&](std::size_t row) {
    if (FieldOf(table, row, "kind") != "support") return false;
    const double x = NumberAt(table, row, "x"), z = NumberAt(table, row, "z");
    return x >= xFrom && x <= xTo && z >= zFrom && z <= zTo;
  });
}

// The largest absolute value of a quantity in a table of kvx top: that of the first row.
double Highest(const CsvTable& table) { return NumberAt(table, 0, "value"); }

// Half of the last digit that a README gives.
constexpr double Digit1 = 0.05, Digit2 = 0.005, Digit3 = 0.0005, Digit4 = 0.00005;

class BoxGirder : public ImportedExamples {
 protected:
  void Solve() {
    Import("box-girder/box-girder.msh", "box-girder/map.toml");
    Call({"run", "out"});
  }

  // The mean of a column of the shells' forces, of shells with their middle in a box.
  static double Mean(const CsvTable& shells, const std::string& column, double x, double y,
                     double zFrom, double zTo) {
    const auto isWanted = [&](std::size_t row) {
      const double z = NumberAt(shells, row, "z");
      return std::fabs(NumberAt(shells, row, "x") - x) < 1.0 && z > zFrom && z < zTo &&
             (y == 0.0 || std::fabs(NumberAt(shells, row, "y") - y) < 1.0);
    };
    double count = 0.0;
    for (std::size_t row = 0; row < shells.rows.size(); ++row) count += isWanted(row) ? 1.0 : 0.0;
    EXPECT_GT(count, 0.0);
    return Sum(shells, column, isWanted) / count;
  }
};

TEST_F(BoxGirder, ImportTellsOfTheBearingsAlone) {
  Import("box-girder/box-girder.msh", "box-girder/map.toml");
  ASSERT_EQ(report["entries"].size(), 2U);
  EXPECT_EQ(report["entries"][0]["card"], "physical line 6 \"fixed bearing\"");
  EXPECT_EQ(report["entries"][1]["card"], "physical line 7 \"free bearing\"");
  EXPECT_EQ(report["entries"][0]["count"], 8);
}

TEST_F(BoxGirder, SupportForces) {
  Solve();
  const CsvTable reactions = Table({"reactions", "out", "--csv"});
  // By hand: q L / 2. What is left of the balance is 4e-13 of the loads.
  EXPECT_NEAR(SumOfSupports(reactions, "Fz", 0, 0, 0, 0), 240000.0, 1e-4);
  EXPECT_NEAR(SumOfSupports(reactions, "Fz", 12000, 12000, 0, 0), 240000.0, 1e-4);
  EXPECT_NEAR(SumOfSupports(reactions, "Fx", 0, 0, 0, 0), 0.0, 1e-4);
  const std::size_t corner = RowWhere(reactions, "deck_node", "41");
  EXPECT_NEAR(NumberAt(reactions, corner, "Fz"), 65500.0, 50.0);
}

TEST_F(BoxGirder, DeflectionAgreesWithBendingAndShear) {
  Solve();
  const double deflection = Displacement("out", "uz", "21");
  EXPECT_NEAR(deflection, -5.920, Digit3);
  EXPECT_NEAR(deflection, -6.010, 0.016 * 6.010);  // by hand, less the mesh's 1.5 %
  EXPECT_NEAR(Displacement("out", "uz", "25"), deflection, 1e-6);
  EXPECT_NEAR(Displacement("out", "uz", "287"), -6.185, Digit3);
  EXPECT_NEAR(Displacement("out", "uz", "6"), -0.064, Digit3);
}

TEST_F(BoxGirder, FlangesWebsAndStiffeners) {
  Solve();
  const CsvTable shells = Table({"forces", "out", "--shell", "all", "--axis", "1,0,0", "--csv"});
  const auto flange = [&](double x, double z) {
    return Mean(shells, "membrane_x", x, 0, z - 1, z + 1);
  };
  EXPECT_NEAR(flange(4375, 0), 34.8, Digit1);
  EXPECT_NEAR(flange(5875, 0), 38.1, Digit1);
  EXPECT_NEAR(flange(4375, 1000), -33.6, Digit1);
  EXPECT_NEAR(flange(5875, 1000), -25.7, Digit1);
  // By hand; the largest difference is 2.4 %.
  EXPECT_NEAR(flange(4375, 0), 35.7, 0.03 * 35.7);
  EXPECT_NEAR(flange(5875, 1000), -26.3, 0.03 * 26.3);
  // Axis 1 lies along x on both webs, axis 2 turns with the normal.
  const auto web = [&](double x) {
    return std::fabs(Mean(shells, "nxy", x - 125, 1000, 1, 999) +
                     Mean(shells, "nxy", x + 125, 1000, 1, 999)) /
           2;
  };
  EXPECT_NEAR(web(1500), 93.2, Digit1);
  EXPECT_NEAR(web(4500), 28.5, Digit1);
  const CsvTable beams = Table({"forces", "out", "--beam", "48,53,59", "--csv"});
  for (const auto& [line, stress] :
       std::vector<std::pair<std::string, double>>{{"57", -40.7}, {"62", -9.9}, {"68", -39.2}}) {
    EXPECT_NEAR(NumberAt(beams, RowWhere(beams, "deck_element", line), "axial"), stress, Digit1);
  }
}

TEST_F(BoxGirder, HighestStresses) {
  Solve();
  EXPECT_NEAR(Highest(Table({"top", "out", "--of", "section", "--csv"})), 72.8, Digit1);
  EXPECT_NEAR(Highest(Table({"top", "out", "--of", "shells", "--csv"})), 51.2, Digit1);
}

// The program in PATH; empty where there is none.
fs::path FindGmsh() {
  const char* path = std::getenv("PATH");
  if (path == nullptr) return {};
#ifdef _WIN32
  const char separator = ';';
  const char* const name = "gmsh.exe";
#else
  const char separator = ':';
  const char* const name = "gmsh";
#endif
  const std::string folders = path;
  for (std::size_t at = 0; at <= folders.size();) {
    const std::size_t end = std::min(folders.find(separator, at), folders.size());
    const fs::path program = fs::path(folders.substr(at, end - at)) / name;
    std::error_code error;
    if (end > at && fs::exists(program, error)) return program;
    at = end + 1;
  }
  return {};
}

// A group of an import: "webs 490 384 0 0 24000000", its name, nodes, quadrangles, triangles, beams
// and the whole area of its quadrangles.
std::vector<std::string> DescribeGroups(const fs::path& folder) {
  const json origin = json::parse(ReadBytes(folder / "import.json"));
  korvex::ModelTables tables;
  korvex::ReadTables(ReadBytes(folder / "fem_solving.txt"), {}, tables);
  const auto place = [&](std::int32_t node) {
    const korvex::Node& n = tables.Nodes[static_cast<std::size_t>(node)];
    return korvex::Vector3{n.x, n.y, n.z};
  };
  std::vector<std::string> groups;
  for (const json& group : origin["groups"]) {
    std::string text = group["name"];
    for (const char* key : {"nodes", "shells4", "shells3", "beams"}) {
      text += " " + std::to_string(group[key].size());
    }
    double area = 0.0;
    for (const std::size_t shell : group["shells4"]) {
      const std::int32_t* corners = &tables.Shell4Nodes[4 * shell];
      area +=
          korvex::Length(korvex::Cross(korvex::Subtract(place(corners[2]), place(corners[0])),
                                       korvex::Subtract(place(corners[3]), place(corners[1])))) /
          2.0;
    }
    groups.push_back(text + " " + std::to_string(std::llround(area)));
  }
  return Sorted(groups);
}

// The geometry belongs to the mesh: another release of gmsh may number the nodes in another way,
// but counts, groups, areas and loads are the same.
TEST_F(BoxGirder, GeometryMeshedAnewIsTheSameModel) {
  // By hand: elements of 250 x 250; flanges 12000 x 2000, webs 2 x 12000 x 1000, five diaphragms of
  // 2000 x 1000.
  const std::vector<std::string> expected = {"upper flange 441 384 0 0 24000000",
                                             "lower flange 441 384 0 0 24000000",
                                             "webs 490 384 0 0 24000000",
                                             "diaphragms 225 160 0 0 10000000",
                                             "stiffeners 147 0 0 144 0",
                                             "fixed bearing 9 0 0 0 0",
                                             "free bearing 9 0 0 0 0"};
  const fs::path out = base.Path() / "out";
  Import("box-girder/box-girder.msh", "box-girder/map.toml");
  EXPECT_EQ(DescribeGroups(out), Sorted(expected));
  const json counts = report["check"]["model"];
  EXPECT_EQ(counts["NPOIN"], 1281);

  const fs::path gmsh = FindGmsh();
  if (gmsh.empty()) GTEST_SKIP() << "gmsh is not in PATH";
  fs::copy(fs::path(KORVEX_EXAMPLES) / "box-girder" / "box-girder.geo", base.Path());
  const ProgramRun run = korvex::test::RunProgram(gmsh, base.Path(), "", {"-2", "box-girder.geo"});
  ASSERT_EQ(run.exitStatus, 0) << run.out << run.err;
  Import((base.Path() / "box-girder.msh").u8string(), "box-girder/map.toml");
  EXPECT_EQ(DescribeGroups(out), Sorted(expected));
  EXPECT_EQ(report["check"]["model"], counts);
  // 0.02 N/mm2 on 24e6 mm2; gmsh places nodes to about 1e-11 of a length.
  EXPECT_NEAR(report["check"]["loads"]["force"][2].get<double>(), -480000.0, 1e-4);
}

class Bulkhead : public ImportedExamples {
 protected:
  const std::string one = "out/results/subcase-1-WATER-TO-THE-TOP";
  const std::string two = "out/results/subcase-2-DECK-LOAD";
  const std::string three = "out/results/subcase-3-WATER-AND-1.35-DECK-LOAD";

  void Solve() {
    Import("bulkhead/bulkhead.bdf");
    Call({"cases", "out/cases.toml"});
  }
};

TEST_F(Bulkhead, ImportHasThreeCases) {
  Import("bulkhead/bulkhead.bdf");
  EXPECT_EQ(report["sources"].size(), 2U);  // the included file
  ASSERT_EQ(report["cases"].size(), 3U);
  const std::vector<std::vector<double>> sums = {
      {0, 217192, 0}, {0, 0, -280000}, {0, 217192, -378000}};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_NEAR(report["cases"][i]["force"][k].get<double>(), sums[i][k], 0.5);
    }
  }
}

TEST_F(Bulkhead, WaterIsCarriedByProppedCantilevers) {
  Solve();
  const CsvTable reactions = Table({"reactions", one, "--csv"});
  // By hand: 1.005525e-5 N/mm3 x 3000^2 / 2 x 4800; the deck's pressures have few digits.
  EXPECT_NEAR(SumOfSupports(reactions, "Fy", 0, 4800, 0, 3000), -217193.4, 2e-5 * 217193.4);
  // The three bays in the middle: 10.68 kNm, 21661 N and 5488 N for each by hand.
  const double moment = SumOfSupports(reactions, "Mx", 1500, 3300, 0, 0) / 3;
  EXPECT_NEAR(moment, 10.679e6, 0.0005e6);
  EXPECT_NEAR(moment, 10.684e6, 0.002 * 10.684e6);
  EXPECT_NEAR(SumOfSupports(reactions, "Fy", 1500, 3300, 0, 0) / 3, -21661.0, 0.5);
  EXPECT_NEAR(SumOfSupports(reactions, "Fy", 1500, 3300, 3000, 3000) / 3, -5291.0, 0.5);
  const CsvTable beam = Table({"forces", one, "--beam", "45", "--divisions", "2", "--csv"});
  const std::size_t middle = RowWhere(beam, "distance", "100");
  EXPECT_EQ(FieldOf(beam, middle, "deck_element"), "20012");
  EXPECT_NEAR(NumberAt(beam, middle, "sigma_min"), -50.4, Digit1);
  EXPECT_NEAR(NumberAt(beam, middle, "sigma_max"), 13.2, Digit1);
}

TEST_F(Bulkhead, DeckLoadIsEccentric) {
  Solve();
  const CsvTable reactions = Table({"reactions", two, "--csv"});
  EXPECT_NEAR(SumOfSupports(reactions, "Fz", 0, 4800, 0, 0), 280000.0, 1e-4);
  const double moment = SumOfSupports(reactions, "Mx", 0, 4800, 0, 0);
  EXPECT_NEAR(moment, 11.74e6, 0.005e6);
  EXPECT_NEAR(moment, 11.61e6, 0.015 * 11.61e6);  // by hand: 3 P e / 2
  EXPECT_NEAR(SumOfSupports(reactions, "Fy", 1, 4799, 3000, 3000), 3927.0, 0.5);
}

TEST_F(Bulkhead, ThirdCaseIsTheSumOfTheLoadCard) {
  Solve();
  const double water = Displacement(one, "uy", "9013"), deck = Displacement(two, "uy", "9013");
  EXPECT_NEAR(water, 0.82353, 0.000005);
  EXPECT_NEAR(deck, 0.08390, 0.000005);
  EXPECT_NEAR(Displacement(two, "uy", "11013"), 0.0936, Digit4);
  EXPECT_NEAR(Displacement(three, "uy", "9013"), water + 1.35 * deck, 1e-12);
  EXPECT_NEAR(Displacement(one, "uy", "5024"), 1.369, Digit3);
  EXPECT_NEAR(Displacement(three, "uy", "5024"), 1.384, Digit3);
  EXPECT_NEAR(Highest(Table({"top", three, "--of", "section", "--csv"})), 92.3, Digit1);
  EXPECT_NEAR(Highest(Table({"top", three, "--of", "shells", "--csv"})), 35.9, Digit1);
}

class SignGantry : public ImportedExamples {
 protected:
  const std::string wind = "out/results/step-1";
  const std::string weight = "out/results/step-2";

  void Solve() {
    Import("sign-gantry/sign-gantry.inp");
    Call({"cases", "out/cases.toml"});
  }
};

TEST_F(SignGantry, ImportHasTwoCasesOneOfThemGravity) {
  Import("sign-gantry/sign-gantry.inp");
  ASSERT_EQ(report["cases"].size(), 2U);
  EXPECT_EQ(report["cases"][1]["acceleration"], (json{0.0, 0.0, -9810.0}));
  EXPECT_NEAR(report["cases"][0]["force"][1].get<double>(), 13200.0, 1e-9);
  EXPECT_NEAR(report["cases"][1]["force"][2].get<double>(), -15343.8, Digit1);
  EXPECT_NEAR(report["cases"][1]["force"][1].get<double>(), 0.0, 1e-9);  // OP=NEW ends the wind
}

TEST_F(SignGantry, WindOnColumnsAndBeam) {
  Solve();
  const CsvTable reactions = Table({"reactions", wind, "--csv"});
  for (const char* foot : {"1", "10"}) {
    const std::size_t row = RowWhere(reactions, "deck_node", foot);
    // By statics; what is left of the balance is 2e-13 of the loads.
    EXPECT_NEAR(NumberAt(reactions, row, "Fy"), -6600.0, 1e-6);
    EXPECT_NEAR(NumberAt(reactions, row, "Mx"), 29.4e6, 1e-2);
    EXPECT_NEAR(std::fabs(NumberAt(reactions, row, "Mz")), 6.474e6, 0.0005e6);
    EXPECT_NEAR(std::fabs(NumberAt(reactions, row, "Mz")), 6.488e6, 0.003 * 6.488e6);
  }
  EXPECT_NEAR(Displacement(wind, "uy", "9"), 12.377, Digit3);
  EXPECT_NEAR(Displacement(wind, "uy", "28"), 21.092, Digit3);
  EXPECT_NEAR(Displacement(wind, "rx", "9"), -2.731e-3, 0.0005e-3);
  EXPECT_NEAR(Displacement(wind, "rx", "28"), -0.649e-3, 0.0005e-3);
}

TEST_F(SignGantry, WindOnTheRibs) {
  Solve();
  EXPECT_NEAR(Displacement(wind, "uy", "54"), 49.009, Digit3);
  EXPECT_NEAR(Displacement(wind, "uy", "62"), 50.464, Digit3);
  EXPECT_NEAR(Highest(Table({"top", wind, "--of", "section", "--csv"})), 106.4, Digit1);
  const CsvTable ribs =
      Table({"forces", wind, "--beam", "36,40,44,48,52", "--divisions", "2", "--csv"});
  const auto isMiddle = [&](std::size_t row) {
    return FieldOf(ribs, row, "kind") == "beam" && FieldOf(ribs, row, "distance") == "250";
  };
  const double sum = Sum(ribs, "My", isMiddle);
  EXPECT_NEAR(sum, 7.459e6, 0.0005e6);
  EXPECT_NEAR(sum, 7.5e6, 0.006 * 7.5e6);  // by statics; the sheet bends a little, too
}

TEST_F(SignGantry, WeightIsThatOfTheParts) {
  Solve();
  const CsvTable reactions = Table({"reactions", weight, "--csv"});
  const std::size_t foot = RowWhere(reactions, "deck_node", "1");
  // By hand: 9113.0 + 5128.9 + 1101.9 N.
  EXPECT_NEAR(NumberAt(reactions, foot, "Fz"), 15343.8 / 2, 0.1);
  EXPECT_NEAR(NumberAt(reactions, foot, "Fx"), 874.0, 0.5);
  EXPECT_NEAR(NumberAt(reactions, foot, "My"), 1.720e6, 0.0005e6);
  EXPECT_NEAR(Displacement(weight, "uz", "28"), -1.0418, Digit4);
}

}  // namespace
}  // namespace kvx::test
