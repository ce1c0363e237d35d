#include "audit/written_bytes.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>
#include <vector>

namespace kvx {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t BlockSize = std::size_t{1} << 16U;

// A new empty folder of this process; empty if there can be none.
fs::path MakeFolder() {
  constexpr int Attempts = 16;  // names that others have already are unlikely, one after another
  std::error_code error;
  const fs::path parent = fs::temp_directory_path(error);
  if (error) return {};
  std::random_device random;
  for (int k = 0; k < Attempts; ++k) {
    fs::path folder = parent / ("kvx-" + std::to_string(random()));
    if (fs::create_directory(folder, error)) return folder;
  }
  return {};
}

bool TakeFile(const fs::path& file, const TakeBytes& take) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream.is_open()) return false;
  std::vector<char> block(BlockSize);
  while (stream) {
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    take(block.data(), static_cast<std::size_t>(stream.gcount()));
  }
  return stream.eof();
}

}  // namespace

bool TakeBytesOfTemporaryFile(const FileWriter& write, const TakeBytes& take) {
  const fs::path folder = MakeFolder();
  if (folder.empty()) return false;
  std::error_code ignored;
  bool isWhole = false;
  try {
    const fs::path file = folder / "file";
    isWhole = write(file.string()) && TakeFile(file, take);
  } catch (...) {
    fs::remove_all(folder, ignored);
    throw;
  }
  fs::remove_all(folder, ignored);
  return isWhole;
}

}  // namespace kvx
