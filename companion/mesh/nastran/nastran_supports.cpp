#include "mesh/nastran/nastran_supports.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <tuple>
#include <utility>

#include "mesh/nastran/nastran_support_axes.h"

namespace kvx {

namespace {

using korvex::Vector3;

constexpr std::size_t Components = 6;

bool ComesBefore(const SetDisplacement& a, const SetDisplacement& b) {
  return std::tie(a.node, a.component) < std::tie(b.node, b.component);
}

// The axes of a node's displacement system; false where there is no such system.
bool FindAxes(std::int32_t node, const SupportSets& sets, NastranLoadInput& in,
              std::array<Vector3, 3>& axes) {
  axes = {Vector3{1.0, 0.0, 0.0}, Vector3{0.0, 1.0, 0.0}, Vector3{0.0, 0.0, 1.0}};
  const auto at = static_cast<std::size_t>(node);
  const std::int64_t number = in.systems.displacementSystems[at];
  if (number == 0) return true;
  const NastranSystem* system = FindSystem(in.deck.cards[sets.gridCards[at]], number, in);
  if (system == nullptr) return false;
  for (Vector3& axis : axes) axis = VectorOf(*system, axis, PlaceOf(in.model, node));
  return true;
}

// A node's supports and displacements along global axes, translations first.
bool TurnNode(const SupportedNode& node, const std::array<double, Components>& moves,
              const SupportSets& sets, NastranLoadInput& in,
              std::array<bool, Components>& globalFixed,
              std::array<double, Components>& globalMoves) {
  std::array<Vector3, 3> axes;
  if (!FindAxes(node.node, sets, in, axes)) return false;
  for (std::size_t part = 0; part < Components; part += 3) {
    std::array<bool, 3> fixed{}, turnedFixed{};
    std::array<double, 3> move{}, turnedMove{};
    for (std::size_t k = 0; k < 3; ++k) {
      fixed[k] = (node.components >> (part + k) & 1U) != 0;
      move[k] = moves[part + k];
    }
    if (!TurnSupport(axes, fixed, move, turnedFixed, turnedMove)) return false;
    std::copy(turnedFixed.begin(), turnedFixed.end(),
              globalFixed.begin() + static_cast<std::ptrdiff_t>(part));
    std::copy(turnedMove.begin(), turnedMove.end(),
              globalMoves.begin() + static_cast<std::ptrdiff_t>(part));
  }
  return true;
}

// The directions of a node's system that are open at it.
unsigned OpenAt(std::int32_t node, const NastranLoadInput& in) {
  const std::int64_t number = in.systems.displacementSystems[static_cast<std::size_t>(node)];
  const auto system = in.systems.systems.find(number);
  if (number == 0 || system == in.systems.systems.end()) return 0;
  return OpenComponents(system->second, PlaceOf(in.model, node));
}

// Whether a support holds some, but not all of the open directions at its node.
bool HoldsOpenPart(const SupportedNode& node, const NastranLoadInput& in) {
  const unsigned open = OpenAt(node.node, in);
  for (unsigned part = 0; part < Components; part += 3) {
    const unsigned held = static_cast<unsigned>(node.components) >> part & open;
    if (held != 0 && held != open) return true;
  }
  return false;
}

bool MovesOpenPart(std::int32_t node, const std::array<double, Components>& moves,
                   const NastranLoadInput& in) {
  const unsigned open = OpenAt(node, in);
  for (std::size_t k = 0; k < Components; ++k) {
    if ((open >> (k % 3) & 1U) != 0 && moves[k] != 0.0) return true;
  }
  return false;
}

void ReportOnAxis(std::int32_t node, const SupportSets& sets, NastranLoadInput& in) {
  const std::uint32_t card = sets.gridCards[static_cast<std::size_t>(node)];
  ReportSetCard(in.deck.cards[card], Fate::Limited, OnAxisOfSystem, in);
}

void AddRestraint(const SupportedNode& node, SupportSets& sets, NastranLoadInput& in,
                  SupportSet& made) {
  std::array<bool, Components> fixed{};
  const std::array<double, Components> unmoved{};
  std::array<double, Components> globalMoves{};
  if (node.components == 0) return;
  if (TurnNode(node, unmoved, sets, in, fixed, globalMoves)) {
    korvex::NodalRestraint row;
    row.node = node.node;
    for (std::size_t k = 0; k < Components; ++k) row.fixed[k] = fixed[k] ? 1 : 0;
    made.restraints.push_back(row);
    if (HoldsOpenPart(node, in)) ReportOnAxis(node.node, sets, in);
    return;
  }
  const auto at = static_cast<std::size_t>(node.node);
  if (sets.isToldOf[at]) return;
  sets.isToldOf[at] = true;
  ReportSetCard(in.deck.cards[sets.gridCards[at]], Fate::Refused,
                "it is supported along axes of its system (CD) that are not the global ones", in);
}

// The components that a node is supported in.
std::uint8_t ComponentsAt(const NastranSupports& supports, std::int32_t node) {
  const auto at =
      std::partition_point(supports.nodes.begin(), supports.nodes.end(),
                           [node](const SupportedNode& each) { return each.node < node; });
  return at != supports.nodes.end() && at->node == node ? at->components : std::uint8_t{0};
}

// Equal directions add up; those that no support holds are refused and left out.
void SumByLoads(const NastranSupports& supports, NastranLoadInput& in,
                std::vector<SetDisplacement>& byLoads) {
  std::stable_sort(byLoads.begin(), byLoads.end(), ComesBefore);
  std::size_t kept = 0;
  for (const SetDisplacement& each : byLoads) {
    if ((ComponentsAt(supports, each.node) >> static_cast<unsigned>(each.component) & 1U) == 0) {
      ReportSetCard(in.deck.cards[each.card], Fate::Refused,
                    "it moves a direction that no support of its subcase holds", in);
    } else if (kept > 0 && !ComesBefore(byLoads[kept - 1], each)) {
      byLoads[kept - 1].value += each.value;
    } else {
      byLoads[kept++] = each;
    }
  }
  byLoads.resize(kept);
}

}  // namespace

void MergeDisplacements(std::vector<SetDisplacement>& all, NastranLoadInput& in) {
  std::stable_sort(all.begin(), all.end(), ComesBefore);
  std::size_t kept = 0;
  for (const SetDisplacement& each : all) {
    const bool isSame = kept > 0 && !ComesBefore(all[kept - 1], each);
    if (isSame && all[kept - 1].value != each.value) {
      ReportSetCard(in.deck.cards[each.card], Fate::Refused,
                    "another card has another displacement for the same direction", in);
    }
    if (!isSame) all[kept++] = each;
  }
  all.resize(kept);
}

NastranSupports SelectSupports(std::int64_t set, SourcePlace place, SupportSets& sets,
                               NastranLoadInput& in, std::vector<SupportSet>& made) {
  NastranSupports supports;
  supports.nodes = sets.permanent;
  if (set != 0 && !HasSupportSet(sets, set)) {
    ReportCard("case control SPC", Fate::Refused,
               "a subcase asks for a set of supports that does not exist", place,
               "SPC = " + std::to_string(set), in.report);
  }
  for (const std::int64_t leafSet : FindLeaves(set, sets, in)) {
    const SupportLeaf& leaf = ReadLeaf(leafSet, sets, in);
    SpendRows(leaf.nodes.size(), place, in);
    supports.nodes.insert(supports.nodes.end(), leaf.nodes.begin(), leaf.nodes.end());
    supports.displacements.insert(supports.displacements.end(), leaf.displacements.begin(),
                                  leaf.displacements.end());
  }
  MergeSupported(supports.nodes);
  MergeDisplacements(supports.displacements, in);
  if (supports.nodes.empty()) return supports;
  SpendRows(supports.nodes.size(), place, in);
  SupportSet row;
  row.name = set == 0 ? "GRID" : "SPC " + std::to_string(set);
  for (const SupportedNode& node : supports.nodes) AddRestraint(node, sets, in, row);
  supports.row = static_cast<std::int32_t>(made.size());
  made.push_back(std::move(row));
  return supports;
}

void AddPrescribed(const NastranSupports& supports, std::vector<SetDisplacement> byLoads,
                   const SupportSets& sets, NastranLoadInput& in, ImportCase& loads) {
  SumByLoads(supports, in, byLoads);
  // Those of the loads stand first, and the first of a direction holds.
  byLoads.insert(byLoads.end(), supports.displacements.begin(), supports.displacements.end());
  std::stable_sort(byLoads.begin(), byLoads.end(), ComesBefore);
  for (std::size_t i = 0; i < byLoads.size();) {
    const std::int32_t node = byLoads[i].node;
    std::array<double, Components> moves{}, globalMoves{};
    std::array<bool, Components> isSet{}, fixed{};
    for (; i < byLoads.size() && byLoads[i].node == node; ++i) {
      const auto k = static_cast<std::size_t>(byLoads[i].component);
      if (!isSet[k]) moves[k] = byLoads[i].value;
      isSet[k] = true;
    }
    const SupportedNode supported{node, ComponentsAt(supports, node)};
    if (!TurnNode(supported, moves, sets, in, fixed, globalMoves)) continue;
    if (!HoldsOpenPart(supported, in) && MovesOpenPart(node, moves, in)) {
      ReportOnAxis(node, sets, in);
    }
    for (std::size_t k = 0; k < Components; ++k) {
      if (globalMoves[k] == 0.0) continue;
      loads.prescribed.push_back({node, static_cast<std::int32_t>(k), globalMoves[k]});
    }
  }
}

}  // namespace kvx
