// Which losses of an import are the gravest: for the order of the list that a reader may not read
// to its end.
#pragma once

#include "mesh/import_report.h"

namespace kvx {

// In the order in which they are shown.
enum class LossRank {
  Joint,      // what holds the structure together: rigid elements, equations, springs, contact
  Structure,  // elements, stiffness, supports
  Load,
  Unknown,  // may be any of them
  Mass,     // carries weight alone
};

// entry: of Fate::Lost.
LossRank RankLoss(const ReportEntry& entry);

}  // namespace kvx
