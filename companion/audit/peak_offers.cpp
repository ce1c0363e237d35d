#include "audit/peak_offers.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "audit/unbalanced_elements.h"
#include "report/stop.h"
#include "results/corner_stress.h"

namespace kvx {

using korvex::BeamShellModel, korvex::EquivalentStress, korvex::Model, korvex::StressVector;
using korvex::Vector3;

namespace {

// The stresses of both faces at one place.
struct FacePair {
  StressVector top, bottom;
};

// (a + sign b) / 2
StressVector HalfSum(const StressVector& a, double sign, const StressVector& b) {
  StressVector half{};
  for (std::size_t i = 0; i < half.size(); ++i) half[i] = (a[i] + sign * b[i]) / 2.0;
  return half;
}

template <std::int32_t Nodes>
FacePair FacesOf(const korvex::ShellElement<Nodes>& element, std::size_t k, StressSlots slots) {
  if (slots == StressSlots::Averaged) return {element.AvgStressTop[k], element.AvgStressBottom[k]};
  return {element.NodeStressTop[k], element.NodeStressBottom[k]};
}

void OfferValue(Quantity quantity, double value, Face face, Peak& peak, PeakOffer& offer) {
  peak.value = value;
  peak.face = face;
  OfferPeak(quantity, peak, offer);
}

// Offers the quantity at one place of a shell. frame: the element's own; peak: with its place.
void OfferFaces(Quantity quantity, const korvex::ElementFrame& frame, const FacePair& pair,
                Peak& peak, PeakOffer& offer) {
  const StressVector &top = pair.top, &bottom = pair.bottom;
  const auto principal = [&frame](const StressVector& stress) {
    return FindPrincipalValues(PlaneOf(StressInFrame(frame, stress)));
  };
  const auto both = [&](double upper, double lower) {
    OfferValue(quantity, upper, Face::Upper, peak, offer);
    OfferValue(quantity, lower, Face::Lower, peak, offer);
  };
  const auto offerMiddle = [&](double sign) {
    const double value = EquivalentStress(HalfSum(top, sign, bottom));
    OfferValue(quantity, value, Face::Middle, peak, offer);
  };
  switch (quantity) {
    case Quantity::VonMisesUpper:
      OfferValue(quantity, EquivalentStress(top), Face::Upper, peak, offer);
      break;
    case Quantity::VonMisesLower:
      OfferValue(quantity, EquivalentStress(bottom), Face::Lower, peak, offer);
      break;
    case Quantity::VonMisesMiddle:
      offerMiddle(1.0);
      break;
    case Quantity::VonMisesBending:
      offerMiddle(-1.0);
      break;
    case Quantity::LargestPrincipal:
      both(principal(top).larger, principal(bottom).larger);
      break;
    case Quantity::SmallestPrincipal:
      both(principal(top).smaller, principal(bottom).smaller);
      break;
    default:  // VonMises and BeamVonMises
      both(EquivalentStress(top), EquivalentStress(bottom));
  }
}

// nodes: the node of each corner.
template <std::int32_t Nodes>
PeakOffer OfferShell(const korvex::ShellElement<Nodes>& element, const std::int32_t* nodes,
                     Quantity quantity, StressSlots slots, Peak peak) {
  PeakOffer offer;
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    peak.corner = static_cast<std::int32_t>(k);
    peak.node = nodes[k];
    const double* P = &element.Coordinates[3 * k];
    peak.place = {P[0], P[1], P[2]};
    OfferFaces(quantity, element.Frame, FacesOf(element, k, slots), peak, offer);
  }
  return offer;
}

Peak BeginPeak(Holder holder, std::size_t element) {
  Peak peak;
  peak.holder = holder;
  peak.element = static_cast<std::int32_t>(element);
  return peak;
}

const Vector3& CornerPlace(const BeamShellModel& detail, std::size_t shell, std::size_t k) {
  return detail.NodeCoords[static_cast<std::size_t>(detail.ShellNodes[4 * shell + k])];
}

// What is told of the shell of a detail model.
void SetDetailShell(const BeamShellModel& detail, std::size_t shell, Peak& peak) {
  peak.detailShell = static_cast<std::int32_t>(shell);
  peak.detailThickness = detail.Shells[shell].TK;
  peak.detailEdge = korvex::Subtract(CornerPlace(detail, shell, 3), CornerPlace(detail, shell, 0));
}

// Offers one corner of the detail model's shell.
void OfferCorner(const BeamShellModel& detail, std::size_t shell, std::size_t k, StressSlots slots,
                 Peak& peak, PeakOffer& offer) {
  SetDetailShell(detail, shell, peak);
  peak.corner = static_cast<std::int32_t>(k);
  peak.place = CornerPlace(detail, shell, k);
  const auto& element = detail.Shells[shell];
  OfferFaces(Quantity::BeamVonMises, element.Frame, FacesOf(element, k, slots), peak, offer);
}

// Offers the means of two corners of the shell, one at each station.
void OfferMean(const BeamShellModel& detail, std::size_t shell, std::size_t k, std::size_t beyond,
               StressSlots slots, Peak& peak, PeakOffer& offer) {
  SetDetailShell(detail, shell, peak);
  peak.corner = static_cast<std::int32_t>(k);
  const Vector3 &a = CornerPlace(detail, shell, k), &b = CornerPlace(detail, shell, beyond);
  for (std::size_t i = 0; i < 3; ++i) peak.place[i] = (a[i] + b[i]) / 2.0;
  const auto& element = detail.Shells[shell];
  const FacePair here = FacesOf(element, k, slots), there = FacesOf(element, beyond, slots);
  const FacePair mean{HalfSum(here.top, 1.0, there.top), HalfSum(here.bottom, 1.0, there.bottom)};
  OfferFaces(Quantity::BeamVonMises, element.Frame, mean, peak, offer);
}

// Corners 0 and 3 of a detail model's shell lie at its first station, 1 and 2 at its second.
void OfferMidLength(const BeamShellModel& detail, std::size_t steps, StressSlots slots, Peak& peak,
                    PeakOffer& offer) {
  const std::size_t plates = detail.Shells.size() / steps;
  const std::size_t begin = steps / 2 * plates;  // of the step at the middle, or behind it
  for (std::size_t shell = begin; shell < begin + plates; ++shell) {
    if (steps % 2 == 1) {
      OfferMean(detail, shell, 0, 1, slots, peak, offer);
      OfferMean(detail, shell, 3, 2, slots, peak, offer);
      continue;
    }
    OfferCorner(detail, shell - plates, 1, slots, peak, offer);
    OfferCorner(detail, shell - plates, 2, slots, peak, offer);
    OfferCorner(detail, shell, 0, slots, peak, offer);
    OfferCorner(detail, shell, 3, slots, peak, offer);
  }
}

}  // namespace

