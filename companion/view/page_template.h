// The page without a model: HTML with all its styles and scripts. The build makes it from the
// sources in companion/view/page.
#pragma once

namespace kvx {

// Two marks stand for what the program fills in, each once (page_text.cpp).
extern const char* const PageTemplate;

// The licence of three.js, which draws the page.
extern const char* const PageLicense;

}  // namespace kvx
