#include "mesh/nastran/nastran_load_sets.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace kvx {

namespace {

constexpr std::array<std::string_view, 12> LoadNames = {"FORCE",   "FORCE1",  "FORCE2", "MOMENT",
                                                        "MOMENT1", "MOMENT2", "PLOAD",  "PLOAD1",
                                                        "PLOAD2",  "PLOAD4",  "GRAV",   "SPCD"};

// Loads that have a set in field 2 and no counterpart: the table of cards says why.
constexpr std::array<std::string_view, 14> OtherNames = {
    "ACCEL", "ACCEL1", "ACCEL2",  "DEFORM", "PLOADB3", "PLOADE1", "PLOADX1",
    "QBDY1", "RFORCE", "RFORCE1", "SLOAD",  "SPRBCK",  "TEMP",    "TEMPD"};

template <std::size_t Size>
bool IsAmong(const std::array<std::string_view, Size>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool HasSet(const std::vector<CardOfSet>& index, std::int64_t set) {
  const auto [begin, end] = CardsOfSet(index, set);
  return begin < end;
}

// What a LOAD card names: its overall factor is in theirs.
std::vector<ScaledSet> ReadTerms(const NastranCard& card, const NastranLoadInput& in) {
  std::vector<ScaledSet> terms;
  const NastranRow row = RowOf(in, card);
  const double overall = RealField(row, 3, 1.0);
  for (std::size_t k = 2; k < card.fieldCount; k += 2) {
    const std::size_t factor = FieldNumber(k), set = FieldNumber(k + 1);
    if (IsBlank(row, factor) && IsBlank(row, set)) continue;
    terms.push_back({NeedInteger(row, set), overall * RealField(row, factor, 1.0)});
  }
  return terms;
}

// A LOAD's terms while the sets below it are visited.
struct OpenSum {
  std::int64_t set = 0;
  std::vector<ScaledSet> terms;
  std::size_t next = 0;
};

enum class Visit { Open, Done };

// What the search for an order knows.
struct SetOrder {
  std::unordered_map<std::int64_t, Visit> visits;
  std::vector<OpenSum> done;  // a set stands behind all that it names
};

std::vector<ScaledSet> TermsOfSet(std::int64_t set, const LoadSets& sets, NastranLoadInput& in) {
  std::vector<ScaledSet> terms;
  const auto [begin, end] = CardsOfSet(sets.sums, set);
  for (std::size_t i = begin; i < end; ++i) {
    const NastranCard& card = in.deck.cards[sets.sums[i].card];
    for (const ScaledSet& term : ReadTerms(card, in)) {
      if (HasLoadSet(sets, term.set)) {
        terms.push_back(term);
      } else {
        ReportSetCard(card, Fate::Refused, "it names a set that does not exist", in);
      }
    }
    SpendRows(card.fieldCount, card.place, in);
  }
  return terms;
}

// Visits all sets below one, without recursion: chains of LOAD may be as long as the deck.
void OrderSets(std::int64_t selection, const LoadSets& sets, NastranLoadInput& in,
               SetOrder& order) {
  std::vector<OpenSum> open;
  const auto enter = [&](std::int64_t set) {
    order.visits[set] = Visit::Open;
    open.push_back({set, TermsOfSet(set, sets, in), 0});
  };
  enter(selection);
  while (!open.empty()) {
    OpenSum& top = open.back();
    if (top.next == top.terms.size()) {
      order.visits[top.set] = Visit::Done;
      order.done.push_back(std::move(top));
      open.pop_back();
      continue;
    }
    const std::int64_t set = top.terms[top.next].set;
    const auto visit = order.visits.find(set);
    if (visit != order.visits.end() && visit->second == Visit::Open) {
      const std::uint32_t card = sets.sums[CardsOfSet(sets.sums, top.set).first].card;
      ReportSetCard(in.deck.cards[card], Fate::Refused, "its sets lead back to itself", in);
      top.terms[top.next].factor = 0.0;
    }
    ++top.next;
    if (visit == order.visits.end()) enter(set);
  }
}

}  // namespace

LoadSets ReadLoadSets(NastranLoadInput& in) {
  LoadSets sets;
  for (std::size_t i = 0; i < in.deck.cards.size(); ++i) {
    const NastranCard& card = in.deck.cards[i];
    const auto row = static_cast<std::uint32_t>(i);
    if (card.name == "LOAD") {
      sets.sums.push_back({NeedInteger(RowOf(in, card), 2), row});
    } else if (IsAmong(LoadNames, card.name)) {
      sets.cards.push_back({NeedInteger(RowOf(in, card), 2), row});
    } else if (IsAmong(OtherNames, card.name)) {
      sets.otherSets.push_back(IntegerField(RowOf(in, card), 2, 0));
    }
  }
  SortBySet(sets.cards);
  SortBySet(sets.sums);
  std::sort(sets.otherSets.begin(), sets.otherSets.end());
  return sets;
}

bool HasLoadSet(const LoadSets& sets, std::int64_t set) {
  return HasSet(sets.cards, set) || HasSet(sets.sums, set) ||
         std::binary_search(sets.otherSets.begin(), sets.otherSets.end(), set);
}

std::vector<ScaledSet> FindScaledSets(std::int64_t selection, LoadSets& sets,
                                      NastranLoadInput& in) {
  SetOrder order;
  OrderSets(selection, sets, in, order);
  std::unordered_map<std::int64_t, double> factors;
  factors[selection] = 1.0;
  std::vector<ScaledSet> scaled;
  // From the selection down: a set's factor is complete when its turn comes.
  for (auto sum = order.done.rbegin(); sum != order.done.rend(); ++sum) {
    const double factor = factors[sum->set];
    sets.used.insert(sum->set);
    for (const ScaledSet& term : sum->terms) factors[term.set] += factor * term.factor;
    if (!HasSet(sets.sums, sum->set)) scaled.push_back({sum->set, factor});
  }
  std::sort(scaled.begin(), scaled.end(),
            [](const ScaledSet& a, const ScaledSet& b) { return a.set < b.set; });
  return scaled;
}

std::vector<std::int64_t> FindRootLoads(const LoadSets& sets, NastranLoadInput& in) {
  std::unordered_set<std::int64_t> named;
  for (const CardOfSet& sum : sets.sums) {
    for (const ScaledSet& term : ReadTerms(in.deck.cards[sum.card], in)) named.insert(term.set);
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

void ReportUnusedLoads(const LoadSets& sets, Fate fate, std::string_view reason,
                       NastranLoadInput& in) {
  for (const std::vector<CardOfSet>* index : {&sets.cards, &sets.sums}) {
    for (const auto& [set, row] : *index) {
      const NastranCard& card = in.deck.cards[row];
      if (sets.used.count(set) == 0) {
        ReportSetCard(card, fate, reason, in);
      } else if (index == &sets.cards && HasSet(sets.sums, set)) {
        ReportSetCard(card, Fate::Lost, "a LOAD of the same number takes its place", in);
      }
    }
  }
}

}  // namespace kvx
