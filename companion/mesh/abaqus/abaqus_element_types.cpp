#include "mesh/abaqus/abaqus_element_types.h"

#include "mesh/scan_number.h"

namespace kvx {

namespace {

constexpr std::string_view SecondOrderShell =
    "shells of second order: mesh with three-node or four-node shells";
constexpr std::string_view SecondOrderBeam = "beams of second order: mesh with two-node beams";
constexpr std::string_view SlenderBeam =
    "a slender beam there; shear deformation is taken into account here";
constexpr std::string_view OpenBeam = "the warping of open sections is not taken into account";
constexpr std::string_view Truss = "trusses have no bending stiffness: give them a beam type";
constexpr std::string_view PlaneBeam = "beams in a plane: use a type in space, such as B31";
constexpr std::string_view Membrane = "membranes have no bending stiffness: give them a shell type";
constexpr std::string_view Plane = "plane and axisymmetric elements: the model is one in space";
constexpr std::string_view Solid = "solids have no counterpart";
constexpr std::string_view Point = "springs, masses, dampers and connectors have no counterpart";
constexpr std::string_view Rigid = "rigid elements have no counterpart";
constexpr std::string_view Thermal = "elements of heat transfer have no counterpart";

struct NamedType {
  std::string_view name;
  AbaqusElementType type;
};

constexpr AbaqusElementType Shell(std::size_t nodes) {
  return {AbaqusElementKind::Shell, nodes, {}, Fate::Lost};
}
constexpr AbaqusElementType Beam(std::string_view reason = {}) {
  return {AbaqusElementKind::Beam, 2, reason, Fate::Limited};
}
constexpr AbaqusElementType Other(std::size_t nodes, Fate fate, std::string_view reason) {
  return {AbaqusElementKind::Other, nodes, reason, fate};
}

constexpr NamedType Types[] = {
    {"S4", Shell(4)},
    {"S4R", Shell(4)},
    {"S4RS", Shell(4)},
    {"S4RSW", Shell(4)},
    {"S4R5", Shell(4)},
    {"S3", Shell(3)},
    {"S3R", Shell(3)},
    {"S3RS", Shell(3)},
    {"STRI3", Shell(3)},
    {"S6", Other(6, Fate::Refused, SecondOrderShell)},
    {"S8", Other(8, Fate::Refused, SecondOrderShell)},
    {"S8R", Other(8, Fate::Refused, SecondOrderShell)},
    {"S8R5", Other(8, Fate::Refused, SecondOrderShell)},
    {"S9R5", Other(9, Fate::Refused, SecondOrderShell)},
    {"STRI65", Other(6, Fate::Refused, SecondOrderShell)},
    {"B31", Beam()},
    {"B31H", Beam()},
    {"B31R", Beam()},
    {"PIPE31", Beam()},
    {"PIPE31H", Beam()},
    {"B31OS", Beam(OpenBeam)},
    {"B31OSH", Beam(OpenBeam)},
    {"B33", Beam(SlenderBeam)},
    {"B33H", Beam(SlenderBeam)},
    {"B32", Other(3, Fate::Refused, SecondOrderBeam)},
    {"B32R", Other(3, Fate::Refused, SecondOrderBeam)},
    {"B32H", Other(3, Fate::Refused, SecondOrderBeam)},
    {"B32OS", Other(3, Fate::Refused, SecondOrderBeam)},
    {"B32OSH", Other(3, Fate::Refused, SecondOrderBeam)},
    {"PIPE32", Other(3, Fate::Refused, SecondOrderBeam)},
    {"PIPE32H", Other(3, Fate::Refused, SecondOrderBeam)},
};

// Families whose members differ by what stands behind; the nodes are the first number there.
struct Family {
  std::string_view prefix;
  Fate fate;
  std::string_view reason;
};
constexpr Family Families[] = {
    {"T2D", Fate::Refused, Truss},    {"T3D", Fate::Refused, Truss},
    {"B2", Fate::Refused, PlaneBeam}, {"PIPE2", Fate::Refused, PlaneBeam},
    {"M3D", Fate::Refused, Membrane}, {"CPS", Fate::Refused, Plane},
    {"CPE", Fate::Refused, Plane},    {"CAX", Fate::Refused, Plane},
    {"SAX", Fate::Refused, Plane},    {"C3D", Fate::Lost, Solid},
    {"SC", Fate::Lost, Solid},        {"CSS", Fate::Lost, Solid},
    {"R3D", Fate::Lost, Rigid},       {"RB3D", Fate::Lost, Rigid},
    {"DC", Fate::Lost, Thermal},      {"DS", Fate::Lost, Thermal},
    {"MASS", Fate::Lost, Point},      {"ROTARYI", Fate::Lost, Point},
    {"SPRING", Fate::Lost, Point},    {"DASHPOT", Fate::Lost, Point},
    {"CONN", Fate::Lost, Point},      {"GAP", Fate::Lost, Point},
};

// The number of nodes that a solid's or plane element's name says: "C3D20R" has 20.
std::size_t NodesInName(std::string_view type, std::string_view prefix) {
  std::string_view digits = type.substr(prefix.size());
  digits = digits.substr(0, digits.find_first_not_of("0123456789"));
  std::int64_t nodes = 0;
  constexpr std::int64_t MostNodes = 32;  // no element has more
  const bool isKnown = ScanInteger(digits, nodes) && nodes > 0 && nodes <= MostNodes;
  return isKnown ? static_cast<std::size_t>(nodes) : 0;
}

}  // namespace

AbaqusElementType TypeOfElement(std::string_view type) {
  for (const NamedType& named : Types) {
    if (named.name == type) return named.type;
  }
  for (const Family& family : Families) {
    if (type.substr(0, family.prefix.size()) != family.prefix) continue;
    const bool hasCount = family.prefix == "C3D" || family.prefix == "M3D" ||
                          family.prefix == "CPS" || family.prefix == "CPE" ||
                          family.prefix == "CAX" || family.prefix == "SC" || family.prefix == "R3D";
    return Other(hasCount ? NodesInName(type, family.prefix) : 0, family.fate, family.reason);
  }
  return Other(0, Fate::Lost, "unknown element type");
}

}  // namespace kvx
