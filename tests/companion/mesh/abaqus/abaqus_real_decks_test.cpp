// Decks of other projects, where they lie beside the project: what comes out, and that the report
// lists exactly their keywords. Skipped without them.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "mesh/abaqus/import_deck.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;

// The text of a deck; "" where it is not there.
std::string ReadDeck(const std::string& name) {
  std::ifstream file(std::string(KORVEX_SOURCE) + "/../shared/decks/abaqus/" + name,
                     std::ios::binary);
  std::ostringstream text;
  if (file) text << file.rdbuf();
  return text.str();
}

// Lines that begin with one star, up to a comma, in upper case: an independent count.
std::map<std::string, std::size_t> CountKeywords(const std::string& text) {
  std::map<std::string, std::size_t> counts;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.substr(0, 1) != "*" || line.substr(0, 2) == "**") continue;
    std::string name = line.substr(0, line.find_first_of(",\r"));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    ++counts[name];
  }
  return counts;
}

void ExpectCards(const ImportedDeck& deck, const std::string& text) {
  std::map<std::string, std::size_t> cards;
  for (const auto& [name, count] : deck.report.cards) cards[name] = count.count;
  EXPECT_EQ(cards, CountKeywords(text));
}

// Its element 7 ends at node 2, which the deck does not have.
TEST(AbaqusRealDecks, MeshOfSlenderBeams) {
  const std::string text = ReadDeck("mesh.inp");
  if (text.empty()) GTEST_SKIP() << "no decks beside the project";
  const ImportedDeck deck = ImportDeck(text);
  ExpectCards(deck, text);
  EXPECT_EQ(deck.model.nodes.size(), 7U);
  EXPECT_EQ(deck.model.beams.size(), 6U);
  EXPECT_EQ(Reasons(deck, Fate::Refused),
            Texts{"*ELEMENT: an element has a node that does not exist"});
  EXPECT_EQ(Reasons(deck, Fate::Limited).size(), 1U);
  EXPECT_EQ(Reasons(deck, Fate::Lost).size(), 0U);
}

TEST(AbaqusRealDecks, PlateWithHole) {
  const std::string text = ReadDeck("plate_with_hole.inp");
  if (text.empty()) GTEST_SKIP() << "no decks beside the project";
  const ImportedDeck deck = ImportDeck(text);
  ExpectCards(deck, text);
  EXPECT_EQ(deck.model.nodes.size(), 13U);
  EXPECT_EQ(deck.model.shells.size(), 8U);
  ASSERT_EQ(deck.model.thicknesses.size(), 2U);
  EXPECT_EQ(deck.model.thicknesses[0].TK, 2.0);
  EXPECT_EQ(deck.model.thicknesses[1].TK, 1.5);
  ASSERT_EQ(deck.model.materials.size(), 2U);
  EXPECT_EQ(deck.model.materials[1].values.E, 70000.0);
  EXPECT_TRUE(Reasons(deck, Fate::Refused).empty());
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            (Texts{"*ELEMENT: MASS: springs, masses, dampers and connectors have no counterpart",
                   "*MASS: springs, dampers, masses and connectors have no counterpart"}));
  EXPECT_EQ(
      Reasons(deck, Fate::Limited),
      (Texts{"*PLASTIC: materials are linear elastic here",
             "*DSLOAD: faces S1 and S2 of shells are read as SNEG and SPOS, as in CalculiX (4)",
             "*STEP: NLGEOM: solved as linear"}));
  ASSERT_EQ(deck.model.cases.size(), 2U);
  // Nodes 3, 4 and 7 get 100 along y, then 200; the right edge moves by 0.5, then 1.
  EXPECT_NEAR(SumLoads(deck.model, deck.model.cases[0])[1], 300.0, 1e-9);
  EXPECT_NEAR(SumLoads(deck.model, deck.model.cases[1])[1], 600.0, 1e-9);
  ASSERT_EQ(deck.model.cases[1].prescribed.size(), 3U);
  EXPECT_EQ(deck.model.cases[0].prescribed[0].value, 0.5);
  EXPECT_EQ(deck.model.cases[1].prescribed[2].value, 1.0);
  // OP=NEW of step 2 lets go of node 9, which was held along z.
  EXPECT_EQ(deck.model.cases[0].supports, 0);
  EXPECT_EQ(deck.model.cases[1].supports, 1);
}

}  // namespace
}  // namespace kvx::test
