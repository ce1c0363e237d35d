// Templates: the prose of the book, with placeholders for what is computed.
//
// A template holds one chapter as it reads in the document, line breaks included. Only tables and
// computed figures are missing. `{{table:roof}}` stands for the rows of a table, in a line of its
// own; `{{value:bound}}` stands for a figure within a line. What replaces a placeholder may hold
// the marks of book.h.
#pragma once

#include <string>
#include <vector>

namespace korvex::book {

struct Filling {
  std::string placeholder;  // what stands between the braces, e.g. "table:roof"
  std::string text;         // without a line break at its end
};

// The chapter's placeholders with their texts, in the order in which they were computed.
using Fillings = std::vector<Filling>;

// Replaces every placeholder by its text. A placeholder may occur more than once.
// Throws std::runtime_error, which names the placeholder, where one has no text, where a text has
// no placeholder, where two texts have the same placeholder, and where a placeholder has no end.
std::string FillTemplate(const std::string& text, const Fillings& fillings);

}  // namespace korvex::book
