// The model that `kvx renumber` works on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "commands/load_model.h"
#include "commands/moved_file.h"
#include "deck/model_tables.h"
#include "renumber/node_graph.h"

namespace kvx {

struct NumberedModel {
  LoadedModel file;
  korvex::ModelTables tables;
  std::size_t end = 0;  // where the last row of the file ends, bytes
  NodeGraph graph;
  std::vector<std::string> notes;  // sentences for the user
};

// model: its file is loaded, the current folder is that of the file. Fills the rest. Throws a Stop
// with the remedy where the model cannot get new numbers: it is a link, kvx cases has made it, or
// the solver does not read all of it as it is written.
void ReadNumbered(NumberedModel& model);

// The model file with its nodes in this order. order: the row of now for each new row. Moves the
// model's tables, too.
MovedFile MoveModel(const std::vector<std::int32_t>& order, NumberedModel& model);

}  // namespace kvx
