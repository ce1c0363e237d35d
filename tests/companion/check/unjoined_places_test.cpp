// K201, K202, K204, K205: places where elements touch but are not connected. Mistakes are planted
// into random good models; what is usual and right is named nowhere.
#include "check/unjoined_places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/expect_findings.h"
#include "support/mesh_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using Numbers = std::vector<std::int32_t>;

std::vector<Finding> FindingsOf(const CheckReport& report, const std::string& code) {
  std::vector<Finding> found;
  for (const Finding& finding : report.findings.findings) {
    if (finding.code == code) found.push_back(finding);
  }
  return found;
}

// The one finding of this code.
Finding TheOnly(const CheckReport& report, const std::string& code) {
  const std::vector<Finding> found = FindingsOf(report, code);
  EXPECT_EQ(found.size(), 1U) << ListFindings(report);
  return found.empty() ? Finding{} : found[0];
}

// The one finding of this code, no other one besides, and it names all these nodes.
void ExpectOnlyWith(const CheckReport& report, const std::string& code,
                    const std::vector<int>& nodes) {
  for (const int node : nodes) ExpectOnly(report, {code, "NPOIN", node, node, 0});
  TheOnly(report, code);
}

// For models made by hand, without supports and loads: the findings of the mesh.
const std::string Mesh = "2";

void ExpectOnlyInMesh(const CheckReport& report, const std::string& code,
                      const std::vector<int>& nodes) {
  for (const int node : nodes) ExpectOnly(report, {code, "NPOIN", node, node, 0}, Mesh);
  TheOnly(report, code);
}

TEST(UnjoinedPlaces, NamesCracksAsOneFinding) {
  int seams = 0, pairs = 0;
  for (std::uint32_t seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed + 1000);
    const std::vector<int> planted = PlantCrack(RollYes(dice) ? 1 : 40, dice, model);
    if (planted.empty()) continue;
    const CheckReport report = Check(model);
    ExpectOnlyWith(report, planted.size() == 1 ? "K202" : "K201", planted);
    const std::string code = planted.size() == 1 ? "K202" : "K201";
    // Both nodes of each pair.
    EXPECT_EQ(TheOnly(report, code).nodes.size(), 2 * planted.size());
    (planted.size() == 1 ? pairs : seams) += 1;
  }
  EXPECT_GE(seams, 50);
  EXPECT_GE(pairs, 50);
}

// Splits an edge of a shell into `fewest` to `most` pieces in many models; the code names the
// nodes.
void ExpectSplitEdgesNamed(int fewest, int most, const char* code) {
  int count = 0;
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed + 1000);
    const std::vector<int> planted = PlantSplitEdge(RollInteger(dice, fewest, most), dice, model);
    if (planted.empty()) continue;
    ExpectOnlyWith(Check(model), code, planted);
    ++count;
  }
  EXPECT_GE(count, 100);
}

TEST(UnjoinedPlaces, NamesANodeOnTheEdgeOfAShell) { ExpectSplitEdgesNamed(2, 2, "K205"); }

TEST(UnjoinedPlaces, NamesAFreeEdgeOnAnotherShell) { ExpectSplitEdgesNamed(3, 4, "K204"); }

TEST(UnjoinedPlaces, NamesABeamThatEndsOnAnotherBeam) {
  int count = 0;
  for (std::uint32_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed + 1000);
    const int planted = PlantBeamOnBeam(dice, model);
    if (planted < 0) continue;
    ExpectOnlyWith(Check(model), "K205", {planted});
    ++count;
  }
  EXPECT_GE(count, 60);
}

// A plate in the plane z = height of n1 x n2 squares of the given size, with its corner at (x, y),
// clamped at its first node.
std::vector<int> AddPlate(int n1, int n2, double size, std::array<double, 3> corner,
                          ModelText& model) {
  const int first = static_cast<int>(model.nodes.size());
  std::vector<int> nodes;
  for (int j = 0; j <= n2; ++j) {
    for (int i = 0; i <= n1; ++i) {
      nodes.push_back(static_cast<int>(model.nodes.size()));
      model.nodes.push_back({corner[0] + size * i, corner[1] + size * j, corner[2]});
    }
  }
  for (int j = 0; j < n2; ++j) {
    for (int i = 0; i < n1; ++i) {
      const int a = first + j * (n1 + 1) + i;
      model.shells4.push_back({{a, a + 1, a + n1 + 2, a + n1 + 1}, 0, 0});
    }
  }
  model.restraints.push_back({first, {1, 1, 1, 1, 1, 1}});
  return nodes;
}

