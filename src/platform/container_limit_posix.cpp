#include "platform/container_limit.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>

#include "platform/free_memory.h"

namespace korvex {

namespace {

// The limits of one group. A file that cannot be read sets none, nor does "max" (version 2), which
// is no number, or a quota of -1 (version 1).

std::uint64_t ReadBytes(const std::string& file) {
  std::ifstream stream(file);
  std::uint64_t bytes = 0;
  return stream >> bytes ? bytes : UnknownMemory;
}

double DivideQuota(std::istream& quotas, std::istream& periods) {
  double quota = 0.0, period = 0.0;
  const bool isThere = static_cast<bool>(quotas >> quota) && static_cast<bool>(periods >> period);
  const bool isLimit = isThere && quota > 0.0 && period > 0.0;
  return isLimit ? quota / period : std::numeric_limits<double>::infinity();
}

std::uint64_t ReadBytes2(const std::string& group) { return ReadBytes(group + "/memory.max"); }

std::uint64_t ReadBytes1(const std::string& group) {
  return ReadBytes(group + "/memory.limit_in_bytes");
}

double ReadCores2(const std::string& group) {
  std::ifstream both(group + "/cpu.max");
  return DivideQuota(both, both);
}

double ReadCores1(const std::string& group) {
  std::ifstream quota(group + "/cpu.cfs_quota_us"), period(group + "/cpu.cfs_period_us");
  return DivideQuota(quota, period);
}

// The smallest limit of a group and its parent groups. Inside a container some folders of the path
// may not be visible.
// base: the folder of all groups.
template <typename Limit>
Limit ReadLimits(const std::string& base, std::string path, Limit (*read)(const std::string&)) {
  Limit limit = read(base);
  while (path.size() > 1) {
    limit = std::min(limit, read(base + path));
    path.resize(path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
  }
  return limit;
}

// What a controller limits, and how a group of each version tells it.
template <typename Limit>
struct Limited {
  const char* controller;
  Limit none;
  Limit (*read1)(const std::string& group);
  Limit (*read2)(const std::string& group);
};

template <typename Limit>
Limit ReadSmallest(const std::string& groupsFile, const std::string& root,
                   const Limited<Limit>& limited) {
  const std::string inList = std::string(1, ',') + limited.controller + ',';
  Limit limit = limited.none;
  std::ifstream groups(groupsFile);
  std::string line;
  while (std::getline(groups, line)) {
    const std::size_t first = line.find(':');
    const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
    if (second == std::string::npos) continue;
    const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
    const std::string path = line.substr(second + 1);
    if (controllers == ",,") limit = std::min(limit, ReadLimits(root, path, limited.read2));
    if (controllers.find(inList) != std::string::npos) {
      limit = std::min(limit, ReadLimits(root + '/' + limited.controller, path, limited.read1));
    }
  }
  return limit;
}

}  // namespace

std::uint64_t ReadContainerLimit(const std::string& groupsFile, const std::string& root) {
  return ReadSmallest<std::uint64_t>(groupsFile, root,
                                     {"memory", UnknownMemory, ReadBytes1, ReadBytes2});
}

double ReadContainerCores(const std::string& groupsFile, const std::string& root) {
  return ReadSmallest<double>(
      groupsFile, root, {"cpu", std::numeric_limits<double>::infinity(), ReadCores1, ReadCores2});
}

int CountCoresWithin(int bound, double quota) {
  if (quota >= bound) return bound;
  // More threads than that would be stopped again and again, and those that wait for them, too.
  return std::max(static_cast<int>(std::lround(quota)), 1);
}

}  // namespace korvex
