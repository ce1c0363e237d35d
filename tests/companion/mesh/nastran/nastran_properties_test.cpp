// Properties and materials: what is taken, and what each departure is reported as.
#include "mesh/nastran/nastran_properties.h"

#include <gtest/gtest.h>

#include "mesh/nastran/read_structure.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;

const std::string Nodes = "GRID,1,,0.,0.,0.\nGRID,2,,1.,0.,0.\nGRID,3,,1.,1.,0.\n";
const std::string Triangle = "CTRIA3,1,10,1,2,3\n";
const std::string Steel = "MAT1,7,206000.,,.3\n";

// The limits that a PSHELL card with these fields behind its number is reported with.
Texts LimitsOfShell(const std::string& fields) {
  StructureOfText s;
  ReadStructureText(Nodes + Triangle + Steel + "MAT1,8,70000.,,.3\nPSHELL,10," + fields, s);
  Texts limits;
  for (const ReportEntry& entry : s.read.report.entries) {
    if (entry.card == "PSHELL" && entry.fate == Fate::Limited) limits.push_back(entry.reason);
    EXPECT_NE(entry.fate, Fate::Refused) << entry.reason;
  }
  EXPECT_EQ(s.model.materials.at(0).values.E, 206000.0);
  return limits;
}

TEST(NastranProperties, PlateOfOneMaterialIsTakenWhole) {
  EXPECT_EQ(LimitsOfShell("7,12.,7,,7\n"), Texts{});
  EXPECT_EQ(LimitsOfShell("7,12.,7,1.0,7,.8333,0.,\n,-6.,6.\n"), Texts{});
}

TEST(NastranProperties, BlankMaterialsOfPshellChangeThePhysics) {
  EXPECT_EQ(LimitsOfShell("7,12.\n"),
            Texts{"MID2 is blank: membrane only; here the plate bends, too"});
  EXPECT_EQ(LimitsOfShell("7,12.,7\n"), Texts{"MID3 is blank: rigid in transverse shear; here "
                                              "quadrilaterals are flexible in it"});
  EXPECT_EQ(LimitsOfShell(",12.,7,,7\n"),
            Texts{"MID1 is blank: bending only; here the plate stretches, too"});
  EXPECT_EQ(LimitsOfShell("7,12.,-1\n"),
            Texts{"MID2 is -1: plane strain; here the plate is free to bend and contract"});
  EXPECT_EQ(LimitsOfShell("7,12.,8,,7\n"),
            Texts{"MID2 is another material than MID1; MID1 is taken for bending, too"});
  EXPECT_EQ(LimitsOfShell("7,12.,7,,8\n"),
            Texts{"MID3 is another material; MID1 is taken for transverse shear, too"});
  EXPECT_EQ(LimitsOfShell("7,12.,7,,7\n,,,8\n"),
            Texts{"MID4, the coupling of membrane and bending, is left out"});
}

TEST(NastranProperties, OtherRatiosOfPshellAreTold) {
  EXPECT_EQ(LimitsOfShell("7,12.,7,2.0,7\n"),
            Texts{"12I/T**3 is not 1; here the plate bends with I = T**3 / 12"});
  EXPECT_EQ(LimitsOfShell("7,12.,7,,7,0.5\n"), Texts{"TS/T is not 0.833333; here it is"});
  EXPECT_EQ(LimitsOfShell("7,12.,7,,7,,3.-6\n"),
            Texts{"its non-structural mass (NSM) is left out"});
  EXPECT_EQ(LimitsOfShell("7,12.,7,,7\n,-6.,5.\n"),
            Texts{"stresses are those at the faces, not at Z1 and Z2"});
}

// What the group of a shell with the property 10 lacks.
std::string LacksOf(const std::string& cards) {
  StructureOfText s;
  ReadStructureText(Nodes + Triangle + cards, s);
  EXPECT_EQ(CountFate(s.read.report, Fate::Refused), 0U);
  EXPECT_EQ(s.model.shells.size(), 1U);
  return s.model.groups.at(0).lacks;
}

