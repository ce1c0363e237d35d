// Fuzz target of the checks: any bytes as the text of a model file. They must come to an end, and
// where they have no error, the solver must read what they have read.
#include <cstdlib>
#include <string>
#include <string_view>

#include "commands/check_model.h"
#include "deck/read_tables.h"
#include "deck/write_tables.h"
#include "fuzz_target.h"
#include "report/stop.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  kvx::CheckReport report;
  kvx::CheckModel(text, {}, report);
  if (kvx::CountFindings(report.findings, kvx::Severity::Error) > 0) return 0;
  korvex::ModelTables tables;
  try {
    korvex::ReadTables(text, {}, tables);
  } catch (const korvex::Stop&) {
    std::abort();
  }
  if (korvex::WriteTables(tables) != korvex::WriteTables(report.model.tables)) std::abort();
  return 0;
}
