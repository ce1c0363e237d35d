// The formats of the model file, section by section: the line with the count, and the lines of a
// row.
//
// A format is a scanf format (scan_text.h). The "\n" at the end of a format matches any white
// space, also further line ends and the indentation of the next line. A literal must match exactly.
//
// A row is read by several formats in turn. Each of them is tried, even after one that did not
// match: so the pieces are part of the format. A piece with "\n" at its end ends a line.
#pragma once

#include <array>
#include <cstddef>

#include "deck/row_listener.h"

namespace korvex {

inline constexpr const char* HeaderFormat = "### Toln_Korvex release=%lf ###\n";

// In place of a format: a line of any text, the label of a beam section.
inline constexpr const char* AnyLine = "";

// A row has at most seven pieces, and its longest piece at most ten numbers.
inline constexpr std::size_t PiecesPerRow = 7;
inline constexpr std::size_t NumbersPerPiece = 10;

struct SectionFormat {
  Section section;
  const char* title;                             // the line with the count
  const char* key;                               // the count's name, as in the title
  const char* rows;                              // the rows, plural: "nodal points"
  std::array<const char*, PiecesPerRow> pieces;  // of one row; null behind the last one
};

// All sections with a count, in the order of the file.
inline constexpr std::array<SectionFormat, 14> SectionFormats{{
    {Section::Materials,
     "Number of materials:NMT=%d\n",
     "NMT",
     "materials",
     {"#%d:\n", "E=%lf\n", "Mu=%lf\n", "Density=%lf\n"}},
    {Section::ShellThicknesses,
     "Number of shell thicknesses:NTK=%d\n",
     "NTK",
     "shell thicknesses",
     {"#%d:\n", "TK=%lf\n"}},
    {Section::TBeamSections,
     "Number of T_beam sections:NTBS=%d\n",
     "NTBS",
     "T_beam sections",
     {AnyLine, "Hw=%lf\n", "Tw=%lf\n", "Bf=%lf\n", "Tf=%lf\n"}},
    {Section::LBeamSections,
     "Number of L_beam sections:NLBS=%d\n",
     "NLBS",
     "L_beam sections",
     {AnyLine, "Hw=%lf\n", "Tw=%lf\n", "Bf=%lf\n", "Tf=%lf\n"}},
    {Section::CBeamSections,
     "Number of C_beam sections:NCBS=%d\n",
     "NCBS",
     "C_beam sections",
     {AnyLine, "R=%lf\n", "T=%lf\n"}},
    {Section::Nodes,
     "Number of nodal points:NPOIN=%d\n",
     "NPOIN",
     "nodal points",
     {"%d:%lf,%lf,%lf\n"}},
    {Section::Shells4,
     "Number of four-nodes shell elements:NELEM_S_4ND=%d\n",
     "NELEM_S_4ND",
     "four-node shell elements",
     {"%d:", "%d,%d,%d,%d[%d,%d]\n"}},
    {Section::Shells3,
     "Number of three-nodes shell elements:NELEM_S_3ND=%d\n",
     "NELEM_S_3ND",
     "three-node shell elements",
     {"%d:", "%d,%d,%d[%d,%d]\n"}},
    {Section::Beams,
     "Number of beam elements:NELEM_B=%d\n",
     "NELEM_B",
     "beam elements",
     {"%d:",
      "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,BeamSecMirrored=%d]\n"}},
    // The flags are separated by white space only. At a comma the next reads fail, and the rest of
    // the file is misread; this is the format.
    {Section::Restraints,
     "Number of restricted nodal points:NRN=%d\n",
     "NRN",
     "restricted nodal points",
     {"%d:", "%d", "%d", "%d", "%d", "%d", "%d\n"}},
    {Section::Forces,
     "Number of forces:NFOR=%d\n",
     "NFOR",
     "forces",
     {"%d<", "%lf,", "%lf,", "%lf,", "%lf,", "%lf,", "%lf>\n"}},
    {Section::Shell4Loads,
     "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n",
     "NDL_S_4ND",
     "distributed loads on four-node shell elements",
     {"%d:%lf,%lf,%lf\n"}},
    {Section::Shell3Loads,
     "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n",
     "NDL_S_3ND",
     "distributed loads on three-node shell elements",
     {"%d:%lf,%lf,%lf\n"}},
    {Section::BeamLoads,
     "Number of distributed loads on beam elements:NDL_B=%d\n",
     "NDL_B",
     "distributed loads on beam elements",
     {"%d:%lf,%lf\n"}},
}};

// The formats of a section other than the header.
constexpr const SectionFormat& FormatOf(Section section) {
  return SectionFormats[static_cast<std::size_t>(section) -
                        static_cast<std::size_t>(Section::Materials)];
}

}  // namespace korvex
