#include "mesh/gmsh/gmsh_same_elements.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <tuple>
#include <utility>

#include "mesh/gmsh/gmsh_element_types.h"

namespace kvx {

namespace {

using NodeCycle = std::array<std::int64_t, 4>;

struct ElementKey {
  NodeCycle nodes{};
  std::int32_t type = 0;
  std::int32_t entity = 0;
  std::uint32_t element = 0;
  bool isReversed = false;  // `nodes` goes the other way round than the element
};

auto OrderOf(const ElementKey& key) {
  return std::tie(key.nodes, key.type, key.entity, key.element);
}

bool IsSame(const ElementKey& a, const ElementKey& b) {
  return a.nodes == b.nodes && a.type == b.type && a.entity == b.entity;
}

// The smallest of all sequences that run round the element, in both directions.
ElementKey MakeKey(const GmshElement& element, std::size_t row) {
  const std::size_t count = FindGmshType(element.type)->nodeCount;
  ElementKey key{{}, element.type, element.entity, static_cast<std::uint32_t>(row), false};
  bool isFirst = true;
  for (std::size_t start = 0; start < count; ++start) {
    for (const bool isBackward : {false, true}) {
      NodeCycle nodes{};
      for (std::size_t k = 0; k < count; ++k) {
        // Backward a shell keeps its start, a line changes its ends.
        const std::size_t backward = element.type == GmshLine ? count - 1 - k : count - k;
        const std::size_t from = (start + (isBackward ? backward : k)) % count;
        nodes[k] = element.nodes[from];
      }
      if (isFirst || nodes < key.nodes) {
        key.nodes = nodes;
        key.isReversed = isBackward;
      }
      isFirst = false;
    }
  }
  key.isReversed = key.isReversed != (element.physical < 0);
  return key;
}

// Keys of the same element, in the order of the file.
void JoinRun(const GmshMesh& mesh, const ElementKey* begin, const ElementKey* end,
             std::vector<GmshSameElement>& same) {
  std::vector<const ElementKey*> firsts;
  std::map<std::int64_t, std::size_t> seen;  // group -> how many of it
  for (const ElementKey* key = begin; key != end; ++key) {
    const std::int64_t physical = mesh.elements[key->element].physical;
    const std::size_t which = seen[physical < 0 ? -physical : physical]++;
    if (which == firsts.size()) firsts.push_back(key);
    same[key->element] = {firsts[which]->element, key->isReversed != firsts[which]->isReversed};
  }
}

}  // namespace

void FindSameElements(const GmshMesh& mesh, std::vector<GmshSameElement>& same) {
  same.resize(mesh.elements.size());
  std::vector<ElementKey> keys;
  keys.reserve(mesh.elements.size());
  for (std::size_t k = 0; k < mesh.elements.size(); ++k) {
    keys.push_back(MakeKey(mesh.elements[k], k));
    same[k] = {k, false};
  }
  std::sort(keys.begin(), keys.end(),
            [](const ElementKey& a, const ElementKey& b) { return OrderOf(a) < OrderOf(b); });
  const ElementKey* end = keys.data() + keys.size();
  for (const ElementKey* run = keys.data(); run != end;) {
    const ElementKey* next =
        std::find_if(run + 1, end, [&](const ElementKey& key) { return !IsSame(*run, key); });
    if (next - run > 1) JoinRun(mesh, run, next, same);
    run = next;
  }
}

void TurnElement(GmshElement& element) {
  if (element.type == GmshLine) std::swap(element.nodes[0], element.nodes[1]);
  if (element.type == GmshTriangle) std::swap(element.nodes[1], element.nodes[2]);
  if (element.type == GmshQuadrangle) std::swap(element.nodes[1], element.nodes[3]);
}

}  // namespace kvx
