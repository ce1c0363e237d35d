#include "mesh/abaqus/import_deck.h"

#include <gtest/gtest.h>

#include "report/stop.h"

namespace kvx::test {

ImportedDeck ImportDeck(const std::string& text, const DeckTexts& included) {
  ImportedDeck deck;
  const auto include = [&included](const std::string& name, std::string& content) {
    const auto found = included.find(name);
    if (found != included.end()) content = found->second;
    return found != included.end();
  };
  ImportAbaqus({"deck.inp", text}, include, deck.model, deck.report);
  return deck;
}

std::string StopOfDeck(const std::string& text, const DeckTexts& included) {
  try {
    ImportDeck(text, included);
  } catch (const korvex::Stop& stop) {
    return stop.text;
  }
  return "";
}

std::vector<std::string> Reasons(const ImportedDeck& deck, Fate fate) {
  std::vector<std::string> reasons;
  for (const ReportEntry& entry : deck.report.entries) {
    if (entry.fate != fate) continue;
    const std::string count = entry.count > 1 ? " (" + std::to_string(entry.count) + ")" : "";
    reasons.push_back(entry.card + ": " + entry.reason + count);
  }
  return reasons;
}

ImportGroup GroupNamed(const ImportedDeck& deck, const std::string& name) {
  for (const ImportGroup& group : deck.model.groups) {
    if (group.name == name) return group;
  }
  ADD_FAILURE() << "no group " << name;
  return {};
}

std::vector<std::int64_t> NodesOf(const ImportedDeck& deck, const ImportGroup& group) {
  std::vector<std::int64_t> numbers;
  for (const std::int32_t node : group.nodes) {
    numbers.push_back(deck.model.nodeNumbers.at(static_cast<std::size_t>(node)));
  }
  return numbers;
}

const std::string SmallDeck =
    "*NODE, NSET=ALL\n1,0,0,0\n2,10,0,0\n3,10,10,0\n4,0,10,0\n5,20,0,0\n6,20,10,0\n"
    "*ELEMENT, TYPE=S4, ELSET=PLATE\n1,1,2,3,4\n2,2,5,6,3\n"
    "*ELEMENT, TYPE=B31, ELSET=BEAMS\n11,1,2\n12,2,5\n"
    "*NSET, NSET=TIP\n5,6\n"
    "*MATERIAL, NAME=STEEL\n*ELASTIC\n200000.,0.3\n*DENSITY\n2.\n"
    "*SHELL SECTION, ELSET=PLATE, MATERIAL=STEEL\n2.\n"
    "*BEAM SECTION, ELSET=BEAMS, MATERIAL=STEEL, SECTION=PIPE\n5.,1.\n0.,1.,0.\n"
    "*BOUNDARY\n1,1,6\n";

const std::string EmptyStep = "*STEP\n*STATIC\n*END STEP\n";

ImportedDeck ImportSmallDeck(const std::string& steps) { return ImportDeck(SmallDeck + steps); }

}  // namespace kvx::test
