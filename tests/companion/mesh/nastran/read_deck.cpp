#include "mesh/nastran/read_deck.h"

#include "report/stop.h"

namespace kvx::test {

void ReadDeckText(const std::string& text, DeckOfText& read, const IncludedTexts& included) {
  read.file = {"deck.bdf", text};
  const auto include = [&included](const std::string& name, std::string& content) {
    const auto found = included.find(name);
    if (found != included.end()) content = found->second;
    return found != included.end();
  };
  ReadNastranDeck(read.file, include, read.deck, read.report);
}

std::string FieldsText(const DeckOfText& read, std::size_t k) {
  std::string text;
  std::size_t end = 0;
  const NastranCard& card = read.deck.cards.at(k);
  for (std::size_t f = 0; f < card.fieldCount; ++f) {
    if (f > 0) text += '|';
    text += DataField(read.deck, card, f);
    if (!DataField(read.deck, card, f).empty()) end = text.size();
  }
  return text.substr(0, end);
}

std::string StopText(const std::function<void()>& action) {
  try {
    action();
  } catch (const korvex::Stop& stop) {
    return stop.text;
  }
  return "";
}

std::string DeckStopText(const std::string& text, const IncludedTexts& included) {
  return StopText([&] {
    DeckOfText read;
    ReadDeckText(text, read, included);
  });
}

}  // namespace kvx::test
