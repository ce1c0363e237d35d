#include "check/check_model.h"

#include "check/check_mesh.h"
#include "check/parts.h"
#include "check/read_checked.h"

namespace kvx {

void CheckModel(std::string_view text, const CheckOptions& options, CheckReport& report) {
  ReadChecked(text, report.model);
  Parts parts;
  FindParts(report.model, parts);
  CheckMesh(parts, options.tolerance, report.model, report.findings);
  SortFindings(report.findings);
}

}  // namespace kvx
