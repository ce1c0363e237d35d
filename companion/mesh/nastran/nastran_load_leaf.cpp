#include "mesh/nastran/nastran_load_leaf.h"

#include <algorithm>
#include <cstddef>

#include "mesh/nastran/nastran_beam_loads.h"
#include "mesh/nastran/nastran_nodal_loads.h"
#include "mesh/nastran/nastran_supports.h"

namespace kvx {

namespace {

// From how many forces on those on one node are merged while a set is read.
constexpr std::size_t FirstMerge = 100'000;

std::size_t CountRows(const ImportCase& loads) {
  return loads.forces.size() + loads.pressures.size() + loads.lineLoads.size();
}

void TakeCard(std::uint32_t row, NastranLoadInput& in, SurfaceIndex& index, LoadLeaf& leaf) {
  const NastranCard& card = in.deck.cards[row];
  const std::size_t before = leaf.loads.pressures.size() + leaf.loads.lineLoads.size();
  if (card.name == "SPCD") {
    ReadDisplacements(card, row, in, leaf.displacements);
  } else if (card.name == "GRAV") {
    TakeGravity(card, in, leaf.loads);
  } else if (card.name == "PLOAD1") {
    TakeBeamLoad(card, in, leaf.loads);
  } else if (card.name.front() == 'P') {
    TakeSurfaceLoad(card, in, index, leaf.loads);
  } else {
    TakeNodalLoad(card, in, leaf.loads);
  }
  SpendRows(leaf.loads.pressures.size() + leaf.loads.lineLoads.size() - before, card.place, in);
}

}  // namespace

const LoadLeaf& ReadLoadLeaf(std::int64_t set, const LoadSets& sets, NastranLoadInput& in,
                             LoadLeaves& read) {
  const auto [at, isNew] = read.leaves.emplace(set, LoadLeaf{});
  LoadLeaf& leaf = at->second;
  if (!isNew) return leaf;
  const auto [begin, end] = CardsOfSet(sets.cards, set);
  std::size_t full = FirstMerge;
  for (std::size_t i = begin; i < end; ++i) {
    TakeCard(sets.cards[i].card, in, read.index, leaf);
    if (leaf.loads.forces.size() < full) continue;
    // Shells share their nodes: memory holds the forces of nodes, not those of corners.
    MergeForces(leaf.loads.forces);
    full = std::max(FirstMerge, 2 * leaf.loads.forces.size());
  }
  MergeForces(leaf.loads.forces);
  SpendRows(leaf.loads.forces.size(), {}, in);
  MergeDisplacements(leaf.displacements, in);
  return leaf;
}

void AddScaled(const LoadLeaf& leaf, double factor, SourcePlace place, NastranLoadInput& in,
               ImportCase& loads, std::vector<SetDisplacement>& displacements) {
  SpendRows(CountRows(leaf.loads) + leaf.displacements.size(), place, in);
  for (korvex::NodalForce force : leaf.loads.forces) {
    for (double& each : force.components) each *= factor;
    loads.forces.push_back(force);
  }
  for (ImportPressure pressure : leaf.loads.pressures) {
    for (double& each : pressure.q) each *= factor;
    loads.pressures.push_back(pressure);
  }
  for (korvex::BeamLineLoad line : leaf.loads.lineLoads) {
    for (double& each : line.q) each *= factor;
    loads.lineLoads.push_back(line);
  }
  for (SetDisplacement each : leaf.displacements) {
    each.value *= factor;
    displacements.push_back(each);
  }
  loads.hasAcceleration = loads.hasAcceleration || leaf.loads.hasAcceleration;
  for (std::size_t k = 0; k < 3; ++k) {
    loads.acceleration[k] += factor * leaf.loads.acceleration[k];
  }
}

void MergeForces(std::vector<korvex::NodalForce>& forces) {
  std::stable_sort(
      forces.begin(), forces.end(),
      [](const korvex::NodalForce& a, const korvex::NodalForce& b) { return a.node < b.node; });
  std::size_t kept = 0;
  for (const korvex::NodalForce& each : forces) {
    if (kept > 0 && forces[kept - 1].node == each.node) {
      for (std::size_t k = 0; k < 6; ++k) forces[kept - 1].components[k] += each.components[k];
    } else {
      forces[kept++] = each;
    }
  }
  forces.resize(kept);
}

}  // namespace kvx
