// The support cards of a bulk data deck: GRID's own (PS, also from GRDSET), SPC, SPC1, SPCADD, and
// the displacements of SPC and SPCD. Components are those of each node's own system.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "mesh/nastran/nastran_load_input.h"

namespace kvx {

// Which directions of a node are supported: bit k for component k + 1.
struct SupportedNode {
  std::int32_t node = -1;
  std::uint8_t components = 0;
};

// A displacement of a node in a direction of its own system.
struct SetDisplacement {
  std::int32_t node = -1;
  std::int32_t component = 0;  // 0 to 5
  double value = 0.0;
  std::uint32_t card = 0;  // row of the deck's cards
};

// What the SPC and SPC1 of one set say.
struct SupportLeaf {
  std::vector<SupportedNode> nodes;  // not sorted
  std::vector<SetDisplacement> displacements;
};

// What all selections share.
struct SupportSets {
  std::vector<SupportedNode> permanent;        // GRID's own; ascending
  std::vector<std::uint32_t> gridCards;        // [nodes] row of the deck's cards
  std::vector<CardOfSet> cards;                // SPC, SPC1
  std::vector<CardOfSet> sums;                 // SPCADD
  std::map<std::int64_t, SupportLeaf> leaves;  // sets that were read
  std::unordered_set<std::int64_t> used;       // sets that a case asks for, also by an SPCADD
  std::vector<bool> isToldOf;                  // [nodes] whether its system was reported
};

// Reads GRID's own supports, and which cards belong to which set.
SupportSets ReadSupportSets(NastranLoadInput& in);

// Whether there is a set of this number.
bool HasSupportSet(const SupportSets& sets, std::int64_t set);

// The sets of SPC and SPC1 that a selection (SPC = n) is made of, ascending: an SPCADD stands for
// the sets that it names. What it names in vain is reported.
std::vector<std::int64_t> FindLeaves(std::int64_t selection, SupportSets& sets,
                                     NastranLoadInput& in);

// What the cards of a set say; it is read once.
const SupportLeaf& ReadLeaf(std::int64_t set, SupportSets& sets, NastranLoadInput& in);

// Sorts by node; a node's components become one entry.
void MergeSupported(std::vector<SupportedNode>& nodes);

// Reads the displacements of an SPC or SPCD, zeros too.
void ReadDisplacements(const NastranCard& card, std::uint32_t cardRow, NastranLoadInput& in,
                       std::vector<SetDisplacement>& displacements);

// The sets that no SPCADD names, ascending; without set 0.
std::vector<std::int64_t> FindRootSupports(const SupportSets& sets, const NastranLoadInput& in);

// Reports the cards of sets that no case asks for, and those of sets that a sum of the same number
// takes the place of.
void ReportUnusedSupports(const SupportSets& sets, Fate fate, std::string_view reason,
                          NastranLoadInput& in);

}  // namespace kvx
