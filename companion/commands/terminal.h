// What differs between systems for a program on the command line: arguments, terminals, colours.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kvx {

enum class Stream { Output, Error };

// The arguments behind the program's name, as UTF-8.
std::vector<std::string> ListArguments(int argc, char** argv);

// Makes a console show UTF-8. To be called before anything is written.
void PrepareConsole();

// Whether someone looks at what is written to this stream.
bool IsTerminal(Stream stream);

// Whether standard output is a terminal that understands escape sequences for colours.
bool HasColors();

// Characters of a line on standard output; 0 where it is no terminal.
std::size_t TerminalWidth();

}  // namespace kvx
