// The Chinese texts for the console, as GBK bytes.
//
// They are written as escapes, because the source itself is UTF-8. The comment before each shows
// its text.
#pragma once

#include <array>

#include "report/texts.h"

namespace korvex {

// "错误!" (error!): an inconsistency that does not stop the run.
inline constexpr const char* GbkError = "\xB4\xED\xCE\xF3!";

struct ConsoleText {
  const char* utf8;
  const char* gbk;
};

// The texts of result files that cannot be opened.
inline constexpr std::array<ConsoleText, 4> ConsoleTexts{{
    // "节点位移文件输出失败!"
    {DisplacementFileFailed,
     "\xBD\xDA\xB5\xE3\xCE\xBB\xD2\xC6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!"},
    // "单元节点应力文件输出失败!"
    {StressFileFailed,
     "\xB5\xA5\xD4\xAA\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0"
     "\xDC!"},
    // "节点应力文件输出失败!"
    {AverageStressFileFailed,
     "\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!"},
    // "文件输出失败!"
    {DrawingFailed, "\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!"},
}};

}  // namespace korvex
