#include "check/check_model.h"

#include "check/read_checked.h"

namespace kvx {

void CheckModel(std::string_view text, const CheckOptions&, CheckReport& report) {
  ReadChecked(text, report.model);
  SortFindings(report.findings);
}

}  // namespace kvx
