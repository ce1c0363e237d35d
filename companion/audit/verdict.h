// What can be said of a solution at once: whether all its numbers are numbers, what has spoiled
// them, and how large the displacements are beside the structure.
//
// Linear statics is right for displacements that are small beside the structure, and for rotations
// that are small beside 1. Larger ones mean loads in wrong units, or a structure that can move.
#pragma once

#include "audit/end_forces.h"

namespace kvx {

// Displacements that are NaN or infinite, and what may be their cause.
struct NotFinite {
  std::int32_t nodes = 0;  // how many nodes have one
  std::int32_t node = -1;  // the first of them; -1: there is none, and nothing else is filled
  std::int32_t dof = -1;   // and its dof

  // The first element whose stiffness is not finite: its shape, section or material is no good. All
  // that is connected with it gets NaNs.
  bool hasElement = false;
  ElementRef element;

  // The first load that is not finite; a pressure or line load shows at the nodes of its element.
  std::int32_t loadNode = -1, loadDof = -1;

  // The first of the nodes above that has no element: nothing holds it.
  std::int32_t lonelyNode = -1;

  // Where none of the three is there: a structure that can move, or numbers too large for a double.
};

// The largest of a kind of displacement.
struct LargestDisplacement {
  double value = 0.0;      // length of the vector: model units, or radians
  std::int32_t node = -1;  // -1: all are zero
};

struct Verdict {
  NotFinite notFinite;
  LargestDisplacement translation, rotation;  // of the nodes whose displacements are finite
  double extent = 0.0;                        // diagonal of the box around the nodes, model units
  double share = 0.0;                         // largest translation / extent; 0 where both are 0
};

// Throws a Stop where the record of the model is not complete.
void JudgeSolution(const SolvedModel& solved, Verdict& verdict);

}  // namespace kvx
