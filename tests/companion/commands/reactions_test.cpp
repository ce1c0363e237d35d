// kvx reactions as its user meets it: closed forms, its three forms, and models that are no good.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "audit/displacement_file.h"
#include "commands/call_kvx.h"
#include "support/beam_sections.h"
#include "support/csv.h"
#include "support/dof_names.h"
#include "support/shell_mesh.h"
#include "support/solved_examples.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using namespace korvex::test;  // NOLINT(google-build-using-namespace): Fx, Uy and their like
using Json = nlohmann::json;

constexpr double E = 2.06e11, Mu = 0.3;

CsvTable ReactionsOf(const ModelText& model) {
  return ReadCsv(OutputOf(model, {"reactions", ".", "--csv"}));
}

double AtNode(const CsvTable& table, int node, const std::string& column) {
  return NumberAt(table, RowWhere(table, "node", std::to_string(node)), column);
}

double SumAt(const CsvTable& table, const std::string& kind, const std::string& column) {
  return NumberAt(table, RowWhere(table, "kind", "sum: " + kind), column);
}

// A tube so thin that shear deformation, 12 E I / (G As L^2), hardly counts.
TestSection ThinTube() { return {"tube", korvex::BeamSecTypeC, {5e-3, 5e-4, 0, 0}, 0.0, false}; }

double ShearParameter(double L) {
  const SectionNumbers s = ComputeNumbers(ThinTube());
  return static_cast<double>(12 * s.Iy * 2 * (1 + Mu) / (s.shearAreaZ * L * L));
}

// Beams along x over supports at the distance L, `parts` to each span; pinned in the plane x-z.
ModelText ContinuousBeam(int spans, int parts, double L) {
  ModelText model;
  model.materials = {{E, Mu, 7850.0}};
  ModelText::Beam beam;
  UseSection(ThinTube(), model, beam);
  for (int k = 0; k <= spans * parts; ++k) model.nodes.push_back({L * k / parts, 0.0, 0.0});
  for (int k = 0; k < spans * parts; ++k) {
    beam.node1 = k;
    beam.node2 = k + 1;
    model.beams.push_back(beam);
  }
  for (int k = 0; k <= spans; ++k) model.restraints.push_back({k * parts, {0, 1, 1, 1, 0, 1}});
  model.restraints[0].fixed[Ux] = 1;
  return model;
}

// Two spans under a uniform load: 3/8, 10/8 and 3/8 of the load of a span (Timoshenko & Gere 1972,
// sec. 7.4). With shear deformation the moment over the middle is q L^2 / 8 / (1 + Phi / 4).
TEST(KvxReactions, OfTwoSpans) {
  const double L = 3.0, q = 100.0, Phi = ShearParameter(L);
  ASSERT_LT(Phi, 1e-3);
  ModelText model = ContinuousBeam(2, 4, L);
  for (int k = 0; k < 8; ++k) model.beamLoads.push_back({k, -q, -q});
  const CsvTable table = ReactionsOf(model);
  const double bound = Phi * q * L / 4.0;
  EXPECT_NEAR(AtNode(table, 0, "Fz"), 3.0 / 8.0 * q * L, bound);
  EXPECT_NEAR(AtNode(table, 4, "Fz"), 10.0 / 8.0 * q * L, bound);
  EXPECT_NEAR(AtNode(table, 8, "Fz"), 3.0 / 8.0 * q * L, bound);
  EXPECT_NEAR(SumAt(table, "reactions", "Fz"), 2.0 * q * L, 1e-9 * q * L);
  EXPECT_NEAR(SumAt(table, "loads", "Fz"), -2.0 * q * L, 1e-9 * q * L);
  EXPECT_NEAR(SumAt(table, "loads", "My"), 2.0 * q * L * L, 1e-9 * q * L * L);  // q 2L at x = L
  EXPECT_NEAR(SumAt(table, "left over", "My"), 0.0, 1e-8 * q * L * L);
  EXPECT_EQ(FieldOf(table, 0, "My"), "");  // free to turn
  EXPECT_NE(FieldOf(table, 0, "Mx"), "");
  EXPECT_NEAR(AtNode(table, 4, "x"), L, 1e-12);
}

