// The page as HTML: whatever names a model has, they stay text.
#include "view/page_text.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "view/page_template.h"

namespace kvx::test {
namespace {

std::string Page(const std::string& title, const std::string& json,
                 const std::vector<PageScript>& scripts = {}) {
  std::ostringstream stream;
  WritePage(title, json, scripts, stream);
  return stream.str();
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++count;
  return count;
}

// The page up to its mark and behind it is the template.
TEST(KvxPageText, IsTheTemplateWithItsData) {
  const std::string page = Page("deck", "{}", {{"structure", "AAAA"}, {"loads-0", "BBBB"}});
  EXPECT_EQ(Count(page, "<!--kvx:"), 0U);
  EXPECT_NE(page.find("<title>deck</title>"), std::string::npos);
  EXPECT_NE(page.find("<script type=\"application/json\" id=\"kvx-model\">{}</script>\n"
                      "<script type=\"text/plain\" id=\"kvx-block-structure\">AAAA</script>\n"
                      "<script type=\"text/plain\" id=\"kvx-block-loads-0\">BBBB</script>\n"),
            std::string::npos);
  const std::string whole = PageTemplate, mark = "<!--kvx:data-->";
  const std::string end = whole.substr(whole.find(mark) + mark.size());
  EXPECT_EQ(page.substr(page.size() - end.size()), end);
}

TEST(KvxPageText, TitleStaysText) {
  const std::string page = Page("</title><script>a(\"1\" && 2)</script>", "{}");
  EXPECT_NE(page.find("<title>&lt;/title&gt;&lt;script&gt;a(&quot;1&quot; &amp;&amp; 2)"
                      "&lt;/script&gt;</title>"),
            std::string::npos);
}

// Not even a mark in a name is one.
TEST(KvxPageText, MarksInNamesStayText) {
  const std::string page = Page("<!--kvx:data-->", "{\"a\":\"<!--kvx:title-->\"}");
  EXPECT_NE(page.find("<title>&lt;!--kvx:data--&gt;</title>"), std::string::npos);
  EXPECT_NE(page.find("{\"a\":\"\\u003c!--kvx:title-->\"}</script>"), std::string::npos);
}

TEST(KvxPageText, JsonEndsNoScript) {
  const std::string page = Page("t", "{\"a\":\"</script><!--<script>\"}");
  EXPECT_NE(page.find("{\"a\":\"\\u003c/script>\\u003c!--\\u003cscript>\"}</script>"),
            std::string::npos);
}

// The licence of the library within the page goes with it.
TEST(KvxPageText, HoldsTheLicence) {
  const std::string license = PageLicense;
  EXPECT_NE(license.find("Permission is hereby granted"), std::string::npos);
  EXPECT_NE(Page("t", "{}").find(license), std::string::npos);
}

}  // namespace
}  // namespace kvx::test
