// The names of the files in the folder of a run: the model file and the output files, in the order
// in which they are written. Other programs read these files, so the names are fixed.
//
// The name of the calculation log depends on the platform: platform/calc_log_file.h.
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
