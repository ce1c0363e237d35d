// The calculation log of calc_log_file.h under its GBK name, with a UTF-8 link beside it.
#include <unistd.h>

#include <fstream>

#include "platform/calc_log_file.h"
#include "platform/gbk_texts.h"

namespace korvex {

void OpenCalcLog(std::ofstream& log) {
  log.open(GbkCalcLogName, std::ios::out | std::ios::trunc);
  if (!log.is_open()) return;
  // A link left by an earlier run makes this call fail, and is the link that is wanted.
  const int linked = symlink(GbkCalcLogName, Utf8CalcLogName);
  static_cast<void>(linked);
}

}  // namespace korvex
