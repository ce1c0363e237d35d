// Nodes, elements, sets, parts and instances. Expected coordinates are worked out by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "mesh/abaqus/import_deck.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;
using Numbers = std::vector<std::int64_t>;

// Coordinates of some units in doubles: a few roundings.
constexpr double Rounding = 1e-14;

void ExpectNode(const ImportedDeck& deck, std::size_t k, double x, double y, double z) {
  const korvex::Node& node = deck.model.nodes.at(k);
  EXPECT_NEAR(node.x, x, Rounding) << k;
  EXPECT_NEAR(node.y, y, Rounding) << k;
  EXPECT_NEAR(node.z, z, Rounding) << k;
}

TEST(AbaqusNodes, TwoCoordinatesLieInThePlane) {
  const ImportedDeck deck = ImportDeck("*NODE\n7,1.5,2.5\n9,-1.\n");
  ExpectNode(deck, 0, 1.5, 2.5, 0.0);
  ExpectNode(deck, 1, -1.0, 0.0, 0.0);
  EXPECT_EQ(deck.model.nodeNumbers, (Numbers{7, 9}));
}

// SYSTEM=C: r, theta, z; SYSTEM=S: r, theta, phi from the x-y plane; angles in degrees.
TEST(AbaqusNodes, CylindricalAndSphericalCoordinates) {
  const ImportedDeck deck = ImportDeck(
      "*NODE, SYSTEM=C\n1,2.,90.,5.\n2,2.,30.,0.\n*NODE, SYSTEM=S\n3,2.,90.,30.\n4,2.,180.,-90.\n");
  ExpectNode(deck, 0, 0.0, 2.0, 5.0);
  EXPECT_EQ(deck.model.nodes[0].x, 0.0);  // exactly
  ExpectNode(deck, 1, std::sqrt(3.0), 1.0, 0.0);
  ExpectNode(deck, 2, 0.0, std::sqrt(3.0), 1.0);
  ExpectNode(deck, 3, 0.0, 0.0, -2.0);
}

// *SYSTEM: origin (1, 2, 3), x' towards global y, the third point in global -x: y' = -x, z' = z.
// It holds until the next one.
TEST(AbaqusNodes, SystemsHoldForTheNodesBehindThem) {
  const ImportedDeck deck = ImportDeck(
      "*NODE\n1,1,0,0\n*SYSTEM\n1,2,3,1,5,3\n0,2,3\n*NODE\n2,1,0,0\n3,0,1,7\n"
      "*NODE,SYSTEM=C\n4,1,90,0\n*SYSTEM\n*NODE\n5,1,0,0\n*SYSTEM\n10,0,0\n*NODE\n6,1,0,0\n");
  ExpectNode(deck, 0, 1.0, 0.0, 0.0);
  ExpectNode(deck, 1, 1.0, 3.0, 3.0);
  ExpectNode(deck, 2, 0.0, 2.0, 10.0);
  ExpectNode(deck, 3, 0.0, 2.0, 3.0);
  ExpectNode(deck, 4, 1.0, 0.0, 0.0);
  ExpectNode(deck, 5, 11.0, 0.0, 0.0);
}

// Of two points the second lies on x', and z' is the global z: x' = y makes y' = -x.
TEST(AbaqusNodes, SystemsOfTwoPointsAreTurnedAboutZ) {
  const ImportedDeck deck = ImportDeck("*SYSTEM\n1,2,3,1,7,3\n*NODE\n1,1,0,0\n2,0,1,5\n");
  ExpectNode(deck, 0, 1.0, 3.0, 3.0);
  ExpectNode(deck, 1, 0.0, 2.0, 8.0);
  EXPECT_EQ(StopOfDeck("*SYSTEM\n0,0,0,0,0,1\n*NODE\n1,1,0,0\n"),
            "\"deck.inp\", line 1: the points of *SYSTEM give no axes");
}

TEST(AbaqusNodes, ANodeGivenTwiceMustStandAtOnePlace) {
  const ImportedDeck same = ImportDeck("*NODE\n1,0,0,0\n*NODE, NSET=A\n1,0,0,0\n");
  EXPECT_TRUE(Reasons(same, Fate::Refused).empty());
  EXPECT_EQ(GroupNamed(same, "A").nodes, std::vector<std::int32_t>{0});  // the first row
  const ImportedDeck other = ImportDeck("*NODE\n1,0,0,0\n1,0,0,1\n");
  EXPECT_EQ(Reasons(other, Fate::Refused),
            Texts{"*NODE: a node is given twice, at different places"});
}