ModelText MakeEmptyModel() {
  ModelText model;
  model.materials = {{206000.0, 0.3, 7.85e-9}};
  model.thicknesses = {10.0};
  model.cSections = {{50.0, 5.0}};
  return model;
}

int AddBeam(int node1, int node2, ModelText& model) {
  ModelText::Beam beam;
  beam.node1 = node1;
  beam.node2 = node2;
  beam.orientation = {0.3, 0.5, 0.7};
  beam.BeamSecType = korvex::BeamSecTypeC;
  model.beams.push_back(beam);
  return static_cast<int>(model.beams.size()) - 1;
}

int AddNode(double x, double y, double z, ModelText& model) {
  model.nodes.push_back({x, y, z});
  return static_cast<int>(model.nodes.size()) - 1;
}

TEST(UnjoinedPlaces, SaysWhereASeamIs) {
  ModelText model = MakeEmptyModel();
  // 32 squares of 300 along x; two plates that meet at y = 3000.
  AddPlate(32, 10, 300.0, {0.0, 0.0, 1200.0}, model);
  AddPlate(32, 10, 300.0, {0.0, 3000.0, 1200.0}, model);
  model.forces.push_back({3, {0.0, 0.0, 1.0, 0.0, 0.0, 0.0}});
  const Finding seam = TheOnly(Check(model), "K201");
  EXPECT_EQ(seam.message,
            "33 pairs of coincident nodes along y = 3000, z = 1200, x = 0 .. 9600: an open seam? "
            "The elements on its two sides are not connected there.");
  EXPECT_EQ(seam.nodes.size(), 66U);
}

TEST(UnjoinedPlaces, TellsAPatchThatStandsTwice) {
  ModelText model = MakeEmptyModel();
  AddPlate(4, 4, 100.0, {0.0, 0.0, 0.0}, model);
  AddPlate(4, 4, 100.0, {0.0, 0.0, 0.0}, model);
  const Finding patch = TheOnly(Check(model), "K201");
  EXPECT_EQ(patch.message.rfind("25 pairs of coincident nodes over a patch within x = 0 .. 400, "
                                "y = 0 .. 400, z = 0: does it stand twice?",
                                0),
            0U)
      << patch.message;
}

// Two tubes end to end, each closed: the seam returns to its beginning.
TEST(UnjoinedPlaces, TellsAClosedSeam) {
  ModelText model = MakeEmptyModel();
  constexpr int Sides = 12;
  for (const double z : {0.0, 100.0}) {
    const int first = static_cast<int>(model.nodes.size());
    for (const double height : {z, z + 100.0}) {
      for (int k = 0; k < Sides; ++k) {
        const double angle = 2.0 * std::acos(-1.0) * k / Sides;
        AddNode(200.0 * std::cos(angle), 200.0 * std::sin(angle), height, model);
      }
    }
    for (int k = 0; k < Sides; ++k) {
      const int a = first + k, b = first + (k + 1) % Sides;
      model.shells4.push_back({{a, b, b + Sides, a + Sides}, 0, 0});
    }
    model.restraints.push_back({first, {1, 1, 1, 1, 1, 1}});
  }
  const Finding seam = TheOnly(Check(model), "K201");
  EXPECT_NE(seam.message.find("12 pairs of coincident nodes along a closed curve within"),
            std::string::npos)
      << seam.message;
}

// A crack whose sides are divided differently: 6 edges against 4. Every third node of the one side
// meets every second one of the other: 3 pairs with the ends, 4 + 2 nodes that hang.
TEST(UnjoinedPlaces, NamesACrackWithDifferentDivisionsOnce) {
  ModelText model = MakeEmptyModel();
  AddPlate(6, 2, 200.0, {0.0, 0.0, 0.0}, model);
  AddPlate(4, 2, 300.0, {0.0, 400.0, 0.0}, model);
  const CheckReport report = Check(model);
  const Finding crack = TheOnly(report, "K204");
  EXPECT_EQ(crack.nodes.size(), 12U);
  EXPECT_NE(crack.message.find("along y = 400, z = 0, x = 0 .. 1200"), std::string::npos)
      << crack.message;
  ExpectOnly(report, {"K204", "NPOIN", -1, 14, 0}, Mesh);
}

