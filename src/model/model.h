// Everything that a run knows: the tables of the model file, the equation system, the
// displacements.
//
// The run driver owns the one Model; the routines of system, results, beamshell and dxf get it by
// reference. Row k of a table of the file is entry k here; all references are 0-based. Counts carry
// the names that they have in the file. Units are those of the file: nothing is converted.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "beam/beam_element.h"
#include "beamshell/beam_shell_model.h"
#include "model/material.h"
#include "model/zeroed_table.h"
#include "shell/shell_element.h"
#include "system/skyline_matrix.h"

namespace korvex {

// Equation of dof d of node n: n * DofsPerNode + d, d = 0 .. 5 for ux, uy, uz, rx, ry, rz. Every
// dof of every node has one; element dofs run the same way over the element's nodes.
inline constexpr std::int32_t DofsPerNode = 6;
inline constexpr std::int32_t NodesPerShell4 = 4;
inline constexpr std::int32_t NodesPerShell3 = 3;
inline constexpr std::int32_t NodesPerBeam = 2;
inline constexpr std::int32_t Shell4Dofs = 24;
inline constexpr std::int32_t Shell3Dofs = 18;
inline constexpr std::int32_t BeamDofs = 12;

struct ShellThickness {
  double TK = 0.0;
};

struct Node {
  double x = 0.0, y = 0.0, z = 0.0;  // global
};

// The values of BeamSecType that have a section table; any other is read without complaint.
inline constexpr std::int32_t BeamSecTypeT = 0;
inline constexpr std::int32_t BeamSecTypeL = 1;
inline constexpr std::int32_t BeamSecTypeC = 2;

struct BeamSectionRef {
  std::int32_t BeamSecType = 0;
  std::int32_t BeamSecIndex = 0;  // row of the section table that BeamSecType selects
  double BeamSecOz = 0.0;         // offset along local z
  bool BeamSecMirrored = false;
};

struct NodalRestraint {
  std::array<std::int32_t, 6> fixed{};  // by dof; 1 = fixed, any other value = free
  std::int32_t node = 0;
};

struct NodalForce {
  std::int32_t node = 0;
  std::array<double, 6> components{};  // Fx, Fy, Fz, Mx, My, Mz, global
};

struct Model {
  std::int32_t NMT = 0;          // materials
  std::int32_t NTK = 0;          // shell thicknesses
  std::int32_t NTBS = 0;         // T_beam sections
  std::int32_t NLBS = 0;         // L_beam sections
  std::int32_t NCBS = 0;         // C_beam sections
  std::int32_t NPOIN = 0;        // nodal points
  std::int32_t NELEM_S_4ND = 0;  // four-node shell elements
  std::int32_t NELEM_S_3ND = 0;  // three-node shell elements
  std::int32_t NELEM_B = 0;      // beam elements
  std::int32_t NRN = 0;          // restricted nodal points
  std::int32_t NFOR = 0;         // nodal forces
  std::int32_t NDL_S_4ND = 0;    // distributed loads on four-node shells
  std::int32_t NDL_S_3ND = 0;    // distributed loads on three-node shells
  std::int32_t NDL_B = 0;        // distributed loads on beams

  ZeroedTable<Material> Materials;                   // [NMT]
  ZeroedTable<ShellThickness> ShellThicknesses;      // [NTK]
  ZeroedTable<BeamSection> TBeamSections;            // [NTBS]
  ZeroedTable<BeamSection> LBeamSections;            // [NLBS]
  ZeroedTable<CBeamSection> CBeamSections;           // [NCBS]
  ZeroedTable<Node> Nodes;                           // [NPOIN]
  std::vector<Shell4Element> Shell4Elements;         // [NELEM_S_4ND]
  std::vector<std::int32_t> Shell4Nodes;             // [NELEM_S_4ND x 4], element-major
  std::vector<Shell3Element> Shell3Elements;         // [NELEM_S_3ND]
  std::vector<std::int32_t> Shell3Nodes;             // [NELEM_S_3ND x 3], element-major
  std::vector<BeamElement> BeamElements;             // [NELEM_B]
  std::vector<std::int32_t> BeamNodes;               // [NELEM_B x 2], element-major
  std::vector<BeamSectionRef> BeamSectionRefs;       // [NELEM_B]
  ZeroedTable<NodalRestraint> NodalRestraints;       // [NRN]
  ZeroedTable<NodalForce> NodalForces;               // [NFOR]
  ZeroedTable<ShellSurfaceLoad> Shell4SurfaceLoads;  // [NDL_S_4ND]
  ZeroedTable<ShellSurfaceLoad> Shell3SurfaceLoads;  // [NDL_S_3ND]
  ZeroedTable<BeamLineLoad> BeamLineLoads;           // [NDL_B]

  std::int32_t NEQ = 0;               // equations: NPOIN x DofsPerNode
  SkylineMatrix Stiffness;            // NEQ columns; its factors after the solution
  std::vector<double> LoadVector;     // [NEQ]; forward-reduced after the solution
  std::vector<double> Displacements;  // [NEQ], written by the solution

  // How finely the detail models divide their sections: 0, 1 or 2. Neither the model file nor an
  // option sets it.
  std::int32_t BeamShellMeshLevel = 0;
  std::vector<BeamShellModel> BeamShellModels;  // [NELEM_B]
};

// Frees every table and array. The counts stay; a second release is harmless.
void ReleaseModel(Model& model);

}  // namespace korvex