TEST(AbaqusNodes, NormalsOfNodesAreTold) {
  const ImportedDeck deck = ImportDeck("*NODE\n1,0,0,0,0,0,1\n2,0,0,0,0,0,0\n");
  EXPECT_EQ(Reasons(deck, Fate::Limited), Texts{"*NODE: normals of nodes are not taken over"});
}

constexpr const char* Nodes =
    "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,2,0,0\n6,2,1,0\n7,3,0,0\n8,3,1,0\n9,0,0,1\n";

TEST(AbaqusElements, TypesBecomeShellsAndBeams) {
  const ImportedDeck deck = ImportDeck(
      std::string(Nodes) +
      "*ELEMENT,TYPE=S4R,ELSET=A\n10,1,2,3,4\n*ELEMENT,TYPE=S3,ELSET=A\n3,2,5,3\n"
      "*ELEMENT,TYPE=S4R\n20,2,5,6,3\n*ELEMENT,TYPE=B31\n1,1,2\n*ELEMENT,TYPE=B33\n2,2,5\n"
      "*ELEMENT,TYPE=STRI3\n4,1,2,3\n*ELEMENT,TYPE=B31OS\n5,1,5\n*ELEMENT,TYPE=PIPE31\n6,1,3\n");
  EXPECT_EQ(deck.model.typeNames, (Texts{"S4R", "S3", "B31", "B33", "STRI3", "B31OS", "PIPE31"}));
  ASSERT_EQ(deck.model.shells.size(), 4U);
  ASSERT_EQ(deck.model.beams.size(), 4U);
  EXPECT_EQ(deck.model.shells[0].number, 10);
  EXPECT_EQ(deck.model.shells[0].nodes, (std::array<std::int32_t, 4>{0, 1, 2, 3}));
  EXPECT_EQ(deck.model.shells[1].nodes, (std::array<std::int32_t, 4>{1, 4, 2, -1}));
  EXPECT_EQ(deck.model.shells[2].type, 0);
  EXPECT_EQ(deck.model.beams[1].nodes, (std::array<std::int32_t, 2>{1, 4}));
  EXPECT_EQ(GroupNamed(deck, "A").shells, (std::vector<std::int32_t>{0, 1}));
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            (Texts{"*ELEMENT: B33: a slender beam there; shear deformation is taken into account "
                   "here",
                   "*ELEMENT: B31OS: the warping of open sections is not taken into account"}));
}

// Elements that no set has can still be named in a map file.
TEST(AbaqusElements, ElementsInNoSetHaveAGroupForTheirType) {
  const ImportedDeck deck = ImportDeck(std::string(Nodes) +
                                       "*ELEMENT,TYPE=S4\n1,1,2,3,4\n2,2,5,6,3\n"
                                       "*ELEMENT,TYPE=B31\n3,1,2\n*ELSET,ELSET=A\n1\n");
  ASSERT_EQ(deck.model.groups.size(), 3U);
  EXPECT_EQ(GroupNamed(deck, "S4 in no set").shells, std::vector<std::int32_t>{1});
  EXPECT_EQ(GroupNamed(deck, "B31 in no set").beams, std::vector<std::int32_t>{0});
}

TEST(AbaqusElements, DataMayGoOnOverLines) {
  const ImportedDeck deck =
      ImportDeck(std::string(Nodes) +
                 "*ELEMENT,TYPE=S4\n1,1,2,\n3,4\n2,\n2,5\n6,3,\n"
                 "*ELEMENT,TYPE=C3D20\n3,1,2,3,4,5,6,7,8,1,2,3,4,5,6,7,\n8,1,2,3,4\n"
                 "*ELEMENT,TYPE=FOO\n4,1,2,3,\n4,5\n5,1\n");
  ASSERT_EQ(deck.model.shells.size(), 2U);
  EXPECT_EQ(deck.model.shells[1].nodes, (std::array<std::int32_t, 4>{1, 4, 5, 2}));
  EXPECT_EQ(Reasons(deck, Fate::Lost), (Texts{"*ELEMENT: C3D20: solids have no counterpart",
                                              "*ELEMENT: FOO: unknown element type (2)"}));
}

