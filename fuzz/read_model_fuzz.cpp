// Fuzz target of the reader and the writer: any bytes as the text of a model file. What is read to
// the end and written must read back as the same tables.
#include <cstdlib>
#include <string>

#include "deck/read_tables.h"
#include "deck/write_tables.h"
#include "fuzz_target.h"
#include "model/read_input_file.h"
#include "report/stop.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  korvex::Model model;
  try {
    korvex::ReadInputText({reinterpret_cast<const char*>(data), size}, model);
  } catch (const korvex::Stop&) {  // a correct end for a wrong file
    return 0;
  }
  const std::string written = korvex::WriteTables(model.Tables);
  korvex::ModelTables read;
  try {
    korvex::ReadTables(written, {}, read);
  } catch (const korvex::Stop&) {
    std::abort();
  }
  if (korvex::WriteTables(read) != written) std::abort();
  return 0;
}
