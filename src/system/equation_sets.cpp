// See equation_sets.h.
#include "system/equation_sets.h"

#include <numeric>

namespace korvex {

void InitEquationSets(EquationSets& sets, std::int32_t n) {
  sets.links.resize(static_cast<std::size_t>(n));
  std::iota(sets.links.begin(), sets.links.end(), 0);
}

std::int32_t FindSet(EquationSets& sets, std::int32_t equation) {
  for (;;) {
    std::int32_t& link = sets.links[static_cast<std::size_t>(equation)];
    if (link == equation) return equation;
    link = sets.links[static_cast<std::size_t>(link)];
    equation = link;
  }
}

void JoinSets(EquationSets& sets, std::int32_t a, std::int32_t b) {
  // The rule, and quick to see: they have been joined before.
  if (sets.links[static_cast<std::size_t>(a)] == sets.links[static_cast<std::size_t>(b)]) return;
  const std::int32_t rootA = FindSet(sets, a);
  const std::int32_t rootB = FindSet(sets, b);
  if (rootA < rootB) {
    sets.links[static_cast<std::size_t>(rootB)] = rootA;
  } else {
    sets.links[static_cast<std::size_t>(rootA)] = rootB;
  }
}

// Equations are met in ascending order: a set's root, its lowest, before all others of it.
void ListSets(EquationSets& sets, EquationList& list) {
  const auto n = static_cast<std::int32_t>(sets.links.size());
  list.places.resize(sets.links.size());
  std::vector<std::int32_t> numbers(sets.links.size());  // of each root, its set's number
  std::vector<std::int32_t> sizes;
  for (std::int32_t i = 0; i < n; ++i) {
    const auto root = static_cast<std::size_t>(FindSet(sets, i));
    if (root == static_cast<std::size_t>(i)) {
      numbers[root] = static_cast<std::int32_t>(sizes.size());
      sizes.push_back(0);
    }
    list.places[static_cast<std::size_t>(i)] = sizes[static_cast<std::size_t>(numbers[root])]++;
  }
  list.begins.assign(1, 0);
  for (const std::int32_t size : sizes) list.begins.push_back(list.begins.back() + size);
  list.equations.resize(sets.links.size());
  for (std::int32_t i = 0; i < n; ++i) {
    const std::int32_t number = numbers[static_cast<std::size_t>(FindSet(sets, i))];
    const std::int32_t at =
        list.begins[static_cast<std::size_t>(number)] + list.places[static_cast<std::size_t>(i)];
    list.equations[static_cast<std::size_t>(at)] = i;
  }
}

}  // namespace korvex
