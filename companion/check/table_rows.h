// The rows of materials, thicknesses and sections: what elements use them, and how messages name
// them. A row that no element uses has no effect: a mistake in it is a hint.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// How many elements use a row. References that lead outside their table are left out.
struct TableUse {
  std::vector<std::uint32_t> materials;                // [NMT]
  std::vector<std::uint32_t> thicknesses;              // [NTK]
  std::array<std::vector<std::uint32_t>, 3> sections;  // [BeamSecType][row]
};

void CountUse(const CheckedModel& model, TableUse& use);

// How many elements use the row. section: Materials .. CBeamSections.
std::uint32_t UsesOf(const TableUse& use, korvex::Section section, std::int32_t row);

inline bool IsRow(const korvex::ModelTables& tables, korvex::Section section, std::int32_t row) {
  return row >= 0 && row < CountRows(tables, section);
}

// The table of a BeamSecType for which HasSectionTable is true.
inline korvex::Section SectionTableOf(std::int32_t BeamSecType) {
  return static_cast<korvex::Section>(static_cast<std::int32_t>(korvex::Section::TBeamSections) +
                                      BeamSecType);
}

// "material 2", "thickness 0", "T section 1", "L section 1", "tube section 1".
std::string NameRow(korvex::Section section, std::int32_t row);

// "material 2 (14 elements)"
std::string DescribeRow(const TableUse& use, korvex::Section section, std::int32_t row);

// A finding about a row; a hint where no element uses it.
Finding MakeTableFinding(const char* code, const CheckedModel& model, const TableUse& use,
                         korvex::Section section, std::int32_t row);

// Later checks shall not name the row again.
inline void MarkNamed(CheckedModel& model, korvex::Section section, std::int32_t row) {
  model.doubtfulRows[IndexOf(section)].insert(row);
}

// The references of a shell to its material and its thickness. section: Shells4 or Shells3.
korvex::ShellRowProperties ShellPropertiesOf(const korvex::ModelTables& tables,
                                             korvex::Section section, std::int32_t row);

// Whether both lead to rows that no finding names.
bool IsKnown(const CheckedModel& model, const korvex::ShellRowProperties& properties);

}  // namespace kvx
