#include "commands/speak.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "commands/terminal.h"
#include "finding/text_layout.h"
#include "ranks/ranks.h"

namespace kvx {

namespace {

// Narrower lines would hold a word or two.
constexpr std::size_t LeastWidth = 40;

bool AreColorsUnwanted() {
  const char* const value = std::getenv("NO_COLOR");
  return value != nullptr && *value != '\0';
}

// Commands say "kvx run"; the program of ranks has the same ones.
std::string NameOfCaller(const std::string& who) {
  const std::string program = "kvx";
  const bool isCommand = who == program || who.rfind(program + ' ', 0) == 0;
  return isCommand ? ProgramName() + who.substr(program.size()) : who;
}

}  // namespace

std::string ProgramName() { return IsProgramOfRanks() ? "kvx-mpi" : "kvx"; }

TextStyle ChooseStyle(ColorChoice choice) {
  TextStyle style;
  const std::size_t width = TerminalWidth();
  if (width > 0) style.width = std::max(width, LeastWidth);
  // Asked in any case: some consoles are switched by the question.
  const bool hasColors = HasColors() && !IsProgramOfRanks();  // mpirun looks like a terminal
  style.color = choice == ColorChoice::Always ||
                (choice == ColorChoice::Auto && hasColors && !AreColorsUnwanted());
  return style;
}

ExitStatus WriteOutput(const std::string& text) {
  std::cout << text << std::flush;
  if (std::cout) return ExitFine;
  Complain("kvx", "standard output cannot be written: is it closed, or the disk full?");
  return ExitOutputFailed;
}

void Complain(const std::string& who, const std::string& text) {
  std::cerr << NameOfCaller(who) << ": " << CleanText(text) << std::endl;
}

}  // namespace kvx
