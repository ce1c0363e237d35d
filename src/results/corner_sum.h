// The sum behind an averaged corner stress: which corners lie in the own surface, and their faces.
//
// With unit normals n and thicknesses t of the own element (e) and another (f), n_f reversed where
// the two face opposite ways, f lies in the surface of e unless
//   | (t_f / 2) n_f - (t_e / 2) n_e | > t_e / 10.
// The bound is the own element's, so that of two elements one may include the other and not the
// reverse. Elements of equal thickness are averaged up to a fold of 2 asin(1/10) = 11.48 degrees.
#pragma once

#include <cstddef>
#include <cstring>

#include "shell/shell_element.h"

namespace korvex {

// What has been summed up for a corner, and the element that it belongs to.
struct CornerSum {
  StressVector top{}, bottom{};
  double count = 0.0;
  Vector3 normal{};  // of the own element
  double TK = 0.0;   // of the own element
};

// The unit normal e3.
template <std::int32_t Nodes>
Vector3 Normal(const ShellElement<Nodes>& element) {
  return {element.Frame[2], element.Frame[5], element.Frame[8]};
}

// Adds the faces `top` and `bottom` of a corner whose element has this normal and thickness, if the
// element lies in the surface of the sum's own; the faces change places where the two elements face
// opposite ways.
void AddCorner(const StressVector& top, const StressVector& bottom, Vector3 normal, double TK,
               CornerSum& sum);

// Compares bits, not values: a NaN is like itself, and 0 is not -0, whose sums may differ.
inline bool HaveEqualBits(const void* a, const void* b, std::size_t bytes) {
  return std::memcmp(a, b, bytes) == 0;
}

// Whether the sums of two elements take the same corners: normal and thickness agree in every bit.
template <std::int32_t Nodes>
bool LieAlike(const ShellElement<Nodes>& a, const ShellElement<Nodes>& b) {
  const Vector3 normalA = Normal(a), normalB = Normal(b);
  return HaveEqualBits(&normalA, &normalB, sizeof normalA) &&
         HaveEqualBits(&a.TK, &b.TK, sizeof a.TK);
}

// Adds corner k of `element` in the same way.
template <std::int32_t Nodes>
void AddCorner(const ShellElement<Nodes>& element, std::size_t k, CornerSum& sum) {
  AddCorner(element.NodeStressTop[k], element.NodeStressBottom[k], Normal(element), element.TK,
            sum);
}

}  // namespace korvex
