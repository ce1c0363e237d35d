// The files of a model's folder under new numbers: what is written, what goes, what stays.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "commands/moved_file.h"
#include "commands/number_map.h"
#include "commands/numbered_model.h"
#include "commands/renumber_report.h"

namespace kvx {

// New numbers for a model, before anything is written. The current folder is that of the model.
struct Renumbering {
  std::vector<std::int32_t> order;  // [NPOIN] the row of now for each new row
  NumberMap map;                    // of the new numbers; not used where they are the first ones
  bool isUndo = false;              // the new numbers are the first ones: the map goes
};

// Makes the new text of all files and fills the report's lists. The model's file is the last one;
// the map is not among them. model: gets the new numbers. Throws a Stop where a file that has
// numbers of nodes cannot get the new ones.
void PlanFiles(const Renumbering& renumbering, NumberedModel& model, std::vector<MovedFile>& files,
               RenumberReport& report);

// Writes the files, and the map; all of them get their names together. With isUndo, results that
// fit the model before are written in the new numbers with them, and the map is removed; else they
// are removed. Throws a Stop where a file cannot be written or removed, and Interrupted.
void WriteFiles(const Renumbering& renumbering, const NumberedModel& model,
                const std::vector<MovedFile>& files, const RenumberReport& report);

}  // namespace kvx
