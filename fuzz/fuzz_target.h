// What both fuzz targets share: the mutator, a machine with little memory, and no answers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace korvex::fuzz {

// The memory of the machine that the targets run on, in bytes. Little, so that a count that is
// accepted makes a model that is solved in milliseconds.
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
