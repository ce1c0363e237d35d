#include "fuzz_target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "mutate_model.h"
#include "platform/free_memory.h"

namespace korvex {

// Replace the functions of the library: the linker takes these, because it finds them first. Both
// stand in one file there, and so have to be replaced together.
std::uint64_t ReadFreeMemory() { return fuzz::TargetMemory; }
MemoryBound FindMemoryBound() { return MemoryBound::Machine; }

}  // namespace korvex

// Notices wait for a line on standard input; the end of the input counts as a line.
int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  if (std::freopen("/dev/null", "r", stdin) == nullptr) std::abort();
  return 0;
}

// Every fourth change is made by the fuzzer itself, which uses the comparisons seen in earlier
// runs.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned int seed) {
  if (seed % 4 == 0) return LLVMFuzzerMutate(data, size, maxSize);
  std::string text(data, data + size);
  korvex::fuzz::MutateModel(text, seed);
  const std::size_t kept = std::min(text.size(), maxSize);
  std::copy_n(text.begin(), kept, data);
  return kept;
}
