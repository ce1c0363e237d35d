// Filling templates: what replaces a placeholder, and which mistakes end with an error.
#include "verification/template.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "verification/book.h"

namespace korvex::book {
namespace {

// The message of the error that filling ends with; empty where it ends well.
std::string FindError(const std::string& text, const Fillings& fillings) {
  try {
    FillTemplate(text, fillings);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(Template, PutsTextsInPlaceOfPlaceholders) {
  EXPECT_EQ(FillTemplate("a\n\n{{table:t}}\n\nbelow {{value:v}}, {{value:v}}.\n",
                         {{"value:v", "0.1"}, {"table:t", "| 1 |\n| 2 |"}}),
            "a\n\n| 1 |\n| 2 |\n\nbelow 0.1, 0.1.\n");
  EXPECT_EQ(FillTemplate("{{table:t}}{{value:v}}", {{"table:t", ""}, {"value:v", "x"}}), "x");
}

TEST(Template, LeavesOtherTextAlone) {
  const std::string text = "k = {1} in {a}, | b |\n} and } and {\n";
  EXPECT_EQ(FillTemplate(text, {}), text);
  EXPECT_EQ(FillTemplate("", {}), "");
}

TEST(Template, DoesNotFillWhatATextHolds) {
  EXPECT_EQ(FillTemplate("{{value:v}}", {{"value:v", "{{value:w}}"}}), "{{value:w}}");
}

TEST(Template, KeepsTheMarksOfFigures) {
  const std::string filled =
      FillTemplate("below {{value:bound}}.", {{"value:bound", Figure(1e-7, 1)}});
  EXPECT_EQ(Render(filled), "below 1e-7.");
  EXPECT_EQ(FindDifferences(filled, "below 1e-7."), "");
  EXPECT_NE(FindDifferences(filled, "below 2e-7."), "");
}

TEST(Template, RefusesAPlaceholderWithoutText) {
  EXPECT_EQ(FindError("{{table:a}}\n{{table:b}}\n", {{"table:a", "x"}}),
            "template: {{table:b}} has no text");
  EXPECT_EQ(FindError("{{}}", {}), "template: {{}} has no text");
  // Names agree to the letter, and the kind is part of them.
  EXPECT_NE(FindError("{{table: a}}", {{"table:a", "x"}}), "");
  EXPECT_NE(FindError("{{value:a}}", {{"table:a", "x"}}), "");
}

TEST(Template, RefusesATextWithoutPlaceholder) {
  EXPECT_EQ(FindError("{{table:a}}\n", {{"table:a", "x"}, {"table:b", "y"}}),
            "template: {{table:b}} does not stand in the template");
  EXPECT_NE(FindError("no placeholder, {table:a}}\n", {{"table:a", "x"}}), "");
}

TEST(Template, RefusesTwoTextsForOnePlaceholder) {
  EXPECT_EQ(FindError("{{table:a}}", {{"table:a", "x"}, {"table:a", "x"}}),
            "template: {{table:a}} has two texts");
}

TEST(Template, RefusesAPlaceholderWithoutEnd) {
  EXPECT_EQ(FindError("a {{table:a\nb\n", {{"table:a", "x"}}), "template: {{table:a has no end");
  EXPECT_NE(FindError("{{table:a\n\n{{table:b}}", {{"table:a", "x"}, {"table:b", "y"}}), "");
}

}  // namespace
}  // namespace korvex::book
