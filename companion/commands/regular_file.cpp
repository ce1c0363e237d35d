#include "commands/regular_file.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace kvx {

namespace fs = std::filesystem;

bool ReadRegularFile(const fs::path& place, std::string& bytes) {
  std::error_code error;
  if (!fs::is_regular_file(place, error)) return false;
  std::ifstream stream(place, std::ios::binary);
  bytes.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  return stream.is_open() && !stream.bad();
}

}  // namespace kvx
