// The audits of several models as one table: a row with loads, support forces, balance, largest
// displacements and verdict for each.
#pragma once

#include <string>

#include "commands/audit_report.h"
#include "commands/result_table.h"

namespace kvx {

// Without rows. item: the name of the first column, "model" or "case".
ResultTable MakeAuditTable(const std::string& item);

// name: what stands in the first column. verdict: in the last one. report: null where nothing has
// been solved: then all between is empty.
void AddAuditRow(const std::string& name, const AuditReport* report, const std::string& verdict,
                 ResultTable& table);

}  // namespace kvx
