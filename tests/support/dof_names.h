// Names for the six dofs of a node, its six loads and the six stress components, and the number of
// a dof's equation.
//
// Each enum counts from 0 in the order of the result files. All components are global unless a test
// says otherwise. The names convert to std::size_t: they index arrays of six, and in an element
// matrix the dof of its second node is 6 + Uz.
#pragma once

#include <cstddef>

namespace korvex::test {

enum Dof : std::size_t { Ux, Uy, Uz, Rx, Ry, Rz };
enum Load : std::size_t { Fx, Fy, Fz, Mx, My, Mz };
enum Stress : std::size_t { SX, SY, SZ, TXY, TXZ, TYZ };

// The equation of a dof: six to each node, in the order of the nodes.
template <typename Integer>
constexpr std::size_t Equation(Integer node, std::size_t dof) {
  return static_cast<std::size_t>(node) * 6 + dof;
}

}  // namespace korvex::test
