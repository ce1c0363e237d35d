// The page docs/findings.md: all codes with their explanations, as Markdown.
#pragma once

#include <string>

#include "finding/codes.h"

namespace kvx {

// The whole page, UTF-8.
std::string FindingsPage();

// The section of one code: a headline of the third level, and its texts. One that is empty is left
// out.
std::string FindingSection(const CodeText& code);

}  // namespace kvx
