#include <unistd.h>

#include <fstream>

#include "platform/calc_log_file.h"

namespace korvex {

namespace {

// "计算日志.txt" in GBK; as escapes, because the source itself is UTF-8.
constexpr const char* GbkName = "\xBC\xC6\xCB\xE3\xC8\xD5\xD6\xBE.txt";

}  // namespace

std::filesystem::path CalcLogFile() { return GbkName; }

void LinkCalcLog(const std::filesystem::path& folder) {
  // If the link exists from an earlier run, the call fails and the link stays: that is right.
  const int linked = symlink(GbkName, (folder / CalcLogName).c_str());
  static_cast<void>(linked);
}

void OpenCalcLog(std::ofstream& log) {
  log.open(GbkName, std::ios::out | std::ios::trunc);
  if (log.is_open()) LinkCalcLog("");
}

}  // namespace korvex
