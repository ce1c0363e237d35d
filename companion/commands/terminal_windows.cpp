#include <windows.h>
// Needs the types of windows.h.
#include <shellapi.h>

#include <csignal>

#include "commands/terminal.h"

namespace kvx {

namespace {

std::string ToUtf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return "";
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
  utf8.pop_back();  // the zero at the end
  return utf8;
}

HANDLE HandleOf(Stream stream) {
  return GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

}  // namespace

// Those of main are in the system's own code page, which lacks most characters.
std::vector<std::string> ListArguments(int, char**) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; wide != nullptr && i < count; ++i) arguments.push_back(ToUtf8(wide[i]));
  LocalFree(static_cast<void*>(wide));
  return arguments;
}

// Names of files have no double quotes there.
std::string QuoteArgument(const std::string& argument) {
  constexpr const char* Special = " \t'$&;,|<>(){}[]@#~`!^=%";
  if (!argument.empty() && argument.find_first_of(Special) == std::string::npos) return argument;
  return '"' + argument + '"';
}

void PrepareConsole() { SetConsoleOutputCP(CP_UTF8); }

bool IsTerminal(Stream stream) {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

// Consoles before Windows 10 do not have the mode.
bool HasColors() {
  const HANDLE output = HandleOf(Stream::Output);
  DWORD mode = 0;
  if (GetConsoleMode(output, &mode) == 0) return false;
  return SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t TerminalWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(HandleOf(Stream::Output), &info) == 0) return 0;
  const int width = info.srWindow.Right - info.srWindow.Left;  // the last column breaks the line
  return width > 0 ? static_cast<std::size_t>(width) : 0;
}

std::vector<int> ListEndSignals() { return {SIGINT, SIGTERM}; }

}  // namespace kvx
