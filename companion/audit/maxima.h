// The largest stresses and displacements of a model: where they are, and how large.
//
// All quantities are found in one pass over the elements, in lists of the n largest. An element
// stands in a list once, with its largest value; a node likewise. Values that are equal stand in
// the order of nodes, four-node shells, three-node shells, beams, each by number; of one element
// the first corner, the upper face first.
//
// Stresses come from what the run left in the elements: the averaged ones by default, because two
// of the three stress files show these, and of beams no file shows others. The recovered ones are
// usually higher; a triangle's are those at its first corner.
//
// Principal stresses are those in the element's plane. An averaged stress at a slight fold has a
// small part outside, which is left out.
//
// A value that is not finite (NaN, or beyond the range of numbers) wins nothing and hides nothing:
// the other corners of its element still count, and the element is named apart.
#pragma once

#include <cstdint>
#include <vector>

#include "audit/section_shape.h"
#include "audit/shell_resultants.h"
#include "model/model.h"

namespace kvx {

enum class Quantity {
  VonMises,           // of the upper or lower face, the larger one
  VonMisesUpper,      // of the upper face alone
  VonMisesLower,      // of the lower face alone
  VonMisesMiddle,     // of the middle face: of the membrane stress
  VonMisesBending,    // of the bending stress alone, (upper - lower) / 2
  LargestPrincipal,   // of both faces, in the element's plane: the highest tension
  SmallestPrincipal,  // of both faces: the highest compression, the most negative value first
  BeamVonMises,       // of the detail models, both faces
  SectionVonMises,    // of beams, from their section forces: the largest of all points of the
                      // section along the whole length (section_stresses.h)
  DisplacementSize,   // sqrt(ux^2 + uy^2 + uz^2)
  Ux,                 // components, global: the largest by size, with its sign
  Uy,
  Uz,
  Rx,  // radians
  Ry,
  Rz,
};

// Each group has its own list. Displacements are those of nodes, which belong to no group: they
// have a list of the whole model only.
enum class Grouping {
  Whole,
  Thickness,  // shells: by row of the table of thicknesses
  Material,   // by row of the table of materials
  Section,    // beams: by type and row of the section
  Part,       // by the caller's number of each element
};

enum class StressSlots {
  Averaged,   // AvgStressTop, AvgStressBottom
  Recovered,  // NodeStressTop, NodeStressBottom
};

// Where beams are looked at. At their ends the detail models show how rigid planes hold the plates.
enum class BeamPlace {
  // The station at mid-length; with an odd number of steps the mean of the two stations beside it,
  // tensor by tensor. With one step these are the ends: a value to be treated with care.
  MidLength,
  Everywhere,
};

enum class Holder { Node, Shell4, Shell3, Beam };

struct Peak {
  double value = 0.0;  // model units, with its sign
  Holder holder = Holder::Node;
  std::int32_t element = -1;      // row of its table; of a Node: the node
  std::int32_t corner = -1;       // 0-based, of the shell; -1: none
  std::int32_t node = -1;         // of the model; -1: in a detail model
  Face face = Face::Upper;        // Middle where both faces make the value; nodes: without meaning
  std::int32_t detailShell = -1;  // Beam: the detail model's shell; at mid-length between two
                                  // stations: the shell around it
  double detailThickness = 0.0;   // of the detail model's shell
  korvex::Vector3 detailEdge{};   // of that shell, global: from its first to its fourth corner,
                                  // which is across the beam
  double s = -1.0;                // SectionVonMises: x / length of the beam; others: -1
  SectionPlace point = SectionPlace::WebEdge;  // SectionVonMises: which point of the section
  korvex::Vector3 place{};  // global; SectionVonMises: on the line between the nodes
};

// What one element or node offers for one quantity: its best finite value, and its first one that
// is not.
struct PeakOffer {
  bool hasBest = false, hasNotFinite = false;
  Peak best, notFinite;
};

struct PeakList {
  Quantity quantity = Quantity::VonMises;
  Grouping grouping = Grouping::Whole;
  std::int32_t group = 0;         // row of the table, or number of the part; Whole: 0
  std::int32_t sectionType = -1;  // Section: BeamSecType
  std::vector<Peak> peaks;        // the largest first; at most MaximaRequest::count
  std::int64_t compared = 0;      // elements or nodes with at least one finite value
  std::int64_t beyondYield = 0;   // of these, with a stress that exceeds the yield stress in size
  std::int64_t notFinite = 0;     // elements or nodes with a value that is not finite
  std::vector<Peak> firstNotFinite;  // the first of them by number; at most MaximaRequest::count
};

struct MaximaRequest {
  std::vector<Quantity> quantities;
  std::vector<Grouping> groupings{Grouping::Whole};
  std::size_t count = 20;  // n
  StressSlots slots = StressSlots::Averaged;
  BeamPlace beams = BeamPlace::MidLength;
  double yield = 0.0;  // yield stress, model units; 0: none is given
};

// Fills `lists`: for each quantity, in the order of the request, for each grouping, in that order,
// one for each group by number (sections: by type, then row). The list of the whole model is always
// there, the others only where the group has elements with this quantity.
// parts: of each element, four-node shells, then three-node shells, then beams; may be empty unless
// the grouping Part is asked for.
// details: of each beam, what its detail model offers for the slots and the place of the request
// (detail_peaks.h); may be empty unless BeamVonMises is asked for.
// The model must have the stresses that are asked for: RecoverShellStresses, AverageNodeStresses.
// SectionVonMises needs none of these.
// Throws a korvex::Stop where tables do not fit one another, `parts` or `details` does not fit the
// model, or the yield stress is negative or not finite.
void FindMaxima(const korvex::Model& model, const MaximaRequest& request,
                const std::vector<std::int32_t>& parts, const std::vector<PeakOffer>& details,
                std::vector<PeakList>& lists);

// |value| / yield: above 1 the material yields, for von Mises stresses. Throws a korvex::Stop where
// the yield stress is not positive and finite.
double ComputeUtilisation(double value, double yield);

// The steps of a beam's detail model along the beam; 0 where it has no shells or is not whole.
std::int32_t CountDetailSteps(const korvex::BeamShellModel& detail);

}  // namespace kvx
