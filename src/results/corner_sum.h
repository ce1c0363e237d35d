// The sum for an averaged corner stress, and the test which corners enter it.
//
// e is the corner's own element, f another one, with unit normals n and thicknesses t; n_f is
// reversed if the two normals point to opposite sides. f lies in the surface of e unless
//   | (t_f / 2) n_f - (t_e / 2) n_e | > t_e / 10.
// The limit depends on t_e only: with different thicknesses, e may include f while f does not
// include e. Elements of equal thickness are averaged up to a fold of 2 asin(1/10) = 11.48 degrees.
#pragma once

#include <cstddef>
#include <cstring>

#include "shell/shell_element.h"

namespace korvex {

// The sums for a corner, and the normal and thickness of its own element.
struct CornerSum {
  StressVector top{}, bottom{};
  double count = 0.0;
  Vector3 normal{};  // of the own element
  double TK = 0.0;   // of the own element
  // Whether corners of elements that lie alike are known to enter, unflipped (TakeAlike).
  bool takesAlike = false;
};

// The unit normal e3.
template <std::int32_t Nodes>
Vector3 Normal(const ShellElement<Nodes>& element) {
  return {element.Frame[2], element.Frame[5], element.Frame[8]};
}

// Adds the stresses `top` and `bottom` of a corner to the sum, if the corner's element, with this
// normal and thickness, lies in the surface of the sum's own element. The two faces are exchanged
// if the normals point to opposite sides.
void AddCorner(const StressVector& top, const StressVector& bottom, Vector3 normal, double TK,
               CornerSum& sum);

// Compares bits, not values: a NaN equals itself, and 0 differs from -0, whose sums may differ.
inline bool HaveEqualBits(const void* a, const void* b, std::size_t bytes) {
  return std::memcmp(a, b, bytes) == 0;
}

// Whether the same corners enter the sums of two elements: normal and thickness are equal in every
// bit.
template <std::int32_t Nodes>
bool LieAlike(const ShellElement<Nodes>& a, const ShellElement<Nodes>& b) {
  const Vector3 normalA = Normal(a), normalB = Normal(b);
  return HaveEqualBits(&normalA, &normalB, sizeof normalA) &&
         HaveEqualBits(&a.TK, &b.TK, sizeof a.TK);
}

// Finds out whether corners of elements that lie like the own one enter the sum, so that each of
// them need not be tested again. `normal` and `TK` are set before, and stay.
void TakeAlike(CornerSum& sum);

// Adds the faces of a corner that lies in the surface.
inline void AddFaces(const StressVector& top, const StressVector& bottom, CornerSum& sum) {
  for (std::size_t i = 0; i < sum.top.size(); ++i) {
    sum.top[i] += top[i];
    sum.bottom[i] += bottom[i];
  }
  sum.count += 1.0;
}

// AddCorner for corner k of `element`.
template <std::int32_t Nodes>
void AddCorner(const ShellElement<Nodes>& element, std::size_t k, CornerSum& sum) {
  const Vector3 normal = Normal(element);
  if (sum.takesAlike && HaveEqualBits(&normal, &sum.normal, sizeof normal) &&
      HaveEqualBits(&element.TK, &sum.TK, sizeof element.TK)) {
    AddFaces(element.NodeStressTop[k], element.NodeStressBottom[k], sum);
    return;
  }
  AddCorner(element.NodeStressTop[k], element.NodeStressBottom[k], Normal(element), element.TK,
            sum);
}

}  // namespace korvex
