#include "cases/folder_name.h"

#include <algorithm>

namespace kvx {

namespace {

// A path has 260 characters on Windows, and results have long names.
constexpr std::size_t LongestName = 64;

char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Devices of Windows, with any extension.
bool IsDevice(const std::string& name) {
  const std::string stem = FoldCase(name.substr(0, name.find('.')));
  for (const char* device : {"con", "prn", "aux", "nul"}) {
    if (stem == device) return true;
  }
  const bool isNumbered = stem.rfind("com", 0) == 0 || stem.rfind("lpt", 0) == 0;
  return isNumbered && stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9';
}

bool IsForbidden(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20U || byte == 0x7FU || std::string("/\\:*?\"<>|").find(c) != std::string::npos;
}

}  // namespace

std::string FoldCase(const std::string& name) {
  std::string folded = name;
  std::transform(folded.begin(), folded.end(), folded.begin(), ToLower);
  return folded;
}

std::string FindFolderFault(const std::string& name) {
  if (name.empty()) return "the name is empty";
  const std::string quoted = '"' + name + '"';
  if (std::any_of(name.begin(), name.end(), IsForbidden)) {
    return quoted +
           " has a character that a folder must not have: / \\ : * ? \" < > | or an "
           "invisible one";
  }
  if (name.front() == '.' || name.back() == '.' || name.front() == ' ' || name.back() == ' ') {
    return quoted + " begins or ends with a point or a blank, which a folder must not";
  }
  if (name.size() > LongestName) {
    return quoted + " is too long for a folder: more than " + std::to_string(LongestName) +
           " bytes";
  }
  if (IsDevice(name)) return quoted + " is the name of a device on Windows";
  return {};
}

}  // namespace kvx
