// What kvx audit says: the text as it stands in a report, the JSON with exactly the keys of the
// page, and the findings about files in the folder.
#include "commands/audit_report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "audit/beam_models.h"
#include "run/file_names.h"
#include "run/stages.h"
#include "support/audited.h"
#include "support/dof_names.h"
#include "support/good_models.h"
#include "support/read_bytes.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using namespace korvex::test;  // NOLINT(google-build-using-namespace): Fx, Uy and their like

std::vector<std::string> KeysOf(const Json& json) {
  std::vector<std::string> keys;
  for (const auto& item : json.items()) keys.push_back(item.key());
  return keys;
}

// A cantilever of two flat bars of 20 x 200 and 2000 each, symmetric about its nodes' line but for
// the height; 100 downwards at its tip.
ModelText Cantilever() {
  ModelText model = BuildStraight({0.0, 2000.0, 4000.0}, FlatBarSection());
  model.forces = {{2, SingleLoad(Fz, -100.0)}};
  return model;
}

TEST(AuditText, FitsAReport) {
  Audited audited = Audit(Cantilever());
  // What depends on the last digits of a solution.
  audited.report.reactions.imbalance = 3e-14;
  audited.report.reactions.residual = {1.0, 2e-13, 1, 4};
  audited.report.maxima.clear();
  const double w = audited.report.verdict.translation.value;
  const std::string text = AuditText("deck/a.txt", audited.solved, audited.report, {});
  EXPECT_EQ(
      text.find("deck/a.txt\n"
                "             Fx  Fy    Fz  Mx       My  Mz\n"
                "  loads       0   0  -100   0   400000   0\n"
                "  reactions   0   0   100   0  -400000   0\n"
                "  balance       loads and reactions differ by 3e-14 of the loads; moments are "
                "about the origin;\n"
                "                largest residual of a free node 2e-13 of the largest force, "
                "My of node 1 at (2000,\n"
                "                0, 0)\n"
                "  supports      1 node\n"),
      0U)
      << text;
  // P L^3 / (3 E I); shear adds 0.2 %, the height of the section above the nodes 0.1 %.
  EXPECT_NEAR(w, 100.0 * 6.4e10 / (3.0 * SteelE * 20.0 * 8e6 / 12.0), 0.005 * w);
  // Stress at the clamped end: M / W.
  EXPECT_NE(text.find("von Mises 3 in beam 0 at x/L 0; tension 3 in beam 0 at x/L 0;\n"
                      "                compression -3 in beam 0 at x/L 0\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("\nNo errors, no warnings.\n"
                      "Verdict: balanced (3e-14 of the loads); largest displacement "),
            std::string::npos)
      << text;
}

TEST(AuditText, GivesStressesAsPartsOfTheYieldStress) {
  const Audited audited = Audit(Cantilever(), 12.0);
  const std::string text = AuditText("a", audited.solved, audited.report, {});
  EXPECT_NE(text.find("von Mises 3, 0.250 of yield in beam 0"), std::string::npos) << text;
}

// The six numbers of a row of the sums.
ForceSum ReadSum(const std::string& text, const std::string& name) {
  ForceSum sum{};
  const std::size_t at = text.find("\n  " + name + " ");
  EXPECT_NE(at, std::string::npos) << text;
  if (at == std::string::npos) return sum;
  std::istringstream row(text.substr(at + 3 + name.size()));
  for (double& number : sum) row >> number;
  EXPECT_TRUE(row) << text;
  return sum;
}

// A twisted strip: the supports do not get what its warped elements leave over. With them the rows
// of the sums add up to nothing, to the six digits that are shown.
TEST(AuditText, SumsAddUpWithTheElements) {
  ModelText model = BuildGrid(2, 12, Cells::Quads, [](double s, double t) {
    return Point3{1000.0 * t, 200.0 * (s - 0.5) * std::cos(0.8 * t),
                  200.0 * (s - 0.5) * std::sin(0.8 * t)};
  });
  model.materials = {{SteelE, SteelMu, 0.0}};
  model.thicknesses = {20.0};
  for (int i = 0; i <= 2; ++i) model.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  model.forces = {{GridNode(2, 1, 12), SingleLoad(Fz, -100.0)}};
  const Audited audited = Audit(model);
  const std::string text = AuditText("a", audited.solved, audited.report, {});
  const ForceSum loads = ReadSum(text, "loads"), reactions = ReadSum(text, "reactions"),
                 elements = ReadSum(text, "elements");
  double largest = 0.0;
  for (std::size_t i = 3; i < 6; ++i) {
    const double scale = std::max(std::fabs(loads[i]), std::fabs(reactions[i]));
    // Half a unit of the sixth digit in each of three numbers.
    EXPECT_NEAR(loads[i] + reactions[i] + elements[i], 0.0, 1.5e-5 * scale + 1e-9) << text;
    largest = std::max(largest, std::fabs(elements[i]));
  }
  EXPECT_GT(largest, 1.0);
}

