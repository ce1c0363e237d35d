// K601 .. K606: values out of line and units that do not fit, planted and found.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "check/find_outlier.h"
#include "support/planted_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// Values that a table of plates has, all in use; three or more others within a factor of 1.9.
std::vector<double> Plates(double unit) {
  return {8.0 * unit, 10.0 * unit, 12.0 * unit, 15.0 * unit};
}

TEST(FindOutlier, FindsOneOfEachFactor) {
  for (const double factor : {10.0, 25.4, 100.0, 1000.0}) {
    for (const double unit : {1.0, 1e-3}) {
      for (std::size_t k = 0; k < 5; ++k) {
        for (const bool isTooLarge : {true, false}) {
          std::vector<double> values = Plates(unit);
          const double value = isTooLarge ? 10.0 * unit * factor : 10.0 * unit / factor;
          values.insert(values.begin() + static_cast<std::ptrdiff_t>(k), value);
          const Outlier outlier = FindOutlier(values);
          EXPECT_EQ(outlier.factor, factor);
          EXPECT_EQ(outlier.index, k);
          EXPECT_EQ(outlier.isTooLarge, isTooLarge);
        }
      }
    }
  }
}

TEST(FindOutlier, AcceptsTablesOfPlates) {
  EXPECT_EQ(FindOutlier({5.0, 50.0}).factor, 0.0);  // too few to say
  EXPECT_EQ(FindOutlier({5.0, 8.0, 50.0}).factor, 0.0);
  EXPECT_EQ(FindOutlier({5.0, 50.0, 8.0, 80.0}).factor, 0.0);         // nobody is alone
  EXPECT_EQ(FindOutlier({8.0, 10.0, 12.0, 90.0}).factor, 0.0);        // not ten times another
  EXPECT_EQ(FindOutlier({3.0, 6.0, 10.0, 15.0, 100.0}).factor, 0.0);  // too wide a table
  EXPECT_EQ(FindOutlier({5.0, 5.0, 5.0, 5.0}).factor, 0.0);
  EXPECT_EQ(FindOutlier({}).factor, 0.0);
}

// Gives the model five thicknesses, each of them used, of which row 2 is a factor out of line.
bool PlantThickness(double factor, double unit, ModelText& model, Expected& expected) {
  if (model.shells4.size() < 10) return false;
  model.thicknesses = Plates(unit);
  model.thicknesses.insert(model.thicknesses.begin() + 2, 10.0 * unit * factor);
  for (std::size_t k = 0; k < model.shells4.size(); ++k) {
    model.shells4[k].thickness = static_cast<int>(k % 5);
  }
  for (auto& shell : model.shells3) shell.thickness = 0;
  expected = {"K601", "NTK", 2};
  return true;
}

double ExtentOf(const ModelText& model) {
  const auto [low, high] = std::minmax_element(model.nodes.begin(), model.nodes.end());
  return std::hypot((*high)[0] - (*low)[0], (*high)[1] - (*low)[1], (*high)[2] - (*low)[2]);
}

TEST(CheckOutliers, NamesAThicknessOutOfLine) {
  for (const double factor : {25.4, 1.0 / 25.4, 100.0, 0.01, 1000.0, 0.001}) {
    SCOPED_TRACE(factor);
    ExpectPlanted([&](ModelText& model, Dice&, Expected& expected) {
      return PlantThickness(factor, 1e-4 * ExtentOf(model), model, expected);
    });
  }
}

// A factor of 10 is a usual step, unless the plate is also thick or thin beside its elements.
TEST(CheckOutliers, ComparesAFactorOfTenWithTheElements) {
  ModelText model;
  Expected expected;
  model.materials = {{206000.0, 0.3, 0.0}};
  for (int k = 0; k <= 20; ++k) {
    model.nodes.push_back({100.0 * k, 0, 0});
    model.nodes.push_back({100.0 * k, 100.0, 0});
  }
  for (int k = 0; k < 20; ++k) {
    model.shells4.push_back({{2 * k, 2 * k + 2, 2 * k + 3, 2 * k + 1}, 0, 0});
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{41, korvex::test::SingleLoad(2, 10.0)}};
  const auto names = [&](double factor, double unit) {
    PlantThickness(factor, unit, model, expected);
    return Check(model).findings.counts.count("K601") > 0;
  };
  EXPECT_TRUE(names(10.0, 1.0));   // 100 mm thick, elements of 100 mm
  EXPECT_FALSE(names(10.0, 0.4));  // 40 mm thick
  EXPECT_TRUE(names(0.1, 0.9));    // 0.9 mm
  EXPECT_FALSE(names(0.1, 2.0));   // 2 mm
}

