// What `kvx top` has found, and its three forms.
#pragma once

#include <string>
#include <vector>

#include "audit/maxima.h"
#include "commands/commands.h"
#include "tables/model_origin.h"

namespace kvx {

struct TopAnswer {
  std::vector<PeakList> lists;
  std::vector<std::string> missing;  // sentences: what was asked for and the model does not have
  std::vector<std::string> notes;    // sentences: what the numbers are
};

// The answer in the form that the command asks for. file: the name of the model file, any bytes;
// model: with the results from which the answer was made; origin: that of the model. The form of
// CSV and JSON is described in docs/companion.md.
std::string TopOutput(const TopCommand& command, const std::string& file,
                      const korvex::Model& model, const ModelOrigin& origin,
                      const TopAnswer& answer);

}  // namespace kvx
