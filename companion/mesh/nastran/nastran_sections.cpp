// Dimensions: figures of PBARL and PBEAML in the quick reference guide.
//   T, T2: flange width, height over all, flange thickness, web thickness; the flange of T lies at
//   +y, that of T2 at -y. T1: flange width (along y), web height, flange thickness, web thickness;
//   the flange lies at +z. L: flange width, height over all, flange thickness, web thickness; the
//   flange lies at -y and points to +z. BAR: width along z, height along y. TUBE: outer and inner
//   radius. TUBE2: outer radius, wall.
#include "mesh/nastran/nastran_sections.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace kvx {

namespace {

constexpr std::size_t FirstDimension = 8;  // data field: the first line holds the type

// Of a rectangle b x t, J = b t^3 / 3 (1 - 0.63 t / b) (Timoshenko & Goodier 1970, art. 109); here
// it is b t^3 / 3. Above this share the difference is worth a line.
constexpr double TorsionShare = 0.63;
constexpr double TorsionTolerance = 0.05;

struct SectionShape {
  std::string_view type;
  std::size_t dimensions = 0;
};
constexpr std::array<SectionShape, 7> Shapes = {
    {{"T", 4}, {"T1", 4}, {"T2", 4}, {"L", 4}, {"BAR", 2}, {"TUBE", 2}, {"TUBE2", 2}}};

// Of types without a counterpart: behind their dimensions stands the mass.
constexpr std::array<SectionShape, 15> OtherShapes = {{{"ROD", 1},
                                                       {"I", 6},
                                                       {"I1", 4},
                                                       {"H", 4},
                                                       {"CHAN", 4},
                                                       {"CHAN1", 4},
                                                       {"CHAN2", 4},
                                                       {"BOX", 4},
                                                       {"BOX1", 6},
                                                       {"CROSS", 4},
                                                       {"Z", 4},
                                                       {"HEXA", 3},
                                                       {"HAT", 4},
                                                       {"HAT1", 5},
                                                       {"DBOX", 10}}};

double Dimension(const NastranRow& row, std::size_t k) {
  // Data field -> number of the manual.
  const std::size_t field = FirstDimension + k;
  return RealField(row, field / 8 * 10 + field % 8 + 2, 0.0);
}

void SetPlates(double Hw, double Tw, double Bf, double Tf, NastranSection& s) {
  s.section.plates = {Hw, Tw, Bf, Tf};
  if (!(Hw > 0.0 && Tw > 0.0 && Bf > 0.0 && Tf > 0.0)) {
    s.lacks = "its dimensions leave no plates";
    return;
  }
  const double web = Hw * Tw, flange = Bf * Tf;
  s.shearCentre = Hw + Tf / 2.0;
  s.centroid = (web * Hw / 2.0 + flange * s.shearCentre) / (web + flange);
  const bool isL = s.section.type == korvex::BeamSecTypeL;
  s.beside = isL ? flange * (Bf / 2.0 - Tw / 2.0) / (web + flange) : 0.0;
}

void SetBar(double height, double width, NastranSection& s) {
  s.section.type = korvex::BeamSecTypeT;
  s.section.plates = {height, width, 0.0, 0.0};
  if (!(height > 0.0 && width > 0.0)) s.lacks = "its dimensions leave no plates";
  s.centroid = s.shearCentre = height / 2.0;
  s.isFlatBar = true;
  s.isThickBar = TorsionShare * width > TorsionTolerance * height;
}

void SetTube(double outer, double wall, NastranSection& s) {
  s.section.type = korvex::BeamSecTypeC;
  s.section.tube = {outer - wall / 2.0, wall};
  if (!(outer > 0.0 && wall > 0.0)) {
    s.lacks = "its dimensions leave no wall";
  } else if (!(wall < outer)) {
    s.lacks = "there is no solid round bar";
  }
}

void SetSection(std::string_view type, const std::array<double, 4>& d, NastranSection& s) {
  s.section.type = type == "L" ? korvex::BeamSecTypeL : korvex::BeamSecTypeT;
  if (type == "BAR") return SetBar(d[1], d[0], s);
  if (type == "TUBE") return SetTube(d[0], d[0] - d[1], s);
  if (type == "TUBE2") return SetTube(d[0], d[1], s);
  if (type == "T1") {
    s.web = WebDirection::PlusZ;
    return SetPlates(d[1], d[3], d[0], d[2], s);
  }
  s.web = type == "T" ? WebDirection::PlusY : WebDirection::MinusY;
  SetPlates(d[1] - d[2], d[3], d[0], d[2], s);
}

std::string LacksOfType(std::string_view type) {
  if (type == "ROD") return "there is no solid round bar";
  if (type == "I" || type == "I1" || type == "H") return "there is no I section";
  if (type == "CHAN" || type == "CHAN1" || type == "CHAN2") return "there is no channel";
  if (type == "BOX" || type == "BOX1" || type == "DBOX") return "there is no box";
  return "there is no such section";
}

// Reads what stands behind the dimensions of end A: the mass, and for PBEAML the stations, each
// with SO, X, dimensions and mass; a blank dimension is that of the ends.
void ReadStations(const NastranRow& row, std::size_t dimensions, const std::array<double, 4>& d,
                  NastranSection& s) {
  s.hasMass = Dimension(row, dimensions) != 0.0;
  if (row.card.name != "PBEAML") return;
  const std::size_t step = dimensions + 3;
  for (std::size_t at = dimensions + 1; FirstDimension + at < row.card.fieldCount; at += step) {
    const std::string_view so = DataField(row.deck, row.card, FirstDimension + at);
    if (!so.empty() && so != "YES" && so != "NO" && so != "YESA") {
      s.lacks = "its stations cannot be read";
      return;
    }
    Dimension(row, at + 1);  // X: where it is no number, the fields are not what they seem
    for (std::size_t k = 0; k < dimensions; ++k) {
      const std::string_view field = DataField(row.deck, row.card, FirstDimension + at + 2 + k);
      if (!field.empty() && Dimension(row, at + 2 + k) != d[k]) s.lacks = "there is no taper";
    }
    s.hasMass = s.hasMass || Dimension(row, at + 2 + dimensions) != 0.0;
  }
}

}  // namespace

void ReadNastranSection(const NastranRow& row, NastranSection& section) {
  const std::string_view group = FieldOf(row.deck, row.card, 4);
  const std::string_view type = FieldOf(row.deck, row.card, 5);
  const SectionShape* shape = nullptr;
  for (const SectionShape& known : Shapes) shape = known.type == type ? &known : shape;
  if (!group.empty() && group != "MSCBML0") {
    section.lacks = "its section is of a library of its own";
  } else if (shape == nullptr) {
    section.lacks = LacksOfType(type);
    for (const SectionShape& other : OtherShapes) {
      if (other.type == type) section.hasMass = Dimension(row, other.dimensions) != 0.0;
    }
  } else {
    std::array<double, 4> d{};
    for (std::size_t k = 0; k < shape->dimensions; ++k) d[k] = Dimension(row, k);
    SetSection(type, d, section);
    ReadStations(row, shape->dimensions, d, section);
  }
  if (!section.lacks.empty()) {
    std::string card(row.card.name);
    section.lacks = card.append(" ").append(type).append(": ").append(section.lacks);
  }
}

NastranSection LyingBar(const NastranSection& bar) {
  NastranSection lying = bar;
  SetBar(bar.section.plates.Tw, bar.section.plates.Hw, lying);
  lying.web = WebDirection::PlusZ;
  return lying;
}

}  // namespace kvx