// One thickness alone can still be compared with its elements: m where mm are meant.
TEST(CheckOutliers, NamesAThicknessBeyondItsElements) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.shells4.empty() || model.thicknesses.size() > 1) return false;
    // Elements have between 1/2 and 1/200 of the extent.
    model.thicknesses[0] = ExtentOf(model) * (RollYes(dice) ? Roll(dice, 10.0, 100.0) : 1e-7);
    expected = {"K601", "NTK", 0};
    return true;
  });
}

// All four sections of the two tables get sizes near each other; one size of one row is wrong.
TEST(CheckOutliers, NamesASectionOutOfLine) {
  for (const double factor : {100.0, 0.01, 1000.0, 0.001}) {
    SCOPED_TRACE(factor);
    ExpectPlanted([&](ModelText& model, Dice& dice, Expected& expected) {
      if (model.beams.size() < 8) return false;
      const double unit = 1e-3 * ExtentOf(model);
      model.tSections = {{10 * unit, 0.8 * unit, 6 * unit, unit},
                         {12 * unit, 0.9 * unit, 7 * unit, 1.1 * unit},
                         {15 * unit, unit, 8 * unit, 1.2 * unit},
                         {18 * unit, 1.1 * unit, 9 * unit, 1.4 * unit}};
      for (std::size_t k = 0; k < model.beams.size(); ++k) {
        model.beams[k].BeamSecType = korvex::BeamSecTypeT;
        model.beams[k].BeamSecIndex = static_cast<int>(k % 4);
      }
      int row = 0;
      auto& section = AnyRow(model.tSections, dice, row);
      // Not a web thicker than its flange is wide: that is named as such.
      const auto k = static_cast<std::size_t>(factor > 1.0 ? 2 * RollInteger(dice, 0, 1)
                                                           : RollInteger(dice, 0, 1));
      section[k] *= factor;
      expected = {"K602", "NTBS", row};
      return true;
    });
  }
}

// The sizes of any section that beams use, as pointers; empty where the model has no beams.
struct AnySection {
  Expected expected;
  std::vector<double*> sizes;  // those above 0
};

AnySection RollSection(ModelText& model, Dice& dice) {
  if (model.beams.empty()) return {};
  int beam = 0;
  const ModelText::Beam& user = AnyRow(model.beams, dice, beam);
  const auto at = static_cast<std::size_t>(user.BeamSecIndex);
  AnySection any;
  const auto add = [&](auto& section, const char* table) {
    any.expected = {"K602", table, user.BeamSecIndex};
    for (double& size : section) {
      if (size > 0.0) any.sizes.push_back(&size);
    }
  };
  if (user.BeamSecType == korvex::BeamSecTypeT) add(model.tSections[at], "NTBS");
  if (user.BeamSecType == korvex::BeamSecTypeL) add(model.lSections[at], "NLBS");
  if (user.BeamSecType == korvex::BeamSecTypeC) add(model.cSections[at], "NCBS");
  return any;
}

// Tables of two rows, so that no row is alone in its table. Sections have 1/50 to 1/20 of the
// size of the part, beams at least 1/10.
TEST(CheckOutliers, NamesASectionInMetres) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    const AnySection any = RollSection(model, dice);
    if (any.sizes.empty()) return false;
    for (double* size : any.sizes) *size *= 0.001;
    expected = any.expected;
    return true;
  });
}

// Web, flange or wall; their shares in the good models are 1/8 to 1/20.
TEST(CheckOutliers, NamesOneThicknessOfASectionInMetres) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    const AnySection any = RollSection(model, dice);
    if (any.sizes.empty()) return false;
    const int pairs = static_cast<int>(any.sizes.size()) / 2;
    *any.sizes[static_cast<std::size_t>(2 * RollInteger(dice, 1, pairs) - 1)] *= 0.001;
    expected = any.expected;
    return true;
  });
}

