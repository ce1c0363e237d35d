// Blocks of the page: arrays of numbers as the page reads them (page/src/data/blocks.ts).
//
// A block is a row of columns. A column has rows of `width` numbers: it begins with the first
// number of all rows, then come the second ones. So numbers of one kind stand side by side, in one
// of four encodings, all in byte planes: all lowest bytes first, then all second ones. Planes of
// numbers that resemble one another compress well.
//   integers  differences of neighbours, 32 bits, modulo 2^32
//   decimals  numbers rounded to six digits, as in result files: m 10^e, |m| <= 999999, as m + 2^23
//             in 24 bits and e + 64 in 8 bits; 127 in place of e + 64: m = 1, 2, 3 is +inf, -inf,
//             NaN. Numbers below 1e-59 are 0, as -0 is; those from 1e68 on are infinite. The page
//             has them in 32 bits, whose range is smaller
//   doubles   IEEE 754, 64 bits
//   fixed     doubles that have no more than `digits` decimal places, as most coordinates in files:
//             n / 10^digits with |n| < 2^46, differences d of neighbours' n in 48 bits, as 2 d, or
//             -2 d - 1 where d < 0. n / 10^digits is the same double again
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kvx {

struct PageColumn {
  std::string name;
  const char* encoding = "";  // "integers", "decimals", "doubles", "fixed"
  std::size_t count = 0;      // numbers
  std::size_t at = 0;         // first byte in the block
  std::size_t width = 1;      // numbers in a row
  std::int32_t digits = 0;    // "fixed": decimal places
};

struct PageBlock {
  std::string id;  // letters, digits and "-"
  std::vector<PageColumn> columns;
  std::string bytes;
};

// values: rows x width, row by row.
void AddIntegers(const std::string& name, const std::vector<std::int32_t>& values, PageBlock& block,
                 std::size_t width = 1);
void AddDecimals(const std::string& name, const std::vector<double>& values, PageBlock& block,
                 std::size_t width = 1);

// Every bit comes back: as "fixed" where all numbers allow it, else as "doubles".
void AddDoubles(const std::string& name, const std::vector<double>& values, PageBlock& block,
                std::size_t width = 1);

// The block's bytes as gzip (RFC 1952) in base64 (RFC 4648), as the page's script reads them. The
// same on every run: no time and no name stand in it.
std::string EncodeBlock(const PageBlock& block);

}  // namespace kvx
