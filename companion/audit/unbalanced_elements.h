// Elements whose nodal forces are not in equilibrium by themselves, and by how much.
//
// Warped quads: the solver projects node 3 onto the plane of nodes 1, 2 and 4. The forces of the
// projected element are in equilibrium, but they act at the real nodes. With h the distance of node
// 3 from the plane along the normal e3, and F3 the force at node 3, the couple h e3 x F3 is left
// over. Loads make no difference: they act at the real nodes as they are.
//
// Elements that have a node twice: the solver counts the coupling of its two places once instead of
// twice (skyline/skyline_matrix.h), so that a force can be left over too.
//
// What these leave over, the supports do not get: loads and reactions differ by it.
#pragma once

#include <array>
#include <vector>

#include "audit/end_forces.h"

namespace kvx {

struct UnbalancedElement {
  ElementRef element;
  double offset = 0.0;          // h, along +e3; 0 for other kinds
  bool hasNodeTwice = false;    // then the offset's couple is part of the sums too
  std::array<double, 6> sum{};  // force and moment about the centre, of its forces on all nodes
};

// A quad counts as warped where |h| is larger than this part of the distance of its nodes 1 and 3.
// The couple of a smaller one lies below the rounding of the balance.
inline constexpr double WarpThreshold = 1e-9;

// Adds the element to `list` if it is not in equilibrium. forces: K_e u of the element; centre: the
// point of the moments, global.
void AddIfUnbalanced(const korvex::Model& model, const StiffForces& forces,
                     const korvex::Vector3& centre, std::vector<UnbalancedElement>& list);

// sum += the force and moment `six`, which act at `place`, about `centre`. All global.
void AddForceAt(const korvex::Vector3& place, const korvex::Vector3& centre, const double* six,
                std::array<double, 6>& sum);

korvex::Vector3 PlaceOfNode(const korvex::Model& model, std::int32_t node);

// Global coordinates of the point at s = x / length, 0 .. 1, on the line between a beam's nodes.
korvex::Vector3 PlaceOnBeam(const korvex::Model& model, std::int32_t beam, double s);

}  // namespace kvx
