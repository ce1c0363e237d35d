#include "finding/finding.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "finding/codes.h"

namespace kvx {

Finding MakeFinding(const char* code) {
  const CodeText* text = FindCode(code);
  if (text == nullptr) throw std::logic_error(std::string("no finding has the code ") + code);
  Finding finding;
  finding.code = code;
  finding.severity = text->severity;
  return finding;
}

void AddFinding(Finding finding, FindingList& list) {
  ++list.counts[finding.code];
  const auto severity = static_cast<int>(finding.severity);
  FindingKind& kind =
      list.kinds[finding.code + ' ' + std::to_string(severity) + ' ' + finding.table];
  ++kind.count;
  if (kind.count <= FindingsOfAKind + 1) {
    kind.rest = list.findings.size();
    list.findings.push_back(std::move(finding));
    return;
  }
  Finding& rest = list.findings[kind.rest];
  rest.rows.insert(rest.rows.end(), finding.rows.begin(), finding.rows.end());
  rest.nodes.insert(rest.nodes.end(), finding.nodes.begin(), finding.nodes.end());
  rest.count = kind.count - FindingsOfAKind;
  rest.hasPosition = false;
  rest.column = 0;
  rest.message = "and " + std::to_string(rest.count) +
                 " more of this kind: " + FindCode(finding.code)->title + ".";
  rest.remedy.clear();
}

void SortFindings(FindingList& list) {
  const auto lineOf = [](const Finding& finding) {
    return finding.line > 0 ? finding.line : std::numeric_limits<std::size_t>::max();
  };
  std::stable_sort(list.findings.begin(), list.findings.end(),
                   [&](const Finding& a, const Finding& b) {
                     if (a.severity != b.severity) return a.severity < b.severity;
                     return lineOf(a) < lineOf(b);
                   });
  list.kinds.clear();
}

std::size_t CountFindings(const FindingList& list, Severity severity) {
  std::size_t count = 0;
  for (const Finding& finding : list.findings) {
    if (finding.severity == severity) count += finding.count;
  }
  return count;
}

}  // namespace kvx
