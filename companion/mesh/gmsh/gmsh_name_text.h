// Names of groups as they stand in a file -> text that can be shown and written.
#pragma once

#include <string>
#include <string_view>

namespace kvx {

// The name in UTF-8. Bytes that are no UTF-8 are taken as Latin-1, which programs on Windows write;
// control characters become "?".
std::string ReadableName(std::string_view name);

}  // namespace kvx
