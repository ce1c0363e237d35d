// Checks that a piece of work ends with a Stop.
#pragma once

#include <functional>
#include <string>

#include "report/stop.h"

namespace korvex::test {

// Runs `work` and expects that it throws a Stop of this kind with this text, and that it prints
// nothing.
void ExpectStop(const std::function<void()>& work, const std::string& text,
                StopKind kind = StopKind::Notice);

}  // namespace korvex::test
