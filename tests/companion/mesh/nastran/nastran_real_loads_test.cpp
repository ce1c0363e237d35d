// Load cases of decks that other projects publish, worked out by hand from the decks. They stand
// beside the project and are not part of it: without them there is nothing to try.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "mesh/nastran/import_nastran.h"
#include "mesh/nastran/load_sums.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;

fs::path DecksFolder() {
  return fs::path(KORVEX_SOURCE).parent_path() / "shared" / "decks" / "nastran";
}

std::string ReadText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class NastranRealLoads : public testing::Test {
 protected:
  void SetUp() override {
    if (!fs::is_directory(decks)) GTEST_SKIP() << "no decks beside the project";
  }

  ImportedDeck Import(const std::string& name) const {
    ImportedDeck deck;
    const SourceFile file{name, ReadText(decks / name)};
    const auto include = [this](const std::string& included, std::string& text) {
      text = ReadText(decks / included);
      return !text.empty();
    };
    ImportNastran(file, include, deck.model, deck.report);
    return deck;
  }

  fs::path decks = DecksFolder();
};

// A square of 1 x 1 from the origin, normal along z. Of a pressure P1 to P4 at its corners round
// from the origin: Fz = (P1 + P2 + P3 + P4) / 4; Mx = (P1 + P2) / 12 + (P3 + P4) / 6;
// My = -(P1 + P4) / 12 - (P2 + P3) / 6. A blank one is P1.
TEST_F(NastranRealLoads, Cquad4) {
  const ImportedDeck deck = Import("cquad4.bdf");
  ASSERT_EQ(deck.model.cases.size(), 8U);
  EXPECT_EQ(deck.model.cases[3].name, "subcase 4");
  const LoadSums s1 = {0, 0, 1, 0.5, -0.5, 0};
  const LoadSums s5 = {0, 0, 7.14 / 4, 3.0 / 12 + 4.14 / 6, -2.0 / 12 - 5.14 / 6, 0};
  ExpectSums(deck, 0, s1);
  ExpectSums(deck, 1, s1);
  ExpectSums(deck, 2, {0, 0, 3, 1.5, -1.5, 0});  // two cards, 1 and 2
  ExpectSums(deck, 3, {0, 0, 1.25, 3.0 / 12 + 2.0 / 6, -2.0 / 12 - 3.0 / 6, 0});
  ExpectSums(deck, 4, s5);
  ExpectSums(deck, 5, {0, 0, 7.81 / 4, 3.0 / 12 + 4.81 / 6, -2.67 / 12 - 5.14 / 6, 0});
  // LOAD 7: 5 x 7 of set 1. LOAD 8: 13 (11 of set 1 + 17 of set 5 + 1.1 of LOAD 7).
  LoadSums s7{}, s8{};
  for (std::size_t k = 0; k < 6; ++k) {
    s7[k] = 35.0 * s1[k];
    s8[k] = 13.0 * (11.0 * s1[k] + 17.0 * s5[k] + 1.1 * s7[k]);
  }
  ExpectSums(deck, 6, s7);
  ExpectSums(deck, 7, s8);
  EXPECT_NEAR(s8[2], 1037.985, 1e-9);
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[7]), "21: 1 1 1 1 1 1\n22: 1 1 1 1 1 1\n");
}

// Half of that square, below its diagonal; area A = 1/2. With P1 to P3: Fz = A (P1 + P2 + P3) / 3;
// Mx = A / 12 (P1 + P2 + 2 P3); My = -A / 12 (2 P1 + 3 P2 + 3 P3).
TEST_F(NastranRealLoads, Ctria3) {
  const ImportedDeck deck = Import("ctria3.bdf");
  ASSERT_EQ(deck.model.cases.size(), 6U);
  ExpectSums(deck, 0, {0, 0, 0.5, 4.0 / 24, -8.0 / 24, 0});
  ExpectSums(deck, 4, {0, 0, 6.14 / 6, 9.28 / 24, -17.42 / 24, 0});
  ExpectSums(deck, 5, {0, 0, 5.81 / 6, 7.48 / 24, -16.43 / 24, 0});
  EXPECT_EQ(EntriesText(deck.report, Fate::NoEffect, "LOAD"),
            "LOAD|no subcase asks for its set|2\n");
}

