#include "view/page_text.h"

#include <stdexcept>
#include <string_view>

#include "view/page_template.h"

namespace kvx {

namespace {

constexpr std::string_view TitleMark = "<!--kvx:title-->", DataMark = "<!--kvx:data-->";

// The text with each sign that HTML reads replaced.
std::string EscapeHtml(const std::string& text) {
  std::string escaped;
  for (const char sign : text) {
    switch (sign) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += sign;
    }
  }
  return escaped;
}

// "<" stands in strings alone, where it may be an escape.
std::string EscapeJson(const std::string& json) {
  std::string escaped;
  escaped.reserve(json.size());
  for (const char sign : json) {
    if (sign == '<') {
      escaped += "\\u003c";
    } else {
      escaped += sign;
    }
  }
  return escaped;
}

}  // namespace

void WritePage(const std::string& title, const std::string& json,
               const std::vector<PageScript>& scripts, std::ostream& stream) {
  const std::string_view page = PageTemplate;
  const std::size_t titleAt = page.find(TitleMark), dataAt = page.find(DataMark);
  if (titleAt == std::string_view::npos || dataAt == std::string_view::npos || dataAt < titleAt) {
    throw std::logic_error("the page has lost its marks");
  }
  const std::size_t behindTitle = titleAt + TitleMark.size();
  stream << page.substr(0, titleAt) << EscapeHtml(title)
         << page.substr(behindTitle, dataAt - behindTitle)
         << "<script type=\"application/json\" id=\"kvx-model\">" << EscapeJson(json)
         << "</script>\n";
  for (const PageScript& script : scripts) {
    stream << "<script type=\"text/plain\" id=\"kvx-block-" << script.id << "\">" << script.text
           << "</script>\n";
  }
  stream << page.substr(dataAt + DataMark.size());
}

}  // namespace kvx
