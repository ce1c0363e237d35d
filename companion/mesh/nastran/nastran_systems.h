// Coordinate systems of a bulk data deck: CORD1R, CORD1C, CORD1S, CORD2R, CORD2C, CORD2S.
//
// A CORD2 system stands in another one, a CORD1 system on three nodes, which may be given in
// another one: they are resolved on request, each once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "base/vector3.h"
#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/nastran/nastran_structure.h"

namespace kvx {

enum class SystemState { Unresolved, InWork, Resolved, Failed };

// A system as its card gives it.
struct SystemCard {
  std::int64_t number = 0;
  std::size_t card = 0;  // row of the deck's cards
  NastranSystemKind kind = NastranSystemKind::Rectangular;
  bool isOnNodes = false;
  std::int64_t reference = 0;               // the system that `points` are given in
  std::array<korvex::Vector3, 3> points{};  // origin, on the z axis, in the x-z plane
  std::array<std::int64_t, 3> nodes{};      // the same as nodes
  SystemState state = SystemState::Unresolved;
};

struct SystemTable {
  std::vector<SystemCard> cards;
  std::unordered_map<std::int64_t, std::size_t> rows;  // number -> row of cards
};

// A node as its card gives it.
struct GridPoint {
  std::int64_t number = 0;
  std::int64_t system = 0;        // CP
  korvex::Vector3 coordinates{};  // in CP
  std::size_t card = 0;           // row of the deck's cards
};
struct GridTable {
  std::vector<GridPoint> grids;
  const std::unordered_map<std::int64_t, std::int32_t>* rows = nullptr;  // number -> row of grids
};

// Reads a card of a coordinate system; a CORD1 card may hold two. Numbers used twice are reported.
void ReadSystemCard(const NastranDeck& deck, std::size_t card, SystemTable& table,
                    ImportReport& report);

// Resolves all systems into systems.systems, with the global one as 0. What cannot be resolved is
// reported as refused and is not there.
void ResolveSystems(const NastranDeck& deck, const GridTable& grids, SystemTable& table,
                    NastranSystems& systems, ImportReport& report);

}  // namespace kvx