// Three spans with a load of their own each. Three moments (Clapeyron): for the moments M1, M2 over
// the inner supports, positive where they stretch the lower side,
//   4 L M1 + L M2 = -(q1 + q2) L^3 / 4,  L M1 + 4 L M2 = -(q2 + q3) L^3 / 4.
TEST(KvxReactions, OfThreeSpans) {
  const double L = 2.0, q1 = 100.0, q2 = 250.0, q3 = 40.0, Phi = ShearParameter(L);
  ASSERT_LT(Phi, 1e-3);
  ModelText model = ContinuousBeam(3, 4, L);
  for (int k = 0; k < 12; ++k) {
    const double q = k < 4 ? q1 : k < 8 ? q2 : q3;
    model.beamLoads.push_back({k, -q, -q});
  }
  const double a = -(q1 + q2) * L * L / 4.0, b = -(q2 + q3) * L * L / 4.0;
  const double M1 = (4.0 * a - b) / 15.0, M2 = (4.0 * b - a) / 15.0;
  const CsvTable table = ReactionsOf(model);
  const double bound = Phi * q2 * L;
  EXPECT_NEAR(AtNode(table, 0, "Fz"), q1 * L / 2.0 + M1 / L, bound);
  EXPECT_NEAR(AtNode(table, 4, "Fz"), (q1 + q2) * L / 2.0 - M1 / L + (M2 - M1) / L, bound);
  EXPECT_NEAR(AtNode(table, 8, "Fz"), (q2 + q3) * L / 2.0 + (M1 - M2) / L - M2 / L, bound);
  EXPECT_NEAR(AtNode(table, 12, "Fz"), q3 * L / 2.0 + M2 / L, bound);
}

// A beam clamped at both ends, whose right end is pushed down by d: 12 E I d / L^3 and 6 E I d /
// L^2 (Timoshenko & Gere 1972, sec. 7.3), less by 1 / (1 + Phi).
TEST(KvxReactions, OfASettlement) {
  const double L = 1.5, d = 2e-3, Phi = ShearParameter(L);
  const auto EI = E * static_cast<double>(ComputeNumbers(ThinTube()).Iy) / (1.0 + Phi);
  ModelText model = ContinuousBeam(1, 1, L);
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{1, SingleLoad(Fz, -1e20 * d)}};
  const CsvTable table = ReactionsOf(model);
  const double V = 12.0 * EI * d / (L * L * L), M = 6.0 * EI * d / (L * L);
  // 1e-9: the supports have the stiffness 1e20, the beam 1e3.
  EXPECT_NEAR(AtNode(table, 0, "Fz"), V, 1e-9 * V);
  EXPECT_NEAR(AtNode(table, 1, "Fz"), -V, 1e-9 * V);
  EXPECT_NEAR(AtNode(table, 0, "My"), -M, 1e-9 * M);
  EXPECT_NEAR(AtNode(table, 1, "My"), -M, 1e-9 * M);
  EXPECT_EQ(AtNode(table, 1, "uz"), -d);
  EXPECT_EQ(FieldOf(table, 1, "uy"), "");
  EXPECT_EQ(FieldOf(table, 0, "uz"), "");
  for (const char* column : {"Fx", "Fy", "Fz", "Mx", "My", "Mz"}) {
    EXPECT_EQ(SumAt(table, "loads", column), 0.0);  // a settlement is no load
  }
  const Json json = Json::parse(OutputOf(model, {"reactions", "--json"}));
  EXPECT_EQ(json["prescribed"]["1"], Json::parse("[null, null, -0.002, null, null, null]"));
  const std::string text = OutputOf(model, {"reactions"});
  EXPECT_NE(text.find("Prescribed displacements (rotations in radians):\n"
                      "  node    x  y  z  dof  prescribed  reached\n"
                      "     1  1.5  0  0  Uz       -0.002   -0.002\n"),
            std::string::npos)
      << text;
}