TEST(CheckOutliers, NamesEachSectionInMetresOnce) {
  int models = 0;
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    std::set<std::pair<int, int>> used;
    for (const auto& beam : model.beams) used.insert({beam.BeamSecType, beam.BeamSecIndex});
    if (used.empty()) continue;
    ++models;
    for (auto& section : model.tSections) {
      for (double& size : section) size *= 0.001;
    }
    for (auto& section : model.lSections) {
      for (double& size : section) size *= 0.001;
    }
    for (auto& section : model.cSections) {
      for (double& size : section) size *= 0.001;
    }
    const CheckReport report = Check(model);
    EXPECT_EQ(report.findings.counts.at("K602"), used.size()) << ListFindings(report);
    // Small sections make many shells: whether those fit depends on the machine's free memory.
    const auto tooLarge = report.findings.counts.find("K504");
    const std::size_t ofMemory = tooLarge == report.findings.counts.end() ? 0 : tooLarge->second;
    EXPECT_EQ(CountFindings(report.findings, Severity::Error) +
                  CountFindings(report.findings, Severity::Warning),
              used.size() + ofMemory)
        << ListFindings(report);
  }
  EXPECT_GE(models, 50);
}

// Two beams along x, 1000 and 1500 long, of one section.
ModelText MakeTwoBeams() {
  ModelText model;
  model.materials = {{206000.0, 0.3, 0.0}};
  model.nodes = {{0, 0, 0}, {1000, 0, 0}, {2500, 0, 0}};
  model.beams.resize(2);
  model.beams[1].node1 = 1;
  model.beams[1].node2 = 2;
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{2, korvex::test::SingleLoad(0, 1000.0)}};
  return model;
}

// 1/500 of the shorter beam is 2; 1/1000 of the height 100 is 0.1, of the width 50 it is 0.05.
TEST(CheckOutliers, HasItsBoundsForSlimSections) {
  const auto isNamed = [](const std::array<double, 4>& section) {
    ModelText model = MakeTwoBeams();
    model.tSections = {section};
    return Check(model).findings.counts.count("K602") > 0;
  };
  EXPECT_FALSE(isNamed({2.02, 0.2, 1.0, 0.2}));
  EXPECT_TRUE(isNamed({1.98, 0.2, 1.0, 0.2}));
  EXPECT_FALSE(isNamed({100.0, 0.102, 50.0, 0.052}));
  EXPECT_TRUE(isNamed({100.0, 0.098, 50.0, 0.052}));
  EXPECT_TRUE(isNamed({100.0, 0.102, 50.0, 0.048}));
  EXPECT_FALSE(isNamed({100.0, 0.102, 0.0, 0.0}));
  const auto isTubeNamed = [](const std::array<double, 2>& section) {
    ModelText model = MakeTwoBeams();
    model.cSections = {section};
    for (auto& beam : model.beams) beam.BeamSecType = korvex::BeamSecTypeC;
    return Check(model).findings.counts.count("K602") > 0;
  };
  EXPECT_FALSE(isTubeNamed({1.01, 0.1}));  // the diameter counts
  EXPECT_TRUE(isTubeNamed({0.99, 0.1}));
  EXPECT_FALSE(isTubeNamed({100.0, 0.102}));
  EXPECT_TRUE(isTubeNamed({100.0, 0.098}));
}

// Up and down; sections have at most 1/20 of the part's size, and parts at least 1/5 of the extent.
TEST(CheckOffsets, NamesAnOffsetBeyondItsSection) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.empty()) return false;
    int row = 0;
    auto& beam = AnyRow(model.beams, dice, row);
    beam.BeamSecOz = ExtentOf(model) * Roll(dice, 1.0, 10.0) * (RollYes(dice) ? 1.0 : -1.0);
    expected = {"K609", "NELEM_B", row};
    return true;
  });
}

// Ten times Hw + Tf = 60 of a T section, 50 of a flat bar, 2 R + T = 55 of a tube.
TEST(CheckOffsets, HasItsBound) {
  ModelText model = MakeTwoBeams();
  model.cSections = {{25.0, 5.0}};
  const auto isNamed = [&](int type, double offset) {
    model.beams[1].BeamSecType = type;
    model.beams[1].BeamSecOz = offset;
    return Check(model).findings.counts.count("K609") > 0;
  };
  model.tSections = {{50.0, 5.0, 30.0, 10.0}};
  EXPECT_FALSE(isNamed(korvex::BeamSecTypeT, 599.0));
  EXPECT_TRUE(isNamed(korvex::BeamSecTypeT, 601.0));
  EXPECT_TRUE(isNamed(korvex::BeamSecTypeT, -601.0));
  EXPECT_FALSE(isNamed(korvex::BeamSecTypeC, -549.0));
  EXPECT_TRUE(isNamed(korvex::BeamSecTypeC, -551.0));
  model.tSections = {{50.0, 5.0, 0.0, 0.0}};
  EXPECT_FALSE(isNamed(korvex::BeamSecTypeT, 499.0));
  EXPECT_TRUE(isNamed(korvex::BeamSecTypeT, 501.0));
}

