// The program korvex: solves the model in the current directory. No arguments, no options.
//
// The run and its errors are handled in run/run_driver.h. This file handles only the last case: no
// memory is left for an exception.
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "run/run_driver.h"

namespace {

// The standard library calls this for an exception that nothing catches, and where it has no memory
// to make an exception: then there is no current one. The message is written without memory.
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
