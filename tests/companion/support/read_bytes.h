// The bytes of a file as they are on the disk, on every system.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kvx::test {

inline std::string ReadBytes(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace kvx::test
