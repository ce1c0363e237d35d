#include "support/temp_folder.h"

#include <fstream>
#include <iterator>
#include <random>

namespace korvex::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::random_device random;
  do {
    path_ = fs::temp_directory_path() / ("korvex-test-" + std::to_string(random()));
  } while (!fs::create_directory(path_));
}

TempFolder::~TempFolder() {
  std::error_code ignored;  // a folder that cannot be removed must not fail the test
  fs::remove_all(path_, ignored);
}

WorkingFolder::WorkingFolder() : before_(fs::current_path()) { fs::current_path(folder_.Path()); }

WorkingFolder::~WorkingFolder() {
  std::error_code ignored;
  fs::current_path(before_, ignored);
}

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
}

}  // namespace korvex::test
