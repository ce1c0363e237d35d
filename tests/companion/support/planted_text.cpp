#include "support/planted_text.h"

namespace kvx::test {

const std::vector<std::string> AllKeys{"NMT",   "NTK",         "NTBS",        "NLBS",    "NCBS",
                                       "NPOIN", "NELEM_S_4ND", "NELEM_S_3ND", "NELEM_B", "NRN",
                                       "NFOR",  "NDL_S_4ND",   "NDL_S_3ND",   "NDL_B"};
const std::vector<std::string> LineKeys{"NPOIN", "NELEM_S_4ND", "NELEM_S_3ND", "NELEM_B", "NRN",
                                        "NFOR",  "NDL_S_4ND",   "NDL_S_3ND",   "NDL_B"};
const std::vector<std::string> BlockKeys{"NMT", "NTK", "NTBS", "NLBS", "NCBS"};

TextDeck SplitDeck(const std::string& text) {
  TextDeck deck;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t feed = text.find('\n', begin);
    const std::size_t end = feed == std::string::npos ? text.size() : feed;
    deck.lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return deck;
}

std::string JoinDeck(const TextDeck& deck) {
  std::string text;
  for (const std::string& line : deck.lines) text += line + "\n";
  return text;
}

std::size_t FindTitle(const TextDeck& deck, const std::string& key) {
  std::size_t line = 0;
  while (deck.lines.at(line).find(":" + key + "=") == std::string::npos) ++line;
  return line;
}

int CountOf(const TextDeck& deck, const std::string& key) {
  const std::string& title = deck.lines[FindTitle(deck, key)];
  return std::stoi(title.substr(title.find('=') + 1));
}

void SetCount(TextDeck& deck, const std::string& key, const std::string& count) {
  std::string& title = deck.lines[FindTitle(deck, key)];
  title = title.substr(0, title.find('=') + 1) + count;
}

std::size_t LinesPerRow(const std::string& key) {
  if (key == "NMT") return 4;
  if (key == "NTK") return 2;
  if (key == "NTBS" || key == "NLBS") return 5;
  return key == "NCBS" ? 3 : 1;
}

std::size_t RowLine(const TextDeck& deck, const std::string& key, int row) {
  return FindTitle(deck, key) + 1 + LinesPerRow(key) * static_cast<std::size_t>(row);
}

std::string AnySection(const TextDeck& deck, const std::vector<std::string>& keys, int least,
                       Dice& dice) {
  std::vector<std::string> fitting;
  for (const std::string& key : keys) {
    if (CountOf(deck, key) >= least) fitting.push_back(key);
  }
  if (fitting.empty()) return "";
  return fitting[static_cast<std::size_t>(
      RollInteger(dice, 0, static_cast<int>(fitting.size()) - 1))];
}

}  // namespace kvx::test