// The force at the last corner of a square plate on simple supports under a pressure p downwards,
// n x n elements. Very thin, so that shear does not soften the corners.
double CornerForce(int n, double p) {
  ModelText model = BuildGrid(n, n, Cells::Quads, [](double s, double t) {
    return Point3{s, t, 0.0};
  });
  model.materials = {{E, Mu, 7850.0}};
  model.thicknesses = {0.0005};
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i <= n; ++i) {
      if (i % n != 0 && j % n != 0) continue;
      model.restraints.push_back({GridNode(n, i, j), {1, 1, 1, 0, 0, 1}});
    }
  }
  for (int e = 0; e < n * n; ++e) model.shell4Loads.push_back({e, {-p, -p, -p}});
  const CsvTable table = ReactionsOf(model);
  EXPECT_LT(AtNode(table, GridNode(n, 0, 0), "Fz"), 0.0);      // held down
  EXPECT_GT(AtNode(table, GridNode(n, n / 2, 0), "Fz"), 0.0);  // carried
  EXPECT_NEAR(SumAt(table, "reactions", "Fz"), p, 1e-5 * p);
  return AtNode(table, GridNode(n, n, n), "Fz");
}

// The corners are held down with 0.0650 p a^2 (Timoshenko & Woinowsky-Krieger 1959, table 8, nu =
// 0.3). Three meshes converge like a geometric series; its limit (Aitken) is compared. The table's
// last digit is 1.5 per cent; the limit of the finer meshes 16, 32, 64 is 64.9.
TEST(KvxReactions, OfThePlatesCorners) {
  const double p = 1000.0;
  const std::array<double, 3> R{CornerForce(8, p), CornerForce(16, p), CornerForce(32, p)};
  const double ratio = (R[1] - R[0]) / (R[2] - R[1]);
  EXPECT_GT(ratio, 2.5);  // better than first order
  EXPECT_LT(ratio, 4.0);
  EXPECT_NEAR(R[2] + (R[2] - R[1]) / (ratio - 1.0), -0.065 * p, 0.0005 * p);
}

// CSV and JSON hold the same doubles, and the sums are those of the rows.
TEST(KvxReactions, CsvAndJsonAgreeToAllDigits) {
  ModelText model = BuildGrid(4, 3, Cells::Mixed, [](double s, double t) {
    return Point3{1.2 * s, t + 0.1 * s, 0.2 * s};
  });
  model.materials = {{E, Mu, 7850.0}};
  model.thicknesses = {0.02};
  for (int j = 3; j >= 0; --j) model.restraints.push_back({GridNode(4, 0, j), {1, 1, 1, 0, 1, 1}});
  model.forces = {{GridNode(4, 4, 0), {100.0, -200.0, 300.0, 10.0, 20.0, -5.0}}};
  model.shell4Loads = {{1, {1000.0, 2000.0, 1500.0}}};
  const CsvTable table = ReactionsOf(model);
  const Json json = Json::parse(OutputOf(model, {"reactions", "--json"}));
  const std::vector<std::string> names{"Fx", "Fy", "Fz", "Mx", "My", "Mz"};
  ASSERT_EQ(json["supports"].size(), 4U);
  std::array<double, 6> sum{};
  double before = -1.0;
  for (std::size_t row = 0; row < 4; ++row) {
    EXPECT_EQ(FieldOf(table, row, "kind"), "support");
    EXPECT_GT(NumberAt(table, row, "node"), before);  // ascending
    before = NumberAt(table, row, "node");
    const Json& six = json["supports"][FieldOf(table, row, "node")];
    std::array<double, 6> force{};
    for (std::size_t i = 0; i < 6; ++i) {
      if (i == 3) {
        EXPECT_TRUE(six[i].is_null());
        EXPECT_EQ(FieldOf(table, row, "Mx"), "");
        continue;
      }
      force[i] = NumberAt(table, row, names[i]);
      EXPECT_EQ(six[i].get<double>(), force[i]);
    }
    const double x = NumberAt(table, row, "x"), y = NumberAt(table, row, "y"),
                 z = NumberAt(table, row, "z");
    const std::array<double, 3> arm{y * force[2] - z * force[1], z * force[0] - x * force[2],
                                    x * force[1] - y * force[0]};
    for (std::size_t i = 0; i < 6; ++i) sum[i] += force[i] + (i < 3 ? 0.0 : arm[i - 3]);
  }
  for (std::size_t i = 0; i < 6; ++i) {
    const double reaction = SumAt(table, "reactions", names[i]);
    EXPECT_NEAR(reaction, sum[i], 1e-9 * 1000.0);
    EXPECT_EQ(json["reactions"][i].get<double>(), reaction);
    EXPECT_EQ(json["loads"][i].get<double>(), SumAt(table, "loads", names[i]));
    EXPECT_EQ(json["left_over"][i].get<double>(), SumAt(table, "left over", names[i]));
    EXPECT_NEAR(reaction + SumAt(table, "loads", names[i]), 0.0, 1e-8 * 1000.0);
  }
  EXPECT_TRUE(json["balanced"].get<bool>());
  EXPECT_LT(json["imbalance"].get<double>(), 1e-9);
}

