#include "tables/model_origin.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kvx {

namespace {

// FNV-1a of Fowler, Noll and Vo with 64 bits, by words instead of bytes; the shift lets the upper
// half of a word, which holds the exponent of a double, act on the lower half of the hash.
constexpr std::uint64_t HashBegin = 14695981039346656037U;
constexpr std::uint64_t HashPrime = 1099511628211U;

void AddWord(std::uint64_t word, std::uint64_t& hash) {
  hash = (hash ^ word) * HashPrime;
  hash ^= hash >> 32U;
}

// Both zeros are one number, and so are all that are none.
void AddCoordinate(double value, std::uint64_t& hash) {
  std::uint64_t word = 0;
  if (std::isnan(value)) {
    word = ~word;
  } else if (value != 0.0) {
    static_assert(sizeof word == sizeof value);
    std::memcpy(&word, &value, sizeof word);
  }
  AddWord(word, hash);
}

void AddRows(const std::vector<std::int32_t>& rows, std::uint64_t& hash) {
  AddWord(rows.size(), hash);
  for (const std::int32_t row : rows) AddWord(static_cast<std::uint32_t>(row), hash);
}

bool HasRow(std::int32_t row, std::size_t count) {
  return row >= 0 && static_cast<std::size_t>(row) < count;
}

}  // namespace

std::uint64_t HashStructure(const korvex::ModelTables& tables) {
  std::uint64_t hash = HashBegin;
  AddWord(tables.Nodes.size(), hash);
  for (const korvex::Node& node : tables.Nodes) {
    AddCoordinate(node.x, hash);
    AddCoordinate(node.y, hash);
    AddCoordinate(node.z, hash);
  }
  AddRows(tables.Shell4Nodes, hash);
  AddRows(tables.Shell3Nodes, hash);
  AddRows(tables.BeamNodes, hash);
  return hash;
}

bool FitsModel(const ModelOrigin& origin, const korvex::ModelTables& tables) {
  return origin.nodes.size() == tables.Nodes.size() &&
         origin.shells4.numbers.size() == tables.Shell4Properties.size() &&
         origin.shells3.numbers.size() == tables.Shell3Properties.size() &&
         origin.beams.numbers.size() == tables.BeamProperties.size() &&
         origin.hash == HashStructure(tables);
}

std::string OriginOfNode(const ModelOrigin& origin, std::int32_t node) {
  if (!HasRow(node, origin.nodes.size())) return "";
  return "node " + std::to_string(origin.nodes[static_cast<std::size_t>(node)]);
}

std::string OriginOfElement(const ModelOrigin& origin, const ElementOrigin& kind,
                            std::int32_t row) {
  if (!HasRow(row, kind.numbers.size())) return "";
  const auto at = static_cast<std::size_t>(row);
  const std::string number = std::to_string(kind.numbers[at]);
  const std::int32_t type = at < kind.types.size() ? kind.types[at] : -1;
  if (!HasRow(type, origin.types.size())) return "element " + number;
  return origin.types[static_cast<std::size_t>(type)] + ' ' + number;
}

void PermuteOrigin(const std::vector<std::int32_t>& order, ModelOrigin& origin) {
  std::vector<std::int64_t> moved(order.size());
  std::vector<std::int32_t> places(order.size());
  for (std::size_t k = 0; k < order.size(); ++k) {
    const auto old = static_cast<std::size_t>(order[k]);
    moved[k] = origin.nodes[old];
    places[old] = static_cast<std::int32_t>(k);
  }
  origin.nodes.swap(moved);
  for (OriginGroup& group : origin.groups) {
    for (std::int32_t& node : group.nodes) node = places[static_cast<std::size_t>(node)];
    std::sort(group.nodes.begin(), group.nodes.end());
  }
}

}  // namespace kvx