TEST(CheckFarNodes, NamesANodeFarAway) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    int row = 0;
    const double extent = ExtentOf(model);
    Point& node = AnyRow(model.nodes, dice, row);
    const double turn = Roll(dice, 0.0, 6.0);
    const double distance = extent * std::pow(10.0, Roll(dice, 1.6, 4.0));
    node[0] += distance * std::cos(turn);
    node[1] += distance * std::sin(turn);
    expected = {"K603", "NPOIN", row, row};
    return true;
  });
}

// A mast of beams on a plate, ten times as high as the plate is long, and an anchor of two cables.
TEST(CheckFarNodes, AcceptsLongBeams) {
  ModelText model;
  model.materials = {{206000.0, 0.3, 0.0}};
  model.thicknesses = {10.0};
  model.cSections = {{50.0, 5.0}};
  model.nodes = {{0, 0, 0},       {1000, 0, 0},    {1000, 1000, 0},  {0, 1000, 0},   {2000, 0, 0},
                 {2000, 1000, 0}, {1000, 0, 9000}, {1000, 0, 10000}, {20000, 500, 0}};
  model.shells4 = {{{0, 1, 2, 3}, 0, 0}, {{1, 4, 5, 2}, 0, 0}};
  for (const auto& [a, b] : {std::pair<int, int>{1, 6}, {6, 7}, {7, 8}, {6, 8}}) {
    ModelText::Beam beam;
    beam.node1 = a;
    beam.node2 = b;
    beam.orientation = {0.0, 1.0, 0.0};
    beam.BeamSecType = korvex::BeamSecTypeC;
    model.beams.push_back(beam);
  }
  for (const int node : {0, 3, 8}) model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  model.forces = {{7, korvex::test::SingleLoad(0, 1000.0)}};
  ExpectNone(Check(model));
}

void UseFirstMaterial(ModelText& model) {
  for (auto& shell : model.shells4) shell.material = 0;
  for (auto& shell : model.shells3) shell.material = 0;
  for (auto& beam : model.beams) beam.material = 0;
}

// Good models have steel as their first material: 206000 with mm, 2.06e11 or 2.06e8 with m.
TEST(CheckUnits, NamesPascalsWithMillimetres) {
  ExpectPlanted(
      [](ModelText& model, Dice&, Expected& expected) {
        if (model.materials[0][0] != 2.06e5 || model.shells4.empty()) return false;
        UseFirstMaterial(model);
        model.materials[0][0] = 2.06e11;
        expected = {"K604", "NMT", 0};
        return true;
      },
      20);
}

TEST(CheckUnits, NamesMegapascalsWithMetres) {
  ExpectPlanted(
      [](ModelText& model, Dice&, Expected& expected) {
        if (model.materials[0][0] == 2.06e5 || model.shells4.empty()) return false;
        if (*std::max_element(model.thicknesses.begin(), model.thicknesses.end()) > 0.1)
          return false;
        UseFirstMaterial(model);
        model.materials[0][0] = 206000.0;
        expected = {"K604", "NMT", 0};
        return true;
      },
      20);
}

TEST(CheckUnits, HintsAtADensity) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    UseFirstMaterial(model);
    model.materials[0][2] *= RollYes(dice) ? 1000.0 : 1e-9;
    expected = {"K606", "NMT", 0};
    return true;
  });
}

// E of another system than the density: in kN where N are meant.
TEST(CheckUnits, NamesAModulusOfAnotherSystemThanItsDensity) {
  ExpectPlanted([](ModelText& model, Dice&, Expected& expected) {
    const double E = model.materials[0][0];
    if (E == 2.06e8) return false;  // 2.06e5 and m belong to no density
    UseFirstMaterial(model);
    model.materials[0][0] = E * 0.001;
    expected = {"K606", "NMT", 0};
    return true;
  });
}

const Finding& FirstOf(const CheckReport& report, const char* code) {
  const auto& all = report.findings.findings;
  return *std::find_if(all.begin(), all.end(),
                       [&](const Finding& finding) { return finding.code == code; });
}

