// From the support cards of a bulk data deck to the supports of a model, which lie along global
// axes.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_load_input.h"
#include "mesh/nastran/nastran_support_cards.h"

namespace kvx {

// The supports that a selection (SPC = n) has.
struct NastranSupports {
  std::int32_t row = -1;                       // of the model's supports; -1: none
  std::vector<SupportedNode> nodes;            // ascending, each once
  std::vector<SetDisplacement> displacements;  // by SPC; ascending by node and component
};

// Makes the supports of a selection (SPC = set; 0: GRID's own alone) and adds them to `made`, the
// model's supports. A node that is supported along axes that are not global ones is refused.
NastranSupports SelectSupports(std::int64_t set, SourcePlace place, SupportSets& sets,
                               NastranLoadInput& in, std::vector<SupportSet>& made);

// Adds what a case prescribes: the displacements of its supports (SPC), or, where its loads (SPCD)
// name the same direction, those. byLoads: of several sets; they add up. A direction without
// support is refused.
void AddPrescribed(const NastranSupports& supports, std::vector<SetDisplacement> byLoads,
                   const SupportSets& sets, NastranLoadInput& in, ImportCase& loads);

// Sorts by node and component. Two cards that disagree on a direction are refused.
void MergeDisplacements(std::vector<SetDisplacement>& all, NastranLoadInput& in);

}  // namespace kvx
