// Fuzz target of the reader: any bytes as the text of a model file.
//
// The reader must fill the model or throw a Stop; a crash or another exception is an error.
#include <string>

#include "fuzz_target.h"
#include "model/read_input_file.h"
#include "report/stop.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  korvex::Model model;
  try {
    korvex::ReadInputText(std::string(data, data + size), model);
  } catch (const korvex::Stop&) {  // a correct end for a wrong file
  }
  return 0;
}
