// The profile of the global stiffness matrix: which entries it stores, and how much memory they
// take.
//
// The node order of the model file decides the profile; nothing is renumbered. Loads and restraints
// do not influence it.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "model/model.h"

namespace korvex {

// What the solution of a system needs for each equation, besides the entries above the diagonal:
// height, address, diagonal, load and displacement.
inline constexpr std::uint64_t BytesPerEquation =
    sizeof(std::int32_t) + sizeof(std::int64_t) + 3 * sizeof(double);

// g: 6 x nodeCount, written completely: the equations of an element's dofs, node by node.
// nodes: nodeCount node indices in the element's order.
void BuildDofList(const std::int32_t* nodes, std::int32_t nodeCount, std::int32_t* g);

// Raises the columns of K for all elements of one kind.
// connectivity: elements x nodesPerElement (at most 4) node indices, element-major.
void RaiseElementColumns(const std::vector<std::int32_t>& connectivity,
                         std::int32_t nodesPerElement, SkylineMatrix& K);

// Makes room for what a system of `equations` holds besides the entries of its matrix; no memory is
// touched. Stops the run where memory cannot hold it, with the matrix at its smallest; `what` names
// the system.
void ReserveSystem(const std::string& what, std::int32_t equations, SkylineMatrix& K,
                   std::vector<double>& loads, std::vector<double>& displacements);

// Sets NEQ and makes room for the system. Stops the run where the equations are more than an int32
// counts, or where memory cannot hold them.
void NumberEquations(Model& model);

// Fills the ColumnHeights of the stiffness matrix from the connectivity tables: four-node shells,
// three-node shells, beams. Does nothing if NEQ < 1.
void BuildProfile(Model& model);

// Writes the memory that the stiffness matrix will take, one line to the console and the same line
// to `log`. It comes before the allocation: it is the user's only warning of a large matrix.
void ReportMemoryEstimate(const SkylineMatrix& K, std::ostream& log);

}  // namespace korvex