TEST(NastranProperties, WhatHasNoCounterpartIsToldByItsGroup) {
  EXPECT_EQ(LacksOf("PCOMP,10\n,7,1.,0.,YES\n" + Steel), "PCOMP: there are no layered shells");
  EXPECT_EQ(LacksOf("PCOMPG,10\n,1,7,1.,0.\n" + Steel), "PCOMPG: there are no layered shells");
  EXPECT_EQ(LacksOf("PSHELL,10,7,1.,7,,7\nMAT8,7,1.+5,1.+4,.3,1.+4\n"),
            "MAT8: the material depends on the direction");
  EXPECT_EQ(LacksOf("PSHELL,10,7,1.,7,,7\nMAT2,7,1.+5,1.+4\n"),
            "MAT2: the material depends on the direction");
  EXPECT_EQ(LacksOf("PSHELL,10,7,-1.,7,,7\n" + Steel), "PSHELL: its thickness is not above 0");
  EXPECT_EQ(LacksOf("PSHELL,10,,1.\n"), "PSHELL: it has no material");
  EXPECT_EQ(LacksOf("PSHELL,10,7,1.,7,,7\nMAT1,7,,4.+6\n"),
            "MAT1: its Young's modulus is not above 0");
  EXPECT_EQ(LacksOf("PSHELL,10,7,1.,7,,7\nMAT1,7,1.+6,,.5\n"),
            "MAT1: its Poisson's ratio is not between -1 and 0.5");
}

// The limits of a property of an element, as "CARD: reason".
Texts LimitsOf(const std::string& element, const std::string& property) {
  StructureOfText s;
  ReadStructureText(Nodes + Steel + element + property, s);
  Texts limits;
  for (const ReportEntry& entry : s.read.report.entries) {
    EXPECT_NE(entry.fate, Fate::Refused) << entry.reason;
    if (entry.fate == Fate::Limited) limits.push_back(entry.card + ": " + entry.reason);
  }
  return limits;
}

// A map file can give a thickness or a section, but neither a reference plane nor a mass. Fields of
// the mass (quick reference guide): 4 of PCOMP, 5 of PSHEAR and PBRSECT, 8 of PBAR, 9 of PBEAM and
// of its stations' last lines.
TEST(NastranProperties, MassAndLowerFaceWithoutACounterpartAreTold) {
  const std::string mass = ": its non-structural mass (NSM) is left out";
  const std::string face =
      ": its lower face (Z0) is left out: the plate's middle lies on its nodes";
  const std::string layer = "\n,7,1.,0.,YES\n", bar = "CBAR,2,10,1,2,0.,1.,0.\n",
                    beam = "CBEAM,2,10,1,2,0.,1.,0.\n";
  EXPECT_EQ(LimitsOf(Triangle, "PCOMP,10,-5." + layer), Texts{"PCOMP" + face});
  EXPECT_EQ(LimitsOf(Triangle, "PCOMP,10,0." + layer), Texts{"PCOMP" + face});
  EXPECT_EQ(LimitsOf(Triangle, "PCOMP,10,,3.-6" + layer), Texts{"PCOMP" + mass});
  EXPECT_EQ(LimitsOf(Triangle, "PCOMPG,10,-5.,3.-6\n,1,7,1.,0.\n"),
            (Texts{"PCOMPG" + mass, "PCOMPG" + face}));
  EXPECT_EQ(LimitsOf(Triangle, "PCOMP,10,,0." + layer), Texts{});
  EXPECT_EQ(LimitsOf("CSHEAR,1,10,1,2,3,4\nGRID,4,,0.,1.,0.\n", "PSHEAR,10,7,2.,3.-6\n"),
            Texts{"PSHEAR" + mass});
  EXPECT_EQ(LimitsOf(bar, "PBAR,10,7,10.,11.,12.,13.,5.\n"), Texts{"PBAR" + mass});
  EXPECT_EQ(LimitsOf(bar, "PBAR,10,7,10.,11.,12.,13.,0.\n"), Texts{});
  EXPECT_EQ(LimitsOf(bar, "PBRSECT,10,7,GS,5.\n"), Texts{"PBRSECT" + mass});
  EXPECT_EQ(LimitsOf(beam, "PBEAM,10,7,10.,11.,12.,,13.,5.\n"), Texts{"PBEAM" + mass});
  EXPECT_EQ(LimitsOf(beam, "PBEAM,10,7,10.,11.,12.,,13.,\n,YES,1.,10.,11.,12.,,13.,5.\n"),
            Texts{"PBEAM" + mass});
  // The eighth number of a line that is no station is a point for stresses (F2).
  EXPECT_EQ(LimitsOf(beam, "PBEAM,10,7,10.,11.,12.,,13.,\n,1.,1.,2.,2.,3.,3.,4.,4.\n"), Texts{});
}

// E, G, NU -> E and Mu of the model, and the limits.
korvex::Material MaterialOf(const std::string& fields, Texts& limits) {
  StructureOfText s;
  ReadStructureText(Nodes + Triangle + "PSHELL,10,7,1.,7,,7\nMAT1,7," + fields, s);
  limits.clear();
  for (const ReportEntry& entry : s.read.report.entries) limits.push_back(entry.reason);
  return s.model.materials.at(0).values;
}

