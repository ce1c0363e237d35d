// Sets of the numbers 0 .. n - 1, of which each is in one: what is joined, directly or by way of
// others, is in the same.
//
// A set is a tree of links to lower numbers, its lowest number the root (Galler & Fischer 1964);
// paths are halved as they are walked (Tarjan & van Leeuwen 1984).
#pragma once

#include <cstdint>
#include <vector>

namespace korvex {

struct DisjointSets {
  std::vector<std::int32_t> links;  // [n] a number of the same set, none higher; of a root: itself
};

// Makes n sets of one number each.
void InitSets(DisjointSets& sets, std::int32_t n);

// The lowest number of the set of `number`.
std::int32_t FindSet(DisjointSets& sets, std::int32_t number);

// Makes one set of those of two numbers.
void JoinSets(DisjointSets& sets, std::int32_t a, std::int32_t b);

std::int32_t CountSets(const DisjointSets& sets);

// The sets by their lowest numbers.
struct SetList {
  std::vector<std::int32_t> members;  // [n] those of a set together, ascending
  std::vector<std::int32_t> begins;   // [sets + 1] where each set begins there, then n
  std::vector<std::int32_t> places;   // [n] of each number, its place in its set
};
void ListSets(DisjointSets& sets, SetList& list);

}  // namespace korvex
