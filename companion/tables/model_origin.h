// Where the rows of an imported model come from: numbers, types, names and groups of its deck.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

struct ElementOrigin {
  std::vector<std::int64_t> numbers;  // [rows] the deck's
  std::vector<std::int32_t> types;    // [rows] rows of ModelOrigin::types
};

// Rows of the model's tables, ascending.
struct OriginGroup {
  std::string name;
  std::string source;  // how the deck calls it: "physical surface 3"
  std::vector<std::int32_t> nodes, shells4, shells3, beams;
};

struct ModelOrigin {
  std::string source;               // the deck's file name, UTF-8
  std::string format;               // "gmsh 4.1"
  std::uint64_t hash = 0;           // HashStructure of the model it belongs to
  std::vector<std::int64_t> nodes;  // [NPOIN]
  std::vector<std::string> types;   // "CQUAD4", "S4"
  ElementOrigin shells4, shells3, beams;
  std::vector<std::string> materials, thicknesses;           // [NMT], [NTK] names
  std::vector<std::string> sectionsT, sectionsL, sectionsC;  // [NTBS], [NLBS], [NCBS]
  std::vector<OriginGroup> groups;
};

// Whether there is one: an origin that is not known has no nodes.
inline bool HasOrigin(const ModelOrigin& origin) { return !origin.nodes.empty(); }

// A hash of what the origin refers to: the coordinates of the nodes and the nodes of the elements.
// Loads, supports, thicknesses and sections may be edited; the origin still fits. The same on every
// machine.
std::uint64_t HashStructure(const korvex::ModelTables& tables);

// Whether the origin is that of a model with these tables.
bool FitsModel(const ModelOrigin& origin, const korvex::ModelTables& tables);

// "node 1017"; of an element: "CQUAD4 4711", or "element 4711" where its type is not known. Without
// such a row: "".
std::string OriginOfNode(const ModelOrigin& origin, std::int32_t node);
std::string OriginOfElement(const ModelOrigin& origin, const ElementOrigin& kind, std::int32_t row);

// Moves the origin's nodes to a new order: order[k] is the old row of the node at row k. `order`
// must hold each row of the nodes once. The hash stays; it is the caller's to set anew.
void PermuteOrigin(const std::vector<std::int32_t>& order, ModelOrigin& origin);

}  // namespace kvx