TEST(NastranProperties, TwoOfEGAndNuGiveTheThird) {
  Texts limits;
  // G = E / (2 (1 + NU)): 250 / (2 x 1.25) = 100.
  const korvex::Material given = MaterialOf("250.,,.25,3.\n", limits);
  EXPECT_EQ(given.E, 250.0);
  EXPECT_EQ(given.Mu, 0.25);
  EXPECT_EQ(given.Density, 3.0);
  EXPECT_EQ(MaterialOf("250.,100.\n", limits).Mu, 0.25);
  EXPECT_EQ(MaterialOf(",100.,.25\n", limits).E, 250.0);
  EXPECT_EQ(limits, Texts{});
  MaterialOf("250.,100.,.25\n", limits);
  EXPECT_EQ(limits, Texts{});
  MaterialOf("250.,100.05,.25\n", limits);  // half of what three digits leave open
  EXPECT_EQ(limits, Texts{});
  EXPECT_EQ(MaterialOf("250.,101.,.25\n", limits).Mu, 0.25);
  EXPECT_EQ(limits, Texts{"G is taken as E / (2 (1 + NU)), not as it is given"});
  EXPECT_EQ(MaterialOf("250.\n", limits).Mu, 0.0);
  EXPECT_EQ(limits, Texts{"G and NU are blank; NU is taken as 0"});
}

TEST(NastranProperties, MassFactorIsOfTheDensities) {
  Texts limits;
  EXPECT_EQ(MaterialOf("250.,,.25,8.\nPARAM,WTMASS,.25\n", limits).Density, 2.0);
  MaterialOf("250.,,.25,8.\nPARAM,WTMASS,.25\nPARAM,WTMASS,.5\n", limits);
  EXPECT_EQ(limits, Texts{"WTMASS is given twice, with different values"});
}

TEST(NastranProperties, NumbersRepeatFromFamilyToFamily) {
  StructureOfText s;
  ReadStructureText(
      Nodes + Triangle + Steel +
          "PSHELL,10,7,1.,7,,7\nPBARL,10,7,,TUBE2\n,5.,1.\nPBEAML,10,7,,TUBE2\n,6.,1.\n"
          "CBAR,2,10,1,2,0.,1.,0.\nCBEAM,3,10,1,2,0.,1.,0.\n",
      s);
  EXPECT_EQ(Entries(s.read.report), Texts{});
  ASSERT_EQ(s.model.groups.size(), 3U);
  EXPECT_EQ(s.model.groups[0].name, "PSHELL 10");
  EXPECT_EQ(s.model.groups[1].name, "PBARL 10");
  EXPECT_EQ(s.model.groups[2].name, "PBEAML 10");
  EXPECT_EQ(s.model.groups[2].beams, std::vector<std::int32_t>{1});
  EXPECT_EQ(s.model.groups[2].nodes, (std::vector<std::int32_t>{0, 1}));
  // Mean radii: 5 - 1/2 and 6 - 1/2.
  EXPECT_EQ(s.model.sections.at(static_cast<std::size_t>(s.model.beams[0].section)).tube.R, 4.5);
  EXPECT_EQ(s.model.sections.at(static_cast<std::size_t>(s.model.beams[1].section)).tube.R, 5.5);
}

TEST(NastranProperties, NumbersUsedTwiceInAFamilyAreRefused) {
  StructureOfText s;
  ReadStructureText(
      Nodes + Triangle + Steel +
          "PSHELL,10,7,1.,7,,7\nPSHELL,10,7,2.,7,,7\nMAT1,7,206000.,,.3\nMAT8,7,1.,1.\n"
          "PBAR,4,7,1.\nPBARL,4,7,,TUBE2\n,5.,1.\n",
      s);
  EXPECT_TRUE(HasEntry(s.read.report, "PSHELL", Fate::Refused, "another card has its number"));
  EXPECT_TRUE(HasEntry(s.read.report, "MAT1", Fate::NoEffect, "it says again"));
  EXPECT_TRUE(HasEntry(s.read.report, "MAT8", Fate::Refused, "another card has its number"));
  EXPECT_TRUE(HasEntry(s.read.report, "PBARL", Fate::Refused, "another card has its number"));
}

TEST(NastranProperties, WhatNothingUsesHasNoEffect) {
  StructureOfText s;
  ReadStructureText(Nodes + Steel + "PSHELL,10,7,1.,7,,7\nPBARL,4,7,,I\n", s);
  EXPECT_TRUE(s.model.groups.empty());
  EXPECT_TRUE(s.model.materials.empty());
  EXPECT_EQ(Entries(s.read.report),
            (Texts{"MAT1 no effect 1: no element has this material (MAT1 7)",
                   "PBARL no effect 1: no element has this property (PBARL 4)",
                   "PSHELL no effect 1: no element has this property (PSHELL 10)"}));
}

}  // namespace
}  // namespace kvx::test
