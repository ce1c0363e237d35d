#include "mesh/abaqus/abaqus_elements.h"

#include <array>
#include <map>
#include <string>

#include "mesh/abaqus/abaqus_element_types.h"
#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_sets.h"

namespace kvx {

namespace {

// Most nodes that are kept of an element: those of a quadrilateral, one for a word too many.
constexpr std::size_t MostKept = 5;

// One element as its lines give it.
struct ElementRow {
  std::int64_t number = 0;
  std::size_t count = 0;  // nodes
  std::array<std::int64_t, MostKept> nodes{};
  SourcePlace place;
};

struct ElementReader {
  AbaqusImport& import;
  std::string typeName;
  AbaqusElementType type;
  std::int32_t typeRow = -1;
  std::map<std::string, std::int32_t> typeRows;  // name -> row of the model's typeNames
  std::size_t others = 0;                        // elements that are not taken over
};

std::int32_t TypeRow(ElementReader& reader) {
  auto& names = reader.import.model.typeNames;
  const auto [at, isNew] =
      reader.typeRows.emplace(reader.typeName, static_cast<std::int32_t>(names.size()));
  if (isNew) names.push_back(reader.typeName);
  return at->second;
}

// Adds the nodes of a line; says whether the line ends with a comma.
bool AddNodesOfLine(const AbaqusImport& import, const AbaqusLine& line, AbaqusFields& fields,
                    ElementRow& row) {
  std::string_view field;
  while (NextField(fields, field)) {
    if (field.empty()) continue;
    const std::int64_t node = IntegerOf(field, 0, line.place, import.report);
    if (row.count < MostKept) row.nodes[row.count] = node;
    ++row.count;
  }
  return line.text.back() == ',';
}

// Reads an element that begins at line k of the keyword, and moves k behind it. It goes on with the
// next line while nodes are missing; an element of an unknown type while its line ends with a
// comma.
ElementRow ReadElement(const AbaqusImport& import, const AbaqusKeyword& keyword,
                       const AbaqusElementType& type, std::size_t& k) {
  ElementRow row;
  const AbaqusLine* line = &import.deck.lines[keyword.firstLine + k];
  row.place = line->place;
  AbaqusFields fields{line->text};
  std::string_view field;
  NextField(fields, field);
  if (field.empty()) StopImport(import.report, row.place, "an element without a number");
  row.number = IntegerOf(field, 0, row.place, import.report);
  bool hasComma = AddNodesOfLine(import, *line, fields, row);
  ++k;
  while (type.nodes > 0 ? row.count < type.nodes : hasComma) {
    if (k >= keyword.lineCount) {
      if (type.nodes == 0) break;
      StopImport(import.report, row.place,
                 "element " + std::to_string(row.number) + " has " + std::to_string(row.count) +
                     " of its " + std::to_string(type.nodes) + " nodes");
    }
    line = &import.deck.lines[keyword.firstLine + k];
    AbaqusFields more{line->text};
    hasComma = AddNodesOfLine(import, *line, more, row);
    ++k;
  }
  return row;
}

std::int32_t AddOther(ElementReader& reader) {
  return ElementCode(AbaqusElementKind::Other, reader.others++);
}

// The rows of an element's nodes; false where one is missing or stands twice, which is reported.
template <std::size_t count>
bool FindNodes(ElementReader& reader, const ElementRow& row, std::size_t used,
               std::array<std::int32_t, count>& nodes) {
  const AbaqusImport& import = reader.import;
  std::string_view reason;
  for (std::size_t k = 0; k < used; ++k) {
    nodes[k] = FindNumber(import.mesh.nodes, row.nodes[k]);
    if (nodes[k] < 0) reason = "an element has a node that does not exist";
    for (std::size_t j = 0; j < k && nodes[k] >= 0; ++j) {
      if (nodes[j] == nodes[k]) reason = "an element has a node twice";
    }
  }
  if (reason.empty()) return true;
  ReportCard("*ELEMENT", Fate::Refused, reason, row.place,
             reader.typeName + " " + std::to_string(row.number), reader.import.report);
  return false;
}

std::int32_t AddShell(ElementReader& reader, const ElementRow& row) {
  ImportShell shell;
  shell.number = row.number;
  shell.type = reader.typeRow;
  if (!FindNodes(reader, row, reader.type.nodes, shell.nodes)) return AddOther(reader);
  auto& shells = reader.import.model.shells;
  shells.push_back(shell);
  return ElementCode(AbaqusElementKind::Shell, shells.size() - 1);
}

std::int32_t AddBeam(ElementReader& reader, const ElementRow& row) {
  ImportBeam beam;
  beam.number = row.number;
  beam.type = reader.typeRow;
  if (!FindNodes(reader, row, 2, beam.nodes)) return AddOther(reader);
  auto& beams = reader.import.model.beams;
  if (row.count == 3) {
    const std::int32_t third = FindNumber(reader.import.mesh.nodes, row.nodes[2]);
    if (third < 0) {
      ReportCard("*ELEMENT", Fate::Refused, "the third node of a beam does not exist", row.place,
                 reader.typeName + " " + std::to_string(row.number), reader.import.report);
      return AddOther(reader);
    }
    reader.import.mesh.axisNodes.emplace_back(static_cast<std::int32_t>(beams.size()), third);
  }
  beams.push_back(beam);
  return ElementCode(AbaqusElementKind::Beam, beams.size() - 1);
}

std::int32_t AddElement(ElementReader& reader, const ElementRow& row) {
  const AbaqusElementType& type = reader.type;
  if (type.kind == AbaqusElementKind::Other) return AddOther(reader);
  const bool isBeam = type.kind == AbaqusElementKind::Beam;
  if (row.count > type.nodes + (isBeam ? 1 : 0)) {
    StopImport(reader.import.report, row.place,
               "element " + std::to_string(row.number) + " has " + std::to_string(row.count) +
                   " nodes, one of type " + reader.typeName + " has " + std::to_string(type.nodes));
  }
  return isBeam ? AddBeam(reader, row) : AddShell(reader, row);
}

void TakeElementKeyword(ElementReader& reader, const AbaqusKeyword& keyword) {
  AbaqusImport& import = reader.import;
  constexpr std::array<std::string_view, 3> known{"TYPE", "ELSET", "INPUT"};
  ReportOtherParameters(import, keyword, known);
  reader.typeName = UpperWords(ParameterText(import.deck, keyword, "TYPE"));
  if (reader.typeName.empty()) StopImport(import.report, keyword.place, "*ELEMENT without TYPE=");
  reader.type = TypeOfElement(reader.typeName);
  const bool isOther = reader.type.kind == AbaqusElementKind::Other;
  if (!isOther && keyword.lineCount > 0) reader.typeRow = TypeRow(reader);
  const AbaqusParameter* set = FindParameter(import.deck, keyword, "ELSET");
  std::int32_t setRow = -1;
  if (set != nullptr) setRow = SetRowOf(import, true, set->value, keyword);
  const bool isOfAssembly = keyword.scope == AbaqusScope::Assembly;
  std::size_t count = 0;
  std::string example;
  for (std::size_t k = 0; k < keyword.lineCount; ++count) {
    const ElementRow row = ReadElement(import, keyword, reader.type, k);
    if (count == 0) example = reader.typeName + " " + std::to_string(row.number);
    if (isOfAssembly) continue;
    const std::int32_t code = AddElement(reader, row);
    AddNumber(row.number, code, import.mesh.elements);
    if (setRow >= 0) import.mesh.sets[static_cast<std::size_t>(setRow)].members.push_back(code);
  }
  if (count == 0) return;
  if (isOfAssembly && !isOther) {
    ReportCard("*ELEMENT", Fate::Refused, "elements of the assembly, outside of an instance",
               keyword.place, example, import.report, count);
  } else if (!reader.type.reason.empty()) {
    ReportCard("*ELEMENT", reader.type.fate,
               reader.typeName + ": " + std::string(reader.type.reason), keyword.place, example,
               import.report, count);
  }
}

void RefuseDoubledElements(AbaqusImport& import) {
  const auto& entries = import.mesh.elements.entries;
  for (std::size_t k = 1; k < entries.size(); ++k) {
    if (entries[k].first != entries[k - 1].first) continue;
    ReportCard("*ELEMENT", Fate::Refused, "two elements have the same number",
               import.report.cards["*ELEMENT"].first, "element " + std::to_string(entries[k].first),
               import.report);
  }
}

}  // namespace

void TakeAbaqusElements(AbaqusImport& import) {
  ElementReader reader{import, {}, {}, -1, {}, 0};
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart || keyword.name != "ELEMENT") continue;
    TakeElementKeyword(reader, keyword);
  }
  SortNumbers(import.mesh.elements);
  RefuseDoubledElements(import);
}

}  // namespace kvx
