// Envelopes over load cases as CSV files for spreadsheets, and as short lists for a terminal.
//
// In the files every item has two rows for each of its components, one for the smallest and one for
// the largest value: the item and its place, the component, "smallest" or "largest", the value, the
// name of the case, and all components of the item in that case. So a filter on the component and
// the extreme leaves one row for each item. The signs and frames stand in lines that begin with
// "# ". Fields of what does not exist are empty, rows of it are left out.
#pragma once

#include <string>
#include <vector>

#include "cases/case_envelopes.h"
#include "commands/result_table.h"
#include "tables/model_origin.h"

namespace kvx {

// What is shown. caseNames: by the numbers that AddCaseValues got.
struct EnvelopeView {
  const EnvelopeItems& items;
  const CaseEnvelopes& envelopes;
  const std::vector<std::string>& caseNames;
  const ModelOrigin* origin = nullptr;  // of the structure; null: it was not imported
};

// "displacements.csv", "reactions.csv", "beam_forces.csv", "beam_stresses.csv", "shell_forces.csv",
// "shell_stresses.csv", in the order of EnvelopeKind.
const char* EnvelopeFileName(EnvelopeKind kind);

// Writes one file, or replaces it. A kind without items has a file without rows, so that none of an
// earlier model is left. folder: as it precedes file names; empty, or ends with a slash.
// Throws a Stop where the file cannot be written whole, Interrupted after an interrupt.
void WriteEnvelopeFile(const std::string& folder, EnvelopeKind kind, const EnvelopeView& view);

// The governing values of the whole structure: for each kind that has items a table with the
// smallest and the largest value of each component, its item, its case and what occurs with it; of
// stresses the one that counts. For people: rounding beside the largest of a kind is 0 and has
// neither place nor case.
void MakeEnvelopeTables(const EnvelopeView& view, std::vector<ResultTable>& tables);

}  // namespace kvx
