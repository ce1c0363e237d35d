#include "mesh/unknown_names.h"

#include "finding/nearest_word.h"

namespace kvx {

namespace {

// More kinds of unknown cards than a person looks through.
constexpr std::size_t MostCompared = 50;

// Names are short; a longer one is no slip of a key, and comparing takes the square of its length.
constexpr std::size_t LongestCompared = 40;

}  // namespace

std::string ReasonOfUnknown(std::string_view what, std::string_view name,
                            const std::vector<std::string>& known, UnknownNames& unknown) {
  const auto at = unknown.reasons.find(name);
  if (at != unknown.reasons.end()) return at->second;
  std::string reason(what);
  if (unknown.reasons.size() >= MostCompared || name.size() > LongestCompared) return reason;
  const std::vector<std::string> nearest = FindNearest(name, known);
  if (!nearest.empty()) reason += "; did you mean " + nearest.front() + "?";
  unknown.reasons.emplace(name, reason);
  return reason;
}

}  // namespace kvx
