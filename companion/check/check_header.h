// The header, and the bytes that no plain text has.
#pragma once

#include <string>
#include <string_view>

#include "check/section_text.h"
#include "finding/finding.h"

namespace kvx {

// What of the bytes can be looked at as lines.
struct PlainText {
  bool isUsable = false;  // false: empty, in two bytes a character, or mostly bytes 0
  std::string_view text;  // lines end with line feeds; a view of the given text, or of `copy`
  std::string copy;       // only where the lines had to be changed
};

// Adds findings K002. A byte-order mark is left out, lines that end with a carriage return alone
// get line feeds.
void FindPlainText(std::string_view text, PlainText& plain, FindingList& findings);

// Adds a finding K001 unless the header is as it must be, and findings K010 for lines between it
// and the first section. header: what stands before the first section;
// hasTitles: whether there is any section.
void CheckHeader(std::string_view text, bool hasTitles, const SectionText& header,
                 FindingList& findings);

// Whether the text begins with the header and the right release.
bool HasHeader(std::string_view text);

}  // namespace kvx
