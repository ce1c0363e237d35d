// The page as a file: the template (page_template.h) with its title, the model's JSON and blocks.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace kvx {

// An encoded block (page_block.h).
struct PageScript {
  std::string id;    // letters, digits and "-"
  std::string text;  // base64
};

// title: any UTF-8; it stays text whatever it holds. json: UTF-8; "<" in its strings is written as
// an escape, so that it cannot end the script.
void WritePage(const std::string& title, const std::string& json,
               const std::vector<PageScript>& scripts, std::ostream& stream);

}  // namespace kvx
