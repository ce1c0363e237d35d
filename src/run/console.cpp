// The standard streams are synchronised with the C library, which is their default. Stream and
// printf output therefore keep their order.
#include "run/console.h"

#include <cstdarg>
#include <cstdio>
#include <iostream>

namespace korvex {

void PrintFormatted(const char* format, ...) {  // NOLINT(cert-dcl50-cpp): it is a printf
  std::va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);  // NOLINT(clang-analyzer-valist.Uninitialized): set above
  va_end(arguments);
  std::fflush(stdout);
}

void WriteText(std::ostream& stream, const char* text) { stream << text; }

void WriteLineEnd(std::ostream& stream) { stream << std::endl; }

void WriteConsoleLine(const char* text) {
  WriteText(std::cout, text);
  WriteLineEnd(std::cout);
}

void WaitForCharacter() { std::getchar(); }

}  // namespace korvex
