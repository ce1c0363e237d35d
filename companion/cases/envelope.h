// The smallest and the largest value of many components over load cases, the cases that govern, and
// the values of the other components of the same item that occur with them.
//
// Of equal values that of the first case governs. Values that are not finite govern nothing and are
// counted. With 8 components an item takes 1.2 kB, with 6 it takes 0.7 kB.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kvx {

inline constexpr std::int32_t NoCase = -1;

struct Envelope {
  std::size_t items = 0;       // nodes, stations of beams, elements
  std::size_t components = 0;  // of each item

  // [items][components] 1: the item has no such component, such as the shear force of a triangle;
  // its values are not looked at. Empty: all items have all components.
  std::vector<std::uint8_t> isAbsent;

  // [items][components] The extreme values and the numbers of their cases. Where no case has a
  // finite value: NaN and NoCase.
  std::vector<double> smallest, largest;
  std::vector<std::int32_t> smallestCase, largestCase;

  // [items][components][components] All components of the item in the case that governs.
  std::vector<double> withSmallest, withLargest;

  std::vector<std::int32_t> cases;  // the numbers of the cases, in the order of AddCase
  std::size_t notFinite = 0;  // how many values of all cases were left out for not being finite
};

// isAbsent: as in the envelope. Throws a Stop where its size does not fit.
void InitEnvelope(std::size_t items, std::size_t components, std::vector<std::uint8_t> isAbsent,
                  Envelope& envelope);

// Adds the values of one case.
// values: items x components; caseNumber: the caller's number of the case, not negative. Throws a
// Stop where the size does not fit.
void AddCase(const std::vector<double>& values, std::int32_t caseNumber, Envelope& envelope);

// The item whose smallest (largest) value of the component is the smallest (largest) of all; of
// equal ones the first. Returns the number of items where there is none.
std::size_t FindSmallestItem(const Envelope& envelope, std::size_t component);
std::size_t FindLargestItem(const Envelope& envelope, std::size_t component);

}  // namespace kvx
