// The common part of both fuzz targets: the mutator, a small free memory, and an empty standard
// input.
#pragma once

#include <cstddef>
#include <cstdint>

namespace korvex::fuzz {

// The free memory that the targets report, in bytes. It is small, so that only models are accepted
// that are solved in milliseconds.
inline constexpr std::uint64_t TargetMemory = std::uint64_t{2} << 20U;

}  // namespace korvex::fuzz

// The fuzzer's own entry points; their names and signatures are its interface.
extern "C" {
int LLVMFuzzerInitialize(int* argc, char*** argv);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned int seed);
std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
}
