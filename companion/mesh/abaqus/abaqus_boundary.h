// *BOUNDARY: which dofs are held, and by how much they are moved.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "mesh/abaqus/abaqus_mesh.h"
#include "mesh/abaqus/abaqus_transforms.h"

namespace kvx {

// The supports that are in force, in the axes of their nodes.
struct HeldNode {
  std::int32_t node = -1;
  std::array<bool, 6> isHeld{};
  std::array<double, 6> values{};
};
struct AbaqusSupports {
  std::vector<HeldNode> held;                        // in the order of their first rows
  std::unordered_map<std::int32_t, std::size_t> at;  // row of a node -> row of held
  bool areNew = true;                                // since AddSupports was called last
};

// Takes a *BOUNDARY: it adds to what is held, and changes the values of dofs that are held before.
void TakeAbaqusBoundary(AbaqusImport& import, const AbaqusKeyword& keyword, bool isInStep,
                        AbaqusSupports& supports);

// Which of the model's sets of supports has these restraints, and what was added last.
struct SupportRows {
  std::unordered_map<std::uint64_t, std::vector<std::int32_t>> byHash;  // rows of supports
  std::int32_t last = -1;
  std::vector<PrescribedDof> lastPrescribed;
};

// Gives a case its supports, a set of the model's, and its prescribed displacements.
void AddSupports(AbaqusImport& import, const AbaqusTransforms& transforms, AbaqusSupports& supports,
                 SupportRows& rows, ImportCase& loads);

}  // namespace kvx
