// Linked in front of the library: a memory that refuses requests. The environment variable
// KORVEX_BLOCKS says how many requests it grants first, KORVEX_REFUSALS how many it then refuses.
#include <cstdlib>
#include <new>

namespace {

long ReadCount(const char* name) {
  const char* const text = std::getenv(name);
  return text == nullptr ? 0 : std::atol(text);
}

bool IsRefused() {
  static long granted = ReadCount("KORVEX_BLOCKS");
  static long refused = ReadCount("KORVEX_REFUSALS");
  if (granted > 0) {
    --granted;
    return false;
  }
  if (refused == 0) return false;
  --refused;
  return true;
}

}  // namespace

void* operator new(std::size_t size) {
  void* const block = IsRefused() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

// The linker sends the library's calls of calloc here (-Wl,--wrap=calloc).
extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return IsRefused() ? nullptr : __real_calloc(count, size);
}
}
