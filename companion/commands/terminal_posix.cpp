#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "commands/terminal.h"

namespace kvx {

std::vector<std::string> ListArguments(int argc, char** argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
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

}  // namespace kvx
