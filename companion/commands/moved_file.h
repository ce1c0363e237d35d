// A file of a model's folder whose numbers of nodes change: its name and its new text.
#pragma once

#include <filesystem>
#include <string>

namespace kvx {

struct MovedFile {
  std::filesystem::path name;  // as from the folder; the current folder is that one
  std::string shown;           // the same, UTF-8
  std::string text;
};

}  // namespace kvx
