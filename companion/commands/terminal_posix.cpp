#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

#include "commands/terminal.h"

namespace kvx {

std::vector<std::string> ListArguments(int argc, char** argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
}

// Between single quotes nothing has a meaning but the quote itself, which stands outside of them
// behind a backslash: it's is 'it'\''s'.
std::string QuoteArgument(const std::string& argument) {
  constexpr const char* Special = " \t\n'\"\\$&;|<>(){}*?[]#~`!^=";
  if (!argument.empty() && argument.find_first_of(Special) == std::string::npos) return argument;
  std::string quoted = "'";
  for (const char c : argument) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + '\'';
}

void PrepareConsole() {}

bool IsTerminal(Stream stream) {
  return isatty(stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

bool HasColors() {
  const char* const kind = std::getenv("TERM");
  return IsTerminal(Stream::Output) && kind != nullptr && std::string_view(kind) != "dumb";
}

std::size_t TerminalWidth() {
  winsize size{};
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's interface
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return 0;
  return size.ws_col;
}

std::vector<int> ListEndSignals() { return {SIGINT, SIGTERM, SIGHUP}; }

}  // namespace kvx
