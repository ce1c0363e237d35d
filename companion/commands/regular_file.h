// Files that are read whole.
#pragma once

#include <filesystem>
#include <string>

namespace kvx {

// Fills `bytes`. Returns false where there is no such regular file, or it cannot be read: a pipe
// would keep us waiting.
bool ReadRegularFile(const std::filesystem::path& place, std::string& bytes);

}  // namespace kvx
