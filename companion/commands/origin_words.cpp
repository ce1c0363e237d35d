#include "commands/origin_words.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "deck/row_formats.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;
using korvex::ModelTables;
using korvex::Section;

// So many rows, nodes and groups of a finding are named in a text; JSON has all rows and nodes.
constexpr std::size_t MostNamed = 5, MostGroups = 3;

// A deck with more groups is not searched for those of a finding: it would have to wait.
constexpr std::size_t MostSearched = 10000;

std::string InBrackets(const std::string& name) {
  return name.empty() ? "" : " (deck " + name + ")";
}

const std::string* NameAt(const std::vector<std::string>& names, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);  // very large if negative
  return at < names.size() && !names[at].empty() ? &names[at] : nullptr;
}

// What a row of a finding's table is.
struct RowMeaning {
  const ElementOrigin* elements = nullptr;                    // an element
  const std::vector<std::string>* names = nullptr;            // something that has a name
  std::vector<std::int32_t> OriginGroup::*grouped = nullptr;  // of elements: in groups
};

RowMeaning MeaningOf(const ModelOrigin& origin, std::string_view table) {
  const auto isOf = [&](Section section) { return table == korvex::FormatOf(section).key; };
  if (isOf(Section::Shells4) || isOf(Section::Shell4Loads)) {
    return {&origin.shells4, nullptr, &OriginGroup::shells4};
  }
  if (isOf(Section::Shells3) || isOf(Section::Shell3Loads)) {
    return {&origin.shells3, nullptr, &OriginGroup::shells3};
  }
  if (isOf(Section::Beams) || isOf(Section::BeamLoads)) {
    return {&origin.beams, nullptr, &OriginGroup::beams};
  }
  if (isOf(Section::Materials)) return {nullptr, &origin.materials, nullptr};
  if (isOf(Section::ShellThicknesses)) return {nullptr, &origin.thicknesses, nullptr};
  if (isOf(Section::TBeamSections)) return {nullptr, &origin.sectionsT, nullptr};
  if (isOf(Section::LBeamSections)) return {nullptr, &origin.sectionsL, nullptr};
  if (isOf(Section::CBeamSections)) return {nullptr, &origin.sectionsC, nullptr};
  return {};
}

template <typename Loads>
std::int32_t LoadedAt(const Loads& loads, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);  // very large if negative
  return at < loads.size() ? loads[at].element : -1;
}

// The row of the elements' table that a row of a finding is about.
std::int32_t MeantRow(const ModelTables& tables, std::string_view table, std::int32_t row) {
  const auto isOf = [&](Section section) { return table == korvex::FormatOf(section).key; };
  if (isOf(Section::Shell4Loads)) return LoadedAt(tables.Shell4SurfaceLoads, row);
  if (isOf(Section::Shell3Loads)) return LoadedAt(tables.Shell3SurfaceLoads, row);
  if (isOf(Section::BeamLoads)) return LoadedAt(tables.BeamLineLoads, row);
  return row;
}

// "CQUAD4 4711", "MAT1 7"; "" where the deck has none.
std::string RowInDeck(const ModelOrigin& origin, const RowMeaning& meaning, std::int32_t row) {
  if (meaning.elements != nullptr) return OriginOfElement(origin, *meaning.elements, row);
  const std::string* const name = meaning.names == nullptr ? nullptr : NameAt(*meaning.names, row);
  return name == nullptr ? "" : *name;
}

// A part of a sentence, with a comma before it.
void AddPart(const std::string& part, std::string& text) {
  text += (text.empty() ? "" : ", ") + part;
}

// How many different numbers there are.
std::size_t CountDifferent(std::vector<std::int32_t> numbers) {
  std::sort(numbers.begin(), numbers.end());
  return static_cast<std::size_t>(std::unique(numbers.begin(), numbers.end()) - numbers.begin());
}

