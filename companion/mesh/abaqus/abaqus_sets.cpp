#include "mesh/abaqus/abaqus_sets.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_set>

#include "mesh/abaqus/abaqus_fields.h"

namespace kvx {

namespace {

// Sets of nodes and of elements have names of their own, and so has each part.
std::string SetKey(bool hasElements, bool isOfPart, std::string_view name) {
  std::string key(hasElements ? "E" : "N");
  key += isOfPart ? 'P' : 'A';
  return key + NameKey(name);
}

bool IsOfPart(const AbaqusKeyword& keyword) { return keyword.scope == AbaqusScope::Part; }

std::int32_t FindSet(const AbaqusImport& import, bool hasElements, bool isOfPart,
                     std::string_view name) {
  const auto at = import.mesh.setRows.find(SetKey(hasElements, isOfPart, name));
  return at == import.mesh.setRows.end() ? -1 : at->second;
}

// What stands behind the instance's name: "Part-1-1.Set-1"; "" without a point.
std::string_view BehindPoint(std::string_view name) {
  const std::size_t point = name.find('.');
  return point == std::string_view::npos ? std::string_view{} : name.substr(point + 1);
}

// A set by its name: first in the scope of the keyword, then in the part.
std::int32_t FindSetFrom(const AbaqusImport& import, bool hasElements, std::string_view name,
                         const AbaqusKeyword& keyword) {
  std::int32_t set = FindSet(import, hasElements, IsOfPart(keyword), name);
  if (set < 0) set = FindSet(import, hasElements, true, name);
  const std::string_view behind = BehindPoint(name);
  if (set < 0 && !behind.empty()) set = FindSet(import, hasElements, true, behind);
  return set;
}

// Whether plain numbers at this keyword are those of the part. In the assembly they are its own.
bool HasNumbersOfPart(const AbaqusImport& import, const AbaqusKeyword& keyword) {
  if (!import.mesh.hasAssembly || IsOfPart(keyword)) return true;
  return FindParameter(import.deck, keyword, "INSTANCE") != nullptr;
}

// The node or element that a word of digits names; "Part-1-1.17", too. -1: none.
std::int32_t FindSingle(const AbaqusImport& import, bool wantsElements, std::string_view name,
                        const AbaqusKeyword& keyword) {
  std::string_view digits = name;
  if (digits.find_first_not_of("+0123456789") != std::string_view::npos) {
    digits = BehindPoint(name);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
      return -1;
    }
  } else if (!HasNumbersOfPart(import, keyword)) {
    return -1;
  }
  // A name of digits too long for a number names nothing.
  constexpr std::size_t MostDigits = 18;
  if (digits.empty() || digits.size() > MostDigits) return -1;
  const std::int64_t number = IntegerOf(digits, 0, keyword.place, import.report);
  return FindNumber(wantsElements ? import.mesh.elements : import.mesh.nodes, number);
}

struct SetReader {
  AbaqusImport& import;
  const AbaqusKeyword& keyword;
  std::size_t set;
  std::unordered_set<std::int32_t> taken;  // sets that this keyword has taken in
  std::size_t missing = 0;                 // members that do not exist

