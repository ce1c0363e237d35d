#include "commands/quantity_names.h"

#include <algorithm>
#include <array>

namespace kvx {

namespace {

struct QuantityRow {
  Quantity quantity;
  const char* name;
  const char* words;
};

constexpr std::array<QuantityRow, 16> QuantityRows{{
    {Quantity::VonMises, "shells", "von Mises stress, upper or lower face"},
    {Quantity::BeamVonMises, "beams", "von Mises stress in the detail models"},
    {Quantity::SectionVonMises, "section", "von Mises stress from section forces"},
    {Quantity::VonMisesUpper, "upper", "von Mises stress of the upper face"},
    {Quantity::VonMisesLower, "lower", "von Mises stress of the lower face"},
    {Quantity::VonMisesMiddle, "middle", "von Mises stress of the middle face (membrane)"},
    {Quantity::VonMisesBending, "bending", "von Mises stress of the bending alone"},
    {Quantity::LargestPrincipal, "tension", "largest principal stress, upper or lower face"},
    {Quantity::SmallestPrincipal, "compression", "smallest principal stress, upper or lower face"},
    {Quantity::DisplacementSize, "displacement", "displacement, sqrt(ux^2 + uy^2 + uz^2)"},
    {Quantity::Ux, "ux", "displacement along x"},
    {Quantity::Uy, "uy", "displacement along y"},
    {Quantity::Uz, "uz", "displacement along z"},
    {Quantity::Rx, "rx", "rotation about x, radians"},
    {Quantity::Ry, "ry", "rotation about y, radians"},
    {Quantity::Rz, "rz", "rotation about z, radians"},
}};

// Shells and beams.
constexpr const char* AllStresses = "stress";

const QuantityRow& RowOf(Quantity quantity) {
  return *std::find_if(QuantityRows.begin(), QuantityRows.end(),
                       [quantity](const QuantityRow& row) { return row.quantity == quantity; });
}

}  // namespace

std::vector<std::string> ListQuantityNames() {
  std::vector<std::string> names{AllStresses};
  for (const QuantityRow& row : QuantityRows) names.emplace_back(row.name);
  return names;
}

bool FindQuantities(std::string name, std::vector<Quantity>& quantities) {
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  quantities.clear();
  if (name == AllStresses) {
    quantities = {Quantity::VonMises, Quantity::BeamVonMises, Quantity::SectionVonMises};
  }
  for (const QuantityRow& row : QuantityRows) {
    if (name == row.name) quantities = {row.quantity};
  }
  return !quantities.empty();
}

const char* QuantityName(Quantity quantity) { return RowOf(quantity).name; }

const char* DescribeQuantity(Quantity quantity) { return RowOf(quantity).words; }

bool IsOfBeams(Quantity quantity) {
  return quantity == Quantity::BeamVonMises || quantity == Quantity::SectionVonMises;
}

bool IsOfNodes(Quantity quantity) { return quantity >= Quantity::DisplacementSize; }

bool IsOfShells(Quantity quantity) { return !IsOfBeams(quantity) && !IsOfNodes(quantity); }

}  // namespace kvx
