#include <unistd.h>

#include <fstream>

#include "platform/calc_log_file.h"

namespace korvex {

namespace {

// "计算日志.txt"; spelled byte by byte, because compilers expect UTF-8 in their sources.
constexpr const char* GbkName = "\xBC\xC6\xCB\xE3\xC8\xD5\xD6\xBE.txt";

}  // namespace

void OpenCalcLog(std::ofstream& log) {
  log.open(GbkName, std::ios::out | std::ios::trunc);
  if (!log.is_open()) return;
  // A link left by an earlier run makes this call fail, and is the link that is wanted.
  const int linked = symlink(GbkName, CalcLogName);
  static_cast<void>(linked);
}

}  // namespace korvex
