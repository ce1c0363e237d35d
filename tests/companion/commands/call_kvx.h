// The program called on a model as a user calls it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/model_text.h"
#include "support/run_program.h"

namespace kvx::test {

// Runs "kvx COMMAND ." with the arguments in a folder that holds this model file, and these other
// files.
korvex::test::ProgramRun CallKvx(const std::string& modelText,
                                 const std::vector<std::string>& arguments,
                                 const std::map<std::string, std::string>& files = {});

// The same; the test fails unless the exit status is 0 and standard error is empty. Returns
// standard output.
std::string OutputOf(const korvex::test::ModelText& model,
                     const std::vector<std::string>& arguments);

}  // namespace kvx::test
