// The n largest of many peaks: a heap of at most n, whose front is the smallest one kept.
#pragma once

#include "audit/maxima.h"

namespace kvx {

// Whether a stands before b in the quantity's order. Both are finite.
bool StandsBefore(Quantity quantity, const Peak& a, const Peak& b);

// Takes the peak into the offer if it is better than what is there.
void OfferPeak(Quantity quantity, const Peak& peak, PeakOffer& offer);

// Counts the offer and keeps it among the `count` largest. yield: 0: none.
void AddOffer(const PeakOffer& offer, std::size_t count, double yield, PeakList& list);

// Sorts the peaks, the largest first. Nothing may be added afterwards.
void SortPeaks(PeakList& list);

}  // namespace kvx
