#include "check/check_outliers.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "check/describe.h"
#include "check/find_outlier.h"

namespace kvx {

using korvex::Section;

namespace {

// A size of the rows of one table: only rows that elements use, with a value above 0.
struct Column {
  Section section = Section::ShellThicknesses;
  const char* name = "";
  std::vector<std::int32_t> rows;
  std::vector<double> values;
};

void AddValue(const CheckedModel& model, const TableUse& use, std::int32_t row, double value,
              Column& column) {
  if (!(value > 0.0) || UsesOf(use, column.section, row) == 0) return;
  if (IsDoubtful(model, column.section, row)) return;
  column.rows.push_back(row);
  column.values.push_back(value);
}

void AddOutlier(const char* code, const Column& column, std::int32_t row, double value,
                const std::string& fault, const TableUse& use, CheckedModel& model,
                FindingList& list, bool isHopeless = false) {
  Finding finding = MakeTableFinding(code, model, use, column.section, row);
  if (isHopeless) finding.severity = Severity::Error;
  finding.message = DescribeRow(use, column.section, row) + ": " + column.name + " = " +
                    NumberText(value) + " " + fault + ".";
  finding.remedy = "Look at the unit and the decimal point.";
  AddFinding(std::move(finding), list);
  MarkNamed(model, column.section, row);
}

std::string OutlierText(const Outlier& outlier) {
  return "is " + NumberText(outlier.factor) + " times too " +
         (outlier.isTooLarge ? "large" : "small") + " beside the others of its table";
}

// So many times beyond the bound of a warning, a stiffness goes beyond that of the supports, and
// the displacements mean nothing or are NaN: an error.
constexpr double Hopeless = 1000.0;

// Compares the column's values with the elements that use them.
void CompareWithElements(const char* code, const Column& column,
                         const std::vector<SizeRange>& ranges, double largestShare,
                         double smallestShare, const char* elements, const TableUse& use,
                         CheckedModel& model, FindingList& list) {
  for (std::size_t k = 0; k < column.rows.size(); ++k) {
    const SizeRange& range = ranges[static_cast<std::size_t>(column.rows[k])];
    if (range.largest == 0.0 || IsDoubtful(model, column.section, column.rows[k])) continue;
    const double value = column.values[k];
    if (value > largestShare * range.largest) {
      AddOutlier(code, column, column.rows[k], value,
                 "is large beside its " + std::string(elements) + ", of which the largest has " +
                     NumberText(range.largest),
                 use, model, list, value > Hopeless * largestShare * range.largest);
    } else if (value < smallestShare * range.smallest) {
      AddOutlier(code, column, column.rows[k], value,
                 "is small beside its " + std::string(elements) + ", of which the smallest has " +
                     NumberText(range.smallest),
                 use, model, list);
    }
  }
}

Column ThicknessColumn(const CheckedModel& model, const TableUse& use) {
  Column column;
  column.name = "TK";
  std::int32_t row = 0;
  for (const korvex::ShellThickness& thickness : model.tables.ShellThicknesses) {
    AddValue(model, use, row++, thickness.TK, column);
  }
  return column;
}

// The columns of a table of T or L sections, or of tubes. Proportions are those of a size to its
// partner: height to thickness, width to thickness, radius to wall.
struct SectionColumns {
  std::vector<Column> columns;
  std::vector<std::size_t> partner;  // the index of the column that it makes proportions with
};

SectionColumns ColumnsOf(const CheckedModel& model, const TableUse& use, Section section) {
  SectionColumns all;
  if (section == Section::CBeamSections) {
    all.columns = {{section, "R", {}, {}}, {section, "T", {}, {}}};
    all.partner = {1, 0};
    std::int32_t row = 0;
    for (const korvex::CBeamSection& s : model.tables.CBeamSections) {
      AddValue(model, use, row, s.R, all.columns[0]);
      AddValue(model, use, row++, s.T, all.columns[1]);
    }
    return all;
  }
  all.columns = {{section, "Hw", {}, {}},
                 {section, "Tw", {}, {}},
                 {section, "Bf", {}, {}},
                 {section, "Tf", {}, {}}};
  all.partner = {1, 0, 3, 2};
  std::int32_t row = 0;
  for (const korvex::BeamSection& s : section == Section::TBeamSections
                                          ? model.tables.TBeamSections
                                          : model.tables.LBeamSections) {
    AddValue(model, use, row, s.Hw, all.columns[0]);
    AddValue(model, use, row, s.Tw, all.columns[1]);
    AddValue(model, use, row, s.Bf, all.columns[2]);
    AddValue(model, use, row++, s.Tf, all.columns[3]);
  }
  return all;
}

// Whether the outlier's proportions are out of line with those of all other rows.
bool HasOddProportion(const Column& column, const Column& partner, const Outlier& outlier) {
  if (partner.rows != column.rows) return false;
  double nearest = 0.0;  // to the outlier's, over or below 1 as the outlier is
  const auto proportion = [&](std::size_t k) { return column.values[k] / partner.values[k]; };
  for (std::size_t k = 0; k < column.values.size(); ++k) {
    if (k == outlier.index) continue;
    const double ratio = proportion(outlier.index) / proportion(k);
    const double gap = outlier.isTooLarge ? ratio : 1.0 / ratio;
    nearest = nearest == 0.0 ? gap : std::min(nearest, gap);
  }
  return nearest >= ProportionGap;
}

// Names sections of which one plate is thin beyond reason: one size in m, the others in mm.
void CheckProportions(const SectionColumns& all, const TableUse& use, CheckedModel& model,
                      FindingList& list) {
  for (std::size_t c = 0; c < all.columns.size(); c += 2) {
    const Column& wide = all.columns[c];
    const Column& thin = all.columns[c + 1];
    if (wide.rows != thin.rows) continue;  // some are not positive, which is named
    for (std::size_t k = 0; k < wide.rows.size(); ++k) {
      if (IsDoubtful(model, wide.section, wide.rows[k])) continue;
      const double share = thin.values[k] / wide.values[k];
      if (!(share < ThinnestWall)) continue;
      AddOutlier("K602", thin, wide.rows[k], thin.values[k],
                 "is " + NumberText(1.0 / share) + " times smaller than " + wide.name + " = " +
                     NumberText(wide.values[k]) + ", no plate is so thin",
                 use, model, list);
    }
  }
}

}  // namespace

void CheckThicknessOutliers(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                            FindingList& list) {
  const Column column = ThicknessColumn(model, use);
  const Outlier outlier = FindOutlier(column.values);
  if (outlier.factor > 0.0) {
    const std::int32_t row = column.rows[outlier.index];
    const double value = column.values[outlier.index];
    const SizeRange& range = sizes.thicknesses[static_cast<std::size_t>(row)];
    // A factor of 10 is a usual step between plates, unless the elements say the same.
    const bool isUsual =
        outlier.factor == 10.0 && value < 0.5 * range.largest && value > 0.01 * range.smallest;
    if (!isUsual) AddOutlier("K601", column, row, value, OutlierText(outlier), use, model, list);
  }
  CompareWithElements("K601", column, sizes.thicknesses, ThickestShare, ThinnestShare, "elements",
                      use, model, list);
}

void CheckSectionOutliers(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                          FindingList& list) {
  for (std::int32_t type = 0; type < 3; ++type) {
    const SectionColumns all = ColumnsOf(model, use, SectionTableOf(type));
    for (std::size_t c = 0; c < all.columns.size(); ++c) {
      const Column& column = all.columns[c];
      const Outlier outlier = FindOutlier(column.values);
      if (outlier.factor == 0.0) continue;
      const std::int32_t row = column.rows[outlier.index];
      if (IsDoubtful(model, column.section, row)) continue;
      if (outlier.factor == 10.0 &&
          !HasOddProportion(column, all.columns[all.partner[c]], outlier)) {
        continue;
      }
      AddOutlier("K602", column, row, column.values[outlier.index], OutlierText(outlier), use,
                 model, list);
    }
    CheckProportions(all, use, model, list);
    const double heights = type == korvex::BeamSecTypeC ? 2.0 : 1.0;  // a tube has two radii
    CompareWithElements("K602", all.columns[0], sizes.sections[static_cast<std::size_t>(type)],
                        DeepestShare, SlimmestShare / heights, "beams", use, model, list);
  }
}

}  // namespace kvx
