// The properties of elements in a bulk data deck, each a group of the model.
//
// Numbers may repeat from family to family: PSHELL 10 and PBARL 10 are two properties.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/nastran/nastran_materials.h"
#include "mesh/nastran/nastran_sections.h"

namespace kvx {

// Elements of a family name each other's properties.
enum class PropertyFamily { Shell, ShearPanel, Bar, Beam };
inline constexpr std::size_t PropertyFamilies = 4;

struct NastranProperty {
  std::int64_t number = 0;
  std::size_t card = 0;     // row of the deck's cards
  bool isUsed = false;      // then what follows is filled
  bool hasMaterial = true;  // false: its material does not exist
  std::int32_t group = -1;  // row of the model's groups
  std::int32_t material = -1;
  bool hasPlate = false;                         // PSHELL: its elements have thicknesses
  double thickness = 0.0;                        // PSHELL: T; 0: the elements give it
  std::map<double, std::int32_t> thicknessRows;  // thickness -> row of the model's thicknesses
  NastranSection section;                        // PBARL, PBEAML
  std::int32_t sectionRow = -1;                  // of the model's sections
  std::int32_t lyingRow = -1;                    // of the flat bar turned by 90 degrees
};

struct PropertyTable {
  std::vector<NastranProperty> properties;
  std::array<std::unordered_map<std::int64_t, std::size_t>, PropertyFamilies> rows;
};

// The family of a property's card; false where the card is none.
bool FamilyOfCard(std::string_view card, PropertyFamily& family);

// Reads the numbers of all properties; repeated ones within a family are reported.
void ReadProperties(const NastranDeck& deck, const std::vector<std::uint32_t>& cards,
                    PropertyTable& table, ImportReport& report);

// What taking elements needs of materials and properties.
struct NastranStock {
  const NastranDeck& deck;
  PropertyTable& properties;
  MaterialTable& materials;
  ImportModel& model;
  ImportReport& report;
};

// The property of an element, which is interpreted when it is used first. Null where it does not
// exist, or its material does not: that is reported as refused, for the element ("CQUAD4 17").
NastranProperty* UseProperty(PropertyFamily family, std::int64_t number, const NastranCard& element,
                             std::int64_t elementNumber, NastranStock& stock);

// The row of a thickness of a PSHELL.
std::int32_t ThicknessRow(double thickness, NastranProperty& property, NastranStock& stock);

// Reports the properties that no element has.
void ReportUnusedProperties(const NastranDeck& deck, const PropertyTable& table,
                            ImportReport& report);

}  // namespace kvx
