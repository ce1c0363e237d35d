// The lists of `kvx top` as tables and sentences.
#pragma once

#include <string>

#include "audit/maxima.h"
#include "commands/result_table.h"
#include "tables/model_origin.h"

namespace kvx {

// A list with what its rows are made from.
struct ShownPeaks {
  const korvex::Model& model;
  const PeakList& list;
  double yield = 0.0;                      // yield stress; 0: none is given
  BeamPlace beams = BeamPlace::MidLength;  // where detail models were looked at
  const ModelOrigin& origin;               // of the model, where it was imported
};

// "thickness 0", "material 1", "section T 0", "part 2"; empty for the whole model.
std::string GroupName(const PeakList& list);

// The columns that say something of this list, with a title, for people.
ResultTable MakeShortPeakTable(const ShownPeaks& shown);

// The names of all columns.
std::vector<std::string> ListPeakColumns();

// All columns, the same for every list, for programs. Cells that do not exist are empty.
ResultTable MakePeakTable(const ShownPeaks& shown);

// Where the first values are that are not finite.
ResultTable MakeNotFiniteTable(const ShownPeaks& shown);

// Of an imported model with the deck's name of the group: "(10, PSHELL 4)".
// "Shells of thickness 0 (10): von Mises stress, upper or lower face. The 20 highest of 1008."
std::string PeakTitle(const ShownPeaks& shown);

// "37 of 1008 shells exceed 235.", "None of 16 detail models at mid-length exceeds 235."; empty
// without a yield stress.
std::string YieldSentence(const ShownPeaks& shown);

// Which values are not finite: how many, and the first of them; empty if all are.
std::string NotFiniteSentence(const ShownPeaks& shown);

}  // namespace kvx
