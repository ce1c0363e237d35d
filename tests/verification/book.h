// The verification book: its text with figures that know their values, and its comparison with the
// committed document.
//
// A text holds its figures as marks, control characters round the value at full precision.
// Rendered, a mark becomes the digits that the reader sees. Compared, words must agree to the
// letter and figures to their last printed digit. What rounds differently on every compiler is
// marked as such and held below a bound; what a short run does not compute may be any number.
#pragma once

#include <string>
#include <vector>

namespace korvex::book {

// A figure of `digits` significant digits.
std::string Figure(double value, int digits = 4);

// A figure with four decimals: result / reference.
std::string Ratio(double value);

// A figure that this run does not compute. Any committed number will do.
std::string SkippedFigure();

// A figure made of rounding alone, which every compiler makes differently: shown with one digit,
// accepted below `bound`.
std::string RoundingFigure(double value, double bound);

// The text as the document shows it.
std::string Render(const std::string& text);

// Empty where `committed` is what `text` prints, else the lines that differ, each as it stands and
// as it was printed.
std::string FindDifferences(const std::string& text, const std::string& committed);

// A table in Markdown, the first row its heading; without a line break at its end.
using Row = std::vector<std::string>;
std::string FormatTable(const std::vector<Row>& rows);

// One section of the document, from its heading "## ..." to the next.
struct Section {
  std::string heading;
  std::string body;
};

// The sections of a document; what stands before the first has an empty heading.
std::vector<Section> SplitSections(const std::string& document);

}  // namespace korvex::book
