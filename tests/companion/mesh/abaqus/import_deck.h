// Imports a deck from a text, and included texts by name; what the tests ask of the result.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "mesh/abaqus/import_abaqus.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/sum_loads.h"

namespace kvx::test {

using DeckTexts = std::map<std::string, std::string>;

// Throws what the reader throws.
ImportedDeck ImportDeck(const std::string& text, const DeckTexts& included = {});

// The text of the Stop that the reader throws; "" where it throws none.
std::string StopOfDeck(const std::string& text, const DeckTexts& included = {});

// "*CARD: reason" of all entries with this fate, in their order; more than one card: " (3)" behind.
std::vector<std::string> Reasons(const ImportedDeck& deck, Fate fate);

// The group with this name; fails the test and returns an empty one where there is none.
ImportGroup GroupNamed(const ImportedDeck& deck, const std::string& name);

// The numbers of nodes in the deck.
std::vector<std::int64_t> NodesOf(const ImportedDeck& deck, const ImportGroup& group);

// Two flat shells and two beams with all that they need, up to the steps:
//
//   4 --- 3 --- 6     shells 1 (S4: 1 2 3 4) and 2 (S4: 2 5 6 3), 10 x 10 each, normal +z, set
//   |  1  |  2  |     PLATE, t = 2; beams 11 (1 to 2) and 12 (2 to 5) along x, set BEAMS, tube
//   1 --- 2 --- 5     r = 5, t = 1, n1 = y, so n2 = z. E 200000, nu 0.3, density 2, node 1 held.
extern const std::string SmallDeck;

// A step without loads: the decks of tests that compare all that is told have it, for a deck with
// none may be cut off.
extern const std::string EmptyStep;

// The steps behind it.
ImportedDeck ImportSmallDeck(const std::string& steps);

}  // namespace kvx::test
