#include "workers/run_threads.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace korvex {

void RunThreads(int threads, const std::function<void(int number)>& work) {
  if (threads < 2) {
    work(0);
    return;
  }
  std::vector<std::exception_ptr> failures(static_cast<std::size_t>(threads));
  const auto run = [&](int number) {
    try {
      work(number);
    } catch (...) {
      failures[static_cast<std::size_t>(number)] = std::current_exception();
    }
  };
  std::vector<std::thread> others;
  others.reserve(static_cast<std::size_t>(threads) - 1);
  try {
    for (int number = 1; number < threads; ++number) others.emplace_back(run, number);
  } catch (const std::system_error&) {  // no more threads to be had: those that began do the work
  }
  run(0);
  for (std::thread& other : others) other.join();
  const auto first = std::find_if(failures.begin(), failures.end(),
                                  [](const std::exception_ptr& failure) { return failure; });
  if (first != failures.end()) std::rethrow_exception(*first);
}

}  // namespace korvex
