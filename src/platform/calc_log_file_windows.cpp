#include <filesystem>
#include <fstream>

#include "platform/calc_log_file.h"

namespace korvex {

void OpenCalcLog(std::ofstream& log) {
  const std::filesystem::path name(L"\u8BA1\u7B97\u65E5\u5FD7.txt");  // 计算日志.txt
  log.open(name, std::ios::out | std::ios::trunc);
}

}  // namespace korvex
