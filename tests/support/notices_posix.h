// Notices as text on standard error.
#pragma once

#include <string>
#include <vector>

namespace korvex::test {

// The notices at the beginning of `err`, in the form of notices.h, then the rest of `err`, if any.
std::vector<std::string> SplitNotices(const std::string& err);

}  // namespace korvex::test
