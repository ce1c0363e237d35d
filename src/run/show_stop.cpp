#include "run/show_stop.h"

#include <cstdio>

#include "platform/notice.h"
#include "run/console.h"
#include "run/gbk_texts.h"

namespace korvex {

namespace {

// The bytes that the console gets for a text; a text without GBK bytes goes there as it is.
const char* EncodeForConsole(const std::string& utf8) {
  for (const ConsoleText& text : ConsoleTexts) {
    if (utf8 == text.utf8) return text.gbk;
  }
  return utf8.c_str();
}

}  // namespace

void ShowStop(const Stop& stop) {
  if (stop.kind == StopKind::Notice) {
    ShowNotice(stop.text);
  } else {
    WriteConsoleLine(EncodeForConsole(stop.text));
    WaitForCharacter();
  }
}

void ReportIncompleteFile(const std::string& name) {
  std::fflush(stdout);  // what was printed before must stand before it
  std::fprintf(stderr, "%s is incomplete: writing it failed.\n", name.c_str());
}

void ReportInconsistency() { WriteConsoleLine(GbkError); }

}  // namespace korvex
