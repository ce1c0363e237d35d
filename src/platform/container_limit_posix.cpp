#include <algorithm>
#include <fstream>

#include "platform/container_limit.h"
#include "platform/free_memory.h"

namespace korvex {

namespace {

// Version 2 writes "max" where there is no limit; reading it as a number fails.
std::uint64_t ReadLimit(const std::string& file) {
  std::ifstream stream(file);
  std::uint64_t bytes = 0;
  return stream >> bytes ? bytes : UnknownMemory;
}

// The smallest limit of a group and its parent groups. Inside a container some folders of the path
// may not be visible; a file that cannot be read sets no limit.
// base: the folder of all groups; file: the name of the file with a group's limit.
std::uint64_t ReadLimits(const std::string& base, std::string path, const char* file) {
  std::uint64_t limit = ReadLimit(base + "/" + file);
  while (path.size() > 1) {
    limit = std::min(limit, ReadLimit(base + path + "/" + file));
    path.resize(path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
  }
  return limit;
}

}  // namespace

std::uint64_t ReadContainerLimit(const std::string& groupsFile, const std::string& root) {
  std::uint64_t limit = UnknownMemory;
  std::ifstream groups(groupsFile);
  std::string line;
  while (std::getline(groups, line)) {
    const std::size_t first = line.find(':');
    const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
    if (second == std::string::npos) continue;
    const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
    const std::string path = line.substr(second + 1);
    if (controllers == ",,") limit = std::min(limit, ReadLimits(root, path, "memory.max"));
    if (controllers.find(",memory,") != std::string::npos) {
      limit = std::min(limit, ReadLimits(root + "/memory", path, "memory.limit_in_bytes"));
    }
  }
  return limit;
}

}  // namespace korvex
