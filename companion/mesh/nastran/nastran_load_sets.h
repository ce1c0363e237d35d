// Which load cards belong to which set, and what the combinations (LOAD cards) make of the sets.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "mesh/nastran/nastran_load_input.h"

namespace kvx {

struct LoadSets {
  std::vector<CardOfSet> cards;           // loads; SPCD too
  std::vector<CardOfSet> sums;            // LOAD
  std::vector<std::int64_t> otherSets;    // ascending: sets of loads that have no counterpart
  std::unordered_set<std::int64_t> used;  // sets that a case asks for, also by a LOAD
};

LoadSets ReadLoadSets(NastranLoadInput& in);

// Whether there is a set of this number.
bool HasLoadSet(const LoadSets& sets, std::int64_t set);

// A set of loads and what they are multiplied by.
struct ScaledSet {
  std::int64_t set = 0;
  double factor = 0.0;
};

// What a selection (LOAD = n) is made of, each set once, in an order that the deck alone decides. A
// LOAD may name others, and a set more than once: the factors multiply along the way and add up. A
// LOAD that leads back to itself is refused, as is one that names a set in vain.
std::vector<ScaledSet> FindScaledSets(std::int64_t selection, LoadSets& sets, NastranLoadInput& in);

// The sets that no LOAD names, ascending.
std::vector<std::int64_t> FindRootLoads(const LoadSets& sets, NastranLoadInput& in);

// Reports the cards of sets that no case asks for, and those of sets that a sum of the same number
// takes the place of.
void ReportUnusedLoads(const LoadSets& sets, Fate fate, std::string_view reason,
                       NastranLoadInput& in);

}  // namespace kvx
