// The bytes of a mesh file and how far they are read: numbers as text, row by row, or as bytes.
//
// A binary file has text, too: the marks of its sections, $MeshFormat, $PhysicalNames. "int" is a
// number of 4 bytes there, "size" one of 8, "real" a double.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "mesh/import_report.h"
#include "mesh/source_files.h"

namespace kvx {

struct GmshText {
  std::string_view bytes;
  const ImportReport& report;  // knows the file's name
  std::size_t at = 0;
  std::size_t line = 1;       // of `at`; in binary files without meaning
  bool isBinary = false;      // of the file; set by its $MeshFormat
  bool isSwapped = false;     // its numbers are in the other order of bytes than this machine's
  bool hasShortTags = false;  // format 2.2
  std::string section = "$";  // which one is being read, for messages
  SourcePlace sectionPlace{};
};

// The place of what is read next; in binary files the file as a whole.
SourcePlace PlaceIn(const GmshText& text);

// Ends the import: with the line, or, in binary files, with the byte, counted from 0.
[[noreturn]] void FailAt(const GmshText& text, const std::string& what);

// Goes over blanks and line ends.
void SkipSpace(GmshText& text);

// The rest of the line without blanks at its ends; goes behind its end. Text also in binary files.
std::string_view TakeLine(GmshText& text);

// A word up to a blank or line end, and the number that it is. Text also in binary files. Ends the
// import where the line has no more words, or where the word is no such number.
std::string_view TakeWord(GmshText& text, const char* what);
std::int64_t TakeTextInt(GmshText& text, const char* what);
std::int64_t TakeTextSize(GmshText& text, const char* what);

// A row of numbers: text has a line for each row. In binary files both do nothing.
void BeginRow(GmshText& text);
void EndRow(GmshText& text);

// Whether the line has no more words.
bool AtLineEnd(GmshText& text);

// The next number of a row. An int fits 32 bits; a size is not negative; a real is finite.
std::int64_t TakeInt(GmshText& text, const char* what);
std::int64_t TakeSize(GmshText& text, const char* what);
double TakeReal(GmshText& text, const char* what);

// The number of a node or an element: not negative; an int in format 2.2, a size in 4.1.
std::int64_t TakeTag(GmshText& text, const char* what);

// A count that the file announces, checked against the bytes that are left: each thing takes
// `bytesOfOne` at least. So it can be reserved for.
std::size_t BelieveCount(const GmshText& text, std::int64_t count, std::size_t bytesOfOne,
                         const char* what);

// A line with a count alone, text also in binary files; believed as above.
std::size_t TakeTextCount(GmshText& text, std::size_t bytesOfOne, const char* what);

}  // namespace kvx
