// Fuzz target of the reader: any bytes as the text of a model file.
#include <string>

#include "fuzz_target.h"
#include "model/read_input_file.h"
#include "report/stop.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  korvex::Model model;
  try {
    korvex::ReadInputText(std::string(data, data + size), model);
  } catch (const korvex::Stop&) {  // a notice is an answer
  }
  return 0;
}