std::int32_t CountDetailSteps(const BeamShellModel& detail) {
  const auto P = static_cast<std::size_t>(std::max(detail.ProfileNodeCount, 0));
  const std::size_t nodes = detail.NodeCoords.size(), shells = detail.Shells.size();
  if (P == 0 || shells == 0 || detail.ShellNodes.size() != 4 * shells) return 0;
  if (nodes < 2 + 2 * P || (nodes - 2) % P != 0) return 0;
  const std::size_t steps = (nodes - 2) / P - 1;
  if (shells % steps != 0) return 0;
  const auto isInside = [nodes](std::int32_t node) {
    return static_cast<std::size_t>(node) < nodes;  // a negative one becomes huge
  };
  const auto& corners = detail.ShellNodes;
  const bool isWhole = std::all_of(corners.begin(), corners.end(), isInside);
  return isWhole ? static_cast<std::int32_t>(steps) : 0;
}

bool BelongsTo(Quantity quantity, Holder holder) {
  if (quantity == Quantity::BeamVonMises || quantity == Quantity::SectionVonMises) {
    return holder == Holder::Beam;
  }
  if (quantity >= Quantity::DisplacementSize) return holder == Holder::Node;
  return holder == Holder::Shell4 || holder == Holder::Shell3;
}

PeakOffer OfferShell4(const Model& model, std::size_t e, Quantity quantity, StressSlots slots) {
  return OfferShell(model.Shell4Elements[e], &model.Tables.Shell4Nodes[4 * e], quantity, slots,
                    BeginPeak(Holder::Shell4, e));
}

PeakOffer OfferShell3(const Model& model, std::size_t e, Quantity quantity, StressSlots slots) {
  return OfferShell(model.Shell3Elements[e], &model.Tables.Shell3Nodes[3 * e], quantity, slots,
                    BeginPeak(Holder::Shell3, e));
}

PeakOffer OfferNode(const Model& model, std::size_t node, Quantity quantity) {
  Peak peak = BeginPeak(Holder::Node, node);
  peak.node = peak.element;
  const auto& position = model.Tables.Nodes[node];
  peak.place = {position.x, position.y, position.z};
  const double* u = &model.Displacements[6 * node];
  const bool isSize = quantity == Quantity::DisplacementSize;
  const auto component =
      static_cast<std::size_t>(quantity) - static_cast<std::size_t>(Quantity::Ux);
  PeakOffer offer;
  peak.value = isSize ? std::hypot(u[0], u[1], u[2]) : u[component];
  OfferPeak(quantity, peak, offer);
  return offer;
}

PeakOffer OfferDetail(const BeamShellModel& detail, std::size_t beam, StressSlots slots,
                      BeamPlace place) {
  const auto steps = static_cast<std::size_t>(CountDetailSteps(detail));
  if (steps == 0) {
    throw korvex::Stop{korvex::StopKind::Notice, "The detail model of beam element " +
                                                     std::to_string(beam) + " is not whole."};
  }
  Peak peak = BeginPeak(Holder::Beam, beam);
  PeakOffer offer;
  if (place == BeamPlace::MidLength) {
    OfferMidLength(detail, steps, slots, peak, offer);
    return offer;
  }
  for (std::size_t shell = 0; shell < detail.Shells.size(); ++shell) {
    for (std::size_t k = 0; k < 4; ++k) OfferCorner(detail, shell, k, slots, peak, offer);
  }
  return offer;
}

Peak MakeSectionPeak(const Model& model, std::size_t beam, const PlacedStress& stress) {
  Peak peak = BeginPeak(Holder::Beam, beam);
  peak.value = stress.fibre.vonMises;
  peak.point = stress.fibre.place;
  peak.s = stress.s;
  peak.place = PlaceOnBeam(model, peak.element, stress.s);
  return peak;
}

PeakOffer OfferSectionForces(const Model& model, std::size_t beam, const BeamForces& forces) {
  PeakOffer offer;
  const Quantity quantity = Quantity::SectionVonMises;
  const BeamStresses stresses = FindBeamStresses(model, beam, forces);
  OfferPeak(quantity, MakeSectionPeak(model, beam, stresses.vonMises), offer);
  return offer;
}

}  // namespace kvx