// The engineer's slip: 206 for 206000. Steel in kN and mm has 206 and 7.85e-6, in N and mm 206000
// and 7.85e-9.
TEST(CheckUnits, TellsTheValuesThatFitADensity) {
  ModelText model = MakeTwoBeams();
  model.tSections = {{50.0, 5.0, 30.0, 5.0}};
  model.materials = {{206.0, 0.3, 7.85e-9}};
  const CheckReport report = Check(model);
  ExpectOnly(report, {"K606", "NMT", 0});
  const Finding& finding = FirstOf(report, "K606");
  EXPECT_EQ(finding.severity, Severity::Warning);
  EXPECT_EQ(finding.remedy,
            "If the model is in N and mm, write E = 206000; if it is in kN and mm, write Density = "
            "7.85e-06.");
  model.materials = {{206000.0, 0.3, 1e-3}};  // that of no metal
  EXPECT_EQ(FirstOf(Check(model), "K606").severity, Severity::Hint);
  model.materials = {{200.0, 0.45, 9.2e-10}};  // polyethylene, N and mm
  EXPECT_EQ(FirstOf(Check(model), "K606").severity, Severity::Hint);
}

// Another material is the first one in a unit of force of 1000 times the size, for fewer elements.
TEST(CheckUnits, NamesAMetalInAnotherSystem) {
  for (const bool hasDensity : {true, false}) {
    ExpectPlanted([&](ModelText& model, Dice&, Expected& expected) {
      if (model.materials[0][0] == 2.06e8 || model.beams.size() < 5) return false;
      UseFirstMaterial(model);
      model.materials.resize(1);
      model.materials.push_back(model.materials[0]);
      if (hasDensity) model.materials[1][0] *= 0.34;  // aluminium beside steel: not the same metal
      model.materials[1][0] *= 0.001;
      for (auto& material : model.materials) material[2] *= hasDensity ? 1.0 : 0.0;
      if (hasDensity) model.materials[1][2] *= model.materials[0][0] == 2.06e5 ? 1000.0 : 0.001;
      model.beams[0].material = model.beams[1].material = 1;
      expected = {"K604", "NMT", 1};
      return true;
    });
  }
}

// Rigid arms, whatever their E and density, and materials as soft as a metal in other units.
TEST(CheckUnits, AcceptsRigidArmsAndSoftMaterials) {
  ModelText model = MakeTwoBeams();
  model.tSections = {{50.0, 5.0, 30.0, 5.0}};
  model.beams[0].material = 1;
  for (const std::array<double, 3>& other : {std::array<double, 3>{2.06e8, 0.3, 7.85e-9},
                                             {2.06e8, 0.3, 0.0},
                                             {2.06e11, 0.3, 7.85e-9},
                                             {2.06e11, 0.3, 0.0},
                                             {130.0, 0.3, 0.0},
                                             {130.0, 0.3, 1e-10},
                                             {200.0, 0.45, 9.2e-10}}) {
    SCOPED_TRACE(other[0]);
    model.materials = {{206000.0, 0.3, 7.85e-9}, other};
    ExpectNone(Check(model));
  }
  model.materials = {{206000.0, 0.3, 0.0}, {206.0, 0.3, 0.0}};
  model.nodes.push_back({4000, 0, 0});
  model.beams.push_back(model.beams[1]);  // 206000 for most beams: no rigid arm
  model.beams[2].node1 = 2;
  model.beams[2].node2 = 3;
  ExpectOnly(Check(model), {"K604", "NMT", 1});
}

// One beam of 1e-6 MPa among metals.
TEST(CheckUnits, NamesAVanishingModulus) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.size() < 3) return false;
    const double unit = model.materials[0][0] / 206000.0;
    model.materials.push_back({1e-6 * unit, 0.3, 0.0});
    int row = 0;
    AnyRow(model.beams, dice, row).material = static_cast<int>(model.materials.size()) - 1;
    expected = {"K608", "NMT", static_cast<int>(model.materials.size()) - 1};
    return true;
  });
}

