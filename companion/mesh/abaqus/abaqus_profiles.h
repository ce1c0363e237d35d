// Beam sections of a deck as sections of the model, and where they stand.
//
// A deck places a section in the axes n1 and n2 across the beam; t, n1, n2 are right-handed, t from
// the first to the second node. Its dimensions (manual of Abaqus, "Beam cross-section library"; the
// origin is the node):
//
//   RECT a, b                     a along n1, b along n2, centred
//   PIPE, THICK PIPE r, t         outer radius and wall, centred
//   I l, h, b1, b2, t1, t2, t3    upright along n2: l from the outer face of the lower flange up to
//                                 the node, h height, b1 t1 lower and b2 t2 upper flange, t3 web
//   T b, h, l, tf, tw             upright along n2, flange on top: l from the web's edge to the
//   node L a, b, t1, t2                legs along +n1 (length a, thickness t1) and +n2 (b, t2);
//   lengths
//                                 over all, the node where the middle lines of the legs meet
//
// The model's sections stand on the node with the free edge of their web, web along z, y = z x t.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/import_model.h"

namespace kvx {

// The numbers of a *BEAM SECTION. Offsets are those of CalculiX: the node lies by this share of the
// section's size off its centre, along n1 and n2.
inline constexpr std::size_t MostProfileValues = 8;
struct AbaqusProfileData {
  std::string_view type;  // "RECT", in upper case
  std::array<double, MostProfileValues> values{};
  std::size_t count = 0;
  double offset1 = 0.0, offset2 = 0.0;
};

struct AbaqusProfile {
  bool isTaken = false;
  std::string lacks;                      // of one that is not: why
  std::vector<std::string_view> limited;  // of one that is: in which ways it is limited
  ImportSection section;                  // without its name
  double web1 = 0.0, web2 = 1.0;          // the direction of the web: web1 n1 + web2 n2
  double BeamSecOz = 0.0;
  bool BeamSecMirrored = false;
  bool isAside = false;  // it stands beside the node across the web, which the model cannot say
};

// Whether sections of this type can be taken over: the numbers of others have other forms.
bool IsPlacedProfile(std::string_view type);

// How many values a section of a placed type has.
std::size_t CountProfileValues(std::string_view type);

AbaqusProfile PlaceProfile(const AbaqusProfileData& data);

}  // namespace kvx
