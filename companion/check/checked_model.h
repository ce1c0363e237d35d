// A model as the checks see it: its tables, where each row stands, and which rows cannot be relied
// on because a finding names them already. One mistake shall give one finding.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "deck/model_tables.h"
#include "deck/row_listener.h"

namespace kvx {

inline constexpr std::size_t SectionCount =
    static_cast<std::size_t>(korvex::Section::BeamLoads) + 1;

inline constexpr std::size_t IndexOf(korvex::Section section) {
  return static_cast<std::size_t>(section);
}

// The element tables, in the order of the file.
inline constexpr std::array<korvex::Section, 3> ElementSections{
    korvex::Section::Shells4, korvex::Section::Shells3, korvex::Section::Beams};

enum class ElementState : std::uint8_t {
  Sound,
  Broken,    // a finding names it; it connects its nodes, but its shape says nothing
  Unusable,  // its nodes are not known: a reference leads outside, a node stands twice, or its row
             // was not read
};

struct CheckedModel {
  korvex::ModelTables tables;  // as the file was meant: rows that were misread are mended or zero

  // [section][row] the line, 1-based; [section] is empty where the file has no rows
  std::array<std::vector<std::uint32_t>, SectionCount> lines;
  // The line of each section's count; 0 where the section is missing.
  std::array<std::uint32_t, SectionCount> titleLines{};

  // Rows that a finding of the text names. Other checks do not name them again.
  std::array<std::unordered_set<std::int32_t>, SectionCount> doubtfulRows;
  // Those of them whose values are not known.
  std::array<std::unordered_set<std::int32_t>, SectionCount> lostRows;

  // [four-node shells, three-node shells, beams][row]
  std::array<std::vector<ElementState>, 3> states;

  // What could not be examined, as sentences.
  std::vector<std::string> notChecked;
};

inline std::size_t LineOf(const CheckedModel& model, korvex::Section section, std::int32_t row) {
  const std::vector<std::uint32_t>& lines = model.lines[IndexOf(section)];
  const auto at = static_cast<std::size_t>(row);
  return at < lines.size() ? lines[at] : model.titleLines[IndexOf(section)];
}

inline bool IsDoubtful(const CheckedModel& model, korvex::Section section, std::int32_t row) {
  return model.doubtfulRows[IndexOf(section)].count(row) > 0;
}

inline bool IsLost(const CheckedModel& model, korvex::Section section, std::int32_t row) {
  return model.lostRows[IndexOf(section)].count(row) > 0;
}

// The nodes of an element: its connectivity and how many nodes it has.
// section: Shells4, Shells3 or Beams.
struct ElementNodes {
  const std::int32_t* nodes = nullptr;
  std::size_t count = 0;
};
ElementNodes NodesOf(const korvex::ModelTables& tables, korvex::Section section, std::int32_t row);

// How many rows the section has.
std::int32_t CountRows(const korvex::ModelTables& tables, korvex::Section section);

// The index of an element section in CheckedModel::states.
inline std::size_t KindOf(korvex::Section section) {
  return IndexOf(section) - IndexOf(korvex::Section::Shells4);
}

inline ElementState& StateOf(CheckedModel& model, korvex::Section section, std::int32_t row) {
  return model.states[KindOf(section)][static_cast<std::size_t>(row)];
}
inline ElementState StateOf(const CheckedModel& model, korvex::Section section, std::int32_t row) {
  return model.states[KindOf(section)][static_cast<std::size_t>(row)];
}

inline korvex::Vector3 PlaceOf(const korvex::ModelTables& tables, std::int32_t node) {
  const korvex::Node& at = tables.Nodes[static_cast<std::size_t>(node)];
  return {at.x, at.y, at.z};
}

}  // namespace kvx
