// The types of elements in mesh files, by the numbers that the format's manual gives them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "mesh/import_report.h"

namespace kvx {

enum GmshType : std::int32_t {
  GmshLine = 1,
  GmshTriangle = 2,
  GmshQuadrangle = 3,
  GmshPoint = 15,
};

struct GmshTypeKind {
  std::int32_t type = 0;
  std::int32_t dimension = 0;
  std::size_t nodeCount = 0;
  bool isTaken = false;       // a point, or of the first order and no solid
  Fate fate = Fate::Refused;  // of those that are not taken
  std::string_view reason;
};

// nullptr for a type that the manual does not list.
const GmshTypeKind* FindGmshType(std::int64_t type);

// Why an element of no known type is refused.
extern const std::string_view UnknownGmshType;

}  // namespace kvx
