// The tables of a model file: row k of a section is entry k of its table.
//
// Counts have their names from the file. All references are 0-based. Nothing is checked or
// converted; units are those of the file. Elements and equations, which are made from the tables,
// are in the Model (model/model.h).
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/dof_counts.h"
#include "base/material.h"
#include "base/vector3.h"
#include "beam/beam_element.h"
#include "deck/zeroed_table.h"
#include "shell/shell_element.h"

namespace korvex {

// The release of the file format; no other is accepted.
inline constexpr double ModelFileRelease = 3.0;

struct ShellThickness {
  double TK = 0.0;
};

struct Node {
  double x = 0.0, y = 0.0, z = 0.0;  // global
};

// The references in a shell's row, except its nodes.
struct ShellRowProperties {
  std::int32_t material = 0;   // row of Materials
  std::int32_t thickness = 0;  // row of ShellThicknesses
};

// The values of BeamSecType that have a section table. A beam of another type is read without
// error; the run stops later, when its detail model is made.
inline constexpr std::int32_t BeamSecTypeT = 0;
inline constexpr std::int32_t BeamSecTypeL = 1;
inline constexpr std::int32_t BeamSecTypeC = 2;

inline bool HasSectionTable(std::int32_t BeamSecType) {
  return BeamSecType == BeamSecTypeT || BeamSecType == BeamSecTypeL || BeamSecType == BeamSecTypeC;
}

struct BeamSectionRef {
  std::int32_t BeamSecType = 0;
  std::int32_t BeamSecIndex = 0;  // row of the section table that BeamSecType selects
  double BeamSecOz = 0.0;         // offset along local z
  bool BeamSecMirrored = false;
};

// The data in a beam's row, except its nodes and its section.
struct BeamRowProperties {
  Vector3 orientation{};      // orientation vector, global
  std::int32_t material = 0;  // row of Materials
};

struct NodalRestraint {
  std::array<std::int32_t, 6> fixed{};  // by dof; 1 = fixed, any other value = free
  std::int32_t node = 0;
};

struct NodalForce {
  std::int32_t node = 0;
  std::array<double, 6> components{};  // Fx, Fy, Fz, Mx, My, Mz, global
};

// A table has as many rows as its count, or none if the count is negative.
struct ModelTables {
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
  std::vector<std::int32_t> Shell4Nodes;             // [NELEM_S_4ND x 4], element-major
  std::vector<ShellRowProperties> Shell4Properties;  // [NELEM_S_4ND]
  std::vector<std::int32_t> Shell3Nodes;             // [NELEM_S_3ND x 3], element-major
  std::vector<ShellRowProperties> Shell3Properties;  // [NELEM_S_3ND]
  std::vector<std::int32_t> BeamNodes;               // [NELEM_B x 2], element-major
  std::vector<BeamSectionRef> BeamSectionRefs;       // [NELEM_B]
  std::vector<BeamRowProperties> BeamProperties;     // [NELEM_B]
  ZeroedTable<NodalRestraint> NodalRestraints;       // [NRN]
  ZeroedTable<NodalForce> NodalForces;               // [NFOR]
  ZeroedTable<ShellSurfaceLoad> Shell4SurfaceLoads;  // [NDL_S_4ND]
  ZeroedTable<ShellSurfaceLoad> Shell3SurfaceLoads;  // [NDL_S_3ND]
  ZeroedTable<BeamLineLoad> BeamLineLoads;           // [NDL_B]
};

}  // namespace korvex
