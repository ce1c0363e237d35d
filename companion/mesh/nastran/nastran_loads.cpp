#include "mesh/nastran/nastran_loads.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "mesh/nastran/nastran_case_control.h"
#include "mesh/nastran/nastran_load_input.h"
#include "mesh/nastran/nastran_load_leaf.h"
#include "mesh/nastran/nastran_load_sets.h"
#include "mesh/nastran/nastran_support_cards.h"
#include "mesh/nastran/nastran_supports.h"

namespace kvx {

namespace {

// All that the cases of a deck are made of.
struct CaseSources {
  NastranLoadInput in;
  SupportSets supportSets;
  LoadSets loadSets;
  LoadLeaves leaves;
  std::map<std::int64_t, NastranSupports> selections;  // by SPC
};

void ReportTaken(const std::vector<CardOfSet>& cards, const std::vector<CardOfSet>& sums,
                 std::int64_t set, std::string_view reason, NastranLoadInput& in) {
  const auto [firstSum, lastSum] = CardsOfSet(sums, set);
  const auto [firstCard, lastCard] = CardsOfSet(cards, set);
  if (firstSum < lastSum) {
    ReportSetCard(in.deck.cards[sums[firstSum].card], Fate::Limited, reason, in);
  } else if (firstCard < lastCard) {
    ReportSetCard(in.deck.cards[cards[firstCard].card], Fate::Limited, reason, in);
  }
}

// The cases of a deck that asks for none, as programs write it that leave the case control to the
// user: each set of loads is a case, and the supports are those of the only set there is.
std::vector<NastranCase> ChooseCases(CaseSources& sources) {
  const std::vector<std::int64_t> supports = FindRootSupports(sources.supportSets, sources.in);
  const std::vector<std::int64_t> loads = FindRootLoads(sources.loadSets, sources.in);
  NastranCase row;
  if (supports.size() == 1) {
    row.supports = supports[0];
    ReportTaken(sources.supportSets.cards, sources.supportSets.sums, row.supports,
                "no case control asks for its set: the only one is taken", sources.in);
  }
  const bool hasSupports = row.supports != 0 || !sources.supportSets.permanent.empty();
  if (loads.empty()) return std::vector<NastranCase>(hasSupports ? 1 : 0, row);
  std::vector<NastranCase> cases;
  for (const std::int64_t set : loads) {
    row.loads = set;
    if (loads.size() > 1) row.name = "load " + std::to_string(set);
    ReportTaken(sources.loadSets.cards, sources.loadSets.sums, set,
                "no case control asks for its set: taken as a load case", sources.in);
    cases.push_back(row);
  }
  return cases;
}

const NastranSupports& SupportsOf(const NastranCase& row, CaseSources& sources,
                                  ImportModel& model) {
  const auto [at, isNew] = sources.selections.emplace(row.supports, NastranSupports{});
  if (isNew) {
    at->second = SelectSupports(row.supports, row.supportsPlace, sources.supportSets, sources.in,
                                model.supports);
  }
  return at->second;
}

// Adds a case. One without loads and displacements, as subcases are that ask for modes, is left out
// where others have loads.
void AddCase(const NastranCase& row, bool othersHaveLoads, CaseSources& sources,
             ImportModel& model) {
  const NastranSupports& supports = SupportsOf(row, sources, model);
  if (row.loads == 0 && supports.displacements.empty() && othersHaveLoads) {
    ReportCard("case control SUBCASE", Fate::NoEffect, "a subcase without loads", row.place,
               row.name, sources.in.report);
    return;
  }
  ImportCase made;
  made.name = row.name;
  made.place = row.place;
  made.supports = supports.row;
  made.asksForLoads = row.loads != 0;
  std::vector<SetDisplacement> displacements;
  if (row.loads != 0 && !HasLoadSet(sources.loadSets, row.loads)) {
    ReportCard("case control LOAD", Fate::Refused,
               "a subcase asks for a set of loads that does not exist", row.loadsPlace,
               "LOAD = " + std::to_string(row.loads), sources.in.report);
  } else if (row.loads != 0) {
    for (const auto& [set, factor] : FindScaledSets(row.loads, sources.loadSets, sources.in)) {
      const LoadLeaf& leaf = ReadLoadLeaf(set, sources.loadSets, sources.in, sources.leaves);
      AddScaled(leaf, factor, row.place, sources.in, made, displacements);
    }
  }
  MergeForces(made.forces);
  AddPrescribed(supports, std::move(displacements), sources.supportSets, sources.in, made);
  model.cases.push_back(std::move(made));
}

}  // namespace

void TakeNastranLoads(const NastranDeck& deck, const NastranNumbers& numbers,
                      const NastranSystems& systems, ImportModel& model, ImportReport& report) {
  CaseSources sources{MakeNastranLoadInput(deck, numbers, systems, model, report), {}, {}, {}, {}};
  sources.supportSets = ReadSupportSets(sources.in);
  sources.loadSets = ReadLoadSets(sources.in);
  NastranCaseControl control;
  ReadCaseControl(deck, report, control);
  if (!control.asks) control.cases = ChooseCases(sources);
  const bool hasLoads = std::any_of(control.cases.begin(), control.cases.end(),
                                    [](const NastranCase& row) { return row.loads != 0; });
  for (const NastranCase& row : control.cases) AddCase(row, hasLoads, sources, model);
  const Fate fate = control.asks ? Fate::NoEffect : Fate::Lost;
  const std::string_view reason = control.asks ? "no subcase asks for its set"
                                               : "no case control says which set of several holds";
  ReportUnusedSupports(sources.supportSets, fate, reason, sources.in);
  ReportUnusedLoads(sources.loadSets, fate, reason, sources.in);
}

}  // namespace kvx
