// kvx forces as its user meets it: closed forms, turned models, its three forms, wrong options.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "commands/call_kvx.h"
#include "support/beam_sections.h"
#include "support/csv.h"
#include "support/dof_names.h"
#include "support/shell_mesh.h"

namespace kvx::test {
namespace {

using namespace korvex::test;  // NOLINT(google-build-using-namespace): Fx, Uy and their like
using Arguments = std::vector<std::string>;
using Json = nlohmann::json;

constexpr double E = 2.06e11, Mu = 0.3, Pi = 3.14159265358979323846;

const std::vector<std::string> ForceColumns{"N", "Vy", "Vz", "T", "My", "Mz"};

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

CsvTable ForcesOf(const ModelText& model, Arguments arguments) {
  arguments.insert(arguments.begin(), {"forces", ".", "--csv"});
  return ReadCsv(OutputOf(model, arguments));
}

Json ForcesJson(const ModelText& model, Arguments arguments) {
  arguments.insert(arguments.begin(), {"forces", "--json"});
  return Json::parse(OutputOf(model, arguments));
}

// Beams of one section along x, of the length L altogether; node 0 is clamped.
ModelText Cantilever(const TestSection& section, int beams, double L) {
  ModelText model;
  model.materials = {{E, Mu, 7850.0}};
  ModelText::Beam beam;
  UseSection(section, model, beam);
  model.nodes.push_back({0.0, 0.0, 0.0});
  for (int k = 0; k < beams; ++k) {
    model.nodes.push_back({L * (k + 1) / beams, 0.0, 0.0});
    beam.node1 = k;
    beam.node2 = k + 1;
    model.beams.push_back(beam);
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  return model;
}

// 0.3 x 0.01 web, 0.1 x 0.012 flange, standing on its nodes.
TestSection Tee() { return {"T", korvex::BeamSecTypeT, {0.3, 0.01, 0.1, 0.012}, 0.0, false}; }

// A simply supported beam under the load w downwards: My = -w x (L - x) / 2, as the lower side is
// stretched, and Vz = My' (Timoshenko & Gere 1972, sec. 3.3). The stresses are My z / Iy at the
// web's free edge, below the centroid by its height over the node, and at the flange's outer face.
TEST(KvxForces, OfASimplySupportedBeam) {
  const double L = 4.0, w = 5000.0;
  ModelText model = Cantilever(Tee(), 1, L);
  model.restraints = {{0, {1, 1, 1, 1, 0, 1}}, {1, {0, 1, 1, 0, 0, 0}}};
  model.beamLoads = {{0, -w, -w}};
  const CsvTable table = ForcesOf(model, {"--beam", "0"});
  ASSERT_EQ(table.rows.size(), 5U);
  const SectionNumbers s = ComputeNumbers(Tee());
  const auto below = static_cast<double>(s.ez), above = 0.312 - below;
  const auto Iy = static_cast<double>(s.Iy);
  for (std::size_t i = 0; i < 5; ++i) {
    const double x = L * static_cast<double>(i) / 4.0;
    const double My = -w * x * (L - x) / 2.0, Vz = -w * (L - 2.0 * x) / 2.0;
    EXPECT_NEAR(NumberAt(table, i, "distance"), x, 1e-12);
    EXPECT_NEAR(NumberAt(table, i, "x"), x, 1e-12);
    EXPECT_NEAR(NumberAt(table, i, "My"), My, 1e-9 * w * L * L);
    EXPECT_NEAR(NumberAt(table, i, "Vz"), Vz, 1e-9 * w * L);
    EXPECT_NEAR(NumberAt(table, i, "sigma_max"), -My * below / Iy, 1e-9 * w * L * L / Iy);
    EXPECT_NEAR(NumberAt(table, i, "sigma_min"), My * above / Iy, 1e-9 * w * L * L / Iy);
    EXPECT_NEAR(NumberAt(table, i, "web_shear"), Vz / (0.3 * 0.01), 1e-9 * w * L / 0.003);
    for (const char* zero : {"N", "Vy", "T", "Mz"}) {
      EXPECT_NEAR(NumberAt(table, i, zero), 0.0, 1e-9 * w * L);
    }
    // One beam lacks w L^2 / 24 of w L^2 / 8 at mid-length, which falls with the square of the
    // pieces: 1/3 / 0.05 = 6.7 < 3^2.
    EXPECT_EQ(FieldOf(table, i, "divide_into"), "3");
    EXPECT_EQ(FieldOf(table, i, "section"), "T 0");
    EXPECT_GT(NumberAt(table, i, "detail_von_mises"), 0.0);
  }
  const CsvTable all = ForcesOf(model, {"--divisions", "1"});
  ASSERT_EQ(all.rows.size(), 3U);  // the ends, and the middle where My is largest
  EXPECT_NEAR(NumberAt(all, 1, "My"), -w * L * L / 8.0, 1e-9 * w * L * L);
  EXPECT_EQ(FieldOf(all, 0, "detail_von_mises"), "");
}

// A pull P at the end node of a cantilever goes through the nodes, not through the centroid e: the
// moments about the centroid are -e x P. So for every section, straight and turned.
TEST(KvxForces, AreAboutTheCentroid) {
  for (const TestSection& section : AllSections()) {
    SCOPED_TRACE(section.name);
    const SectionNumbers e = ComputeNumbers(section);
    const double P = 1e5;
    ModelText model = Cantilever(section, 2, 3.0);
    model.forces = {{2, SingleLoad(Fx, P)}};
    for (const bool isTurned : {false, true}) {
      const CsvTable table = ForcesOf(isTurned ? TurnModel(model) : model, {});
      ASSERT_EQ(table.rows.size(), 10U);
      for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_NEAR(NumberAt(table, i, "N"), P, 1e-9 * P);
        EXPECT_NEAR(NumberAt(table, i, "My"), -P * static_cast<double>(e.ez), 1e-9 * P);
        EXPECT_NEAR(NumberAt(table, i, "Mz"), P * static_cast<double>(e.ey), 1e-9 * P);
        EXPECT_NEAR(NumberAt(table, i, "axial"), P / static_cast<double>(e.A),
                    1e-9 * P / static_cast<double>(e.A));
      }
    }
  }
}

// An L with offset under all six loads at its end: numbers in local axes do not turn with the
// model.
TEST(KvxForces, OfBeamsStayWhenTheModelIsTurned) {
  ModelText model = Cantilever(AllSections()[6], 3, 3.0);
  model.forces = {{3, {300.0, -500.0, 700.0, 110.0, -130.0, 170.0}}};
  model.beamLoads = {{1, -200.0, 400.0}};
  const CsvTable straight = ForcesOf(model, {}), turned = ForcesOf(TurnModel(model), {});
  ASSERT_EQ(straight.rows.size(), turned.rows.size());
  for (std::size_t row = 0; row < straight.rows.size(); ++row) {
    for (const std::string& column : straight.columns) {
      const bool isPlace = column == "x" || column == "y" || column == "z";
      if (isPlace || column.rfind("detail", 0) == 0) continue;
      if (column == "kind" || column == "section" || column == "divide_into") {
        EXPECT_EQ(FieldOf(turned, row, column), FieldOf(straight, row, column));
        continue;
      }
      const double value = NumberAt(straight, row, column);
      const bool isStress = column.rfind("sigma", 0) == 0 || column.rfind("tau", 0) == 0 ||
                            column == "von_mises" || column == "axial" || column == "web_shear" ||
                            column == "torsion";
      // The rounding of displacements against the largest: about 3 m times 700 N; stresses of that.
      EXPECT_NEAR(NumberAt(turned, row, column), value, isStress ? 1e-9 * 1e8 : 1e-9 * 2100.0)
          << column << " of row " << row;
    }
  }
}

TEST(KvxForces, CsvAndJsonOfBeamsAgreeToAllDigits) {
  ModelText model = Cantilever(AllSections()[2], 3, 3.0);
  model.forces = {{3, {300.0, -500.0, 700.0, 110.0, -130.0, 170.0}}};
  model.beamLoads = {{1, -200.0, 400.0}};
  const Arguments chosen{"--beam", "0,2", "--divisions", "3"};
  const CsvTable table = ForcesOf(model, chosen);
  const Json json = ForcesJson(model, chosen);
  ASSERT_EQ(json["beams"].size(), 2U);
  EXPECT_FALSE(json.contains("shells"));
  std::size_t row = 0;
  for (const Json& beam : json["beams"]) {
    const std::size_t first = row;
    for (const Json& station : beam["stations"]) {
      EXPECT_EQ(NumberAt(table, row, "element"), beam["beam"].get<double>());
      EXPECT_EQ(NumberAt(table, row, "node2"), beam["nodes"][1].get<double>());
      for (const auto& [name, value] : station.items()) {
        EXPECT_EQ(NumberAt(table, row, name), value.get<double>()) << name;
      }
      EXPECT_EQ(NumberAt(table, row, "detail_von_mises"),
                beam["detail"]["von_mises"].get<double>());
      ++row;
    }
    EXPECT_EQ(row - first, 4U);
    for (std::size_t c = 0; c < 6; ++c) {
      EXPECT_EQ(beam["ends"][0][c].get<double>(), NumberAt(table, first, ForceColumns[c]));
      EXPECT_EQ(beam["ends"][1][c].get<double>(), NumberAt(table, row - 1, ForceColumns[c]));
    }
  }
  EXPECT_EQ(row, table.rows.size());
  EXPECT_TRUE(Holds(table.notes.front(), "N > 0 is tension; My > 0 stretches the +z side"));
  EXPECT_EQ(json["beam_notes"][0], table.notes.front());
}

// Two beams of a frame: one line for each, and the stations of one.
TEST(KvxForces, TextOfBeams) {
  ModelText model =
      Cantilever({"bar", korvex::BeamSecTypeT, {0.1, 0.02, 0.0, 0.0}, 0.0, false}, 2, 4.0);
  // Pure bending of the rectangle about its centroid: Iy = 0.02 0.1^3 / 12, sigma = M 0.05 / Iy.
  model.forces = {{2, SingleLoad(My, 1000.0)}};
  const std::string all = OutputOf(model, {"forces"});
  EXPECT_TRUE(
      Holds(all,
            "2 beams, the extremes along each:\n"
            "  beam  section  middle       My  sigma min    max  tau  von Mises\n"
            "     0  T 0      (1, 0, 0)  1000     -3e+07  3e+07    0      3e+07\n"
            "     1  T 0      (3, 0, 0)  1000     -3e+07  3e+07    0      3e+07\n"
            "Left out, everywhere below a thousandth of the largest force or moment: N, Vy, "
            "Vz, T, Mz.\n"))
      << all;
  const std::string one = OutputOf(model, {"forces", "--beam", "1", "--divisions", "2"});
  EXPECT_TRUE(Holds(one,
                    "Beam 1, section T 0, length 2, from node 1 at (2, 0, 0) to node 2 at (4, 0, "
                    "0):\n"
                    "  x  N  Vy  Vz  T    My  Mz  sigma min    max  tau  von Mises\n"
                    "  0  0   0   0  0  1000   0     -3e+07  3e+07    0      3e+07\n"
                    "  1  0   0   0  0  1000   0     -3e+07  3e+07    0      3e+07\n"
                    "  2  0   0   0  0  1000   0     -3e+07  3e+07    0      3e+07\n"
                    "Largest: tension 3e+07 at x = "))
      << one;
  EXPECT_TRUE(Holds(one, "\nNominal: N / A = 0, |Vz| / web area up to 0, torsion up to 0.\n"));
  EXPECT_TRUE(Holds(one, "\nDetail model at mid-length: von Mises ")) << one;
  EXPECT_TRUE(Holds(one, "; the section forces there give 3e+07.\n")) << one;
  EXPECT_TRUE(Holds(one,
                    "\nSection forces about the centroid, local axes, on the face whose "
                    "outward normal is +x;"))
      << one;
}

// A tube of `facets` flat sides under the pressure p inside, open and free at its ends. Facet 0
// looks along x. Its six rigid motions are held without force.
ModelText Tube(int facets, double R) {
  const int rings = 3;
  ModelText model;
  for (int i = 0; i < facets; ++i) {
    const double angle = 2.0 * Pi * (i - 0.5) / facets;
    for (int j = 0; j <= rings; ++j) {
      model.nodes.push_back({R * std::cos(angle), R * std::sin(angle), 0.4 * j});
    }
  }
  for (int i = 0; i < facets; ++i) {
    const int a = i * (rings + 1), b = (i + 1) % facets * (rings + 1);
    for (int j = 0; j < rings; ++j) {
      model.shells4.push_back({{a + j, b + j, b + j + 1, a + j + 1}});
    }
  }
  model.materials = {{E, Mu, 7850.0}};
  model.thicknesses = {0.01};
  const int quarter = facets / 4 * (rings + 1), half = 2 * quarter;
  model.restraints = {
      {0, {0, 1, 1, 0, 0, 0}}, {quarter, {1, 0, 1, 0, 0, 0}}, {half, {0, 1, 1, 0, 0, 0}}};
  return model;
}

// By statics of half the tube, cut at two edges: the edges carry p R each, along the tangent of the
// circle; along a facet this is p R cos(pi / facets), the pressure times the radius of the inner
// circle. The tube is free along its axis.
TEST(KvxForces, OfATubeUnderPressure) {
  const int facets = 24;
  const double R = 1.0, p = 2e5;
  ModelText model = Tube(facets, R);
  for (int e = 0; e < 3 * facets; ++e) model.shell4Loads.push_back({e, {p, p, p}});
  const double hoop = p * R * std::cos(Pi / facets);
  const CsvTable table = ForcesOf(model, {"--shell", "all", "--axis", "0,0,2"});
  ASSERT_EQ(table.rows.size(), 72U);
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    EXPECT_NEAR(NumberAt(table, row, "ny"), hoop, 1e-6 * hoop);
    EXPECT_NEAR(NumberAt(table, row, "nx"), 0.0, 1e-6 * hoop);
    EXPECT_NEAR(NumberAt(table, row, "nxy"), 0.0, 1e-6 * hoop);
    EXPECT_NEAR(NumberAt(table, row, "middle_von_mises"), hoop / 0.01, 1e-6 * hoop / 0.01);
    EXPECT_NEAR(std::fabs(NumberAt(table, row, "n_angle")), 90.0, 1e-3);
    EXPECT_EQ(NumberAt(table, row, "axis1_z"), 1.0);
    EXPECT_EQ(FieldOf(table, row, "frame"), "axis");
  }

