// Keeps the model files that tests solve, so that other programs can solve them for comparison.
#pragma once

#include <string>

namespace korvex::test {

// Adds `text`, a model file, as NAME-1.txt, NAME-2.txt and so on to the folder that the environment
// variable KORVEX_KEEP_MODELS names; does nothing without it.
void KeepModel(const std::string& name, const std::string& text);

}  // namespace korvex::test
