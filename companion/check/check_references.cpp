#include "check/check_references.h"

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "check/describe.h"
#include "check/table_rows.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

// References to rows that do not exist: by table of the elements, table of the row, row.
using MissingRow = std::tuple<Section, Section, std::int32_t>;

// More kinds of missing rows are named one by one: a file of random numbers must not cost memory.
constexpr std::size_t MostMissingRows = 1000;

struct MissingRows {
  std::map<MissingRow, Finding> findings;
};

const char* NameOf(Section table) {
  switch (table) {
    case Section::Nodes:
      return "node ";
    case Section::Materials:
      return "material ";
    case Section::ShellThicknesses:
      return "thickness ";
    default:
      return "section (BeamSecIndex) ";
  }
}

Finding DescribeMissing(const CheckedModel& model, Section elements, std::int32_t row,
                        Section table, std::int32_t reference) {
  Finding finding = MakeRowFinding("K101", model, elements, row);
  const std::int32_t count = CountRows(model.tables, table);
  const std::string rows = korvex::FormatOf(table).rows;
  const std::string there = count == 0 ? "there are no " + rows
                                       : "the " + rows + " are 0 .. " + std::to_string(count - 1);
  finding.message = DescribeElement(model, elements, row) + ": refers to " + NameOf(table) +
                    std::to_string(reference) + ", but " + there + "; the run stops.";
  finding.remedy = reference == count && count > 0
                       ? "Count from 0: the first row of a table is 0. Or add the missing row."
                       : "Mend the number, or add the missing row.";
  return finding;
}

void AddMissing(const CheckedModel& model, Section elements, std::int32_t row, Section table,
                std::int32_t reference, MissingRows& missing, FindingList& list) {
  const MissingRow key{elements, table, reference};
  const auto known = missing.findings.find(key);
  if (known == missing.findings.end()) {
    Finding finding = DescribeMissing(model, elements, row, table, reference);
    if (missing.findings.size() < MostMissingRows) {
      missing.findings.emplace(key, std::move(finding));
    } else {
      AddFinding(std::move(finding), list);
    }
    return;
  }
  std::vector<std::int32_t>& rows = known->second.rows;
  if (rows.back() != row) rows.push_back(row);
}

// Material and thickness, or material and section, of an element.
void CheckProperties(const CheckedModel& model, Section elements, std::int32_t row,
                     MissingRows& missing, FindingList& list) {
  const korvex::ModelTables& tables = model.tables;
  const auto at = static_cast<std::size_t>(row);
  const auto check = [&](Section table, std::int32_t reference) {
    if (!IsRow(tables, table, reference)) {
      AddMissing(model, elements, row, table, reference, missing, list);
    }
  };
  if (elements != Section::Beams) {
    const korvex::ShellRowProperties& shell =
        elements == Section::Shells4 ? tables.Shell4Properties[at] : tables.Shell3Properties[at];
    check(Section::Materials, shell.material);
    check(Section::ShellThicknesses, shell.thickness);
    return;
  }
  const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[at];
  if (!korvex::HasSectionTable(ref.BeamSecType)) {
    Finding finding = MakeRowFinding("K113", model, elements, row);
    finding.message = DescribeElement(model, elements, row) +
                      ": BeamSecType = " + std::to_string(ref.BeamSecType) +
                      " does not exist; its displacements are not numbers, and the run stops.";
    finding.remedy = "Write BeamSecType=0 for a T section, 1 for an L section, 2 for a tube.";
    AddFinding(std::move(finding), list);
    return;
  }
  check(Section::Materials, tables.BeamProperties[at].material);
  check(SectionTableOf(ref.BeamSecType), ref.BeamSecIndex);
}

// The first node that occurs twice, or -1.
std::int32_t FindRepeated(const ElementNodes& element) {
  for (std::size_t k = 0; k < element.count; ++k) {
    for (std::size_t j = 0; j < k; ++j) {
      if (element.nodes[j] == element.nodes[k]) return element.nodes[k];
    }
  }
  return -1;
}

void NameRepeated(const CheckedModel& model, Section elements, std::int32_t row, std::int32_t node,
                  FindingList& list) {
  Finding finding = MakeRowFinding("K114", model, elements, row);
  finding.message = DescribeElement(model, elements, row) + ": has node " + std::to_string(node) +
                    " twice; results are wrong or not numbers.";
  finding.remedy = elements == Section::Shells4
                       ? "Write four different nodes; a triangle belongs into the table of "
                         "three-node shells (NELEM_S_3ND)."
                       : "Write different nodes, or remove the element.";
  AddFinding(std::move(finding), list);
}

// The state of an element from its nodes; names what is wrong with them.
ElementState CheckNodes(const CheckedModel& model, Section elements, std::int32_t row,
                        MissingRows& missing, FindingList& list) {
  const ElementNodes element = NodesOf(model.tables, elements, row);
  const bool isNamed = IsDoubtful(model, elements, row);
  ElementState state = ElementState::Sound;
  for (std::size_t k = 0; k < element.count; ++k) {
    const std::int32_t node = element.nodes[k];
    if (!IsRow(model.tables, Section::Nodes, node)) {
      if (!isNamed) AddMissing(model, elements, row, Section::Nodes, node, missing, list);
      state = ElementState::Unusable;
    } else if (IsDoubtful(model, Section::Nodes, node) && state == ElementState::Sound) {
      state = ElementState::Broken;
    }
  }
  const std::int32_t repeated = FindRepeated(element);
  if (repeated < 0 || state == ElementState::Unusable) return state;
  if (!isNamed) NameRepeated(model, elements, row, repeated, list);
  return ElementState::Unusable;  // one of its nodes was meant to be another
}

// Where a section's line is missing, a finding of the text says so.
void CheckAmounts(const CheckedModel& model, FindingList& list) {
  const auto isEmpty = [&](Section section) {
    return CountRows(model.tables, section) == 0 && model.titleLines[IndexOf(section)] > 0;
  };
  const bool noElements = std::all_of(ElementSections.begin(), ElementSections.end(), isEmpty);
  if (!isEmpty(Section::Nodes) && !noElements) return;
  const Section section = isEmpty(Section::Nodes) ? Section::Nodes : Section::Shells4;
  Finding finding = MakeFinding("K123");
  finding.line = model.titleLines[IndexOf(section)];
  finding.table = korvex::FormatOf(section).key;
  finding.message = std::string(section == Section::Nodes ? "The model has no nodes"
                                                          : "The model has no elements") +
                    "; there is nothing to solve.";
  finding.remedy = "Write the rows and their count, or look whether this is the right file.";
  AddFinding(std::move(finding), list);
}

}  // namespace

void CheckReferences(CheckedModel& model, FindingList& list) {
  CheckAmounts(model, list);
  MissingRows missing;
  for (const Section elements : ElementSections) {
    for (std::int32_t row = 0; row < CountRows(model.tables, elements); ++row) {
      ElementState& state = StateOf(model, elements, row);
      if (IsLost(model, elements, row)) state = ElementState::Unusable;
      if (state == ElementState::Unusable) continue;
      state = std::max(state, CheckNodes(model, elements, row, missing, list));
      if (!IsDoubtful(model, elements, row)) {
        CheckProperties(model, elements, row, missing, list);
      }
    }
  }
  for (auto& [key, finding] : missing.findings) AddFinding(std::move(finding), list);
}

}  // namespace kvx