  // Along y: the facets that look along y have x instead, and it is said of all three forms.
  const Arguments alongY{"--shell", "all", "--axis", "0,1,0"};
  const CsvTable across = ForcesOf(model, alongY);
  int others = 0;
  for (std::size_t row = 0; row < across.rows.size(); ++row) {
    const bool looksAlongY = std::fabs(NumberAt(across, row, "normal_x")) < 1e-6;
    EXPECT_EQ(FieldOf(across, row, "frame"), looksAlongY ? "global x" : "axis");
    if (looksAlongY) ++others;
  }
  EXPECT_EQ(others, 6);
  const std::string text = OutputOf(model, {"forces", "--shell", "0-71", "--axis", "0,1,0"});
  EXPECT_TRUE(Holds(text, "The axis is normal to 6 shells, first four-node shell 18 at (")) << text;
  // Along x: the facets that look along x cannot have global x either.
  const Json json = ForcesJson(model, {"--shell", "0", "--axis", "1,0,0"});
  EXPECT_EQ(json["shells"][0]["frame"], "global y");
  EXPECT_NEAR(json["shells"][0]["centre"]["nx"].get<double>(), hoop, 1e-6 * hoop);
}

// A strip, 3 x 1, pulled with the force n per width, and bent by the moment m per width: nx = n,
// mx = m; n/t + 6 m/t^2 on the upper face. mx > 0 stretches the upper face: the moment vector at
// the end x = L is +y m.
ModelText Strip(Cells cells, double n, double m) {
  ModelText model = BuildGrid(2, 6, cells, [](double s, double t) {
    return Point3{3.0 * t, 1.0 - s, 0.0};
  });
  model.materials = {{E, 0.0, 7850.0}};
  model.thicknesses = {0.02};
  for (int i = 0; i <= 2; ++i) {
    const double share = i == 1 ? 0.5 : 0.25;
    model.restraints.push_back({GridNode(2, i, 0), {1, i == 1 ? 1 : 0, 1, 1, 1, 1}});
    model.forces.push_back({GridNode(2, i, 6), {n * share, 0, 0, 0, m * share, 0}});
  }
  return model;
}

TEST(KvxForces, OfAStripPulledAndBent) {
  const double n = 1e5, m = 300.0, t = 0.02;
  for (const Cells cells : {Cells::Quads, Cells::Mixed}) {
    const ModelText model = Strip(cells, n, m);
    Arguments arguments{"--axis", "1,0,0", "--corners"};
    const CsvTable table = ForcesOf(model, arguments);
    EXPECT_EQ(table.rows.size(), model.shells4.size() * 5 + model.shells3.size() * 4);
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      EXPECT_NEAR(NumberAt(table, row, "nx"), n, 1e-6 * n);
      EXPECT_NEAR(NumberAt(table, row, "mx"), m, 1e-6 * m);
      EXPECT_NEAR(NumberAt(table, row, "n1"), n, 1e-6 * n);
      EXPECT_NEAR(NumberAt(table, row, "n_angle"), 0.0, 1e-3);
      EXPECT_NEAR(NumberAt(table, row, "membrane_x"), n / t, 1e-6 * n / t);
      EXPECT_NEAR(NumberAt(table, row, "bending_x"), 6.0 * m / (t * t), 1e-6 * n / t);
      EXPECT_NEAR(NumberAt(table, row, "upper_1"), n / t + 6.0 * m / (t * t), 2e-6 * n / t);
      EXPECT_NEAR(NumberAt(table, row, "lower_von_mises"), n / t - 6.0 * m / (t * t), 2e-6 * n / t);
      EXPECT_NEAR(std::fabs(NumberAt(table, row, "upper_dir_x")), 1.0, 1e-6);
      EXPECT_NEAR(NumberAt(table, row, "normal_z"), 1.0, 1e-12);
      const bool isTriangle = FieldOf(table, row, "kind") == "triangle";
      EXPECT_EQ(FieldOf(table, row, "qx").empty(), isTriangle);
    }
  }
}

