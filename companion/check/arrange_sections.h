// Which lines belong to which section: sections that stand twice or in the wrong place, and lines
// with a count that have got among the rows of another section.
#pragma once

#include <string_view>
#include <vector>

#include "check/find_sections.h"
#include "finding/finding.h"

namespace kvx {

// The lines of one section: its title, then [title + 1, end).
struct SectionRange {
  korvex::Section section = korvex::Section::Header;
  std::size_t title = 0;     // index of the line
  std::size_t end = 0;       // index of the line behind the section
  bool isMisplaced = false;  // a finding says so
};

struct SectionPlan {
  std::size_t firstTitle = 0;                // index of the line at which the sections begin
  std::vector<SectionRange> ranges;          // in the order of the file, each section once
  std::vector<bool> skipped;                 // [lines] titles among the rows of another section
  std::vector<korvex::Section> movedTitles;  // sections whose title is one of these
};

// Adds findings K004 and K005.
SectionPlan ArrangeSections(std::string_view text, const std::vector<TextLine>& lines,
                            std::vector<TitleLine> titles, FindingList& findings);

}  // namespace kvx
