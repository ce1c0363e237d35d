// Output of a result file: the same text as that of a stream in its default notation, but faster.
//
// Numbers have six significant digits (number_text.h). A file is head lines and rows, each of which
// can be written without the others: several threads make the text of rows piece by piece, and the
// caller's thread writes it in order. Text is collected and written in large blocks;
// CloseResultFile writes the last block.
#pragma once

#include <cstdint>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace korvex {

struct ResultFile {
  std::string name;
  int threads = 1;
  std::ofstream stream;
  std::string text;                 // collected, not yet written to the stream
  std::vector<std::string> pieces;  // [CountPlaces(threads)] text of rows on its way into `text`
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
using AddRow = std::function<void(std::int64_t row, std::string& text)>;

// Adds the rows 0 .. count - 1.
// rowSize: the usual number of characters of a row, by which the size of pieces is chosen.
void AddRows(ResultFile& file, std::int64_t count, std::int64_t rowSize, const AddRow& addRow);

// Each adds one item.
void Add(std::string& text, std::string_view item);
void Add(std::string& text, char character);
void Add(std::string& text, std::int64_t number);
void Add(std::string& text, double number);

inline void Add(std::string& text, std::int32_t number) {
  Add(text, static_cast<std::int64_t>(number));
}

// Adds the items and a line end.
template <typename... Items>
void AddLine(std::string& text, const Items&... items) {
  (Add(text, items), ...);
  Add(text, '\n');
}

// The columns of a table have 15 characters, right-aligned; a longer item makes its column wider.
// The first column may be a node number in 14 characters and a colon.
void AddColumn(std::string& text, double number);
void AddNodeColumn(std::string& text, std::int32_t node);
void AddTitles(std::string& text, std::initializer_list<std::string_view> titles);  // a whole line

}  // namespace korvex
