// The program: solves the model in the current directory.
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "run/run_driver.h"

namespace {

// Where memory does not even hold an exception, the library ends the program here, without one.
// What is left to do needs no memory.
[[noreturn]] void EndWithoutMemory() {
  if (std::current_exception() != nullptr) std::abort();  // uncaught: a bug
  std::fputs("Not enough memory.\n", stderr);
  std::_Exit(1);
}

}  // namespace

int main() {
  std::set_terminate(EndWithoutMemory);
  return korvex::RunKorvex();
}
