// Gives the memory of a vector or a string back. Neither clear() nor an assignment of {} does: they
// keep it for later items.
#pragma once

namespace korvex {

// vector: empty afterwards, without capacity.
template <typename Vector>
void ReleaseVector(Vector& vector) {
  Vector().swap(vector);
}

}  // namespace korvex
