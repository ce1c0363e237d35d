// What the numbers mean with which MUMPS ends (MUMPS 5.5 users' guide, sec. 8), as sentences.
#pragma once

#include <cstdint>
#include <string>

namespace kvx {

// status: INFOG(1), negative; detail: INFOG(2).
std::string DescribeMumpsError(std::int32_t status, std::int32_t detail, bool isOutOfCore);

// Whether more work space helps: it was measured before the pivots were known.
bool IsSpaceTooSmall(std::int32_t status);

// The factor takes more memory than is allowed.
std::string DescribeMemory(std::uint64_t needed, std::uint64_t allowed, bool isOutOfCore);

// "2.7 GB", of 2^30 bytes.
std::string GigabyteText(std::uint64_t bytes);

}  // namespace kvx
