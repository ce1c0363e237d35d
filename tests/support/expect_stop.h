// Checks that a piece of work ends the run with a notice.
#pragma once

#include <functional>
#include <string>

namespace korvex::test {

// Runs `work` and expects that it shows the notice `text` and nothing else, and ends the run with
// exit status 1.
void ExpectStop(const std::function<void()>& work, const std::string& text);

}  // namespace korvex::test
