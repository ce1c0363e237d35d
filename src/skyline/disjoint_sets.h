// Disjoint sets (union-find) of the numbers 0 .. n - 1: each number belongs to exactly one set.
//
// Each set is a tree: every number links to a lower number of its set, the lowest number is the
// root and links to itself (Galler & Fischer 1964). FindSet shortens the paths by halving (Tarjan &
// van Leeuwen 1984).
#pragma once

#include <cstdint>
#include <vector>

namespace korvex {

struct DisjointSets {
  std::vector<std::int32_t> links;  // [n] the parent in the tree; a root is its own parent
};

// Makes n sets of one number each.
void InitSets(DisjointSets& sets, std::int32_t n);

// The root, that is the lowest number, of the set that holds `number`.
std::int32_t FindSet(DisjointSets& sets, std::int32_t number);

// Joins the sets that hold a and b.
void JoinSets(DisjointSets& sets, std::int32_t a, std::int32_t b);

std::int32_t CountSets(const DisjointSets& sets);

// All sets, in ascending order of their lowest numbers.
struct SetList {
  std::vector<std::int32_t> members;  // [n] set after set, each ascending
  std::vector<std::int32_t>
      begins;  // [sets + 1] position in `members` where each set begins, then n
  std::vector<std::int32_t> places;  // [n] position of each number within its set
};
void ListSets(DisjointSets& sets, SetList& list);

}  // namespace korvex
