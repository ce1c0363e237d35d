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
  const std::size_t count = ++list.counts[finding.code];
  if (count <= FindingsOfAKind) {
    list.findings.push_back(std::move(finding));
    return;
  }
  if (count == FindingsOfAKind + 1) {
    list.rests[finding.code] = list.findings.size();
    list.findings.push_back(std::move(finding));
    return;
  }
  Finding& rest = list.findings[list.rests[finding.code]];
  rest.rows.insert(rest.rows.end(), finding.rows.begin(), finding.rows.end());
  rest.nodes.insert(rest.nodes.end(), finding.nodes.begin(), finding.nodes.end());
  const std::size_t more = count - FindingsOfAKind;
  rest.hasPosition = false;
  rest.column = 0;
  rest.message =
      "and " + std::to_string(more) + " more of this kind: " + FindCode(finding.code)->title + ".";
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
  list.rests.clear();
}

std::size_t CountFindings(const FindingList& list, Severity severity) {
  std::size_t count = 0;
  for (const Finding& finding : list.findings) {
    if (finding.severity == severity) ++count;
  }
  for (const auto& [code, all] : list.counts) {
    // The rest of a code is one finding in the list, and stands for `all` less those kept.
    if (all > FindingsOfAKind + 1 && FindCode(code)->severity == severity) {
      count += all - (FindingsOfAKind + 1);
    }
  }
  return count;
}

}  // namespace kvx
