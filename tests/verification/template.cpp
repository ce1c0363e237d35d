#include "verification/template.h"

#include <map>
#include <set>
#include <stdexcept>

namespace korvex::book {

namespace {

const std::string Begin = "{{", End = "}}";

[[noreturn]] void Fail(const std::string& placeholder, const std::string& problem) {
  throw std::runtime_error("template: " + placeholder + ' ' + problem);
}

std::map<std::string, std::string> TextsByPlaceholder(const Fillings& fillings) {
  std::map<std::string, std::string> texts;
  for (const auto& [placeholder, text] : fillings) {
    if (!texts.insert({placeholder, text}).second) Fail(Begin + placeholder + End, "has two texts");
  }
  return texts;
}

}  // namespace

std::string FillTemplate(const std::string& text, const Fillings& fillings) {
  const std::map<std::string, std::string> texts = TextsByPlaceholder(fillings);
  std::set<std::string> used;
  std::string filled;
  std::size_t copied = 0;
  for (std::size_t begin = text.find(Begin); begin != std::string::npos;
       begin = text.find(Begin, copied)) {
    const std::size_t name = begin + Begin.size(), end = text.find(End, name);
    if (end == std::string::npos)
      Fail(text.substr(begin, text.find('\n', begin) - begin), "has no end");
    const std::string placeholder = text.substr(name, end - name);
    const auto found = texts.find(placeholder);
    if (found == texts.end()) Fail(Begin + placeholder + End, "has no text");
    filled += text.substr(copied, begin - copied) + found->second;
    used.insert(placeholder);
    copied = end + End.size();
  }
  for (const auto& [placeholder, unused] : texts) {
    if (used.count(placeholder) == 0)
      Fail(Begin + placeholder + End, "does not stand in the template");
  }
  return filled + text.substr(copied);
}

}  // namespace korvex::book
