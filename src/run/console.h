// Console output (formatted printing, text and line end) and the wait for a key.
//
// Formatted printing uses the C library, lines use the standard output stream. Both are flushed at
// once, so they keep their order also if standard output is a file or a pipe. Chinese texts are GBK
// bytes on every platform (gbk_texts.h).
#pragma once

#include <iosfwd>

namespace korvex {

// Prints as printf does and flushes, so that a progress text is visible during the work.
[[gnu::format(printf, 1, 2)]] void PrintFormatted(const char* format, ...);

// Writes the zero-terminated `text` without a flush.
void WriteText(std::ostream& stream, const char* text);

// Writes a newline and flushes.
void WriteLineEnd(std::ostream& stream);

// Writes `text` and a line end to standard output.
void WriteConsoleLine(const char* text);

// Waits for one character on standard input. Returns also at the end of the input, so that a batch
// job does not wait for ever.
void WaitForCharacter();

}  // namespace korvex
