#include <fstream>

#include "platform/calc_log_file.h"

namespace korvex {

std::filesystem::path CalcLogFile() { return L"\u8BA1\u7B97\u65E5\u5FD7.txt"; }  // 计算日志.txt

void LinkCalcLog(const std::filesystem::path& /*folder*/) {}

void OpenCalcLog(std::ofstream& log) { log.open(CalcLogFile(), std::ios::out | std::ios::trunc); }

}  // namespace korvex
