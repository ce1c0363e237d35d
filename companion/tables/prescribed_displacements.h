// Which forces are prescribed displacements: a displacement u of a fixed dof is written as the
// force 1e20 u, the penalty of a support times u.
//
// Real forces lie far below: the smallest displacement that counts is 1e-9 of the model's extent,
// for a model of 10 m 1e12 N or, in mm, 1e15 N; the smallest rotation is 1e-6, a moment of 1e14
// N mm or N m, while the largest bending moments of ships are of the order of 1e13 N mm.
#pragma once

#include <cstddef>

namespace kvx {

inline constexpr double Penalty = 1e20;  // as the solver's supports have it (system/supports.h)
inline constexpr double SmallestDisplacement = 1e-9;  // over the extent
inline constexpr double SmallestRotation = 1e-6;      // radians

// Whether a force (dof 0 .. 2) or moment (3 .. 5) on a fixed dof is so large that it prescribes a
// displacement. extent: the diagonal of the box around the nodes (node_box.h).
bool IsPrescribing(std::size_t dof, double force, double extent);

}  // namespace kvx