// Squares of 1 x 1 in the x-y plane; 100 from (0, 0), 500 from (0, 1).
TEST_F(NastranRealLoads, Loads) {
  const ImportedDeck deck = Import("loads.bdf");
  ASSERT_EQ(deck.model.cases.size(), 6U);
  const double h = std::sqrt(0.5);
  ExpectSums(deck, 0, {0, 0, 3, 4.5, -1.5, 0});      // 3 on 500
  ExpectSums(deck, 1, {0, 0, 4, 6.5, -5.5, 0});      // and 1 at (4, 2)
  ExpectSums(deck, 2, {0, 0, 9, 4.5, -4.5, 0});      // PLOAD of 9 on 100
  ExpectSums(deck, 3, {0, 0, 4.5, 1.5, -1.5, 0});    // PLOAD of 9 on half of 100
  ExpectSums(deck, 4, {0, 2 * h, 2 * h, h, -h, h});  // 2 along (0, 1, 1) on 100
  ExpectSums(deck, 5, {0, 0, 2, 1, -1, 0});          // 2 along (0, 0, 0.5)
  EXPECT_EQ(deck.model.cases[5].pressures.size(), 1U);
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[5]),
            "1: 1 1 1 1 1 1\n6: 1 1 1 1 1 1\n11: 1 1 1 1 1 1\n");
}

TEST_F(NastranRealLoads, Cquad4PshellCenter) {
  const ImportedDeck deck = Import("cquad4_pshell_center.bdf");
  ASSERT_EQ(deck.model.cases.size(), 3U);
  EXPECT_EQ(deck.model.cases[0].name, "subcase 1 FORCE load");
  // (1000, 1000, 0) at (0, 0), (50, 0) and (50, 50): Mz = 1000 x 50.
  ExpectSums(deck, 0, {3000, 3000, 0, 0, 0, 50000});
  // 1.1 on 50 x 50, at (25, 25).
  ExpectSums(deck, 1, {0, 0, 2750, 68750, -68750, 0});
  ExpectSums(deck, 2, {0, 0, 2750, 68750, -68750, 0});
}

// 2 x (0, 3, -6) and 3 x 1 x (0, 2, 3) about, at (10, 0, 0): M = (0, 120, 60) + (0, 6, 9).
TEST_F(NastranRealLoads, BarTube2) {
  const ImportedDeck deck = Import("bar_tube2.bdf");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_EQ(deck.model.cases[0].name, "");
  ExpectSums(deck, 0, {0, 6, -12, 0, 126, 69});
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[0]),
            "101: 1 1 1 1 1 1\n201: 1 0 0 1 0 0\n");
}

TEST_F(NastranRealLoads, BarStaticLarge) {
  const ImportedDeck deck = Import("bar_static_large.bdf");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  ExpectSums(deck, 0, {-1, 0, 0, 0, 0, 0});
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[0]), "1: 1 1 1 1 1 1\n");
}

TEST_F(NastranRealLoads, CbarOrientation) {
  const ImportedDeck deck = Import("cbar_orientation.bdf");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_TRUE(deck.model.cases[0].hasAcceleration);
  EXPECT_EQ(deck.model.cases[0].acceleration, (korvex::Vector3{2.0, 0.0, 0.0}));
  ASSERT_EQ(deck.model.supports.size(), 1U);
  EXPECT_EQ(deck.model.supports[0].restraints.size(), 8U);
}

TEST_F(NastranRealLoads, CbaraoCbeamStatic) {
  const ImportedDeck deck = Import("cbarao_cbeam_static.bdf");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  ExpectSums(deck, 0, {1, 0, 0, 0, 0, 0});
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[0]), "1: 1 1 1 1 1 1\n");
}

// Meshes alone: no loads, no supports, nothing asked for.
TEST_F(NastranRealLoads, DecksWithoutLoadsHaveNoCases) {
  for (const char* name :
       {"CQUAD04_.nas", "PBEAM-test.nas", "pbarl_t.bdf", "pbarl_tube.bdf", "pbeaml_l.bdf"}) {
    const ImportedDeck deck = Import(name);
    EXPECT_TRUE(deck.model.cases.empty()) << name;
    EXPECT_TRUE(deck.model.supports.empty()) << name;
  }
}

}  // namespace
}  // namespace kvx::test
