// The structure as a block of the page: nodes, elements with their properties, supports. And the
// groups of beams that have the same section.
//
// Elements keep their rows and nodes their numbers. References that lead nowhere become -1; in the
// place of a node that does not exist an element gets one that does, one of its own if it can, so
// that nothing is drawn of it. There must be a node.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "deck/model_tables.h"
#include "view/page_block.h"

namespace kvx {

// The order of kinds: nodes, four-node shells, three-node shells, beams.
inline constexpr std::size_t PageKinds = 4;

// What the checks know of a model's rows.
struct RowKnowledge {
  std::vector<std::int32_t> partOfNode;  // [NPOIN] -1: a node of no element
  // [kind][row] the line in the model file, 1-based; [kind] is empty where that is not known
  std::array<std::vector<std::uint32_t>, PageKinds> lines;
};

// Beams with the same section table and row, offset and mirroring.
struct BeamSections {
  std::vector<korvex::BeamSectionRef> groups;  // in the order of their first beams
  std::vector<std::int32_t> groupOfBeam;       // [NELEM_B] -1: a section that does not exist
};

void GroupBeamSections(const korvex::ModelTables& tables, BeamSections& sections);

// Line of row 0 of each kind, 0 where it is not known.
std::array<std::uint32_t, PageKinds> FirstLines(const RowKnowledge& rows);

// Adds the columns of the structure. The lines of a kind get a column only where rows do not follow
// one another line by line.
void AddStructure(const korvex::ModelTables& tables, const BeamSections& sections,
                  const RowKnowledge& rows, PageBlock& block);

}  // namespace kvx