TEST(KvxForces, OfShellsTurnWithTheAxis) {
  ModelText model = Strip(Cells::Mixed, 1e5, 300.0);
  model.restraints.clear();
  for (int i = 0; i <= 2; ++i) model.restraints.push_back({GridNode(2, i, 0), {1, 1, 1, 1, 1, 1}});
  model.shell4Loads = {{0, {1e4, 2e4, -1e4}}};
  const Point3 axis = Turn({1.0, 0.2, 0.0});
  std::string text;
  for (const double component : axis) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.17g", component);
    text += (text.empty() ? "" : ",") + std::string(digits.data());
  }
  const CsvTable straight = ForcesOf(model, {"--axis", "1,0.2,0"});
  const CsvTable turned = ForcesOf(TurnModel(model), {"--axis=" + text});
  ASSERT_EQ(straight.rows.size(), turned.rows.size());
  for (std::size_t row = 0; row < straight.rows.size(); ++row) {
    for (const char* column : {"nx", "ny", "nxy", "mx", "my", "mxy", "qx", "qy", "n1", "m2"}) {
      const double value = NumberAt(straight, row, column);
      if (std::isnan(value)) continue;  // q of triangles
      EXPECT_NEAR(NumberAt(turned, row, column), value, 1e-9 * 1e5) << column;
    }
    for (const char* column :
         {"upper_x", "lower_xy", "upper_von_mises", "lower_2", "middle_von_mises"}) {
      EXPECT_NEAR(NumberAt(turned, row, column), NumberAt(straight, row, column), 1e-9 * 1e8)
          << column;
    }
  }
}

