#include "mesh/nastran/nastran_properties.h"

#include <utility>

#include "mesh/nastran/nastran_fields.h"
#include "mesh/nastran/nastran_repeats.h"
#include "mesh/nastran/nastran_shell_property.h"

namespace kvx {

namespace {

constexpr std::size_t FamilyCards = 14;
constexpr std::array<std::pair<std::string_view, PropertyFamily>, FamilyCards> Families = {
    {{"PSHELL", PropertyFamily::Shell},
     {"PCOMP", PropertyFamily::Shell},
     {"PCOMPG", PropertyFamily::Shell},
     {"PCOMPLS", PropertyFamily::Shell},
     {"PLPLANE", PropertyFamily::Shell},
     {"PSHEAR", PropertyFamily::ShearPanel},
     {"PBAR", PropertyFamily::Bar},
     {"PBARL", PropertyFamily::Bar},
     {"PBRSECT", PropertyFamily::Bar},
     {"PBEAM", PropertyFamily::Beam},
     {"PBEAML", PropertyFamily::Beam},
     {"PBCOMP", PropertyFamily::Beam},
     {"PBMSECT", PropertyFamily::Beam},
     {"PBEAM3", PropertyFamily::Beam}}};

// Why properties that are not taken have no counterpart.
std::string LacksOfProperty(std::string_view card) {
  std::string lacks(card);
  if (card == "PBAR" || card == "PBEAM") {
    return lacks + ": areas and moments of inertia do not tell the plates of a section";
  }
  if (card == "PSHEAR") return lacks + ": there is no panel that carries shear alone";
  if (card == "PLPLANE") return lacks + ": there are no plane elements";
  if (card == "PBRSECT" || card == "PBMSECT" || card == "PBCOMP") {
    return lacks + ": there is no section of any shape";
  }
  if (card == "PBEAM3") return lacks + ": there is no beam of three nodes";
  return lacks + ": there are no layered shells";
}

// Where the mass of properties without a counterpart stands (quick reference guide).
struct MassField {
  std::string_view card;
  std::size_t field = 0;
};
constexpr std::array<MassField, 9> MassFields = {{{"PCOMP", 4},
                                                  {"PCOMPG", 4},
                                                  {"PSHEAR", 5},
                                                  {"PBAR", 8},
                                                  {"PBEAM", 9},
                                                  {"PBCOMP", 9},
                                                  {"PBRSECT", 5},
                                                  {"PBMSECT", 5},
                                                  {"PBEAM3", 9}}};

bool HasMass(const NastranRow& row) {
  for (const MassField& mass : MassFields) {
    if (mass.card == row.card.name && RealField(row, mass.field, 0.0) != 0.0) return true;
  }
  if (row.card.name != "PBEAM") return false;
  // The lines of its stations begin with SO and end with a mass.
  for (std::size_t line = 1; line * 8 < row.card.fieldCount; ++line) {
    const std::string_view so = FieldOf(row.deck, row.card, line * 10 + 2);
    const bool isStation = so == "YES" || so == "YESA" || so == "NO";
    if (isStation && RealField(row, line * 10 + 9, 0.0) != 0.0) return true;
  }
  return false;
}

// Reports what a map file does not give to elements of a property without a counterpart.
void ReportUntaken(const NastranRow& row, const std::string& name, ImportReport& report) {
  if (HasMass(row)) {
    ReportCard(row.card.name, Fate::Limited, "its non-structural mass (NSM) is left out",
               row.card.place, name, report);
  }
  const bool hasLayers = row.card.name == "PCOMP" || row.card.name == "PCOMPG";
  if (hasLayers && !IsBlank(row, 3)) {
    ReportCard(row.card.name, Fate::Limited,
               "its lower face (Z0) is left out: the plate's middle lies on its nodes",
               row.card.place, name, report);
  }
}

void AddLack(const std::string& lack, ImportGroup& group) {
  if (lack.empty() || group.lacks.find(lack) != std::string::npos) return;
  if (!group.lacks.empty()) group.lacks += "; ";
  group.lacks += lack;
}

// Fills what the card says, and the group's `lacks`.
void InterpretProperty(NastranProperty& property, NastranStock& stock) {
  const NastranCard& card = stock.deck.cards[property.card];
  const NastranRow row{stock.deck, card, stock.report};
  ImportGroup group;
  group.name = group.source = CardText(card.name, property.number);
  group.place = card.place;
  std::int64_t material = 0;
  if (card.name == "PSHELL") {
    ShellPlate plate;
    ReadShellProperty(row, plate, stock.report);
    material = plate.material;
    property.hasPlate = plate.lacks.empty();
    property.thickness = plate.thickness;
    AddLack(plate.lacks, group);
  } else if (card.name == "PBARL" || card.name == "PBEAML") {
    material = NeedNumber(row, 3);
    ReadNastranSection(row, property.section);
    AddLack(property.section.lacks, group);
    if (property.section.hasMass) {
      ReportCard(card.name, Fate::Limited, "its non-structural mass (NSM) is left out", card.place,
                 group.name, stock.report);
    }
  } else {
    AddLack(LacksOfProperty(card.name), group);
    ReportUntaken(row, group.name, stock.report);
    const bool hasOne = card.name == "PBAR" || card.name == "PBEAM" || card.name == "PSHEAR";
    if (hasOne) material = NeedNumber(row, 3);
  }
  if (material != 0) {
    const NastranMaterial* found =
        UseMaterial(stock.deck, material, stock.materials, stock.model, stock.report);
    property.hasMaterial = found != nullptr;
    if (found != nullptr) property.material = found->row;
    if (found != nullptr) AddLack(found->lacks, group);
  }
  property.group = static_cast<std::int32_t>(stock.model.groups.size());
  stock.model.groups.push_back(std::move(group));
}

}  // namespace

bool FamilyOfCard(std::string_view card, PropertyFamily& family) {
  for (const auto& [name, itsFamily] : Families) {
    if (name != card) continue;
    family = itsFamily;
    return true;
  }
  return false;
}

void ReadProperties(const NastranDeck& deck, const std::vector<std::uint32_t>& cards,
                    PropertyTable& table, ImportReport& report) {
  for (const std::uint32_t cardRow : cards) {
    const NastranCard& card = deck.cards[cardRow];
    PropertyFamily family = PropertyFamily::Shell;
    if (!FamilyOfCard(card.name, family)) continue;
    NastranProperty property;
    property.number = NeedNumber({deck, card, report}, 2);
    property.card = cardRow;
    auto& rows = table.rows[static_cast<std::size_t>(family)];
    const auto [at, isNew] = rows.emplace(property.number, table.properties.size());
    if (isNew) {
      table.properties.push_back(std::move(property));
      continue;
    }
    const NastranCard& first = deck.cards[table.properties[at->second].card];
    ReportRepeated(deck, first, card, property.number, report);
  }
}

NastranProperty* UseProperty(PropertyFamily family, std::int64_t number, const NastranCard& element,
                             std::int64_t elementNumber, NastranStock& stock) {
  const auto& rows = stock.properties.rows[static_cast<std::size_t>(family)];
  const auto at = rows.find(number);
  if (at == rows.end()) {
    ReportCard(element.name, Fate::Refused, "its property does not exist", element.place,
               CardText(element.name, elementNumber) + ", property " + std::to_string(number),
               stock.report);
    return nullptr;
  }
  NastranProperty& property = stock.properties.properties[at->second];
  if (!property.isUsed) InterpretProperty(property, stock);
  property.isUsed = true;
  if (property.hasMaterial) return &property;
  const NastranCard& card = stock.deck.cards[property.card];
  ReportCard(
      element.name, Fate::Refused, "the material of its property does not exist", element.place,
      CardText(element.name, elementNumber) + ", " + CardText(card.name, number), stock.report);
  return nullptr;
}

std::int32_t ThicknessRow(double thickness, NastranProperty& property, NastranStock& stock) {
  const auto row = static_cast<std::int32_t>(stock.model.thicknesses.size());
  const auto [at, isNew] = property.thicknessRows.emplace(thickness, row);
  if (isNew) {
    const std::string& name = stock.model.groups[static_cast<std::size_t>(property.group)].name;
    stock.model.thicknesses.push_back({name, thickness});
  }
  return at->second;
}

void ReportUnusedProperties(const NastranDeck& deck, const PropertyTable& table,
                            ImportReport& report) {
  for (const NastranProperty& property : table.properties) {
    if (property.isUsed) continue;
    const NastranCard& card = deck.cards[property.card];
    ReportCard(card.name, Fate::NoEffect, "no element has this property", card.place,
               CardText(card.name, property.number), report);
  }
}

}  // namespace kvx
