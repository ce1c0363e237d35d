// *NSET and *ELSET, and what data lines name: a set, or a node or element by its number.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// The row of the set with this name, made where it is not there. The keyword says whether it
// belongs to the part.
std::int32_t SetRowOf(AbaqusImport& import, bool hasElements, std::string_view name,
                      const AbaqusKeyword& keyword);

// Takes *NSET and *ELSET in the order of the deck; sorts all sets and removes what they hold twice.
// Nodes and elements must be there.
void TakeAbaqusSets(AbaqusImport& import);

// What a data line names.
struct AbaqusTargets {
  bool isKnown = false;      // else neither a set nor a number has this name
  std::int32_t set = -1;     // row of the mesh's sets; -1: a single one
  std::int32_t single = -1;  // row of nodes, or code
};

// name: as it stands in the deck, possibly with the instance's name and a point before it.
AbaqusTargets FindTargets(const AbaqusImport& import, bool wantsElements, std::string_view name,
                          const AbaqusKeyword& keyword);

inline std::size_t CountTargets(const AbaqusImport& import, const AbaqusTargets& targets) {
  if (!targets.isKnown) return 0;
  if (targets.set < 0) return 1;
  return import.mesh.sets[static_cast<std::size_t>(targets.set)].members.size();
}

inline std::int32_t TargetAt(const AbaqusImport& import, const AbaqusTargets& targets,
                             std::size_t k) {
  if (targets.set < 0) return targets.single;
  return import.mesh.sets[static_cast<std::size_t>(targets.set)].members[k];
}

}  // namespace kvx
