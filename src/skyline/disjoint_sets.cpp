#include "skyline/disjoint_sets.h"

#include <numeric>

namespace korvex {

void InitSets(DisjointSets& sets, std::int32_t n) {
  sets.links.resize(static_cast<std::size_t>(n));
  std::iota(sets.links.begin(), sets.links.end(), 0);
}

std::int32_t FindSet(DisjointSets& sets, std::int32_t number) {
  for (;;) {
    std::int32_t& link = sets.links[static_cast<std::size_t>(number)];
    if (link == number) return number;
    link = sets.links[static_cast<std::size_t>(link)];
    number = link;
  }
}

void JoinSets(DisjointSets& sets, std::int32_t a, std::int32_t b) {
  // Common case: same parent already.
  if (sets.links[static_cast<std::size_t>(a)] == sets.links[static_cast<std::size_t>(b)]) return;
  const std::int32_t rootA = FindSet(sets, a);
  const std::int32_t rootB = FindSet(sets, b);
  if (rootA < rootB) {
    sets.links[static_cast<std::size_t>(rootB)] = rootA;
  } else {
    sets.links[static_cast<std::size_t>(rootA)] = rootB;
  }
}

std::int32_t CountSets(const DisjointSets& sets) {
  std::int32_t count = 0;
  for (std::size_t i = 0; i < sets.links.size(); ++i) {
    if (sets.links[i] == static_cast<std::int32_t>(i)) ++count;
  }
  return count;
}

// Numbers are visited in ascending order, so a root comes before all other numbers of its set.
void ListSets(DisjointSets& sets, SetList& list) {
  const auto n = static_cast<std::int32_t>(sets.links.size());
  list.places.resize(sets.links.size());
  std::vector<std::int32_t> setOfRoot(sets.links.size());
  std::vector<std::int32_t> sizes;
  for (std::int32_t i = 0; i < n; ++i) {
    const auto root = static_cast<std::size_t>(FindSet(sets, i));
    if (root == static_cast<std::size_t>(i)) {
      setOfRoot[root] = static_cast<std::int32_t>(sizes.size());
      sizes.push_back(0);
    }
    list.places[static_cast<std::size_t>(i)] = sizes[static_cast<std::size_t>(setOfRoot[root])]++;
  }
  list.begins.assign(1, 0);
  for (const std::int32_t size : sizes) list.begins.push_back(list.begins.back() + size);
  list.members.resize(sets.links.size());
  for (std::int32_t i = 0; i < n; ++i) {
    const std::int32_t set = setOfRoot[static_cast<std::size_t>(FindSet(sets, i))];
    const std::int32_t at =
        list.begins[static_cast<std::size_t>(set)] + list.places[static_cast<std::size_t>(i)];
    list.members[static_cast<std::size_t>(at)] = i;
  }
}

}  // namespace korvex
