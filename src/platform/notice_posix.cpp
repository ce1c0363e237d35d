#include <cstdio>
#include <string>

#include "platform/notice.h"

namespace korvex {

void ShowNotice(const std::string& text) {
  std::fflush(stdout);  // so that earlier console lines appear before the notice
  std::fprintf(stderr, "%s\n%s\nPress Enter to continue.\n", NoticeTitle, text.c_str());
  std::fflush(stderr);
  int character = std::getchar();
  while (character != '\n' && character != EOF) character = std::getchar();
}

}  // namespace korvex