// Beams under line load: hints are counted, one is shown, and JSON has them all.
TEST(AuditText, ShowsTheWorstHintOfAKind) {
  ModelText model = BuildStraight({0.0, 4000.0, 8000.0, 12000.0}, FlatBarSection());
  for (int node = 1; node <= 3; ++node) model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  model.beamLoads = {{0, -0.01, -0.01}, {1, -0.03, -0.03}, {2, -0.02, -0.02}};
  const Audited audited = Audit(model);
  const std::string text = AuditText("a", audited.solved, audited.report, {});
  const std::size_t first = text.find("HINT  K721");
  ASSERT_NE(first, std::string::npos) << text;
  EXPECT_NE(text.find("beam 1 at"), std::string::npos);
  EXPECT_NE(text.find("HINT  K721 and 2 more of this kind: kvx audit --json lists them.\n"
                      "No errors, no warnings, 3 hints.\n"),
            std::string::npos)
      << text;
  const Json json = AuditJson(audited.solved, audited.report);
  EXPECT_EQ(json["hints"], 3);
  EXPECT_EQ(json["findings"].size(), 3U);
}

TEST(AuditText, SaysThatNothingIsLoaded) {
  ModelText model = Cantilever();
  model.forces.clear();
  const Audited audited = Audit(model);
  EXPECT_EQ(VerdictText(audited.report), "no loads");
  const std::string text = AuditText("a", audited.solved, audited.report, {});
  EXPECT_NE(text.find("  displacement  none\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\nVerdict: no loads.\n"), std::string::npos) << text;
  // A support that moves loads the model, though no load stands in the file.
  model.restraints.push_back({2, {0, 0, 1, 0, 0, 0}});
  model.forces = {{2, SingleLoad(Fz, -2e20)}};
  EXPECT_EQ(VerdictText(Audit(model).report), "balanced");
}

// The only support of a cantilever sinks and turns, and all goes with it: there are no forces, and
// what is left of differences of large numbers is no fault.
TEST(AuditText, SaysThatReactionsAreRounding) {
  for (const TestSection& section : {TeeSection(), FlatBarSection(), AngleSection(true)}) {
    ModelText model = BuildStraight({0.0, 2100.0, 4000.0}, section);
    // Turned out of the axes, so that nothing cancels exactly.
    for (auto& node : model.nodes) node = {0.6 * node[0], 0.48 * node[0], 0.64 * node[0]};
    model.forces = {{0, {1.1e20, 0.0, -2.3e20, 0.0, 7e17, 0.0}}};
    const Audited audited = Audit(model);
    EXPECT_TRUE(audited.report.findings.findings.empty())
        << audited.report.findings.findings[0].message;
    EXPECT_GT(audited.report.reactions.imbalance, 1e-6);
    EXPECT_EQ(VerdictText(audited.report), "balanced");
    const std::string text = AuditText("a", audited.solved, audited.report, {});
    EXPECT_NE(
        text.find("  reactions   0   0   0   0   0   0\n"
                  "  balance       there are no loads, and the reactions are rounding alone\n"),
        std::string::npos)
        << text;
    EXPECT_NE(text.find("\nVerdict: balanced (no loads); largest "), std::string::npos) << text;
  }
}

TEST(AuditText, HasNoNumbersWhereThereAreNone) {
  ModelText model = Cantilever();
  model.forces[0].components[Fz] = std::nan("");
  const Audited audited = Audit(model);
  const std::string text = AuditText("a", audited.solved, audited.report, {});
  EXPECT_EQ(text.find("-nan"), std::string::npos) << text;
  EXPECT_NE(text.find("\nVerdict: displacements are not numbers.\n"), std::string::npos) << text;
  const Json json = AuditJson(audited.solved, audited.report);
  EXPECT_TRUE(json["imbalance"].is_null());
  EXPECT_TRUE(json["loads"][2].is_null());
  EXPECT_EQ(json["loads"][0], 0.0);
}

