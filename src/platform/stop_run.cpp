// The failure styles of stop_run.h.
#include "platform/stop_run.h"

#include <cstdio>

#include "platform/console.h"
#include "platform/gbk_texts.h"
#include "platform/notice.h"

namespace korvex {

namespace {

constexpr int FailureStatus = 1;

// Of the process, not of the Model: a file is reported where it is closed, far from the driver.
int incompleteFiles = 0;

}  // namespace

void StopWithNotice(const std::string& text) {
  ShowNotice(text);
  throw RunStopped{FailureStatus};
}

void StopUnwritable(const char* gbkText) {
  WriteConsoleLine(gbkText);
  WaitForCharacter();
  throw RunStopped{FailureStatus};
}

void ReportIncompleteFile(const std::string& name) {
  ++incompleteFiles;
  std::fflush(stdout);  // what was printed before must stand before it
  std::fprintf(stderr, "%s is incomplete: writing it failed.\n", name.c_str());
}

int CountIncompleteFiles() { return incompleteFiles; }

void ReportInconsistency() { WriteConsoleLine(GbkError); }

}  // namespace korvex
