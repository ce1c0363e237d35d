// The groups of codes by the digit behind the K, in words.
#pragma once

#include <string>

namespace kvx {

// "Text of the file" for "K011".
inline const char* GroupOf(const std::string& code) {
  switch (code.at(1)) {
    case '0':
      return "Text of the file";
    case '1':
      return "Elements and tables";
    case '2':
      return "Mesh";
    case '3':
      return "Supports and mechanisms";
    case '4':
      return "Loads";
    case '5':
      return "Size and order";
    case '6':
      return "Units and plausibility";
    default:
      return "Results";
  }
}

}  // namespace kvx
