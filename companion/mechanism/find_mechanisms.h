// The mechanisms of a model: motions that meet no resistance, beyond those of whole parts without
// supports, and those that meet nearly none.
//
// First the dofs without any stiffness, by regions; then the small pivots of the free system
// (free_system.h). A small pivot alone is no proof: the tip of a slender cantilever of N beams has
// one of N^-3, and rounding leaves something of a pivot that should be 0. So the mode of the pivot
// decides, by the strain of the elements that take part in it (mode_strain.h).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "check/rigid_motions.h"
#include "deck/model_tables.h"
#include "deck/row_listener.h"

namespace kvx {

struct ElementRef {
  korvex::Section section = korvex::Section::Shells4;
  std::int32_t row = 0;
};

enum class MechanismKind {
  NoStiffness,  // dofs whose stiffness is 0
  Motion,       // a motion without resistance
  Soft,         // a motion with so little that rounding errors are seen
};

struct Mechanism {
  MechanismKind kind = MechanismKind::Motion;
  std::int32_t node = 0;            // where it was found
  std::uint8_t dofs = 0;            // bit d: dof d of this node has no hold
  std::vector<std::int32_t> nodes;  // that move, ascending
  // How they move, dofs ux .. rz of each, the largest 1 or so. [nodes] (NoStiffness: 1 where free)
  std::vector<std::array<double, 6>> displacements;
  Body body;                         // of the nodes that move
  std::vector<RigidMotion> motions;  // where they move as a rigid body; else empty
  std::vector<ElementRef> elements;  // beside them, the first ones
  double error = 0.0;                // Soft: relative, of the displacements, by rounding
};

struct MechanismReport {
  std::vector<Mechanism> mechanisms;
  bool more = false;                       // there are more than were looked at
  std::vector<ElementRef> brokenElements;  // whose stiffness is not finite
  std::string notExamined;                 // why nothing was examined; empty: it was
};

// Examines any tables. Where a reference leads outside its table, or memory is too small for the
// matrix (factor_work.h predicts it), notExamined says so.
void FindMechanisms(const korvex::ModelTables& tables, MechanismReport& report);

// The same, with the nodes in the order that takes least memory and time (renumber/orders.h); the
// report has the numbers of `tables`. Of the nodes of a mechanism it may name another one.
void FindMechanismsReordered(const korvex::ModelTables& tables, MechanismReport& report);

}  // namespace kvx
