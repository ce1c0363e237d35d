// Text with computed figures, and its comparison with the committed document.
//
// A figure stands in the text as a mark: its value at full precision between two control
// characters. Render turns each mark into the digits that the reader sees. FindDifferences compares
// a text with the document: words must agree to the letter, figures to their last printed digit.
// Two kinds of figures are exempt: rounding errors, which differ between compilers, must only stay
// below a bound; figures that a short run does not compute may be any number.
#pragma once

#include <string>
#include <vector>

namespace korvex::book {

// A figure of `digits` significant digits.
std::string Figure(double value, int digits = 4);

// A figure with four decimals, for result / reference.
std::string Ratio(double value);

// A figure that this run does not compute. The document may show any number.
std::string SkippedFigure();

// A rounding error, which differs between compilers. It is shown with one digit; the value and the
// document's number must both be at most `bound`.
std::string RoundingFigure(double value, double bound);

// The text with its marks replaced by digits, as the document shows it.
std::string Render(const std::string& text);

// Compares line by line. Returns the lines that differ, as committed and as printed; empty where
// there are none.
std::string FindDifferences(const std::string& text, const std::string& committed);

// A table in Markdown, the first row its heading; without a line break at its end.
using Row = std::vector<std::string>;
std::string FormatTable(const std::vector<Row>& rows);

// One section of the document, from its heading "## ..." to the next.
struct Section {
  std::string heading;
  std::string body;
};

// The sections of a document. The first one is the text before all headings; its own heading is
// empty.
std::vector<Section> SplitSections(const std::string& document);

}  // namespace korvex::book
