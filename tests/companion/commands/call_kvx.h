// The program called on a model as a user calls it, and its CSV read back.
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

// A CSV file without quoted fields.
struct CsvTable {
  std::vector<std::string> notes;  // without "# "
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;
};

CsvTable ReadCsv(const std::string& text);

// The field of a row as it stands there. The test fails where there is no such column.
std::string FieldOf(const CsvTable& table, std::size_t row, const std::string& column);

// The number there; NaN for an empty field.
double NumberAt(const CsvTable& table, std::size_t row, const std::string& column);

// The first row whose field is this text; the test fails where there is none, and 0 is returned.
std::size_t RowWhere(const CsvTable& table, const std::string& column, const std::string& text);

}  // namespace kvx::test
