// The columns of a page's block, read back as the page reads them, and the numbers of result files
// to compare them with.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "view/page_block.h"

namespace kvx::test {

bool HasColumn(const PageBlock& block, const std::string& name);

// The numbers of a column; none where there is no such column. A decimal is rounded to 32 bits, as
// in the page.
std::vector<std::int32_t> ReadIntegers(const PageBlock& block, const std::string& name);
std::vector<double> ReadDecimals(const PageBlock& block, const std::string& name);
std::vector<double> ReadDoubles(const PageBlock& block, const std::string& name);

// The number as result files show it. A zero and a NaN have no sign.
std::string ShowNumber(double number);

// The words of a text between blanks, line ends and the characters "(),=:". As ShowNumber, "-0" is
// "0" and "-nan" is "nan".
std::vector<std::string> ReadWords(const std::filesystem::path& file);

}  // namespace kvx::test