// Both kinds are numbered from 0: --shell takes those with four nodes, --triangle the others.
TEST(KvxForces, CsvAndJsonOfShellsAgreeToAllDigits) {
  const ModelText model = Strip(Cells::Mixed, 1e5, 300.0);
  const Arguments chosen{"--shell", "1-2", "--triangle", "0", "--corners"};
  const CsvTable table = ForcesOf(model, chosen);
  const Json json = ForcesJson(model, chosen);
  ASSERT_EQ(json["shells"].size(), 2U);
  ASSERT_EQ(json["triangles"].size(), 1U);
  ASSERT_EQ(table.rows.size(), 5U + 5U + 4U);
  std::vector<Json> points;
  for (const char* kind : {"shells", "triangles"}) {
    for (const Json& element : json[kind]) {
      points.push_back(element["centre"]);
      for (const Json& corner : element["corners"]) points.push_back(corner);
    }
  }
  ASSERT_EQ(points.size(), table.rows.size());
  for (std::size_t row = 0; row < points.size(); ++row) {
    EXPECT_GT(points[row].size(), 50U);
    for (const auto& [name, value] : points[row].items()) {
      if (value.is_null()) {
        EXPECT_EQ(FieldOf(table, row, name), "") << name;
      } else {
        EXPECT_EQ(NumberAt(table, row, name), value.get<double>()) << name;
      }
    }
  }
  EXPECT_EQ(FieldOf(table, 0, "kind"), "shell");
  EXPECT_EQ(FieldOf(table, 0, "element"), "1");
  EXPECT_EQ(FieldOf(table, 0, "node"), "");
  EXPECT_EQ(FieldOf(table, 10, "kind"), "triangle");
  EXPECT_EQ(FieldOf(table, 10, "element"), "0");
  const auto& node = model.shells3[0].nodes;
  EXPECT_EQ(FieldOf(table, 12, "node"), std::to_string(node[1]));
  EXPECT_EQ(NumberAt(table, 12, "x"), model.nodes[static_cast<std::size_t>(node[1])][0]);
  EXPECT_EQ(json["triangles"][0]["triangle"], 0);
}