TEST(AuditJson, HasTheKeysOfThePage) {
  ModelText model = Cantilever();
  model.restraints.push_back({2, {0, 1, 0, 0, 0, 0}});
  const Audited audited = Audit(model, 12.0);
  const Json json = AuditJson(audited.solved, audited.report);
  EXPECT_EQ(KeysOf(json),
            (std::vector<std::string>{"loads", "reactions", "imbalance", "residual", "solution",
                                      "supports", "beams", "maxima", "stale", "verdict", "findings",
                                      "errors", "warnings", "hints"}));
  EXPECT_EQ(json["loads"].dump(), "[0.0,0.0,-100.0,0.0,400000.0,0.0]");
  EXPECT_NEAR(json["reactions"][2].get<double>(), 100.0, 1e-7);
  EXPECT_LT(json["imbalance"].get<double>(), 1e-9);
  EXPECT_EQ(KeysOf(json["supports"]), (std::vector<std::string>{"0", "2"}));
  EXPECT_NEAR(json["supports"]["0"][4].get<double>(), -400000.0, 1e-3);
  EXPECT_TRUE(json["supports"]["2"][0].is_null());  // free
  EXPECT_TRUE(json["supports"]["2"][1].is_number());

  ASSERT_EQ(json["beams"].size(), 2U);
  const Json& beam = json["beams"][1];
  EXPECT_EQ(KeysOf(beam), (std::vector<std::string>{"beam", "ends", "stations"}));
  EXPECT_EQ(beam["beam"], 1);
  // Vz = -P all along, My = P (L - x).
  EXPECT_NEAR(beam["ends"][0][2].get<double>(), -100.0, 1e-6);
  EXPECT_NEAR(beam["ends"][0][4].get<double>(), 200000.0, 1e-3);
  EXPECT_NEAR(beam["ends"][1][4].get<double>(), 0.0, 1e-3);
  ASSERT_EQ(beam["stations"].size(), 5U);
  EXPECT_EQ(KeysOf(beam["stations"][1]), (std::vector<std::string>{"distance", "forces"}));
  EXPECT_EQ(beam["stations"][1]["distance"], 500.0);
  EXPECT_NEAR(beam["stations"][1]["forces"][4].get<double>(), 150000.0, 1e-3);

  std::vector<std::string> quantities;
  for (const Json& maximum : json["maxima"]) {
    EXPECT_EQ(KeysOf(maximum), (std::vector<std::string>{"quantity", "value", "table", "row",
                                                         "position", "utilisation"}));
    quantities.push_back(maximum["quantity"]);
  }
  EXPECT_EQ(quantities,
            (std::vector<std::string>{"displacement", "beams", "rotation", "beam_tension",
                                      "beam_compression", "beam_shear", "beam_von_mises"}));
  const Json& tension = json["maxima"][3];
  EXPECT_NEAR(tension["value"].get<double>(), 3.0, 1e-6);  // M / W
  EXPECT_NEAR(tension["utilisation"].get<double>(), 0.25, 1e-6);
  EXPECT_EQ(tension["table"], "NELEM_B");
  EXPECT_EQ(tension["row"], 0);
  EXPECT_EQ(tension["position"].dump(), "[0.0,0.0,0.0]");
  EXPECT_TRUE(json["maxima"][0]["utilisation"].is_null());
  EXPECT_EQ(json["maxima"][0]["table"], "NPOIN");
  EXPECT_EQ(json["maxima"][0]["row"], 2);
  EXPECT_EQ(json["stale"].dump(), "[]");
  EXPECT_EQ(json["verdict"], "balanced");
}

// A folder with the files of a run.
struct RunFolder {
  TempFolder folder;
  std::string prefix = folder.Path().string() + '/';

  explicit RunFolder(const ModelText& model) {
    WriteFile(folder.Path() / "fem_solving.txt", WriteModel(model));
    korvex::Job job;
    job.folder = prefix;
    korvex::ForAllStages([&](const korvex::Stage& stage) { stage.work(job); });
  }
};

AuditReport AuditFiles(const RunFolder& run, const ModelText& model,
                       const DisplacementReading& reading = {}) {
  SolvedModel solved;
  SolveInMemory(WriteModel(model), {}, solved);
  AuditOptions options;
  options.folder = run.prefix;
  options.reading = reading;
  AuditReport report;
  AuditModel(options, solved, report);
  return report;
}

// Frames and plates whose loads are small, with forces.
std::vector<ModelText> ModelsWithForces() {
  std::vector<ModelText> models{Cantilever()};
  for (std::uint32_t seed = 0; models.size() < 4; ++seed) {
    ModelText model = MakeGoodModel(seed);
    if (model.forces.empty() || model.nodes.size() > 150) continue;
    const Verdict verdict = Audit(model).report.verdict;
    if (verdict.share < 0.01 && verdict.rotation.value < 0.05) models.push_back(model);
  }
  return models;
}