// The first of the different names, and how many more numbers there are.
// nameOf: of a number, "" where the deck has none.
template <typename NameOf>
void AddNames(const std::vector<std::int32_t>& numbers, const NameOf& nameOf, const char* before,
              std::string& text) {
  std::vector<std::string> names;
  for (const std::int32_t number : numbers) {
    if (names.size() == MostNamed) break;
    std::string name = nameOf(number);
    const bool isNew = std::find(names.begin(), names.end(), name) == names.end();
    if (!name.empty() && isNew) names.push_back(std::move(name));
  }
  for (std::size_t k = 0; k < names.size(); ++k) AddPart((k == 0 ? before : "") + names[k], text);
  const std::size_t count = names.size() < MostNamed ? 0 : CountDifferent(numbers);
  if (count > MostNamed) AddPart("and " + std::to_string(count - MostNamed) + " more", text);
}

void AddRows(const ModelOrigin& origin, const ModelTables& tables, const Finding& finding,
             std::string& text) {
  const RowMeaning meaning = MeaningOf(origin, finding.table);
  const auto nameOf = [&](std::int32_t row) {
    return RowInDeck(origin, meaning, MeantRow(tables, finding.table, row));
  };
  AddNames(finding.rows, nameOf, "", text);
}

// The nodes of a finding; where they are those of the only element that it names, round that
// element, as its card has them.
std::vector<std::int32_t> NodesAsOnCard(const ModelTables& tables, const Finding& finding) {
  const auto isOf = [&](Section section) {
    return std::string_view(finding.table) == korvex::FormatOf(section).key;
  };
  const std::vector<std::int32_t>* all = nullptr;
  std::size_t count = korvex::NodesPerShell4;
  if (isOf(Section::Shells4)) all = &tables.Shell4Nodes;
  if (isOf(Section::Shells3)) {
    all = &tables.Shell3Nodes;
    count = korvex::NodesPerShell3;
  }
  if (all == nullptr || finding.rows.size() != 1 || finding.nodes.size() != count) {
    return finding.nodes;
  }
  const std::size_t begin = static_cast<std::size_t>(finding.rows[0]) * count;  // or very large
  if (begin > all->size() || all->size() - begin < count) return finding.nodes;
  const auto first = all->begin() + static_cast<std::ptrdiff_t>(begin);
  std::vector<std::int32_t> nodes(first, first + static_cast<std::ptrdiff_t>(count));
  const bool areSame = std::is_permutation(nodes.begin(), nodes.end(), finding.nodes.begin());
  return areSame ? nodes : finding.nodes;
}

void AddNodes(const ModelOrigin& origin, const ModelTables& tables, const Finding& finding,
              std::string& text) {
  const auto nameOf = [&](std::int32_t node) {
    const auto at = static_cast<std::size_t>(node);  // very large if negative
    return at < origin.nodes.size() ? std::to_string(origin.nodes[at]) : "";
  };
  AddNames(NodesAsOnCard(tables, finding), nameOf,
           CountDifferent(finding.nodes) == 1 ? "node " : "nodes ", text);
}

bool HasAny(const std::vector<std::int32_t>& group, const std::vector<std::int32_t>& rows) {
  return std::any_of(rows.begin(), rows.end(), [&](std::int32_t row) {
    return std::binary_search(group.begin(), group.end(), row);
  });
}

// The groups that hold an element that is named; of a finding about nodes alone, a node.
void AddGroups(const ModelOrigin& origin, const ModelTables& tables, const Finding& finding,
               std::string& text) {
  const RowMeaning meaning = MeaningOf(origin, finding.table);
  std::vector<std::int32_t> OriginGroup::*const grouped =
      meaning.grouped != nullptr ? meaning.grouped : &OriginGroup::nodes;
  std::vector<std::int32_t> rows;
  for (const std::int32_t row : meaning.grouped != nullptr ? finding.rows : finding.nodes) {
    if (rows.size() == MostNamed) break;
    rows.push_back(meaning.grouped != nullptr ? MeantRow(tables, finding.table, row) : row);
  }
  std::string names;
  std::size_t found = 0;
  for (const OriginGroup& group : origin.groups) {
    if (origin.groups.size() > MostSearched || !HasAny(group.*grouped, rows)) continue;
    if (++found <= MostGroups) AddPart(group.name, names);
  }
  if (found == 0) return;
  AddPart((found == 1 ? "group " : "groups ") + names, text);
  if (found > MostGroups) AddPart("and " + std::to_string(found - MostGroups) + " more", text);
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

template <typename Numbers>
Json NumberAt(const Numbers& numbers, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);  // very large if negative
  return at < numbers.size() ? Json(numbers[at]) : Json(nullptr);
}

}  // namespace

