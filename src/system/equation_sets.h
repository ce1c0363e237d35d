// Sets of equations: those that a coupling joins are in one, directly or by way of others.
//
// Each set is a tree of links to lower equations, its lowest equation the root (Galler & Fischer
// 1964); paths are halved as they are walked (Tarjan & van Leeuwen 1984).
#pragma once

#include <cstdint>
#include <vector>

namespace korvex {

struct EquationSets {
  std::vector<std::int32_t>
      links;  // [n] to an equation of the same set, none higher; roots: itself
};

// Makes n sets of one equation each.
void InitEquationSets(EquationSets& sets, std::int32_t n);

// The lowest equation of the set of `equation`.
std::int32_t FindSet(EquationSets& sets, std::int32_t equation);

// Makes one set of those of two equations.
void JoinSets(EquationSets& sets, std::int32_t a, std::int32_t b);

// Lists the equations set by set.
struct EquationList {
  std::vector<std::int32_t> equations;  // [n] those of a set together, ascending
  std::vector<std::int32_t> begins;     // [sets + 1] where each set begins there, then n
  std::vector<std::int32_t> places;     // [n] of each equation, its place in its set
};
void ListSets(EquationSets& sets, EquationList& list);

}  // namespace korvex
