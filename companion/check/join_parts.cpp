#include "check/join_parts.h"

#include <algorithm>

#include "skyline/disjoint_sets.h"

namespace kvx {

namespace {

std::int32_t PartOf(const Parts& parts, std::int32_t node) {
  return parts.partOfNode[static_cast<std::size_t>(node)];
}

bool IsGapFinding(const Finding& finding) {
  return finding.code == "K201" || finding.code == "K202" || finding.code == "K204" ||
         finding.code == "K205";
}

void Raise(Finding& finding) {
  if (finding.severity == Severity::Error) return;
  finding.severity = Severity::Error;
  finding.message +=
      " Nothing else holds what is cut off there: its displacements are meaningless "
      "or NaN.";
}

}  // namespace

void JoinParts(const Parts& parts, const std::vector<Gap>& gaps, Parts& joined) {
  const auto count = static_cast<std::int32_t>(parts.nodeCounts.size());
  korvex::DisjointSets sets;
  korvex::InitSets(sets, count);
  for (const Gap& gap : gaps) {
    korvex::JoinSets(sets, PartOf(parts, gap.node), PartOf(parts, gap.other));
  }
  // A root is the lowest part of its set, so its number is known when its members are reached.
  std::vector<std::int32_t> numbers(static_cast<std::size_t>(count));
  joined = {};
  for (std::int32_t part = 0; part < count; ++part) {
    const std::int32_t root = korvex::FindSet(sets, part);
    const auto at = static_cast<std::size_t>(part);
    if (root == part) {
      numbers[at] = static_cast<std::int32_t>(joined.nodeCounts.size());
      joined.nodeCounts.push_back(0);
      joined.elementCounts.push_back(0);
    } else {
      numbers[at] = numbers[static_cast<std::size_t>(root)];
    }
    joined.nodeCounts[static_cast<std::size_t>(numbers[at])] += parts.nodeCounts[at];
    joined.elementCounts[static_cast<std::size_t>(numbers[at])] += parts.elementCounts[at];
  }
  joined.partOfNode = parts.partOfNode;
  for (std::int32_t& part : joined.partOfNode) {
    if (part >= 0) part = numbers[static_cast<std::size_t>(part)];
  }
}

void RaiseGapsOfLooseParts(const Parts& parts, const Parts& joined, const std::vector<Gap>& gaps,
                           const std::vector<char>& moves, const std::vector<char>& joinedMoves,
                           FindingList& findings) {
  const auto isLoose = [&](std::int32_t node) {
    return moves[static_cast<std::size_t>(PartOf(parts, node))] != 0;
  };
  std::vector<bool> cutsOff(parts.partOfNode.size(), false);  // nodes of gaps that matter
  for (const Gap& gap : gaps) {
    const bool isHeld = joinedMoves[static_cast<std::size_t>(PartOf(joined, gap.node))] == 0;
    if (!isHeld || (!isLoose(gap.node) && !isLoose(gap.other))) continue;
    cutsOff[static_cast<std::size_t>(gap.node)] = true;
    cutsOff[static_cast<std::size_t>(gap.other)] = true;
  }
  for (Finding& finding : findings.findings) {
    if (IsGapFinding(finding) &&
        std::any_of(finding.nodes.begin(), finding.nodes.end(),
                    [&](std::int32_t node) { return cutsOff[static_cast<std::size_t>(node)]; })) {
      Raise(finding);
    }
  }
}

}  // namespace kvx
