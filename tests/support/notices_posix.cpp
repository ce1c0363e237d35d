// A notice on a terminal: a line with the title, then the text, then a line that asks for Enter.
#include "support/notices_posix.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "support/notices.h"

namespace korvex::test {

std::vector<std::string> SplitNotices(const std::string& err) {
  const std::string title = "Warning!\n", request = "\nPress Enter to continue.\n";
  std::vector<std::string> notices;
  std::size_t at = 0;
  while (err.compare(at, title.size(), title) == 0) {
    const std::size_t end = err.find(request, at);
    if (end == std::string::npos) break;
    notices.push_back(err.substr(at, end - at));
    at = end + request.size();
  }
  if (at < err.size()) notices.push_back(err.substr(at));
  return notices;
}

std::vector<std::string> CollectNotices(const std::function<void()>& work) {
  if (std::freopen("/dev/null", "r", stdin) == nullptr) {
    ADD_FAILURE() << "standard input cannot be redirected";
    return {};
  }
  testing::internal::CaptureStderr();
  work();
  return SplitNotices(testing::internal::GetCapturedStderr());
}

}  // namespace korvex::test