TEST(KvxForces, TextOfShells) {
  const ModelText model = Strip(Cells::Quads, 1e5, 300.0);
  const std::string text = OutputOf(model, {"forces", "--shell", "2", "--axis", "1,0,0"});
  EXPECT_TRUE(
      Holds(text,
            "Forces and moments of shells:\n"
            "  kind             element  at         x     y  z      nx  ny  nxy   mx  my  mxy  "
            "qx  qy\n"
            "  four-node shell        2  centre  0.75  0.75  0  100000   0    0  300   0    0  "
            " 0   0\n"
            "\n"
            "Stresses of shells:\n"
            "  kind             element  at      upper: 1  2  angle  von Mises  lower: 1  2  "
            "angle  von Mises  middle: von Mises\n"
            "  four-node shell        2  centre   9.5e+06  0      0    9.5e+06    500000  0      "
            "0     "
            "500000              5e+06\n"))
      << text;
  EXPECT_TRUE(Holds(text, "\nAxis 1 is the projection of (1, 0, 0) on the shell")) << text;
}

// More shells than anyone reads: where the extremes are, unless they are named.
TEST(KvxForces, TextOfManyShells) {
  ModelText model = BuildGrid(8, 10, Cells::Quads, [](double s, double t) {
    return Point3{t, -s, 0.0};
  });
  model.materials = {{E, Mu, 7850.0}};
  model.thicknesses = {0.02};
  for (int i = 0; i <= 8; ++i) model.restraints.push_back({GridNode(8, i, 0), {1, 1, 1, 1, 1, 1}});
  for (int e = 0; e < 80; ++e) model.shell4Loads.push_back({e, {1e3, 1e3, 1e3}});
  const std::string text = OutputOf(model, {"forces", "--axis", "1,0,0"});
  EXPECT_TRUE(Holds(text, "Smallest and largest values at the centres of shells:\n")) << text;
  const CsvTable table = ForcesOf(model, {"--axis", "1,0,0"});
  ASSERT_EQ(table.rows.size(), 80U);
  std::size_t smallest = 0;
  for (std::size_t row = 1; row < 80; ++row) {
    if (NumberAt(table, row, "mx") < NumberAt(table, smallest, "mx")) smallest = row;
  }
  // Lifted by the pressure, so that the lower face is stretched most at the clamped edge.
  std::array<char, 32> digits{};
  std::snprintf(digits.data(), digits.size(), "%.6g", NumberAt(table, smallest, "mx"));
  const std::size_t line = text.find("\n  mx ");
  ASSERT_NE(line, std::string::npos);
  const std::string row = text.substr(line + 1, text.find('\n', line + 1) - line);
  EXPECT_TRUE(Holds(row, std::string(digits.data()) + "  four-node shell " +
                             FieldOf(table, smallest, "element") + " "))
      << row;
  EXPECT_TRUE(Holds(OutputOf(model, {"forces", "--shell", "all"}),
                    "\n  four-node shell       79  centre "));
}

