// Converts with the system's code pages.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1  // as the standard library defines it
#include <windows.h>

#include "support/gbk.h"

namespace korvex::test {

std::string ConvertToGbk(const std::string& utf8) {
  constexpr UINT Gbk = 936;
  const int bytes = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');
  const int units =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), bytes, wide.data(), bytes);
  std::string gbk(2 * utf8.size(), '\0');
  const int used = WideCharToMultiByte(Gbk, 0, wide.data(), units, gbk.data(),
                                       static_cast<int>(gbk.size()), nullptr, nullptr);
  gbk.resize(static_cast<std::size_t>(used));
  return gbk;
}

}  // namespace korvex::test
