// The notice of notice.h on a terminal: standard error for the text, standard input for the answer.
#include <cstdio>
#include <string>

#include "platform/notice.h"

namespace korvex {

void ShowNotice(const std::string& text) {
  std::fflush(stdout);  // what was printed before the notice must stand before it
  std::fprintf(stderr, "%s\n%s\nPress Enter to continue.\n", NoticeTitle, text.c_str());
  std::fflush(stderr);
  int character = std::getchar();
  while (character != '\n' && character != EOF) character = std::getchar();
}

}  // namespace korvex
