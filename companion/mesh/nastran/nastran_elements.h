// What shells and beams have in common when they are taken from their cards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "mesh/nastran/nastran_fields.h"
#include "mesh/nastran/nastran_properties.h"
#include "mesh/nastran/nastran_structure.h"

namespace kvx {

struct NastranElements {
  NastranStock& stock;
  NastranNumbers& numbers;
  NastranSystems& systems;
  std::vector<std::uint32_t> shellCards;  // [shells] rows of the deck's cards
  std::vector<std::uint32_t> beamCards;   // [beams]
};

// Reports something of an element.
void ReportElement(const NastranCard& card, std::int64_t number, Fate fate, std::string_view reason,
                   NastranElements& elements);

// Whether no element has the number yet; a repeated one is reported.
bool IsNewElement(const NastranCard& card, std::int64_t number, NastranElements& elements);

// The row of the node that a field names; -1, and reported as refused, where it does not exist.
std::int32_t NodeOfField(const NastranRow& row, std::size_t field, std::int64_t number,
                         NastranElements& elements);

// The row of the model's typeNames.
std::int32_t TypeRow(std::string_view name, ImportModel& model);

}  // namespace kvx