// One quadrilateral whose third node stands 0.05 off: named, with its couple. The rows of the sums
// add up with it.
TEST(KvxReactions, NamesWarpedQuadrilaterals) {
  ModelText model = BuildGrid(2, 1, Cells::Quads, [](double s, double t) {
    return Point3{2.0 * s, t, 0.0};
  });
  model.nodes[static_cast<std::size_t>(GridNode(2, 2, 1))][2] = 0.05;
  model.materials = {{E, Mu, 7850.0}};
  model.thicknesses = {0.02};
  for (int j = 0; j <= 1; ++j) model.restraints.push_back({GridNode(2, 0, j), {1, 1, 1, 1, 1, 1}});
  model.forces = {{GridNode(2, 2, 1), {1000.0, 500.0, 300.0, 0, 0, 0}}};
  const std::string text = WriteModel(model);
  const auto run = CallKvx(text, {"reactions", "--csv"});
  const CsvTable table = ReadCsv(run.out);
  const auto noted = std::find_if(table.notes.begin(), table.notes.end(), [](const auto& note) {
    return note.rfind(
               "Not in equilibrium by itself: four-node shell 1 at (1.5, 0.5, 0.0125) is "
               "warped: its third node stands 0.05 off",
               0) == 0;
  });
  EXPECT_NE(noted, table.notes.end()) << run.out;
  const Json json = Json::parse(CallKvx(text, {"reactions", "--json"}).out);
  ASSERT_EQ(json["unbalanced"].size(), 1U);
  EXPECT_EQ(json["unbalanced"][0]["kind"], "shell");
  EXPECT_EQ(json["unbalanced"][0]["element"], 1);
  EXPECT_NEAR(json["unbalanced"][0]["offset"].get<double>(), 0.05, 1e-12);
  // The corner's own load is all of F3: its couple is h e3 x F3 = 0.05 (-Fy, Fx, 0) of the load.
  EXPECT_NEAR(SumAt(table, "elements", "Mx"), 0.05 * 500.0, 1e-6);
  EXPECT_NEAR(SumAt(table, "elements", "My"), -0.05 * 1000.0, 1e-6);
  // Its own couple is that of the sum, for there is no other element of the kind; its forces are in
  // equilibrium.
  const std::vector<const char*> columns{"Fx", "Fy", "Fz", "Mx", "My", "Mz"};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const double elements = SumAt(table, "elements", columns[i]);
    EXPECT_EQ(json["elements"][i].get<double>(), elements);
    EXPECT_NEAR(json["unbalanced"][0]["sum"][i].get<double>(), elements, 1e-6);
  }
  for (const char* column : columns) {
    const double left = SumAt(table, "reactions", column) + SumAt(table, "loads", column) +
                        SumAt(table, "elements", column);
    EXPECT_NEAR(left, 0.0, 1e-6) << column;
    EXPECT_NEAR(SumAt(table, "left over", column), left, 1e-9) << column;
  }
}

