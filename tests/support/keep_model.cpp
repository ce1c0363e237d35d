#include "support/keep_model.h"

#include <cstdlib>
#include <filesystem>

#include "support/temp_folder.h"

namespace korvex::test {

void KeepModel(const std::string& name, const std::string& text) {
  const char* folder = std::getenv("KORVEX_KEEP_MODELS");
  if (folder == nullptr) return;
  int number = 1;
  const auto file = [&] {
    return std::filesystem::path(folder) / (name + '-' + std::to_string(number) + ".txt");
  };
  while (std::filesystem::exists(file())) ++number;
  WriteFile(file(), text);
}

}  // namespace korvex::test
