#include "mesh/gmsh/gmsh_element_types.h"

#include <algorithm>
#include <iterator>

namespace kvx {

namespace {

constexpr std::string_view HigherOrder =
    "of higher order; mesh with order 1: gmsh -order 1, or Mesh.ElementOrder=1";
constexpr std::string_view Solid = "solid elements have no counterpart";

// Gmsh reference manual, "MSH file format": type, dimension, number of nodes.
constexpr GmshTypeKind Kinds[] = {
    {GmshLine, 1, 2, true, Fate::Refused, {}},
    {GmshTriangle, 2, 3, true, Fate::Refused, {}},
    {GmshQuadrangle, 2, 4, true, Fate::Refused, {}},
    {4, 3, 4, false, Fate::Lost, Solid},
    {5, 3, 8, false, Fate::Lost, Solid},
    {6, 3, 6, false, Fate::Lost, Solid},
    {7, 3, 5, false, Fate::Lost, Solid},
    {8, 1, 3, false, Fate::Refused, HigherOrder},
    {9, 2, 6, false, Fate::Refused, HigherOrder},
    {10, 2, 9, false, Fate::Refused, HigherOrder},
    {11, 3, 10, false, Fate::Lost, Solid},
    {12, 3, 27, false, Fate::Lost, Solid},
    {13, 3, 18, false, Fate::Lost, Solid},
    {14, 3, 14, false, Fate::Lost, Solid},
    {GmshPoint, 0, 1, true, Fate::Refused, {}},
    {16, 2, 8, false, Fate::Refused, HigherOrder},
    {17, 3, 20, false, Fate::Lost, Solid},
    {18, 3, 15, false, Fate::Lost, Solid},
    {19, 3, 13, false, Fate::Lost, Solid},
    {20, 2, 9, false, Fate::Refused, HigherOrder},
    {21, 2, 10, false, Fate::Refused, HigherOrder},
    {22, 2, 12, false, Fate::Refused, HigherOrder},
    {23, 2, 15, false, Fate::Refused, HigherOrder},
    {24, 2, 15, false, Fate::Refused, HigherOrder},
    {25, 2, 21, false, Fate::Refused, HigherOrder},
    {26, 1, 4, false, Fate::Refused, HigherOrder},
    {27, 1, 5, false, Fate::Refused, HigherOrder},
    {28, 1, 6, false, Fate::Refused, HigherOrder},
    {29, 3, 20, false, Fate::Lost, Solid},
    {30, 3, 35, false, Fate::Lost, Solid},
    {31, 3, 56, false, Fate::Lost, Solid},
    {92, 3, 64, false, Fate::Lost, Solid},
    {93, 3, 125, false, Fate::Lost, Solid},
};

}  // namespace

const std::string_view UnknownGmshType =
    "unknown type of element; lines, triangles and quadrangles of order 1 are taken: gmsh -order "
    "1, "
    "or Mesh.ElementOrder=1";

const GmshTypeKind* FindGmshType(std::int64_t type) {
  const auto* kind = std::find_if(std::begin(Kinds), std::end(Kinds),
                                  [&](const GmshTypeKind& one) { return one.type == type; });
  return kind == std::end(Kinds) ? nullptr : kind;
}

}  // namespace kvx
