#include "mesh/nastran/nastran_nodes.h"

#include <string>

#include "mesh/nastran/nastran_fields.h"
#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

namespace {

// What GRDSET gives to the blank fields of GRID. (Its field 8 belongs to the supports.)
struct GridDefaults {
  std::int64_t position = 0;      // CP
  std::int64_t displacement = 0;  // CD
};

GridDefaults ReadDefaults(const NastranDeck& deck, const std::vector<std::uint32_t>& cards,
                          ImportReport& report) {
  GridDefaults defaults;
  for (std::size_t k = 0; k < cards.size(); ++k) {
    const NastranCard& card = deck.cards[cards[k]];
    if (k > 0) {
      const bool isSame = SayTheSame(deck, deck.cards[cards[0]], card);
      ReportCard(card.name, isSame ? Fate::NoEffect : Fate::Refused,
                 isSame ? "it says again what a card before says" : "a deck can have only one",
                 card.place, "", report);
      continue;
    }
    const NastranRow row{deck, card, report};
    defaults = {IntegerField(row, 3, 0), IntegerField(row, 7, 0)};
  }
  return defaults;
}

// Reads the GRID cards into rows; a number that comes again is reported and left out.
void ReadGrids(const NastranDeck& deck, const std::vector<std::uint32_t>& cards,
               const GridDefaults& defaults, GridTable& table, NastranNumbers& numbers,
               NastranSystems& systems, ImportReport& report) {
  table.grids.reserve(cards.size());
  numbers.nodes.reserve(cards.size());
  systems.displacementSystems.reserve(cards.size());
  for (const std::uint32_t card : cards) {
    const NastranRow row{deck, deck.cards[card], report};
    GridPoint grid;
    grid.card = card;
    grid.number = NeedNumber(row, 2);
    grid.system = IntegerField(row, 3, defaults.position);
    grid.coordinates = {RealField(row, 4, 0.0), RealField(row, 5, 0.0), RealField(row, 6, 0.0)};
    const auto [at, isNew] =
        numbers.nodes.emplace(grid.number, static_cast<std::int32_t>(table.grids.size()));
    if (!isNew) {
      const GridPoint& first = table.grids[static_cast<std::size_t>(at->second)];
      ReportRepeated(deck, deck.cards[first.card], row.card, grid.number, report);
      continue;
    }
    table.grids.push_back(grid);
    systems.displacementSystems.push_back(IntegerField(row, 7, defaults.displacement));
  }
}

void RefuseGrid(const NastranDeck& deck, const GridPoint& grid, std::string_view reason,
                std::int64_t system, ImportReport& report) {
  const NastranCard& card = deck.cards[grid.card];
  ReportCard(card.name, Fate::Refused, reason, card.place,
             CardText(card.name, grid.number) + ", system " + std::to_string(system), report);
}

}  // namespace

void TakeNastranNodes(const NastranDeck& deck, const std::vector<std::uint32_t>& grids,
                      const std::vector<std::uint32_t>& systemCards,
                      const std::vector<std::uint32_t>& defaults, ImportModel& model,
                      NastranNumbers& numbers, NastranSystems& systems, ImportReport& report) {
  GridTable table;
  ReadGrids(deck, grids, ReadDefaults(deck, defaults, report), table, numbers, systems, report);
  table.rows = &numbers.nodes;
  SystemTable systemTable;
  for (const std::uint32_t card : systemCards) ReadSystemCard(deck, card, systemTable, report);
  ResolveSystems(deck, table, systemTable, systems, report);
  model.nodes.reserve(table.grids.size());
  model.nodeNumbers.reserve(table.grids.size());
  for (std::size_t k = 0; k < table.grids.size(); ++k) {
    const GridPoint& grid = table.grids[k];
    korvex::Vector3 point = grid.coordinates;
    if (grid.system != 0) {
      const auto system = systems.systems.find(grid.system);
      if (system == systems.systems.end()) {
        RefuseGrid(deck, grid, "its coordinate system cannot be had", grid.system, report);
      } else {
        point = PointOf(system->second, grid.coordinates);
      }
    }
    std::int64_t& displacement = systems.displacementSystems[k];
    if (displacement != 0 && systems.systems.count(displacement) == 0) {
      RefuseGrid(deck, grid, "its system of displacements cannot be had", displacement, report);
      displacement = 0;
    }
    model.nodes.push_back({point[0], point[1], point[2]});
    model.nodeNumbers.push_back(grid.number);
  }
}

}  // namespace kvx
