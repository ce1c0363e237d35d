// The common part of both fuzz targets.
//
// It replaces the free memory of the machine by a small fixed value, makes standard input empty, so
// that no run waits for a key, and adds the changes of mutate_model.h to those of the fuzzer.
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
