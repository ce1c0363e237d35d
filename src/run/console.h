// The three ways in which the program speaks on its console, and the one in which it listens.
//
// Formatted printing goes through the C library, lines through the standard output stream; both
// are flushed at once, so they keep their order also when standard output is a file or a pipe.
// Chinese texts are GBK bytes on every platform (gbk_texts.h).
#pragma once

#include <iosfwd>

namespace korvex {

// Prints as printf does and flushes, so that a progress text shows while the work goes on.
[[gnu::format(printf, 1, 2)]] void PrintFormatted(const char* format, ...);

// Writes the zero-terminated `text`; nothing is flushed.
void WriteText(std::ostream& stream, const char* text);

// Writes a newline and flushes.
void WriteLineEnd(std::ostream& stream);

// `text` and a line end on standard output.
void WriteConsoleLine(const char* text);

// Waits for one character on standard input. The end of the input counts as a key, so that a
// batch job never hangs.
void WaitForCharacter();

}  // namespace korvex