  std::vector<std::int32_t>& Members() const { return import.mesh.sets[set].members; }
};

// first, last, step: all numbers of the range that exist.
void TakeRange(SetReader& reader, const AbaqusLine& line) {
  AbaqusImport& import = reader.import;
  AbaqusFields fields{line.text};
  const std::int64_t first = NextInteger(fields, 0, line.place, import.report);
  const std::int64_t last = NextInteger(fields, first, line.place, import.report);
  const std::int64_t step = NextInteger(fields, 1, line.place, import.report);
  if (step < 1 || last < first || first < 0) {
    StopImport(import.report, line.place, "GENERATE has first, last and a step of 1 or more");
  }
  const bool hasElements = import.mesh.sets[reader.set].hasElements;
  const AbaqusNumbers& numbers = hasElements ? import.mesh.elements : import.mesh.nodes;
  std::int64_t found = 0;
  std::size_t k =
      HasNumbersOfPart(import, reader.keyword) ? FindEntry(numbers, first) : numbers.entries.size();
  std::int64_t previous = -1;
  for (; k < numbers.entries.size() && numbers.entries[k].first <= last; ++k) {
    SpendEntries(import, 1, line.place);
    const std::int64_t number = numbers.entries[k].first;
    if ((number - first) % step != 0 || number == previous) continue;
    reader.Members().push_back(numbers.entries[k].second);
    previous = number;
    ++found;
  }
  if (found < (last - first) / step + 1) ++reader.missing;
}

void TakeMember(SetReader& reader, std::string_view name, SourcePlace place) {
  AbaqusImport& import = reader.import;
  const bool hasElements = import.mesh.sets[reader.set].hasElements;
  const AbaqusTargets targets = FindTargets(import, hasElements, name, reader.keyword);
  if (!targets.isKnown) {
    ++reader.missing;
    return;
  }
  if (targets.set < 0) {
    SpendEntries(import, 1, place);
    reader.Members().push_back(targets.single);
    return;
  }
  // A set that stands in itself, or twice, adds nothing.
  const bool isItself = static_cast<std::size_t>(targets.set) == reader.set;
  if (isItself || !reader.taken.insert(targets.set).second) return;
  const auto& others = import.mesh.sets[static_cast<std::size_t>(targets.set)].members;
  SpendEntries(import, others.size(), place);
  reader.Members().insert(reader.Members().end(), others.begin(), others.end());
}

// *NSET, ELSET=: the nodes of the elements.
void TakeNodesOfElements(SetReader& reader, std::string_view name) {
  AbaqusImport& import = reader.import;
  const AbaqusTargets targets = FindTargets(import, true, name, reader.keyword);
  if (!targets.isKnown) ++reader.missing;
  constexpr std::size_t MostNodes = 4;
  SpendEntries(import, MostNodes * CountTargets(import, targets), reader.keyword.place);
  for (std::size_t k = 0; k < CountTargets(import, targets); ++k) {
    const std::int32_t code = TargetAt(import, targets, k);
    const auto row = static_cast<std::size_t>(RowOfCode(code));
    if (KindOfCode(code) == AbaqusElementKind::Shell) {
      const ImportShell& shell = import.model.shells[row];
      reader.Members().insert(reader.Members().end(), shell.nodes.begin(),
                              shell.nodes.begin() + static_cast<std::ptrdiff_t>(CornersOf(shell)));
    } else if (KindOfCode(code) == AbaqusElementKind::Beam) {
      const ImportBeam& beam = import.model.beams[row];
      reader.Members().insert(reader.Members().end(), beam.nodes.begin(), beam.nodes.end());
    }
  }
}

bool HasGenerate(const AbaqusImport& import, const AbaqusKeyword& keyword) {
  // Decks abbreviate it to GEN.
  for (std::size_t k = 0; k < keyword.parameterCount; ++k) {
    const std::string& name = import.deck.parameters[keyword.firstParameter + k].name;
    if (name.compare(0, 3, "GEN") == 0) return true;
  }
  return false;
}

void TakeSet(AbaqusImport& import, const AbaqusKeyword& keyword) {
  const bool hasElements = keyword.name == "ELSET";
  const AbaqusParameter* name = FindParameter(import.deck, keyword, keyword.name);
  if (name == nullptr || name->value.empty()) {
    StopImport(import.report, keyword.place, "a set without a name");
  }
  constexpr std::array<std::string_view, 9> known{
      "NSET", "ELSET", "GENERATE", "GEN", "INSTANCE", "INTERNAL", "UNSORTED", "INPUT", "GENERATED"};
  ReportOtherParameters(import, keyword, known);
  const std::int32_t row = SetRowOf(import, hasElements, name->value, keyword);
  SetReader reader{import, keyword, static_cast<std::size_t>(row), {}, 0};
  const AbaqusParameter* elements = FindParameter(import.deck, keyword, "ELSET");
  if (!hasElements && elements != nullptr) TakeNodesOfElements(reader, elements->value);
  const bool isRange = HasGenerate(import, keyword);
  for (std::size_t k = 0; k < keyword.lineCount; ++k) {
    const AbaqusLine& line = import.deck.lines[keyword.firstLine + k];
    if (isRange) {
      TakeRange(reader, line);
      continue;
    }
    AbaqusFields fields{line.text};
    for (std::string_view field; NextField(fields, field);) {
      if (!field.empty()) TakeMember(reader, field, line.place);
    }
  }
  if (reader.missing == 0) return;
  ReportCard("*" + keyword.name, Fate::Limited, "members that do not exist are left out",
             keyword.place, std::string(WithoutQuotes(name->value)), import.report);
}

}  // namespace

std::int32_t SetRowOf(AbaqusImport& import, bool hasElements, std::string_view name,
                      const AbaqusKeyword& keyword) {
  auto& sets = import.mesh.sets;
  const auto [at, isNew] = import.mesh.setRows.emplace(SetKey(hasElements, IsOfPart(keyword), name),
                                                       static_cast<std::int32_t>(sets.size()));
  if (isNew) {
    sets.push_back(
        {std::string(WithoutQuotes(name)), hasElements, IsOfPart(keyword), {}, keyword.place});
  }
  return at->second;
}

AbaqusTargets FindTargets(const AbaqusImport& import, bool wantsElements, std::string_view name,
                          const AbaqusKeyword& keyword) {
  AbaqusTargets targets;
  targets.single = FindSingle(import, wantsElements, name, keyword);
  if (targets.single < 0) targets.set = FindSetFrom(import, wantsElements, name, keyword);
  targets.isKnown = targets.single >= 0 || targets.set >= 0;
  return targets;
}

void TakeAbaqusSets(AbaqusImport& import) {
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart) continue;
    if (keyword.name == "NSET" || keyword.name == "ELSET") TakeSet(import, keyword);
  }
  for (AbaqusSet& set : import.mesh.sets) {
    std::sort(set.members.begin(), set.members.end());
    set.members.erase(std::unique(set.members.begin(), set.members.end()), set.members.end());
    set.members.shrink_to_fit();
  }
}

}  // namespace kvx
