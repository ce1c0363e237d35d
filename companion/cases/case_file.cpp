#include "cases/case_file.h"

#include <cmath>
#include <map>

#include "cases/folder_name.h"
#include "finding/nearest_word.h"
#include "report/stop.h"
#include "toml/toml_tree.h"

namespace kvx {

namespace {

// Cases and combinations together. More are no work of people; and combinations of combinations are
// followed one within the other.
constexpr std::size_t MostNames = 2000;

[[noreturn]] void StopAt(std::size_t line, const std::string& text) {
  const std::string place = line > 0 ? "line " + std::to_string(line) + ": " : "";
  throw korvex::Stop{korvex::StopKind::Notice, place + text};
}

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

std::string Question(const std::string& typed, const std::vector<std::string>& words) {
  const std::vector<std::string> nearest = FindNearest(typed, words);
  return nearest.empty() ? "" : " Did you mean " + Quoted(nearest.front()) + "?";
}

// "loads, acceleration"
std::string ListWords(const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : ", ") + word;
  return list;
}

[[noreturn]] void RefuseKey(const TomlItem& item, const std::string& owner,
                            const std::vector<std::string>& known) {
  const std::string question = Question(item.key, known);
  StopAt(item.line, owner + " has no " + Quoted(item.key) + "." +
                        (question.empty() ? " It may have: " + ListWords(known) + "." : question));
}

// owner: "case ballast"; form: "loads = \"ballast.txt\"".
void Expect(const TomlItem& item, TomlKind kind, const std::string& owner, const char* form) {
  if (item.kind == kind) return;
  StopAt(item.line,
         owner + ": " + Quoted(item.key) + " is " + NameKind(item) + ". Write it as in: " + form);
}

double ReadFinite(const TomlItem& item, const std::string& owner, const char* form) {
  if (item.kind != TomlKind::Number) {
    StopAt(item.line, owner + ": " + (item.key.empty() ? "" : Quoted(item.key) + " is ") +
                          NameKind(item) + " where a number must stand. Write it as in: " + form);
  }
  if (!std::isfinite(item.number)) {
    StopAt(item.line, owner + ": the number must be finite.");
  }
  return item.number;
}

std::string ReadFileName(const TomlItem& item, const std::string& owner, const char* form) {
  Expect(item, TomlKind::Text, owner, form);
  if (item.text.empty()) StopAt(item.line, owner + ": " + Quoted(item.key) + " names no file.");
  if (item.text.find('\0') != std::string::npos) {
    StopAt(item.line, owner + ": the name of the file has a byte 0.");
  }
  return item.text;
}

void ReadAcceleration(const TomlItem& item, const std::string& owner, LoadCase& loadCase) {
  constexpr const char* Form = "acceleration = [0, 0, -9810]";
  Expect(item, TomlKind::List, owner, Form);
  if (item.items.size() != loadCase.acceleration.size()) {
    StopAt(item.line, owner + ": \"acceleration\" has " + std::to_string(item.items.size()) +
                          " numbers instead of 3. Write it as in: " + Form);
  }
  bool isZero = true;
  for (std::size_t i = 0; i < loadCase.acceleration.size(); ++i) {
    loadCase.acceleration[i] = ReadFinite(item.items[i], owner, Form);
    isZero = isZero && loadCase.acceleration[i] == 0.0;
  }
  if (isZero) StopAt(item.line, owner + ": the acceleration is zero, so it makes no loads.");
  loadCase.hasAcceleration = true;
}

void ReadCase(const TomlItem& item, CaseFile& file) {
  LoadCase loadCase;
  loadCase.name = item.key;
  loadCase.line = item.line;
  const std::string owner = "case " + Quoted(item.key);
  if (item.key == BaseCaseName) {
    StopAt(item.line, "\"base\" is the name of the structure's own loads. Give this case another.");
  }
  for (const TomlItem& each : item.items) {
    if (each.key == "loads") {
      loadCase.loads = ReadFileName(each, owner, "loads = \"ballast.txt\"");
      loadCase.loadsLine = each.line;
    } else if (each.key == "acceleration") {
      ReadAcceleration(each, owner, loadCase);
    } else {
      RefuseKey(each, owner, {"loads", "acceleration"});
    }
  }
  if (loadCase.loads.empty() && !loadCase.hasAcceleration) {
    StopAt(item.line, owner + " has no loads. Write loads = \"FILE\" or acceleration = [x, y, z].");
  }
  file.cases.push_back(loadCase);
}

void ReadCombination(const TomlItem& item, CaseFile& file) {
  constexpr const char* Form = "factors = { base = 1.35, ballast = 1.5 }";
  Combination combination;
  combination.name = item.key;
  combination.line = item.line;
  const std::string owner = "combination " + Quoted(item.key);
  for (const TomlItem& each : item.items) {
    if (each.key != "factors") RefuseKey(each, owner, {"factors"});
    Expect(each, TomlKind::Table, owner, Form);
    for (const TomlItem& term : each.items) {
      combination.terms.push_back({term.key, ReadFinite(term, owner, Form), term.line});
    }
  }
  if (combination.terms.empty()) {
    StopAt(item.line, owner + " combines nothing. Write it as in: " + Form);
  }
  file.combinations.push_back(combination);
}

void ReadEnvelope(const TomlItem& item, CaseFile& file) {
  constexpr const char* Form = "of = [\"uls\", \"accident\"]";
  EnvelopeList envelope;
  envelope.name = item.key;
  envelope.line = item.line;
  const std::string owner = "envelope " + Quoted(item.key);
  for (const TomlItem& each : item.items) {
    if (each.key != "of") RefuseKey(each, owner, {"of"});
    Expect(each, TomlKind::List, owner, Form);
    for (const TomlItem& name : each.items) {
      if (name.kind != TomlKind::Text) {
        StopAt(name.line, owner + ": " + NameKind(name) +
                              " where the name of a case must stand. Write it as in: " + Form);
      }
      envelope.of.push_back({name.text, 1.0, name.line});
    }
  }
  if (envelope.of.empty()) StopAt(item.line, owner + " is of nothing. Write it as in: " + Form);
  file.envelopes.push_back(envelope);
}

// Calls read(item) for [KIND.NAME], each of which must be a table with a name.
template <typename Read>
void ReadNamed(const TomlItem& kind, const Read& read) {
  const auto stop = [&](std::size_t line) {
    StopAt(line, "each " + kind.key + " needs a name. Write it as in: [" + kind.key + ".ballast]");
  };
  if (kind.kind != TomlKind::Table) stop(kind.line);
  for (const TomlItem& item : kind.items) {
    if (item.kind != TomlKind::Table) stop(item.line);
    read(item);
  }
}

// The folders that the results get, by their names without capitals.
struct FolderNames {
  std::map<std::string, std::size_t> lines;
};

void AddFolderName(const std::string& name, const std::string& folder, std::size_t line,
                   FolderNames& names) {
  const std::string fault = FindFolderFault(name);
  if (!fault.empty()) {
    StopAt(line, fault + ". Results are written to a folder of this name; choose another.");
  }
  const auto [at, isNew] = names.lines.emplace(FoldCase(folder), line);
  if (isNew) return;
  const std::string earlier =
      at->second > 0 ? "in line " + std::to_string(at->second) : "for the structure's own loads";
  StopAt(line, "the name " + Quoted(name) + " gives the folder " + Quoted(folder) +
                   ", which stands already " + earlier +
                   " (capitals do not count). Choose another name.");
}

void CheckFolderNames(const CaseFile& file) {
  FolderNames names;
  names.lines.emplace(BaseCaseName, 0);
  for (const LoadCase& each : file.cases) AddFolderName(each.name, each.name, each.line, names);
  for (const Combination& each : file.combinations) {
    AddFolderName(each.name, each.name, each.line, names);
  }
  for (const EnvelopeList& each : file.envelopes) {
    AddFolderName(each.name, EnvelopeFolderPrefix + each.name, each.line, names);
  }
}

// All that can be named: cases, then combinations.
struct NameList {
  std::vector<std::string> names;
  std::map<std::string, std::size_t> numbers;
};

void ListNames(const CaseFile& file, NameList& list) {
  for (const LoadCase& each : file.cases) list.names.push_back(each.name);
  for (const Combination& each : file.combinations) list.names.push_back(each.name);
  for (std::size_t k = 0; k < list.names.size(); ++k) list.numbers.emplace(list.names[k], k);
}

// owner: "combination \"uls\"".
std::size_t FindName(const CaseTerm& term, const std::string& owner, const NameList& list) {
  const auto at = list.numbers.find(term.name);
  if (at != list.numbers.end()) return at->second;
  if (term.name == BaseCaseName) {
    StopAt(term.line, owner + ": the structure has no loads of its own, so there is no \"base\".");
  }
  const std::string question = Question(term.name, list.names);
  StopAt(term.line,
         owner + ": there is no case or combination " + Quoted(term.name) + "." +
             (question.empty() ? " There are: " + ListWords(list.names) + "." : question));
}

// The work of ResolveCombinations: each combination is resolved once.
struct Resolver {
  const CaseFile& file;
  NameList names;
  std::vector<CaseFactors>& factors;
  std::vector<char> isDone;
  std::vector<std::size_t> path;  // combinations that wait for the next one
};

[[noreturn]] void StopAtCircle(const Resolver& resolver, std::size_t again, std::size_t line) {
  std::string circle;
  bool isIn = false;
  for (const std::size_t k : resolver.path) {
    isIn = isIn || k == again;
    if (isIn) circle += resolver.file.combinations[k].name + " -> ";
  }
  StopAt(line, "combinations lead in a circle: " + circle + resolver.file.combinations[again].name +
                   ". A combination can only be made of others that do not contain it.");
}

void Resolve(std::size_t row, Resolver& resolver) {
  if (resolver.isDone[row] != 0) return;
  const Combination& combination = resolver.file.combinations[row];
  const std::size_t cases = resolver.file.cases.size();
  resolver.path.push_back(row);
  std::map<std::size_t, double> sums;
  for (const CaseTerm& term : combination.terms) {
    const std::string owner = "combination " + Quoted(combination.name);
    const std::size_t number = FindName(term, owner, resolver.names);
    if (number < cases) {
      sums[number] += term.factor;
      continue;
    }
    const std::size_t other = number - cases;
    for (const std::size_t waiting : resolver.path) {
      if (waiting == other) StopAtCircle(resolver, other, term.line);
    }
    Resolve(other, resolver);
    for (const auto& [k, factor] : resolver.factors[other].terms) sums[k] += term.factor * factor;
  }
  resolver.path.pop_back();
  for (const auto& [k, factor] : sums) {
    if (!std::isfinite(factor)) {
      StopAt(combination.line, "combination " + Quoted(combination.name) +
                                   ": the product of its factors is too large.");
    }
    if (factor != 0.0) resolver.factors[row].terms.emplace_back(k, factor);
  }
  resolver.isDone[row] = 1;
}

}  // namespace

