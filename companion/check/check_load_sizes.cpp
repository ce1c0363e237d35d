#include "check/check_load_sizes.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "check/describe.h"
#include "check/usual_modulus.h"

namespace kvx {

using korvex::Section;

namespace {

// A row of a load table by its size.
struct SizedRow {
  std::int32_t row = 0;
  std::int32_t target = 0;  // node or element
  double size = 0.0;        // above 0, finite
};

// A load table of elements: pressures or line loads.
struct LoadColumn {
  Section section = Section::Shell4Loads;
  Section target = Section::Shells4;
  const char* name = "";
  std::vector<SizedRow> rows;
};

// Adds the row by its largest value, unless another finding may name it.
template <typename Values>
void AddRow(const CheckedModel& model, std::int32_t row, std::int32_t target, const Values& values,
            LoadColumn& column) {
  if (IsDoubtful(model, column.section, row) || IsLost(model, column.section, row)) return;
  if (!IsRow(model.tables, column.target, target)) return;
  double size = 0.0;
  for (const double value : values) {
    if (!std::isfinite(value)) return;
    size = std::max(size, std::fabs(value));
  }
  if (size > 0.0) column.rows.push_back({row, target, size});
}

template <typename Loads>
LoadColumn CollectElementLoads(const CheckedModel& model, Section section, Section target,
                               const char* name, const Loads& loads) {
  LoadColumn column{section, target, name, {}};
  std::int32_t row = 0;
  for (const auto& load : loads) AddRow(model, row++, load.element, load.q, column);
  return column;
}

using NamedRows = std::unordered_set<std::int32_t>;

// One finding for a row, also where both comparisons name it.
void AddLoad(const CheckedModel& model, const LoadColumn& column, const SizedRow& load,
             const std::string& fault, NamedRows& named, FindingList& list) {
  if (!named.insert(load.row).second) return;
  Finding finding = MakeRowFinding("K410", model, column.section, load.row);
  const Finding target = MakeRowFinding("K410", model, column.target, load.target);
  finding.nodes = target.nodes;
  finding.hasPosition = target.hasPosition;
  finding.position = target.position;
  finding.message = std::string(column.name) + " on " +
                    DescribeElement(model, column.target, load.target) + ": " +
                    NumberText(load.size) + " is " + fault + "; the solver takes it as it is.";
  finding.remedy = "Look at the unit and the decimal point.";
  AddFinding(std::move(finding), list);
}

// Names the rows that are far larger than the usual ones.
void CompareWithTable(const CheckedModel& model, const LoadColumn& column, NamedRows& named,
                      FindingList& list) {
  if (column.rows.size() < FewestLoads) return;
  std::vector<double> sizes;
  for (const SizedRow& load : column.rows) sizes.push_back(load.size);
  const auto usual = sizes.begin() + static_cast<std::ptrdiff_t>(
                                         UsualShare * static_cast<double>(sizes.size() - 1));
  std::nth_element(sizes.begin(), usual, sizes.end());
  for (const SizedRow& load : column.rows) {
    if (!(load.size > OutOfLineLoad * *usual)) continue;
    AddLoad(model, column, load,
            NumberText(load.size / *usual) + " times the " + NumberText(*usual) +
                " that nearly all others of its table do not exceed",
            named, list);
  }
}

std::int32_t MaterialOf(const CheckedModel& model, Section section, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);
  return section == Section::Shells4 ? model.tables.Shell4Properties[at].material
                                     : model.tables.Shell3Properties[at].material;
}

// Names pressures that are large beside E. Skins that only carry a pressure to other elements may
// be soft: then the usual E counts.
void CompareWithModulus(const CheckedModel& model, const LoadColumn& column, double usual,
                        NamedRows& named, FindingList& list) {
  for (const SizedRow& load : column.rows) {
    const std::int32_t material = MaterialOf(model, column.target, load.target);
    if (!IsRow(model.tables, Section::Materials, material)) continue;
    if (IsDoubtful(model, Section::Materials, material)) continue;
    const double own = model.tables.Materials[static_cast<std::size_t>(material)].E;
    const double E = std::max(own, usual);
    if (!(E > 0.0) || !(load.size > LargestPressure * E)) continue;
    AddLoad(model, column, load, "more than 1/100 of E = " + NumberText(E) + ", no plate bears it",
            named, list);
  }
}

}  // namespace

void CheckLoadSizes(const CheckedModel& model, const TableUse& use, FindingList& list) {
  const korvex::ModelTables& tables = model.tables;
  NamedRows named;
  const double usual = FindUsualModulus(model, use);
  const LoadColumn onShells4 = CollectElementLoads(model, Section::Shell4Loads, Section::Shells4,
                                                   "pressure", tables.Shell4SurfaceLoads);
  const LoadColumn onShells3 = CollectElementLoads(model, Section::Shell3Loads, Section::Shells3,
                                                   "pressure", tables.Shell3SurfaceLoads);
  for (const LoadColumn* pressures : {&onShells4, &onShells3}) {
    named.clear();
    CompareWithModulus(model, *pressures, usual, named, list);
    CompareWithTable(model, *pressures, named, list);
  }
  named.clear();
  CompareWithTable(model,
                   CollectElementLoads(model, Section::BeamLoads, Section::Beams, "line load",
                                       tables.BeamLineLoads),
                   named, list);
}

}  // namespace kvx