// The only finding besides advice and warped quads: hints.
void ExpectOnly(const AuditReport& report, const std::string& code, const std::string& part) {
  for (const Finding& finding : report.findings.findings) {
    EXPECT_TRUE(finding.code == code || finding.severity == Severity::Hint) << finding.message;
  }
  const Finding finding = FindFinding(report, code);
  EXPECT_NE(finding.message.find(part), std::string::npos) << code << ' ' << finding.message;
  EXPECT_EQ(finding.line, 0U);
}

TEST(FileFindings, AreNoneAfterARun) {
  for (const ModelText& model : ModelsWithForces()) {
    const RunFolder run(model);
    const AuditReport report = AuditFiles(run, model);
    EXPECT_EQ(VerdictText(report), "balanced");
    EXPECT_EQ(report.files.size(), 6U);
  }
}

TEST(FileFindings, NameStaleFiles) {
  for (ModelText model : ModelsWithForces()) {
    const RunFolder run(model);
    for (double& component : model.forces[0].components) component *= 1.001;
    const AuditReport report = AuditFiles(run, model);
    ExpectOnly(report, "K711", "Node_Dis.txt (from line ");
    EXPECT_EQ(VerdictText(report), "result files are not those of this model");
    SolvedModel solved;
    SolveInMemory(WriteModel(model), {}, solved);
    const Json stale = AuditJson(solved, report)["stale"];
    ASSERT_GE(stale.size(), 2U);
    EXPECT_EQ(stale[0]["file"], "Node_Dis.txt");
    EXPECT_EQ(stale[0]["fit"], "differs");
    EXPECT_GE(stale[0]["line"], 2);
    // Of the same origin: no finding of its own.
    DisplacementReading reading;
    reading.fit = DisplacementFit::OtherModel;
    reading.reason = "other.";
    EXPECT_EQ(FindFinding(AuditFiles(run, model, reading), "K715").code, "");
  }
}

TEST(FileFindings, NameFilesThatAreNotWholeMissingOrUnreadable) {
  for (const ModelText& model : ModelsWithForces()) {
    const RunFolder run(model);
    const std::string file = run.prefix + korvex::AverageStressFileName;
    const std::string bytes = ReadBytes(file);
    WriteFile(file, bytes.substr(0, bytes.size() / 2));
    ExpectOnly(AuditFiles(run, model), "K712",
               std::string(korvex::AverageStressFileName) + " (ends in line ");
    WriteFile(file, bytes);
    const std::string drawing = run.prefix + korvex::DeformationDrawingName;
    fs::remove(drawing);
    ExpectOnly(AuditFiles(run, model), "K713", korvex::DeformationDrawingName);
    fs::create_directory(drawing);
    ExpectOnly(AuditFiles(run, model), "K714", "cannot be read");
  }
}

TEST(FileFindings, NameDisplacementsThatCannotBeUsed) {
  const ModelText model = Cantilever();
  const RunFolder run(model);
  for (const DisplacementFit fit :
       {DisplacementFit::Unreadable, DisplacementFit::NotOurs, DisplacementFit::OtherVersion,
        DisplacementFit::OtherModel, DisplacementFit::Truncated, DisplacementFit::TooLong}) {
    DisplacementReading reading;
    reading.fit = fit;
    reading.reason = "displacements.bin is bad.";
    const AuditReport report = AuditFiles(run, model, reading);
    ExpectOnly(report, "K715", "displacements.bin is bad. The model was solved in memory instead.");
    EXPECT_EQ(CountFindings(report.findings, Severity::Warning), 1U);
    EXPECT_EQ(VerdictText(report), "balanced, but displacements.bin cannot be used");
  }
}

// The run stops at a beam of a type that does not exist: all stresses of shells are there, those of
// beams are not, and nothing crashes.
TEST(FileFindings, OfAModelWithoutDetailModels) {
  ModelText model = Cantilever();
  const RunFolder run(model);
  model.beams[1].BeamSecType = 3;
  const AuditReport report = AuditFiles(run, model);
  EXPECT_NE(VerdictText(report).find("not"), std::string::npos);
  EXPECT_GE(CountFindings(report.findings, Severity::Error), 1U);
}

// An empty folder: the text says so, and there is nothing to find.
TEST(FileFindings, AreNoneInAnEmptyFolder) {
  const ModelText model = Cantilever();
  SolvedModel solved;
  SolveInMemory(WriteModel(model), {}, solved);
  const TempFolder folder;
  AuditOptions options;
  options.folder = folder.Path().string() + '/';
  AuditReport report;
  AuditModel(options, solved, report);
  EXPECT_TRUE(report.findings.findings.empty());
  EXPECT_NE(AuditText("a", solved, report, {}).find("result files  none in the folder\n"),
            std::string::npos);
}

}  // namespace
}  // namespace kvx::test
