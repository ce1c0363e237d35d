// Output of a result file.
//
// A file is head lines and rows, each of which can be written without the others: several threads
// make the text of rows piece by piece, and the caller's thread writes it in order. Text is
// collected (result_text.h) and written in large blocks; CloseResultFile writes the last block.
#pragma once

#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "results/result_text.h"

namespace korvex {

struct ResultFile {
  std::string name;
  int threads = 1;
  std::ofstream stream;
  ResultText text;                 // collected, not yet written to the stream
  std::vector<ResultText> pieces;  // [CountPlaces(threads)] text of rows on its way into `text`
};

// Opens the file for writing and truncates it. Throws a Stop of the kind ResultFile with the text
// `failure` where it cannot be opened, and a notice, before that, where the memory is too small for
// a block and the pieces of one thread.
// threads: that make the text of rows; fewer where memory has no room for them.
void OpenResultFile(const std::string& name, const char* failure, ResultFile& file,
                    int threads = 1);

// Writes the last block and closes the file. Returns false if the file could not be written
// completely.
bool CloseResultFile(ResultFile& file);

// Adds a row to the text of others. With several threads it is called by all of them at once.
using AddRow = std::function<void(std::int64_t row, ResultText& text)>;

// Adds the rows 0 .. count - 1.
// rowSize: the usual number of characters of a row, by which the size of pieces is chosen.
void AddRows(ResultFile& file, std::int64_t count, std::int64_t rowSize, const AddRow& addRow);

}  // namespace korvex