// With twice as many edges, all nodes of the coarse side are pairs: a seam, of which the nodes
// between are a part.
TEST(UnjoinedPlaces, NamesASeamWithDoubleDivisionOnce) {
  ModelText model = MakeEmptyModel();
  AddPlate(8, 2, 100.0, {0.0, 0.0, 0.0}, model);
  AddPlate(4, 2, 200.0, {0.0, 200.0, 0.0}, model);
  const CheckReport report = Check(model);
  ExpectOnly(report, {"K201", "NPOIN", -1, 19, 0}, Mesh);
  const Finding seam = TheOnly(report, "K201");
  EXPECT_EQ(seam.nodes.size(), 14U);
  EXPECT_NE(seam.message.find("5 pairs"), std::string::npos) << seam.message;
  EXPECT_NE(seam.message.find("4 more nodes"), std::string::npos) << seam.message;
}

// A slit between two nodes that both sides have, (0, 100) and (600, 100): below it two edges, above
// it edges between these places. The nodes of both sides are one finding.
ModelText MakeSlit(const std::vector<double>& above) {
  ModelText model = MakeEmptyModel();
  for (const double y : {0.0, 100.0}) {
    for (const double x : {0.0, 300.0, 600.0}) AddNode(x, y, 0.0, model);
  }
  model.shells4 = {{{0, 1, 4, 3}, 0, 0}, {{1, 2, 5, 4}, 0, 0}};
  std::vector<int> lower{3}, upper;
  for (const double x : above) lower.push_back(AddNode(x, 100.0, 0.0, model));
  lower.push_back(5);
  for (const int node : lower) {
    upper.push_back(AddNode(model.nodes[static_cast<std::size_t>(node)][0], 200.0, 0.0, model));
  }
  for (std::size_t k = 0; k + 1 < lower.size(); ++k) {
    model.shells4.push_back({{lower[k], lower[k + 1], upper[k + 1], upper[k]}, 0, 0});
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{2, {0.0, 0.0, 1.0, 0.0, 0.0, 0.0}}};
  return model;
}

TEST(UnjoinedPlaces, NamesTheNodesOfBothSidesOfASlitOnce) {
  ExpectOnlyInMesh(Check(MakeSlit({200.0, 400.0})), "K204", {4, 6, 7});
  // One of three nodes above lies where the one below is.
  ExpectOnlyInMesh(Check(MakeSlit({150.0, 300.0, 450.0})), "K204", {4, 6, 7, 8});
  // As many pairs as other nodes: a seam.
  ExpectOnlyInMesh(Check(MakeSlit({300.0, 450.0})), "K201", {4, 6, 7});
}

// A web stands on a deck between its nodes.
TEST(UnjoinedPlaces, NamesAPlateThatStandsBetweenTheNodesOfAnother) {
  ModelText model = MakeEmptyModel();
  AddPlate(6, 6, 100.0, {0.0, 0.0, 0.0}, model);
  const int first = static_cast<int>(model.nodes.size());
  for (int j = 0; j < 2; ++j) {
    for (int i = 0; i < 4; ++i) AddNode(130.0 + 90.0 * i, 250.0, 80.0 * j, model);
  }
  for (int i = 0; i < 3; ++i) {
    model.shells4.push_back({{first + i, first + i + 1, first + i + 5, first + i + 4}, 0, 0});
  }
  model.restraints.push_back({first + 5, {1, 1, 1, 1, 1, 1}});
  const CheckReport report = Check(model);
  ExpectOnlyInMesh(report, "K204", {first, first + 1, first + 2, first + 3});
  const std::string message = TheOnly(report, "K204").message;
  EXPECT_EQ(message.rfind("3 free shell edges along y = 250, z = 0, x = 130 .. 400: they lie", 0),
            0U)
      << message;
}

