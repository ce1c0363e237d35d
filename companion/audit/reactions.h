// Support forces, what the solution leaves unbalanced at free dofs, and the balance of the whole.
//
//   r = K u - F
//
// K is the stiffness without the supports' penalty, F the loads without the forces that prescribe
// displacements (solved_model.h). At a held dof r is the force of the support on the structure, at
// a free dof the residual, which is zero but for rounding. Loads on a held dof go straight into the
// support: they are part of the loads and, with the opposite sign, of r. All global axes, Fx, Fy,
// Fz, Mx, My, Mz; the sums' moments are about the global origin.
//
// The sum of all forces of sound elements is zero, so loads + reactions = 0. Elements that are not
// in equilibrium by themselves (unbalanced_elements.h) stand apart:
//   loads + reactions - sum of unbalanced elements = - sum of residuals
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "audit/force_scales.h"
#include "audit/solved_model.h"
#include "audit/unbalanced_elements.h"

namespace kvx {

using ForceSum = std::array<double, 6>;  // Fx, Fy, Fz, Mx, My, Mz

// A node of which a dof is held.
struct Support {
  std::int32_t node = 0;
  korvex::Vector3 place{};             // of the node, global
  std::array<std::uint8_t, 6> held{};  // by dof
  ForceSum force{};                    // of the support on the structure; 0 at dofs that are free
};

// A support that lifts, sinks or turns as prescribed.
struct MovedSupport {
  std::int32_t node = 0, dof = 0;
  double prescribed = 0.0;    // the sum of all forces that prescribe it / 1e20
  double displacement = 0.0;  // of the solution; the same, unless a model is far too stiff
};

struct Reactions {
  std::vector<double> r;                      // [NEQ] K u - F
  std::vector<Support> supports;              // by node, ascending
  std::vector<MovedSupport> moved;            // by node and dof, ascending
  ForceSum loads{}, reactions{};              // about the global origin
  bool isLoaded = false;                      // a load is not 0; prescribed displacements are none
  std::vector<UnbalancedElement> unbalanced;  // in the order of the tables; moments about `centre`
  ForceSum unbalancedSum{};                   // about the global origin

  // The middle of the box around the nodes, and half of the box's diagonal. Moments that are
  // compared are taken about this point: those about a far origin say nothing.
  korvex::Vector3 centre{};
  double size = 0.0;
  // The sum over the nodes of |F| + |M| / size, and this times size: of the loads or, where they
  // are larger, of the reactions, as with prescribed displacements.
  ForceScales sumScales;
  // loads + reactions - unbalanced elements, moments about `centre`. imbalance: the larger of its
  // largest force and moment, each over its scale; 0 without loads and reactions.
  ForceSum imbalanceSum{};
  double imbalance = 0.0;
  // The imbalance that is to be expected: displacements have 16 digits, and the forces of a thin
  // structure are small differences of their products with large stiffnesses. By component, about
  // `centre`, it is 2^-52 times the root of the sum over the dofs of (|K| |u| + |F|)^2, as their
  // errors are independent, and for moments with the arms of forces. rounding: compared with the
  // scales as the imbalance is. On irregular meshes the imbalance is up to five times as large; on
  // regular ones the errors repeat from element to element and add up, to 760 times as much on a
  // plate of 200 x 200 equal elements.
  ForceSum roundingSum{};
  double rounding = 0.0;

  // The largest |K u - F| of the free dofs over the largest |K| |u| + |F| of all, forces and
  // moments apart: the relative change of K and F for which the displacements are exact (Rigal &
  // Gaches 1967). A sound solution has some 1e-15, whatever its imbalance; NaN where a number is
  // none. Not dof by dof: where nearly nothing moves, u is rounding of what moves elsewhere.
  double backwardError = 0.0;

  ForceScales endScales;  // of the forces at the ends of elements and of the loads
  DofValue residual;      // of the free dof whose residual is largest over endScales
};

// Loads and reactions balance to a millionth: no engineer needs more, and mistakes leave far more.
inline constexpr double BalanceTolerance = 1e-6;

// Of a slender structure or a thin plate of very many elements more than the millionth may be
// rounding: it is, where the equations are solved to their last digits. 1e-15 was found for 240,000
// equations; displacements of other loads or of another model are far off.
inline constexpr double LargestBackwardError = 1e-12;

// A residual counts as rounding up to so many times its estimate.
inline constexpr double RoundingAllowance = 20.0;

// Where rounding takes the third digit of the balance, the results are no good, whatever the cause:
// a structure that can move has displacements so large that rounding explains any imbalance.
// Without loads it is no fault: a structure that its supports move as a whole has no forces at all.
inline constexpr double LargestRounding = 1e-3;

// Whether loads and reactions balance, apart from unbalanced elements. False for NaN.
inline bool IsBalanced(const Reactions& reactions) {
  return reactions.imbalance <= BalanceTolerance ||
         ((reactions.imbalance <= LargestRounding || !reactions.isLoaded) &&
          reactions.backwardError <= LargestBackwardError);
}

// Throws a Stop where the record of the model is not complete. Displacements that are not finite
// make numbers that are not.
// threads: that form element matrices; the numbers have the same bits with any number of them.
void ComputeReactions(const SolvedModel& solved, Reactions& reactions, int threads = 1);

}  // namespace kvx