// 1e-8 of 206000 is 0.00206. The soft one has one beam of two; of equally many elements the softer
// E is the usual one, so that a third beam tells.
TEST(CheckUnits, HasItsBoundForSoftMaterials) {
  ModelText model = MakeTwoBeams();
  model.tSections = {{50.0, 5.0, 30.0, 5.0}};
  model.nodes.push_back({4000, 0, 0});
  model.beams.push_back(model.beams[1]);
  model.beams[2].node1 = 2;
  model.beams[2].node2 = 3;
  model.beams[2].material = 1;
  const auto isNamed = [&](double usual, double other) {
    model.materials = {{usual, 0.3, 0.0}, {other, 0.3, 0.0}};
    return Check(model).findings.counts.count("K608") > 0;
  };
  EXPECT_TRUE(isNamed(206000.0, 0.00205));
  EXPECT_FALSE(isNamed(206000.0, 0.00207));
  EXPECT_FALSE(isNamed(206000.0, 2e14));  // a rigid arm
  EXPECT_FALSE(isNamed(2e14, 206000.0));  // more rigid arms than beams
  EXPECT_FALSE(isNamed(11000.0, 1e14));   // a frame of wood
}

TEST(CheckSupportStiffness, NamesElementsStifferThanTheSupports) {
  ExpectPlanted(
      [](ModelText& model, Dice&, Expected& expected) {
        if (model.shells3.empty() || !model.shells4.empty() || !model.beams.empty()) return false;
        UseFirstMaterial(model);
        model.materials[0][0] = 1e24;
        expected = {"K605", "NELEM_S_3ND"};
        return true;
      },
      5);
}

// A tube of R = 50, T = 5, A = 2 pi R T = 1571, between nodes 100 apart: E A / L = 15.71 E. It is
// above all rotational stiffnesses: I = pi R^3 T = 1.96e6, 4 E I / L = 78540 E. So 1e17 is reached
// at E = 1.27e12, and 1e20 at 1.27e15.
TEST(CheckSupportStiffness, HasItsBounds) {
  ModelText model;
  model.cSections = {{50.0, 5.0}};
  model.nodes = {{0, 0, 0}, {100, 0, 0}, {200, 0, 0}};
  ModelText::Beam beam;
  beam.BeamSecType = korvex::BeamSecTypeC;
  model.beams = {beam, beam};
  model.beams[1].node1 = 1;
  model.beams[1].node2 = 2;
  model.beams[1].material = 1;
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{2, korvex::test::SingleLoad(0, 1000.0)}};
  const auto check = [&](double held, double free) {
    model.materials = {{held, 0.3, 0.0}, {free, 0.3, 0.0}};
    return Check(model);
  };
  ExpectNone(check(1.2e12, 206000.0));
  CheckReport report = check(1.35e12, 206000.0);
  ExpectOnly(report, {"K605", "NELEM_B", 0});
  EXPECT_EQ(report.findings.findings.front().severity, Severity::Warning);
  ExpectNone(check(206000.0, 1.2e15));  // away from the support only 1e20 counts
  report = check(206000.0, 1.35e15);
  ExpectOnly(report, {"K605", "NELEM_B", 1});
  EXPECT_EQ(report.findings.findings.front().severity, Severity::Error);
}

// A grillage of 5 x 5 nodes over 1000 x 1000: one coordinate of a corner with a digit too many, or
// in inches; and one node far above the others.
TEST(CheckFarNodes, NamesADigitTooManyInAGrillage) {
  for (const double factor : {10.0, 25.4, 100.0, 1000.0}) {
    korvex::test::ModelText model;
    model.materials = {{206000.0, 0.3, 7.85e-9}};
    model.tSections = {{100.0, 10.0, 60.0, 10.0}};
    for (int k = 0; k < 25; ++k) model.nodes.push_back({250.0 * (k % 5), 250.0 * (k / 5), 0.0});
    for (int k = 0; k < 25; ++k) {
      korvex::test::ModelText::Beam beam;
      beam.node1 = k;
      for (const int next : {k % 5 < 4 ? k + 1 : -1, k < 20 ? k + 5 : -1}) {
        beam.node2 = next;
        if (next >= 0) model.beams.push_back(beam);
      }
    }
    model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
    model.forces = {{12, {0, 0, -1.0, 0, 0, 0}}};
    ExpectNone(Check(model));
    model.nodes[24][1] *= factor;
    ExpectOnly(Check(model), {"K603", "NPOIN", -1, 24, 0});
    model.nodes[24][1] = 1000.0;
    model.nodes[12][2] = 500.0 * factor;
    ExpectOnly(Check(model), {"K603", "NPOIN", -1, 12, 0});
  }
}

}  // namespace
}  // namespace kvx::test
