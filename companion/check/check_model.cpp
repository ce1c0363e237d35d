#include "check/check_model.h"

#include "check/check_beams.h"
#include "check/check_doubled_elements.h"
#include "check/check_far_nodes.h"
#include "check/check_numbers.h"
#include "check/check_outliers.h"
#include "check/check_properties.h"
#include "check/check_references.h"
#include "check/check_sections.h"
#include "check/check_shells.h"
#include "check/check_support_stiffness.h"
#include "check/check_units.h"
#include "check/element_sizes.h"
#include "check/read_checked.h"
#include "check/table_rows.h"

namespace kvx {

namespace {

// A node far away comes before the shapes of elements: it spoils those of all its elements.
void CheckElements(const TableUse& use, CheckedModel& model, FindingList& list) {
  CheckNumbers(use, model, list);
  CheckReferences(model, list);
  CheckFarNodes(model, list);
  CheckMaterials(use, model, list);
  CheckThicknesses(use, model, list);
  CheckSections(use, model, list);
  CheckBeams(model, list);
  CheckShells(model, list);
  CheckDoubledElements(model, list);
}

void CheckPlausibility(const TableUse& use, CheckedModel& model, FindingList& list) {
  ElementSizes sizes;
  MeasureElements(model, sizes);
  CheckThicknessOutliers(use, sizes, model, list);
  CheckSectionOutliers(use, sizes, model, list);
  CheckUnits(use, sizes, model, list);
  CheckSupportStiffness(model, list);
}

}  // namespace

void CheckModel(std::string_view text, const CheckOptions&, CheckReport& report) {
  CheckedModel& model = report.model;
  ReadChecked(text, model);
  TableUse use;
  CountUse(model, use);
  CheckElements(use, model, report.findings);
  CheckPlausibility(use, model, report.findings);
  SortFindings(report.findings);
}

}  // namespace kvx
