// The loads of one set, as its cards give them: before LOAD scales them and adds them up.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_load_input.h"
#include "mesh/nastran/nastran_load_sets.h"
#include "mesh/nastran/nastran_support_cards.h"
#include "mesh/nastran/nastran_surface_loads.h"

namespace kvx {

struct LoadLeaf {
  ImportCase loads;                            // without supports and prescribed displacements
  std::vector<SetDisplacement> displacements;  // SPCD
};

// The sets that were read.
struct LoadLeaves {
  std::map<std::int64_t, LoadLeaf> leaves;
  SurfaceIndex index;
};

// The loads of a set; its cards are read once.
const LoadLeaf& ReadLoadLeaf(std::int64_t set, const LoadSets& sets, NastranLoadInput& in,
                             LoadLeaves& read);

// Adds a set times a factor to a case, and to what its loads displace.
void AddScaled(const LoadLeaf& leaf, double factor, SourcePlace place, NastranLoadInput& in,
               ImportCase& loads, std::vector<SetDisplacement>& displacements);

// Forces on one node become one row; the rows are ascending by node.
void MergeForces(std::vector<korvex::NodalForce>& forces);

}  // namespace kvx
