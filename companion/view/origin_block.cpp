#include "view/origin_block.h"

#include <string>
#include <vector>

namespace kvx {

namespace {

// Numbers of a deck may have 64 bits; as doubles they keep 53 of them, and sequences compress as
// those of integers do.
void AddNumbers(const std::string& name, const std::vector<std::int64_t>& numbers,
                PageBlock& block) {
  AddDoubles(name, std::vector<double>(numbers.begin(), numbers.end()), block);
}

void AddElements(const std::string& name, const ElementOrigin& elements, std::size_t typeCount,
                 PageBlock& block) {
  AddNumbers(name, elements.numbers, block);
  std::vector<std::int32_t> types = elements.types;
  types.resize(elements.numbers.size(), -1);
  for (std::int32_t& type : types) {
    if (type < 0 || static_cast<std::size_t>(type) >= typeCount) type = -1;
  }
  AddIntegers(name + ".type", types, block);
}

void AddGroups(const std::string& name, const std::vector<OriginGroup>& groups,
               std::vector<std::int32_t> OriginGroup::*rows, PageBlock& block) {
  std::vector<std::int32_t> all;
  for (const OriginGroup& group : groups) {
    all.insert(all.end(), (group.*rows).begin(), (group.*rows).end());
  }
  AddIntegers(name + ".groups", all, block);
}

}  // namespace

void AddOrigin(const ModelOrigin& origin, PageBlock& block) {
  if (!HasOrigin(origin)) return;
  AddNumbers("origin.node", origin.nodes, block);
  AddElements("origin.shell", origin.shells4, origin.types.size(), block);
  AddElements("origin.triangle", origin.shells3, origin.types.size(), block);
  AddElements("origin.beam", origin.beams, origin.types.size(), block);
  AddGroups("origin.node", origin.groups, &OriginGroup::nodes, block);
  AddGroups("origin.shell", origin.groups, &OriginGroup::shells4, block);
  AddGroups("origin.triangle", origin.groups, &OriginGroup::shells3, block);
  AddGroups("origin.beam", origin.groups, &OriginGroup::beams, block);
}

}  // namespace kvx