TEST(AbaqusElements, SecondOrderTrussesAndMembranesAreRefused) {
  const ImportedDeck deck = ImportDeck(
      std::string(Nodes) +
      "*ELEMENT,TYPE=S8R\n1,1,2,3,4,5,6,7,8\n2,1,2,3,4,5,6,7,8\n*ELEMENT,TYPE=STRI65\n"
      "3,1,2,3,4,5,6\n*ELEMENT,TYPE=B32R\n4,1,2,3\n*ELEMENT,TYPE=T3D2\n5,1,2\n"
      "*ELEMENT,TYPE=M3D4\n6,1,2,3,4\n*ELEMENT,TYPE=CPS4R\n7,1,2,3,4\n*ELEMENT,TYPE=B21\n8,1,2\n"
      "*ELEMENT,TYPE=S6\n9,1,2,3,4,5,6\n");
  EXPECT_EQ(
      Reasons(deck, Fate::Refused),
      (Texts{"*ELEMENT: S8R: shells of second order: mesh with three-node or four-node shells (2)",
             "*ELEMENT: STRI65: shells of second order: mesh with three-node or four-node shells",
             "*ELEMENT: B32R: beams of second order: mesh with two-node beams",
             "*ELEMENT: T3D2: trusses have no bending stiffness: give them a beam type",
             "*ELEMENT: M3D4: membranes have no bending stiffness: give them a shell type",
             "*ELEMENT: CPS4R: plane and axisymmetric elements: the model is one in space",
             "*ELEMENT: B21: beams in a plane: use a type in space, such as B31",
             "*ELEMENT: S6: shells of second order: mesh with three-node or four-node shells"}));
  EXPECT_EQ(deck.report.entries[0].example, "S8R 1");
  EXPECT_TRUE(deck.model.shells.empty());
}

TEST(AbaqusElements, PointElementsAreLost) {
  const ImportedDeck deck = ImportDeck(std::string(Nodes) +
                                       "*ELEMENT,TYPE=MASS,ELSET=M\n1,1\n2,2\n"
                                       "*ELEMENT,TYPE=SPRINGA\n3,1,2\n*MASS,ELSET=M\n5.\n");
  EXPECT_EQ(
      Reasons(deck, Fate::Lost),
      (Texts{"*ELEMENT: MASS: springs, masses, dampers and connectors have no counterpart (2)",
             "*ELEMENT: SPRINGA: springs, masses, dampers and connectors have no counterpart",
             "*MASS: springs, dampers, masses and connectors have no counterpart"}));
}

TEST(AbaqusElements, BrokenElementsAreRefused) {
  const ImportedDeck deck = ImportDeck(std::string(Nodes) +
                                       "*ELEMENT,TYPE=S4\n1,1,2,3,99\n2,1,2,3,3\n"
                                       "*ELEMENT,TYPE=B31\n3,1,1\n4,1,2\n4,1,3\n");
  EXPECT_EQ(Reasons(deck, Fate::Refused),
            (Texts{"*ELEMENT: two elements have the same number",
                   "*ELEMENT: an element has a node that does not exist",
                   "*ELEMENT: an element has a node twice (2)"}));
  EXPECT_EQ(StopOfDeck(std::string(Nodes) + "*ELEMENT,TYPE=S4\n1,1,2,3,4,5\n"),
            "\"deck.inp\", line 12: element 1 has 5 nodes, one of type S4 has 4");
  EXPECT_EQ(StopOfDeck("*ELEMENT\n1,1\n"), "\"deck.inp\", line 1: *ELEMENT without TYPE=");
}

TEST(AbaqusSets, NamesAndNumbersMayBeMixedAndNested) {
  const ImportedDeck deck = ImportDeck(std::string(Nodes) +
                                       "*NSET,NSET=a\n3,1,\n*NSET,NSET=b\nA,5,1\n"
                                       "*NSET,NSET=c, GENERATE\n2,6,2\n8,9\n"
                                       "*NSET,NSET=d\nb,C\n7\n*NSET,NSET=A\n9\n*NSET,NSET=d\nD\n");
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "a")), (Numbers{1, 3, 9}));
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "b")), (Numbers{1, 3, 5}));
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "c")), (Numbers{2, 4, 6, 8, 9}));
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "d")), (Numbers{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_TRUE(Reasons(deck, Fate::Limited).empty());
}

TEST(AbaqusSets, RangesMayBeAbbreviatedUnsortedAndInternal) {
  const ImportedDeck deck =
      ImportDeck(std::string(Nodes) + "*NSET,NSET=A,GEN,INTERNAL,UNSORTED\n1,3\n");
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "A")), (Numbers{1, 2, 3}));
  EXPECT_TRUE(deck.report.entries.empty());
}

