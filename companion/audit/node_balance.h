// Equilibrium at every node: what the node does to its elements against what is done to the node.
//
//   left = nodal forces + support force - sum of the elements' end forces
//
// It is zero but for rounding. The nodal forces are those of the table NFOR without the ones that
// prescribe displacements; pressures and line loads are in the end forces (end_forces.h). Global
// axes. End forces may come from elsewhere, as from section forces: then the balance checks these.
#pragma once

#include <functional>
#include <vector>

#include "audit/end_forces.h"
#include "audit/reactions.h"

namespace kvx {

// Writes what the nodes do to the element: 6 for each of its nodes, global.
using EndForcesOf = std::function<void(const ElementRef& element, EndForceArray& forces)>;

struct NodeBalance {
  std::vector<double> left;  // [NEQ]
  ForceScales scales;        // as Reactions::endScales, of these end forces
  DofValue worst;            // of the dof with the largest |left| over its scale
};

// endForces: called once for every element; empty: FormEndForces. Throws a Stop where the records
// do not belong together.
void BalanceNodes(const SolvedModel& solved, const Reactions& reactions,
                  const EndForcesOf& endForces, NodeBalance& balance);

// What acts at one node.
struct ElementPart {
  ElementRef element;
  std::int32_t corner = 0;  // which of the element's nodes it is, 0-based
  ForceSum force{};         // of the node on the element
};
struct NodeParts {
  ForceSum load{};                    // nodal forces
  ForceSum reaction{};                // of the support
  std::vector<ElementPart> elements;  // in the order of the tables
  ForceSum left{};                    // load + reaction - elements
};

// Throws a Stop where there is no such node, or the records do not belong together.
void ListNodeParts(const SolvedModel& solved, const Reactions& reactions, std::int32_t node,
                   NodeParts& parts);

// What the nodes do to a beam, from its section forces.
// first, second: N, Vy, Vz, T, My, Mz at its ends, local axes, about the centroid, as acting on the
// face whose outward normal is +x: on the second end itself, and with the opposite sign on the
// first. The forces go from the centroid, at e = (Ex, Ey, Ez), to the node: M + e x F.
void MoveSectionForcesToNodes(const korvex::BeamElement& beam, const ForceSum& first,
                              const ForceSum& second, EndForceArray& forces);

}  // namespace kvx
