// The Chinese texts that the program writes to its console, and the name of its log, as GBK bytes.
//
// They are spelled byte by byte so that neither the encoding of this file nor the compiler's
// execution character set can change them; the reading stands beside each.
#pragma once

namespace korvex {

// An inconsistency that does not stop the run: "错误!" (error!).
inline constexpr const char* GbkError = "\xB4\xED\xCE\xF3!";

// "节点位移文件输出失败!" (writing the nodal displacement file failed).
inline constexpr const char* GbkDisplacementFileFailed =
    "\xBD\xDA\xB5\xE3\xCE\xBB\xD2\xC6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!";

// "单元节点应力文件输出失败!" (writing the element node stress file failed): both stress files.
inline constexpr const char* GbkStressFileFailed =
    "\xB5\xA5\xD4\xAA\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0"
    "\xDC!";

// "节点应力文件输出失败!" (writing the node stress file failed): the detail models' file.
inline constexpr const char* GbkAverageStressFileFailed =
    "\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!";

// "文件输出失败!" (writing the file failed): both drawings.
inline constexpr const char* GbkFileFailed = "\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!";

// The calculation log's name, "计算日志.txt".
inline constexpr const char* GbkCalcLogName = "\xBC\xC6\xCB\xE3\xC8\xD5\xD6\xBE.txt";

}  // namespace korvex
