// The order matters: nodes before elements, elements before what nothing uses is reported.
#include "mesh/nastran/nastran_structure.h"

#include <algorithm>
#include <string_view>

#include "mesh/nastran/nastran_beams.h"
#include "mesh/nastran/nastran_elements.h"
#include "mesh/nastran/nastran_materials.h"
#include "mesh/nastran/nastran_nodes.h"
#include "mesh/nastran/nastran_properties.h"
#include "mesh/nastran/nastran_shells.h"

namespace kvx {

namespace {

// Rows of the deck's cards by what they are.
struct SortedCards {
  std::vector<std::uint32_t> grids, systems, gridDefaults;
  std::vector<std::uint32_t> shells, beams, beamDefaults;
  std::vector<std::uint32_t> properties, materials;
};

bool IsShell(std::string_view name) {
  return name == "CQUAD4" || name == "CTRIA3" || name == "CQUADR" || name == "CTRIAR" ||
         name == "CSHEAR";
}

bool IsSystem(std::string_view name) {
  const bool isOfKind =
      name.size() == 6 && name.substr(0, 4) == "CORD" && (name[4] == '1' || name[4] == '2');
  return isOfKind && (name[5] == 'R' || name[5] == 'C' || name[5] == 'S');
}

bool IsMaterial(std::string_view name) {
  return name == "MAT1" || name == "MAT2" || name == "MAT3" || name == "MAT8" || name == "MAT9" ||
         name == "MAT10" || name == "MATORT" || name == "MATHP";
}

std::vector<std::uint32_t>* ListOf(std::string_view name, SortedCards& sorted) {
  PropertyFamily family = PropertyFamily::Shell;
  if (name == "GRID") return &sorted.grids;
  if (name == "GRDSET") return &sorted.gridDefaults;
  if (name == "BAROR" || name == "BEAMOR") return &sorted.beamDefaults;
  if (name == "CBAR" || name == "CBEAM") return &sorted.beams;
  if (IsShell(name)) return &sorted.shells;
  if (IsSystem(name)) return &sorted.systems;
  if (IsMaterial(name)) return &sorted.materials;
  return FamilyOfCard(name, family) ? &sorted.properties : nullptr;
}

void SortCards(const NastranDeck& deck, SortedCards& sorted) {
  for (std::size_t k = 0; k < deck.cards.size(); ++k) {
    std::vector<std::uint32_t>* list = ListOf(deck.cards[k].name, sorted);
    if (list != nullptr) list->push_back(static_cast<std::uint32_t>(k));
  }
}

// The nodes of each group's elements. stamps: [nodes] the group that a node was last found in.
void FillGroupNodes(ImportModel& model) {
  std::vector<std::int32_t> stamps(model.nodes.size(), -1);
  for (std::size_t g = 0; g < model.groups.size(); ++g) {
    ImportGroup& group = model.groups[g];
    const auto add = [&](std::int32_t node) {
      if (node < 0 || stamps[static_cast<std::size_t>(node)] == static_cast<std::int32_t>(g))
        return;
      stamps[static_cast<std::size_t>(node)] = static_cast<std::int32_t>(g);
      group.nodes.push_back(node);
    };
    for (const std::int32_t shell : group.shells) {
      for (const std::int32_t node : model.shells[static_cast<std::size_t>(shell)].nodes) add(node);
    }
    for (const std::int32_t beam : group.beams) {
      for (const std::int32_t node : model.beams[static_cast<std::size_t>(beam)].nodes) add(node);
    }
    std::sort(group.nodes.begin(), group.nodes.end());
  }
}

}  // namespace

void TakeNastranStructure(const NastranDeck& deck, ImportModel& model, NastranNumbers& numbers,
                          NastranSystems& systems, ImportReport& report) {
  SortedCards sorted;
  SortCards(deck, sorted);
  TakeNastranNodes(deck, sorted.grids, sorted.systems, sorted.gridDefaults, model, numbers, systems,
                   report);
  MaterialTable materials;
  PropertyTable properties;
  ReadMaterials(deck, sorted.materials, materials, report);
  ReadProperties(deck, sorted.properties, properties, report);
  NastranStock stock{deck, properties, materials, model, report};
  NastranElements elements{stock, numbers, systems, {}, {}};
  TakeNastranShells(sorted.shells, elements);
  TakeNastranBeams(sorted.beams, sorted.beamDefaults, elements);
  FillGroupNodes(model);
  ReportUnusedProperties(deck, properties, report);
  ReportUnusedMaterials(deck, materials, report);
}

}  // namespace kvx