// The examples: forces and moments of supports and loads add up to nothing, to 1e-9 of the largest
// and, about the origin, of the loads' arms there.
TEST(KvxReactions, OfTheExamplesBalance) {
  for (const std::string& name : ListSolvedExamples()) {
    SCOPED_TRACE(name);
    const auto run = CallKvx(ReadFile(std::string(KORVEX_EXAMPLES "/") + name + "/fem_solving.txt"),
                             {"reactions", "--json"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    const Json json = Json::parse(run.out);
    EXPECT_LT(json["imbalance"].get<double>(), 1e-9);
    EXPECT_TRUE(json["unbalanced"].empty());
    std::array<double, 2> scale{};
    for (std::size_t i = 0; i < 6; ++i) {
      scale[i / 3] = std::max(scale[i / 3], std::fabs(json["loads"][i].get<double>()));
    }
    for (std::size_t i = 0; i < 6; ++i) {
      const double sum = json["reactions"][i].get<double>() + json["loads"][i].get<double>();
      EXPECT_NEAR(sum, 0.0, 1e-9 * scale[i / 3]);
    }
  }
}

// A clamped beam of 2 m under 10 N at its end: what an engineer pastes into a report.
ModelText Cantilever() {
  ModelText model = ContinuousBeam(1, 1, 2.0);
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{1, SingleLoad(Fz, -10.0)}};
  return model;
}

TEST(KvxReactions, TextOfACantilever) {
  std::string text = OutputOf(Cantilever(), {"reactions"});
  // The digits of what is left over are rounding, which is not the same on all machines.
  const std::size_t rounding = text.find("  left over");
  const std::size_t next = text.find('\n', rounding);
  ASSERT_NE(next, std::string::npos);
  const std::string balance = "Loads and reactions balance: what is left over is ";
  ASSERT_EQ(text.find(balance, next), next + 1) << text;
  text = text.substr(0, rounding) + text.substr(text.find('\n', next + 1));
  EXPECT_EQ(text.substr(0, text.find("\n\n") + 2),
            "Support forces at 1 node:\n"
            "  node  x  y  z  Fx  Fy  Fz  Mx   My  Mz\n"
            "     0  0  0  0   0   0  10   0  -20   0\n"
            "\n");
  EXPECT_NE(text.find("\nForces of the supports on the structure, along the global axes; moments "
                      "turn by the right-hand rule,\n"
                      "those of sums about the global origin. Units of the model.\n"),
            std::string::npos)
      << text;
}

TEST(KvxReactions, ModelsWithoutSupports) {
  ModelText model = Cantilever();
  model.restraints.clear();
  for (const char* form : {"", "--csv", "--json"}) {
    std::vector<std::string> arguments{"reactions", "."};
    if (*form != '\0') arguments.emplace_back(form);
    const auto run = CallKvx(WriteModel(model), arguments);
    EXPECT_EQ(run.exitStatus, 65);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("kvx reactions: the model has no supports: nothing holds it"),
              std::string::npos)
        << run.err;
  }
}

