// Audits of models for tests.
#pragma once

#include <string>
#include <vector>

#include "commands/audit_report.h"
#include "support/expect_findings.h"
#include "support/model_text.h"

namespace kvx::test {

struct Audited {
  std::string text;  // of the model file
  SolvedModel solved;
  AuditReport report;
};

// Solves and audits a model as kvx audit does, without a folder.
Audited Audit(const korvex::test::ModelText& model, double yield = 0.0);

// The same with these displacements in place of a solution, as those of a file.
Audited AuditDisplacements(const korvex::test::ModelText& model, std::vector<double> displacements);

// Besides hints of other kinds this is the only finding. A line of 0 stands for that of the row.
void ExpectOnly(const Audited& audited, Expected expected, Severity severity);

// The finding of this code; one without a code where there is none.
Finding FindFinding(const AuditReport& report, const std::string& code);

// The 1-based line of a row in the text of a model: rows follow the line of their count.
int LineOfRow(const std::string& text, const std::string& table, int row);

}  // namespace kvx::test
