// What the numbers mean with which MUMPS ends (MUMPS 5.5 users' guide, sec. 8), as sentences.
#pragma once

#include <cstdint>
#include <string>

namespace kvx {

// What the factorisation takes, and what it may take.
struct FactorMemory {
  std::uint64_t needed = 0;   // bytes, with what stands beside MUMPS
  std::uint64_t allowed = 0;  // bytes
  bool isLimitGiven = false;  // by the user; else it is what is free
  bool isOutOfCore = false;
};

// status: INFOG(1), negative; detail: INFOG(2).
std::string DescribeMumpsError(std::int32_t status, std::int32_t detail,
                               const FactorMemory& memory);

// Whether more work space helps: it was measured before the pivots were known.
bool IsSpaceTooSmall(std::int32_t status);

// The factor takes more memory than is allowed or free: both, and what helps.
std::string DescribeMemory(const FactorMemory& memory);

}  // namespace kvx
