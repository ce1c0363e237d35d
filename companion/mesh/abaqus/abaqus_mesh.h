// What the routines of this room share: the deck, what has been read of it, and where it goes to.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/vector3.h"
#include "mesh/abaqus/abaqus_deck.h"
#include "mesh/abaqus/abaqus_numbers.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx {

// An element as sets and loads name it: its kind and its row in one number.
enum class AbaqusElementKind : std::int32_t {
  Shell = 0,  // a row of the model's shells
  Beam = 1,   // a row of the model's beams
  Other = 2,  // one that is not taken over
};
inline constexpr std::int32_t AbaqusElementKinds = 4;  // room for the kind in the lowest two bits

inline std::int32_t ElementCode(AbaqusElementKind kind, std::size_t row) {
  return static_cast<std::int32_t>(row) * AbaqusElementKinds + static_cast<std::int32_t>(kind);
}
inline AbaqusElementKind KindOfCode(std::int32_t code) {
  return static_cast<AbaqusElementKind>(code % AbaqusElementKinds);
}
inline std::int32_t RowOfCode(std::int32_t code) { return code / AbaqusElementKinds; }

// A set of nodes or elements.
struct AbaqusSet {
  std::string name;  // as the deck writes it first, without quotes
  bool hasElements = false;
  bool isOfPart = false;
  std::vector<std::int32_t> members;  // rows of nodes, or codes of elements
  SourcePlace place;
};

// How the one instance of an assembly stands: moved first, then turned about an axis:
// x' = R (x + shift - centre) + centre.
struct AbaqusPlacing {
  bool isPlaced = false;
  bool isTurned = false;
  korvex::Vector3 shift{};
  korvex::Vector3 centre{};  // a point of the axis
  // The turned global axes.
  std::array<korvex::Vector3, 3> rotation{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
};

struct AbaqusMesh {
  AbaqusNumbers nodes;     // to rows of the model's nodes
  AbaqusNumbers elements;  // to codes
  std::vector<AbaqusSet> sets;
  std::unordered_map<std::string, std::int32_t> setRows;  // key (abaqus_sets.h) -> row of sets
  // Third nodes of beams, which give their n1. [..] row of beams, row of nodes; ascending
  std::vector<std::pair<std::int32_t, std::int32_t>> axisNodes;
  AbaqusPlacing placing;
  bool hasAssembly = false;
  std::size_t budget = 0;  // what lists may still hold in all
};

struct AbaqusImport {
  const AbaqusDeck& deck;
  AbaqusMesh& mesh;
  ImportModel& model;
  ImportReport& report;
};

// Takes `count` entries off what the deck's lists may hold. A deck of some kilobytes can name each
// set in each other set, or load each node on each line, and so ask for more than memory holds; no
// deck that people mean comes near the limit. Ends the import where it is reached.
void SpendEntries(AbaqusImport& import, std::size_t count, SourcePlace place);

// Reports the parameters of a keyword that are not among those known.
template <std::size_t count>
void ReportOtherParameters(AbaqusImport& import, const AbaqusKeyword& keyword,
                           const std::array<std::string_view, count>& known) {
  for (std::size_t k = 0; k < keyword.parameterCount; ++k) {
    const AbaqusParameter& parameter = import.deck.parameters[keyword.firstParameter + k];
    bool isKnown = false;
    for (const std::string_view name : known) isKnown = isKnown || parameter.name == name;
    if (isKnown) continue;
    ReportCard("*" + keyword.name, Fate::Limited,
               "its parameter " + parameter.name + " is not taken over", keyword.place, {},
               import.report);
  }
}

// What a message says of an element: "S4 17".
std::string ExampleOf(const AbaqusImport& import, std::int32_t code);

}  // namespace kvx
