// Random skyline systems for tests of the vector routines against the plain ones.
//
// Errors depend on how the top rows of columns lie relative to tiles, panels and slices, and on
// which infinities, NaNs and zeros meet in a product.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "skyline/skyline_matrix.h"

namespace korvex::test {

constexpr int AllVectorBits[] = {128, 256, 512};

struct System {
  SkylineMatrix K;
  std::vector<double> F, u;
};

// How the top rows of the columns lie.
enum class Profile {
  Ragged,     // a random top row for each column
  Nodes,      // the same top row for the six columns of a node
  Single,     // as Nodes, but some columns store their diagonal only
  Uneven,     // as Nodes, but some columns have another top row
  Isolated,   // as Nodes, but some nodes are not coupled to any other dof
  NodesHigh,  // as Nodes, all top rows among the first three nodes
};
constexpr Profile AllProfiles[] = {Profile::Ragged, Profile::Nodes,    Profile::Single,
                                   Profile::Uneven, Profile::Isolated, Profile::NodesHigh};

// The kinds of values.
enum class Values {
  Regular,  // small next to the diagonal
  Zeros,    // a third of them zeros of either sign: zero multipliers, zeros of the load
  Special,  // a few infinities, NaNs of both signs, zeros, supports (1e20), subnormal numbers
};
constexpr Values AllValues[] = {Values::Regular, Values::Zeros, Values::Special};

// 0 .. count - 1.
std::int32_t Pick(std::mt19937& random, std::int32_t count);

// NaNs have both signs: which of two NaNs a product returns depends on the order of its operands.
double MakeValue(Values values, std::mt19937& random);

// n equations, columns of about `reach` rows at most.
System MakeSystem(std::int32_t n, std::int32_t reach, Profile profile, Values values,
                  std::mt19937& random);

// Calls check(system) for `count` random systems of at most maxN equations of each profile and kind
// of values, until it fails.
void ForRandomSystems(int count, std::int32_t maxN, unsigned seed,
                      const std::function<void(const System&)>& check);

// The plain factorisation and the back substitution of the program. SolveSkylinePlain's own back
// substitution is another compiled routine: where two different NaNs meet, signs may differ.
void SolveByPlainFactors(System& system);

}  // namespace korvex::test
