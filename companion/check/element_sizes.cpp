#include "check/element_sizes.h"

#include <algorithm>
#include <limits>

namespace kvx {

using korvex::Section;
using korvex::Vector3;

namespace {

void Widen(double size, SizeRange& range) {
  if (range.largest == 0.0 || size < range.smallest) range.smallest = size;
  range.largest = std::max(range.largest, size);
}

double LongestEdge(const CheckedModel& model, const ElementNodes& element) {
  double longest = 0.0;
  for (std::size_t k = 0; k < element.count; ++k) {
    longest = std::max(longest, korvex::Length(korvex::Subtract(
                                    PlaceOf(model.tables, element.nodes[(k + 1) % element.count]),
                                    PlaceOf(model.tables, element.nodes[k]))));
  }
  return longest;
}

// The range of the row that the element uses; null where it uses none that exists.
SizeRange* RangeOf(const CheckedModel& model, Section section, std::int32_t row,
                   ElementSizes& sizes) {
  const auto at = static_cast<std::size_t>(row);
  std::vector<SizeRange>* ranges = &sizes.thicknesses;
  std::int32_t used = -1;
  if (section == Section::Beams) {
    const korvex::BeamSectionRef& ref = model.tables.BeamSectionRefs[at];
    if (!korvex::HasSectionTable(ref.BeamSecType)) return nullptr;
    ranges = &sizes.sections[static_cast<std::size_t>(ref.BeamSecType)];
    used = ref.BeamSecIndex;
  } else {
    used = section == Section::Shells4 ? model.tables.Shell4Properties[at].thickness
                                       : model.tables.Shell3Properties[at].thickness;
  }
  const bool exists = used >= 0 && static_cast<std::size_t>(used) < ranges->size();
  return exists ? &(*ranges)[static_cast<std::size_t>(used)] : nullptr;
}

}  // namespace

void MeasureElements(const CheckedModel& model, ElementSizes& sizes) {
  const korvex::ModelTables& tables = model.tables;
  sizes.thicknesses.assign(tables.ShellThicknesses.size(), {});
  sizes.sections[korvex::BeamSecTypeT].assign(tables.TBeamSections.size(), {});
  sizes.sections[korvex::BeamSecTypeL].assign(tables.LBeamSections.size(), {});
  sizes.sections[korvex::BeamSecTypeC].assign(tables.CBeamSections.size(), {});
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  Vector3 low{Infinity, Infinity, Infinity}, high{-Infinity, -Infinity, -Infinity};
  for (const Section section : ElementSections) {
    for (std::int32_t row = 0; row < CountRows(tables, section); ++row) {
      if (StateOf(model, section, row) != ElementState::Sound) continue;
      const ElementNodes element = NodesOf(tables, section, row);
      for (std::size_t k = 0; k < element.count; ++k) {
        const Vector3 place = PlaceOf(tables, element.nodes[k]);
        for (std::size_t i = 0; i < 3; ++i) {
          low[i] = std::min(low[i], place[i]);
          high[i] = std::max(high[i], place[i]);
        }
      }
      SizeRange* range = RangeOf(model, section, row, sizes);
      if (range != nullptr) Widen(LongestEdge(model, element), *range);
    }
  }
  sizes.extent = low[0] > high[0] ? 0.0 : korvex::Length(korvex::Subtract(high, low));
}

}  // namespace kvx
