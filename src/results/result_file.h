// Output of a result file: the same text as that of a stream in its default notation, but faster.
//
// Numbers have six significant digits (number_text.h). Text is collected and written in large
// blocks; CloseResultFile writes the last block.
#pragma once

#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>

namespace korvex {

struct ResultFile {
  std::string name;
  std::ofstream stream;
  std::string text;  // collected, not yet written to the stream
};

// Opens the file for writing and truncates it. Throws a Stop of the kind ResultFile with the text
// `failure` where it cannot be opened, and a notice where the memory is too small for a block.
void OpenResultFile(const std::string& name, const char* failure, ResultFile& file);

// Writes the last block and closes the file. Returns false if the file could not be written
// completely.
bool CloseResultFile(ResultFile& file);

// Each adds one item.
void Add(ResultFile& file, std::string_view text);
void Add(ResultFile& file, char character);
void Add(ResultFile& file, std::int64_t number);
void Add(ResultFile& file, double number);

inline void Add(ResultFile& file, std::int32_t number) {
  Add(file, static_cast<std::int64_t>(number));
}

// Adds the items and a line end.
template <typename... Items>
void AddLine(ResultFile& file, const Items&... items) {
  (Add(file, items), ...);
  Add(file, '\n');
}

// The columns of a table have 15 characters, right-aligned; a longer item makes its column wider.
// The first column may be a node number in 14 characters and a colon.
void AddColumn(ResultFile& file, double number);
void AddNodeColumn(ResultFile& file, std::int32_t node);
void AddTitles(ResultFile& file, std::initializer_list<std::string_view> titles);  // a whole line

}  // namespace korvex
