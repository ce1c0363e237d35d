#include "audit/peak_list.h"

#include <algorithm>
#include <cmath>

namespace kvx {

namespace {

// The larger, the earlier in the list.
double Rank(Quantity quantity, double value) {
  switch (quantity) {
    case Quantity::SmallestPrincipal:
      return -value;
    case Quantity::Ux:
    case Quantity::Uy:
    case Quantity::Uz:
    case Quantity::Rx:
    case Quantity::Ry:
    case Quantity::Rz:
      return std::fabs(value);
    default:
      return value;
  }
}

}  // namespace

bool StandsBefore(Quantity quantity, const Peak& a, const Peak& b) {
  const double rankA = Rank(quantity, a.value), rankB = Rank(quantity, b.value);
  if (rankA != rankB) return rankA > rankB;
  if (a.holder != b.holder) return a.holder < b.holder;
  return a.element < b.element;
}

void OfferPeak(Quantity quantity, const Peak& peak, PeakOffer& offer) {
  if (!std::isfinite(peak.value)) {
    if (!offer.hasNotFinite) offer.notFinite = peak;
    offer.hasNotFinite = true;
    return;
  }
  if (!offer.hasBest || Rank(quantity, peak.value) > Rank(quantity, offer.best.value)) {
    offer.best = peak;
  }
  offer.hasBest = true;
}

void AddOffer(const PeakOffer& offer, std::size_t count, double yield, PeakList& list) {
  if (offer.hasNotFinite) {
    ++list.notFinite;
    if (list.firstNotFinite.size() < count) list.firstNotFinite.push_back(offer.notFinite);
  }
  if (!offer.hasBest) return;
  ++list.compared;
  const bool isStress = list.quantity < Quantity::DisplacementSize;
  if (isStress && yield > 0.0 && std::fabs(offer.best.value) > yield) ++list.beyondYield;
  if (count == 0) return;
  const auto before = [&list](const Peak& a, const Peak& b) {
    return StandsBefore(list.quantity, a, b);
  };
  if (list.peaks.size() == count) {
    if (!before(offer.best, list.peaks.front())) return;
    std::pop_heap(list.peaks.begin(), list.peaks.end(), before);
    list.peaks.pop_back();
  }
  list.peaks.push_back(offer.best);
  std::push_heap(list.peaks.begin(), list.peaks.end(), before);
}

void SortPeaks(PeakList& list) {
  std::sort(list.peaks.begin(), list.peaks.end(),
            [&list](const Peak& a, const Peak& b) { return StandsBefore(list.quantity, a, b); });
}

}  // namespace kvx
