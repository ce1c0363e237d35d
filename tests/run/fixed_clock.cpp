// A clock with known times. Linked before the library, it replaces the system's counter. Standard
// input holds the numbers in the order in which a run asks for them: frequency, counter before the
// solution, counter after it.
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
