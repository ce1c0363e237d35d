#include "check/check_model.h"

#include "check/check_text.h"

namespace kvx {

void CheckModel(std::string_view text, const CheckOptions&, CheckReport& report) {
  CheckText(text, report.model, report.findings);
  SortFindings(report.findings);
}

}  // namespace kvx
