#include "support/run_program.h"

#include <algorithm>

namespace korvex::test {

std::vector<std::string> Sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> ListFolder(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().u8string());
  }
  return Sorted(names);
}

std::vector<std::string> WithLog(std::vector<std::string> names) {
  for (const std::string& name : LogNames()) names.push_back(name);
  return Sorted(names);
}

std::string MaskTime(const std::string& text, const char* digits) {
  const std::string before = "Solution time:";
  const std::size_t begin = text.find(before) + before.size();
  const std::size_t end = text.find_first_not_of(digits, begin);
  if (text.find(before) == std::string::npos || end == begin) return text;
  return text.substr(0, begin) + "#" + text.substr(end);
}

}  // namespace korvex::test
