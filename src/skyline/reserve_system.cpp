#include "skyline/reserve_system.h"

#include "report/check_memory.h"

namespace korvex {

void ReserveSystem(const std::string& what, std::int32_t equations, SkylineMatrix& K,
                   std::vector<double>& loads, std::vector<double>& displacements) {
  const auto n = static_cast<std::size_t>(equations);
  AllocateOrStop(what, n, BytesPerEquation, [&] {
    K.ColumnHeights.reserve(n);
    K.DiagonalAddress.reserve(n);
    loads.reserve(n);
    displacements.reserve(n);
  });
}

}  // namespace korvex
