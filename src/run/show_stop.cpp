#include "run/show_stop.h"

#include <cstdio>

#include "platform/notice.h"
#include "run/console.h"
#include "run/gbk_texts.h"

namespace korvex {

namespace {

// Returns the GBK bytes of a text for the console; a text without GBK bytes is not changed.
const char* EncodeForConsole(const std::string& utf8) {
  for (const ConsoleText& text : ConsoleTexts) {
    if (utf8 == text.utf8) return text.gbk;
  }
  return utf8.c_str();
}

}  // namespace

void ShowStop(const Stop& stop) {
  if (stop.kind == StopKind::Notice) {
    ShowNotice(stop.text.c_str());
  } else {
    WriteConsoleLine(EncodeForConsole(stop.text));
    WaitForCharacter();
  }
}

void ReportIncompleteFile(const std::string& name) {
  std::fflush(stdout);  // so that earlier console lines appear before this one
  std::fprintf(stderr, "%s is incomplete: writing it failed.\n", name.c_str());
}

void ReportInconsistency() { WriteConsoleLine(GbkError); }

}  // namespace korvex
