// The texts go to the message box in UTF-16, because 8-bit texts would depend on the code page.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <string>

#include "platform/notice.h"

namespace korvex {

namespace {

std::wstring WidenUtf8(const std::string& text) {
  const int bytes = static_cast<int>(text.size());
  const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), units);
  return wide;
}

}  // namespace

void ShowNotice(const char* text) {
  MessageBoxW(nullptr, WidenUtf8(text).c_str(), WidenUtf8(NoticeTitle).c_str(), MB_OK);
}

}  // namespace korvex
