#include "check/separate_parts.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "check/describe.h"
#include "check/node_tree.h"
#include "check/place_words.h"

namespace kvx {

namespace {

// So many parts are described one by one, the largest ones.
constexpr std::size_t PartsDescribed = 6;

std::string CountText(std::int32_t count, const char* one, const char* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

std::string DescribePart(const CheckedModel& model, const Parts& parts, std::int32_t part,
                         double tolerance) {
  std::vector<korvex::Vector3> places;
  for (std::size_t node = 0; node < parts.partOfNode.size(); ++node) {
    const auto number = static_cast<std::int32_t>(node);
    if (parts.partOfNode[node] == part && HasUsablePlace(model, number)) {
      places.push_back(PlaceOf(model.tables, number));
    }
  }
  const auto at = static_cast<std::size_t>(part);
  std::string text = "part " + std::to_string(part + 1) + " of " +
                     CountText(parts.nodeCounts[at], "node", "nodes") + " and " +
                     CountText(parts.elementCounts[at], "element", "elements");
  if (!places.empty()) text += " within " + DescribeExtent(places, tolerance);
  return text;
}

}  // namespace

void NameSeparateParts(const CheckedModel& model, const Parts& parts, double tolerance,
                       FindingList& findings) {
  const std::size_t count = parts.nodeCounts.size();
  if (count < 2) return;
  std::vector<std::int32_t> shown(count);
  std::iota(shown.begin(), shown.end(), 0);
  std::stable_sort(shown.begin(), shown.end(), [&](std::int32_t a, std::int32_t b) {
    return parts.nodeCounts[static_cast<std::size_t>(a)] >
           parts.nodeCounts[static_cast<std::size_t>(b)];
  });
  shown.resize(std::min(count, PartsDescribed));
  std::sort(shown.begin(), shown.end());

  Finding finding = MakeFinding("K207");
  finding.message = std::to_string(count) + " parts that no element connects";
  finding.message += shown.size() < count ? ", the largest: " : ": ";
  for (std::size_t k = 0; k < shown.size(); ++k) {
    finding.message += (k == 0 ? "" : "; ") + DescribePart(model, parts, shown[k], tolerance);
  }
  finding.message += ". Each needs supports of its own.";
  finding.remedy = "Connect parts that belong together.";
  std::int32_t next = 0;  // the parts come in the order of their lowest nodes
  for (std::size_t node = 0; node < parts.partOfNode.size(); ++node) {
    if (parts.partOfNode[node] != next) continue;
    finding.nodes.push_back(static_cast<std::int32_t>(node));
    ++next;
  }
  AddFinding(std::move(finding), findings);
}

}  // namespace kvx