void ReadCaseFile(std::string_view text, CaseFile& file) {
  TomlItem root;
  ReadToml(text, root);
  for (const TomlItem& item : root.items) {
    if (item.key == "structure") {
      file.structure = ReadFileName(item, "the case file", "structure = \"fem_solving.txt\"");
      file.structureLine = item.line;
    } else if (item.key == "case") {
      ReadNamed(item, [&](const TomlItem& each) { ReadCase(each, file); });
    } else if (item.key == "combination") {
      ReadNamed(item, [&](const TomlItem& each) { ReadCombination(each, file); });
    } else if (item.key == "envelope") {
      ReadNamed(item, [&](const TomlItem& each) { ReadEnvelope(each, file); });
    } else {
      RefuseKey(item, "a case file", {"structure", "case", "combination", "envelope"});
    }
  }
  CheckFolderNames(file);
  if (file.cases.size() + file.combinations.size() > MostNames) {
    StopAt(0, "there are more than " + std::to_string(MostNames) +
                  " cases and combinations. Divide the file.");
  }
}

void AddBaseCase(CaseFile& file) {
  LoadCase base;
  base.name = BaseCaseName;
  file.cases.insert(file.cases.begin(), base);
}

void ResolveCombinations(const CaseFile& file, std::vector<CaseFactors>& factors) {
  if (file.cases.empty()) {
    StopAt(0,
           "there is no load case, and the structure has no loads of its own. Write one as in: "
           "[case.ballast], and below it loads = \"ballast.txt\".");
  }
  factors.assign(file.combinations.size(), {});
  Resolver resolver{file, {}, factors, std::vector<char>(factors.size(), 0), {}};
  ListNames(file, resolver.names);
  for (std::size_t row = 0; row < factors.size(); ++row) Resolve(row, resolver);
}

void ResolveEnvelopes(const CaseFile& file, std::vector<EnvelopeOf>& envelopes) {
  NameList names;
  ListNames(file, names);
  for (const EnvelopeList& each : file.envelopes) {
    const std::string owner = "envelope " + Quoted(each.name);
    std::map<std::size_t, bool> isOf;  // in ascending order, each once
    for (const CaseTerm& term : each.of) isOf[FindName(term, owner, names)] = true;
    envelopes.push_back({each.name, {}});
    for (const auto& entry : isOf) envelopes.back().of.push_back(entry.first);
  }
  if (!envelopes.empty()) return;
  envelopes.push_back({"all", {}});
  const std::size_t first = file.combinations.empty() ? 0 : file.cases.size();
  for (std::size_t k = first; k < names.names.size(); ++k) envelopes.back().of.push_back(k);
}

}  // namespace kvx
