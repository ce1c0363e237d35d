// The stage of import_job.h that takes a single load case (--case).
#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "cases/folder_name.h"
#include "commands/import_job.h"
#include "finding/nearest_word.h"

namespace kvx {

namespace {

std::string Quoted(const std::string& name) { return '"' + name + '"'; }

// Whether the name is a kind and this number, and perhaps more: "subcase 20 SNOW", "step 2".
bool HasNumber(const std::string& name, const std::string& number) {
  const std::size_t begin = name.find(' ') + 1;  // 0 for a name of one word
  return begin > 0 && name.substr(begin, name.find(' ', begin) - begin) == number;
}

// The rows of the cases that the user may mean: those of the deck's name; else of the name that the
// import gives; else of the number.
std::vector<std::size_t> FindWanted(const std::string& wanted,
                                    const std::vector<std::string>& names) {
  const std::vector<std::string> shown = NamesOfFolders(names);
  const bool isNumber =
      !wanted.empty() && wanted.find_first_not_of("0123456789") == std::string::npos;
  std::vector<std::size_t> exact, made, numbered;
  for (std::size_t k = 0; k < names.size(); ++k) {
    if (names[k] == wanted) exact.push_back(k);
    if (shown[k] == wanted) made.push_back(k);
    if (isNumber && HasNumber(names[k], wanted)) numbered.push_back(k);
  }
  if (!exact.empty()) return {exact.front()};
  return made.empty() ? numbered : made;
}

// " Did you mean ..."; the nearest name, or the first one that holds what was typed.
std::string SuggestCase(const std::string& wanted, const std::vector<std::string>& names) {
  std::vector<std::string> nearest = FindNearest(wanted, names);
  const auto holds = [&](const std::string& name) {
    return FoldCase(name).find(FoldCase(wanted)) != std::string::npos;
  };
  if (nearest.empty()) std::copy_if(names.begin(), names.end(), std::back_inserter(nearest), holds);
  return nearest.empty() ? "" : " Did you mean " + Quoted(nearest.front()) + '?';
}

}  // namespace

void KeepCase(ImportJob& job) {
  const std::string& wanted = job.command.onlyCase;
  if (wanted.empty()) return;
  std::vector<ImportCase>& cases = job.model.cases;
  std::vector<std::string> names;
  names.reserve(cases.size());
  for (const ImportCase& each : cases) names.push_back(each.name);
  const std::vector<std::size_t> found = FindWanted(wanted, names);
  if (found.size() != 1) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + Quoted(name);
    throw ImportRefusal{ExitUsage, Quoted(job.command.deck) + " has no load case " +
                                       Quoted(wanted) + '.' + SuggestCase(wanted, names) +
                                       (list.empty() ? "" : " It has " + list + '.')};
  }
  const std::size_t row = found.front();
  ImportCase kept = std::move(cases[row]);
  cases.clear();
  cases.push_back(std::move(kept));
  job.outcome.onlyCase = names[row];
  names.erase(names.begin() + static_cast<std::ptrdiff_t>(row));
  job.outcome.otherCases = std::move(names);
}

}  // namespace kvx
