// The three failure styles of stop_run.h.
#include "platform/stop_run.h"

#include "platform/console.h"
#include "platform/gbk_texts.h"
#include "platform/notice.h"

namespace korvex {

namespace {

constexpr int FailureStatus = 1;

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

void ReportInconsistency() { WriteConsoleLine(GbkError); }

}  // namespace korvex
