// The detail model of one beam: the outline of its cross-section as flat shells, extruded along the
// axis.
//
// Nodes, global axes: node 0 is the beam's first end; then follow the P outline points of station
// 0, of station 1 and so on to station n; the last node is the beam's second end. Each outline
// segment makes one four-node shell between two stations. Links, which are very stiff beams,
// connect each end node with the P nodes of its end station. Dof d of node i has the equation
// i * DofsPerNode + d.
#pragma once

#include <cstdint>
#include <vector>

#include "base/vector3.h"
#include "beam/beam_element.h"
#include "shell/shell_element.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

struct BeamShellModel {
  std::int32_t MeshLevel = 0;  // copy of Model::BeamShellMeshLevel
  double E = 0.0;              // Young's modulus of the beam
  double Mu = 0.0;             // Poisson's ratio of the beam
  Vector3 EndPoint1{};         // global position of the beam's first node
  Vector3 EndPoint2{};         // global position of the beam's second node
  Vector3 OrientVector{};      // the beam's orientation vector: a direction, not a point
  double Tolerance = 0.0;      // length of the beam / 10000

  // MeshLevel and some of these counts are not read: they belong to the record's fixed layout.
  std::int32_t NodesPerShell = 4;
  std::int32_t NodesPerLink = 2;
  std::int32_t DofsPerNode = 6;
  std::int32_t ShellDofs = 24;
  std::int32_t LinkDofs = 12;

  std::int32_t ProfileNodeCount = 0;     // P
  std::int32_t NodeCount = 0;            // P (n + 1) + 2
  std::int32_t NEQ = 0;                  // NodeCount x DofsPerNode
  std::vector<Vector3> NodeCoords;       // [NodeCount], global
  std::int32_t ShellCount = 0;           // segments x n
  std::vector<std::int32_t> ShellNodes;  // [ShellCount x 4], element-major
  std::vector<Shell4Element> Shells;     // [ShellCount], station by station in segment order
  std::int32_t LinkCount = 0;            // 2 P

  // Needed for the solution only. Afterwards the memory passes to the next beam's model.
  std::vector<std::int32_t> LinkNodes;  // [LinkCount x 2], element-major: end node, outline node
  std::vector<BeamElement> Links;       // [LinkCount], those of the first end, then of the second
  SkylineMatrix Stiffness;              // NEQ columns; used up by the solution
  std::vector<double> LoadVector;       // [NEQ]

  std::vector<double> Displacements;  // [NEQ]
};

}  // namespace korvex