TEST(AbaqusSets, MembersThatDoNotExistAreTold) {
  const ImportedDeck deck = ImportDeck(std::string(Nodes) +
                                       "*NSET,NSET=A\n1,77,NONE\n*NSET,NSET=B,GENERATE\n8,12\n"
                                       "*NSET,NSET=C,GENERATE\n1,9,4\n");
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            Texts{"*NSET: members that do not exist are left out (2)"});
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "B")), (Numbers{8, 9}));
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "C")), (Numbers{1, 5, 9}));
}

TEST(AbaqusSets, NodesOfElementsMayBeASet) {
  const ImportedDeck deck = ImportDeck(std::string(Nodes) +
                                       "*ELEMENT,TYPE=S3,ELSET=E\n1,1,2,3\n*ELEMENT,TYPE=B31,"
                                       "ELSET=E\n2,5,6\n*NSET,NSET=A,ELSET=E\n");
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "A")), (Numbers{1, 2, 3, 5, 6}));
}

TEST(AbaqusSets, NamesOfBothKindsAreToldApart) {
  const ImportedDeck deck = ImportDeck(std::string(Nodes) +
                                       "*ELEMENT,TYPE=B31,ELSET=SIDE\n1,1,2\n"
                                       "*NSET,NSET=SIDE\n1\n*NSET,NSET=TOP\n2\n");
  EXPECT_EQ(GroupNamed(deck, "SIDE (elements)").beams.size(), 1U);
  EXPECT_EQ(GroupNamed(deck, "SIDE (nodes)").nodes.size(), 1U);
  EXPECT_EQ(GroupNamed(deck, "TOP").source, "*NSET TOP");
}

// One part, one instance: moved by (10, 0, 0), then turned by 90 degrees about the line x = 10,
// y = 0 along z: (1, 0, 0) -> (11, 0, 0) -> (10, 1, 0); (0, 1, 5) -> (10, 1, 5) -> (9, 0, 5).
TEST(AbaqusParts, OneInstanceIsPlaced) {
  const ImportedDeck deck = ImportDeck(
      "*PART, NAME=Beam\n*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,5\n*ELEMENT,TYPE=B31,ELSET=Set-1\n1,1,2\n"
      "*END PART\n*ASSEMBLY, NAME=Assembly\n*INSTANCE, NAME=Beam-1, PART=Beam\n10.,0.,0.\n"
      "10.,0.,0.,10.,0.,1.,90.\n*END INSTANCE\n*NSET, NSET=Set-1, INSTANCE=Beam-1\n2\n"
      "*END ASSEMBLY\n*STEP\n*CLOAD\nBeam-1.3,1,5.\nSet-1,2,7.\n*END STEP\n");
  ExpectNode(deck, 0, 10.0, 0.0, 0.0);
  ExpectNode(deck, 1, 10.0, 1.0, 0.0);
  ExpectNode(deck, 2, 9.0, 0.0, 5.0);
  EXPECT_EQ(GroupNamed(deck, "Set-1 (nodes)").nodes, std::vector<std::int32_t>{1});
  EXPECT_EQ(GroupNamed(deck, "Set-1 (elements)").beams.size(), 1U);
  ASSERT_EQ(deck.model.cases.size(), 1U);
  ASSERT_EQ(deck.model.cases[0].forces.size(), 2U);
  EXPECT_EQ(deck.model.cases[0].forces[0].node, 2);
  EXPECT_EQ(deck.model.cases[0].forces[0].components[0], 5.0);
  EXPECT_EQ(deck.model.cases[0].forces[1].node, 1);
  EXPECT_TRUE(deck.report.entries.empty());
}

