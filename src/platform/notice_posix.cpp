#include <cstdio>

#include "platform/notice.h"

namespace korvex {

void ShowNotice(const char* text) {
  std::fflush(stdout);  // so that earlier console lines appear before the notice
  std::fprintf(stderr, "%s\n%s\nPress Enter to continue.\n", NoticeTitle, text);
  std::fflush(stderr);
  int character = std::getchar();
  while (character != '\n' && character != EOF) character = std::getchar();
}

}  // namespace korvex