// A plate that goes through another one between its nodes has no free edge there.
TEST(UnjoinedPlaces, TellsAPlateThatGoesThroughAnother) {
  ModelText model = MakeEmptyModel();
  AddPlate(6, 6, 100.0, {0.0, 0.0, 0.0}, model);
  const int first = static_cast<int>(model.nodes.size());
  for (int j = -1; j < 2; ++j) {
    for (int i = 0; i < 2; ++i) AddNode(130.0 + 90.0 * i, 250.0, 80.0 * j, model);
  }
  for (const int a : {first, first + 2}) model.shells4.push_back({{a, a + 1, a + 3, a + 2}, 0, 0});
  model.restraints.push_back({first, {1, 1, 1, 1, 1, 1}});
  ExpectOnlyInMesh(Check(model), "K205", {first + 2, first + 3});
}

// A column on a plate: on an edge, inside a square, at a node (not joined).
TEST(UnjoinedPlaces, NamesAColumnOnAPlate) {
  const struct {
    double x, y;
    const char *code, *words;
  } Cases[] = {{150.0, 100.0, "K205", "on the edge between nodes 6 and 5 of four-node shell 1"},
               {130.0, 160.0, "K205", "lies inside four-node shell 4"},
               {200.0, 200.0, "K202", "nodes 10 and 16 at (200, 200, 0)"}};
  for (const auto& at : Cases) {
    ModelText model = MakeEmptyModel();
    AddPlate(3, 3, 100.0, {0.0, 0.0, 0.0}, model);
    const int head = AddNode(at.x, at.y, 0.0, model), foot = AddNode(at.x, at.y, -300.0, model);
    AddBeam(foot, head, model);
    model.restraints.push_back({foot, {1, 1, 1, 1, 1, 1}});
    const CheckReport report = Check(model);
    ExpectOnlyInMesh(report, at.code, {head});
    EXPECT_NE(TheOnly(report, at.code).message.find(at.words), std::string::npos)
        << ListFindings(report);
  }
}

// A beam over several squares of a plate, on whose nodes it lies, is joined with it at its ends.
TEST(UnjoinedPlaces, NamesABeamThatIsNotDividedAsItsPlate) {
  ModelText model = MakeEmptyModel();
  const std::vector<int> nodes = AddPlate(4, 2, 100.0, {0.0, 0.0, 0.0}, model);
  AddBeam(nodes[5], nodes[9], model);
  ExpectOnlyInMesh(Check(model), "K205", {nodes[6], nodes[7], nodes[8]});
  // Along free edges it is the same: they do not lie on a shell.
  model.beams.clear();
  AddBeam(nodes[0], nodes[4], model);
  ExpectOnlyInMesh(Check(model), "K205", {nodes[1], nodes[2], nodes[3]});
  model.beams.clear();
  AddBeam(nodes[5], nodes[9], model);
  // The same beside a beam that is divided.
  for (std::size_t k = 5; k < 9; ++k) AddBeam(nodes[k], nodes[k + 1], model);
  ExpectOnlyInMesh(Check(model), "K205", {nodes[6], nodes[7], nodes[8]});
}

// Diagonals cross without a node, and beams pass over plates.
TEST(UnjoinedPlaces, AllowsBeamsThatCross) {
  ModelText model = MakeEmptyModel();
  AddPlate(4, 4, 100.0, {0.0, 0.0, 0.0}, model);
  AddBeam(0, 18, model);  // from (0, 0) to (300, 300): at (100, 100) and (200, 200) are nodes
  ExpectOnlyInMesh(Check(model), "K205", {6, 12});
  model.beams.clear();
  AddBeam(0, 7, model);  // from (0, 0) to (200, 100): over an edge between its nodes
  AddBeam(2, 5, model);  // from (200, 0) to (0, 100): crosses it
  ExpectNone(Check(model), Mesh);
}

// Stiff beams from one node to those of a web, which lie behind one another; the middle lies on one
// of the web's nodes. Without their common node they are a mistake.
TEST(UnjoinedPlaces, AllowsSpiders) {
  ModelText model = MakeEmptyModel();
  const std::vector<int> nodes = AddPlate(3, 4, 100.0, {0.0, 0.0, 0.0}, model);
  model.restraints.clear();
  const int middle = AddNode(0.0, 0.0, 0.0, model);
  for (int j = 1; j <= 4; ++j) AddBeam(middle, nodes[static_cast<std::size_t>(4 * j)], model);
  model.restraints.push_back({middle, {1, 1, 1, 1, 1, 1}});
  ExpectNone(Check(model), Mesh);
  model.beams.erase(model.beams.begin(), model.beams.begin() + 3);  // the longest arm is left
  ExpectOnly(Check(model), {"K205", "", -1, -1, 0}, Mesh);
}

