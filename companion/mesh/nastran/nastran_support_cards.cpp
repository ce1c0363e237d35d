#include "mesh/nastran/nastran_support_cards.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace kvx {

namespace {

constexpr std::size_t Components = 6;

// A range of SPC1 begins or ends to support a component, as rows of the numbered nodes.
struct RangeEnd {
  std::size_t row = 0;
  std::uint8_t components = 0;
  bool begins = false;
};

// Reads component digits, 1 to 6. A card without any, or with others, is refused; then 0.
std::uint8_t ReadComponents(const NastranCard& card, std::size_t field, NastranLoadInput& in) {
  unsigned components = 0;
  bool isGood = true;
  for (std::int64_t digits = IntegerField(RowOf(in, card), field, 0); digits != 0; digits /= 10) {
    const std::int64_t digit = digits % 10;
    isGood = isGood && digit >= 1 && digit <= 6;
    if (isGood) components |= 1U << static_cast<unsigned>(digit - 1);
  }
  if (isGood && components != 0) return static_cast<std::uint8_t>(components);
  ReportSetCard(card, Fate::Refused, "its components are not of the digits 1 to 6", in);
  return 0;
}

// GRID's own supports: those of its field 8, or, where that is blank, of GRDSET's. A 0 is none.
void ReadPermanent(NastranLoadInput& in, SupportSets& sets) {
  const NastranCard* defaults = nullptr;
  sets.gridCards.assign(in.model.nodes.size(), 0);
  for (const NastranCard& card : in.deck.cards) {
    if (card.name == "GRDSET") defaults = &card;
  }
  for (std::size_t i = 0; i < in.deck.cards.size(); ++i) {
    const NastranCard& card = in.deck.cards[i];
    if (card.name != "GRID") continue;
    const auto node = in.numbers.nodes.find(IntegerField(RowOf(in, card), 2, 0));
    if (node == in.numbers.nodes.end()) continue;
    sets.gridCards[static_cast<std::size_t>(node->second)] = static_cast<std::uint32_t>(i);
    const NastranCard* source = IsBlank(RowOf(in, card), 8) ? defaults : &card;
    if (source == nullptr || IntegerField(RowOf(in, *source), 8, 0) == 0) continue;
    sets.permanent.push_back({node->second, ReadComponents(*source, 8, in)});
  }
}

void ReadSpc(const NastranCard& card, std::uint32_t cardRow, NastranLoadInput& in,
             SupportLeaf& leaf) {
  const std::size_t before = leaf.displacements.size();
  ReadDisplacements(card, cardRow, in, leaf.displacements);
  for (std::size_t i = before; i < leaf.displacements.size(); ++i) {
    const SetDisplacement& each = leaf.displacements[i];
    leaf.nodes.push_back(
        {each.node, static_cast<std::uint8_t>(1U << static_cast<unsigned>(each.component))});
  }
  const auto isNone = [](const SetDisplacement& each) { return each.value == 0.0; };
  const auto begin = leaf.displacements.begin() + static_cast<std::ptrdiff_t>(before);
  leaf.displacements.erase(std::remove_if(begin, leaf.displacements.end(), isNone),
                           leaf.displacements.end());
}

void ReadSpc1(const NastranCard& card, NastranLoadInput& in, SupportLeaf& leaf,
              std::vector<RangeEnd>& ranges) {
  const std::uint8_t components = ReadComponents(card, 3, in);
  const CardNumbers list = ReadNumberList(card, 2, in);
  for (const std::int64_t number : list.singles) {
    const std::int32_t node = FindNode(card, number, in);
    if (node >= 0) leaf.nodes.push_back({node, components});
  }
  for (const auto& [first, last] : list.ranges) {
    const auto [begin, end] = RowsInRange(in.nodes, first, last);
    if (begin == end) {
      ReportSetCard(card, Fate::Refused, "it names a range without nodes", in);
      continue;
    }
    ranges.push_back({begin, components, true});
    ranges.push_back({end, components, false});
  }
}

// Adds the nodes of all ranges at once: ranges that overlap many times cost no more than their
// ends.
void AddRanges(std::vector<RangeEnd> ends, const NastranLoadInput& in,
               std::vector<SupportedNode>& nodes) {
  std::sort(ends.begin(), ends.end(),
            [](const RangeEnd& a, const RangeEnd& b) { return a.row < b.row; });
  std::array<std::int64_t, Components> open{};
  for (std::size_t i = 0; i < ends.size(); ++i) {
    unsigned components = 0;
    for (std::size_t k = 0; k < Components; ++k) {
      if ((ends[i].components >> k & 1U) != 0) open[k] += ends[i].begins ? 1 : -1;
      if (open[k] > 0) components |= 1U << k;
    }
    if (components == 0 || i + 1 == ends.size()) continue;
    for (std::size_t row = ends[i].row; row < ends[i + 1].row; ++row) {
      nodes.push_back({in.nodes[row].row, static_cast<std::uint8_t>(components)});
    }
  }
}

bool HasSet(const std::vector<CardOfSet>& index, std::int64_t set) {
  const auto [begin, end] = CardsOfSet(index, set);
  return begin < end;
}

// The sets that an SPCADD adds up. Those that do not exist are reported.
void ReadSum(const NastranCard& card, const SupportSets& sets, NastranLoadInput& in,
             std::vector<std::int64_t>& named) {
  for (const std::int64_t set : ReadNumberList(card, 1, in).singles) {
    if (HasSupportSet(sets, set)) {
      named.push_back(set);
    } else {
      ReportSetCard(card, Fate::Refused, "it names a set that does not exist", in);
    }
  }
}

}  // namespace

