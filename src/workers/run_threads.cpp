#include "workers/run_threads.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace korvex {

namespace {

// Returns false where memory cannot hold the tables of so many threads.
bool MakeTables(int threads, std::vector<std::exception_ptr>& failures,
                std::vector<std::thread>& others) {
  if (threads < 2) return false;
  try {
    failures.resize(static_cast<std::size_t>(threads));
    others.reserve(static_cast<std::size_t>(threads) - 1);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

}  // namespace

void RunThreads(int threads, const std::function<void(int number)>& work) {
  std::vector<std::exception_ptr> failures;
  std::vector<std::thread> others;
  if (!MakeTables(threads, failures, others)) {
    work(0);
    return;
  }
  const auto run = [&](int number) {
    try {
      work(number);
    } catch (...) {
      failures[static_cast<std::size_t>(number)] = std::current_exception();
    }
  };
  try {
    for (int number = 1; number < threads; ++number) others.emplace_back(run, number);
  } catch (const std::system_error&) {  // no more threads to be had: those that began do the work
  } catch (const std::bad_alloc&) {     // the same
  }
  run(0);
  for (std::thread& other : others) other.join();
  const auto first = std::find_if(failures.begin(), failures.end(),
                                  [](const std::exception_ptr& failure) { return failure; });
  if (first != failures.end()) std::rethrow_exception(*first);
}

}  // namespace korvex
