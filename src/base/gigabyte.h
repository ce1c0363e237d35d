// The unit in which sizes of memory and disks are told.
#pragma once

namespace korvex {

inline constexpr double BytesPerGigabyte = 1073741824.0;  // 2^30

}  // namespace korvex