TEST(KvxReactions, NamesWhatMakesDisplacementsNoNumbers) {
  ModelText model = Cantilever();
  model.beams[0].orientation = {1.0, 0.0, 0.0};  // along the beam
  const auto run = CallKvx(WriteModel(model), {"reactions"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(
      run.err.find("are not numbers, first Ux of node 0 at (0, 0, 0). The stiffness of beam 0 "
                   "at (0, 0, 0) .. (2, 0, 0) is not a number: mend its shape, section or "
                   "material.\n"),
      std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find("K104"), std::string::npos) << run.err;  // the model has errors
}

// A model with errors that can be solved all the same: its numbers, and the exit status 1.
TEST(KvxReactions, TellsOfErrorsInTheModel) {
  ModelText model = Cantilever();
  model.nodes.push_back({0.0, 5.0, 0.0});
  model.restraints.push_back({2, {1, 1, 1, 1, 1, 1}});
  std::string text = WriteModel(model);
  const std::size_t at = text.find("0,1<");
  ASSERT_NE(at, std::string::npos);
  const auto good = CallKvx(text, {"reactions", "--csv"});
  ModelText other = model;
  other.forces.push_back({1, SingleLoad(Fx, 1e20)});  // not held there
  const auto bad = CallKvx(WriteModel(other), {"reactions", "--csv"});
  EXPECT_EQ(good.exitStatus, 0) << good.err;
  EXPECT_EQ(bad.exitStatus, 1) << bad.err;
  EXPECT_NE(bad.err.find("the model has errors"), std::string::npos) << bad.err;
  EXPECT_NE(bad.out, "");
}

TEST(KvxReactions, MissingAndUnreadableModels) {
  const TempFolder folder;
  const auto none = RunProgram(KVX_PROGRAM, folder.Path(), "", {"reactions", "nowhere"});
  EXPECT_EQ(none.exitStatus, 66);
  EXPECT_EQ(none.out, "");
  const auto both = RunProgram(KVX_PROGRAM, folder.Path(), "", {"reactions", "--csv", "--json"});
  EXPECT_EQ(both.exitStatus, 64);
  EXPECT_NE(both.err.find("kvx reactions: --csv or --json, not both."), std::string::npos);
}

// The bytes of displacements.bin for a model file.
std::string DisplacementBytes(const std::string& modelText, const std::vector<double>& u) {
  const TempFolder folder;
  const std::string name = (folder.Path() / "displacements.bin").string();
  WriteDisplacementFile(name, IdentifyModelFile(modelText), u);
  return ReadFile(name);
}

// Displacements that were kept are taken as they are; those that are truncated, of another model or
// nothing of ours are named, and the model is solved anew.
TEST(KvxReactions, TakesTheKeptDisplacements) {
  const std::string text = WriteModel(Cantilever());
  const std::string solved = CallKvx(text, {"reactions", "--csv"}).out;
  const std::string none = DisplacementBytes(text, std::vector<double>(12, 0.0));
  const auto kept = CallKvx(text, {"reactions", "--csv"}, {{"displacements.bin", none}});
  EXPECT_EQ(kept.exitStatus, 1);  // no displacements, no support forces: loads are left over
  EXPECT_EQ(NumberAt(ReadCsv(kept.out), 0, "Fz"), 0.0);
  EXPECT_NE(kept.out.find("# Loads and reactions do NOT balance"), std::string::npos) << kept.out;
  const std::vector<std::string> bad{none.substr(0, none.size() - 8),
                                     DisplacementBytes(text + "\n", std::vector<double>(12, 0.0)),
                                     "nothing of ours", ""};
  for (const std::string& bytes : bad) {
    const auto run = CallKvx(text, {"reactions", "--csv"}, {{"displacements.bin", bytes}});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.out, solved);
    EXPECT_EQ(run.err.rfind("kvx reactions: ", 0), 0U) << run.err;
    EXPECT_NE(run.err.find("The model is solved anew."), std::string::npos) << run.err;
  }
  std::vector<double> u(12, 0.0);
  u[8] = std::numeric_limits<double>::quiet_NaN();
  const auto run =
      CallKvx(text, {"reactions"}, {{"displacements.bin", DisplacementBytes(text, u)}});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("the displacements of 1 node are not numbers, first Uz of node 1"),
            std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find("Remove displacements.bin, and try again."), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("can move"), std::string::npos) << run.err;
}

TEST(KvxReactions, HelpStatesTheSigns) {
  const TempFolder folder;
  const auto run = RunProgram(KVX_PROGRAM, folder.Path(), "", {"reactions", "--help"});
  EXPECT_NE(run.out.find("Forces of the supports on the structure, along the global axes"),
            std::string::npos);
  EXPECT_EQ(run.out.find("Excludes"), std::string::npos) << run.out;
}

}  // namespace
}  // namespace kvx::test
