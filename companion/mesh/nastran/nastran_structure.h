// Nodes, coordinate systems, elements, properties and materials of a bulk data deck.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/vector3.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"

namespace kvx {

// Where a card's numbers lead: from the deck's number to the row in the ImportModel.
struct NastranNumbers {
  std::unordered_map<std::int64_t, std::int32_t> nodes;   // GRID
  std::unordered_map<std::int64_t, std::int32_t> shells;  // CQUAD4, CTRIA3, ...
  std::unordered_map<std::int64_t, std::int32_t> beams;   // CBAR, CBEAM
};

// A coordinate system in global axes.
enum class NastranSystemKind { Rectangular, Cylindrical, Spherical };
struct NastranSystem {
  NastranSystemKind kind = NastranSystemKind::Rectangular;
  korvex::Vector3 origin{};
  korvex::Vector3 axes[3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
};
struct NastranSystems {
  std::unordered_map<std::int64_t, NastranSystem> systems;  // by number; 0 is the global one
  std::vector<std::int64_t> displacementSystems;            // [nodes] CD of each GRID
  // [beams] The deck's own orientation vector, which its element axes have in their x-y plane.
  std::vector<korvex::Vector3> beamVectors;
  std::vector<korvex::Vector3> beamOffsets;  // [beams] from the nodes to the element's line, global
};

// A point given in the system's own coordinates (lengths, angles in degrees) -> global.
korvex::Vector3 PointOf(const NastranSystem& system, const korvex::Vector3& coordinates);

// A vector given by components along the system's axes at a point (global) -> global.
korvex::Vector3 VectorOf(const NastranSystem& system, const korvex::Vector3& components,
                         const korvex::Vector3& point);

// Which of the three components have no direction at a point (global), as bits from the lowest: on
// the axis of a cylindrical system r and theta, on that of a spherical one theta and phi, in its
// origin all. VectorOf takes them as they are where the angles are 0.
std::uint8_t OpenComponents(const NastranSystem& system, const korvex::Vector3& point);

// Whether a vector has components of this kind.
bool HasOpenComponent(const NastranSystem& system, const korvex::Vector3& components,
                      const korvex::Vector3& point);

// What is reported of cards with such components.
inline constexpr std::string_view OnAxisOfSystem =
    "on the axis of its cylindrical or spherical system: the angle there is taken as 0";

// Fills the model's nodes, materials, thicknesses, sections, shells, beams and the groups of its
// properties. What is not taken over of these cards is reported.
void TakeNastranStructure(const NastranDeck& deck, ImportModel& model, NastranNumbers& numbers,
                          NastranSystems& systems, ImportReport& report);

}  // namespace kvx