// Exit status and standard error of a call that must print nothing.
void ExpectRefusal(const ModelText& model, Arguments arguments, int exitStatus,
                   const std::string& complaint) {
  arguments.insert(arguments.begin(), {"forces"});
  const ProgramRun run = CallKvx(WriteModel(model), arguments);
  EXPECT_EQ(run.exitStatus, exitStatus);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(Holds(run.err, "kvx forces: " + complaint)) << run.err;
}

TEST(KvxForces, ComplainsAboutOptions) {
  ModelText beams = Cantilever(Tee(), 2, 4.0);
  beams.forces = {{2, SingleLoad(Fz, -100.0)}};
  ExpectRefusal(beams, {"--beam", "5-"}, 64, "--beam \"5-\" is no list of numbers.");
  ExpectRefusal(beams, {"--beam", "2"}, 64,
                "--beam: there is no beam 2. The model has 2 beams, numbered from 0 to 1.\n");
  ExpectRefusal(beams, {"--shell", "0"}, 64, "--shell: the model has no four-node shells.\n");
  ExpectRefusal(beams, {"--triangle", "x"}, 64, "--triangle \"x\" is no list of numbers.");
  ExpectRefusal(beams, {"--csv", "--json"}, 64, "--csv or --json, not both.\n");
  ExpectRefusal(beams, {"--beam", "0", "--shell", "0", "--csv"}, 64, "--csv holds one table");
  ExpectRefusal(beams, {"--axis", "1,0,0"}, 64, "--axis and --corners are for shells");
  for (const char* axis : {"1,0", "0,0,0", "1,0,0,0", "a", "1;0;0", "nan,0,0", "1,0,0 "}) {
    ExpectRefusal(beams, {"--axis", axis}, 64,
                  "--axis is a direction of three numbers, not all 0, such as 1,0,0; \"" +
                      std::string(axis) + "\" is not.\n");
  }
  for (const char* divisions : {"0", "1001", "x", "2.5"}) {
    ExpectRefusal(beams, {"--divisions", divisions}, 64,
                  "--divisions: write a number from 1 to 1000, not \"" + std::string(divisions));
  }
  ExpectRefusal(beams, {"--beam"}, 64, "--beam needs its LIST behind it. \"kvx forces --help\"");
  const std::string help = CallKvx("", {"forces", "--help"}).out;
  EXPECT_TRUE(Holds(help, "\n  --axis X,Y,Z          Direction")) << help;
  EXPECT_FALSE(Holds(help, "Excludes")) << help;
  EXPECT_TRUE(Holds(help, "My > 0 stretches the +z side, Mz > 0 the -y side")) << help;
}

TEST(KvxForces, ComplainsAboutModels) {
  ModelText model = Cantilever(Tee(), 2, 4.0);
  model.restraints.clear();
  ExpectRefusal(model, {}, 65, "the model has no supports");
  model = Cantilever(Tee(), 2, 4.0);
  model.nodes[2] = model.nodes[1];  // a beam of no length
  ExpectRefusal(model, {"--csv"}, 65, "the displacements of ");
  ModelText empty = Strip(Cells::Quads, 0.0, 0.0);
  empty.shells4.clear();
  ExpectRefusal(empty, {"--json"}, 65, "the model has no elements.\n");
}

// A beam whose section type has no table: its numbers are not there, and the run would stop.
TEST(KvxForces, OfABeamWithoutASection) {
  ModelText model = Cantilever(Tee(), 2, 4.0);
  model.beams[1].BeamSecType = 5;
  const ProgramRun run = CallKvx(WriteModel(model), {"forces", "--csv"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(Holds(run.err, "The stiffness of beam 1")) << run.err;
}

}  // namespace
}  // namespace kvx::test
