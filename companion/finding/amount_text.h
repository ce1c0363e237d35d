// How much memory and time something takes, as messages and tables of all rooms tell it: one unit
// and one way to round, so that the same amount has the same text everywhere.
//
// Memory and disk: GB of 2^30 bytes, two digits below 10, whole numbers from there on, and no less
// than thousandths. Time: two digits, in seconds, minutes or hours.
#pragma once

#include <cstdint>
#include <string>

namespace kvx {

// "2.7", "0.034", "120"; rounded up, as what is needed is. 0 stays "0".
std::string GigabyteNumber(std::uint64_t bytes);

// The same with the unit: "2.7 GB".
std::string GigabyteText(std::uint64_t bytes);

// The same rounded down, as what is free or allowed is: the text of what is less always differs
// from that of what is needed.
std::string AllowedText(std::uint64_t bytes);

// What is free now, with the limit that makes it so little where one does: "2.7 GB free", "0.9 GB
// free within the limit of addresses (ulimit -v)".
std::string FreeText(std::uint64_t bytes);

// "less than 0.1 s", "1.2 s", "12 s", "3 min", "2.5 h"
std::string DurationText(double seconds);

// The same of what is predicted: "less than 0.1 s", "about 1.2 s".
std::string AboutText(double seconds);

}  // namespace kvx
