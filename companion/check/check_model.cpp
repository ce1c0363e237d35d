#include "check/check_model.h"

#include "check/check_loads.h"
#include "check/check_restraints.h"
#include "check/check_rigid_motions.h"
#include "check/fixed_dofs.h"
#include "check/parts.h"
#include "check/read_checked.h"

namespace kvx {

namespace {

void CheckSupportsAndLoads(CheckedModel& model, FindingList& findings) {
  Parts parts;
  FindParts(model, parts);
  FixedDofs dofs;
  CollectFixedDofs(model, dofs);
  std::vector<char> partsOnOddFlags;
  CheckRigidMotions(model, parts, dofs, partsOnOddFlags, findings);
  CheckRestraints(model, parts, dofs, partsOnOddFlags, findings);
  CheckLoads(model, parts, dofs, findings);
}

}  // namespace

void CheckModel(std::string_view text, const CheckOptions&, CheckReport& report) {
  ReadChecked(text, report.model);
  CheckSupportsAndLoads(report.model, report.findings);
  SortFindings(report.findings);
}

}  // namespace kvx
