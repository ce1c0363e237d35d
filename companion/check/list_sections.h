// The sections of a model file as text: titles, counts and rows of all of them, in their order.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "check/checked_model.h"
#include "check/section_text.h"
#include "finding/finding.h"

namespace kvx {

struct SectionTexts {
  bool hasTitles = false;                       // whether there is any
  std::array<SectionText, SectionCount> parts;  // by section; Header: what stands before the titles
  std::uint32_t lineCount = 0;
};

// The title of a section that a finding can name: "count NPOIN".
std::string DescribeTitle(korvex::Section section);

// Adds the findings about titles: K003 to K006, K009, and those of their numbers.
void ListSections(std::string_view text, SectionTexts& sections, FindingList& findings);

}  // namespace kvx