// The facets of a tube of 24 plates lie inside the circle by R (1 - cos(pi / 24)) = 0.0086 R. A
// second tube between, turned by half a plate, touches nothing.
TEST(UnjoinedPlaces, IsNotMisledByChords) {
  ModelText model = MakeEmptyModel();
  constexpr int Sides = 24;
  for (const double turn : {0.0, 0.5}) {
    const int first = static_cast<int>(model.nodes.size());
    for (const double z : {turn * 50.0, turn * 50.0 + 100.0}) {
      for (int k = 0; k < Sides; ++k) {
        const double angle = 2.0 * std::acos(-1.0) * (k + turn) / Sides;
        AddNode(200.0 * std::cos(angle), 200.0 * std::sin(angle), z, model);
      }
    }
    for (int k = 0; k < Sides; ++k) {
      const int a = first + k, b = first + (k + 1) % Sides;
      model.shells4.push_back({{a, b, b + Sides, a + Sides}, 0, 0});
    }
    model.restraints.push_back({first, {1, 1, 1, 1, 1, 1}});
  }
  ExpectNone(Check(model), Mesh);
  CheckOptions options;
  options.tolerance = 2.0;  // more than 0.0086 R = 1.7
  ExpectOnly(Check(model, options), {"K204", "", -1, -1, 0}, Mesh);
}

// The middle of a warped square lies on its bilinear surface: a quarter of the fourth corner's
// height above the plane of the others.
TEST(UnjoinedPlaces, FindsNodesOnWarpedShells) {
  for (const double height : {2.5, 2.4}) {
    ModelText model = MakeEmptyModel();
    AddPlate(1, 1, 100.0, {0.0, 0.0, 0.0}, model);
    model.nodes[3][2] = 10.0;  // the middle of the bilinear surface is at 2.5
    const int head = AddNode(50.0, 50.0, height, model), foot = AddNode(50.0, 50.0, -200.0, model);
    AddBeam(foot, head, model);
    model.restraints.push_back({foot, {1, 1, 1, 1, 1, 1}});
    const std::vector<Finding> found = FindingsOf(Check(model), "K205");
    EXPECT_EQ(found.size(), height == 2.5 ? 1U : 0U);
  }
}

TEST(UnjoinedPlaces, ObeysTheTolerance) {
  for (const double gap : {0.0004, 0.002, 0.5}) {
    ModelText model = MakeEmptyModel();
    // Both plates together reach 600 x 900, a diagonal of 1082: the tolerance is 0.00108.
    AddPlate(6, 4, 100.0, {0.0, 0.0, 0.0}, model);
    AddPlate(6, 5, 100.0, {0.0, 400.0 + gap, 0.0}, model);
    EXPECT_EQ(FindingsOf(Check(model), "K201").size(), gap < 0.00108 ? 1U : 0U);
    CheckOptions options;
    options.tolerance = 1.0;
    EXPECT_EQ(FindingsOf(Check(model, options), "K201").size(), 1U);
  }
}

// A beam without length joins its two nodes: it is named as such, elsewhere.
TEST(UnjoinedPlaces, LeavesOutNodesThatAnElementJoins) {
  ModelText model = MakeEmptyModel();
  const std::vector<int> nodes = AddPlate(2, 2, 100.0, {0.0, 0.0, 0.0}, model);
  const int other = AddNode(100.0, 100.0, 0.0, model), foot = AddNode(100.0, 100.0, -99.0, model);
  AddBeam(nodes[4], other, model);
  AddBeam(other, foot, model);
  EXPECT_TRUE(FindingsOf(Check(model), "K202").empty());
  // A third node there, which nothing joins.
  const int third = AddNode(100.0, 100.0, 0.0, model);
  AddBeam(third, AddNode(150.0, 120.0, -99.0, model), model);
  EXPECT_EQ(TheOnly(Check(model), "K202").nodes, (Numbers{nodes[4], other, third}));
}

}  // namespace
}  // namespace kvx::test
