// The calculation log of calc_log_file.h under its GBK name, with a UTF-8 link beside it.
#include <unistd.h>

#include <fstream>

#include "platform/calc_log_file.h"
#include "platform/gbk_texts.h"

namespace korvex {

namespace {

// "计算日志.txt" in UTF-8, spelled as in gbk_texts.h and for the same reason.
constexpr const char* Utf8CalcLogName = "\xE8\xAE\xA1\xE7\xAE\x97\xE6\x97\xA5\xE5\xBF\x97.txt";

}  // namespace

void OpenCalcLog(std::ofstream& log) {
  log.open(GbkCalcLogName, std::ios::out | std::ios::trunc);
  if (!log.is_open()) return;
  // A link left by an earlier run makes this call fail, and is the link that is wanted.
  const int linked = symlink(GbkCalcLogName, Utf8CalcLogName);
  static_cast<void>(linked);
}

}  // namespace korvex
