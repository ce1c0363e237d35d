// The text of a model file by its lines, for planting mistakes at random places.
#pragma once

#include <string>
#include <vector>

#include "support/good_models.h"

namespace kvx::test {

struct TextDeck {
  std::vector<std::string> lines;  // without line feeds; line k + 1 of the file is lines[k]
};

TextDeck SplitDeck(const std::string& text);
std::string JoinDeck(const TextDeck& deck);

// The index of the line with the section's count. key: "NPOIN".
std::size_t FindTitle(const TextDeck& deck, const std::string& key);
int CountOf(const TextDeck& deck, const std::string& key);
void SetCount(TextDeck& deck, const std::string& key, const std::string& count);

// How many lines a row of the section has, in a file as our writer writes it.
std::size_t LinesPerRow(const std::string& key);

// The index of a row's first line.
std::size_t RowLine(const TextDeck& deck, const std::string& key, int row);

// A random section of `keys` with at least `least` rows; "" if there is none.
std::string AnySection(const TextDeck& deck, const std::vector<std::string>& keys, int least,
                       Dice& dice);

// All keys in the order of the file; those whose rows stand on one line; those with a running
// number before them.
extern const std::vector<std::string> AllKeys, LineKeys, BlockKeys;

}  // namespace kvx::test
