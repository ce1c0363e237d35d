#include "audit/maxima.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "audit/check_solved.h"
#include "audit/peak_offers.h"
#include "base/number_text.h"
#include "report/stop.h"

namespace kvx {

using korvex::Model;

namespace {

// The number of a group. Section: BeamSecType and row; otherwise 0 and the row or part.
using GroupKey = std::array<std::int32_t, 2>;

// The lists of one grouping.
struct GroupLists {
  Grouping grouping = Grouping::Whole;
  std::vector<GroupKey> keys;   // ascending
  std::vector<PeakList> lists;  // by group, then by quantity of the request
};

[[noreturn]] void StopWith(std::string text) {
  throw korvex::Stop{korvex::StopKind::Notice, std::move(text)};
}

[[noreturn]] void StopOnYield(double yield) {
  korvex::NumberBuffer buffer;
  StopWith("The yield stress is " + std::string(korvex::FormatNumber(yield, buffer)) +
           "; it must be a positive number.");
}

std::size_t CountElements(const Model& model, Holder holder) {
  switch (holder) {
    case Holder::Node:
      return model.Tables.Nodes.size();
    case Holder::Shell4:
      return model.Shell4Elements.size();
    case Holder::Shell3:
      return model.Shell3Elements.size();
    default:
      return model.BeamElements.size();
  }
}

void CheckRequest(const Model& model, const MaximaRequest& request,
                  const std::vector<std::int32_t>& parts, std::size_t details) {
  CheckSolvedModel(model);
  if (!std::isfinite(request.yield) || request.yield < 0.0) StopOnYield(request.yield);
  const auto asks = [](const auto& items, auto item) {
    return std::find(items.begin(), items.end(), item) != items.end();
  };
  const std::size_t elements =
      model.Shell4Elements.size() + model.Shell3Elements.size() + model.BeamElements.size();
  if (asks(request.groupings, Grouping::Part) && parts.size() != elements) {
    StopWith("There are " + std::to_string(parts.size()) + " part numbers for " +
             std::to_string(elements) + " elements.");
  }
  if (asks(request.quantities, Quantity::BeamVonMises) && details != model.BeamElements.size()) {
    StopWith("There are " + std::to_string(details) + " detail models for " +
             std::to_string(model.BeamElements.size()) + " beams.");
  }
}

// Whether the element is in a group of this grouping; key: which one.
bool FindKey(const Model& model, const std::vector<std::int32_t>& parts, Grouping grouping,
             Holder holder, std::size_t e, GroupKey& key) {
  const auto& t = model.Tables;
  key = {};
  if (grouping == Grouping::Whole) return true;
  if (holder == Holder::Node) return false;
  const bool isBeam = holder == Holder::Beam;
  if (grouping == Grouping::Section) {
    if (isBeam) key = {t.BeamSectionRefs[e].BeamSecType, t.BeamSectionRefs[e].BeamSecIndex};
    return isBeam;
  }
  if (grouping == Grouping::Part) {
    const std::size_t before4 = holder == Holder::Shell4 ? 0 : model.Shell4Elements.size();
    const std::size_t before3 = isBeam ? model.Shell3Elements.size() : 0;
    key[1] = parts[before4 + before3 + e];
    return true;
  }
  if (isBeam) {
    key[1] = t.BeamProperties[e].material;
    return grouping == Grouping::Material;
  }
  const auto& row = holder == Holder::Shell4 ? t.Shell4Properties[e] : t.Shell3Properties[e];
  key[1] = grouping == Grouping::Material ? row.material : row.thickness;
  return true;
}

constexpr std::array<Holder, 4> Holders{Holder::Node, Holder::Shell4, Holder::Shell3, Holder::Beam};

// The groups that occur, and empty lists for each.
void BeginLists(const Model& model, const MaximaRequest& request,
                const std::vector<std::int32_t>& parts, Grouping grouping, GroupLists& groups) {
  groups.grouping = grouping;
  auto& keys = groups.keys;
  if (grouping == Grouping::Whole) keys.push_back({});
  for (const Holder holder : Holders) {
    if (grouping == Grouping::Whole) break;
    GroupKey key{};
    for (std::size_t e = 0; e < CountElements(model, holder); ++e) {
      if (!FindKey(model, parts, grouping, holder, e, key)) break;
      // Neighbours in a table are mostly of one group.
      if (keys.empty() || keys.back() != key) keys.push_back(key);
    }
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  for (const GroupKey& key : keys) {
    for (const Quantity quantity : request.quantities) {
      PeakList list;
      list.quantity = quantity;
      list.grouping = grouping;
      if (grouping == Grouping::Section) list.sectionType = key[0];
      list.group = key[1];
      groups.lists.push_back(std::move(list));
    }
  }
}

// What the offers are made from.
struct OfferSource {
  const Model& model;
  const MaximaRequest& request;
  const std::vector<PeakOffer>& details;
  std::vector<BeamForces> forces;  // of all beams, where a quantity is made from them
};

PeakOffer MakeOffer(const OfferSource& source, Holder holder, std::size_t e, Quantity quantity) {
  const Model& model = source.model;
  const MaximaRequest& request = source.request;
  if (quantity == Quantity::SectionVonMises) return OfferSectionForces(model, e, source.forces[e]);
  switch (holder) {
    case Holder::Node:
      return OfferNode(model, e, quantity);
    case Holder::Shell4:
      return OfferShell4(model, e, quantity, request.slots);
    case Holder::Shell3:
      return OfferShell3(model, e, quantity, request.slots);
    default:
      return source.details[e];
  }
}

// Offers all quantities of one element to the lists of its groups.
// first: for each grouping, the index of its group's first list; NoList: it is in none.
constexpr std::size_t NoList = static_cast<std::size_t>(-1);

void OfferElement(const OfferSource& source, Holder holder, std::size_t e,
                  const std::vector<std::size_t>& first, std::vector<GroupLists>& groupings) {
  const MaximaRequest& request = source.request;
  for (std::size_t q = 0; q < request.quantities.size(); ++q) {
    const Quantity quantity = request.quantities[q];
    if (!BelongsTo(quantity, holder)) continue;
    const PeakOffer offer = MakeOffer(source, holder, e, quantity);
    for (std::size_t g = 0; g < groupings.size(); ++g) {
      if (first[g] == NoList) continue;
      AddOffer(offer, request.count, request.yield, groupings[g].lists[first[g] + q]);
    }
  }
}

void OfferAll(const OfferSource& source, const std::vector<std::int32_t>& parts, Holder holder,
              std::vector<GroupLists>& groupings) {
  const Model& model = source.model;
  std::vector<std::size_t> first(groupings.size(), NoList);
  for (std::size_t e = 0; e < CountElements(model, holder); ++e) {
    for (std::size_t g = 0; g < groupings.size(); ++g) {
      const auto& keys = groupings[g].keys;
      GroupKey key{};
      first[g] = NoList;
      if (!FindKey(model, parts, groupings[g].grouping, holder, e, key)) continue;
      const auto place = std::lower_bound(keys.begin(), keys.end(), key) - keys.begin();
      first[g] = static_cast<std::size_t>(place) * source.request.quantities.size();
    }
    OfferElement(source, holder, e, first, groupings);
  }
}

}  // namespace

void FindMaxima(const Model& model, const MaximaRequest& request,
                const std::vector<std::int32_t>& parts, const std::vector<PeakOffer>& details,
                std::vector<PeakList>& lists) {
  CheckRequest(model, request, parts, details.size());
  OfferSource source{model, request, details, {}};
  const auto& asked = request.quantities;
  if (std::find(asked.begin(), asked.end(), Quantity::SectionVonMises) != asked.end()) {
    ComputeBeamForces(model, source.forces);
  }
  std::vector<GroupLists> groupings(request.groupings.size());
  for (std::size_t g = 0; g < groupings.size(); ++g) {
    BeginLists(model, request, parts, request.groupings[g], groupings[g]);
  }
  for (const Holder holder : Holders) {
    const bool isAsked =
        std::any_of(request.quantities.begin(), request.quantities.end(),
                    [holder](Quantity quantity) { return BelongsTo(quantity, holder); });
    if (isAsked) OfferAll(source, parts, holder, groupings);
  }
  lists.clear();
  const std::size_t step = request.quantities.size();
  for (std::size_t q = 0; q < step; ++q) {
    for (GroupLists& groups : groupings) {
      for (std::size_t at = q; at < groups.lists.size(); at += step) {
        PeakList& list = groups.lists[at];
        const bool isEmpty = list.compared == 0 && list.notFinite == 0;
        if (isEmpty && groups.grouping != Grouping::Whole) continue;
        SortPeaks(list);
        lists.push_back(std::move(list));
      }
    }
  }
}

double ComputeUtilisation(double value, double yield) {
  if (!std::isfinite(yield) || yield <= 0.0) StopOnYield(yield);
  return std::fabs(value) / yield;
}

}  // namespace kvx
