// The texts of stops whose wording is fixed, in UTF-8.
//
// Notices are shown as they are. Texts about result files go to the console, in GBK
// (run/gbk_texts.h).
#pragma once

namespace korvex {

// Writing the calculation log failed.
inline constexpr const char* CalcLogFailed = u8"计算日志输出失败!";

// A beam's section type is no number of a section table.
inline constexpr const char* SectionTypeFailed = u8"梁截面类型数字错误!";

// Writing the nodal displacement file failed.
inline constexpr const char* DisplacementFileFailed = u8"节点位移文件输出失败!";

// Writing the element node stress file failed; used for both stress files of the shells.
inline constexpr const char* StressFileFailed = u8"单元节点应力文件输出失败!";

// Writing the node stress file failed; used for the file of the detail models.
inline constexpr const char* AverageStressFileFailed = u8"节点应力文件输出失败!";

// Writing the file failed; used for both drawings.
inline constexpr const char* DrawingFailed = u8"文件输出失败!";

}  // namespace korvex
