// What single elements and nodes offer for a quantity: their largest value and its place.
//
// The elements' tables and references must have been checked (check_solved.h).
#pragma once

#include "audit/peak_list.h"
#include "audit/section_stresses.h"

namespace kvx {

// Which holder a quantity belongs to. A quantity of shells belongs to Shell4 and Shell3.
bool BelongsTo(Quantity quantity, Holder holder);

// The offer of element e of the shells (node e, beam e) for a quantity that belongs to it.
PeakOffer OfferShell4(const korvex::Model& model, std::size_t e, Quantity quantity,
                      StressSlots slots);
PeakOffer OfferShell3(const korvex::Model& model, std::size_t e, Quantity quantity,
                      StressSlots slots);
PeakOffer OfferNode(const korvex::Model& model, std::size_t node, Quantity quantity);

// The offer of a beam for BeamVonMises, from its detail model. Throws a korvex::Stop where that is
// not whole.
PeakOffer OfferDetail(const korvex::BeamShellModel& detail, std::size_t beam, StressSlots slots,
                      BeamPlace place);

// A beam's von Mises stress from its section forces, where it is largest.
Peak MakeSectionPeak(const korvex::Model& model, std::size_t beam, const PlacedStress& stress);
PeakOffer OfferSectionForces(const korvex::Model& model, std::size_t beam,
                             const BeamForces& forces);

}  // namespace kvx