// A turn of 120 degrees about (1, 1, 1) takes x to y, y to z and z to x; so it does with the n1 of
// a section of the part: a bar along x with n1 = y becomes one along y with n1 = z.
TEST(AbaqusParts, SectionsTurnWithTheirInstance) {
  const ImportedDeck deck = ImportDeck(
      "*PART, NAME=P\n*NODE\n1,0,0,0\n2,1,0,0\n3,1,2,3\n*ELEMENT,TYPE=B31,ELSET=E\n1,1,2\n"
      "*BEAM SECTION,ELSET=E,SECTION=RECT,MATERIAL=M\n60.,20.\n0.,1.,0.\n*END PART\n"
      "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=P-1, PART=P\n0,0,0\n0,0,0,1,1,1,120.\n*END INSTANCE\n"
      "*END ASSEMBLY\n*MATERIAL,NAME=M\n*ELASTIC\n1.,0.\n");
  ExpectNode(deck, 1, 0.0, 1.0, 0.0);
  ExpectNode(deck, 2, 3.0, 1.0, 2.0);
  // The longer side lies along n1 and is the web.
  const korvex::Vector3& web = deck.model.beams.at(0).orientation;
  EXPECT_NEAR(web[0], 0.0, Rounding);
  EXPECT_NEAR(web[1], 0.0, Rounding);
  EXPECT_NEAR(web[2], 1.0, Rounding);
}

// Numbers in the assembly are its own: node 1 of a set without INSTANCE= is the reference point.
TEST(AbaqusParts, ReferencePointsOfTheAssemblyAreNoNodesOfThePart) {
  const ImportedDeck deck = ImportDeck(
      "*PART, NAME=P\n*NODE\n1,0,0,0\n2,1,0,0\n*END PART\n*ASSEMBLY, NAME=A\n"
      "*INSTANCE, NAME=P-1, PART=P\n*END INSTANCE\n*NODE\n1,9,9,9\n*NSET, NSET=RP\n1\n"
      "*END ASSEMBLY\n*STEP\n*CLOAD\nRP,1,5.\n1,1,5.\n*END STEP\n");
  EXPECT_EQ(deck.model.nodes.size(), 2U);
  EXPECT_TRUE(GroupNamed(deck, "RP").nodes.empty());
  EXPECT_TRUE(deck.model.cases.at(0).forces.empty());
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            (Texts{"*NODE: a reference point of the assembly belongs to no element here",
                   "*CLOAD: it acts on an empty set"}));
  EXPECT_EQ(Reasons(deck, Fate::Refused),
            Texts{"*CLOAD: it names a set, element or node that does not exist"});
}

// Sets of the same name in part and assembly are two.
TEST(AbaqusParts, SetsOfThePartAreItsOwn) {
  const ImportedDeck deck = ImportDeck(
      "*PART, NAME=P\n*NODE, NSET=S\n1,0,0,0\n2,1,0,0\n*END PART\n*ASSEMBLY, NAME=A\n"
      "*INSTANCE, NAME=P-1, PART=P\n*END INSTANCE\n*NSET, NSET=S, INSTANCE=P-1\n2\n"
      "*END ASSEMBLY\n*STEP\n*CLOAD\nS,1,5.\nP-1.S,2,7.\n*END STEP\n");
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "S")), (Numbers{1, 2}));
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "S 2")), (Numbers{2}));
  // 5 along x at node 2 alone, 7 along y at both.
  const std::array<double, 6> sum = SumLoads(deck.model, deck.model.cases.at(0));
  EXPECT_EQ(sum[0], 5.0);
  EXPECT_EQ(sum[1], 14.0);
}

TEST(AbaqusParts, SeveralInstancesAreRefused) {
  const ImportedDeck deck = ImportDeck(
      "*PART, NAME=P\n*NODE\n1,0,0,0\n*END PART\n*PART, NAME=Q\n*NODE\n1,5,0,0\n*END PART\n"
      "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=P-1, PART=P\n*END INSTANCE\n"
      "*INSTANCE, NAME=P-2, PART=P\n5.,0.,0.\n*END INSTANCE\n*END ASSEMBLY\n");
  EXPECT_EQ(
      Reasons(deck, Fate::Refused),
      Texts{"*INSTANCE: several instances: have the deck written without parts and assembly"});
  // A part that no instance uses is no part of the model.
  EXPECT_EQ(Reasons(deck, Fate::NoEffect), (Texts{"*PART: in a part that no instance uses",
                                                  "*NODE: in a part that no instance uses",
                                                  "*END PART: in a part that no instance uses"}));
  EXPECT_EQ(deck.model.nodes.size(), 1U);
}

}  // namespace
}  // namespace kvx::test
