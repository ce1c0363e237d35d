// renumber.json: beside a model file whose nodes have new numbers, which numbers they had at first.
//
//   {"kvx": 1, "order": "Sloan", "nodes": "0123456789abcdef",
//    "before": {"size": 9120, "hash": "85944171f73967e8", "entries": 4711, "work": 70011},
//    "after": {...}, "old": [7, 3, ...]}
//
// old: the first number of the node at each row, 0-based. Where a model is renumbered several
// times, it still leads to the first numbers, and "before" is the first file. before, after: size
// and hash (HashBytes) of the model file, entries of the matrix and operations of its
// factorisation. nodes: HashNodes of the renumbered model.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audit/solved_model.h"
#include "deck/model_tables.h"
#include "renumber/order_cost.h"

namespace kvx {

inline constexpr const char* NumberMapFileName = "renumber.json";

struct NumberedFile {
  ModelFileId id;
  OrderCost cost;
};

struct NumberMap {
  std::string order;        // the order's name, as FindBestOrder has it
  std::uint64_t nodes = 0;  // HashNodes of the model with the new numbers
  NumberedFile before, after;
  std::vector<std::int32_t> old;  // [NPOIN] a permutation
};

// A hash of the coordinates, row by row. Loads, supports, properties and elements may be edited;
// a map still fits. Nodes may not: nobody could tell which is which.
std::uint64_t HashNodes(const korvex::ModelTables& tables);

std::string WriteNumberMap(const NumberMap& map);

// Returns false, with the rest of a sentence about the file in `reason`, where the text is no such
// file: "is no JSON".
bool ReadNumberMap(const std::string& text, NumberMap& map, std::string& reason);

}  // namespace kvx