SupportSets ReadSupportSets(NastranLoadInput& in) {
  SupportSets sets;
  sets.isToldOf.assign(in.model.nodes.size(), false);
  ReadPermanent(in, sets);
  MergeSupported(sets.permanent);
  for (std::size_t i = 0; i < in.deck.cards.size(); ++i) {
    const NastranCard& card = in.deck.cards[i];
    const bool isSum = card.name == "SPCADD";
    if (!isSum && card.name != "SPC" && card.name != "SPC1") continue;
    (isSum ? sets.sums : sets.cards)
        .push_back({NeedInteger(RowOf(in, card), 2), static_cast<std::uint32_t>(i)});
  }
  SortBySet(sets.cards);
  SortBySet(sets.sums);
  return sets;
}

bool HasSupportSet(const SupportSets& sets, std::int64_t set) {
  return HasSet(sets.sums, set) || HasSet(sets.cards, set);
}

std::vector<std::int64_t> FindLeaves(std::int64_t selection, SupportSets& sets,
                                     NastranLoadInput& in) {
  std::vector<std::int64_t> leaves, open{selection};
  if (HasSet(sets.cards, 0)) open.push_back(0);  // set 0 belongs to every selection
  std::unordered_set<std::int64_t> seen;
  while (!open.empty()) {
    const std::int64_t set = open.back();
    open.pop_back();
    if (!seen.insert(set).second) continue;
    SpendRows(1, {}, in);
    sets.used.insert(set);
    const auto [begin, end] = CardsOfSet(sets.sums, set);
    if (begin == end) leaves.push_back(set);
    for (std::size_t i = begin; i < end; ++i) {
      ReadSum(in.deck.cards[sets.sums[i].card], sets, in, open);
    }
  }
  std::sort(leaves.begin(), leaves.end());
  return leaves;
}

const SupportLeaf& ReadLeaf(std::int64_t set, SupportSets& sets, NastranLoadInput& in) {
  const auto [at, isNew] = sets.leaves.emplace(set, SupportLeaf{});
  SupportLeaf& leaf = at->second;
  if (!isNew) return leaf;
  std::vector<RangeEnd> ranges;
  const auto [begin, end] = CardsOfSet(sets.cards, set);
  for (std::size_t i = begin; i < end; ++i) {
    const std::uint32_t row = sets.cards[i].card;
    const NastranCard& card = in.deck.cards[row];
    if (card.name == "SPC") {
      ReadSpc(card, row, in, leaf);
    } else {
      ReadSpc1(card, in, leaf, ranges);
    }
  }
  AddRanges(std::move(ranges), in, leaf.nodes);
  return leaf;
}

void MergeSupported(std::vector<SupportedNode>& nodes) {
  std::sort(nodes.begin(), nodes.end(),
            [](const SupportedNode& a, const SupportedNode& b) { return a.node < b.node; });
  std::size_t kept = 0;
  for (const SupportedNode& each : nodes) {
    if (kept > 0 && nodes[kept - 1].node == each.node) {
      nodes[kept - 1].components |= each.components;
    } else {
      nodes[kept++] = each;
    }
  }
  nodes.resize(kept);
}

void ReadDisplacements(const NastranCard& card, std::uint32_t cardRow, NastranLoadInput& in,
                       std::vector<SetDisplacement>& displacements) {
  const NastranRow row = RowOf(in, card);
  for (const std::size_t field : {std::size_t{3}, std::size_t{6}}) {
    if (IsBlank(row, field)) continue;
    const std::int32_t node = FindNode(card, NeedInteger(row, field), in);
    if (node < 0) continue;
    const std::uint8_t components = ReadComponents(card, field + 1, in);
    const double value = RealField(row, field + 2, 0.0);
    for (std::size_t k = 0; k < Components; ++k) {
      if ((components >> k & 1U) == 0) continue;
      displacements.push_back({node, static_cast<std::int32_t>(k), value, cardRow});
    }
  }
  constexpr std::size_t FieldsOfCard = 7;
  ReportExcess(card, FieldsOfCard, in);
}

std::vector<std::int64_t> FindRootSupports(const SupportSets& sets, const NastranLoadInput& in) {
  std::unordered_set<std::int64_t> named{0};
  for (const CardOfSet& sum : sets.sums) {
    for (const std::int64_t set : ReadNumberList(in.deck.cards[sum.card], 1, in).singles) {
      named.insert(set);
    }
  }
  std::vector<std::int64_t> roots;
  for (const std::vector<CardOfSet>* index : {&sets.cards, &sets.sums}) {
    for (const CardOfSet& row : *index) {
      if (named.insert(row.set).second) roots.push_back(row.set);
    }
  }
  std::sort(roots.begin(), roots.end());
  return roots;
}

void ReportUnusedSupports(const SupportSets& sets, Fate fate, std::string_view reason,
                          NastranLoadInput& in) {
  for (const std::vector<CardOfSet>* index : {&sets.cards, &sets.sums}) {
    for (const auto& [set, row] : *index) {
      const NastranCard& card = in.deck.cards[row];
      if (sets.used.count(set) == 0) {
        ReportSetCard(card, fate, reason, in);
      } else if (index == &sets.cards && HasSet(sets.sums, set)) {
        ReportSetCard(card, Fate::Lost, "an SPCADD of the same number takes its place", in);
      }
    }
  }
}

}  // namespace kvx
