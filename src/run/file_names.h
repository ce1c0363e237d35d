// The names of the files in a run's folder. The calculation log has its own,
// platform/calc_log_file.h.
#pragma once

namespace korvex {

inline constexpr const char* ModelFileName = "fem_solving.txt";
inline constexpr const char* StructureDrawingName = "structure.dxf";
inline constexpr const char* DisplacementFileName = "Node_Dis.txt";
inline constexpr const char* DeformationDrawingName = "deformation.dxf";
inline constexpr const char* StressFileName = "Shell element node stress.txt";
inline constexpr const char* AverageNodeStressFileName = "Shell element average node stress.txt";
inline constexpr const char* AverageStressFileName = "Korvex_AverageStrs.txt";

}  // namespace korvex