const ElementOrigin& OriginOf(const ModelOrigin& origin, ElementKind kind) {
  if (kind == ElementKind::Shell4) return origin.shells4;
  return kind == ElementKind::Shell3 ? origin.shells3 : origin.beams;
}

ElementKind ElementKindOf(Holder holder) {
  if (holder == Holder::Shell4) return ElementKind::Shell4;
  return holder == Holder::Shell3 ? ElementKind::Shell3 : ElementKind::Beam;
}

std::string InDeck(const ModelOrigin& origin, std::int32_t node) {
  const auto at = static_cast<std::size_t>(node);  // very large if negative
  return at < origin.nodes.size() ? InBrackets(std::to_string(origin.nodes[at])) : "";
}

std::string InDeck(const ModelOrigin& origin, const ElementRef& element) {
  return InBrackets(OriginOfElement(origin, OriginOf(origin, element.kind), element.row));
}

std::string InDeck(const ModelOrigin& origin, Holder holder, std::int32_t number) {
  if (holder == Holder::Node) return InDeck(origin, number);
  return InDeck(origin, ElementRef{ElementKindOf(holder), number});
}

std::int64_t DeckNumber(const ModelOrigin& origin, Holder holder, std::int32_t number) {
  const std::vector<std::int64_t>& numbers =
      holder == Holder::Node ? origin.nodes : OriginOf(origin, ElementKindOf(holder)).numbers;
  return numbers[static_cast<std::size_t>(number)];
}

std::string NameOfGroup(const ModelOrigin& origin, Grouping grouping, std::int32_t sectionType,
                        std::int32_t row) {
  const std::vector<std::string>* names = nullptr;
  if (grouping == Grouping::Thickness) names = &origin.thicknesses;
  if (grouping == Grouping::Material) names = &origin.materials;
  if (grouping == Grouping::Section) {
    names = sectionType == korvex::BeamSecTypeT   ? &origin.sectionsT
            : sectionType == korvex::BeamSecTypeL ? &origin.sectionsL
                                                  : &origin.sectionsC;
  }
  const std::string* const name = names == nullptr ? nullptr : NameAt(*names, row);
  return name == nullptr ? "" : *name;
}

Json DeckNumberJson(const ModelOrigin& origin, std::int32_t node) {
  return NumberAt(origin.nodes, node);
}

Json DeckNumberJson(const ModelOrigin& origin, const ElementRef& element) {
  return NumberAt(OriginOf(origin, element.kind).numbers, element.row);
}

void AddDeckNumbers(const korvex::Model& model, const ModelOrigin& origin,
                    const ElementRef& element, Json& json) {
  if (!HasOrigin(origin)) return;
  json["deck_element"] = DeckNumberJson(origin, element);
  Json& nodes = json["deck_nodes"] = Json::array();
  const NodeSpan span = NodesOfElement(model, element);
  for (std::int32_t k = 0; k < span.count; ++k) {
    nodes.push_back(DeckNumberJson(origin, span.nodes[k]));
  }
}

void NameInDeck(const ModelOrigin& origin, const ModelTables& tables, FindingList& list) {
  if (!HasOrigin(origin)) return;
  for (Finding& finding : list.findings) {
    std::string text;
    AddRows(origin, tables, finding, text);
    AddNodes(origin, tables, finding, text);
    AddGroups(origin, tables, finding, text);
    if (!text.empty()) finding.origin = "In " + origin.source + ": " + text + '.';
  }
}

Json OriginalJson(const ModelOrigin& origin, const ModelTables& tables, const Finding& finding) {
  const RowMeaning meaning = MeaningOf(origin, finding.table);
  Json json;
  json["rows"] = Json::array();
  const bool isOfNodes = std::string_view(finding.table) == korvex::FormatOf(Section::Nodes).key;
  for (const std::int32_t row : finding.rows) {
    json["rows"].push_back(
        TextOrNull(isOfNodes ? OriginOfNode(origin, row)
                             : RowInDeck(origin, meaning, MeantRow(tables, finding.table, row))));
  }
  json["nodes"] = Json::array();
  for (const std::int32_t node : finding.nodes) {
    json["nodes"].push_back(NumberAt(origin.nodes, node));
  }
  return json;
}

}  // namespace kvx
