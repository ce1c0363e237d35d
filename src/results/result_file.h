// A result file being written: text in the form of a stream's default notation, much faster.
//
// Numbers are those of number_text.h. Text is gathered and written in large blocks; CloseResultFile
// writes the last one.
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
  std::string text;  // what the stream has not got yet
};

// Opens the file for writing, truncated. Where that fails, throws a Stop of the kind ResultFile
// with the text `failure`.
void OpenResultFile(const std::string& name, const char* failure, ResultFile& file);

// Writes what is left and closes the file. Returns false where the file could not be written whole.
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

// The columns of a table are fifteen characters wide and right-aligned; longer items take what they
// need. The first column may hold a node number in fourteen and a colon.
void AddColumn(ResultFile& file, double number);
void AddNodeColumn(ResultFile& file, std::int32_t node);
void AddTitles(ResultFile& file, std::initializer_list<std::string_view> titles);  // a whole line

}  // namespace korvex
