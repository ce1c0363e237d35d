// The writer of model files: its text, and that every number reads back bit for bit.
#include "deck/write_tables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "deck/model_tables.h"
#include "deck/read_tables.h"

namespace korvex {
namespace {

TEST(WriteTables, EmptyTablesHaveAllSections) {
  EXPECT_EQ(WriteTables(ModelTables()),
            "### Toln_Korvex release=3.0 ###\n"
            "Number of materials:NMT=0\n"
            "Number of shell thicknesses:NTK=0\n"
            "Number of T_beam sections:NTBS=0\n"
            "Number of L_beam sections:NLBS=0\n"
            "Number of C_beam sections:NCBS=0\n"
            "Number of nodal points:NPOIN=0\n"
            "Number of four-nodes shell elements:NELEM_S_4ND=0\n"
            "Number of three-nodes shell elements:NELEM_S_3ND=0\n"
            "Number of beam elements:NELEM_B=0\n"
            "Number of restricted nodal points:NRN=0\n"
            "Number of forces:NFOR=0\n"
            "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0\n"
            "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0\n"
            "Number of distributed loads on beam elements:NDL_B=0\n");
}

TEST(WriteTables, RowsOfEachSection) {
  ModelTables t;
  t.Materials = {{2.06e11, 0.3, 7850.0}};
  t.ShellThicknesses = {{0.01}};
  t.TBeamSections = {{0.3, 0.01, 0.1, 0.012}};
  t.CBeamSections = {{0.15, 0.02}};
  t.Nodes = {{0, 0, 0}, {1.5, -2, 1e-7}};
  t.Shell4Nodes = {0, 1, 2, 3};
  t.Shell4Properties = {{0, 0}};
  t.BeamNodes = {0, 1};
  t.BeamProperties = {{{0, 0, 1}, 0}};
  t.BeamSectionRefs = {{BeamSecTypeC, 0, -0.25, true}};
  t.NodalRestraints = {{{1, 1, 1, 0, 0, 2}, 1}};
  t.NodalForces = {{1, {0, 0, -1000, 0, 0.5, 0}}};
  t.Shell4SurfaceLoads = {{0, {1, 2, 3}}};
  t.BeamLineLoads = {{0, {-500, 250}}};
  const std::string text = WriteTables(t);
  for (const char* rows :
       {"NMT=1\n#0:\nE=2.06e+11\nMu=0.3\nDensity=7850\n", "NTK=1\n#0:\nTK=0.01\n",
        "NTBS=1\nT_beam #0\nHw=0.3\nTw=0.01\nBf=0.1\nTf=0.012\n",
        "NCBS=1\nC_beam #0\nR=0.15\nT=0.02\n", "NPOIN=2\n0:0,0,0\n1:1.5,-2,1e-07\n",
        "NELEM_S_4ND=1\n0:0,1,2,3[0,0]\n",
        "NELEM_B=1\n0:0,1<0,0,1>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=-0.25,"
        "BeamSecMirrored=1]\n",
        "NRN=1\n1: 1 1 1 0 0 2\n", "NFOR=1\n1<0,0,-1000,0,0.5,0>\n", "NDL_S_4ND=1\n0:1,2,3\n",
        "NDL_B=1\n0:-500,250\n"}) {
    EXPECT_NE(text.find(rows), std::string::npos) << rows;
  }
}

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The node's x of a model with this one node, written and read back.
double WriteAndRead(double x) {
  ModelTables tables, read;
  tables.Nodes.push_back({x, 1.0, 2.0});
  ReadTables(WriteTables(tables), {}, read);
  EXPECT_EQ(read.Nodes.at(0).z, 2.0);
  return read.Nodes.at(0).x;
}

TEST(WriteTables, NumbersAtTheEndsOfTheirRangeReadBack) {
  using Limits = std::numeric_limits<double>;
  for (const double x : {0.0, -0.0, 0.1, 1.0 / 3.0, 1e20, 1e-20, 123456789.125, Limits::max(),
                         Limits::lowest(), Limits::min(), Limits::denorm_min(), Limits::epsilon(),
                         Limits::infinity(), -Limits::infinity()}) {
    EXPECT_TRUE(SameBits(WriteAndRead(x), x)) << x;
  }
  EXPECT_TRUE(std::isnan(WriteAndRead(Limits::quiet_NaN())));
  EXPECT_TRUE(std::signbit(WriteAndRead(-Limits::quiet_NaN())));
}

// Random bits: every exponent, subnormal numbers and long fractions included.
TEST(WriteTables, RandomNumbersReadBackBitForBit) {
  std::mt19937_64 random(7);
  ModelTables tables, read;
  for (int i = 0; i < 20000; ++i) {
    double values[3];
    for (double& value : values) {
      do {
        const std::uint64_t bits = random();
        std::memcpy(&value, &bits, sizeof value);
      } while (!std::isfinite(value));
    }
    tables.Nodes.push_back({values[0], values[1], values[2]});
  }
  ReadTables(WriteTables(tables), {}, read);
  ASSERT_EQ(read.Nodes.size(), tables.Nodes.size());
  for (std::size_t n = 0; n < read.Nodes.size(); ++n) {
    EXPECT_TRUE(SameBits(read.Nodes[n].x, tables.Nodes[n].x)) << n;
    EXPECT_TRUE(SameBits(read.Nodes[n].y, tables.Nodes[n].y)) << n;
    EXPECT_TRUE(SameBits(read.Nodes[n].z, tables.Nodes[n].z)) << n;
  }
}

// A written text, read and written again, is the same text: nothing is lost in any section.
TEST(WriteTables, WhatIsReadIsWrittenAlike) {
  ModelTables t, read;
  t.Materials = {{1.1, 0.2, 3.3}, {4.4, 0.5, 6.6}};
  t.ShellThicknesses = {{7.7}, {8.8}};
  t.TBeamSections = {{1, 2, 3, 4}};
  t.LBeamSections = {{5, 6, 7, 8}, {9, 10, 11, 12}};
  t.CBeamSections = {{13, 14}};
  t.Nodes = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {1.5, 2.5, 3.5}};
  t.Shell4Nodes = {0, 1, 2, 3, 3, 2, 1, 0};
  t.Shell4Properties = {{0, 1}, {1, 0}};
  t.Shell3Nodes = {2, 0, 1};
  t.Shell3Properties = {{1, 1}};
  t.BeamNodes = {0, 1, 2, 3};
  t.BeamProperties = {{{0.1, 0.2, 0.3}, 1}, {{0.4, 0.5, 0.6}, 0}};
  t.BeamSectionRefs = {{BeamSecTypeL, 1, 0.7, false}, {BeamSecTypeC, 0, -0.8, true}};
  t.NodalRestraints = {{{1, 0, 1, 0, 1, 0}, 2}, {{0, 1, 0, 1, 0, 1}, 3}};
  t.NodalForces = {{3, {1, 2, 3, 4, 5, 6}}};
  t.Shell4SurfaceLoads = {{1, {1, 2, 3}}};
  t.Shell3SurfaceLoads = {{0, {4, 5, 6}}};
  t.BeamLineLoads = {{0, {7, 8}}, {1, {9, 10}}};
  const std::string text = WriteTables(t);
  ReadTables(text, {}, read);
  EXPECT_EQ(WriteTables(read), text);
  EXPECT_EQ(read.NLBS, 2);
  EXPECT_EQ(read.NDL_B, 2);
}

}  // namespace
}  // namespace korvex
