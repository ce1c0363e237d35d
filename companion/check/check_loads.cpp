#include "check/check_loads.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "check/describe.h"
#include "check/unknown_rows.h"
#include "deck/row_formats.h"
#include "tables/node_box.h"
#include "tables/prescribed_displacements.h"

namespace kvx {

using korvex::NodalForce;
using korvex::Section;

namespace {

constexpr std::array<Section, 4> LoadSections{Section::Forces, Section::Shell4Loads,
                                              Section::Shell3Loads, Section::BeamLoads};

// A load row in one form for all four tables: what it acts on, and its values.
struct LoadRow {
  std::int32_t target = 0;  // node or element
  std::array<double, 6> values{};
  std::size_t count = 0;  // of values
};

template <typename Load>
LoadRow RowOfElementLoad(const Load& load) {
  LoadRow row;
  row.target = load.element;
  row.count = load.q.size();
  std::copy(load.q.begin(), load.q.end(), row.values.begin());
  return row;
}

LoadRow FetchRow(const CheckedModel& model, Section section, std::int32_t row) {
  const korvex::ModelTables& tables = model.tables;
  const auto at = static_cast<std::size_t>(row);
  switch (section) {
    case Section::Forces:
      return {tables.NodalForces[at].node, tables.NodalForces[at].components, 6};
    case Section::Shell4Loads:
      return RowOfElementLoad(tables.Shell4SurfaceLoads[at]);
    case Section::Shell3Loads:
      return RowOfElementLoad(tables.Shell3SurfaceLoads[at]);
    default:
      return RowOfElementLoad(tables.BeamLineLoads[at]);
  }
}

// The table that the rows of a load table refer to.
Section TargetOf(Section section) {
  switch (section) {
    case Section::Forces:
      return Section::Nodes;
    case Section::Shell4Loads:
      return Section::Shells4;
    case Section::Shell3Loads:
      return Section::Shells3;
    default:
      return Section::Beams;
  }
}

const char* NameOf(Section section) {
  switch (section) {
    case Section::Forces:
      return "force";
    case Section::BeamLoads:
      return "line load";
    default:
      return "pressure";
  }
}

// "force on node 7 at (0, 0, 1)"
std::string DescribeLoad(const CheckedModel& model, Section section, const LoadRow& load) {
  const std::string name = std::string(NameOf(section)) + " on ";
  if (section == Section::Forces) return name + DescribeNode(model, load.target);
  return name + DescribeElement(model, TargetOf(section), load.target);
}

// A finding about a load whose target exists.
Finding MakeLoadFinding(const char* code, const CheckedModel& model, Section section,
                        std::int32_t row, const LoadRow& load) {
  Finding finding = MakeRowFinding(code, model, section, row);
  const Finding target = MakeRowFinding(code, model, TargetOf(section), load.target);
  finding.nodes = target.nodes;
  finding.hasPosition = target.hasPosition;
  finding.position = target.position;
  return finding;
}

bool IsZero(const LoadRow& load) {
  return std::all_of(load.values.begin(), load.values.end(), [](double v) { return v == 0.0; });
}

bool IsFinite(const LoadRow& load) {
  return std::all_of(load.values.begin(), load.values.end(),
                     [](double v) { return std::isfinite(v); });
}

// K401.
void ReportReference(const CheckedModel& model, Section section, std::int32_t row,
                     const LoadRow& load, FindingList& findings) {
  Finding finding = MakeRowFinding("K401", model, section, row);
  const char* rows = korvex::FormatOf(TargetOf(section)).rows;
  const std::int32_t count = CountRows(model.tables, TargetOf(section));
  finding.message = std::string(NameOf(section)) + " row " + std::to_string(row) + ": " +
                    (section == Section::Forces ? "node " : "element ") +
                    std::to_string(load.target) + " does not exist; there are " +
                    std::to_string(count) + " " + rows;
  if (count > 0) finding.message += ", 0 .. " + std::to_string(count - 1);
  finding.message += "; the run stops.";
  finding.remedy =
      section == Section::Forces
          ? "Correct the node number (nodes are counted from 0), or remove the row."
          : "Correct the element number (elements of each kind are counted from 0), or "
            "remove the row.";
  AddFinding(std::move(finding), findings);
}

// K404. Returns whether the values are those of a load; one that is not a number has been named
// (K122).
bool CheckValues(const CheckedModel& model, Section section, std::int32_t row, const LoadRow& load,
                 FindingList& findings) {
  if (!IsFinite(load)) return false;
  if (!IsZero(load)) return true;
  Finding finding = MakeLoadFinding("K404", model, section, row, load);
  finding.message = DescribeLoad(model, section, load) + ": all its values are 0.";
  finding.remedy = "Enter the load, or remove the row.";
  AddFinding(std::move(finding), findings);
  return false;
}

// K403. rows: those with values. Only equal rows are named: different ones are meant to add up.
void CheckDoubledRows(const CheckedModel& model, Section section, std::vector<std::int32_t> rows,
                      FindingList& findings) {
  const auto isLess = [&](std::int32_t a, std::int32_t b) {
    const LoadRow x = FetchRow(model, section, a), y = FetchRow(model, section, b);
    if (x.target != y.target) return x.target < y.target;
    return x.values < y.values;
  };
  std::stable_sort(rows.begin(), rows.end(), isLess);
  std::vector<std::array<std::int32_t, 2>> pairs;  // the later row, and the first like it
  for (std::size_t first = 0, k = 1; k < rows.size(); ++k) {
    if (isLess(rows[first], rows[k])) {
      first = k;
    } else {
      pairs.push_back({rows[k], rows[first]});
    }
  }
  std::sort(pairs.begin(), pairs.end());
  for (const auto& [row, earlier] : pairs) {
    const LoadRow load = FetchRow(model, section, row);
    Finding finding = MakeLoadFinding("K403", model, section, row, load);
    finding.rows = {earlier, row};
    finding.message = DescribeLoad(model, section, load) + ": the same row stands at line " +
                      std::to_string(LineOf(model, section, earlier)) + "; both loads act.";
    finding.remedy = "Remove one of them if the load was meant once.";
    AddFinding(std::move(finding), findings);
  }
}

// K402: the nodes of no element move freely, unless all their dofs are fixed.
bool CheckConnection(const CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                     std::int32_t row, const LoadRow& load, FindingList& findings) {
  const auto node = static_cast<std::size_t>(load.target);
  if (parts.partOfNode[node] >= 0 || dofs.fixed[node] == AllDofs) return true;
  Finding finding = MakeLoadFinding("K402", model, Section::Forces, row, load);
  finding.message = DescribeLoad(model, Section::Forces, load) +
                    ": no element has this node; its displacements are infinite or NaN, and the "
                    "load reaches nothing.";
  finding.remedy = "Load the node that was meant, or connect this node with an element.";
  AddFinding(std::move(finding), findings);
  return false;
}

std::string NameValue(std::size_t dof, const LoadRow& load) {
  return std::string(ForceNames[dof]) + " = " + NumberText(load.values[dof]);
}

// K405: without its support, the force is a force.
void ReportMissingSupport(const CheckedModel& model, std::int32_t row, const LoadRow& load,
                          std::size_t dof, FindingList& findings) {
  Finding finding = MakeLoadFinding("K405", model, Section::Forces, row, load);
  finding.message = DescribeLoad(model, Section::Forces, load) + ": " + NameValue(dof, load) +
                    " looks like the prescribed " + (dof < 3 ? "displacement " : "rotation ") +
                    NumberText(load.values[dof] / Penalty) + ", but " + DofNames[dof] +
                    " is not fixed there; it acts as a force, and the results are meaningless.";
  finding.remedy = std::string("Fix ") + DofNames[dof] + " of this node, or correct the force.";
  AddFinding(std::move(finding), findings);
}

// K406. A displacement larger than the model, or a turn beyond 1, was hardly meant.
void ReportPrescribed(const CheckedModel& model, std::int32_t row, const LoadRow& load,
                      std::size_t dof, double extent, FindingList& findings) {
  const double value = load.values[dof] / Penalty;
  const double largest = dof < 3 ? extent : 1.0;
  Finding finding = MakeLoadFinding("K406", model, Section::Forces, row, load);
  finding.message = DescribeLoad(model, Section::Forces, load) + ": prescribes " + DofNames[dof] +
                    " = " + NumberText(value) + " (" + NameValue(dof, load) + " over 1e20)";
  if (std::abs(value) > largest) {
    finding.severity = Severity::Warning;
    finding.message +=
        dof < 3 ? ", which is more than the size of the model" : ", a rotation that is not small";
    finding.remedy = "Write the force 1e20 times the displacement that is meant.";
  }
  finding.message += ".";
  AddFinding(std::move(finding), findings);
}

// K408.
void ReportIdle(const CheckedModel& model, std::int32_t row, const LoadRow& load, std::size_t dof,
                bool isPrescribed, FindingList& findings) {
  Finding finding = MakeLoadFinding("K408", model, Section::Forces, row, load);
  finding.message =
      DescribeLoad(model, Section::Forces, load) + ": " + NameValue(dof, load) + " acts on " +
      DofNames[dof] + ", which " +
      (isPrescribed ? "has a prescribed displacement; beside 1e20 times that it is lost."
                    : "is fixed; it goes into the support and has no effect on the structure.");
  finding.remedy = "Remove it, load another node, or release the support if it was not meant.";
  AddFinding(std::move(finding), findings);
}

// Bit d: another row or this one prescribes dof d of the node. [NPOIN]
using Prescribed = std::vector<std::uint8_t>;

Prescribed CollectPrescribed(const CheckedModel& model, const FixedDofs& dofs, double extent) {
  Prescribed prescribed(model.tables.Nodes.size(), 0);
  for (const NodalForce& force : model.tables.NodalForces) {
    if (!IsNode(model, force.node)) continue;
    const auto node = static_cast<std::size_t>(force.node);
    for (std::size_t d = 0; d < 6; ++d) {
      if (!IsFixed(dofs.fixed[node], d) || !IsPrescribing(d, force.components[d], extent)) continue;
      prescribed[node] = static_cast<std::uint8_t>(prescribed[node] | 1U << d);
    }
  }
  return prescribed;
}

// K405, K406, K408: each component against the support of its dof.
void CheckComponents(const CheckedModel& model, const FixedDofs& dofs, const Prescribed& prescribed,
                     double extent, std::int32_t row, const LoadRow& load, FindingList& findings) {
  const auto node = static_cast<std::size_t>(load.target);
  for (std::size_t d = 0; d < 6; ++d) {
    const bool isLarge = IsPrescribing(d, load.values[d], extent);
    if (load.values[d] == 0.0) continue;
    if (!IsFixed(dofs.fixed[node], d)) {
      if (isLarge) ReportMissingSupport(model, row, load, d, findings);
    } else if (isLarge) {
      ReportPrescribed(model, row, load, d, extent, findings);
    } else {
      ReportIdle(model, row, load, d, IsFixed(prescribed[node], d), findings);
    }
  }
}

// Checks the rows of one table. Returns how many of them load something.
std::size_t CheckTable(const CheckedModel& model, Section section,
                       std::vector<std::int32_t>& loaded, FindingList& findings) {
  const std::int32_t count = CountRows(model.tables, section);
  const std::int32_t targets = CountRows(model.tables, TargetOf(section));
  std::size_t loads = 0;
  for (std::int32_t row = 0; row < count; ++row) {
    if (IsDoubtful(model, section, row) || IsLost(model, section, row)) {
      ++loads;  // as meant
      continue;
    }
    const LoadRow load = FetchRow(model, section, row);
    if (load.target < 0 || load.target >= targets) {
      ++loads;
      if (!HasLostRows(model, TargetOf(section))) {
        ReportReference(model, section, row, load, findings);
      }
    } else if (CheckValues(model, section, row, load, findings)) {
      ++loads;
      loaded.push_back(row);
    } else if (!IsFinite(load)) {
      ++loads;
    }
  }
  CheckDoubledRows(model, section, loaded, findings);
  return loads;
}

// K407. After a slip of the text, it is not known which loads were meant.
void CheckAnyLoads(const CheckedModel& model, std::size_t loads, FindingList& findings) {
  const bool unknown = std::any_of(LoadSections.begin(), LoadSections.end(),
                                   [&](Section section) { return HasLostRows(model, section); });
  if (loads > 0 || unknown) return;
  Finding finding = MakeFinding("K407");
  finding.line = model.titleLines[IndexOf(Section::Forces)];
  finding.table = korvex::FormatOf(Section::Forces).key;
  finding.message = "the model has no loads other than 0; all displacements and stresses are 0.";
  finding.remedy = "Enter forces, pressures or line loads.";
  AddFinding(std::move(finding), findings);
}

void CheckForces(const CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                 const std::vector<std::int32_t>& rows, FindingList& findings) {
  const bool knowsElements = !HasUnknownElements(model);
  const bool knowsSupports = !HasLostRows(model, Section::Restraints);
  const double extent = MeasureNodeBox(model.tables).diagonal;
  const Prescribed prescribed = CollectPrescribed(model, dofs, extent);
  for (const std::int32_t row : rows) {
    const LoadRow load = FetchRow(model, Section::Forces, row);
    if (!knowsSupports) continue;
    if (knowsElements && !CheckConnection(model, parts, dofs, row, load, findings)) continue;
    CheckComponents(model, dofs, prescribed, extent, row, load, findings);
  }
}

}  // namespace

void CheckLoads(const CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                FindingList& findings) {
  std::size_t loads = 0;
  for (const Section section : LoadSections) {
    std::vector<std::int32_t> loaded;
    loads += CheckTable(model, section, loaded, findings);
    if (section == Section::Forces) CheckForces(model, parts, dofs, loaded, findings);
  }
  CheckAnyLoads(model, loads, findings);
}

}  // namespace kvx
