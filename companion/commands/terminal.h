// What differs between systems for a program on the command line: arguments, terminals, colours,
// signals.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kvx {

enum class Stream { Output, Error };

// The arguments behind the program's name, as UTF-8.
std::vector<std::string> ListArguments(int argc, char** argv);

// An argument as a user can give it to the system's command interpreter: in quotes where it needs
// them. argument: UTF-8.
std::string QuoteArgument(const std::string& argument);

// Makes a console show UTF-8. To be called before anything is written.
void PrepareConsole();

// Whether someone looks at what is written to this stream.
bool IsTerminal(Stream stream);

// Whether standard output is a terminal that understands escape sequences for colours.
bool HasColors();

// Characters of a line on standard output; 0 where it is no terminal.
std::size_t TerminalWidth();

// The signals by which a user, a closed terminal or the system asks a program to end.
std::vector<int> ListEndSignals();

}  // namespace kvx
