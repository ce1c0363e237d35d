// Notices as text on standard error.
#pragma once

#include <string>
#include <vector>

namespace korvex::test {

// The notices at the beginning of `err`, as notices.h keeps them; behind them what else is there.
std::vector<std::string> SplitNotices(const std::string& err);

}  // namespace korvex::test
