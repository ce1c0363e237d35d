// The clock of a program whose times are known: linked in front of the library, this takes the
// place of the system's counter. The numbers stand on standard input in the order in which a run
// asks for them: frequency, counter before the solution, counter behind it.
#include <iostream>

#include "platform/clock.h"

namespace {

std::int64_t TakeNumber() {
  std::int64_t number = 0;
  std::cin >> number;
  return number;
}

}  // namespace

std::int64_t korvex::ReadPerformanceFrequency() { return TakeNumber(); }

std::int64_t korvex::ReadPerformanceCounter() { return TakeNumber(); }
